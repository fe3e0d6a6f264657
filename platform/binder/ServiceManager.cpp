#include <android/log.h>
#include <binder/IServiceManager.h>
#include <utils/String8.h>

#include <algorithm>
#include <charconv>
#include <chrono>
#include <cstdlib>
#include <cstring>
#include <string>
#include <thread>

#include "Transport.h"

namespace android {

namespace {

using transport::Address;
using transport::Transport;
namespace runtime_dir = transport::runtime_dir;
using std::chrono::milliseconds;

constexpr size_t kMaxNameSize = 127;
constexpr milliseconds kDefaultLookUpTime(5000);
/** The time between two look-ups of an absent service. */
constexpr milliseconds kPause(10);

/** The name as a file name; empty if it is not valid as one. */
std::string fileNameOf(const String16& name) {
  const String8 utf8(name);
  const std::string result(utf8.c_str(), utf8.length());
  const bool fits = result.size() <= kMaxNameSize && !result.starts_with('.');
  const auto isForbidden = [](unsigned char c) { return c < 0x20 || c == 0x7f || c == '/'; };
  return fits && std::none_of(result.begin(), result.end(), isForbidden) ? result : std::string();
}

milliseconds lookUpTime() {
  const char* text = std::getenv("BINDER_LOOKUP_MS");
  if (text == nullptr) return kDefaultLookUpTime;
  const char* const end = text + std::strlen(text);
  int value = 0;
  const auto result = std::from_chars(text, end, value);
  return result.ec == std::errc() && result.ptr == end && value >= 0 ? milliseconds(value)
                                                                     : kDefaultLookUpTime;
}

class ServiceManager : public IServiceManager {
 public:
  sp<IBinder> getService(const String16& name) const override {
    const auto deadline = std::chrono::steady_clock::now() + lookUpTime();
    for (;;) {
      if (sp<IBinder> service = checkService(name); service != nullptr) return service;
      if (std::chrono::steady_clock::now() >= deadline) return nullptr;
      std::this_thread::sleep_for(kPause);
    }
  }

  sp<IBinder> checkService(const String16& name) const override {
    const std::string fileName = fileNameOf(name);
    if (fileName.empty()) return nullptr;
    sp<IBinder> service;
    const auto address = runtime_dir::lookUp(fileName);
    // Asks the kernel, since the obituary of the process may not have arrived yet.
    if (address && runtime_dir::isListening(address->process)) {
      Transport::self().objectAt(*address, &service);
    }
    return service;
  }

  status_t addService(const String16& name, const sp<IBinder>& service) override {
    const std::string fileName = fileNameOf(name);
    if (fileName.empty() || service == nullptr) return BAD_VALUE;
    Transport& transport = Transport::self();
    Address address;
    if (const status_t status = transport.addressOf(service.get(), &address); status != OK) return status;
    if (const status_t status = runtime_dir::prepare(); status != OK) return status;
    // Destroyed and logged without the lock, since the application's code may run then.
    sp<IBinder> before;
    std::string failure;
    // Of two threads that register a name, the one that publishes last has its object kept.
    const status_t status = runtime_dir::publish(
        fileName, address, [&] { before = transport.exports.keepService(fileName, service); }, &failure);
    if (status != OK) __android_log_print(ANDROID_LOG_ERROR, "binder", "%s", failure.c_str());
    return status;
  }

  Vector<String16> listServices() override {
    Vector<String16> result;
    for (const std::string& name : runtime_dir::names()) {
      const auto address = runtime_dir::lookUp(name);
      if (address && runtime_dir::isListening(address->process)) result.push_back(String16(name.c_str()));
    }
    return result;
  }
};

}  // namespace

sp<IServiceManager> defaultServiceManager() {
  static const sp<IServiceManager>& manager = *new sp<IServiceManager>(new ServiceManager());
  return manager;
}

}  // namespace android
