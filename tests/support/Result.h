#pragma once

#include <optional>
#include <type_traits>

namespace vesk::test {

/** What a C function gives, an int or a bool as int; nothing for void. */
using Result = std::optional<int>;

template <class Function>
Result resultOf(Function function) {
  if constexpr (std::is_void_v<decltype(function())>) {
    function();
    return std::nullopt;
  } else {
    return function();
  }
}

}  // namespace vesk::test
