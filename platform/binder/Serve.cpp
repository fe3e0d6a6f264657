#include <binder/IPCThreadState.h>
#include <binder/Parcel.h>

#include "CallingIdentity.h"
#include "Lane.h"
#include "ParcelAccess.h"
#include "Transport.h"

namespace android::transport {

namespace {

/** Runs a transaction; its status. */
status_t runRequest(const FrameHeader& request, Peer* peer, Parcel* data,
                    const std::vector<ObjectEntry>& objects, Parcel* reply) {
  const sp<BBinder> target = peer->find(request.object);
  if (target == nullptr) return DEAD_OBJECT;
  if (!objects.empty()) {
    if (const status_t status = Transport::self().adopt(data, objects); status != OK) return status;
  }
  Transport::self().poolStarted.wait(false);
  return target->transact(request.code, *data, reply, request.flags);
}

/** Answers a transaction. False if the lane is of no more use. */
bool answerRequest(Lane* lane, const FrameHeader& request, Peer* peer, Parcel* data) {
  Parcel reply;
  FrameHeader answer{.kind = FrameKind::kReply};
  answer.status = runRequest(request, peer, data, lane->objects(), &reply);
  std::vector<ObjectEntry> objects;
  if (answer.status == OK) {
    answer.status =
        reply.dataSize() > kMaxDataSize ? FAILED_TRANSACTION : Transport::self().describe(reply, &objects);
  }
  if (answer.status != OK) return lane->send(answer) == OK;
  if (lane->send(answer, &reply, objects) != OK) return false;
  if (objects.empty()) return true;
  FrameHeader claimed;
  return lane->receive(&claimed, data) == OK && claimed.kind == FrameKind::kClaimed;
}

bool answerAcquire(Lane* lane, Peer* peer, uint64_t number) {
  const sp<BBinder> object = Transport::self().exports.find(number);
  const bool held = object != nullptr && peer->hold(number, object);
  if (lane->send({.kind = FrameKind::kReply, .status = held ? OK : DEAD_OBJECT}) == OK) return true;
  // Who doesn't wait any longer doesn't know that it holds the object.
  if (held) peer->drop(number);
  return false;
}

}  // namespace

void serve(UniqueFd connection, const std::shared_ptr<Peer>& peer, uid_t uid) {
  Lane lane(std::move(connection), Lane::Side::kServes);
  uint64_t acquired = 0;
  for (bool usable = true; usable;) {
    // Anew for each transaction: the one before may have left it cleared.
    CallingIdentity::set({peer->pid(), uid});
    FrameHeader header;
    Parcel data;
    if (lane.receive(&header, &data) != OK) {
      // Who has not taken the answer doesn't know that it holds the object.
      if (acquired != 0 && lane.hasUntaken()) peer->drop(acquired);
      return;
    }
    acquired = header.kind == FrameKind::kAcquire ? header.object : 0;
    switch (header.kind) {
      case FrameKind::kRequest:
        usable = answerRequest(&lane, header, peer.get(), &data);
        break;
      case FrameKind::kAcquire:
        usable = answerAcquire(&lane, peer.get(), header.object);
        break;
      case FrameKind::kRelease:
        peer->drop(header.object);
        break;
      default:
        usable = false;
    }
  }
}

}  // namespace android::transport
