/**
 * @file
 * Ringtones and ringing, muting, volumes, tones.
 *
 * A part of <vesk/config.h>. The conventions in <vesk/vesk_client.h> hold for all functions.
 */
#ifndef VESK_CONFIG_SOUND_H
#define VESK_CONFIG_SOUND_H

#include <vesk/common.h>

#ifdef __cplusplus
extern "C" {
#endif

/* Ringtones and ringing */

/**
 * Asks how many ringtones there are.
 *
 * @param flag 0 for false, anything else for true; for the service to interpret
 * @return the service's answer; 0 on failure
 */
VESK_API int binder_ringtone_get_list_len(int flag);

/**
 * Fetches the name of a ringtone.
 *
 * @param      index  which of the ringtones
 * @param[out] buffer receives the text, cut to fit
 * @param      size   the size of the buffer in bytes
 * @return 0; -1 without a connection
 */
VESK_API int binder_ringtone_get_ring_name(int index, char* buffer, int size);

/**
 * The reverse: asks for the index of a ringtone.
 *
 * @param name the name of the ringtone
 * @return the service's answer; 0 on failure
 */
VESK_API int binder_ringtone_get_ring_index(const char* name);

/**
 * Plays a ringtone.
 *
 * @param ring the ringtone
 */
VESK_API void binder_play_ring(const char* ring);

/** Stops the ringtone that plays. */
VESK_API void binder_stop_ring(void);

/**
 * Asks whether ringing is muted.
 *
 * @return 1 if so, 0 if not; 0 on failure
 */
VESK_API int binder_get_ring_muted(void);

/**
 * Mutes or unmutes ringing.
 *
 * @param muted 0 to unmute, anything else to mute
 */
VESK_API void binder_set_ring_muted(int muted);

/* Muting and volumes */

/**
 * Asks for the mute status.
 *
 * @param value for the service to interpret
 * @return the service's answer; -1 on failure
 */
VESK_API int binder_get_mute_status(int value);

/**
 * Sets the mute status.
 *
 * @param status for the service to interpret
 * @return the service's answer; -1 on failure
 */
VESK_API int binder_set_mute_status(int status);

/**
 * Asks for a volume of the voice.
 *
 * @param value for the service to interpret
 * @return the service's answer; -1 on failure
 */
VESK_API int binder_get_voice_volume(int value);

/**
 * Sets a volume of the voice.
 *
 * @param a    for the service to interpret
 * @param b    for the service to interpret
 * @param flag 0 for false, anything else for true; for the service to interpret
 * @return the service's answer; -1 on failure
 */
VESK_API int binder_set_voice_volume(int a, int b, int flag);

/* Ring type and priority */

/**
 * Fetches the type of the ringing.
 *
 * @param[out] dst  receives the type, cut to fit
 * @param      size the size of the buffer in bytes
 * @return 0 always
 */
VESK_API int binder_get_ring_type(char* dst, int size);

/**
 * Sets the type of the ringing.
 *
 * @param type the type
 * @return the service's answer; 0 on failure
 */
VESK_API int binder_set_ring_type(const char* type);

/**
 * Asks for the priority of the ringing.
 *
 * @return the service's answer; -1 on failure
 */
VESK_API int binder_get_ring_priority(void);

/* Volume, tones and audio device */

/**
 * Asks for a volume.
 *
 * @param value for the service to interpret
 * @return the service's answer; -1 on failure
 */
VESK_API int binder_get_volume_value(int value);

/**
 * Sets a volume.
 *
 * @param value  for the service to interpret
 * @param volume for the service to interpret
 */
VESK_API void binder_set_volume_value(int value, int volume);

/**
 * Plays a tone.
 *
 * @param tone which one, by the service's number for it
 */
VESK_API void binder_play_tone(int tone);

/**
 * Asks whether dialling sounds its DTMF tones.
 *
 * @return 1 if it does, 0 if not; 0 on failure
 */
VESK_API int binder_get_dialing_dtmf_tone_enable(void);

/**
 * Sets the mode of the audio device.
 *
 * @param mode for the service to interpret
 * @return the service's answer; -1 on failure
 */
VESK_API int binder_set_audio_device_mode(int mode);

/**
 * Asks for the mode of the audio device.
 *
 * @return the service's answer; 0 on failure
 */
VESK_API int binder_get_audio_device_mode(void);

#ifdef __cplusplus
}
#endif

#endif
