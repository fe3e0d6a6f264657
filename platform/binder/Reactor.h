#pragma once

#include <sys/socket.h>

#include <chrono>
#include <deque>
#include <functional>
#include <memory>
#include <mutex>
#include <string>
#include <unordered_map>
#include <unordered_set>
#include <utility>
#include <vector>

#include <utils/Errors.h>

#include "CallbackExecutor.h"
#include "Frame.h"
#include "LogThrottle.h"
#include "UniqueFd.h"

namespace android::transport {

class Channel;
class HolderProcess;
class OwnerProcess;

/**
 * The thread that waits for whatever is not a call: new connections and the ends of the watch connections. It
 * never runs the application's code and never waits for another process.
 */
class Reactor {
 public:
  /** Makes this process reachable for others. */
  status_t listen();

  /** Has `remote` told when `connection` ends. Logs nothing. */
  status_t watch(UniqueFd connection, const std::shared_ptr<OwnerProcess>& remote);

  /** Has `channel` told when its socket ends, until it is forgotten. False if that can't be. Logs nothing. */
  bool watch(Channel* channel);
  void forget(Channel* channel);

  /** Tells a process that an object which it held is no more, though its process lives. */
  void tellOfDeath(const HolderProcess& holder, ObjectDeath number);

  /** Runs code of the application's that the thread itself must not run. */
  void runCallback(const char* name, std::function<void()> work) { callbacks_.run(name, std::move(work)); }

 private:
  /** What a descriptor is for: an accepted connection until its Hello, or one of the two ends of a watch
   * connection. */
  struct Entry {
    UniqueFd connection;
    ucred credentials = {};
    std::shared_ptr<HolderProcess> peer;
    std::shared_ptr<OwnerProcess> remote;
  };

  /** A channel for which there is no thread yet. */
  struct WaitingChannel {
    std::shared_ptr<UniqueFd> connection;
    std::shared_ptr<HolderProcess> peer;
    uid_t uid;
  };

  using Clock = std::chrono::steady_clock;

  /** A connection that has not said yet what it is for. */
  struct PendingConnection {
    int fd;
    Clock::time_point deadline;
  };

  bool isReachable();
  status_t openSocket(std::string* failure);
  /** These two are called under the lock, and log nothing. */
  status_t start();
  status_t add(Entry entry);
  Entry take(int fd);
  void run();
  int timeoutMs();
  void endChannel(int fd);
  void endChannelsAgain();
  void dropOldestPendingConnection();
  /** False if this is not the listening socket. */
  bool accept(int fd);
  void accepted(Entry entry);
  void readable(int fd);
  void onWatchMessage(Entry entry);
  void onHello(Entry entry, const Hello& hello);
  bool serveOnThread(const WaitingChannel& channel);

  /** Held while the socket is made, for which other processes may have to be waited for. Before mutex_. */
  std::mutex opening_;
  std::mutex mutex_;
  CallbackExecutor callbacks_;
  bool hasForeignThread_ = false;
  /** The signal mask of the application's threads, and so of those that run its code. */
  sigset_t applicationMask_ = {};
  UniqueFd epoll_;
  UniqueFd listening_;
  std::unordered_map<int, Entry> entries_;
  std::unordered_map<int, Channel*> channels_;
  /** Those that have ended, but may have a thread that still sleeps. */
  std::unordered_set<Channel*> ended_;
  /** Only the thread uses these. */
  std::vector<WaitingChannel> waiting_;
  std::deque<PendingConnection> pendingConnections_;
  bool tooManyPendingConnections_ = false;
  bool refusesOthers_ = false;
  LogThrottle acceptFailure_;
};

}  // namespace android::transport
