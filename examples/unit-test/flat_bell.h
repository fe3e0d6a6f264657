/*
 * The bell of a flat: tries the telephones of the residents in turn until the call service accepts
 * a call.
 */
#ifndef FLAT_BELL_H
#define FLAT_BELL_H

#include <stdbool.h>
#include <stddef.h>

#ifdef __cplusplus
extern "C" {
#endif

/* To be called first, and again after the service has died. False if the call service is not
 * running. */
bool flat_bell_connect(void);

/* True from a successful connect until the service dies. */
bool flat_bell_works(void);

/* Calls the first number that is accepted. Returns the channel of the call, or -1. */
int flat_bell_ring(const char* const* numbers, size_t count);

/* The number of calls that the service refused with a reason. */
int flat_bell_refusals(void);

#ifdef __cplusplus
}
#endif

#endif
