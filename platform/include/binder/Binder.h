#pragma once

#include <atomic>
#include <cstdint>

#include <binder/IBinder.h>
#include <utils/Vector.h>

namespace android {

namespace transport {
class Exports;
}

/** The base of the objects that serve transactions. */
class BBinder : public IBinder {
 public:
  BBinder();

  const String16& getInterfaceDescriptor() const override;
  bool isBinderAlive() const override;
  status_t pingBinder() override;

  /** Serves a DUMP_TRANSACTION. The host platform sends no file descriptors: `fd` is -1 and `args`
   * is empty. */
  virtual status_t dump(int fd, const Vector<String16>& args);

  /** Serves a ping and the debug-pid transaction, and runs onTransact for the others, on the
   * calling thread. */
  status_t transact(uint32_t code, const Parcel& data, Parcel* reply, uint32_t flags = 0) final;

  status_t linkToDeath(const sp<DeathRecipient>& recipient, void* cookie = nullptr,
                       uint32_t flags = 0) override;
  status_t unlinkToDeath(const wp<DeathRecipient>& recipient, void* cookie = nullptr, uint32_t flags = 0,
                         wp<DeathRecipient>* outRecipient = nullptr) override;

  BBinder* localBinder() override;

 protected:
  ~BBinder() override;

  /** Serves the other transactions of the platform; UNKNOWN_TRANSACTION for every other code. */
  virtual status_t onTransact(uint32_t code, const Parcel& data, Parcel* reply, uint32_t flags = 0);

 private:
  friend class transport::Exports;
  /** The number of this object in other processes; 0 until it is first sent to one. */
  std::atomic<uint64_t> exportedAs_{0};
};

/** The base of every proxy: holds the remote object. */
class BpRefBase : public virtual RefBase {
 protected:
  explicit BpRefBase(const sp<IBinder>& o);
  ~BpRefBase() override;

  IBinder* remote() { return remote_.get(); }
  IBinder* remote() const { return remote_.get(); }

 private:
  BpRefBase(const BpRefBase&) = delete;
  BpRefBase& operator=(const BpRefBase&) = delete;

  const sp<IBinder> remote_;
};

}  // namespace android
