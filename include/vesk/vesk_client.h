/**
 * @file
 * The C API of libvesk_client, with which programs use the device's services. Each service has a
 * header of its own; this one includes them all. They need C11 or C++17.
 *
 * These conventions hold for every function. A function's own comment adds what is particular to
 * it.
 *
 *  1. Connecting. The functions of a service work once its connect function has returned true.
 *     Before that, and again after the service has died, they return their failure value at once:
 *     nothing is sent or logged, and no argument is looked at. Each service is connected
 *     separately. There is no function that disconnects.
 *
 *  2. Calls. A function sends one request to the service's process and waits for the answer, with
 *     no time limit.
 *
 *  3. Results. A function that returns int returns the number that the service answers; one that
 *     fetches a record or a text returns 0. "Returns whether" stands for 1 if so and 0 if not.
 *
 *  4. Failure. A call fails without a connection, if the service dies before it answers, if it
 *     answers with an error, and if a record in its answer has the wrong size; the result does not
 *     tell these apart. "On failure" covers them all. A function that returns int then returns -1
 *     unless its comment names another value; one that returns void gives no sign. The service can
 *     answer the same values.
 *
 *  5. Buffers. A function writes through a pointer only if the call succeeded, and then the whole
 *     result; otherwise the buffer is untouched. A parameter `size` is the size of the buffer in
 *     bytes.
 *
 *  6. Integers and flags. The service defines what a number means. The library passes numbers on
 *     unchanged in both directions and refuses none. Pass 0 or 1 as a flag; where the service takes
 *     a bool, other numbers count as 1.
 *
 *  7. Strings are UTF-8, end with a zero byte and may have any length that the binder carries (1
 *     MiB a call). They must not be null: a null string raises std::logic_error, which nothing in
 *     the library catches, so that it ends a program in C.
 *
 *  8. Records are structures of a fixed size, whose layout the service defines where no header
 *     shows it. Their bytes are transferred unchanged, zeros included. "(VESK_..._SIZE bytes)" is
 *     the size of the record behind the pointer parameter; a record passed as const char* is not a
 *     string. The pointer must not be null. Where a comment says "Null: -1", a null pointer is
 *     allowed, and the function returns -1 and sends nothing.
 *
 *  9. Ownership. The library keeps none of the pointers passed to it except the callbacks, and
 *     returns nothing to be freed except a vesk_records (see <vesk/array.h>).
 *
 * 10. Threads. Every function may be called on any thread, and on several at once.
 *
 * 11. Callbacks run on the library's threads, several at once, and the same callback may run on two
 *     threads. On some platforms, an event that the service sends while it works on a call runs on
 *     the thread that waits in that call. The service waits until a callback returns: keep
 *     callbacks short, and take no lock that a thread holds while it calls the service. A callback
 *     may call every function, connect included. Its pointer arguments are valid until it returns;
 *     records are copies that it may change.
 *
 * 12. Death. When the process of a service ends, on_service_died is called once, on a thread of the
 *     library; if the service dies during the connect and no thread can be started, on the thread
 *     that connects. While it runs, the connection is still there, and functions send to the dead
 *     service: they fail, but may log, and look at their arguments. Once it has returned, the
 *     connection is gone. The library then logs "<service name> is died. " under the tag
 *     "CallClient", whichever the service. It does not connect again by itself; on_service_died
 *     may. There is no death notification for the relay and external-key services: their
 *     connections stay, and calls fail.
 *
 * 13. Service in the same process. Calls go to the service object directly. There is no death
 *     notification, and a method that fails leaves results as it set them: the function may return
 *     or copy these.
 *
 * 14. Exit and fork. A program may call exit() or return from main() at any time; callbacks may
 *     begin until the process is gone. Once loaded, the library stays loaded: dlclose() does
 *     nothing. A child that fork() makes after a connect has no connections and may only call exec
 *     or exit; it leaves those of its parent alone.
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
