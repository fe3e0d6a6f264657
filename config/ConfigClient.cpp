#include <com/qv/ConfigClient.h>

namespace com::qv {

ConfigClient::ConfigClient(const android::String16& serviceName)
    : ClientBase(serviceName, kLogTag), service(IConfigService::asInterface(binder)) {}

ConfigClient::~ConfigClient() = default;

}  // namespace com::qv
