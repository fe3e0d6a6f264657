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
  int32_t line;   /**< the line that it is on */
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
  int32_t line;         /**< the line that it was called on */
} vesk_call_completion_info;
static_assert(sizeof(vesk_call_completion_info) == VESK_CALL_COMPLETION_INFO_SIZE, "call completion record");

/* Connecting and events */

/** @param call_info a vesk_call_info of VESK_CALL_INFO_SIZE bytes */
typedef void (*vesk_call_info_callback)(void* call_info);

/** @param value what the event carries */
typedef void (*vesk_call_value_callback)(int value);

/**
 * @param value   what the event carries besides the members
 * @param members the members, in the service's order; may be null if there are none
 * @param count   how many they are, 0 or more
 */
typedef void (*vesk_call_members_callback)(int value, const int* members, int count);

/** The event is all there is to tell. */
typedef void (*vesk_call_notice_callback)(void);

/**
 * @param code   the key
 * @param status what happened to it
 */
typedef void (*vesk_call_keycode_callback)(int code, int status);

/**
 * @param text at most 127 bytes and a terminating zero; a longer text is cut there, if need be inside a
 *             character
 */
typedef void (*vesk_call_text_callback)(const char* text);

/** @param auto_redial_info a vesk_auto_redial_info of VESK_AUTO_REDIAL_INFO_SIZE bytes */
typedef void (*vesk_auto_redial_info_callback)(void* auto_redial_info);

/**
 * @param completion_info a vesk_call_completion_info of VESK_CALL_COMPLETION_INFO_SIZE bytes
 * @param flag            goes with the record, as the service sent it
 */
typedef void (*vesk_call_completion_info_callback)(void* completion_info, bool flag);

/**
 * Connects to the call service and registers for its events.
 *
 * If the service is not there, waits for it as long as the service manager does, some five seconds, and then
 * fails. May be called again at any time. A successful call replaces the connection and all callbacks. A
 * failed one leaves the call service without a connection, even if there was one before.
 *
 * A connection that was replaced or given up in this way is not reported to on_service_died. Nor is the
 * service told of that: if it sends its events to both the earlier and the new connection, each comes twice.
 *
 * Every callback may be null; such an event is logged and dropped. Until the connection stands, events go to
 * the callbacks given before, if there are any. An event whose record is not exactly of its size is dropped,
 * mostly with a line in the log.
 *
 * @param on_dial_call_start              dialling has begun
 * @param on_dial_call_stop               dialling has ended
 * @param on_dial_selection               a selection for dialling is due
 * @param on_new_ongoing_call             there is a new call
 * @param on_call_state_changed           the state of a call has changed
 * @param on_call_info_changed            the information on a call has changed
 * @param on_current_call_changed         another call is the current one; the value is its channel
 * @param on_delete_ongoing_call          a call is gone; the value is its channel
 * @param on_update_call_video_stream     the video streams have changed; the value is a number
 * @param on_conference_start             a conference has begun
 * @param on_conference_stop              a conference has ended
 * @param on_conference_members_changed   the members of a conference have changed; these are all of them
 * @param on_conference_manager           the management of the conference is due
 * @param on_keycode                      something happened to a key
 * @param on_make_call_ret                what came of placing a call, in words
 * @param on_dialing_info_changed         the information on the call that is being dialled has changed
 * @param on_auto_redial_info_changed     the state of automatic redial has changed
 * @param on_call_completion_info_changed the state of call completion has changed
 * @param on_service_died                 the service has died, and the connection with it
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
    vesk_auto_redial_info_callback on_auto_redial_info_changed,
    vesk_call_completion_info_callback on_call_completion_info_changed,
    vesk_service_died_callback on_service_died);

/* Placing and ending calls */

/**
 * Places a call.
 *
 * @param line   the line to call from
 * @param number the number to dial
 * @return the service's answer; -1 on failure
 */
VESK_API int binder_make_call(int line, const char* number);

/**
 * Places a call, with video or without.
 *
 * @param line   the line to call from
 * @param number the number to dial
 * @param video  0 for sound alone, anything else for video
 * @return the service's answer; -1 on failure
 */
VESK_API int binder_make_av_call(int line, const char* number, int video);

/**
 * Calls to hear the messages that wait on a line (MWI).
 *
 * @param line   the line to call from
 * @param number the number to dial
 * @return the service's answer; -1 on failure
 */
VESK_API int binder_play_mwi(int line, const char* number);

/**
 * Asks for the first line that calls can be placed on.
 *
 * @return the service's answer; -1 on failure
 */
VESK_API int binder_get_first_valid_line(void);

/**
 * Opens a new call.
 *
 * @param value for the service to interpret
 */
VESK_API void binder_create_new_call(int value);

/** Answers the call that rings, on the headset. */
VESK_API void binder_headset_answer_call(void);

/**
 * Makes a call the current one.
 *
 * @param value the call, by the number that the service knows it by
 */
VESK_API void binder_set_current_call(int value);

/**
 * Ends a call.
 *
 * @param value the call, by the number that the service knows it by
 */
VESK_API void binder_close_call(int value);

/**
 * Asks whether the call has a voice menu (IVR).
 *
 * @return the service's answer; false on failure
 */
VESK_API bool binder_get_call_have_ivr(void);

/* Hold and mute */

/**
 * Puts a call on hold or resumes it.
 *
 * @param value the call, by the number that the service knows it by
 * @param hold  true to hold, false to resume
 */
