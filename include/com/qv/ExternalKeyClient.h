#pragma once

#include <com/qv/ClientBase.h>
#include <com/qv/IExternalKeyService.h>

namespace com::qv {

/** The connection to the external-key service. There is no death notification: calls fail after the
 * death of the service. */
class COM_QV_EXPORT ExternalKeyClient : public ClientBase {
 public:
  using Interface = IExternalKeyService;
  /** The name under which the service manager knows the external-key service. */
  static constexpr const char* kServiceName = "com.qv.ExternalKeyService";
  static constexpr const char* kLogTag = "ExternalKeyClient";

  explicit ExternalKeyClient(const android::String16& name);
  ~ExternalKeyClient() override;

  /** Null if the service was not found. */
  const android::sp<IExternalKeyService> service;
};

}  // namespace com::qv
