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

/* Arguments of the interfaces' methods: made from an input, read, compared. */
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

/** Reads every byte of the value. */
template <class T>
void look(const T& value) {
  android::Parcel parcel;
  com::qv::write(&parcel, value);
  if constexpr (requires { android::IInterface::asBinder(value); }) {
    if (value != nullptr) android::IInterface::asBinder(value)->pingBinder();
  }
}

template <class T>
bool same(const T& a, const T& b) {
  return a == b;
}
inline bool same(const com::qv::CommonParcelable& a, const com::qv::CommonParcelable& b) {
  return a.blob() == b.blob();
}
inline bool same(const std::vector<com::qv::CommonParcelable>& a,
                 const std::vector<com::qv::CommonParcelable>& b) {
  return std::equal(a.begin(), a.end(), b.begin(), b.end(),
                    [](const auto& x, const auto& y) { return same(x, y); });
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

/** Calls one method with arguments from the input. A failed call must change no out-argument. */
template <class Interface, class... Parameters>
android::binder::Status callWith(Interface* proxy,
                                 android::binder::Status (Interface::*method)(Parameters...),
                                 [[maybe_unused]] Input* input,
                                 [[maybe_unused]] const android::sp<android::IBinder>& object) {
  using Values = std::tuple<std::remove_pointer_t<std::remove_cvref_t<Parameters>>...>;
  Values values{make<std::remove_pointer_t<std::remove_cvref_t<Parameters>>>(input, object)...};
  const Values before = values;
  const android::binder::Status status = std::apply(
      [&](auto&... value) {
        return (proxy->*method)([&]() -> decltype(auto) {
          if constexpr (std::is_pointer_v<Parameters>) {
            return &value;
          } else {
            return (value);
          }
        }()...);
      },
      values);
  [&]<size_t... I>(std::index_sequence<I...>) {
    if (!status.isOk()) FUZZ_CHECK((same(std::get<I>(values), std::get<I>(before)) && ...));
  }
  (std::index_sequence_for<Parameters...>());
  return status;
}

}  // namespace vesk::fuzz
