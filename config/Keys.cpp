#include <vesk/config/keys.h>

#include "config/ConfigService.h"

using namespace com::qv;

/* Keys and values */

int binder_get_config(const char* section, const char* key, const char* sub_key, char* buffer, int size) {
  return configService.text(IfNotConnected{-1}, AllOrNothing{buffer, size}, &IConfigService::getConfig,
                            section, key, sub_key, size);
}
int binder_get_config_bool(const char* section, const char* key, const char* sub_key) {
  return configService.value(&IConfigService::getConfigBool, section, key, sub_key);
}
int binder_set_config(const char* section, const char* key, const char* sub_key, const char* value) {
  return configService.value(&IConfigService::setConfig, section, key, sub_key, value);
}
int binder_save_config(void) { return configService.value(&IConfigService::saveConfig); }
int binder_save_config_handel(int handle) {
  return configService.value(&IConfigService::saveConfigHandle, handle);
}

/* Groups */

int binder_config_group_add(const char* section, const char* key) {
  return configService.value(&IConfigService::configGroupAdd, section, key);
}
int binder_config_group_delete(const char* section, const char* key, int index) {
  return configService.value(&IConfigService::configGroupDelete, section, key, index);
}
int binder_config_group_total_number_get(const char* section, const char* key) {
  return configService.value(&IConfigService::configGroupTotalNumberGet, section, key);
}

/* Scenes */

int binder_scene_config_add(int index, const char* text1, const char* text2, const char* text3,
                            const char* text4, int flag) {
  return configService.value(&IConfigService::sceneConfigAdd, index, text1, text2, text3, text4, flag);
}
int binder_scene_config_get(int index, void* scene) {
  return configService.fetch<VESK_SCENE_CONFIG_SIZE>(scene, &IConfigService::sceneConfigGet, index);
}
int binder_scene_config_set_enabled(int index, int enabled) {
  return configService.value(&IConfigService::sceneConfigSetEnabled, index, enabled);
}
int binder_scene_config_set(int index, int value, const char* text1, const char* text2, const char* text3,
                            const char* text4, int flag) {
  return configService.value(&IConfigService::sceneConfigSet, index, value, text1, text2, text3, text4, flag);
}
int binder_scene_config_delete(int index) {
  return configService.value(&IConfigService::sceneConfigDelete, index);
}
