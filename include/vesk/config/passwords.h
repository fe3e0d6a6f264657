/**
 * @file
 * Passwords and the keyboard lock.
 *
 * A part of <vesk/config.h>. The conventions in <vesk/vesk_client.h> hold for all functions.
 */
#ifndef VESK_CONFIG_PASSWORDS_H
#define VESK_CONFIG_PASSWORDS_H

#include <vesk/common.h>

#ifdef __cplusplus
extern "C" {
#endif

/* Keypad, entry and menu */

/** Size of the record in bytes. */
#define VESK_KEYBOARD_PASSWORD_SIZE 72

/** Fetches the settings of the keypad password (VESK_KEYBOARD_PASSWORD_SIZE bytes). */
VESK_API int binder_get_keyboard_password(void* out);

/** Sets the settings of the keypad password (VESK_KEYBOARD_PASSWORD_SIZE bytes). */
VESK_API int binder_set_keyboard_password(const void* record);

/** Fetches the entry password. Always returns 0. */
VESK_API int binder_get_enter_password(int flag, char* dst, int size);

/** Sets the menu password. Returns 0 on failure. */
VESK_API int binder_set_menu_password(const char* password);

/* Keyboard lock */

/** Fetches the password of the keyboard lock. Always returns 0. */
VESK_API int binder_get_kblock_password(char* dst, int size);

/** Sets the status of the keyboard lock. */
VESK_API void binder_set_kblock_status(int status);

/* Security password */

/** Sets the security password. Returns 0 on failure. */
VESK_API int binder_set_security_password(const char* password);

/** Fetches the security password. Always returns 0. */
VESK_API int binder_get_security_password(int flag, char* dst, int size);

/** Stops the tone of entering the security password. */
VESK_API int binder_stop_security_input_tone(void);

#ifdef __cplusplus
}
#endif

#endif
