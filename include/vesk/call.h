/**
 * @file
 * The call service: placing and ending calls, conferences, dialling and tones, redial and
 * call completion, video and snapshots, the door, and the call events.
 *
 * Read the conventions in <vesk/vesk_client.h> first. connect_call_service and the events log under
 * the tag "CallClient"; the other functions log nothing.
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

/** A call, in most of the call events. */
typedef struct vesk_call_info {
  int32_t line;   /**< the line of the call */
  int32_t chan;   /**< the channel of the call */
  char name[256]; /**< the other party's name, zero-terminated */
  /** The other party's number, zero-terminated. The device may store further fields in the bytes
   * after the zero. */
  char number[96];
} vesk_call_info;
static_assert(sizeof(vesk_call_info) == VESK_CALL_INFO_SIZE, "call information record");

/** The state of automatic redialling. */
typedef struct vesk_auto_redial_info {
  int32_t maxtimes;     /**< the maximum number of attempts */
  int32_t interval;     /**< the time between two attempts, in the service's unit */
  char dialNumber[512]; /**< zero-terminated */
  int32_t currenttimes; /**< the number of attempts so far */
} vesk_auto_redial_info;
static_assert(sizeof(vesk_auto_redial_info) == VESK_AUTO_REDIAL_INFO_SIZE, "automatic redial record");

/** A call that can be completed. */
typedef struct vesk_call_completion_info {
  char dialNumber[512]; /**< zero-terminated */
  int32_t line;         /**< the line of the call */
} vesk_call_completion_info;
static_assert(sizeof(vesk_call_completion_info) == VESK_CALL_COMPLETION_INFO_SIZE, "call completion record");

/* Connecting and events */

/** An event with a vesk_call_info. */
typedef void (*vesk_call_info_callback)(void* call_info);

/** An event with a number. */
typedef void (*vesk_call_value_callback)(int value);

/** A conference event with `count` members; `members` may be null if `count` is 0. */
typedef void (*vesk_call_members_callback)(int value, const int* members, int count);

/** An event without arguments. */
typedef void (*vesk_call_notice_callback)(void);

/** The event of a key. */
typedef void (*vesk_call_keycode_callback)(int code, int status);

/** An event with a text, truncated to 127 bytes, possibly in the middle of a character. */
typedef void (*vesk_call_text_callback)(const char* text);

/** An event with a vesk_auto_redial_info. */
typedef void (*vesk_auto_redial_info_callback)(void* auto_redial_info);

/** An event with a vesk_call_completion_info and a flag. */
typedef void (*vesk_call_completion_info_callback)(void* completion_info, bool flag);

/**
 * Connects to the call service and registers for its events.
 *
 * If the service is not registered, blocks for the service manager's timeout of about five seconds
 * and fails. May be called again at any time. A successful call replaces the connection and all
 * callbacks. A failed one leaves the call service without a connection, even if there was one
 * before.
 *
 * The death of a replaced connection is not reported. The service does not learn that a connection
 * was replaced: if it keeps the earlier listeners, it sends each event once for every connect.
 *
 * Every callback may be null; such an event is logged and dropped. While connect runs, events may
 * still go to the callbacks of the previous connect, or be dropped if there was none. An event whose record
 * has the wrong size is dropped, in most cases with a line in the log.
 *
 * @param on_dial_call_start              dialling has started
 * @param on_dial_call_stop               dialling has stopped
 * @param on_dial_selection               a selection for dialling
 * @param on_new_ongoing_call             there is a new call
 * @param on_call_state_changed           the state of a call has changed
 * @param on_call_info_changed            the information on a call has changed
 * @param on_current_call_changed         another call is current; the value is its channel
 * @param on_delete_ongoing_call          a call is gone; the value is its channel
 * @param on_update_call_video_stream     the video streams of a call have changed
 * @param on_conference_start             a conference has started
 * @param on_conference_stop              a conference has stopped
 * @param on_conference_members_changed   the members of a conference have changed
 * @param on_conference_manager           the conference manager event
 * @param on_keycode                      a key and its status
 * @param on_make_call_ret                the result of placing a call, as a text
 * @param on_dialing_info_changed         the information on the call being dialled has changed
 * @param on_auto_redial_info_changed     the state of automatic redial has changed
 * @param on_call_completion_info_changed the state of call completion has changed
 * @param on_service_died                 the service has died
 * @return true if connected, even if the service refused the registration for events
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
    vesk_auto_redial_info_callback on_auto_redial_info_changed,
    vesk_call_completion_info_callback on_call_completion_info_changed,
    vesk_service_died_callback on_service_died);

/* Placing and ending calls */

