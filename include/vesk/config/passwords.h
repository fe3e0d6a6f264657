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

/**
 * Fetches the settings of the keypad password.
 *
 * @param[out] out receives a record of VESK_KEYBOARD_PASSWORD_SIZE bytes; untouched on failure
 * @return 0; -1 on failure
 */
VESK_API int binder_get_keyboard_password(void* out);

/**
 * Sets the settings of the keypad password.
 *
 * @param record a record of VESK_KEYBOARD_PASSWORD_SIZE bytes
 * @return the service's answer; -1 on failure
 */
VESK_API int binder_set_keyboard_password(const void* record);

/**
 * Fetches the password for entry.
 *
 * @param      flag 0 for false, anything else for true
 * @param[out] dst  receives the password, cut to fit
 * @param      size the size of the buffer in bytes
 * @return 0 always
 */
VESK_API int binder_get_enter_password(int flag, char* dst, int size);

/**
 * Sets the password of the menu.
 *
 * @param password the password
 * @return the service's answer; 0 on failure
 */
VESK_API int binder_set_menu_password(const char* password);

/* Keyboard lock */

/**
 * Fetches the password of the keyboard lock.
 *
 * @param[out] dst  receives the password, cut to fit
 * @param      size the size of the buffer in bytes
 * @return 0 always
 */
VESK_API int binder_get_kblock_password(char* dst, int size);

/**
 * Sets the status of the keyboard lock.
 *
 * @param status 0 for false, anything else for true
 */
VESK_API void binder_set_kblock_status(int status);

/* Security password */

/**
 * Sets the security password.
 *
 * @param password the password
 * @return the service's answer; 0 on failure
 */
VESK_API int binder_set_security_password(const char* password);

/**
 * Fetches the security password.
 *
 * @param      flag 0 for false, anything else for true
 * @param[out] dst  receives the password, cut to fit
 * @param      size the size of the buffer in bytes
 * @return 0 always
 */
VESK_API int binder_get_security_password(int flag, char* dst, int size);

/**
 * Stops the tone that plays while the security password is entered.
 *
 * @return the service's answer; -1 on failure
 */
VESK_API int binder_stop_security_input_tone(void);

#ifdef __cplusplus
}
#endif

#endif
