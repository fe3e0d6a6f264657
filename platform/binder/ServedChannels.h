#pragma once

#include <cstdint>
#include <memory>
#include <mutex>
#include <unordered_map>

#include <sys/types.h>

#include "Channel.h"
#include "UniqueFd.h"

namespace android::transport {

class HolderProcess;
struct Transport;

/**
 * The channels that this process serves, each on a thread of its own. Those that wait for a request
 * are closed when the process needs room, and all but a few once they were unused for some seconds:
 * the caller opens another when it needs one.
 */
class ServedChannels {
 public:
  explicit ServedChannels(Transport& transport) : transport_(transport) {}

  /** Serves a channel until it ends. The Hello is still in the socket. */
  void serve(UniqueFd socket, const std::shared_ptr<HolderProcess>& holder, uid_t uid);

  /** Closes nearly all channels that wait for a request, for their threads, descriptors and
   * memory. */
  void makeRoom();

  /** Closes unused channels from now on. Called by the reactor when there is another channel. */
  void limitUnused();

 private:
  /** The serving end of a channel; null if the caller goes first or its memory is not valid. */
  std::unique_ptr<Channel> accept(UniqueFd socket);
  void closeUnused();

  Transport& transport_;
  std::mutex mutex_;
  /** With the requests that each had when they were counted last. */
  std::unordered_map<Channel*, uint32_t> channels_;
  /** A timer is set. Used by the reactor's thread only. */
  bool limitsUnused_ = false;
};

}  // namespace android::transport
