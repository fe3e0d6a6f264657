#include "Binders.h"

#include <android/log.h>

#include <filesystem>
#include <memory>
#include <vector>

#include "BpBinder.h"
#include "OwnerProcesses.h"
#include "ParcelAccess.h"

namespace vesk::fuzz {

using android::BBinder;
using android::BpBinder;
using android::IBinder;
using android::Parcel;
using android::sp;
using android::transport::FlatBinder;
using android::transport::OwnerProcess;
using android::transport::ParcelAccess;

void setUp() {
  static const bool done = [] {
    __android_log_set_logger([](const __android_log_message* message) {
      touch(std::string(message->tag));
      touch(std::string(message->message));
    });
    static char directory[] = "/tmp/vesk-fuzz-XXXXXX";
    FUZZ_CHECK(::mkdtemp(directory) != nullptr);
    ::setenv("BINDER_RUNTIME_DIR", directory, 1);
    std::atexit([] {
      std::error_code ignored;
      std::filesystem::remove_all(directory, ignored);
    });
    return true;
  }();
  static_cast<void>(done);
}

void fill(Parcel* parcel, Bytes bytes, std::span<const sp<IBinder>> objects) {
  static const sp<IBinder>& plain = *new sp<IBinder>(new BBinder);
  static const sp<IBinder>& dead = *new sp<IBinder>(new BpBinder(std::make_shared<OwnerProcess>(1, true), 1));
  parcel->setData(bytes.data(), bytes.size());
  std::vector<ParcelAccess::Object> listed;
  for (size_t offset = 0; offset < bytes.size(); offset += 4) {
    if (!ParcelAccess::hasFlatBinder(*parcel, offset)) continue;
    const uint8_t choice = bytes[offset + offsetof(FlatBinder, reserved)];
    if (choice < 0xff) {
      const bool given = choice < objects.size();
      listed.push_back({static_cast<uint32_t>(offset), given             ? objects[choice]
                                                       : choice % 2 == 0 ? plain
                                                                         : dead});
    }
    offset += sizeof(FlatBinder) - 4;
  }
  ParcelAccess::setObjects(parcel, std::move(listed));
}

}  // namespace vesk::fuzz
