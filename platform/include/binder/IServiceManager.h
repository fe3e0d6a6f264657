#pragma once

#include <binder/IInterface.h>
#include <utils/Vector.h>

namespace android {

/** The directory of services, by name. */
class IServiceManager : public virtual RefBase {
 public:
  /**
   * The service of that name. If it is absent or its process has died, waits for BINDER_LOOKUP_MS
   * milliseconds (5000 if that environment variable is unset), then returns null.
   */
  virtual sp<IBinder> getService(const String16& name) const = 0;

  /** The service of that name, or null at once. */
  virtual sp<IBinder> checkService(const String16& name) const = 0;

  /**
   * Registers `service` under `name`, in place of any earlier one. BAD_VALUE for a null service or
   * a name that is empty, longer than 127 bytes of UTF-8, begins with a dot or holds a '/' or a
   * control character; PERMISSION_DENIED or another error if the runtime directory can't be used.
   */
  virtual status_t addService(const String16& name, const sp<IBinder>& service) = 0;

  /** The names of all services whose processes are alive, sorted. */
  virtual Vector<String16> listServices() = 0;

 protected:
  ~IServiceManager() override = default;
};

sp<IServiceManager> defaultServiceManager();

}  // namespace android
