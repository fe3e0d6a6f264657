#pragma once

#include <binder/IInterface.h>
#include <binder/Status.h>
#include <com/qv/CommonParcelable.h>

#include <string>
#include <tuple>
#include <type_traits>
#include <vector>

#include "Fuzz.h"

/* Arguments of the interfaces' methods: made of an input, looked at, compared. */
namespace vesk::fuzz {

template <class T>
struct Pointee;
template <class Interface>
struct Pointee<android::sp<Interface>> {
  using type = Interface;
};

/** `object` serves where a listener is wanted. */
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

inline void look(int32_t) {}
inline void look(bool value) { touch(&value, sizeof(value)); }
inline void look(const std::string& value) { touch(value); }
inline void look(const com::qv::CommonParcelable& value) {
  touch(value.blob().c_str(), value.blob().length() + 1);
}
inline void look(const std::vector<int32_t>& value) { touch(value.data(), value.size() * sizeof(int32_t)); }
template <class Interface>
void look(const android::sp<Interface>& value) {
  if (const auto binder = android::IInterface::asBinder(value); binder != nullptr) {
    touch(binder->getInterfaceDescriptor().c_str(), binder->getInterfaceDescriptor().size());
    binder->pingBinder();
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

/** What a service answers. Most answers are ok. */
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

/** Calls one method with arguments of the input. A call that fails leaves its out-values alone. */
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
