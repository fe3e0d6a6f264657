#pragma once

#include <com/qv/CallEventListener.h>
#include <com/qv/ClientBase.h>
#include <com/qv/ICallService.h>

namespace com::qv {

/** The connection to the call service; registers a listener for the call events. */
class COM_QV_EXPORT CallClient : public ClientBase {
 public:
  using Service = ICallService;

  explicit CallClient(const android::String16& name);
  ~CallClient() override;

  android::sp<ICallService> service;
  android::sp<CallEventListener> listener;
};

}  // namespace com::qv
