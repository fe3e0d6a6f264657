#include <binder/Status.h>

#include <string>
#include <utility>

#include <utils/String16.h>

namespace android::binder {

namespace {

const char* exceptionName(int32_t code) {
  switch (code) {
#define NAME(exception)   \
  case Status::exception: \
    return #exception
    NAME(EX_NONE);
    NAME(EX_SECURITY);
    NAME(EX_BAD_PARCELABLE);
    NAME(EX_ILLEGAL_ARGUMENT);
    NAME(EX_NULL_POINTER);
    NAME(EX_ILLEGAL_STATE);
    NAME(EX_NETWORK_MAIN_THREAD);
    NAME(EX_UNSUPPORTED_OPERATION);
    NAME(EX_SERVICE_SPECIFIC);
    NAME(EX_PARCELABLE);
    NAME(EX_HAS_REPLY_HEADER);
    NAME(EX_TRANSACTION_FAILED);
#undef NAME
    default:
      return "EX_UNKNOWN";
  }
}

// Skips an optional block: its int32 size includes its own four bytes, or is 0 if there is none.
status_t skipBlock(const Parcel& parcel) {
  const size_t start = parcel.dataPosition();
  const size_t available = parcel.dataAvail();
  int32_t size;
  if (const status_t status = parcel.readInt32(&size); status != OK || size == 0) return status;
  if (size < static_cast<int32_t>(sizeof(size))) return BAD_VALUE;
  if (static_cast<size_t>(size) > available) return NOT_ENOUGH_DATA;
  parcel.setDataPosition(start + static_cast<size_t>(size));
  return OK;
}

}  // namespace

Status::Status(int32_t exceptionCode, int32_t errorCode) : exception_(exceptionCode), errorCode_(errorCode) {}

Status::Status(int32_t exceptionCode, int32_t errorCode, const String8& message)
    : exception_(exceptionCode), errorCode_(errorCode), message_(message) {}

Status Status::ok() { return Status(); }

Status Status::fromExceptionCode(int32_t exceptionCode) {
  return fromExceptionCode(exceptionCode, String8());
}

Status Status::fromExceptionCode(int32_t exceptionCode, const String8& message) {
  return Status(exceptionCode, exceptionCode == EX_TRANSACTION_FAILED ? FAILED_TRANSACTION : OK, message);
}

Status Status::fromExceptionCode(int32_t exceptionCode, const char* message) {
  return fromExceptionCode(exceptionCode, String8(message));
}

Status Status::fromServiceSpecificError(int32_t serviceSpecificErrorCode) {
  return Status(EX_SERVICE_SPECIFIC, serviceSpecificErrorCode);
}

Status Status::fromServiceSpecificError(int32_t serviceSpecificErrorCode, const String8& message) {
  return Status(EX_SERVICE_SPECIFIC, serviceSpecificErrorCode, message);
}

Status Status::fromServiceSpecificError(int32_t serviceSpecificErrorCode, const char* message) {
  return fromServiceSpecificError(serviceSpecificErrorCode, String8(message));
}

Status Status::fromStatusT(status_t status) {
  return Status(status == OK ? EX_NONE : EX_TRANSACTION_FAILED, status);
}

void Status::setException(int32_t ex, const String8& message) { *this = fromExceptionCode(ex, message); }

void Status::setServiceSpecificError(int32_t errorCode, const String8& message) {
  *this = fromServiceSpecificError(errorCode, message);
}

void Status::setFromStatusT(status_t status) { *this = fromStatusT(status); }

status_t Status::readFromParcel(const Parcel& parcel) {
  Status found;
  const auto read = [&]() -> status_t {
    if (const status_t status = parcel.readInt32(&found.exception_); status != OK) return status;
    if (found.exception_ == EX_NONE) return OK;
    if (found.exception_ == EX_TRANSACTION_FAILED) return FAILED_TRANSACTION;
    if (found.exception_ == EX_HAS_REPLY_HEADER) {
      found.exception_ = EX_NONE;
      return skipBlock(parcel);
    }
    std::string message;
    status_t status = parcel.readUtf8FromUtf16(&message);
    if (status == OK) status = found.message_.setTo(message.data(), message.size());
    if (status != OK) return status;
    // Platforms before 8.0 write no remote stack trace. As nothing follows an exception in a reply,
    // the rest is shorter then.
    const bool hasDetail = found.exception_ == EX_SERVICE_SPECIFIC || found.exception_ == EX_PARCELABLE;
    if (parcel.dataAvail() > (hasDetail ? sizeof(int32_t) : 0)) status = skipBlock(parcel);
    if (status != OK || !hasDetail) return status;
    return found.exception_ == EX_SERVICE_SPECIFIC ? parcel.readInt32(&found.errorCode_) : skipBlock(parcel);
  };
  const status_t status = read();
  *this = status == OK ? std::move(found) : fromStatusT(status);
  return status;
}

status_t Status::writeToParcel(Parcel* parcel) const {
  if (exception_ == EX_TRANSACTION_FAILED) return errorCode_;
  status_t status = parcel->writeInt32(exception_);
  if (status != OK || exception_ == EX_NONE) return status;
  status = parcel->writeString16(String16(message_));
  if (status == OK) status = parcel->writeInt32(0);  // no remote stack trace
  if (status == OK && (exception_ == EX_SERVICE_SPECIFIC || exception_ == EX_PARCELABLE)) {
    status = parcel->writeInt32(serviceSpecificErrorCode());
  }
  return status;
}

String8 Status::toString8() const {
  if (isOk()) return String8("No error");
  String8 text = String8::format("Status(%d, %s): '", exception_, exceptionName(exception_));
  if (exception_ == EX_SERVICE_SPECIFIC) text.appendFormat("%d: ", errorCode_);
  if (exception_ == EX_TRANSACTION_FAILED) text.appendFormat("%s: ", statusToString(errorCode_).c_str());
  return text + message_ + "'";
}

}  // namespace android::binder
