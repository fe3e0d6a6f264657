#include "ServedChannels.h"

#include <binder/IPCThreadState.h>
#include <binder/Parcel.h>
#include <poll.h>
#include <unistd.h>

#include <chrono>
#include <thread>
#include <utility>

#include "CallingIdentity.h"
#include "Connect.h"
#include "ParcelAccess.h"
#include "Transport.h"

namespace android::transport {

namespace {

/** The number of unused channels that stay open. */
constexpr size_t kKeptChannels = 8;
/** Channels that stay open even in a shortage, in which no other can be opened. */
constexpr size_t kAlwaysKept = 2;
/** A channel is unused after one to two times this time without a request. */
constexpr std::chrono::seconds kUnusedTime(2);
constexpr std::chrono::milliseconds kRetryTime(50);

/** Runs a transaction and returns its status. */
status_t runRequest(const FrameHeader& request, HolderProcess* holder, Parcel* data,
                    const std::vector<ObjectEntry>& objects, Parcel* reply) {
  const sp<BBinder> target = holder->find(request.object);
  if (target == nullptr) return DEAD_OBJECT;
  if (!objects.empty()) {
    if (const status_t status = Transport::self().unflattenBinders(data, objects); status != OK)
      return status;
  }
  // A nested call needs no thread pool: a device runs it on the thread that waits in the outer call,
  // here it has a thread of its own.
  if (!SpinLimiter::self().isCalling()) Transport::self().poolStarted.wait(false);
  return target->transact(request.code, *data, reply, request.flags);
}

/** Answers a transaction. False if the channel can't be used again. */
bool answerRequest(Channel* channel, const FrameHeader& request, HolderProcess* holder, Parcel* data) {
  Parcel reply;
  FrameHeader answer{.kind = FrameKind::kReply};
  answer.status = runRequest(request, holder, data, channel->objects(), &reply);
  std::vector<ObjectEntry> objects;
  if (answer.status == OK) {
    answer.status = reply.dataSize() > kMaxDataSize ? FAILED_TRANSACTION
                                                    : Transport::self().flattenBinders(reply, &objects);
  }
  if (answer.status != OK) return channel->send(answer) == OK;
  if (channel->send(answer, &reply, objects) != OK) return false;
  if (objects.empty()) return true;
  FrameHeader claimed;
  return channel->receive(&claimed, data) == OK && claimed.kind == FrameKind::kClaimed;
}

/** Answers an acquire; likewise. */
bool answerAcquire(Channel* channel, HolderProcess* holder, uint64_t number) {
  const sp<BBinder> object = Transport::self().exports.find(number);
  const bool held = object != nullptr && holder->hold(number, object);
  if (channel->send({.kind = FrameKind::kReply, .status = held ? OK : DEAD_OBJECT}) == OK) return true;
  // The caller timed out and does not know of its reference.
  if (held) holder->drop(number);
  return false;
}

}  // namespace

std::unique_ptr<Channel> ServedChannels::accept(UniqueFd socket) {
  // Without a free descriptor the kernel would drop the one that comes with the Hello.
  while (!UniqueFd(::dup(socket.get())).valid()) {
    makeRoom();
    pollfd end{socket.get(), POLLRDHUP, 0};
    if (::poll(&end, 1, 0) > 0) return nullptr;
    std::this_thread::sleep_for(kRetryTime);
  }
  Hello hello;
  UniqueFd memory;
  if (!receiveHello(socket.get(), &hello, &memory)) return nullptr;
  SharedSlots slots = SharedSlots::accept(memory);
  if (!slots) return nullptr;
  auto channel = std::make_unique<Channel>(std::move(socket), std::move(slots));
  return channel->watchEnd(&transport_.reactor) == OK ? std::move(channel) : nullptr;
}

void ServedChannels::serve(UniqueFd socket, const std::shared_ptr<HolderProcess>& holder, uid_t uid) {
  const std::unique_ptr<Channel> channel = accept(std::move(socket));
  if (channel == nullptr) return;
  {
    const std::lock_guard lock(mutex_);
    channels_.emplace(channel.get(), 0);
  }
  uint64_t acquired = 0;
  for (bool usable = true; usable;) {
    // For each transaction, since the one before may have cleared it.
    CallingIdentity::set({holder->pid(), uid});
    FrameHeader header;
    Parcel data;
    if (channel->awaitRequest() != OK || channel->receive(&header, &data) != OK) {
      // A caller that has not taken the answer does not know of its reference.
      if (acquired != 0 && !channel->awaitTaken()) holder->drop(acquired);
      break;
    }
    acquired = header.kind == FrameKind::kAcquire ? header.object : 0;
    usable = header.kind == FrameKind::kRequest   ? answerRequest(channel.get(), header, holder.get(), &data)
             : header.kind == FrameKind::kAcquire ? answerAcquire(channel.get(), holder.get(), header.object)
                                                  : false;
  }
  const std::lock_guard lock(mutex_);
  channels_.erase(channel.get());
}

void ServedChannels::makeRoom() {
  const std::lock_guard lock(mutex_);
  size_t kept = 0;
  for (const auto& [channel, requests] : channels_) {
    if (kept < kAlwaysKept) {
      ++kept;
    } else {
      channel->retire();
    }
  }
}

void ServedChannels::limitUnused() {
  if (!std::exchange(limitsUnused_, true)) {
    transport_.reactor.runAfter(kUnusedTime, [this] { closeUnused(); });
  }
}

void ServedChannels::closeUnused() {
  limitsUnused_ = false;
  const std::lock_guard lock(mutex_);
  size_t left = channels_.size();
  for (auto& [channel, requests] : channels_) {
    const uint32_t before = std::exchange(requests, channel->requests());
    if (left > kKeptChannels && requests == before && channel->retire()) --left;
  }
  if (left > kKeptChannels) limitUnused();
}

}  // namespace android::transport
