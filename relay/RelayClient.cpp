#include <com/qv/RelayClient.h>

namespace com::qv {

RelayClient::RelayClient(const android::String16& serviceName)
    : ClientBase(serviceName, kLogTag), service(IRelayService::asInterface(binder)) {}

RelayClient::~RelayClient() = default;

}  // namespace com::qv