/** Places a call. */
VESK_API int binder_make_call(int line, const char* number);

/** Places a call, with video if `video` is not 0. */
VESK_API int binder_make_av_call(int line, const char* number, int video);

/** Plays the waiting messages (MWI). */
VESK_API int binder_play_mwi(int line, const char* number);

/** Returns the first valid line. */
VESK_API int binder_get_first_valid_line(void);

/** Creates a new call. */
VESK_API void binder_create_new_call(int value);

/** Answers a call on the headset. */
VESK_API void binder_headset_answer_call(void);

/** Makes a call the current one. */
VESK_API void binder_set_current_call(int value);

/** Ends a call. */
VESK_API void binder_close_call(int value);

/** Returns whether the call has a voice menu (IVR); false on failure. */
VESK_API bool binder_get_call_have_ivr(void);

/* Hold and mute */

/** Puts a call on hold or resumes it. */
VESK_API void binder_set_call_hold_status(int value, bool hold);

/** Mutes the call, or unmutes it if it is muted. */
VESK_API void binder_switch_call_muted_state(void);

/* Conferences */

/**
 * Adds `count` members to the conference.
 *
 * With a `count` of 0 or less, sends an empty list; `members` may be null then.
 */
VESK_API void binder_add_conference_members(const int* members, int count);

/** Removes a member from the conference. */
VESK_API void binder_remove_conference_member(int member);

/** Puts a member of the conference on hold. */
VESK_API void binder_hold_conference_member(int member);

/** Resumes a member that was put on hold. */
VESK_API void binder_resume_conference_member(int member);

/** Mutes or unmutes a member of the conference. */
VESK_API void binder_mute_conference_member(int member, bool mute);

/** Mutes or unmutes all members of the conference. */
VESK_API void binder_mute_all_conference_member(int value, bool mute);

/* Dialling and tones */

/** Dials a number in edial mode. */
VESK_API int binder_edial_with_line(int line, const char* number);

/** Changes the line in edial mode. */
VESK_API int binder_edial_change_line(int value);

/** Places a call in edial mode. */
VESK_API int binder_edial_make_call(void);

/** Sends the digits that have been entered so far. */
VESK_API void binder_dial_number_update_request(const char* number);

/** Sends a selection for dialling. */
VESK_API void binder_dial_selection_request(int value);

/** Switches the multiplexing of keys. */
VESK_API void binder_key_multiplexing(bool value);

/** Plays a tone. */
VESK_API void binder_play_tone_request(int tone);

/** Stops the tone that plays. */
VESK_API void binder_stop_tone_request(void);

/* Redial and call completion */

/** Redials the last number. */
VESK_API void binder_redial_call(void);

/** Requests automatic redial. */
VESK_API void binder_call_auto_redial(void);

/** Presses the soft key "call" of automatic redial. */
VESK_API void binder_auto_redial_make_call(void);

/** Presses the soft key "cancel" of automatic redial. */
VESK_API void binder_auto_redial_cancel(void);

/** Requests call completion. */
VESK_API void binder_call_completion(void);

/** Confirms the dialling of a call completion. */
VESK_API void binder_complete_dial_confirm(int line, const char* number);

/** Cancels a call completion. */
VESK_API void binder_complete_cancel(int line, const char* number);

/* Video and snapshots */

/**
 * Sets where video is displayed. The areas have VESK_VIDEO_AREA_SIZE bytes each; they are not
 * strings.
 */
VESK_API void binder_set_video_display_area(int value, const char* area_a, const char* area_b);

/** Sets the areas of several video streams. */
VESK_API void binder_set_video_stream_area(int a, int b);

/** Takes a snapshot of the video. */
VESK_API void binder_video_snapshot(int value);

/** Returns the number of snapshots. */
VESK_API int binder_get_snapshot_nums(int value);

/** Requests the data of a snapshot. The reply is discarded. */
VESK_API void binder_snapshot_data_request(int value);

/**
 * Fetches the information on a snapshot (VESK_SNAPSHOT_INFO_SIZE bytes). The only sign of a failure
 * is that `info` is untouched.
 */
VESK_API void binder_get_snapshot_info_by_index(int a, int index, void* info);

/** Deletes a snapshot. */
VESK_API void binder_delete_snapshot(int value);

/* Door */

/** Controls the light of the door opener. */
VESK_API void binder_ctrl_led_dooropen(void);

/** Sets the type of the DTMF tones that open the door. */
VESK_API void binder_set_dooropen_type(int type);

#ifdef __cplusplus
}
#endif

#endif
