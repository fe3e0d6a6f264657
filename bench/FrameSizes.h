#pragma once

#include <binder/Binder.h>
#include <binder/Parcel.h>

#include <utility>

#include "BarePairs.h"
#include "platform/binder/Frame.h"

namespace vesk::bench {

/** Forwards a call to a service, and records the sizes of its frames. */
class SizeRecorder : public android::BBinder {
 public:
  explicit SizeRecorder(android::sp<android::IBinder> service) : service_(std::move(service)) {}
  FrameSizes sizes{};

 protected:
  android::status_t onTransact(uint32_t code, const android::Parcel& data, android::Parcel* reply,
                               uint32_t flags) override {
    const android::status_t status = service_->transact(code, data, reply, flags);
    constexpr size_t kHeader = sizeof(android::transport::FrameHeader);
    sizes = {kHeader + data.dataSize(), kHeader + reply->dataSize()};
    return status;
  }

 private:
  android::sp<android::IBinder> service_;
};

/** The sizes of the frames of a call, which `call` makes by a proxy for a service in this
 * process. */
template <class Proxy, class Service, class Call>
FrameSizes frameSizes(Call call) {
  const android::sp<SizeRecorder> recorder = new SizeRecorder(new Service);
  const android::sp<Proxy> proxy = new Proxy(recorder);
  call(proxy.get());
  return recorder->sizes;
}

}  // namespace vesk::bench
