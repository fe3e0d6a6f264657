#pragma once

#include <bit>
#include <tuple>

#include <com/qv/detail/Platform.h>

#include <binder/IInterface.h>
#include <binder/Parcel.h>
#include <binder/Status.h>

#include "ipc/Arguments.h"

/*
 * A method's two ends: transact (ipc/Transact.h) is what a proxy's method does by callMethod and a C function
 * by Slot::call, serveMethod what a stub does for it. They walk over the types of a parameter list. What is
 * compiled for each distinct parameter list only turns a method's arguments into addresses, or addresses into
 * arguments.
 */
namespace com::qv {

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
  using List = ParameterList<Parameters...>;

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
    const auto typed = std::bit_cast<android::binder::Status (android::IInterface::*)(Parameters...)>(method);
    return [&]<size_t... I>(std::index_sequence<I...>) {
      return (service->*typed)(argument<Parameters>(values[I])...);
    }
    (std::index_sequence_for<Parameters...>());
  }

  static constexpr Signature kSignature{List::kTypes, List::kCount, List::kIns, invoke};
};

/** A method as its callers have it. */
template <class Interface, class... Parameters>
struct Row {
  uint32_t code;
};

/** A method as a stub has it. */
struct Implementation {
  AnyMethod method;
  const Signature* signature;
};

template <class Interface, class... Parameters>
Implementation implementation(android::binder::Status (Interface::*method)(Parameters...)) {
  return {std::bit_cast<AnyMethod>(
              static_cast<android::binder::Status (android::IInterface::*)(Parameters...)>(method)),
          &SignatureOf<Parameters...>::kSignature};
}

/** The method that has a code in an interface; one without `method` if none has. ipc/DefineInterface.h
 * defines it for each interface. */
template <class Interface>
Implementation implementationOf(uint32_t code);

/**
 * Calls a method of a remote object.
 *
 * @param values the in-arguments, and where the results go: written only when the whole reply has been read
 */
android::binder::Status callMethod(android::IBinder* remote, const android::String16& token, uint32_t code,
                                   const Arguments& arguments, void* const* values);

/** The same for an object of this process, without a transaction. The values are converted in place. */
void callLocally(android::IInterface* service, const Implementation& implementation,
                 const Arguments& arguments, void** values);

/** Answers a request for a method of `service`. */
status_t serveMethod(android::IInterface* service, const Implementation& implementation, const Parcel& data,
                     Parcel* reply);

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
  using Given = std::tuple<std::conditional_t<kIsOut<Parameters>, Parameters, Value<Parameters>>...>;
  void* const values[] = {addressOf<Parameters>(parameters)..., nullptr};
  return callMethod(ProxyAccess::remote(*proxy), proxy->getInterfaceDescriptor(), code,
                    ArgumentsOf<std::tuple<Parameters...>, Given>::kArguments, values);
}

}  // namespace com::qv
