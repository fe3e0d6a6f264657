/**
 * @file
 * The definitions that the headers of the services share. Include <vesk/vesk_client.h> or the
 * header of a service instead.
 */
#ifndef VESK_COMMON_H
#define VESK_COMMON_H

/** The version of the headers and the library: major, for incompatible changes. */
#define VESK_VERSION_MAJOR 0
/** Minor, for additions. */
#define VESK_VERSION_MINOR 2
/** Patch, for corrections. */
#define VESK_VERSION_PATCH 0

/** Marks the functions that libvesk_client.so exports. */
#define VESK_API __attribute__((visibility("default")))

/** Called when the process of a service has ended (convention 12 in <vesk/vesk_client.h>). */
typedef void (*vesk_service_died_callback)(void);

#endif
