/**
 * @file
 * What the headers of the services share. Applications include <vesk/vesk_client.h> or a service's own
 * header.
 */
#ifndef VESK_COMMON_H
#define VESK_COMMON_H

/** Marks the functions that libvesk_client.so exports. */
#define VESK_API __attribute__((visibility("default")))

/** Tells that a service's process has ended, and the connection with it (convention 11 in
 * <vesk/vesk_client.h>). */
typedef void (*vesk_service_died_callback)(void);

#endif
