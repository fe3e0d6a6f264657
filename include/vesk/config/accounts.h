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

/** Fetches the basic settings of an account (VESK_ACCOUNTS_BASIC_CONFIG_SIZE bytes). */
VESK_API int binder_get_accounts_basic_config(int account, void* config);

/** Sets the basic settings of an account (VESK_ACCOUNTS_BASIC_CONFIG_SIZE bytes). */
VESK_API int binder_set_accounts_basic_config(int account, const char* config);

/** Fetches the advanced settings of an account (VESK_ACCOUNTS_ADVANCED_CONFIG_SIZE bytes). */
VESK_API int binder_get_accounts_advanced_config(int account, void* config);

/** Sets the advanced settings of an account (VESK_ACCOUNTS_ADVANCED_CONFIG_SIZE bytes). */
VESK_API int binder_set_accounts_advanced_config(int account, const char* config);

/* Lines */

/** Returns the number of lines. */
VESK_API int binder_get_line_num(void);

/** Fetches the information on a line (VESK_LINE_INFO_SIZE bytes). */
VESK_API int binder_get_line_info(int index, void* info);

/** Returns the number of active lines. */
VESK_API int binder_get_active_line_num(void);

/** Fetches the information on an active line (VESK_LINE_INFO_SIZE bytes). */
VESK_API int binder_get_active_line_info(int index, void* info);

/** Returns the default "ext" line. */
VESK_API int binder_get_default_ext_line(int flag);

/** Sets the default "ext" line. */
VESK_API int binder_set_default_ext_line(int line);

/* Default line and encryption */

/** Returns whether the default line is enabled; 0 on failure. */
VESK_API int binder_get_default_line_enable(void);

/** Returns the default line; 0 on failure. */
VESK_API int binder_get_default_line(void);

/** Returns whether a line encrypts its media (SRTP); 0 on failure. */
VESK_API int binder_get_line_srtp_status(int line);

#ifdef __cplusplus
}
#endif

#endif
