#pragma once

#include <atomic>
#include <cstdint>
#include <memory>
#include <mutex>
#include <optional>
#include <vector>

#include <binder/IBinder.h>

namespace android {

namespace transport {
class OwnerProcess;
}

/** The proxy of an object of another process. There is one per object. */
class BpBinder final : public IBinder {
 public:
  /** The object's process counts a reference for this proxy, which is released with it. */
  BpBinder(std::shared_ptr<transport::OwnerProcess> process, uint64_t number);

  const String16& getInterfaceDescriptor() const override;
  bool isBinderAlive() const override;
  status_t pingBinder() override;
  status_t transact(uint32_t code, const Parcel& data, Parcel* reply, uint32_t flags = 0) override;
  status_t linkToDeath(const sp<DeathRecipient>& recipient, void* cookie = nullptr,
                       uint32_t flags = 0) override;
  status_t unlinkToDeath(const wp<DeathRecipient>& recipient, void* cookie = nullptr, uint32_t flags = 0,
                         wp<DeathRecipient>* outRecipient = nullptr) override;
  BpBinder* remoteBinder() override { return this; }

  const transport::OwnerProcess& process() const { return *process_; }
  uint64_t number() const { return number_; }

  /** The object is dead, though its process may live. */
  void markDead() { dead_ = true; }

  /** Calls each recipient once, on a thread of its own. */
  void sendObituaries();

 private:
  static constexpr size_t kMinPruned = 16;

  struct Link {
    wp<DeathRecipient> recipient;
    void* cookie;
  };

  ~BpBinder() override;

  const std::shared_ptr<transport::OwnerProcess> process_;
  const uint64_t number_;
  std::atomic<bool> dead_{false};

  mutable std::mutex mutex_;
  std::vector<Link> links_;
  /** At that size, links of recipients that are gone are removed. */
  size_t prunedAt_ = kMinPruned;
  mutable std::optional<String16> descriptor_;
};

}  // namespace android
