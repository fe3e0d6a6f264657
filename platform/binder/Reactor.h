#pragma once

#include <sys/socket.h>

#include <memory>
#include <mutex>
#include <unordered_map>

#include <utils/Errors.h>

#include "Frame.h"
#include "UniqueFd.h"

namespace android::transport {

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

  /** Has `remote` told when `connection` ends. */
  status_t watch(UniqueFd connection, const std::shared_ptr<Remote>& remote);

 private:
  /** What a descriptor is for: an accepted connection until its Hello, or one of the two ends of a watch
   * connection. */
  struct Entry {
    UniqueFd connection;
    ucred credentials = {};
    std::shared_ptr<Peer> peer;
    std::shared_ptr<Remote> remote;
  };

  status_t start();
  status_t add(Entry entry);
  Entry take(int fd);
  void run();
  void accept();
  void readable(int fd);
  void greet(Entry entry, const Hello& hello);

  std::mutex mutex_;
  UniqueFd epoll_;
  UniqueFd listening_;
  std::unordered_map<int, Entry> entries_;
};

}  // namespace android::transport
