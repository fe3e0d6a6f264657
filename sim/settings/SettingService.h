#pragma once

#include <com/qv/IConfigService.h>

#include <memory>
#include <string>
#include <string_view>
#include <type_traits>
#include <utility>
#include <variant>
#include <vector>

#include "common/Service.h"
#include "settings/ConfigMethod.h"
#include "settings/Settings.h"

namespace sim {

/** The methods of the config service that get and set the values in SettingTable.cpp. A method that
 * is not in the table does nothing and returns 0. */
class SettingService : public com::qv::BnConfigService {
 public:
  // The interface's table names these types without their namespace.
  using CommonParcelable = com::qv::CommonParcelable;
  using Status = android::binder::Status;

  explicit SettingService(std::shared_ptr<Settings> settings) : settings_(std::move(settings)) {}

#define METHOD(code, name, ...) Status name(COM_QV_PARAMS(__VA_ARGS__)) override;
#include <com/qv/ConfigService.def>
#undef METHOD

 protected:
  /** An in-parameter in its stored form. */
  struct Argument {
    std::string bytes;
    bool isRecord = false;

    Argument(int32_t number) : bytes(std::to_string(number)) {}
    Argument(bool on) : bytes(on ? "1" : "0") {}
    Argument(const std::string& text) : bytes(text) {}
    Argument(const CommonParcelable& record) : bytes(std::string_view(record.blob())), isRecord(true) {}
  };
  using Answer = std::variant<std::monostate, int32_t*, bool*, std::string*, CommonParcelable*>;

  /** The key of a setting's value. */
  static std::string keyOf(ConfigMethod method, const std::vector<Argument>& arguments);

  /** Gets or sets the setting that the table has for `method`. */
  Status perform(ConfigMethod method, std::vector<Argument> arguments, const Answer& answer = {});

  const std::shared_ptr<Settings> settings_;

 private:
  /** Calls perform() with the parameters of the method. */
  template <typename... Args>
  Status performRow(ConfigMethod method, const Args&... args);
};

}  // namespace sim
