#pragma once

#include <bit>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <type_traits>
#include <utility>

#include <binder/IInterface.h>
#include <binder/Parcel.h>
#include <binder/Status.h>

#include "ipc/Type.h"

/*
 * A method's two ends: callMethod is what a proxy's method does, serveMethod what a stub does for it. Both
 * are compiled once and walk over the types of a parameter list. What is compiled for each distinct parameter
 * list only turns a method's arguments into addresses, or addresses into arguments.
 */
namespace com::qv {

/** Where the lists of <com/qv/detail/Methods.h> end. */
constexpr size_t kMaxParameters = 8;

template <class Parameter>
constexpr bool kIsOut = std::is_pointer_v<Parameter>;

/** What a parameter refers to or points to. */
template <class Parameter>
using Value = std::remove_pointer_t<std::remove_cvref_t<Parameter>>;

/** A method of any interface and any parameters, which has to be turned back before it is called. */
using AnyMethod = android::binder::Status (android::IInterface::*)();

/** A parameter list. */
struct Signature {
  /** What the parameters refer to or point to, in order. */
  const Type* const* types;
  uint8_t count;
  uint8_t ins;
  /** Calls a method that has this parameter list with the parameters at `values`. */
  android::binder::Status (*invoke)(android::IInterface* service, AnyMethod method, void* const* values);

  uint8_t outs() const { return static_cast<uint8_t>(count - ins); }
};

template <class... Parameters>
struct SignatureOf {
  static constexpr uint8_t kCount = sizeof...(Parameters);
  static constexpr uint8_t kIns = (uint8_t{0} + ... + (kIsOut<Parameters> ? 0 : 1));
  static_assert(kCount <= kMaxParameters);

  static constexpr bool outsStandLast() {
    bool out = false;
    for (const bool isOut : {false, kIsOut<Parameters>...}) {
      if (out && !isOut) return false;
      out = isOut;
    }
    return true;
  }

  template <class Parameter>
  static decltype(auto) argument(void* value) {
    if constexpr (kIsOut<Parameter>) {
      return static_cast<Parameter>(value);
    } else {
      return (*static_cast<const Value<Parameter>*>(value));
    }
  }

  static android::binder::Status invoke(android::IInterface* service, AnyMethod method,
                                        [[maybe_unused]] void* const* values) {
    static_assert(outsStandLast(), "the number of in-arguments tells where the out-arguments begin");
    const auto typed = std::bit_cast<android::binder::Status (android::IInterface::*)(Parameters...)>(method);
    return [&]<size_t... I>(std::index_sequence<I...>) {
      return (service->*typed)(argument<Parameters>(values[I])...);
    }
    (std::index_sequence_for<Parameters...>());
  }

  static constexpr const Type* kTypes[kCount + 1] = {&Typed<Value<Parameters>>::kType..., nullptr};
  static constexpr Signature kSignature{kTypes, kCount, kIns, invoke};
};

/**
 * Calls a method of a remote object.
 *
 * @param values the in-arguments, and where the results go: written only when the whole reply has been read
 */
android::binder::Status callMethod(android::IBinder* remote, const android::String16& token, uint32_t code,
                                   const Signature& signature, void* const* values);

/** Answers a request for `method` of `service`. */
status_t serveMethod(android::IInterface* service, AnyMethod method, const Signature& signature,
                     const Parcel& data, Parcel* reply);

/** The address of an argument, or the one to which an out-argument points. */
template <class Parameter, class Argument>
void* addressOf(const Argument& argument) {
  if constexpr (kIsOut<Parameter>) {
    static_assert(std::is_same_v<Parameter, Argument>, "what is written there is a Value<Parameter>");
    return argument;
  } else {
    return const_cast<void*>(static_cast<const void*>(std::addressof(argument)));
  }
}

/** What a proxy keeps to itself and its like. */
struct ProxyAccess {
  template <class Proxy>
  static android::IBinder* remote(const Proxy& proxy) {
    return proxy.remote();
  }
};

/** callMethod for the method `code` of a proxy. The code stands last, so that everything else is where the
 * proxy's method found it. */
template <class Proxy, class... Parameters>
[[gnu::noinline]] android::binder::Status call(const Proxy* proxy, Parameters... parameters, uint32_t code) {
  void* const values[] = {addressOf<Parameters>(parameters)..., nullptr};
  return callMethod(ProxyAccess::remote(*proxy), proxy->getInterfaceDescriptor(), code,
                    SignatureOf<Parameters...>::kSignature, values);
}

/** A method of an interface class, and what is to know about its parameters. */
template <class Interface, class... Parameters>
AnyMethod anyMethod(android::binder::Status (Interface::*method)(Parameters...)) {
  return std::bit_cast<AnyMethod>(
      static_cast<android::binder::Status (android::IInterface::*)(Parameters...)>(method));
}
template <class Interface, class... Parameters>
constexpr const Signature& signatureOf(android::binder::Status (Interface::*)(Parameters...)) {
  return SignatureOf<Parameters...>::kSignature;
}

}  // namespace com::qv
