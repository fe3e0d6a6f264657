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
 * The channels that this process serves, each on a thread of its own. Channels that wait for a
 * request are closed when the process runs short of descriptors, threads or memory, and all but a
 * few after some seconds without a request. Their callers open others when they need them.
 */
class ServedChannels {
 public:
  explicit ServedChannels(Transport& transport) : transport_(transport) {}

  /** Serves a channel until it ends. The Hello is still in the socket. */
  void serve(UniqueFd socket, const std::shared_ptr<HolderProcess>& holder, uid_t uid);

  /** Closes nearly all channels that wait for a request, to free threads, descriptors and
   * memory. */
  void makeRoom();

  /** Starts the timer that closes unused channels. Called on the reactor for each new channel. */
  void limitUnused();

 private:
  /** The serving end of a channel; null if the caller closes it first or its memory is invalid. */
  std::unique_ptr<Channel> accept(UniqueFd socket);
  void closeUnused();

  Transport& transport_;
  std::mutex mutex_;
  /** Each with its number of requests at the last check. */
  std::unordered_map<Channel*, uint32_t> channels_;
  /** A timer is set. Used by the reactor's thread only. */
  bool limitsUnused_ = false;
};

}  // namespace android::transport
