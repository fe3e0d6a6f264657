#pragma once

#include <com/qv/CallEventListener.h>
#include <com/qv/ClientBase.h>
#include <com/qv/ICallService.h>

namespace com::qv {

/** The connection to the call service, with a registered listener for the call events. */
class COM_QV_EXPORT CallClient : public ClientBase {
 public:
  using Interface = ICallService;
  /** The name under which the service manager knows the call service. */
  static constexpr const char* kServiceName = "com.qv.CallService";
  static constexpr const char* kLogTag = "CallClient";

  explicit CallClient(const android::String16& name);
  ~CallClient() override;

  /** Both null if the service was not found. */
  const android::sp<ICallService> service;
  const android::sp<CallEventListener> listener;
};

}  // namespace com::qv
