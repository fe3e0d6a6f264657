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

namespace veskctl {

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

/** What stands between the angle brackets of "const android::sp<ICallEventListener>&". */
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

#define VESKCTL_PARAMETER(type, name) parameter<type>(#type, #name)

#define COM_QV_INTERFACE CallService
#define COM_QV_METHODS <com/qv/CallService.def>
#include "InterfaceRows.h"
#define COM_QV_INTERFACE ConfigService
#define COM_QV_METHODS <com/qv/ConfigService.def>
#include "InterfaceRows.h"
#define COM_QV_INTERFACE DatabaseService
#define COM_QV_METHODS <com/qv/DatabaseService.def>
#include "InterfaceRows.h"
#define COM_QV_INTERFACE MiscService
#define COM_QV_METHODS <com/qv/MiscService.def>
#include "InterfaceRows.h"
#define COM_QV_INTERFACE RelayService
#define COM_QV_METHODS <com/qv/RelayService.def>
#include "InterfaceRows.h"
#define COM_QV_INTERFACE ExternalKeyService
#define COM_QV_METHODS <com/qv/ExternalKeyService.def>
#include "InterfaceRows.h"
#define COM_QV_INTERFACE CallEventListener
#define COM_QV_METHODS <com/qv/CallEventListener.def>
#include "InterfaceRows.h"
#define COM_QV_INTERFACE MiscEventListener
#define COM_QV_METHODS <com/qv/MiscEventListener.def>
#include "InterfaceRows.h"
#define COM_QV_INTERFACE AteEventListener
#define COM_QV_METHODS <com/qv/AteEventListener.def>
#include "InterfaceRows.h"

#define VESKCTL_INTERFACE(name, className) \
  { name, #className, className::kMethods }

constexpr Interface kInterfaces[] = {
    VESKCTL_INTERFACE("call", CallService),
    VESKCTL_INTERFACE("config", ConfigService),
    VESKCTL_INTERFACE("database", DatabaseService),
    VESKCTL_INTERFACE("misc", MiscService),
    VESKCTL_INTERFACE("relay", RelayService),
    VESKCTL_INTERFACE("externalkey", ExternalKeyService),
    VESKCTL_INTERFACE("call-events", CallEventListener),
    VESKCTL_INTERFACE("misc-events", MiscEventListener),
    VESKCTL_INTERFACE("test-events", AteEventListener),
};
constexpr size_t kServices = 6;

/** What Value.cpp can write and read; a row with anything else needs more there. */
constexpr bool isEveryTypeKnown() {
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
static_assert(isEveryTypeKnown(), "lists of texts and of records go out only, listeners in only");

}  // namespace

std::span<const Interface> interfaces() { return kInterfaces; }
std::span<const Interface> services() { return interfaces().first(kServices); }
std::span<const Interface> listeners() { return interfaces().subspan(kServices); }

}  // namespace veskctl
