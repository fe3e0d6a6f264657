#pragma once

#include <sys/socket.h>

#include <chrono>
#include <cstddef>
#include <deque>
#include <memory>
#include <mutex>
#include <string>
#include <vector>

#include <binder/Binder.h>
#include <utils/Errors.h>

#include "Frame.h"
#include "LogThrottle.h"
#include "Reactor.h"
#include "UniqueFd.h"

namespace android::transport {

class HolderProcess;
struct Transport;

/** Accepts the connections of other processes, and learns from their Hello what each is for. */
class Listener {
 public:
  explicit Listener(Transport& transport) : transport_(transport) {}

  /** Makes this process reachable for others. From any thread. */
  status_t listen();

 private:
  struct Socket {
    UniqueFd fd;
    Reactor::Key key = 0;
  };
  /** An accepted connection that has not sent its Hello. */
  struct PendingConnection {
    UniqueFd socket;
    ucred credentials = {};
    std::chrono::steady_clock::time_point deadline;
    Reactor::Key key = 0;
  };
  using PendingPointer = std::shared_ptr<PendingConnection>;

  bool isReachable();
  status_t openSocket(std::string* failure);

  // The rest runs on the reactor's thread.
  void accept(const Socket& socket);
  void onAccepted(UniqueFd connection);
  void onReadable(PendingPointer connection);
  void onWatch(PendingConnection* connection, Hello hello);
  void onReleases(const std::shared_ptr<HolderProcess>& holder);
  void destroy(std::vector<sp<BBinder>> objects);
  /** Serves a channel on a thread, as soon as there can be one. */
  void startServer(const PendingPointer& connection, const std::shared_ptr<HolderProcess>& holder);
  /** Stops watching a descriptor for a while, since a shortage would make it a busy loop. */
  void pause(Reactor::Key key);
  void drop(const PendingPointer& connection);
  void dropLate();
  void endHolder(const std::shared_ptr<HolderProcess>& holder);
  void logFailure(const char* what, int error);

  Transport& transport_;
  /** Held while the socket is made, which may wait for other processes. Before mutex_. */
  std::mutex opening_;
  std::mutex mutex_;
  std::shared_ptr<Socket> listening_;

  std::deque<PendingPointer> pendingConnections_;
  /** A timer for the oldest is set. */
  bool dropsLate_ = false;
  bool tooManyPendingConnections_ = false;
  bool refusesOthers_ = false;
  LogThrottle acceptFailure_;
  LogThrottle threadFailure_;
};

}  // namespace android::transport
