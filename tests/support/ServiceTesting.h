#pragma once

#include <binder/Status.h>
#include <com/qv/CommonParcelable.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <iterator>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <tuple>
#include <type_traits>

#include "Records.h"
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

/** A record with a text in one of its fields. */
template <typename Record, size_t Size>
Record with(char (Record::*field)[Size], std::string_view text, Record record = {}) {
  std::fill(std::begin(record.*field), std::end(record.*field), '\0');
  sim::copyText(record.*field, text);
  return record;
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

/** What the parameters of a method refer or point to. */
template <typename... Params>
using Values = std::tuple<std::remove_cvref_t<std::remove_pointer_t<Params>>...>;

/** Calls a method with zeros, nulls and empty texts and records; its answer is in `values`. */
template <typename Interface, typename... Params>
android::binder::Status callWithNothing(Interface& service,
                                        android::binder::Status (Interface::*method)(Params...),
                                        Values<Params...>* values) {
  const auto pass = []<typename Param>(std::type_identity<Param>, auto& value) -> decltype(auto) {
    if constexpr (std::is_pointer_v<Param>) {
      return &value;
    } else {
      return (value);
    }
  };
  return std::apply(
      [&](auto&... value) { return (service.*method)(pass(std::type_identity<Params>(), value)...); },
      *values);
}

/** Calls a method with nothing: it answers in one of the ways that the
 * services have, and accepts no empty record. */
template <typename Interface, typename... Params>
void expectAnswer(Interface& service, const char* name,
                  android::binder::Status (Interface::*method)(Params...)) {
  using android::binder::Status;
  SCOPED_TRACE(name);
  Values<Params...> values;
  const Status status = callWithNothing(service, method, &values);

  EXPECT_EQ(status.transactionError(), android::OK);
  const int32_t exception = status.exceptionCode();
  EXPECT_TRUE(exception == Status::EX_NONE || exception == Status::EX_ILLEGAL_ARGUMENT ||
              exception == Status::EX_ILLEGAL_STATE || exception == Status::EX_NULL_POINTER)
      << status.toString8().c_str();
  EXPECT_EQ(status.isOk(), status.exceptionMessage().length() == 0) << "an exception says why";
  const auto check = [&]<typename Param>(std::type_identity<Param>, const auto& value) {
    if constexpr (std::is_same_v<Param, com::qv::CommonParcelable*>) {
      EXPECT_EQ(value.blob().length() > 0, status.isOk());
    } else if constexpr (std::is_same_v<Param, int32_t*> &&
                         (std::is_same_v<Params, const com::qv::CommonParcelable&> || ...)) {
      EXPECT_EQ(value, -1) << "an empty record was accepted";
    }
  };
  std::apply([&](const auto&... value) { (check(std::type_identity<Params>(), value), ...); }, values);
}

}  // namespace vesk::test
