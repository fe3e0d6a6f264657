#pragma once

#include <binder/Status.h>

#include <cstdint>
#include <optional>
#include <string>
#include <tuple>
#include <type_traits>
#include <utility>

#include "clock/RealTime.h"

/* Helpers of all services of the device. */

namespace sim {

/** The result of a method that returns an integer and refuses. */
constexpr int32_t kRefused = -1;

/** The reason why a model refused a request; empty after success. */
using Refusal = std::optional<std::string>;

inline android::binder::Status refuse(const std::string& why,
                                      int32_t exception = android::binder::Status::EX_ILLEGAL_ARGUMENT) {
  return android::binder::Status::fromExceptionCode(exception, why.c_str());
}

/**
 * Forwards a call of a service to a method of the model. That method returns nothing, or a Refusal,
 * which becomes EX_ILLEGAL_STATE, or a value, which becomes the last argument. If the model has no
 * method for the arguments, the result is EX_UNSUPPORTED_OPERATION.
 */
template <typename Model, typename Method, typename... Args>
android::binder::Status forward(RealTime<Model>& model, Method method, const Args&... args) {
  using android::binder::Status;
  if constexpr (std::is_invocable_r_v<Refusal, Method, Model&, const Args&...>) {
    const Refusal refusal = model.use([&](Model& used) { return method(used, args...); });
    return refusal ? refuse(*refusal, Status::EX_ILLEGAL_STATE) : Status::ok();
  } else if constexpr (std::is_invocable_v<Method, Model&, const Args&...>) {
    model.use([&](Model& used) { method(used, args...); });
    return Status::ok();
  } else {
    const auto all = std::tie(args...);
    return [&]<size_t... In>(std::index_sequence<In...>) {
      if constexpr (std::is_invocable_v<Method, Model&, decltype(std::get<In>(all))...>) {
        auto* const result = std::get<sizeof...(In)>(all);
        *result = model.use([&](Model& used) { return method(used, std::get<In>(all)...); });
        return Status::ok();
      } else {
        return Status::fromExceptionCode(Status::EX_UNSUPPORTED_OPERATION);
      }
    }
    (std::make_index_sequence<sizeof...(Args) - 1>());
  }
}

/** Defines a method of a service that forwards to the method of `model` with the same name. */
#define SIM_FORWARD(service, model, name, ...)                                                  \
  android::binder::Status service::name(COM_QV_PARAMS(__VA_ARGS__)) {                           \
    return forward(model, [](auto& used, const auto&... args) -> decltype(used.name(args...)) { \
      return used.name(args...);                                                                \
    } __VA_OPT__(, ) COM_QV_NAMES(__VA_ARGS__));                                                \
  }

}  // namespace sim
