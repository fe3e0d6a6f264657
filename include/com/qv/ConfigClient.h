#pragma once

#include <com/qv/ClientBase.h>
#include <com/qv/IConfigService.h>

namespace com::qv {

/** The connection to the config service. */
class COM_QV_EXPORT ConfigClient : public ClientBase {
 public:
  using Interface = IConfigService;
  /** The name under which the service manager knows the config service. */
  static constexpr const char* kServiceName = "com.qv.ConfigService";
  static constexpr const char* kLogTag = "ConfigClient";

  explicit ConfigClient(const android::String16& name);
  ~ConfigClient() override;

  /** Null if the service was not found. */
  const android::sp<IConfigService> service;
};

}  // namespace com::qv
