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

#include "Complaint.h"
#include "ForeignWork.h"
#include "Frame.h"
#include "UniqueFd.h"

namespace android::transport {

class Lane;
class Peer;
class Remote;

/**
 * The thread that waits for whatever is not a call: new connections and the ends of the watch connections. It
 * never runs the application's code and never waits for another process.
 */
class Reactor {
 public:
  /** Makes this process reachable for others. */
  status_t listen();

  /** Has `remote` told when `connection` ends. Logs nothing. */
  status_t watch(UniqueFd connection, const std::shared_ptr<Remote>& remote);

  /** Has `lane` told when its socket ends, until it is forgotten. False if that can't be. Logs nothing. */
  bool watch(Lane* lane);
  void forget(Lane* lane);

  /** Tells a process that an object which it held is no more, though its process lives. */
  void tellOfDeath(const Peer& holder, ObjectDeath number);

  /** Runs code of the application's that the thread itself must not run. */
  void runForeign(const char* name, std::function<void()> work) { foreign_.run(name, std::move(work)); }

 private:
  /** What a descriptor is for: an accepted connection until its Hello, or one of the two ends of a watch
   * connection. */
  struct Entry {
    UniqueFd connection;
    ucred credentials = {};
    std::shared_ptr<Peer> peer;
    std::shared_ptr<Remote> remote;
  };

  /** A lane for which there is no thread yet. */
  struct WaitingLane {
    std::shared_ptr<UniqueFd> connection;
    std::shared_ptr<Peer> peer;
    uid_t uid;
  };

  using Clock = std::chrono::steady_clock;

  /** A connection that has not said yet what it is for. */
  struct Stranger {
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
  void endLane(int fd);
  void endLanesAgain();
  void listenToOldestStranger();
  void accept();
  void readable(int fd);
  void hear(Entry entry);
  void greet(Entry entry, const Hello& hello);
  bool serveOnThread(const WaitingLane& lane);

  /** Held while the socket is made, for which other processes may have to be waited for. Before mutex_. */
  std::mutex opening_;
  std::mutex mutex_;
  ForeignWork foreign_;
  bool hasForeignThread_ = false;
  /** The signal mask of the application's threads, and so of those that run its code. */
  sigset_t applicationMask_ = {};
  UniqueFd epoll_;
  UniqueFd listening_;
  std::unordered_map<int, Entry> entries_;
  std::unordered_map<int, Lane*> lanes_;
  /** Those that have ended, but may have a thread that still sleeps. */
  std::unordered_set<Lane*> ended_;
  /** Only the thread uses these. */
  std::vector<WaitingLane> waiting_;
  std::deque<Stranger> strangers_;
  bool tooManyStrangers_ = false;
  bool refusesOthers_ = false;
  Complaint acceptFailure_;
};

}  // namespace android::transport
