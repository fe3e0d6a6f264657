#include "externalkey/ExternalKeyService.h"

#include <algorithm>
#include <iterator>
#include <string_view>

#include "common/Identity.h"
#include "phone/Phone.h"

namespace sim {

namespace {

using android::binder::Status;

constexpr std::string_view kModel = "Simulated key module";

/** The scopes of a reset. */
constexpr int32_t kEverything = 0;
constexpr int32_t kKeys = 1;
constexpr int32_t kStates = 2;

constexpr uint8_t kSpeedDial = 1;

bool isModule(int32_t module) { return module >= 1 && module <= kKeyModules; }
bool isKey(int32_t key) { return key >= 1 && key <= kModuleKeys; }
int32_t stateId(int32_t module, int32_t key) { return module * 100 + key; }

Status refuse() { return sim::refuse("There is no such module or key"); }

/** The first module of a new device has keys for the first contacts. */
ModuleKeysRecord factoryKeys(int32_t module) {
  constexpr size_t kPreset = 3;
  ModuleKeysRecord record{.module = static_cast<uint8_t>(module), .keys = kModuleKeys, .key = {}};
  for (size_t i = 0; module == 1 && i < kPreset; ++i) {
    copyText(record.key[i].label, kDirectory[i].name);
    copyText(record.key[i].value, kDirectory[i].number);
    record.key[i].type = kSpeedDial;
  }
  return record;
}

}  // namespace

bool ExternalKeyService::prepare(std::string* error) {
  return store_->transact(
      [this](Transaction& transaction) {
        keys_.create(transaction);
        states_.create(transaction);
      },
      error);
}

bool ExternalKeyService::perform(const std::function<bool(Transaction&)>& work) {
  return store_->transact([&](Transaction& transaction) {
    if (!work(transaction)) transaction.cancel();
  });
}

ModuleKeysRecord ExternalKeyService::keysOf(Transaction& transaction, int32_t module) const {
  return keys_.find(transaction, module).value_or(factoryKeys(module));
}

Status ExternalKeyService::getExkDevInfo(CommonParcelable* info) {
  KeyModulesRecord record{};
  record.modules = kKeyModules;
  record.keys = kModuleKeys;
  for (int32_t module = 1; module <= kKeyModules; ++module) {
    KeyModuleInfo& entry = record.infos[module - 1];
    const std::string number = std::to_string(module);
    copyText(entry.mac, "02:00:00:00:00:6" + number);
    copyText(entry.model, kModel);
    copyText(entry.version, identity::kSoftware);
    copyText(entry.name, "Module " + number);
  }
  *info = pack(record);
  return Status::ok();
}

Status ExternalKeyService::getExkeyConfig(int32_t module, CommonParcelable* config) {
  const bool done = isModule(module) && perform([&](Transaction& transaction) {
                      *config = pack(keysOf(transaction, module));
                      return true;
                    });
  return done ? Status::ok() : refuse();
}

Status ExternalKeyService::addBtkConfig(const CommonParcelable& config, int32_t* result) {
  const std::optional<AddKeyRecord> added = unpack<AddKeyRecord>(config);
  const auto isByte = [](int32_t number) { return number >= 0 && number <= UINT8_MAX; };
  int32_t key = kRefused;
  const bool done =
      added && isModule(added->module) && isByte(added->type) && isByte(added->line) &&
      textOf(added->value).size() < sizeof(ModuleKey::value) && perform([&](Transaction& transaction) {
        ModuleKeysRecord keys = keysOf(transaction, added->module);
        const auto idle = std::ranges::find(keys.key, uint8_t{0}, &ModuleKey::type);
        key = added->key != 0 ? added->key : static_cast<int32_t>(idle - std::begin(keys.key)) + 1;
        if (!isKey(key)) return false;
        ModuleKey changed{};
        copyText(changed.label, textOf(added->label));
        copyText(changed.value, textOf(added->value));
        changed.type = static_cast<uint8_t>(added->type);
        changed.line = static_cast<uint8_t>(added->line);
        keys.key[key - 1] = changed;
        keys_.put(transaction, added->module, keys);
        return true;
      });
  *result = done ? key : kRefused;
  return Status::ok();
}

Status ExternalKeyService::set_or_get_singleState_config(const CommonParcelable& record,
                                                         CommonParcelable* answer) {
  std::optional<KeyStateRecord> state = unpack<KeyStateRecord>(record);
  if (!state || !isModule(state->module) || !isKey(state->key)) return refuse();
  const int32_t id = stateId(state->module, state->key);
  const bool done = perform([&](Transaction& transaction) {
    if (state->selector != VESK_SINGLE_STATE_GET) return states_.put(transaction, id, *state), true;
    const KeyStateRecord unset{
        .selector = 0, .module = state->module, .key = state->key, .state = 0, .text = {}};
    state = states_.find(transaction, id).value_or(unset);
    state->selector = VESK_SINGLE_STATE_GET;
    return true;
  });
  if (!done) return refuse();
  *answer = pack(*state);
  return Status::ok();
}

Status ExternalKeyService::resetExkDevConfig(int32_t module, int32_t what) {
  constexpr int32_t kAllModules = 0;
  if ((module != kAllModules && !isModule(module)) || what < kEverything || what > kStates) return refuse();
  const bool done = perform([&](Transaction& transaction) {
    for (int32_t each = 1; each <= kKeyModules; ++each) {
      if (module != kAllModules && module != each) continue;
      if (what != kStates) keys_.erase(transaction, each);
      for (int32_t key = 1; what != kKeys && key <= kModuleKeys; ++key) {
        states_.erase(transaction, stateId(each, key));
      }
    }
    return true;
  });
  return done ? Status::ok() : refuse();
}

}  // namespace sim
