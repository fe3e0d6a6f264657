#include <cstdio>
#include <set>
#include <string_view>

#include "common/Records.h"
#include "config/ConfigRecords.h"
#include "config/ConfigService.h"

/* DSS keys. */

namespace sim {

using android::binder::Status;

namespace {

struct FactoryKey {
  int32_t type;
  int32_t icon;
  std::string_view title;
  std::string_view value;
};

/** The first keys of the first page. */
constexpr FactoryKey kFactoryKeys[] = {
    {.type = 1, .icon = 1, .title = "Alice Meyer", .value = "200"},
    {.type = 1, .icon = 1, .title = "Ben Okafor", .value = "201"},
    {.type = 2, .icon = 4, .title = "Front Door", .value = "240"},
};

}  // namespace

Values ConfigService::factoryValues() {
  Values values;
  int32_t index = 0;
  for (const FactoryKey& factory : kFactoryKeys) {
    DsskeyRecord key = with(&DsskeyRecord::title, factory.title, with(&DsskeyRecord::value, factory.value));
    key.type = factory.type;
    key.icon = factory.icon;
    values[keyOf(ConfigMethod::getDsskeyConfig, {0, 0, index++})] = bytesOf(key);
  }
  return values;
}

Status ConfigService::getDsskeyDisplay(int32_t a, int32_t b, int32_t c, CommonParcelable* display) {
  CommonParcelable record;
  getDsskeyConfig(a, b, c, &record);
  const auto key = unpack<DsskeyRecord>(record);
  vesk_dss_display shown{};
  copyText(shown.name, textOf(key->title));
  copyText(shown.value, textOf(key->value));
  shown.icon = static_cast<uint32_t>(key->icon);
  shown.theme = key->theme;
  *display = pack(shown);
  return Status::ok();
}

Status ConfigService::getDsskeyIconChangedArr(std::vector<CommonParcelable>* icons) {
  const std::string prefix = keyOf(ConfigMethod::getDsskeyConfig, {}) + "/";
  settings_->use([&](const Values& values) {
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
  const auto key = unpack<DsskeyRecord>(dsskey);
  if (!key) return refuse("The record has another size");
  vesk_dsskey_value value{};
  value.type = key->type;
  copyText(value.text, textOf(key->value));
  *dsskeyValue = pack(value);
  return Status::ok();
}

Status ConfigService::parsingDsskeyValue(const CommonParcelable& dsskeyValue, CommonParcelable* dsskey) {
  const auto value = unpack<vesk_dsskey_value>(dsskeyValue);
  if (!value) return refuse("The record has another size");
  DsskeyRecord key = with(&DsskeyRecord::value, textOf(value->text));
  key.type = value->type;
  *dsskey = pack(key);
  return Status::ok();
}

std::set<int32_t> ConfigService::mdcKeys(int32_t page) {
  const std::string prefix = keyOf(ConfigMethod::getMdcDsskeyConfig, {page}) + "/";
  return settings_->use([&](const Values& values) { return numbersAfter(values, prefix); });
}

Status ConfigService::getMdcFirstDsskeyConfig(int32_t a, CommonParcelable* mdcDsskey) {
  const std::set<int32_t> keys = mdcKeys(a);
  return getMdcDsskeyConfig(a, keys.empty() ? 0 : *keys.begin(), mdcDsskey);
}

Status ConfigService::getEmptyDssUrlIndex(int32_t value, int32_t* index) {
  const std::set<int32_t> keys = mdcKeys(value);
  for (*index = 0; keys.contains(*index);) ++*index;
  return Status::ok();
}

Status ConfigService::getMdcValueRecombineUrl(const CommonParcelable& mdcDsskey,
                                              CommonParcelable* recombined) {
  if (mdcDsskey.blob().length() != VESK_MDC_RECOMBINE_URL_SIZE) return refuse("The record has another size");
  *recombined = mdcDsskey;
  return Status::ok();
}

}  // namespace sim
