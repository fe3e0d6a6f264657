#include <com/qv/ICallService.h>
#include <com/qv/IConfigService.h>
#include <com/qv/IDatabaseService.h>
#include <com/qv/IExternalKeyService.h>
#include <com/qv/IMiscService.h>
#include <com/qv/IRelayService.h>

#include <algorithm>
#include <array>
#include <type_traits>

#include "Interfaces.h"

namespace vesk::interfaces {

namespace {

using com::qv::CommonParcelable;
using com::qv::IAteEventListener;
using com::qv::ICallEventListener;
using com::qv::IMiscEventListener;

template <class T>
constexpr Type kTypeOf = Type::kListener;
template <>
constexpr Type kTypeOf<int32_t> = Type::kInt32;
template <>
constexpr Type kTypeOf<bool> = Type::kBool;
template <>
constexpr Type kTypeOf<std::string> = Type::kString;
template <>
constexpr Type kTypeOf<std::vector<int32_t>> = Type::kInt32s;
template <>
constexpr Type kTypeOf<std::vector<android::String16>> = Type::kStrings;
template <>
constexpr Type kTypeOf<CommonParcelable> = Type::kRecord;
template <>
constexpr Type kTypeOf<std::vector<CommonParcelable>> = Type::kRecords;

/** "ICallEventListener" for "const android::sp<ICallEventListener>&". */
constexpr std::string_view listenerIn(std::string_view type) {
  const size_t begin = type.find('<') + 1;
  return type.substr(begin, type.find('>') - begin);
}

template <class T>
constexpr Parameter parameter(std::string_view type, const char* name) {
  constexpr Type kType = kTypeOf<std::remove_pointer_t<std::remove_cvref_t<T>>>;
  const bool isListener = kType == Type::kListener;
  return {name, kType, std::is_pointer_v<T>, isListener ? listenerIn(type) : std::string_view()};
}

template <class... Parameters>
constexpr std::array<Parameter, sizeof...(Parameters)> listOf(const Parameters&... parameters) {
  return {parameters...};
}

#define PARAMETER(type, name) parameter<type>(#type, #name)

#define ROWS_HEADER "InterfaceRows.h"
#include "ForEachInterface.h"
#undef PARAMETER

#define INTERFACE(name, className) \
  { name, #className, className::kMethods }
constexpr Interface kInterfaces[] = {
    INTERFACE("call", CallService),
    INTERFACE("config", ConfigService),
    INTERFACE("database", DatabaseService),
    INTERFACE("misc", MiscService),
    INTERFACE("relay", RelayService),
    INTERFACE("externalkey", ExternalKeyService),
    INTERFACE("call-events", CallEventListener),
    INTERFACE("misc-events", MiscEventListener),
    INTERFACE("test-events", AteEventListener),
};
#undef INTERFACE
constexpr size_t kServiceCount = 6;

constexpr bool hasEveryTypeItsDirection() {
  for (const Interface& interface : kInterfaces) {
    for (const Method& method : interface.methods) {
      for (const Parameter& parameter : method.parameters) {
        const bool isOnlyRead = parameter.type == Type::kStrings || parameter.type == Type::kRecords;
        if (parameter.isOut ? parameter.type == Type::kListener : isOnlyRead) return false;
      }
    }
  }
  return true;
}
static_assert(hasEveryTypeItsDirection(),
              "lists of strings and of records are out-parameters only, listeners in-parameters only");

}  // namespace

std::span<const Interface> all() { return kInterfaces; }
std::span<const Interface> services() { return all().first(kServiceCount); }
std::span<const Interface> listeners() { return all().subspan(kServiceCount); }

}  // namespace vesk::interfaces
