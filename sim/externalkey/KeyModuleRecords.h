#pragma once

#include <vesk/external_key.h>

#include <cstddef>
#include <cstdint>

namespace sim {

/* The records of the external-key service. */

constexpr int32_t kKeyModules = 2;
constexpr int32_t kModuleKeys = 16;

struct KeyModuleInfo {
  char mac[24];
  char model[32];
  char version[16];
  char name[24];
};

struct KeyModulesRecord {
  int32_t modules;
  /** Of each module. */
  int32_t keys;
  KeyModuleInfo infos[kKeyModules];
};
static_assert(sizeof(KeyModulesRecord) == VESK_EXK_DEV_INFO_SIZE);

struct ModuleKey {
  char label[24];
  char value[46];
  /** 0 for an unused key. */
  uint8_t type;
  /** 0 for any line. */
  uint8_t line;
};

/** Made of bytes, since its size is not a multiple of four. */
struct ModuleKeysRecord {
  uint8_t module;
  uint8_t keys;
  ModuleKey key[kModuleKeys];
};
static_assert(sizeof(ModuleKeysRecord) == VESK_EXK_CONFIG_SIZE);

struct AddKeyRecord {
  int32_t module;
  /** 0 for the first unused key. */
  int32_t key;
  int32_t type;
  int32_t line;
  char label[24];
  char value[96];
};
static_assert(sizeof(AddKeyRecord) == VESK_BTK_CONFIG_SIZE);

struct KeyStateRecord {
  /** VESK_SINGLE_STATE_GET, or anything else to set. */
  int32_t selector;
  int32_t module;
  int32_t key;
  /** 0 for none; the application defines the other values. */
  int32_t state;
  char text[188];
};
static_assert(sizeof(KeyStateRecord) == VESK_SINGLE_STATE_CONFIG_SIZE);

}  // namespace sim
