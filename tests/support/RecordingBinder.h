#pragma once

#include <binder/Binder.h>
#include <binder/Parcel.h>

#include <optional>
#include <string>
#include <vector>

#include "Wire.h"

namespace vesk::test {

inline std::string bytesOf(const android::Parcel& parcel) {
  return {reinterpret_cast<const char*>(parcel.data()), parcel.dataSize()};
}

/** The remote side of a proxy. Records requests and sends the same reply to all. Not
 * thread-safe. */
class RecordingBinder : public android::BBinder {
 public:
  struct Request {
    uint32_t code;
    uint32_t flags;
    std::string bytes;
  };

  /** The only request since the previous call; empty if there was none or more than one. */
  std::optional<Request> take() {
    const std::vector<Request> taken = std::move(requests_);
    requests_.clear();
    return taken.size() == 1 ? std::optional(taken.front()) : std::nullopt;
  }

  Wire answer = Wire().i32(0);
  android::status_t status = android::OK;

 protected:
  android::status_t onTransact(uint32_t code, const android::Parcel& data, android::Parcel* reply,
                               uint32_t flags) override {
    requests_.push_back({code, flags, bytesOf(data)});
    const auto* bytes = reinterpret_cast<const uint8_t*>(answer.bytes().data());
    if (status == android::OK) reply->setData(bytes, answer.bytes().size());
    return status;
  }

 private:
  std::vector<Request> requests_;
};

}  // namespace vesk::test
