#pragma once

#include <com/qv/ClientBase.h>
#include <com/qv/IDatabaseService.h>

namespace com::qv {

/** The connection to the database service. */
class COM_QV_EXPORT DatabaseClient : public ClientBase {
 public:
  using Interface = IDatabaseService;
  /** The name under which the service manager knows the database service. */
  static constexpr const char* kServiceName = "com.qv.DatabaseService";
  static constexpr const char* kLogTag = "DatabaseClient";

  explicit DatabaseClient(const android::String16& name);
  ~DatabaseClient() override;

  /** Null if the service was not found. */
  const android::sp<IDatabaseService> service;
};

}  // namespace com::qv
