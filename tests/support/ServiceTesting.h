#pragma once

#include <binder/Status.h>
#include <com/qv/CommonParcelable.h>
#include <gtest/gtest.h>

#include <memory>
#include <optional>
#include <string>

#include "common/Records.h"
#include "store/Store.h"

/* For tests of the simulated device's services through their interfaces, in this process. */

namespace vesk::test {

/** A store that keeps nothing. */
inline std::shared_ptr<sim::Store> openStore() {
  std::string error;
  std::shared_ptr<sim::Store> store = sim::Store::open("", &error);
  EXPECT_NE(store, nullptr) << error;
  return store;
}

/** The result of a method, which has to be the last of its parameters. */
template <typename Result = int32_t, typename Interface, typename... Params, typename... Args>
Result ask(Interface& service, android::binder::Status (Interface::*method)(Params...), const Args&... args) {
  Result result{};
  const android::binder::Status status = (service.*method)(args..., &result);
  EXPECT_TRUE(status.isOk()) << status.toString8().c_str();
  return result;
}

/** The record that a method gives, before its result if it has one; zeros if it refuses. */
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
