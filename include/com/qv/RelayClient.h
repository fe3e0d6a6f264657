#pragma once

#include <com/qv/ClientBase.h>
#include <com/qv/IRelayService.h>

namespace com::qv {

/** The connection to the relay service. There is no death notification: calls fail after the death
 * of the service. */
class COM_QV_EXPORT RelayClient : public ClientBase {
 public:
  using Interface = IRelayService;
  /** The name under which the service manager knows the relay service. */
  static constexpr const char* kServiceName = "com.qv.RelayService";
  static constexpr const char* kLogTag = "RelayClient";

  explicit RelayClient(const android::String16& name);
  ~RelayClient() override;

  /** Null if the service was not found. */
  const android::sp<IRelayService> service;
};

}  // namespace com::qv
