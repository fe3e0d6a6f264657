#include "settings/SettingService.h"

#include <algorithm>
#include <charconv>

#include "settings/SettingTable.h"

namespace sim {

namespace {

using android::binder::Status;

int32_t toNumber(const std::string& bytes) {
  int32_t number = 0;
  std::from_chars(bytes.data(), bytes.data() + bytes.size(), number);
  return number;
}

struct Put {
  const std::string& bytes;

  void operator()(std::monostate) const {}
  void operator()(int32_t* number) const { *number = toNumber(bytes); }
  void operator()(bool* on) const { *on = toNumber(bytes) != 0; }
  void operator()(std::string* text) const { *text = bytes; }
  void operator()(com::qv::CommonParcelable* record) const { *record = {bytes.data(), bytes.size()}; }
};

}  // namespace

std::string SettingService::keyOf(ConfigMethod method, const std::vector<Argument>& arguments) {
  const Setting* setting = findSetting(method);
  std::string key = setting != nullptr ? setting->key() : joinKey({nameOf(method)});
  if (setting != nullptr && setting->shared) return key;
  for (const Argument& argument : arguments) extendKey(key, argument.bytes);
  return key;
}

Status SettingService::perform(ConfigMethod method, std::vector<Argument> arguments, const Answer& answer) {
  const Setting* setting = findSetting(method);
  if (setting == nullptr) {
    const bool isRequest =
        std::holds_alternative<std::monostate>(answer) || std::holds_alternative<int32_t*>(answer);
    if (!isRequest) return Status::fromExceptionCode(Status::EX_UNSUPPORTED_OPERATION);
    std::visit(Put{"0"}, answer);
    return Status::ok();
  }
  if (method == setting->getter) {
    const std::string bytes = settings_->use([&](const Values& values) {
      const auto found = values.find(keyOf(method, arguments));
      return found != values.end() ? found->second : setting->presetBytes(values);
    });
    std::visit(Put{bytes}, answer);
    return Status::ok();
  }
  auto value = std::find_if(arguments.rbegin(), arguments.rend(), [](const auto& a) { return a.isRecord; });
  if (value == arguments.rend()) value = arguments.rbegin();
  const std::string bytes = std::move(value->bytes);
  if (!setting->accepts(bytes.size())) return refuse("The record has another size");
  arguments.erase(std::next(value).base());
  settings_->use([&](Values& values) { values[keyOf(method, arguments)] = bytes; });
  std::visit(Put{"0"}, answer);
  return Status::ok();
}

template <typename... Args>
Status SettingService::performRow(ConfigMethod method, const Args&... args) {
  std::vector<Argument> arguments;
  Answer answer;
  bool canAnswer = true;
  [[maybe_unused]] const auto take = [&](const auto& arg) {
    using Arg = std::remove_cvref_t<decltype(arg)>;
    if constexpr (!std::is_pointer_v<Arg>) {
      arguments.emplace_back(arg);
    } else if constexpr (std::is_constructible_v<Answer, Arg>) {
      answer = arg;
    } else {
      canAnswer = false;
    }
  };
  (take(args), ...);
  return canAnswer ? perform(method, std::move(arguments), answer)
                   : Status::fromExceptionCode(Status::EX_UNSUPPORTED_OPERATION);
}

#define METHOD(code, name, ...)                                                     \
  Status SettingService::name(COM_QV_PARAMS(__VA_ARGS__)) {                         \
    return performRow(ConfigMethod::name __VA_OPT__(, ) COM_QV_NAMES(__VA_ARGS__)); \
  }
#include <com/qv/ConfigService.def>
#undef METHOD

}  // namespace sim
