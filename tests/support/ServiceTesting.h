#pragma once

#include <binder/Status.h>
#include <com/qv/CommonParcelable.h>
#include <gtest/gtest.h>

#include <memory>
#include <optional>
#include <string>

#include "common/Records.h"
#include "store/Store.h"

/* Helpers for tests of the simulated device's services in this process. */

namespace vesk::test {

/** A store in memory. */
inline std::shared_ptr<sim::Store> openStore() {
  std::string error;
  std::shared_ptr<sim::Store> store = sim::Store::open("", &error);
  EXPECT_NE(store, nullptr) << error;
  return store;
}

/** Calls a method. Returns its result, which is its last parameter. */
template <typename Result = int32_t, typename Interface, typename... Params, typename... Args>
Result ask(Interface& service, android::binder::Status (Interface::*method)(Params...), const Args&... args) {
  Result result{};
  const android::binder::Status status = (service.*method)(args..., &result);
  EXPECT_TRUE(status.isOk()) << status.toString8().c_str();
  return result;
}

/** Calls a method. Returns its record; zeros if the method refuses. */
template <typename Record, typename Interface, typename... Params, typename... Args>
Record fetch(Interface& service, android::binder::Status (Interface::*method)(Params...),
             const Args&... args) {
  com::qv::CommonParcelable bytes;
  android::binder::Status status;
  if constexpr (sizeof...(Params) == sizeof...(Args) + 2) {
    int32_t result = 0;
    status = (service.*method)(args..., &bytes, &result);
  } else {
    status = (service.*method)(args..., &bytes);
  }
  EXPECT_TRUE(status.isOk() || bytes.blob().length() == 0);
  const std::optional<Record> record = sim::unpack<Record>(bytes);
  EXPECT_EQ(record.has_value(), status.isOk());
  return record.value_or(Record{});
}

}  // namespace vesk::test
