#include <array>
#include <cstdio>
#include <set>
#include <string_view>

#include "common/Records.h"
#include "config/ConfigRecords.h"
#include "config/ConfigService.h"
#include "config/DsskeyText.h"

/* DSS keys and soft keys. */

namespace sim {

using android::binder::Status;

namespace {

struct FactoryKey {
  int32_t index;
  int32_t type;
  int32_t icon;
  std::string_view title;
  std::string_view value;
};

/** On the first page. */
constexpr FactoryKey kFactoryKeys[] = {
    {.index = 0, .type = 1, .icon = 1, .title = "Alice Meyer", .value = "200"},
    {.index = 1, .type = 1, .icon = 1, .title = "Ben Okafor", .value = "201"},
    {.index = 2, .type = 2, .icon = 4, .title = "Front Door", .value = "240"},
};

constexpr std::array kSoftkeys = {
    vesk_user_softkey{"History", 1, 11},
    vesk_user_softkey{"Contacts", 2, 12},
    vesk_user_softkey{"DND", 3, 13},
    vesk_user_softkey{"Menu", 4, 14},
};

vesk_user_softkey softkey(int32_t index) {
  return index >= 0 && static_cast<size_t>(index) < kSoftkeys.size() ? kSoftkeys[static_cast<size_t>(index)]
                                                                     : vesk_user_softkey{};
}

Status putFileName(com::qv::CommonParcelable* record, const std::string& name) {
  FileNameRecord file{};
  copyText(file.name, name);
  *record = pack(file);
  return Status::ok();
}

}  // namespace

Values ConfigService::factoryValues() {
  Values values;
  for (const FactoryKey& factory : kFactoryKeys) {
    DsskeyRecord key{
        .type = factory.type, .line = 0, .icon = factory.icon, .theme = 0, .title = {}, .value = {}};
    copyText(key.title, factory.title);
    copyText(key.value, factory.value);
    values[keyOf(Method::getDsskeyConfig, {0, 0, factory.index})] = std::string_view(pack(key).blob());
  }
  return values;
}

Status ConfigService::getDsskeyDisplay(int32_t a, int32_t b, int32_t c, CommonParcelable* display) {
  CommonParcelable record;
  getDsskeyConfig(a, b, c, &record);
  const auto key = unpack<DsskeyRecord>(record.blob());
  vesk_dss_display shown{};
  copyText(shown.name, textOf(key->title));
  copyText(shown.value, textOf(key->value));
  shown.icon = static_cast<uint32_t>(key->icon);
  shown.theme = key->theme;
  *display = pack(shown);
  return Status::ok();
}

Status ConfigService::getDsskeyIconChangedArr(std::vector<CommonParcelable>* icons) {
  const std::string prefix = keyOf(Method::getDsskeyConfig, {}) + "/";
  settings_.use([&](const Values& values) {
    for (auto entry = values.lower_bound(prefix); entry != values.end() && entry->first.starts_with(prefix);
         ++entry) {
      IconChangedRecord changed{};
      std::sscanf(entry->first.c_str() + prefix.size(), "%d/%d/%d", &changed.a, &changed.b, &changed.c);
      if (const auto key = unpack<DsskeyRecord>(entry->second)) changed.icon = key->icon;
      icons->push_back(pack(changed));
    }
  });
  return Status::ok();
}

Status ConfigService::formattingDsskeyValue(const CommonParcelable& dsskey, CommonParcelable* dsskeyValue) {
  const auto key = unpack<DsskeyRecord>(dsskey.blob());
  const auto words = key ? formatDsskey(*key) : std::nullopt;
  if (!words) return refuse("This DSS key can't be put in words");
  *dsskeyValue = pack(*words);
  return Status::ok();
}

Status ConfigService::parsingDsskeyValue(const CommonParcelable& dsskeyValue, CommonParcelable* dsskey) {
  const auto words = unpack<vesk_dsskey_value>(dsskeyValue.blob());
  const auto key = words ? parseDsskey(*words) : std::nullopt;
  if (!key) return refuse("This is no DSS key in words");
  *dsskey = pack(*key);
  return Status::ok();
}

Status ConfigService::getMdcFirstDsskeyConfig(int32_t a, CommonParcelable* mdcDsskey) {
  const std::string prefix = keyOf(Method::getMdcDsskeyConfig, {a}) + "/";
  const auto keys = settings_.use([&](const Values& values) { return numbersAfter(values, prefix); });
  return getMdcDsskeyConfig(a, keys.empty() ? 0 : *keys.begin(), mdcDsskey);
}

Status ConfigService::getMdcValueRecombineUrl(const CommonParcelable& mdcDsskey,
                                              CommonParcelable* recombined) {
  if (mdcDsskey.blob().length() != VESK_MDC_RECOMBINE_URL_SIZE) return refuse("The record has another size");
  *recombined = mdcDsskey;
  return Status::ok();
}

Status ConfigService::getEmptyDssUrlIndex(int32_t value, int32_t* index) {
  const std::string prefix = keyOf(Method::getMdcDsskeyConfig, {value}) + "/";
  const auto keys = settings_.use([&](const Values& values) { return numbersAfter(values, prefix); });
  for (*index = 0; keys.contains(*index);) ++*index;
  return Status::ok();
}

Status ConfigService::getUserSoftkeyConfig(int32_t index, CommonParcelable* key) {
  *key = pack(softkey(index));
  return Status::ok();
}

Status ConfigService::getSoftkeyText(int32_t, int32_t b, std::string* text) {
  *text = softkey(b).name;
  return Status::ok();
}

Status ConfigService::getSoftkeyNum(int32_t, int32_t* number) {
  *number = static_cast<int32_t>(kSoftkeys.size());
  return Status::ok();
}

Status ConfigService::getSoftkeyConfigKeyIndex(int32_t, int32_t b, int32_t* index) {
  *index = b;
  return Status::ok();
}

Status ConfigService::getDssIconName(int32_t index, CommonParcelable* name) {
  return putFileName(name, "dss_" + std::to_string(index) + ".png");
}

Status ConfigService::getBackgroundName(int32_t index, CommonParcelable* name) {
  return putFileName(name, "background_" + std::to_string(index) + ".jpg");
}

Status ConfigService::getSoftkeyIconName(int32_t index, CommonParcelable* name) {
  return putFileName(name, "softkey_" + std::to_string(index) + ".png");
}

}  // namespace sim
