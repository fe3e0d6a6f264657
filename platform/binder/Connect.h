#pragma once

#include <sys/types.h>

#include <chrono>
#include <cstdint>
#include <string>

#include <utils/Errors.h>

#include "Frame.h"
#include "UniqueFd.h"

namespace android::transport {

/**
 * Connects to a process and sends `hello`, with the descriptor `memory` unless it is negative.
 * DEAD_OBJECT if there is no such process; `failure` describes any other failure.
 */
status_t openConnection(uint64_t process, const Hello& hello, int memory,
                        std::chrono::steady_clock::time_point deadline, UniqueFd* connection,
                        std::string* failure);

/** Sends a Hello, with the descriptor `memory` unless it is negative; the result of sendmsg(). */
ssize_t sendHello(int socket, const Hello& hello, int memory);

/** Receives a Hello without waiting, with the descriptor that came with it. More than one are
 * closed. False if there is none. */
bool receiveHello(int socket, Hello* hello, UniqueFd* memory);

}  // namespace android::transport
