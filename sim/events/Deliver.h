#pragma once

#include <binder/Status.h>

#include <tuple>
#include <type_traits>

namespace sim {

/** Calls a method of a listener with the values of an event's payload. The event determines their
 * types; other combinations of method and payload have to compile, but are never run. */
template <typename Listener, typename Method, typename... Values>
android::binder::Status deliver(Listener& listener, Method method, const std::tuple<Values...>& values) {
  if constexpr (std::is_invocable_v<Method, Listener&, const Values&...>) {
    return std::apply([&](const Values&... each) { return (listener.*method)(each...); }, values);
  } else {
    return android::binder::Status::ok();
  }
}

}  // namespace sim
