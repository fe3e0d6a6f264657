/**
 * @file
 * The call service: placing and ending calls, conferences, dialling and tones, redial and call completion,
 * video and snapshots, the door, and the events that tell of all this.
 *
 * Read the conventions in <vesk/vesk_client.h> first. None of these functions logs; connect_call_service and
 * the events do, under the tag "CallClient".
 */
#ifndef VESK_CALL_H
#define VESK_CALL_H

#include <assert.h>
#include <stdbool.h>
#include <stdint.h>

#include <vesk/common.h>

#ifdef __cplusplus
extern "C" {
#endif

/* Records */

/** Sizes of the call service's records in bytes. */
#define VESK_CALL_INFO_SIZE 360
#define VESK_AUTO_REDIAL_INFO_SIZE 524
#define VESK_CALL_COMPLETION_INFO_SIZE 516
#define VESK_VIDEO_AREA_SIZE 16
#define VESK_SNAPSHOT_INFO_SIZE 256

/** One call, as most of the call events show it. */
typedef struct vesk_call_info {
  int32_t line;
  int32_t chan;   /**< channel; the call's own number */
  char name[256]; /**< the other side's name, ends with a zero */
  /** The other side's number, ends with a zero. The bytes behind that zero may hold further fields of the
   * device. */
  char number[96];
} vesk_call_info;
static_assert(sizeof(vesk_call_info) == VESK_CALL_INFO_SIZE, "call information record");

/** The state of automatic redialling. */
typedef struct vesk_auto_redial_info {
  int32_t maxtimes;     /**< how often the number is dialled at most */
  int32_t interval;     /**< time between two attempts, in the service's unit */
  char dialNumber[512]; /**< ends with a zero */
  int32_t currenttimes; /**< how often it has been dialled */
} vesk_auto_redial_info;
static_assert(sizeof(vesk_auto_redial_info) == VESK_AUTO_REDIAL_INFO_SIZE, "automatic redial record");

/** A number to which a call can be completed. */
typedef struct vesk_call_completion_info {
  char dialNumber[512]; /**< ends with a zero */
  int32_t line;
} vesk_call_completion_info;
static_assert(sizeof(vesk_call_completion_info) == VESK_CALL_COMPLETION_INFO_SIZE, "call completion record");

/* Connecting and events */

/** @param call_info a vesk_call_info: VESK_CALL_INFO_SIZE bytes, a copy of the callback's own */
typedef void (*vesk_call_info_callback)(void* call_info);
/** @param value what the event carries; the events below name it */
typedef void (*vesk_call_value_callback)(int value);
/**
 * @param value   what the event carries besides the members, as the service sent it
 * @param members the members, in the service's order; may be null if count is 0
 * @param count   how many they are
 */
typedef void (*vesk_call_members_callback)(int value, const int* members, int count);
typedef void (*vesk_call_notice_callback)(void);
/** @param code the key's code; @param status the key's state; both as the service sent them */
typedef void (*vesk_call_keycode_callback)(int code, int status);
/** @param text UTF-8, ends with a zero, of at most 127 bytes without it; the service's text is cut after that
 */
typedef void (*vesk_call_text_callback)(const char* text);
/** @param auto_redial_info a vesk_auto_redial_info: VESK_AUTO_REDIAL_INFO_SIZE bytes, a copy of the
 * callback's own */
typedef void (*vesk_call_auto_redial_callback)(void* auto_redial_info);
/**
 * @param completion_info a vesk_call_completion_info: VESK_CALL_COMPLETION_INFO_SIZE bytes, a copy of the
 * callback's own
 * @param flag            as the service sent it
 */
typedef void (*vesk_call_completion_callback)(void* completion_info, bool flag);

/**
 * Connects to the call service and registers for its events.
 *
 * Waits until the service is there; if it isn't after some seconds (the service manager's patience, about 5
 * s), gives up. May be called again at any time, from a callback too, for example after the service has died:
 * a successful call replaces the connection and all callbacks. A failed one leaves the call service without a
 * connection, even if there was one before; a service that is given up in this way does not call
 * on_service_died.
 *
 * Every callback may be null: the event is logged and dropped. Threads and lifetimes are those of
 * convention 10. An event that arrives before the function has returned goes to the callbacks of the
 * connection before, or is dropped. An event whose record is not of its exact size is dropped, most with a
 * line in the log.
 *
 * @param on_dial_call_start               dialling has begun
 * @param on_dial_call_stop                dialling has ended
 * @param on_dial_selection                the service wants a selection for dialling; see
 * binder_dial_selection_request
 * @param on_new_ongoing_call              there is a new call
 * @param on_call_state_changed            a call has changed its state
 * @param on_call_info_changed             a call's information has changed
 * @param on_current_call_changed          another call is the current one; value: its channel
 * @param on_delete_ongoing_call           a call is gone; value: its channel
 * @param on_update_call_video_stream      the video streams of the calls have changed; value: a number of the
 * service's
 * @param on_conference_start              a conference has begun, with these members
 * @param on_conference_stop               a conference has ended
 * @param on_conference_members_changed    a conference has these members now
 * @param on_conference_manager            the service asks for the conference to be managed
 * @param on_keycode                       a key was pressed or released
 * @param on_make_call_ret                 what came of placing a call, as a text
 * @param on_dialing_info_changed          what is being dialled has changed
 * @param on_auto_redial_info_changed      the state of automatic redialling has changed
 * @param on_call_completion_info_changed  a call completion has changed
 * @param on_service_died                  the call service has died
 * @return true if connected. Whether the service accepted the registration for events is not told.
 */
VESK_API bool connect_call_service(
    vesk_call_info_callback on_dial_call_start, vesk_call_value_callback on_dial_call_stop,
    vesk_call_value_callback on_dial_selection, vesk_call_info_callback on_new_ongoing_call,
    vesk_call_info_callback on_call_state_changed, vesk_call_info_callback on_call_info_changed,
    vesk_call_value_callback on_current_call_changed, vesk_call_value_callback on_delete_ongoing_call,
    vesk_call_value_callback on_update_call_video_stream, vesk_call_members_callback on_conference_start,
    vesk_call_value_callback on_conference_stop, vesk_call_members_callback on_conference_members_changed,
    vesk_call_notice_callback on_conference_manager, vesk_call_keycode_callback on_keycode,
    vesk_call_text_callback on_make_call_ret, vesk_call_info_callback on_dialing_info_changed,
    vesk_call_auto_redial_callback on_auto_redial_info_changed,
    vesk_call_completion_callback on_call_completion_info_changed,
    vesk_service_died_callback on_service_died);

/* Placing and ending calls */

VESK_API int binder_make_call(int line, const char* number);
VESK_API int binder_make_av_call(int line, const char* number, int video);
VESK_API int binder_get_first_valid_line(void);
VESK_API void binder_create_new_call(int value);
VESK_API void binder_headset_answer_call(void);
VESK_API void binder_set_current_call(int value);
VESK_API void binder_close_call(int value);
VESK_API int binder_play_mwi(int line, const char* number);
VESK_API bool binder_get_call_have_ivr(void);

/* Hold and mute */

VESK_API void binder_set_call_hold_status(int value, bool hold);
VESK_API void binder_switch_call_muted_state(void);

/* Conferences */

VESK_API void binder_add_conference_members(const int* members, int count);
VESK_API void binder_remove_conference_member(int member);
VESK_API void binder_hold_conference_member(int member);
VESK_API void binder_resume_conference_member(int member);
VESK_API void binder_mute_conference_member(int member, bool mute);
VESK_API void binder_mute_all_conference_member(int value, bool mute);

/* Dialling and tones */

VESK_API int binder_edial_with_line(int line, const char* number);
VESK_API int binder_edial_change_line(int value);
VESK_API int binder_edial_make_call(void);
VESK_API void binder_dial_number_update_request(const char* number);
VESK_API void binder_dial_selection_request(int value);
VESK_API void binder_key_multiplexing(bool value);
VESK_API void binder_play_tone_request(int tone);
VESK_API void binder_stop_tone_request(void);

/* Redial and call completion */

VESK_API void binder_redial_call(void);
VESK_API void binder_call_auto_redial(void);
VESK_API void binder_auto_redial_make_call(void);
VESK_API void binder_auto_redial_cancel(void);
VESK_API void binder_call_completion(void);
VESK_API void binder_complete_dial_confirm(int line, const char* number);
VESK_API void binder_complete_cancel(int line, const char* number);

/* Video and snapshots */

VESK_API void binder_set_video_display_area(int value, const char* area_a, const char* area_b);
VESK_API void binder_set_video_stream_area(int a, int b);
VESK_API void binder_video_snapshot(int value);
VESK_API int binder_get_snapshot_nums(int value);
VESK_API void binder_snapshot_data_request(int value);
VESK_API void binder_get_snapshot_info_by_index(int a, int index, void* info);
VESK_API void binder_delete_snapshot(int value);

/* Door */

VESK_API void binder_ctrl_led_dooropen(void);
VESK_API void binder_set_dooropen_type(int type);

#ifdef __cplusplus
}
#endif

#endif
