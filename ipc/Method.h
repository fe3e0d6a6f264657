#pragma once

#include <cstddef>
#include <tuple>
#include <type_traits>
#include <utility>
#include <variant>

#include <binder/IInterface.h>
#include <binder/Parcel.h>
#include <binder/Status.h>

#include "ipc/Marshal.h"

/*
 * A method's two ends, deduced from its parameter types: callMethod is what a proxy's method does,
 * serveMethod what a stub does for it. Both are compiled once for each distinct parameter list, not for each
 * method.
 */
namespace com::qv {

template <class Parameter>
constexpr bool kIsOut = std::is_pointer_v<Parameter>;

template <class... Parameters>
constexpr size_t kInCount = (size_t{0} + ... + (kIsOut<Parameters> ? 0 : 1));

/** What a parameter refers to or points to. */
template <class Parameter>
using Value = std::remove_pointer_t<std::remove_cvref_t<Parameter>>;

/**
 * Applies `f` to the position of each out-parameter, as a std::integral_constant, in the order in which they
 * stand in a reply, until one fails: the last one first (it is the method's return value), then the others as
 * they are declared.
 */
template <class... Parameters, class F>
status_t forEachOut(F f) {
  constexpr size_t kCount = sizeof...(Parameters);
  constexpr size_t kIns = kInCount<Parameters...>;
  status_t status = android::OK;
  if constexpr (kCount > kIns) {
    status = f(std::integral_constant<size_t, kCount - 1>());
    [&]<size_t... I>(std::index_sequence<I...>) {
      ((status == android::OK && (status = f(std::integral_constant<size_t, kIns + I>()))), ...);
    }
    (std::make_index_sequence<kCount - kIns - 1>());
  }
  return status;
}

template <class... Parameters>
[[gnu::noinline]] android::binder::Status callMethod(android::IBinder* remote, const android::String16& token,
                                                     uint32_t code, Parameters... parameters) {
  Parcel data;
  Parcel reply;
  android::binder::Status result;

  status_t status = data.writeInterfaceToken(token);
  [[maybe_unused]] const auto writeIn = [&](const auto& parameter) {
    if constexpr (!kIsOut<std::remove_cvref_t<decltype(parameter)>>) {
      if (status == android::OK) status = write(&data, parameter);
    }
  };
  (writeIn(parameters), ...);

  if (status == android::OK) status = remote->transact(code, data, &reply, 0);
  if (status == android::OK) status = result.readFromParcel(reply);
  if (status == android::OK && result.isOk()) {
    // The caller's variables are written only when the whole reply has been read.
    std::tuple<std::conditional_t<kIsOut<Parameters>, Value<Parameters>, std::monostate>...> received;
    status = forEachOut<Parameters...>([&](auto i) { return read(reply, &std::get<i>(received)); });
    if (status == android::OK) {
      const std::tuple<const Parameters&...> targets(parameters...);
      forEachOut<Parameters...>([&](auto i) {
        *std::get<i>(targets) = std::move(std::get<i>(received));
        return android::OK;
      });
    }
  }
  if (status != android::OK) result.setFromStatusT(status);
  return result;
}

template <class... Parameters>
[[gnu::noinline]] status_t serveMethod(android::IInterface* service,
                                       android::binder::Status (android::IInterface::*method)(Parameters...),
                                       const Parcel& data, Parcel* reply) {
  constexpr size_t kIns = kInCount<Parameters...>;
  std::tuple<Value<Parameters>...> locals;
  status_t status = android::OK;

  [&]<size_t... I>(std::index_sequence<I...>) {
    ((status == android::OK && (status = read(data, &std::get<I>(locals)))), ...);
  }
  (std::make_index_sequence<kIns>());

  if (status == android::OK) {
    const android::binder::Status result = std::apply(
        [&](auto&... local) {
          return (service->*method)([&]() -> decltype(auto) {
            if constexpr (kIsOut<Parameters>) {
              return &local;
            } else {
              return (local);
            }
          }()...);
        },
        locals);
    status = result.writeToParcel(reply);
    if (status == android::OK && result.isOk()) {
      status = forEachOut<Parameters...>([&](auto i) { return write(reply, std::get<i>(locals)); });
    }
  }

  if (status == android::UNEXPECTED_NULL) {
    return android::binder::Status::fromExceptionCode(android::binder::Status::EX_NULL_POINTER)
        .writeToParcel(reply);
  }
  return status;
}

/** serveMethod for a method of an interface class. */
template <class Interface, class... Parameters>
status_t serve(Interface* service, android::binder::Status (Interface::*method)(Parameters...),
               const Parcel& data, Parcel* reply) {
  return serveMethod<Parameters...>(
      service, static_cast<android::binder::Status (android::IInterface::*)(Parameters...)>(method), data,
      reply);
}

}  // namespace com::qv
