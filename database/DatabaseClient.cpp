#include <com/qv/DatabaseClient.h>

namespace com::qv {

DatabaseClient::DatabaseClient(const android::String16& serviceName)
    : ClientBase(serviceName, kLogTag), service(IDatabaseService::asInterface(binder)) {}

DatabaseClient::~DatabaseClient() = default;

}  // namespace com::qv
