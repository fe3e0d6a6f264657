#pragma once

#include <bit>

#include <com/qv/detail/Platform.h>

#include <binder/IInterface.h>
#include <binder/Parcel.h>
#include <binder/Status.h>

#include "ipc/ArgumentType.h"

/*
 * The two ends of a method: callMethod in the proxy, serveMethod in the stub. Both interpret a
 * Signature, the description of a parameter list, and handle arguments by address.
 */
namespace com::qv {

/** The limit of the list macros in <com/qv/detail/Methods.h>. */
constexpr size_t kMaxParameters = 8;

/** A method of any interface and any parameter list; cast back to its own type before the call.
 * With std::bit_cast, since -Wcast-function-type objects to the other casts. */
using AnyMethod = android::binder::Status (android::IInterface::*)();

/** A parameter list: the in-parameters, then the out-parameters. */
struct Signature {
  /** The referenced or pointed-to types. */
  const ArgumentType* const* types;
  uint8_t inCount;
  uint8_t outCount;
  /** Calls a method with this parameter list; `values` are the addresses of the arguments. */
  android::binder::Status (*invoke)(android::IInterface* service, AnyMethod method, void* const* values);
};

template <class... Parameters>
struct SignatureOf {
  template <class Parameter>
  static constexpr bool kIsOut = std::is_pointer_v<Parameter>;
  template <class Parameter>
  using Value = std::remove_pointer_t<std::remove_cvref_t<Parameter>>;

  static constexpr uint8_t kOutCount = (uint8_t{0} + ... + uint8_t{kIsOut<Parameters>});
  static constexpr uint8_t kInCount = sizeof...(Parameters) - kOutCount;
  static_assert(sizeof...(Parameters) <= kMaxParameters);

  static constexpr bool outParametersAreLast() {
    size_t index = 0;
    return ((kIsOut<Parameters> == (index++ >= kInCount)) && ...);
  }
  static_assert(outParametersAreLast(), "out-parameters follow all in-parameters");

  /** The address of an argument, or of the variable that an out-argument points to. */
  template <class Parameter>
  static void* addressOf(Parameter& argument) {
    if constexpr (kIsOut<Parameter>) {
      return argument;
    } else {
      return const_cast<void*>(static_cast<const void*>(std::addressof(argument)));
    }
  }

  template <class Parameter>
  static Parameter argumentAt(void* value) {
    if constexpr (kIsOut<Parameter>) {
      return static_cast<Parameter>(value);
    } else {
      return *static_cast<const Value<Parameter>*>(value);
    }
  }

  static android::binder::Status invoke(android::IInterface* service, AnyMethod method,
                                        [[maybe_unused]] void* const* values) {
    const auto typed = std::bit_cast<android::binder::Status (android::IInterface::*)(Parameters...)>(method);
    return [&]<size_t... I>(std::index_sequence<I...>) {
      return (service->*typed)(argumentAt<Parameters>(values[I])...);
    }
    (std::index_sequence_for<Parameters...>());
  }

  static constexpr const ArgumentType* kTypes[] = {&ArgumentTypeOf<Value<Parameters>>::kType..., nullptr};
  static constexpr Signature kSignature{kTypes, kInCount, kOutCount, invoke};
};

/**
 * Calls a method of a remote object.
 *
 * @param values the addresses of the arguments; out-values are written only when the whole reply has
 *               been read
 */
android::binder::Status callMethod(android::IBinder* remote, const android::String16& token, uint32_t code,
                                   const Signature& signature, void* const* values);

/** A method of a service's class. */
struct ServiceMethod {
  AnyMethod method;
  const Signature* signature;
};

/** Inlined into the stub's switch: a function for each parameter list would be larger. */
template <class Interface, class... Parameters>
[[gnu::always_inline]] inline ServiceMethod serviceMethod(
    android::binder::Status (Interface::*method)(Parameters...)) {
  return {std::bit_cast<AnyMethod>(
              static_cast<android::binder::Status (android::IInterface::*)(Parameters...)>(method)),
          &SignatureOf<Parameters...>::kSignature};
}

/** Reads a request for a method of `service`, calls the method and writes the reply. */
status_t serveMethod(android::IInterface* service, const ServiceMethod& method, const Parcel& data,
                     Parcel* reply);

}  // namespace com::qv
