/**
 * @file
 * The misc service: the automatic test of the device (ATE), the display, the USB disk and its
 * recordings, screenshots, and MQTT multicast. Its events are those of the automatic test, web
 * screenshots, rings and cancelled scans.
 *
 * Read the conventions in <vesk/vesk_client.h> first. connect_misc_service logs under the tag
 * "MiscClient"; the other functions log nothing.
 */
#ifndef VESK_MISC_H
#define VESK_MISC_H

#include <assert.h>
#include <stdbool.h>
#include <stddef.h>

#include <vesk/array.h>
#include <vesk/common.h>

#ifdef __cplusplus
extern "C" {
#endif

/* Records */

/** Sizes of the misc service's records in bytes. */
#define VESK_ATE_INFO_SIZE 160
#define VESK_UDISK_CAPACITY_SIZE 104
#define VESK_UDISK_RECORD_FILE_SIZE 64
/** Begins with the multicast action, a text that ends with a zero byte. */
#define VESK_MQTT_MULTICAST_INFO_SIZE 676

/** The maximum size of a context text of the automatic test, its terminating zero included. */
#define VESK_ATE_CONTEXT_SIZE 128

/* Connecting and events */

/** An event without arguments. */
typedef void (*vesk_misc_notice_callback)(void);

/** An event with a number. */
typedef void (*vesk_misc_value_callback)(int value);

/** An event with a text, cut to 127 bytes if it is longer, if need be inside a character. */
typedef void (*vesk_misc_text_callback)(const char* text);

/**
 * The callbacks for the events of the misc service.
 *
 * THEY ARE NOT TESTED FOR NULL. An event whose callback is null crashes the program on a thread of
 * the library. Give a function for each of the ten; for an event that you do not need, one that
 * does nothing:
 *
 *     static void ignore(void) {}
 *     static void ignore_value(int value) { (void)value; }
 *     static void ignore_text(const char* text) { (void)text; }
 *     static void show_ring(int value) { printf("ring %d\n", value); }
 *
 *     const vesk_misc_callbacks callbacks = {
 *         .on_online_ate_started = ignore,
 *         .on_online_ate_stopped = ignore,
 *         .on_update_context = ignore_text,
 *         .on_lcd_switch = ignore,
 *         .on_touch_screen_start = ignore,
 *         .on_touch_screen_stop = ignore,
 *         .on_system_reboot = ignore,
 *         .on_web_screenshot = ignore,
 *         .on_ring = show_ring,
 *         .on_scan_cancel = ignore,
 *     };
 *     connect_misc_service(callbacks, NULL);
 *
 * The structure consists of fourteen function pointers, in this order, on every platform.
 */
typedef struct vesk_misc_callbacks {
  vesk_misc_notice_callback on_online_ate_started; /**< the online test has started */
  vesk_misc_notice_callback on_online_ate_stopped; /**< the online test has stopped */
  vesk_misc_text_callback on_update_context;       /**< the context text of the test has changed */
  vesk_misc_notice_callback on_lcd_switch;         /**< the LCD test switches the display */
  vesk_misc_notice_callback on_touch_screen_start; /**< the test of the touch screen has started */
  vesk_misc_notice_callback on_touch_screen_stop;  /**< the test of the touch screen has stopped */
  vesk_misc_notice_callback on_system_reboot;      /**< the system reboots */
  /** Never called; may be null. */
  void (*reserved[4])(void);
  vesk_misc_notice_callback on_web_screenshot; /**< a web screenshot event */
  vesk_misc_value_callback on_ring;            /**< a ring event */
  vesk_misc_notice_callback on_scan_cancel;    /**< a scan was cancelled */
} vesk_misc_callbacks;
static_assert(sizeof(vesk_misc_callbacks) == 14 * sizeof(vesk_misc_notice_callback),
              "callbacks of the misc service");

/**
 * Connects to the misc service and registers for its events.
 *
 * If the service is absent, waits as long as the service manager does, about five seconds, and then
 * fails. May be called again at any time. A successful call replaces the connection and all
 * callbacks; a failed one leaves them unchanged.
 *
 * The death of a replaced connection is not reported. The service does not learn that a connection
 * was replaced: if it keeps the earlier listeners, it sends each event once for every connect.
 *
 * Until connect returns, events go to the callbacks of the previous connect; during the first
 * connect they are dropped.
 *
 * @param callbacks       none may be null except the reserved ones; see vesk_misc_callbacks
 * @param on_service_died may be null
 * @return true if connected, even if the service refused the registration for events
 */
VESK_API bool connect_misc_service(vesk_misc_callbacks callbacks, vesk_service_died_callback on_service_died);

/* Automatic test */

/** Fetches the test information (VESK_ATE_INFO_SIZE bytes). */
VESK_API int binder_get_ate_info_config(void* out);

/** Starts the automatic test. Returns 0 even if the call fails; -1 without a connection. */
VESK_API int binder_local_ate_start(int value);

/** Stops the automatic test. Returns 0 even if the call fails; -1 without a connection. */
VESK_API int binder_local_ate_stop(int value);

/**
 * Reports the result of the touch-screen test. Returns 0 even if the call fails; -1 without a
 * connection.
 */
VESK_API int binder_ate_touch_screen_result(int a, int b);

/* Display */

/** Switches the page of the DSS keys. */
VESK_API void binder_switch_dsskey_page(int a, int b);

/** Keeps the backlight on if `on` is not 0. */
VESK_API void binder_backlight_always_active(int on);

/** Starts the presetting of the backlight. */
VESK_API void binder_start_backlight_presetting(void);

/** Presets a brightness level, between the start and the stop of the presetting. */
VESK_API void binder_preset_backlight_level(int level);

/** Stops the presetting of the backlight. */
VESK_API void binder_stop_backlight_presetting(void);

/** Notifies the service that a screenshot of the LCD is ready. */
VESK_API void binder_notify_lcd_screen_shot_ready(void);

/* USB disk and recordings */

/** Returns the status of the USB disk; 3 on failure. */
VESK_API int binder_get_udisk_status(void);

/** Fetches the capacity of the USB disk (VESK_UDISK_CAPACITY_SIZE bytes). */
VESK_API int binder_get_udisk_capacity(void* out);

/**
 * Appends the recordings on the USB disk (VESK_UDISK_RECORD_FILE_SIZE bytes each). Elements of
 * another size are skipped.
 *
 * @return 0 even if the call fails and appends nothing; -1 without a connection, or if `list` or
 *         its `append` is null
 */
VESK_API int binder_get_udisk_record_files(const vesk_array* list);

/** Plays a recording. */
VESK_API int binder_play_rec_file_start(const char* file);

/** Stops the recording that plays. */
VESK_API void binder_play_rec_file_stop(void);

/** Pauses the recording that plays. */
VESK_API void binder_play_rec_file_pause(void);

/** Resumes a paused recording. */
VESK_API void binder_play_rec_file_resume(void);

/** Returns the state of playing a recording. */
VESK_API int binder_get_play_rec_file_state(void);

/* MQTT multicast */

/** Returns whether there is multicast information; 0 on failure. */
VESK_API int binder_has_mqtt_multicast_info(void);

/** Fetches the multicast information (VESK_MQTT_MULTICAST_INFO_SIZE bytes). Null: -1. */
VESK_API int binder_get_mqtt_multicast_info(void* out);

/**
 * Fetches the action that the multicast information begins with, cut to fit.
 *
 * @param[out] dst  "" on failure, also without a connection; null: -1
 * @param      size 0: -1, and `dst` is untouched
 */
VESK_API int binder_get_mqtt_multicast_action(char* dst, size_t size);

#ifdef __cplusplus
}
#endif

#endif
