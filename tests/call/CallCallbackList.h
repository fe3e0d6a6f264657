#pragma once

#include <vesk/call.h>

#include <tuple>

/** The arguments of connect_call_service. */
using CallCallbackList =
    std::tuple<vesk_call_info_callback, vesk_call_value_callback, vesk_call_value_callback,
               vesk_call_info_callback, vesk_call_info_callback, vesk_call_info_callback,
               vesk_call_value_callback, vesk_call_value_callback, vesk_call_value_callback,
               vesk_call_members_callback, vesk_call_value_callback, vesk_call_members_callback,
               vesk_call_notice_callback, vesk_call_keycode_callback, vesk_call_text_callback,
               vesk_call_info_callback, vesk_auto_redial_info_callback, vesk_call_completion_info_callback,
               vesk_service_died_callback>;

constexpr CallCallbackList kNoCallbacks{};

/** Where in the list. */
enum CallCallbackIndex : size_t {
  kOnCallStateChanged = 4,
  kOnCallInfoChanged = 5,
  kOnServiceDied = 18,
};

inline bool connectCallService(const CallCallbackList& callbacks) {
  return std::apply(connect_call_service, callbacks);
}
