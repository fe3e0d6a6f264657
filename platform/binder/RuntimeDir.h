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

/** An object that can be reached from every process: the process it lives in, and its number
 * there. */
struct Address {
  uint64_t process;
  uint64_t number;
};

/**
 * The directory in which the processes of one user meet: BINDER_RUNTIME_DIR, or a private one. A
 * process that hands out objects listens there on a socket of its own; a service is a symbolic link
 * under its name, whose text is the service's address.
 *
 * Nothing but its path is kept between calls, so that a directory that was unusable may be put
 * right. Failures are logged with their cause.
 */
namespace runtime_dir {

/** Makes the directory if need be; PERMISSION_DENIED if it belongs to somebody else or others can
 * write to it. */
status_t prepare();

/** Where the process of that number listens. False if the path is too long for a socket. */
bool socketAddress(uint64_t process, sockaddr_un* address);

/**
 * Makes the socket on which the process of that number listens, and removes what others have left
 * that were killed. Waits up to a second for those who do the same. Logs nothing: `failure` says
 * what has failed.
 */
status_t openSocket(uint64_t process, UniqueFd* socket, std::string* failure);
void removeSocket(uint64_t process);

/** Whether the socket of that process is still in the directory. */
bool hasSocket(uint64_t process);
/** Whether the process of that number lives and can be reached. Doesn't wait for it. */
bool isListening(uint64_t process);

/** Removes the socket and the names of this process, which is about to exit. */
void removeAllOf(uint64_t process);

/** Puts a name into the directory, in place of an earlier one of the same name. `onPublished` is
 * called before another thread of this process publishes. Logs nothing: `failure` describes the
 * cause. */
status_t publish(const std::string& name, const Address& address, const std::function<void()>& onPublished,
                 std::string* failure);

/** The address under a name; none if there is no such name, or the directory isn't to be
 * trusted. */
std::optional<Address> lookUp(const std::string& name);

/** All names, sorted, whether their processes live or not. */
std::vector<std::string> names();

}  // namespace runtime_dir

}  // namespace android::transport
