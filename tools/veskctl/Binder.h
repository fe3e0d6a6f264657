#pragma once

#include <binder/IBinder.h>
#include <binder/Status.h>
#include <sys/types.h>

#include <chrono>
#include <optional>
#include <string>
#include <vector>

#include "Names.h"
#include "Value.h"

/* Services, and transactions built from the rows of the interfaces. */
namespace veskctl {

/** The service of that name, or null, without waiting for it. */
android::sp<android::IBinder> findService(const std::string& name);

/** The state of a service, found without calling its methods. */
struct ServiceState {
  bool isAlive = false;
  std::chrono::duration<double, std::milli> roundTrip{};
  /** Not set on older platforms, which do not report it. */
  std::optional<pid_t> pid;
  std::string descriptor;
};
ServiceState inspect(const std::string& serviceName);

struct Answer {
  android::binder::Status status;
  /** In the order of Method::outs(); empty unless the status is ok. */
  std::vector<Value> outs;
};

/** Makes one call, with the bytes that the library's proxy would send. The values have the types of
 * Method::ins(). */
Answer transact(android::IBinder& binder, const Interface& interface, const Method& method,
                const std::vector<Value>& ins);

/** Reads the in-arguments from a request whose interface token has been read. */
android::status_t readArguments(const android::Parcel& data, const Method& method,
                                std::vector<Value>* values);

}  // namespace veskctl
