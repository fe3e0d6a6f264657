/**
 * @file
 * Screen settings, screen saver, backgrounds, language, and the idle screen.
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

/* Screen and backgrounds */

/** Fetches the settings of the screen (VESK_SCREENINFO_CONFIG_SIZE bytes). */
VESK_API int binder_screeninfo_get_config(void* screeninfo);

/** Sets the settings of the screen (VESK_SCREENINFO_CONFIG_SIZE bytes). */
VESK_API int binder_screeninfo_set_config(const char* screeninfo);

/** Returns the setting of the display items; 0 on failure. */
VESK_API int binder_get_display_item_config(void);

/** Fetches the user's background setting (VESK_USER_BG_CONFIG_SIZE bytes). */
VESK_API int binder_get_user_bg_config(void* config);

/** Fetches the name of a background (VESK_BACKGROUND_NAME_SIZE bytes). */
VESK_API int binder_get_background_name(int index, void* name);

/* Idle screen and notices */

/** Fetches the tips of the idle screen, all or nothing: -1 if they do not fit. */
VESK_API int binder_get_idle_tips(char* buffer, int size);

/** Fetches the status of the icons: five 32-bit words (VESK_IDLE_ICON_STATUS_SIZE bytes). */
VESK_API int binder_get_idle_icon_status(void* status);

/** Fetches the counters of missed events: three 32-bit words (VESK_MISSED_DATA_SIZE bytes). */
VESK_API int binder_get_missed_data(void* data);

/** Fetches the status of the pop-ups (VESK_POPUP_STATUS_SIZE bytes). */
VESK_API int binder_get_popup_status(void* status);

/* Screen saver, colors, backlight */

/** Sizes of the records in bytes. */
#define VESK_SCREENSAVER_DISPLAY_SIZE 24
#define VESK_FONT_COLOR_SIZE 81

/** Returns the timeout of the screen saver; -1 without a connection, 0 on any other failure. */
VESK_API int binder_get_screensaver_timeout(void);

/** Fetches the display of the screen saver (VESK_SCREENSAVER_DISPLAY_SIZE bytes). */
VESK_API int binder_get_screensaver_display(void* out);

/** Fetches the colors of the fonts (VESK_FONT_COLOR_SIZE bytes). */
VESK_API int binder_get_font_color(void* out);

/** Sets the backlight of the keyboard. */
VESK_API int binderSetKeyboardBacklight(int value);

/* Language and theme */

/** Fetches the default language. Always returns 0. */
VESK_API int binder_get_default_language(char* dst, int size);

/** Sets the default language. Returns 0 on failure. */
VESK_API int binder_set_default_language(const char* language);

/** Fetches the name of the default standby interface. Always returns 0. */
VESK_API int binder_get_default_standby_interface(char* dst, int size);

/** Fetches the default theme. Always returns 0. */
VESK_API int binder_get_default_theme(char* dst, int size);

/** Sets the default theme. Returns 0 on failure. */
VESK_API int binder_set_default_theme(const char* theme);

/** Fetches the greeting. Always returns 0. */
VESK_API int binder_get_greeting_word(char* dst, int size);

/** Sets the greeting. Returns 0 on failure. */
VESK_API int binder_set_greeting_word(const char* text);

#ifdef __cplusplus
}
#endif

#ifdef __cplusplus
/** The 4-byte record of the screen saver display, which the application defines. */
struct ipc_screen_saver_display_t;

/**
 * Fetches the display of the screen saver (VESK_SCREENSAVER_DISPLAY_SHORT_SIZE bytes). The function
 * of the same name with C linkage sends the same request, and accepts the longer record only.
 */
VESK_API int binder_get_screensaver_display(ipc_screen_saver_display_t* display);
#endif

#endif
