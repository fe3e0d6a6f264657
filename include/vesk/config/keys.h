/**
 * @file
 * Keys and values of the settings, saving them, groups and scenes.
 *
 * A part of <vesk/config.h>. The conventions in <vesk/vesk_client.h> hold for all functions.
 */
#ifndef VESK_CONFIG_KEYS_H
#define VESK_CONFIG_KEYS_H

#include <vesk/common.h>

#ifdef __cplusplus
extern "C" {
#endif

/** Size of a scene in bytes. */
#define VESK_SCENE_CONFIG_SIZE 456

/* Keys and values. A value goes by a section, a key in it, and a sub-key. */

/**
 * Fetches a value. The service is told the size, too, so that it can bound what it gives.
 *
 * @param      section the section
 * @param      key     the key in the section
 * @param      sub_key the sub-key
 * @param[out] buffer  receives the text, if all of it fits
 * @param      size    the size of the buffer in bytes
 * @return 0; -1 without a connection and if the text does not fit
 */
VESK_API int binder_get_config(const char* section, const char* key, const char* sub_key, char* buffer,
                               int size);

/**
 * Fetches a value that is a flag.
 *
 * @param section the section
 * @param key     the key in the section
 * @param sub_key the sub-key
 * @return 1 if it is set, 0 if not; 0 on failure
 */
VESK_API int binder_get_config_bool(const char* section, const char* key, const char* sub_key);

/**
 * Sets a value.
 *
 * @param section the section
 * @param key     the key in the section
 * @param sub_key the sub-key
 * @param value   the value
 * @return the service's answer; -1 on failure
 */
VESK_API int binder_set_config(const char* section, const char* key, const char* sub_key, const char* value);

/**
 * Has the service save the settings.
 *
 * @return the service's answer; -1 on failure
 */
VESK_API int binder_save_config(void);

/**
 * Has the service save the settings of a handle. The name is spelt as it is exported.
 *
 * @param handle for the service to interpret
 * @return the service's answer; -1 on failure
 */
VESK_API int binder_save_config_handel(int handle);

/* Groups */

/**
 * Adds a group.
 *
 * @param section the section
 * @param key     the key in the section
 * @return the service's answer; -1 on failure
 */
VESK_API int binder_config_group_add(const char* section, const char* key);

/**
 * Deletes a group.
 *
 * @param section the section
 * @param key     the key in the section
 * @param index   which of the groups
 * @return the service's answer; -1 on failure
 */
VESK_API int binder_config_group_delete(const char* section, const char* key, int index);

/**
 * Asks how many groups there are.
 *
 * @param section the section
 * @param key     the key in the section
 * @return the service's answer; -1 on failure
 */
VESK_API int binder_config_group_total_number_get(const char* section, const char* key);

/* Scenes */

/**
 * Adds a scene.
 *
 * @param index which of the scenes
 * @param text1 for the service to interpret
 * @param text2 for the service to interpret
 * @param text3 for the service to interpret
 * @param text4 for the service to interpret
 * @param flag  for the service to interpret
 * @return the service's answer; -1 on failure
 */
VESK_API int binder_scene_config_add(int index, const char* text1, const char* text2, const char* text3,
                                     const char* text4, int flag);

/**
 * Fetches a scene.
 *
 * @param      index which of the scenes
 * @param[out] scene receives a record of VESK_SCENE_CONFIG_SIZE bytes
 * @return 0; -1 on failure
 */
VESK_API int binder_scene_config_get(int index, void* scene);

/**
 * Enables or disables a scene.
 *
 * @param index   which of the scenes
 * @param enabled for the service to interpret
 * @return the service's answer; -1 on failure
 */
VESK_API int binder_scene_config_set_enabled(int index, int enabled);

/**
 * Changes a scene.
 *
 * @param index which of the scenes
 * @param value for the service to interpret
 * @param text1 for the service to interpret
 * @param text2 for the service to interpret
 * @param text3 for the service to interpret
 * @param text4 for the service to interpret
 * @param flag  for the service to interpret
 * @return the service's answer; -1 on failure
 */
VESK_API int binder_scene_config_set(int index, int value, const char* text1, const char* text2,
                                     const char* text3, const char* text4, int flag);

/**
 * Deletes a scene.
 *
 * @param index which of the scenes
 * @return the service's answer; -1 on failure
 */
VESK_API int binder_scene_config_delete(int index);

#ifdef __cplusplus
}
#endif

#endif
