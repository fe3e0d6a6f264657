/**
 * @file
 * Dial peers, which route dialled numbers.
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

/** Returns the number of configured dial peers; 0 on failure. Exported with this spelling. */
VESK_API int bineder_get_configed_dialpeer_number(void);

/** Fetches a dial peer (VESK_DIALPEER_CONFIG_SIZE bytes). */
VESK_API int binder_dialpeer_get_config(int index, void* dialpeer);

/** Sets a dial peer (VESK_DIALPEER_CONFIG_SIZE bytes). */
VESK_API int binder_dialpeer_set_config(int index, const char* dialpeer);

/** Deletes a dial peer. */
VESK_API void binder_dialpeer_delete_config(int index);

/* Lines */

/** Returns the line maximum of the dial peers; 0 on failure. */
VESK_API int binder_dialpeer_get_line_max(void);

/** Fetches the information on a line. */
VESK_API int binder_dialpeer_get_line_info(int line, char* buffer, int size);

/** Returns whether a line is peer-to-peer; 0 on failure. */
VESK_API int binder_dialpeer_is_p2p_line(int line);

#ifdef __cplusplus
}
#endif

#endif
