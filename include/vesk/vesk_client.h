/**
 * @file
 * The C API of libvesk_client: how a program on the device uses the device's services. Link with
 * -lvesk_client. Each service has a header of its own; this one includes them all.
 *
 * What holds for every function is said here once. The functions' own comments state what is particular to
 * them.
 *
 *  1. Connecting. A service's functions work after its connect function (connect_call_service, ...) has
 * returned true. Before that, and again after the service has died, each of them returns its failure value at
 * once and does nothing else: it doesn't look at its arguments and doesn't log. Services are connected
 * independently, and there is no disconnecting.
 *
 *  2. Calls. A function sends one request to the service's process and waits for the answer, for as long as
 * that takes. If the service dies meanwhile, the call ends as a failed one.
 *
 *  3. Failure. A call fails when there is no connection, when the service dies before it has answered, when
 * it answers with an error, and when the answer doesn't have the promised form. Which of these it was is not
 * told. A function that returns int gives -1, one that returns bool gives false, one that returns void
 * reports nothing, unless its comment says otherwise. The service may itself answer with the failure value;
 * that looks the same.
 *
 *  4. Buffers. What a function hands out through a pointer is written only when the whole call succeeded.
 * After a failed call the buffer holds what it held before.
 *
 *  5. Integers and flags go to the service unchanged and come back unchanged. What they mean is the service's
 * business, and so are the values that it accepts; the library refuses none.
 *
 *  6. Strings are UTF-8 and end with a zero. None may be null: a null string raises the C++ exception
 * std::logic_error, which nothing in the library catches, and so ends a C program (with abort()).
 *
 *  7. Records are plain structures of a fixed size, in bytes, that each function names. They cross byte for
 * byte, zeros included, in the machine's own byte order. Pointers to them must not be null. An answer that is
 * one byte too short or too long is refused whole.
 *
 *  8. Ownership. The library keeps no pointer that it is given, but for the callbacks, and hands out nothing
 * that the application has to free.
 *
 *  9. Threads. Every function may be called from every thread, at any time, several at once.
 *
 * 10. Callbacks run on threads of the library, never on the thread that called connect, and several may run
 * at once, the same one included. The service waits for a callback to return, so it should be short. A
 * callback may call every function, connect included. No callback may wait for a lock that is held by a
 * thread which is in a call to the service: the service may be waiting for the callback in turn. What a
 * callback is given a pointer to is valid until it returns, and may be written to.
 *
 * 11. Death. When the service's process ends, however it does, on_service_died is called once, on a thread of
 * the library, and the connection is gone. The library does not connect again by itself; the callback may.
 *
 * 12. Exit. A program may end at any time by exit() or by returning from main(); callbacks may still begin
 * until the process is gone. Once loaded, the library stays loaded: dlclose() has no effect.
 */
#ifndef VESK_VESK_CLIENT_H
#define VESK_VESK_CLIENT_H

#include <vesk/call.h>

#endif
