#include <com/qv/CallClient.h>
#include <vesk/call.h>

#include "call/CallCallbacks.h"
#include "ipc/Immortal.h"
#include "ipc/Service.h"

#define COM_QV_INTERFACE CallService
#define COM_QV_METHODS <com/qv/CallService.def>
#include "ipc/DeclareRows.h"

using namespace com::qv;

Synchronized<CallCallbacks>& com::qv::callCallbacks = immortal<Synchronized<CallCallbacks>>();

namespace {

Service<CallClient>& service = immortal<Service<CallClient>>();
const ReleaseAtExit<CallClient> kReleaseAtExit{service};

using VideoArea = Record<VESK_VIDEO_AREA_SIZE>;

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
  const CallCallbacks callbacks{on_dial_call_start,
                                on_dial_call_stop,
                                on_dial_selection,
                                on_new_ongoing_call,
                                on_call_state_changed,
                                on_call_info_changed,
                                on_current_call_changed,
                                on_delete_ongoing_call,
                                on_update_call_video_stream,
                                on_conference_start,
                                on_conference_stop,
                                on_conference_members_changed,
                                on_conference_manager,
                                on_keycode,
                                on_make_call_ret,
                                on_dialing_info_changed,
                                on_auto_redial_info_changed,
                                on_call_completion_info_changed};
  const auto hook = [](ClientBase* client, const android::wp<android::IBinder>&) { service.died(client); };
  if (service.connect(hook, on_service_died, [&] { callCallbacks.set(callbacks); })) return true;
  // Only this service gives up the connection that it had.
  service.disconnect();
  return false;
}

/* Placing and ending calls */

int binder_make_call(int line, const char* number) {
  return service.value(CallService::makeCall, line, number);
}
int binder_make_av_call(int line, const char* number, int video) {
  return service.value(CallService::makeAvCall, line, number, video);
}
int binder_play_mwi(int line, const char* number) {
  return service.value(CallService::playMwi, line, number);
}
int binder_get_first_valid_line(void) { return service.value(CallService::getFirstValidLine); }
void binder_create_new_call(int value) { service.send(CallService::createNewCall, value); }
void binder_headset_answer_call(void) { service.send(CallService::headsetAnswerCall); }
void binder_set_current_call(int value) { service.send(CallService::setCurrentCall, value); }
void binder_close_call(int value) { service.send(CallService::closeCall, value); }
bool binder_get_call_have_ivr(void) { return service.value(CallService::getCallHaveIvr); }

/* Hold and mute */

void binder_set_call_hold_status(int value, bool hold) {
  service.send(CallService::setCallHoldStatus, value, hold);
}
void binder_switch_call_muted_state(void) { service.send(CallService::switchCallMutedState); }

/* Conferences */

void binder_add_conference_members(const int* members, int count) {
  service.send(CallService::conferenceAddMembers, IntArray{members, count});
}
void binder_remove_conference_member(int member) {
  service.send(CallService::conferenceRemoveMember, member);
}
void binder_hold_conference_member(int member) { service.send(CallService::conferenceHoldMember, member); }
void binder_resume_conference_member(int member) {
  service.send(CallService::conferenceResumeMember, member);
}
void binder_mute_conference_member(int member, bool mute) {
  service.send(CallService::conferenceMuteMember, member, mute);
}
void binder_mute_all_conference_member(int value, bool mute) {
  service.send(CallService::conferenceMuteAllMember, value, mute);
}

/* Dialling and tones */

int binder_edial_with_line(int line, const char* number) {
  return service.value(CallService::edialWithLine, line, number);
}
int binder_edial_change_line(int value) { return service.value(CallService::edialChangeLine, value); }
int binder_edial_make_call(void) { return service.value(CallService::edialMakeCall); }
void binder_dial_number_update_request(const char* number) {
  service.send(CallService::dialNumberUpdateRequest, number);
}
void binder_dial_selection_request(int value) { service.send(CallService::dialSelectionRequest, value); }
void binder_key_multiplexing(bool value) { service.send(CallService::keyMultiPlexing, value); }
void binder_play_tone_request(int tone) { service.send(CallService::playToneRequest, tone); }
void binder_stop_tone_request(void) { service.send(CallService::stopToneRequest); }

/* Redial and call completion */

void binder_redial_call(void) { service.send(CallService::redialCall); }
void binder_call_auto_redial(void) { service.send(CallService::callAutoRedial); }
void binder_auto_redial_make_call(void) { service.send(CallService::autoRedialsoftbtnMakeCall); }
void binder_auto_redial_cancel(void) { service.send(CallService::autoRedialsoftbtnCancel); }
void binder_call_completion(void) { service.send(CallService::callCompletion); }
void binder_complete_dial_confirm(int line, const char* number) {
  service.send(CallService::callCompleteDialConfirm, line, number);
}
void binder_complete_cancel(int line, const char* number) {
  service.send(CallService::callCompleteCancel, line, number);
}

/* Video and snapshots */

void binder_set_video_display_area(int value, const char* area_a, const char* area_b) {
  service.send(CallService::setVideoDisplayArea, value, VideoArea{area_a}, VideoArea{area_b});
}
void binder_set_video_stream_area(int a, int b) { service.send(CallService::setVideoMultiStreamArea, a, b); }
void binder_video_snapshot(int value) { service.send(CallService::videoSnapshot, value); }
int binder_get_snapshot_nums(int value) { return service.value(CallService::getSnapshotNums, value); }
void binder_snapshot_data_request(int value) { service.send(CallService::requestSnapShotData, value); }
void binder_get_snapshot_info_by_index(int a, int index, void* info) {
  service.fetch<VESK_SNAPSHOT_INFO_SIZE>(info, CallService::getSnapshotInfoByIndex, a, index);
}
void binder_delete_snapshot(int value) { service.send(CallService::deleteSnapshot, value); }

/* Door */

void binder_ctrl_led_dooropen(void) { service.send(CallService::ctrlLedDooropen); }
void binder_set_dooropen_type(int type) { service.send(CallService::setDtmfType, type); }