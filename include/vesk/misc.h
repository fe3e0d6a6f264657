/**
 * @file
 * The misc service: the automatic test of the device (ATE), the display, the USB disk and the recordings on
 * it, screenshots, MQTT multicast, and the events that tell of all this.
 *
 * Read the conventions in <vesk/vesk_client.h> first. None of these functions logs but connect_misc_service,
 * which does so under the tag "MiscClient".
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

/* Records. Their layout is the service's, but for the beginning of the multicast information. */

/** Sizes of the misc service's records in bytes. */
#define VESK_ATE_INFO_SIZE 160
#define VESK_UDISK_CAPACITY_SIZE 104
#define VESK_UDISK_RECORD_FILE_SIZE 64
/** Begins with the multicast action, a text that ends with a zero. */
#define VESK_MQTT_MULTICAST_INFO_SIZE 676

/** How many bytes a context text of the automatic test has at most, its terminating zero included. */
#define VESK_ATE_CONTEXT_SIZE 128

/* Connecting and events */

/** The event is all there is to tell. */
typedef void (*vesk_misc_notice_callback)(void);

/** @param value what the event carries, for the service to define */
typedef void (*vesk_misc_value_callback)(int value);

/**
 * @param text at most 127 bytes and a terminating zero; a longer text is cut there, if need be inside a
 *             character
 */
typedef void (*vesk_misc_text_callback)(const char* text);

/**
 * What to call on the events of the misc service.
 *
 * NONE OF THEM IS TESTED FOR NULL. An event whose callback is null ends the program with a null pointer call,
 * on one of the library's threads. Give a function for each of the ten, one that does nothing for an event
 * that you have no use for:
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
 * The structure is fourteen function pointers, in this order, on every platform.
 */
typedef struct vesk_misc_callbacks {
  vesk_misc_notice_callback on_online_ate_started; /**< the online test has started */
  vesk_misc_notice_callback on_online_ate_stopped; /**< the online test has stopped */
  vesk_misc_text_callback on_update_context;       /**< the test shows another text */
  vesk_misc_notice_callback on_lcd_switch;         /**< the test switches the LCD */
  vesk_misc_notice_callback on_touch_screen_start; /**< the test of the touch screen has started */
  vesk_misc_notice_callback on_touch_screen_stop;  /**< the test of the touch screen has stopped */
  vesk_misc_notice_callback on_system_reboot;      /**< the system reboots */
  /** Keep four places in the layout. Never called, so these may be null. */
  void (*reserved[4])(void);
  vesk_misc_notice_callback on_web_screenshot; /**< a screenshot is asked for over the web */
  vesk_misc_value_callback on_ring;            /**< a ring event */
  vesk_misc_notice_callback on_scan_cancel;    /**< a scan was cancelled */
} vesk_misc_callbacks;
static_assert(sizeof(vesk_misc_callbacks) == 14 * sizeof(vesk_misc_notice_callback),
              "callbacks of the misc service");

/**
 * Connects to the misc service and registers for its events.
 *
 * If the service is not there, waits for it as long as the service manager does, some five seconds, and then
 * fails. May be called again at any time. A successful call replaces the connection and all callbacks. A
 * failed one leaves the earlier connection and the earlier callbacks, if there are any.
 *
 * A connection that was replaced is not reported to on_service_died.
 *
 * Until the connection stands, events go to the callbacks given before. Before the first connection stands,
 * there are none, and events are dropped.
 *
 * @param callbacks       what to call on the events. NONE OF THEM MAY BE NULL, but the reserved ones; see
 *                        vesk_misc_callbacks, which also shows how to fill the structure
 * @param on_service_died the service has died, and the connection with it; may be null
 * @return true if connected. Whether the service accepted the registration for events is not told.
 */
VESK_API bool connect_misc_service(vesk_misc_callbacks callbacks, vesk_service_died_callback on_service_died);

/* Automatic test */

/**
 * Fetches the test information.
 *
 * @param[out] out receives a record of VESK_ATE_INFO_SIZE bytes; untouched on failure
 * @return 0; -1 on failure
 */
VESK_API int binder_get_ate_info_config(void* out);

/**
 * Starts the automatic test on the device.
 *
 * @param value for the service to interpret
 * @return 0 if the service was asked, even if it did not answer; -1 without a connection
 */
