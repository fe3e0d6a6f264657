#include "BpBinder.h"

#include <binder/Parcel.h>

#include <algorithm>
#include <utility>

#include "OwnerProcesses.h"
#include "Transport.h"

namespace android {

BpBinder::BpBinder(std::shared_ptr<transport::OwnerProcess> process, uint64_t number)
    : process_(std::move(process)), number_(number) {}

BpBinder::~BpBinder() { process_->release(*this); }

const String16& BpBinder::getInterfaceDescriptor() const {
  {
    const std::lock_guard lock(mutex_);
    if (descriptor_) return *descriptor_;
  }
  Parcel data;
  Parcel reply;
  String16 answer;
  if (process_->transact(number_, INTERFACE_TRANSACTION, data, &reply, 0) == OK)
    answer = reply.readString16();

  const std::lock_guard lock(mutex_);
  if (!descriptor_) {
    // Not kept after a failure, so that the next call asks again.
    static const String16& none = *new String16();
    if (answer.empty()) return none;
    descriptor_ = std::move(answer);
  }
  return *descriptor_;
}

bool BpBinder::isBinderAlive() const { return !dead_ && !process_->isDead(); }

status_t BpBinder::pingBinder() {
  Parcel data;
  Parcel reply;
  const status_t status = transact(PING_TRANSACTION, data, &reply);
  return status == OK ? reply.readInt32() : status;
}

status_t BpBinder::transact(uint32_t code, const Parcel& data, Parcel* reply, uint32_t flags) {
  if (dead_) return DEAD_OBJECT;
  Parcel unwanted;
  return process_->transact(number_, code, data, reply == nullptr ? &unwanted : reply, flags);
}

status_t BpBinder::linkToDeath(const sp<DeathRecipient>& recipient, void* cookie, uint32_t /*flags*/) {
  if (recipient == nullptr) return BAD_VALUE;
  std::vector<sp<DeathRecipient>> living;  // Released without the lock: a destructor may call back.
  // sendObituaries() takes the same lock: either it finds the link, or the death is seen here.
  const std::lock_guard lock(mutex_);
  if (!isBinderAlive()) return DEAD_OBJECT;
  if (links_.size() >= prunedAt_) {
    std::erase_if(links_, [&](const Link& link) {
      living.push_back(link.recipient.promote());
      return living.back() == nullptr;
    });
    prunedAt_ = std::max(kMinPruned, 2 * links_.size());
  }
  links_.push_back({recipient, cookie});
  return OK;
}

status_t BpBinder::unlinkToDeath(const wp<DeathRecipient>& recipient, void* cookie, uint32_t /*flags*/,
                                 wp<DeathRecipient>* outRecipient) {
  const std::lock_guard lock(mutex_);
  if (!isBinderAlive()) return DEAD_OBJECT;
  const bool anyRecipient = recipient == nullptr;
  const auto link = std::find_if(links_.begin(), links_.end(), [&](const Link& candidate) {
    return anyRecipient ? candidate.cookie == cookie : candidate.recipient == recipient;
  });
  if (link == links_.end()) return NAME_NOT_FOUND;
  if (outRecipient != nullptr) *outRecipient = link->recipient;
  links_.erase(link);
  return OK;
}

void BpBinder::sendObituaries() {
  std::vector<Link> links;
  {
    const std::lock_guard lock(mutex_);
    links.swap(links_);
  }
  const sp<BpBinder> self(this);
  for (const Link& link : links) {
    sp<DeathRecipient> recipient = link.recipient.promote();
    if (recipient == nullptr) continue;
    transport::Transport::self().reactor.callbacks().run(
        [self, recipient = std::move(recipient)] { recipient->binderDied(self); });
  }
}

}  // namespace android
