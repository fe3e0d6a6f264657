#pragma once

#include <vesk/call.h>

#include "ipc/Synchronized.h"

namespace com::qv {

/** The application's event callbacks: the parameters of connect_call_service, in their order. */
struct CallCallbacks {
  vesk_call_info_callback dialCallStart;
  vesk_call_value_callback dialCallStop;
  vesk_call_value_callback dialSelection;
  vesk_call_info_callback newOngoingCall;
  vesk_call_info_callback callStateChanged;
  vesk_call_info_callback callInfoChanged;
  vesk_call_value_callback currentCallChanged;
  vesk_call_value_callback deleteOngoingCall;
  vesk_call_value_callback updateCallVideoStream;
  vesk_call_members_callback conferenceStart;
  vesk_call_value_callback conferenceStop;
  vesk_call_members_callback conferenceMembersChanged;
  vesk_call_notice_callback conferenceManager;
  vesk_call_keycode_callback keycode;
  vesk_call_text_callback makeCallRet;
  vesk_call_info_callback dialingInfoChanged;
  vesk_auto_redial_info_callback autoRedialInfoChanged;
  vesk_call_completion_info_callback callCompletionInfoChanged;
};

/** The callbacks of the current connection. */
inline constinit Synchronized<CallCallbacks> callCallbacks;

}  // namespace com::qv