VESK_API void binder_set_call_hold_status(int value, bool hold);

/** Mutes the call, or unmutes it if it is muted. */
VESK_API void binder_switch_call_muted_state(void);

/* Conferences. Members go by the numbers that the conference events show. */

/**
 * Adds members to the conference.
 *
 * @param members `count` of them, read before the function returns; may be null if that is 0 or less
 * @param count   how many they are; an empty list is sent for 0 or less
 */
VESK_API void binder_add_conference_members(const int* members, int count);

/**
 * Removes a member from the conference.
 *
 * @param member the member
 */
VESK_API void binder_remove_conference_member(int member);

/**
 * Puts a member of the conference on hold.
 *
 * @param member the member
 */
VESK_API void binder_hold_conference_member(int member);

/**
 * Resumes a member that was put on hold.
 *
 * @param member the member
 */
VESK_API void binder_resume_conference_member(int member);

/**
 * Mutes or unmutes a member of the conference.
 *
 * @param member the member
 * @param mute   true to mute, false to unmute
 */
VESK_API void binder_mute_conference_member(int member, bool mute);

/**
 * Mutes or unmutes all members of the conference.
 *
 * @param value for the service to interpret
 * @param mute  true to mute, false to unmute
 */
VESK_API void binder_mute_all_conference_member(int value, bool mute);

/* Dialling and tones */

/**
 * Dials a number in the service's edial mode.
 *
 * @param line   the line to dial on
 * @param number the number to dial
 * @return the service's answer; -1 on failure
 */
VESK_API int binder_edial_with_line(int line, const char* number);

/**
 * Changes the line in edial mode.
 *
 * @param value for the service to interpret
 * @return the service's answer; -1 on failure
 */
VESK_API int binder_edial_change_line(int value);

/**
 * Places the call that was prepared in edial mode.
 *
 * @return the service's answer; -1 on failure
 */
VESK_API int binder_edial_make_call(void);

/**
 * Tells the service the number that is being dialled, as far as it has been entered.
 *
 * @param number the number
 */
VESK_API void binder_dial_number_update_request(const char* number);

/**
 * Sends a selection for dialling.
 *
 * @param value for the service to interpret
 */
VESK_API void binder_dial_selection_request(int value);

/**
 * Switches the multiplexing of keys.
 *
 * @param value for the service to interpret
 */
VESK_API void binder_key_multiplexing(bool value);

/**
 * Plays a tone.
 *
 * @param tone which one, by the service's number for it
 */
VESK_API void binder_play_tone_request(int tone);

/** Stops the tone that plays. */
VESK_API void binder_stop_tone_request(void);

/* Redial and call completion */

/** Calls the last number again. */
VESK_API void binder_redial_call(void);

/** Requests automatic redial. */
VESK_API void binder_call_auto_redial(void);

/** What the soft key "call" of automatic redial does. */
VESK_API void binder_auto_redial_make_call(void);

/** What the soft key "cancel" of automatic redial does. */
VESK_API void binder_auto_redial_cancel(void);

/** Requests call completion. */
VESK_API void binder_call_completion(void);

/**
 * Confirms that a call completion shall dial.
 *
 * @param line   the line, as the call completion event showed it
 * @param number the number, as the call completion event showed it
 */
VESK_API void binder_complete_dial_confirm(int line, const char* number);

/**
 * Cancels a call completion.
 *
 * @param line   the line, as the call completion event showed it
 * @param number the number, as the call completion event showed it
 */
VESK_API void binder_complete_cancel(int line, const char* number);

/* Video and snapshots */

/**
 * Sets where video is displayed.
 *
 * @param value  for the service to interpret
 * @param area_a a record of VESK_VIDEO_AREA_SIZE bytes, of the service's layout; not a string
 * @param area_b another one
 */
VESK_API void binder_set_video_display_area(int value, const char* area_a, const char* area_b);

/**
 * Sets the areas of several video streams.
 *
 * @param a for the service to interpret
 * @param b for the service to interpret
 */
VESK_API void binder_set_video_stream_area(int a, int b);

/**
 * Takes a snapshot of the video.
 *
 * @param value for the service to interpret
 */
VESK_API void binder_video_snapshot(int value);

/**
 * Asks how many snapshots there are.
 *
 * @param value for the service to interpret
 * @return the service's answer; -1 on failure
 */
VESK_API int binder_get_snapshot_nums(int value);

/**
 * Asks for the data of a snapshot. The service's answer to the request is dropped.
 *
 * @param value for the service to interpret
 */
VESK_API void binder_snapshot_data_request(int value);

/**
 * Fetches the information on a snapshot. To see whether that failed, prepare the buffer.
 *
 * @param      a     for the service to interpret
 * @param      index which of the snapshots
 * @param[out] info  receives a record of VESK_SNAPSHOT_INFO_SIZE bytes; untouched on failure
 */
VESK_API void binder_get_snapshot_info_by_index(int a, int index, void* info);

/**
 * Deletes a snapshot.
 *
 * @param value for the service to interpret
 */
VESK_API void binder_delete_snapshot(int value);

/* Door */

/** Has the service drive the light of the door opener. */
VESK_API void binder_ctrl_led_dooropen(void);

/**
 * Sets the way in which the door is opened: the type of the DTMF tones.
 *
 * @param type for the service to interpret
 */
VESK_API void binder_set_dooropen_type(int type);

#ifdef __cplusplus
}
#endif

#endif