VESK_API int binder_local_ate_start(int value);

/**
 * Stops the automatic test on the device.
 *
 * @param value for the service to interpret
 * @return 0 if the service was asked, even if it did not answer; -1 without a connection
 */
VESK_API int binder_local_ate_stop(int value);

/**
 * Reports the result of the test of the touch screen.
 *
 * @param a for the service to interpret
 * @param b for the service to interpret
 * @return 0 if the service was told, even if it did not answer; -1 without a connection
 */
VESK_API int binder_ate_touch_screen_result(int a, int b);

/* Display */

/**
 * Switches to another page of the programmable keys (DSS keys).
 *
 * @param a for the service to interpret
 * @param b for the service to interpret
 */
VESK_API void binder_switch_dsskey_page(int a, int b);

/**
 * Keeps the backlight on, or lets it go off again.
 *
 * @param on 0 to let it go off, anything else to keep it on
 */
VESK_API void binder_backlight_always_active(int on);

/** Begins to show brightness levels before one is chosen. */
VESK_API void binder_start_backlight_presetting(void);

/**
 * Shows a brightness level, between binder_start_backlight_presetting and binder_stop_backlight_presetting.
 *
 * @param level the level, by the service's measure
 */
VESK_API void binder_preset_backlight_level(int level);

/** Ends what binder_start_backlight_presetting has begun. */
VESK_API void binder_stop_backlight_presetting(void);

/**
 * Tells the service that a screenshot of the LCD is ready.
 */
VESK_API void binder_notify_lcd_screen_shot_ready(void);

/* USB disk and recordings */

/**
 * Asks for the state of the USB disk.
 *
 * @return the service's answer; 3, not -1, on failure
 */
VESK_API int binder_get_udisk_status(void);

/**
 * Fetches the capacity of the USB disk.
 *
 * @param[out] out receives a record of VESK_UDISK_CAPACITY_SIZE bytes; untouched on failure
 * @return 0; -1 on failure
 */
VESK_API int binder_get_udisk_capacity(void* out);

/**
 * Fetches the list of the recordings on the USB disk. Appends one element of VESK_UDISK_RECORD_FILE_SIZE
 * bytes for each, in the service's order; an entry of any other size is skipped.
 *
 * @param list the application's array, of which `append` is used; null, or one without `append`, is a failure
 * @return 0 if the service was asked, even if that failed and nothing was appended; -1 if not
 */
VESK_API int binder_get_udisk_record_files(const vesk_array* list);

/**
 * Plays a recording.
 *
 * @param file its file name
 * @return the service's answer; -1 on failure
 */
VESK_API int binder_play_rec_file_start(const char* file);

/** Stops the recording that plays. */
VESK_API void binder_play_rec_file_stop(void);

/** Pauses the recording that plays. */
VESK_API void binder_play_rec_file_pause(void);

/** Lets a paused recording play on. */
VESK_API void binder_play_rec_file_resume(void);

/**
 * Asks how the playing of a recording stands.
 *
 * @return the service's answer; -1 on failure
 */
VESK_API int binder_get_play_rec_file_state(void);

/* MQTT multicast */

/**
 * Asks whether there is multicast information.
 *
 * @return 1 if there is, 0 if not; 0, not -1, on failure
 */
VESK_API int binder_has_mqtt_multicast_info(void);

/**
 * Fetches the multicast information.
 *
 * @param[out] out receives a record of VESK_MQTT_MULTICAST_INFO_SIZE bytes; untouched on failure. Unlike
 * other records it may be null, which is a failure
 * @return 0; -1 on failure
 */
VESK_API int binder_get_mqtt_multicast_info(void* out);

/**
 * Fetches the multicast information and hands out the action with which it begins.
 *
 * @param[out] dst  receives the action, cut to fit, with a terminating zero. Unlike other buffers it is
 * written on failure, too: it is then an empty text, without a connection as well. May be null, which is a
 *                  failure
 * @param      size the room in dst in bytes, the terminating zero included; 0 is a failure and writes nothing
 * @return 0; -1 on failure
 */
VESK_API int binder_get_mqtt_multicast_action(char* dst, size_t size);

#ifdef __cplusplus
}
#endif

#endif
