#pragma once

#include <sys/un.h>

#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <vector>

#include <utils/Errors.h>

#include "UniqueFd.h"

namespace android::transport {

/** The address of an object: its process, and its number there. */
struct Address {
  uint64_t process;
  uint64_t number;
};

/**
 * The runtime directory of one user's processes: BINDER_RUNTIME_DIR, or a private one. A process
 * that hands out objects listens there on a socket of its own. A registered name is a symbolic link
 * whose text is the service's address.
 *
 * Only its path is kept between calls, so that a directory can be repaired. Failures are logged
 * with their cause.
 */
namespace runtime_dir {

/** Makes the directory unless it exists; PERMISSION_DENIED if another user owns it or can write to
 * it. */
status_t prepare();

/** The socket of a process. False if the path is too long for a socket. */
bool socketAddress(uint64_t process, sockaddr_un* address);

/**
 * Makes the listening socket of a process, and removes the files of killed processes. Waits up to a
 * second for other processes that do the same. Logs nothing: `failure` describes the cause.
 */
status_t openSocket(uint64_t process, UniqueFd* socket, std::string* failure);
void removeSocket(uint64_t process);

/** True while the socket of that process is in the directory. */
bool hasSocket(uint64_t process);
/** True if that process lives and accepts connections. Doesn't wait for it. */
bool isListening(uint64_t process);

/** Removes the socket and the names of this process, which is about to exit. */
void removeAllOf(uint64_t process);

/** Registers a name, in place of an earlier one. `onPublished` is called before another thread of this
 * process publishes. Logs nothing: `failure` describes the cause. */
status_t publish(const std::string& name, const Address& address, const std::function<void()>& onPublished,
                 std::string* failure);

/** The address under a name; none if there is no such name, or the directory can't be
 * trusted. */
std::optional<Address> lookUp(const std::string& name);

/** All names, sorted, also those of dead processes. */
std::vector<std::string> names();

}  // namespace runtime_dir

}  // namespace android::transport
