#include <com/qv/ExternalKeyClient.h>

namespace com::qv {

ExternalKeyClient::ExternalKeyClient(const android::String16& serviceName)
    : ClientBase(serviceName, kLogTag), service(IExternalKeyService::asInterface(binder)) {}

ExternalKeyClient::~ExternalKeyClient() = default;

}  // namespace com::qv
