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

/** The state of a service, determined without calling its methods. */
struct ServiceState {
  bool isAlive = false;
  std::chrono::duration<double, std::milli> roundTrip{};
  /** Empty on older platforms, which do not report it. */
  std::optional<pid_t> pid;
  std::string descriptor;
};
ServiceState inspect(const std::string& serviceName);

struct Answer {
  android::binder::Status status;
  /** The results in the order of Method::outs(); empty if the status is not ok. */
  std::vector<Value> outs;
};

/** Makes one call. Sends the same bytes as the library's proxy. The values must have the types of
 * Method::ins(). */
Answer transact(android::IBinder& binder, const Interface& interface, const Method& method,
                const std::vector<Value>& ins);

/** Reads the in-arguments from a request whose interface token has been read. */
android::status_t readArguments(const android::Parcel& data, const Method& method,
                                std::vector<Value>* values);

}  // namespace veskctl
