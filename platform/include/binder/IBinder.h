#pragma once

#include <cstdint>

#include <utils/Errors.h>
#include <utils/RefBase.h>
#include <utils/String16.h>

namespace android {

class BBinder;
class BpBinder;
class IInterface;
class Parcel;

constexpr uint32_t B_PACK_CHARS(char c1, char c2, char c3, char c4) {
  return static_cast<uint32_t>(static_cast<unsigned char>(c1)) << 24 |
         static_cast<uint32_t>(static_cast<unsigned char>(c2)) << 16 |
         static_cast<uint32_t>(static_cast<unsigned char>(c3)) << 8 |
         static_cast<uint32_t>(static_cast<unsigned char>(c4));
}

/**
 * An object that can be called from another process: a BBinder where it lives, a proxy everywhere
 * else. All members may be called from any thread.
 */
class IBinder : public virtual RefBase {
 public:
  enum : uint32_t {
    FIRST_CALL_TRANSACTION = 0x00000001,
    LAST_CALL_TRANSACTION = 0x00ffffff,

    PING_TRANSACTION = B_PACK_CHARS('_', 'P', 'N', 'G'),
    DUMP_TRANSACTION = B_PACK_CHARS('_', 'D', 'M', 'P'),
    INTERFACE_TRANSACTION = B_PACK_CHARS('_', 'N', 'T', 'F'),
    /** Succeed without effect: there is no shell and there are no system properties here. */
    SHELL_COMMAND_TRANSACTION = B_PACK_CHARS('_', 'C', 'M', 'D'),
    SYSPROPS_TRANSACTION = B_PACK_CHARS('_', 'S', 'P', 'R'),
    /** The reply is an int32, the id of the object's process. */
    DEBUG_PID_TRANSACTION = B_PACK_CHARS('_', 'P', 'I', 'D'),
  };

  IBinder() = default;
  IBinder(const IBinder&) = delete;
  IBinder& operator=(const IBinder&) = delete;

  /** The interface object of this binder if it lives in this process and has that descriptor, else
   * null. */
  virtual sp<IInterface> queryLocalInterface(const String16& descriptor);

  /** The descriptor of the object's interface. A proxy queries its object once; empty if that
   * fails. */
  virtual const String16& getInterfaceDescriptor() const = 0;

  /** False once the object's process is known to have died. Always true for a local object. */
  virtual bool isBinderAlive() const = 0;

  /** OK, or DEAD_OBJECT. */
  virtual status_t pingBinder() = 0;

  /**
   * Sends `data` to the object and waits for `reply`, which may be null and is left empty on
   * failure. Returns what the object's onTransact returned, or DEAD_OBJECT          the object's
   * process died, before or during the call, FAILED_TRANSACTION   `data` or `reply` is larger than
   * 1 MiB, or the connection can't be made.
   */
  virtual status_t transact(uint32_t code, const Parcel& data, Parcel* reply, uint32_t flags = 0) = 0;

  /** Receives death notifications. */
  class DeathRecipient : public virtual RefBase {
   public:
    virtual void binderDied(const wp<IBinder>& who) = 0;
  };

  /**
   * Notifies `recipient` once, on a binder thread, when the object's process dies. Only a weak
   * reference to the recipient is kept. DEAD_OBJECT if the process has died already,
   * INVALID_OPERATION for an object of this process.
   */
  virtual status_t linkToDeath(const sp<DeathRecipient>& recipient, void* cookie = nullptr,
                               uint32_t flags = 0) = 0;

  /**
   * Reverts one linkToDeath with the same recipient, or with the same cookie if the recipient is
   * null. `outRecipient`, if not null, receives the recipient. NAME_NOT_FOUND if there is no such
   * link, DEAD_OBJECT once the object has died.
   */
  virtual status_t unlinkToDeath(const wp<DeathRecipient>& recipient, void* cookie = nullptr,
                                 uint32_t flags = 0, wp<DeathRecipient>* outRecipient = nullptr) = 0;

  virtual BBinder* localBinder();
  virtual BpBinder* remoteBinder();

 protected:
  ~IBinder() override = default;
};

}  // namespace android
