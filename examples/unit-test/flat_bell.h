/*
 * The bell of a flat: rings the telephones of those who live there, one after the other, until one of them
 * can be called.
 */
#ifndef FLAT_BELL_H
#define FLAT_BELL_H

#include <stdbool.h>
#include <stddef.h>

#ifdef __cplusplus
extern "C" {
#endif

/* To be called first, and again after the service has died. False if the call service isn't there. */
bool flat_bell_connect(void);

/* False before the first connect, and when the service has died since the last one. */
bool flat_bell_works(void);

/* Calls the first of the numbers that can be called. Its channel, or -1 if there is none. */
int flat_bell_ring(const char* const* numbers, size_t count);

/* How many calls the service has refused with a reason. */
int flat_bell_refusals(void);

#ifdef __cplusplus
}
#endif

#endif
