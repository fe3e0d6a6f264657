/**
 * @file
 * The screen: its settings, screen saver, backgrounds, language, and what the idle screen shows.
 *
 * A part of <vesk/config.h>. The conventions in <vesk/vesk_client.h> hold for all functions.
 */
#ifndef VESK_CONFIG_SCREEN_H
#define VESK_CONFIG_SCREEN_H

#include <vesk/common.h>

#ifdef __cplusplus
extern "C" {
#endif

/** Sizes of the records in bytes. */
#define VESK_SCREENINFO_CONFIG_SIZE 24
#define VESK_SCREENSAVER_DISPLAY_SHORT_SIZE 4
#define VESK_USER_BG_CONFIG_SIZE 2
#define VESK_BACKGROUND_NAME_SIZE 256
#define VESK_IDLE_ICON_STATUS_SIZE 20
#define VESK_MISSED_DATA_SIZE 12
#define VESK_POPUP_STATUS_SIZE 6

/* The screen and its backgrounds */

/**
 * Fetches the settings of the screen.
 *
 * @param[out] screeninfo receives a record of VESK_SCREENINFO_CONFIG_SIZE bytes
 * @return 0; -1 on failure
 */
VESK_API int binder_screeninfo_get_config(void* screeninfo);

/**
 * Sets the settings of the screen.
 *
 * @param screeninfo a record of VESK_SCREENINFO_CONFIG_SIZE bytes
 * @return the service's answer; -1 on failure
 */
VESK_API int binder_screeninfo_set_config(const char* screeninfo);

/**
 * Asks for the setting of the display items.
 *
 * @return the service's answer; 0 on failure
 */
VESK_API int binder_get_display_item_config(void);

/**
 * Fetches the user's choice of the background.
 *
 * @param[out] config receives a record of VESK_USER_BG_CONFIG_SIZE bytes
 * @return 0; -1 on failure
 */
VESK_API int binder_get_user_bg_config(void* config);

/**
 * Fetches the name of a background.
 *
 * @param      index which of the backgrounds
 * @param[out] name  receives a record of VESK_BACKGROUND_NAME_SIZE bytes
 * @return 0; -1 on failure
 */
VESK_API int binder_get_background_name(int index, void* name);

/* The idle screen and what is to be told on it */

/**
 * Fetches the tips for the idle screen.
 *
 * @param[out] buffer receives the text, if all of it fits
 * @param      size   the size of the buffer in bytes
 * @return 0; -1 without a connection and if the text does not fit
 */
VESK_API int binder_get_idle_tips(char* buffer, int size);

/**
 * Fetches the status of the icons.
 *
 * @param[out] status receives five words of 32 bits, VESK_IDLE_ICON_STATUS_SIZE bytes together
 * @return 0; -1 on failure
 */
VESK_API int binder_get_idle_icon_status(void* status);

/**
 * Fetches the counters of what was missed.
 *
 * @param[out] data receives three words of 32 bits, VESK_MISSED_DATA_SIZE bytes together
 * @return 0; -1 on failure
 */
VESK_API int binder_get_missed_data(void* data);

/**
 * Fetches the status of the pop-ups.
 *
 * @param[out] status receives a record of VESK_POPUP_STATUS_SIZE bytes
 * @return 0; -1 on failure
 */
VESK_API int binder_get_popup_status(void* status);

/* Screen saver, colors, backlight */

/** Sizes of the records in bytes. */
#define VESK_SCREENSAVER_DISPLAY_SIZE 24
#define VESK_FONT_COLOR_SIZE 81

/**
 * Asks after what time the screen saver starts, in the service's unit.
 *
 * @return the service's answer; -1 without a connection, 0 after any other failure
 */
VESK_API int binder_get_screensaver_timeout(void);

/**
 * Fetches what the screen saver displays.
 *
 * @param[out] out receives a record of VESK_SCREENSAVER_DISPLAY_SIZE bytes; untouched on failure
 * @return 0; -1 on failure
 */
VESK_API int binder_get_screensaver_display(void* out);

/**
 * Fetches the colors of the fonts.
 *
 * @param[out] out receives a record of VESK_FONT_COLOR_SIZE bytes; untouched on failure
 * @return 0; -1 on failure
 */
VESK_API int binder_get_font_color(void* out);

/**
 * Sets the backlight of the keyboard.
 *
 * @param value for the service to interpret
 * @return the service's answer; -1 on failure
 */
VESK_API int binderSetKeyboardBacklight(int value);

/* Language and theme */

/**
 * Fetches the default language.
 *
 * @param[out] dst  receives its name, cut to fit
 * @param      size the size of the buffer in bytes
 * @return 0 always
 */
VESK_API int binder_get_default_language(char* dst, int size);

/**
 * Sets the default language.
 *
 * @param language its name
 * @return the service's answer; 0 on failure
 */
VESK_API int binder_set_default_language(const char* language);

/**
 * Fetches what the screen shows by default on standby.
 *
 * @param[out] dst  receives its name, cut to fit
 * @param      size the size of the buffer in bytes
 * @return 0 always
 */
VESK_API int binder_get_default_standby_interface(char* dst, int size);

/**
 * Fetches the default theme.
 *
 * @param[out] dst  receives its name, cut to fit
 * @param      size the size of the buffer in bytes
 * @return 0 always
 */
VESK_API int binder_get_default_theme(char* dst, int size);

/**
 * Sets the default theme.
 *
 * @param theme its name
 * @return the service's answer; 0 on failure
 */
VESK_API int binder_set_default_theme(const char* theme);

/**
 * Fetches the greeting.
 *
 * @param[out] dst  receives the greeting, cut to fit
 * @param      size the size of the buffer in bytes
 * @return 0 always
 */
VESK_API int binder_get_greeting_word(char* dst, int size);

/**
 * Sets the greeting.
 *
 * @param text the greeting
 * @return the service's answer; 0 on failure
 */
VESK_API int binder_set_greeting_word(const char* text);

#ifdef __cplusplus
}
#endif

#ifdef __cplusplus
/** The 4-byte record of the screen saver display. An application brings its own definition,
 * as a struct of this name. */
struct ipc_screen_saver_display_t;

/**
 * Fetches the screen saver display from a service that answers with VESK_SCREENSAVER_DISPLAY_SHORT_SIZE
 * bytes. The function of the same name with C linkage asks the service the same, and takes a longer record.
 *
 * @param[out] display receives a record of VESK_SCREENSAVER_DISPLAY_SHORT_SIZE bytes
 * @return 0; -1 on failure
 */
VESK_API int binder_get_screensaver_display(ipc_screen_saver_display_t* display);
#endif

#endif
