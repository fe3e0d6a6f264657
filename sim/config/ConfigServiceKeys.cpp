#include <algorithm>
#include <array>
#include <cctype>
#include <cstdio>
#include <optional>

#include "common/ParseNumber.h"
#include "common/Records.h"
#include "config/ConfigRecords.h"
#include "config/ConfigService.h"

/* Keys and values, groups, scenes; saving. */

namespace sim {

using android::binder::Status;

namespace {

constexpr int32_t kDone = 0;

/** The value of a key; "" if it is not set. */
std::string valueOf(const Values& values, const std::string& key) {
  const auto found = values.find(key);
  return found == values.end() ? std::string() : found->second;
}

/** Cuts the value to at most one character more than fits: enough for the client to see that it
 * does not fit. */
std::string boundTo(std::string value, int32_t size) {
  size_t length = std::min(value.size(), static_cast<size_t>(std::max(size, 0)));
  const auto isInsideCharacter = [](char c) { return (static_cast<unsigned char>(c) & 0xC0) == 0x80; };
  while (length < value.size() && isInsideCharacter(value[length])) ++length;
  value.resize(length);
  return value;
}

bool saysYes(std::string value) {
  std::ranges::transform(value, value.begin(), [](unsigned char c) { return std::tolower(c); });
  return value == "1" || value == "true" || value == "on" || value == "yes";
}

/** False if one of the texts is too long. */
bool takeTexts(const std::array<const std::string*, 4>& texts, SceneRecord* scene) {
  for (size_t i = 0; i < texts.size(); ++i) {
    auto& to = scene->texts[i];
    if (texts[i]->size() >= sizeof(to)) return false;
    std::fill(std::begin(to), std::end(to), '\0');
    copyText(to, *texts[i]);
  }
  return true;
}

/** Changes an existing scene, unless `change` returns false. */
template <typename Change>
Status changeScene(Settings& settings, const std::string& key, int32_t* result, Change change) {
  *result = settings.use([&](Values& values) {
    auto scene = unpack<SceneRecord>(valueOf(values, key));
    if (!scene || !change(*scene)) return kRefused;
    values[key] = bytesOf(*scene);
    return kDone;
  });
  return Status::ok();
}

}  // namespace

Status ConfigService::getConfig(const std::string& section, const std::string& key, const std::string& subKey,
                                int32_t size, std::string* value) {
  const std::string name = keyOf(ConfigMethod::getConfig, {section, key, subKey});
  *value = boundTo(settings_->use([&](const Values& values) { return valueOf(values, name); }), size);
  return Status::ok();
}

Status ConfigService::getConfigBool(const std::string& section, const std::string& key,
                                    const std::string& subKey, bool* value) {
  const std::string name = keyOf(ConfigMethod::getConfig, {section, key, subKey});
  *value = saysYes(settings_->use([&](const Values& values) { return valueOf(values, name); }));
  return Status::ok();
}

Status ConfigService::setConfig(const std::string& section, const std::string& key, const std::string& subKey,
                                const std::string& value, int32_t* result) {
  *result = section.empty() || key.empty() ? kRefused : kDone;
  if (*result == kDone) {
    settings_->use([&](Values& values) {
      values[keyOf(ConfigMethod::getConfig, {section, key, subKey})] = value;
    });
  }
  return Status::ok();
}

Status ConfigService::saveConfig(int32_t* result) {
  std::string error;
  *result = settings_->save(&error) ? kDone : kRefused;
  if (*result != kDone) std::fprintf(stderr, "vesk-device: can't save the settings: %s\n", error.c_str());
  return Status::ok();
}

Status ConfigService::saveConfigHandle(int32_t, int32_t* result) { return saveConfig(result); }

Status ConfigService::FactoryReset(int32_t, int32_t* result) {
  settings_->use([](Values& values) { values = factoryValues(); });
  return saveConfig(result);
}

Status ConfigService::configGroupAdd(const std::string& section, const std::string& key, int32_t* result) {
  settings_->use([&](Values& values) {
    std::string& total = values[keyOf(ConfigMethod::configGroupTotalNumberGet, {section, key})];
    total = std::to_string(parseNumber<int32_t>(total).value_or(0) + 1);
  });
  *result = kDone;
  return Status::ok();
}

Status ConfigService::configGroupDelete(const std::string& section, const std::string& key, int32_t index,
                                        int32_t* result) {
  *result = settings_->use([&](Values& values) {
    const auto total = values.find(keyOf(ConfigMethod::configGroupTotalNumberGet, {section, key}));
    const int32_t count = total == values.end() ? 0 : parseNumber<int32_t>(total->second).value_or(0);
    if (index < 0 || index >= count) return kRefused;
    total->second = std::to_string(count - 1);
    eraseNumbered(values, keyOf(ConfigMethod::getConfig, {section, key}) + "/", index);
    return kDone;
  });
  return Status::ok();
}

Status ConfigService::sceneConfigAdd(int32_t index, const std::string& text1, const std::string& text2,
                                     const std::string& text3, const std::string& text4, int32_t flag,
                                     int32_t* result) {
  SceneRecord scene{.index = index, .enabled = 1, .value = 0, .flag = flag, .texts = {}};
  *result = kRefused;
  if (takeTexts({&text1, &text2, &text3, &text4}, &scene)) {
    const bool added = settings_->use([&](Values& values) {
      return values.emplace(keyOf(ConfigMethod::sceneConfigGet, {index}), bytesOf(scene)).second;
    });
    if (added) *result = kDone;
  }
  return Status::ok();
}

Status ConfigService::sceneConfigGet(int32_t index, CommonParcelable* scene) {
  const std::string key = keyOf(ConfigMethod::sceneConfigGet, {index});
  const std::string bytes = settings_->use([&](const Values& values) { return valueOf(values, key); });
  if (bytes.empty()) return refuse("There is no such scene");
  *scene = {bytes.data(), bytes.size()};
  return Status::ok();
}

Status ConfigService::sceneConfigSetEnabled(int32_t index, int32_t enabled, int32_t* result) {
  return changeScene(*settings_, keyOf(ConfigMethod::sceneConfigGet, {index}), result,
                     [&](SceneRecord& scene) {
                       scene.enabled = enabled;
                       return true;
                     });
}

Status ConfigService::sceneConfigSet(int32_t index, int32_t value, const std::string& text1,
                                     const std::string& text2, const std::string& text3,
                                     const std::string& text4, int32_t flag, int32_t* result) {
  return changeScene(*settings_, keyOf(ConfigMethod::sceneConfigGet, {index}), result,
                     [&](SceneRecord& scene) {
                       scene.value = value;
                       scene.flag = flag;
                       return takeTexts({&text1, &text2, &text3, &text4}, &scene);
                     });
}

Status ConfigService::sceneConfigDelete(int32_t index, int32_t* result) {
  const std::string key = keyOf(ConfigMethod::sceneConfigGet, {index});
  *result = settings_->use([&](Values& values) { return values.erase(key) == 1 ? kDone : kRefused; });
  return Status::ok();
}

}  // namespace sim
