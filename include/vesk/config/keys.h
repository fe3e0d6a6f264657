/**
 * @file
 * Settings as keys and values, groups and scenes.
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

/* Keys and values. A section, a key in it and a sub-key select a value. */

/** Fetches a value, all or nothing: -1 if it does not fit. The service receives `size`, too. */
VESK_API int binder_get_config(const char* section, const char* key, const char* sub_key, char* buffer,
                               int size);

/** Returns a value that is a flag, 1 or 0; 0 on failure. */
VESK_API int binder_get_config_bool(const char* section, const char* key, const char* sub_key);

/** Sets a value. */
VESK_API int binder_set_config(const char* section, const char* key, const char* sub_key, const char* value);

/** Saves the settings. */
VESK_API int binder_save_config(void);

/** Saves the settings of a handle. Exported with this spelling. */
VESK_API int binder_save_config_handel(int handle);

/* Groups */

/** Adds a group. */
VESK_API int binder_config_group_add(const char* section, const char* key);

/** Deletes a group. */
VESK_API int binder_config_group_delete(const char* section, const char* key, int index);

/** Returns the number of groups. */
VESK_API int binder_config_group_total_number_get(const char* section, const char* key);

/* Scenes */

/** Adds a scene. */
VESK_API int binder_scene_config_add(int index, const char* text1, const char* text2, const char* text3,
                                     const char* text4, int flag);

/** Fetches a scene (VESK_SCENE_CONFIG_SIZE bytes). */
VESK_API int binder_scene_config_get(int index, void* scene);

/** Enables or disables a scene. */
VESK_API int binder_scene_config_set_enabled(int index, int enabled);

/** Changes a scene. */
VESK_API int binder_scene_config_set(int index, int value, const char* text1, const char* text2,
                                     const char* text3, const char* text4, int flag);

/** Deletes a scene. */
VESK_API int binder_scene_config_delete(int index);

#ifdef __cplusplus
}
#endif

#endif
