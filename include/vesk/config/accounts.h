/**
 * @file
 * Accounts and lines.
 *
 * A part of <vesk/config.h>. The conventions in <vesk/vesk_client.h> hold for all functions.
 */
#ifndef VESK_CONFIG_ACCOUNTS_H
#define VESK_CONFIG_ACCOUNTS_H

#include <vesk/common.h>

#ifdef __cplusplus
extern "C" {
#endif

/** Sizes of the records in bytes. */
#define VESK_ACCOUNTS_BASIC_CONFIG_SIZE 1160
#define VESK_ACCOUNTS_ADVANCED_CONFIG_SIZE 328
#define VESK_LINE_INFO_SIZE 204

/* Accounts */

/**
 * Fetches the basic settings of an account.
 *
 * @param      account the account
 * @param[out] config  receives a record of VESK_ACCOUNTS_BASIC_CONFIG_SIZE bytes
 * @return 0; -1 on failure
 */
VESK_API int binder_get_accounts_basic_config(int account, void* config);

/**
 * Sets the basic settings of an account.
 *
 * @param account the account
 * @param config  a record of VESK_ACCOUNTS_BASIC_CONFIG_SIZE bytes
 * @return the service's answer; -1 on failure
 */
VESK_API int binder_set_accounts_basic_config(int account, const char* config);

/**
 * Fetches the advanced settings of an account.
 *
 * @param      account the account
 * @param[out] config  receives a record of VESK_ACCOUNTS_ADVANCED_CONFIG_SIZE bytes
 * @return 0; -1 on failure
 */
VESK_API int binder_get_accounts_advanced_config(int account, void* config);

/**
 * Sets the advanced settings of an account.
 *
 * @param account the account
 * @param config  a record of VESK_ACCOUNTS_ADVANCED_CONFIG_SIZE bytes
 * @return the service's answer; -1 on failure
 */
VESK_API int binder_set_accounts_advanced_config(int account, const char* config);

/* Lines */

/**
 * Asks how many lines there are.
 *
 * @return the service's answer; -1 on failure
 */
VESK_API int binder_get_line_num(void);

/**
 * Fetches the information on a line.
 *
 * @param      index which of the lines
 * @param[out] info  receives a record of VESK_LINE_INFO_SIZE bytes
 * @return 0; -1 on failure
 */
VESK_API int binder_get_line_info(int index, void* info);

/**
 * Asks how many lines are active.
 *
 * @return the service's answer; -1 on failure
 */
VESK_API int binder_get_active_line_num(void);

/**
 * Fetches the information on an active line.
 *
 * @param      index which of the active lines
 * @param[out] info  receives a record of VESK_LINE_INFO_SIZE bytes
 * @return 0; -1 on failure
 */
VESK_API int binder_get_active_line_info(int index, void* info);

/**
 * Asks for the default external line.
 *
 * @param flag 0 for false, anything else for true; for the service to interpret
 * @return the service's answer; -1 on failure
 */
VESK_API int binder_get_default_ext_line(int flag);

/**
 * Sets the default external line.
 *
 * @param line the line
 * @return the service's answer; -1 on failure
 */
VESK_API int binder_set_default_ext_line(int line);

/* Default line, encryption */

/**
 * Asks whether there is a default line.
 *
 * @return 1 if there is, 0 if not; 0 on failure
 */
VESK_API int binder_get_default_line_enable(void);

/**
 * Asks for the default line.
 *
 * @return the service's answer; 0 on failure
 */
VESK_API int binder_get_default_line(void);

/**
 * Asks whether a line encrypts its media (SRTP).
 *
 * @param line the line
 * @return 1 if it does, 0 if not; 0 on failure
 */
VESK_API int binder_get_line_srtp_status(int line);

#ifdef __cplusplus
}
#endif

#endif
