#include <com/qv/CallClient.h>
#include <vesk/call.h>

#include "call/CallCallbacks.h"
#include "ipc/ClientApi.h"

using namespace com::qv;

namespace {

ClientApi<CallClient>& service = ClientApi<CallClient>::instance();

}  // namespace

/* Connecting and events */

bool connect_call_service(
    vesk_call_info_callback on_dial_call_start, vesk_call_value_callback on_dial_call_stop,
    vesk_call_value_callback on_dial_selection, vesk_call_info_callback on_new_ongoing_call,
    vesk_call_info_callback on_call_state_changed, vesk_call_info_callback on_call_info_changed,
    vesk_call_value_callback on_current_call_changed, vesk_call_value_callback on_delete_ongoing_call,
    vesk_call_value_callback on_update_call_video_stream, vesk_call_members_callback on_conference_start,
    vesk_call_value_callback on_conference_stop, vesk_call_members_callback on_conference_members_changed,
    vesk_call_notice_callback on_conference_manager, vesk_call_keycode_callback on_keycode,
    vesk_call_text_callback on_make_call_ret, vesk_call_info_callback on_dialing_info_changed,
    vesk_auto_redial_info_callback on_auto_redial_info_changed,
    vesk_call_completion_info_callback on_call_completion_info_changed,
    vesk_service_died_callback on_service_died) {
  const CallCallbacks callbacks{.dialCallStart = on_dial_call_start,
                                .dialCallStop = on_dial_call_stop,
                                .dialSelection = on_dial_selection,
                                .newOngoingCall = on_new_ongoing_call,
                                .callStateChanged = on_call_state_changed,
                                .callInfoChanged = on_call_info_changed,
                                .currentCallChanged = on_current_call_changed,
                                .deleteOngoingCall = on_delete_ongoing_call,
                                .updateCallVideoStream = on_update_call_video_stream,
                                .conferenceStart = on_conference_start,
                                .conferenceStop = on_conference_stop,
                                .conferenceMembersChanged = on_conference_members_changed,
                                .conferenceManager = on_conference_manager,
                                .keycode = on_keycode,
                                .makeCallRet = on_make_call_ret,
                                .dialingInfoChanged = on_dialing_info_changed,
                                .autoRedialInfoChanged = on_auto_redial_info_changed,
                                .callCompletionInfoChanged = on_call_completion_info_changed};
  if (service.connect(on_service_died, [&] { callCallbacks.set(callbacks); })) return true;
  // Unlike the other services, this one releases its earlier client when an attempt fails.
  service.disconnect();
  return false;
}

/* Placing and ending calls */

int binder_make_call(int line, const char* number) {
  return service.value(&ICallService::makeCall, line, number);
}
int binder_make_av_call(int line, const char* number, int video) {
  return service.value(&ICallService::makeAvCall, line, number, video);
}
int binder_play_mwi(int line, const char* number) {
  return service.value(&ICallService::playMwi, line, number);
}
int binder_get_first_valid_line(void) { return service.value(&ICallService::getFirstValidLine); }
void binder_create_new_call(int value) { service.send(&ICallService::createNewCall, value); }
void binder_headset_answer_call(void) { service.send(&ICallService::headsetAnswerCall); }
void binder_set_current_call(int value) { service.send(&ICallService::setCurrentCall, value); }
void binder_close_call(int value) { service.send(&ICallService::closeCall, value); }
bool binder_get_call_have_ivr(void) { return service.value(&ICallService::getCallHaveIvr); }

/* Hold and mute */

void binder_set_call_hold_status(int value, bool hold) {
  service.send(&ICallService::setCallHoldStatus, value, hold);
}
void binder_switch_call_muted_state(void) { service.send(&ICallService::switchCallMutedState); }

/* Conferences */

void binder_add_conference_members(const int* members, int count) {
  service.send(&ICallService::conferenceAddMembers, IntArray{members, count});
}
void binder_remove_conference_member(int member) {
  service.send(&ICallService::conferenceRemoveMember, member);
}
void binder_hold_conference_member(int member) { service.send(&ICallService::conferenceHoldMember, member); }
void binder_resume_conference_member(int member) {
  service.send(&ICallService::conferenceResumeMember, member);
}
void binder_mute_conference_member(int member, bool mute) {
  service.send(&ICallService::conferenceMuteMember, member, mute);
}
void binder_mute_all_conference_member(int value, bool mute) {
  service.send(&ICallService::conferenceMuteAllMember, value, mute);
}

/* Dialling and tones */

int binder_edial_with_line(int line, const char* number) {
  return service.value(&ICallService::edialWithLine, line, number);
}
int binder_edial_change_line(int value) { return service.value(&ICallService::edialChangeLine, value); }
int binder_edial_make_call(void) { return service.value(&ICallService::edialMakeCall); }
void binder_dial_number_update_request(const char* number) {
  service.send(&ICallService::dialNumberUpdateRequest, number);
}
void binder_dial_selection_request(int value) { service.send(&ICallService::dialSelectionRequest, value); }
void binder_key_multiplexing(bool value) { service.send(&ICallService::keyMultiPlexing, value); }
void binder_play_tone_request(int tone) { service.send(&ICallService::playToneRequest, tone); }
void binder_stop_tone_request(void) { service.send(&ICallService::stopToneRequest); }

/* Redial and call completion */

void binder_redial_call(void) { service.send(&ICallService::redialCall); }
void binder_call_auto_redial(void) { service.send(&ICallService::callAutoRedial); }
void binder_auto_redial_make_call(void) { service.send(&ICallService::autoRedialsoftbtnMakeCall); }
void binder_auto_redial_cancel(void) { service.send(&ICallService::autoRedialsoftbtnCancel); }
void binder_call_completion(void) { service.send(&ICallService::callCompletion); }
void binder_complete_dial_confirm(int line, const char* number) {
  service.send(&ICallService::callCompleteDialConfirm, line, number);
}
void binder_complete_cancel(int line, const char* number) {
  service.send(&ICallService::callCompleteCancel, line, number);
}

/* Video and snapshots */

void binder_set_video_display_area(int value, const char* area_a, const char* area_b) {
  service.send(&ICallService::setVideoDisplayArea, value, Record{area_a, VESK_VIDEO_AREA_SIZE},
               Record{area_b, VESK_VIDEO_AREA_SIZE});
}
void binder_set_video_stream_area(int a, int b) {
  service.send(&ICallService::setVideoMultiStreamArea, a, b);
}
void binder_video_snapshot(int value) { service.send(&ICallService::videoSnapshot, value); }
int binder_get_snapshot_nums(int value) { return service.value(&ICallService::getSnapshotNums, value); }
void binder_snapshot_data_request(int value) { service.send(&ICallService::requestSnapShotData, value); }
void binder_get_snapshot_info_by_index(int a, int index, void* info) {
  service.fetch<VESK_SNAPSHOT_INFO_SIZE>(info, &ICallService::getSnapshotInfoByIndex, a, index);
}
void binder_delete_snapshot(int value) { service.send(&ICallService::deleteSnapshot, value); }

/* Door */

void binder_ctrl_led_dooropen(void) { service.send(&ICallService::ctrlLedDooropen); }
void binder_set_dooropen_type(int type) { service.send(&ICallService::setDtmfType, type); }