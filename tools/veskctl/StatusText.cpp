#include "StatusText.h"

#include "Text.h"

namespace veskctl {

namespace {

using android::binder::Status;

const char* exceptionName(int32_t code) {
  switch (code) {
#define VESKCTL_NAME(exception) \
  case Status::exception:       \
    return #exception
    VESKCTL_NAME(EX_NONE);
    VESKCTL_NAME(EX_SECURITY);
    VESKCTL_NAME(EX_BAD_PARCELABLE);
    VESKCTL_NAME(EX_ILLEGAL_ARGUMENT);
    VESKCTL_NAME(EX_NULL_POINTER);
    VESKCTL_NAME(EX_ILLEGAL_STATE);
    VESKCTL_NAME(EX_NETWORK_MAIN_THREAD);
    VESKCTL_NAME(EX_UNSUPPORTED_OPERATION);
    VESKCTL_NAME(EX_SERVICE_SPECIFIC);
    VESKCTL_NAME(EX_PARCELABLE);
    VESKCTL_NAME(EX_TRANSACTION_FAILED);
#undef VESKCTL_NAME
    default:
      return "an exception of unknown code";
  }
}

}  // namespace

std::string toText(const Status& status) {
  if (status.isOk()) return "ok";
  const int32_t code = status.exceptionCode();
  std::string text = exceptionName(code);
  if (code == Status::EX_TRANSACTION_FAILED) {
    return text + ": " + android::statusToString(status.transactionError());
  }
  text += code == Status::EX_SERVICE_SPECIFIC ? format(" %d", status.serviceSpecificErrorCode())
                                              : format(" (%d)", code);
  const std::string message = status.exceptionMessage().c_str();
  return message.empty() ? text : text + ": " + quote(message);
}

Json toJson(const Status& status) {
  const int32_t code = status.exceptionCode();
  Json result = {{"exception", exceptionName(code)}, {"code", code}};
  if (code == Status::EX_TRANSACTION_FAILED) {
    result["transport"] = {{"name", android::statusToString(status.transactionError())},
                           {"code", status.transactionError()}};
  } else if (!status.isOk()) {
    result["message"] = std::string(status.exceptionMessage().c_str());
  }
  if (code == Status::EX_SERVICE_SPECIFIC) result["serviceSpecific"] = status.serviceSpecificErrorCode();
  return result;
}

}  // namespace veskctl
