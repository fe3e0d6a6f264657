#pragma once

#include <binder/Binder.h>
#include <binder/Parcel.h>

#include <utility>

#include "BarePairs.h"
#include "platform/binder/Frame.h"

namespace vesk::bench {

/** Lets a call through and looks at the size of what goes with it. */
class Scales : public android::BBinder {
 public:
  explicit Scales(android::sp<android::IBinder> service) : service_(std::move(service)) {}
  Exchange weighed{};

 protected:
  android::status_t onTransact(uint32_t code, const android::Parcel& data, android::Parcel* reply,
                               uint32_t flags) override {
    const android::status_t status = service_->transact(code, data, reply, flags);
    constexpr size_t kHeader = sizeof(android::transport::FrameHeader);
    weighed = {kHeader + data.dataSize(), kHeader + reply->dataSize()};
    return status;
  }

 private:
  android::sp<android::IBinder> service_;
};

/** The bytes of the frames of a call, which `call` makes by a proxy of a service here. */
template <class Proxy, class Service, class Call>
Exchange weigh(Call call) {
  const android::sp<Scales> scales = new Scales(new Service);
  const android::sp<Proxy> proxy = new Proxy(scales);
  call(proxy.get());
  return scales->weighed;
}

}  // namespace vesk::bench
