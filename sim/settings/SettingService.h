#pragma once

#include <com/qv/IConfigService.h>

#include <memory>
#include <string>
#include <string_view>
#include <type_traits>
#include <utility>
#include <variant>
#include <vector>

#include "settings/Method.h"
#include "settings/Settings.h"

namespace sim {

/**
 * The config service as far as it reads and sets values, which SettingTable.cpp lists: what is set can be
 * read back, and what is not in the table does nothing and answers 0.
 */
class SettingService : public com::qv::BnConfigService {
 public:
  // The rows name them so.
  using CommonParcelable = com::qv::CommonParcelable;
  using Status = android::binder::Status;

  explicit SettingService(std::shared_ptr<Settings> settings)
      : settings_(*settings), owner_(std::move(settings)) {}

#define METHOD(code, name, ...) Status name(COM_QV_PARAMS(__VA_ARGS__)) override;
#include <com/qv/ConfigService.def>
#undef METHOD

 protected:
  /** An in-argument as it is stored. */
  struct Argument {
    std::string bytes;
    bool isRecord = false;

    Argument(int32_t number) : bytes(std::to_string(number)) {}
    Argument(bool on) : bytes(on ? "1" : "0") {}
    Argument(const std::string& text) : bytes(text) {}
    Argument(const CommonParcelable& record) : bytes(std::string_view(record.blob())), isRecord(true) {}
  };
  using Answer = std::variant<std::monostate, int32_t*, bool*, std::string*, CommonParcelable*>;

  static Status refuse(const char* why) {
    return Status::fromExceptionCode(Status::EX_ILLEGAL_ARGUMENT, why);
  }
  /** The key of a setting's value. */
  static std::string keyOf(Method method, const std::vector<Argument>& arguments);

  /** What `method` does by the table. */
  Status perform(Method method, std::vector<Argument> arguments, const Answer& answer = {});

  Settings& settings_;

 private:
  /** Calls may come in until the process is gone. */
  const std::shared_ptr<Settings> owner_;

  /** The same with the arguments of the method as they are. */
  template <typename... Args>
  Status performRow(Method method, const Args&... args);
};

}  // namespace sim
