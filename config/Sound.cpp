#include <vesk/config/sound.h>

#include "config/ConfigService.h"

using namespace com::qv;

/* Ringtones and ringing */

int binder_ringtone_get_list_len(int flag) {
  return configService.value(IfNotConnected{0}, IfFailed{0}, &IConfigService::ringtoneGetListLen, flag);
}
int binder_ringtone_get_ring_name(int index, char* buffer, int size) {
  return configService.text(IfNotConnected{-1}, Truncate{buffer, size}, &IConfigService::ringtoneGetRingName,
                            index);
}
int binder_ringtone_get_ring_index(const char* name) {
  return configService.value(IfNotConnected{0}, IfFailed{0}, &IConfigService::ringtoneGetRingIndex, name);
}
void binder_play_ring(const char* ring) { configService.send(&IConfigService::playRing, ring); }
void binder_stop_ring(void) { configService.send(&IConfigService::stopRing); }
int binder_get_ring_muted(void) { return configService.value(&IConfigService::getRingMuted); }
void binder_set_ring_muted(int muted) { configService.send(&IConfigService::setRingMuted, muted); }

/* Muting and volumes */

int binder_get_mute_status(int value) { return configService.value(&IConfigService::getMuteStatus, value); }
int binder_set_mute_status(int status) { return configService.value(&IConfigService::setMuteStatus, status); }
int binder_get_voice_volume(int value) { return configService.value(&IConfigService::getVoiceVolume, value); }
int binder_set_voice_volume(int a, int b, int flag) {
  return configService.value(&IConfigService::setVoiceVolume, a, b, flag);
}

/* Ring type and priority */

int binder_get_ring_type(char* dst, int size) {
  return configService.text(IfNotConnected{0}, Truncate{dst, size}, &IConfigService::getRingType);
}
int binder_set_ring_type(const char* type) {
  return configService.value(IfNotConnected{0}, IfFailed{0}, &IConfigService::setRingType, type);
}
int binder_get_ring_priority(void) { return configService.value(&IConfigService::getRingPriority); }

/* Volume, tones and audio device */

int binder_get_volume_value(int value) { return configService.value(&IConfigService::getVolumeValue, value); }
void binder_set_volume_value(int value, int volume) {
  configService.send(&IConfigService::setVolumeValue, value, volume);
}
void binder_play_tone(int tone) { configService.send(&IConfigService::playTone, tone); }
int binder_get_dialing_dtmf_tone_enable(void) {
  return configService.value(&IConfigService::getDialingDtmfToneEnable);
}
int binder_set_audio_device_mode(int mode) {
  return configService.value(&IConfigService::setAudioDevMode, mode);
}
int binder_get_audio_device_mode(void) {
  return configService.value(IfNotConnected{0}, IfFailed{0}, &IConfigService::getAudioDevMode);
}
