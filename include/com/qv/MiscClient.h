#pragma once

#include <com/qv/AteEventListener.h>
#include <com/qv/ClientBase.h>
#include <com/qv/IMiscService.h>
#include <com/qv/MiscEventListener.h>

namespace com::qv {

/** The connection to the misc service, with registered listeners for its two kinds of events. */
class COM_QV_EXPORT MiscClient : public ClientBase {
 public:
  using Interface = IMiscService;
  /** The name under which the service manager knows the misc service. */
  static constexpr const char* kServiceName = "com.qv.MiscService";
  static constexpr const char* kLogTag = "MiscClient";

  explicit MiscClient(const android::String16& name);
  ~MiscClient() override;

  /** All null if the service was not found. */
  const android::sp<IMiscService> service;
  const android::sp<AteEventListener> ateListener;
  const android::sp<MiscEventListener> miscListener;
};

}  // namespace com::qv
