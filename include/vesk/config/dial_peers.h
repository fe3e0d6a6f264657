/**
 * @file
 * Dial peers: how the numbers that are dialled are routed.
 *
 * A part of <vesk/config.h>. The conventions in <vesk/vesk_client.h> hold for all functions.
 */
#ifndef VESK_CONFIG_DIAL_PEERS_H
#define VESK_CONFIG_DIAL_PEERS_H

#include <vesk/common.h>

#ifdef __cplusplus
extern "C" {
#endif

/** Size of a dial peer in bytes. */
#define VESK_DIALPEER_CONFIG_SIZE 208

/* Dial peers */

/**
 * Asks how many dial peers are configured. The name is spelt as it is exported.
 *
 * @return the service's answer; 0 on failure
 */
VESK_API int bineder_get_configed_dialpeer_number(void);

/**
 * Fetches a dial peer.
 *
 * @param      index    which of the dial peers
 * @param[out] dialpeer receives a record of VESK_DIALPEER_CONFIG_SIZE bytes
 * @return 0; -1 on failure
 */
VESK_API int binder_dialpeer_get_config(int index, void* dialpeer);

/**
 * Sets a dial peer.
 *
 * @param index    which of the dial peers
 * @param dialpeer a record of VESK_DIALPEER_CONFIG_SIZE bytes
 * @return the service's answer; -1 on failure
 */
VESK_API int binder_dialpeer_set_config(int index, const char* dialpeer);

/**
 * Deletes a dial peer.
 *
 * @param index which of the dial peers
 */
VESK_API void binder_dialpeer_delete_config(int index);

/* Their lines */

/**
 * Asks for the highest line that a dial peer can have.
 *
 * @return the service's answer; 0 on failure
 */
VESK_API int binder_dialpeer_get_line_max(void);

/**
 * Fetches the information on a line.
 *
 * @param      line   the line
 * @param[out] buffer receives the text, cut to fit
 * @param      size   the size of the buffer in bytes
 * @return 0; -1 without a connection
 */
VESK_API int binder_dialpeer_get_line_info(int line, char* buffer, int size);

/**
 * Asks whether a line leads from peer to peer.
 *
 * @param line the line
 * @return 1 if so, 0 if not; 0 on failure
 */
VESK_API int binder_dialpeer_is_p2p_line(int line);

#ifdef __cplusplus
}
#endif

#endif
