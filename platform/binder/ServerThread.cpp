#include <binder/IPCThreadState.h>
#include <binder/Parcel.h>

#include "CallingIdentity.h"
#include "Channel.h"
#include "ParcelAccess.h"
#include "Transport.h"

namespace android::transport {

namespace {

/** Runs a transaction; its status. */
status_t runRequest(const FrameHeader& request, HolderProcess* holder, Parcel* data,
                    const std::vector<ObjectEntry>& objects, Parcel* reply) {
  const sp<BBinder> target = holder->find(request.object);
  if (target == nullptr) return DEAD_OBJECT;
  if (!objects.empty()) {
    if (const status_t status = Transport::self().unflattenBinders(data, objects); status != OK)
      return status;
  }
  Transport::self().poolStarted.wait(false);
  return target->transact(request.code, *data, reply, request.flags);
}

/** Answers a transaction. False if the channel is of no more use. */
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

bool answerAcquire(Channel* channel, HolderProcess* holder, uint64_t number) {
  const sp<BBinder> object = Transport::self().exports.find(number);
  const bool held = object != nullptr && holder->hold(number, object);
  if (channel->send({.kind = FrameKind::kReply, .status = held ? OK : DEAD_OBJECT}) == OK) return true;
  // The caller timed out and does not know of its reference.
  if (held) holder->drop(number);
  return false;
}

}  // namespace

void serve(UniqueFd connection, const std::shared_ptr<HolderProcess>& holder, uid_t uid) {
  Channel channel(std::move(connection), Channel::Side::kServes);
  uint64_t acquired = 0;
  for (bool usable = true; usable;) {
    // Anew for each transaction: the one before may have left it cleared.
    CallingIdentity::set({holder->pid(), uid});
    FrameHeader header;
    Parcel data;
    if (channel.receive(&header, &data) != OK) {
      // A caller that has not taken the answer does not know of its reference.
      if (acquired != 0 && channel.hasUntaken()) holder->drop(acquired);
      return;
    }
    acquired = header.kind == FrameKind::kAcquire ? header.object : 0;
    switch (header.kind) {
      case FrameKind::kRequest:
        usable = answerRequest(&channel, header, holder.get(), &data);
        break;
      case FrameKind::kAcquire:
        usable = answerAcquire(&channel, holder.get(), header.object);
        break;
      case FrameKind::kRelease:
        holder->drop(header.object);
        break;
      default:
        usable = false;
    }
  }
}

}  // namespace android::transport
