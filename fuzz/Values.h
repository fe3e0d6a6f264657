#pragma once

#include <binder/IInterface.h>
#include <binder/Status.h>
#include <com/qv/CommonParcelable.h>

#include <string>
#include <tuple>
#include <type_traits>
#include <vector>

#include "Fuzz.h"
#include "ipc/Marshal.h"

/* Makes, reads and compares the arguments of the interfaces' methods. */
namespace vesk::fuzz {

template <class T>
struct Pointee;
template <class Interface>
struct Pointee<android::sp<Interface>> {
  using type = Interface;
};

/** Makes a value from the input; `object` is used for a listener. */
template <class T>
T make(Input* input, const android::sp<android::IBinder>& object) {
  if constexpr (std::is_same_v<T, int32_t>) {
    return input->number<int32_t>();
  } else if constexpr (std::is_same_v<T, bool>) {
    return input->byte() % 2 != 0;
  } else if constexpr (std::is_same_v<T, std::string>) {
    return input->text();
  } else if constexpr (std::is_same_v<T, com::qv::CommonParcelable>) {
    const Bytes bytes = input->block();
    return {bytes.data(), bytes.size()};
  } else if constexpr (std::is_same_v<T, android::String16>) {
    return android::String16(input->text().c_str());
  } else if constexpr (requires(T vector) { vector.size(); }) {
    T values;
    for (size_t left = input->byte() % 8; left > 0; --left) {
      values.push_back(make<typename T::value_type>(input, object));
    }
    return values;
  } else {
    return input->byte() % 2 != 0 ? Pointee<T>::type::asInterface(object) : nullptr;
  }
}

/** The bytes of the values in a parcel. */
template <class... T>
std::string marshalled(const T&... values) {
  android::Parcel parcel;
  (static_cast<void>(com::qv::write(&parcel, values)), ...);
  return {reinterpret_cast<const char*>(parcel.data()), parcel.dataSize()};
}

/** The status of a reply, in most cases ok. */
inline android::binder::Status makeStatus(Input* input) {
  using android::binder::Status;
  switch (const uint8_t choice = input->byte(); choice) {
    case 0xff:
      return Status::fromServiceSpecificError(input->number<int32_t>(), input->text().c_str());
    case 0xfe:
      return Status::fromExceptionCode(input->number<int32_t>(), input->text().c_str());
    case 0xfd:
      return Status::fromStatusT(input->number<int32_t>());
    default:
      return Status::ok();
  }
}

/** The value as an argument for that parameter: a pointer to it, or the value itself. */
template <class Parameter, class T>
decltype(auto) argument(T* value) {
  if constexpr (std::is_pointer_v<Parameter>) {
    return value;
  } else {
    return (*value);
  }
}

/** Calls one method with arguments from the input. A failed call must change no out-argument. */
template <class Interface, class... Parameters>
android::binder::Status callWith(Interface* proxy,
                                 android::binder::Status (Interface::*method)(Parameters...),
                                 [[maybe_unused]] Input* input,
                                 [[maybe_unused]] const android::sp<android::IBinder>& object) {
  std::tuple values{make<std::remove_pointer_t<std::remove_cvref_t<Parameters>>>(input, object)...};
  const auto bytes = [](const auto&... value) { return marshalled(value...); };
  const std::string before = std::apply(bytes, values);
  const auto call = [&](auto&... value) { return (proxy->*method)(argument<Parameters>(&value)...); };
  const android::binder::Status status = std::apply(call, values);
  FUZZ_CHECK(status.isOk() || std::apply(bytes, values) == before);
  return status;
}

}  // namespace vesk::fuzz
