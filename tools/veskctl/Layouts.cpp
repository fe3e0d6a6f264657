#include "Layouts.h"

#include <vesk/vesk_client.h>

#include <type_traits>

namespace veskctl {

namespace {

template <class T>
constexpr size_t kTextSize = std::is_array_v<T> ? sizeof(T) : 0;

#define VESKCTL_FIELD(record, field) #field, offsetof(record, field), kTextSize < decltype(record::field)>

constexpr Field kCallInfo[] = {
    {VESKCTL_FIELD(vesk_call_info, line)},
    {VESKCTL_FIELD(vesk_call_info, chan)},
    {VESKCTL_FIELD(vesk_call_info, name)},
    {VESKCTL_FIELD(vesk_call_info, number), true},
};

constexpr Field kAutoRedialInfo[] = {
    {VESKCTL_FIELD(vesk_auto_redial_info, maxtimes)},
    {VESKCTL_FIELD(vesk_auto_redial_info, interval)},
    {VESKCTL_FIELD(vesk_auto_redial_info, dialNumber)},
    {VESKCTL_FIELD(vesk_auto_redial_info, currenttimes)},
};

constexpr Field kCompletionInfo[] = {
    {VESKCTL_FIELD(vesk_call_completion_info, dialNumber)},
    {VESKCTL_FIELD(vesk_call_completion_info, line)},
};

constexpr Field kDssDisplay[] = {
    {VESKCTL_FIELD(vesk_dss_display, name)},
    {VESKCTL_FIELD(vesk_dss_display, value)},
    {VESKCTL_FIELD(vesk_dss_display, icon)},
    {VESKCTL_FIELD(vesk_dss_display, theme)},
};

constexpr Field kDsskeyValue[] = {
    {VESKCTL_FIELD(vesk_dsskey_value, type)},
    {VESKCTL_FIELD(vesk_dsskey_value, text)},
};

constexpr Field kUserSoftkey[] = {
    {VESKCTL_FIELD(vesk_user_softkey, name)},
    {VESKCTL_FIELD(vesk_user_softkey, type)},
    {VESKCTL_FIELD(vesk_user_softkey, icon)},
};

constexpr Layout kLayouts[] = {
    {"callInfo", sizeof(vesk_call_info), kCallInfo},
    {"autoRedialInfo", sizeof(vesk_auto_redial_info), kAutoRedialInfo},
    {"completionInfo", sizeof(vesk_call_completion_info), kCompletionInfo},
    {"display", sizeof(vesk_dss_display), kDssDisplay},
    {"dsskeyValue", sizeof(vesk_dsskey_value), kDsskeyValue},
    {"softkey", sizeof(vesk_user_softkey), kUserSoftkey},
};

}  // namespace

const Layout* findLayout(std::string_view parameter, size_t size) {
  for (const Layout& layout : kLayouts) {
    if (layout.parameter == parameter && layout.size == size) return &layout;
  }
  return nullptr;
}

}  // namespace veskctl
