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

/** Returns the number of ringtones; 0 on failure. */
VESK_API int binder_ringtone_get_list_len(int flag);

/** Fetches the name of a ringtone. */
VESK_API int binder_ringtone_get_ring_name(int index, char* buffer, int size);

/** Returns the index of a ringtone; 0 on failure. */
VESK_API int binder_ringtone_get_ring_index(const char* name);

/** Plays a ringtone. */
VESK_API void binder_play_ring(const char* ring);

/** Stops the ringtone that plays. */
VESK_API void binder_stop_ring(void);

/** Returns whether ringing is muted; 0 on failure. */
VESK_API int binder_get_ring_muted(void);

/** Mutes or unmutes ringing. */
VESK_API void binder_set_ring_muted(int muted);

/* Muting and volumes */

/** Returns the mute status. */
VESK_API int binder_get_mute_status(int value);

/** Sets the mute status. */
VESK_API int binder_set_mute_status(int status);

/** Returns a voice volume. */
VESK_API int binder_get_voice_volume(int value);

/** Sets a voice volume. */
VESK_API int binder_set_voice_volume(int a, int b, int flag);

/* Ring type and priority */

/** Fetches the type of the ringing. Always returns 0. */
VESK_API int binder_get_ring_type(char* dst, int size);

/** Sets the type of the ringing. Returns 0 on failure. */
VESK_API int binder_set_ring_type(const char* type);

/** Returns the priority of the ringing. */
VESK_API int binder_get_ring_priority(void);

/* Volume, tones and audio device */

/** Returns a volume. */
VESK_API int binder_get_volume_value(int value);

/** Sets a volume. */
VESK_API void binder_set_volume_value(int value, int volume);

/** Plays a tone. */
VESK_API void binder_play_tone(int tone);

/** Returns whether dialling plays DTMF tones; 0 on failure. */
VESK_API int binder_get_dialing_dtmf_tone_enable(void);

/** Sets the mode of the audio device. */
VESK_API int binder_set_audio_device_mode(int mode);

/** Returns the mode of the audio device; 0 on failure. */
VESK_API int binder_get_audio_device_mode(void);

#ifdef __cplusplus
}
#endif

#endif
