/**
 * @file
 * What the headers of the services share. Applications include <vesk/vesk_client.h> or a service's own
 * header.
 */
#ifndef VESK_COMMON_H
#define VESK_COMMON_H

/** The version of these headers, from which the build takes the library's: its number for incompatible
 * changes. */
#define VESK_VERSION_MAJOR 0
/** Its number for additions. */
#define VESK_VERSION_MINOR 2
/** Its number for corrections. */
#define VESK_VERSION_PATCH 0

/** Marks the functions that libvesk_client.so exports. */
#define VESK_API __attribute__((visibility("default")))

/** Tells that a service's process has ended, and the connection with it (convention 11 in
 * <vesk/vesk_client.h>). */
typedef void (*vesk_service_died_callback)(void);

#endif
