/**
 * @file
 * The C API of libvesk_client, with which programs on the device use the device's services. Each service has
 * a header of its own; this one includes them all. They need C11 or C++17.
 *
 * What holds for all functions stands here; a function's own comment says what is particular to it.
 *
 *  1. Connecting. A service's functions work once its connect function (connect_call_service, ...) has
 *     returned true. Before that, and again after the service has died, they return their failure value at
 *     once: nothing is sent or logged, and their arguments are not looked at. Services are connected one by
 *     one. There is no disconnecting.
 *
 *  2. Calls. A function sends one request to the service's process and waits for the answer, however long the
 *     service takes.
 *
 *  3. Failure. A call fails without a connection, if the service dies before it has answered, if it answers
 *     with an error, and if a record in its answer has the wrong size. Which of these it was is not told: a
 *     function that returns int gives -1, one that returns bool gives false, and one that returns void tells
 *     nothing, unless its comment says otherwise. The service can give the same values as its answer.
 *
 *  4. Buffers. What comes through a pointer is written only if the call succeeded, and then completely.
 *     Otherwise the buffer is untouched.
 *
 *  5. Integers and flags are the service's to interpret. The library passes them on unchanged, both ways, and
 *     refuses none.
 *
 *  6. Strings are UTF-8, end with a zero and may have any length that the binder carries (1 MiB a call). They
 *     must not be null: that raises std::logic_error, which nothing in the library catches, so that it ends a
 *     program in C.
 *
 *  7. Records are structures of a fixed size. Their bytes cross as they are, zeros and all. Sizes are given
 *     in bytes by a constant. Pointers to records must not be null, unless a function's comment allows it.
 *
 *  8. Ownership. The library keeps none of the pointers that it is given but the callbacks, and gives out
 *     nothing to be freed but a vesk_records (see <vesk/array.h>).
 *
 *  9. Threads. Every function may be called on every thread, and on several at once.
 *
 * 10. Callbacks run on the library's threads, several at once, the same one included. One that the service
 *     causes while it works on a call may on some platforms run on the thread that waits in that call. The
 *     service waits for a callback to return, so a callback should be short, and must not wait for a lock
 *     that a thread holds while it calls the service. It may call every function, connect included. Pointers
 *     that it is given are valid until it returns; records are copies made for it, which it may change.
 *
 * 11. Death. When the service's process ends, in whatever way, on_service_died is called once on one of the
 *     library's threads. While it runs, and from then on, the service's functions fail. The library does not
 *     connect again by itself; on_service_died may do so. Of the deaths of the relay service and the
 *     external-key service nobody is told: their connections stay, and calls on them fail.
 *
 * 12. Exit and fork. A program may call exit() or return from main() at any time; callbacks may begin until
 *     the process is gone. The library, once loaded, stays loaded: dlclose() does nothing. A child made by
 *     fork() has no connections of its own, and may only call exec or exit; it leaves its parent's alone.
 */
#ifndef VESK_VESK_CLIENT_H
#define VESK_VESK_CLIENT_H

#include <vesk/call.h>
#include <vesk/config.h>
#include <vesk/database.h>
#include <vesk/external_key.h>
#include <vesk/misc.h>
#include <vesk/relay.h>

#endif
