#pragma once

#include <cstdint>

#include <binder/Parcel.h>
#include <utils/Errors.h>
#include <utils/String8.h>

namespace android::binder {

/** The outcome of a call: ok, an exception that the service raised, or a transport error. It opens
 * every reply. */
class Status final {
 public:
  enum Exception : int32_t {
    EX_NONE = 0,
    EX_SECURITY = -1,
    EX_BAD_PARCELABLE = -2,
    EX_ILLEGAL_ARGUMENT = -3,
    EX_NULL_POINTER = -4,
    EX_ILLEGAL_STATE = -5,
    EX_NETWORK_MAIN_THREAD = -6,
    EX_UNSUPPORTED_OPERATION = -7,
    EX_SERVICE_SPECIFIC = -8,
    EX_PARCELABLE = -9,
    /** Precedes a reply with further headers; read as ok. */
    EX_HAS_REPLY_HEADER = -128,
    /** The transaction itself failed. Never sent. */
    EX_TRANSACTION_FAILED = -129,
  };

  static Status ok();
  static Status fromExceptionCode(int32_t exceptionCode);
  static Status fromExceptionCode(int32_t exceptionCode, const String8& message);
  static Status fromExceptionCode(int32_t exceptionCode, const char* message);
  static Status fromServiceSpecificError(int32_t serviceSpecificErrorCode);
  static Status fromServiceSpecificError(int32_t serviceSpecificErrorCode, const String8& message);
  static Status fromServiceSpecificError(int32_t serviceSpecificErrorCode, const char* message);
  static Status fromStatusT(status_t status);

  Status() = default;

  /** Reads the header of a reply. An error is returned and becomes the status, as a transport
   * error. */
  status_t readFromParcel(const Parcel& parcel);
  /** Writes the header of a reply. A transport error is returned instead. */
  status_t writeToParcel(Parcel* parcel) const;

  void setException(int32_t ex, const String8& message);
  void setServiceSpecificError(int32_t errorCode, const String8& message);
  void setFromStatusT(status_t status);

  int32_t exceptionCode() const { return exception_; }
  const String8& exceptionMessage() const { return message_; }
  status_t transactionError() const { return exception_ == EX_TRANSACTION_FAILED ? errorCode_ : OK; }
  int32_t serviceSpecificErrorCode() const { return exception_ == EX_SERVICE_SPECIFIC ? errorCode_ : 0; }
  bool isOk() const { return exception_ == EX_NONE; }

  String8 toString8() const;

 private:
  Status(int32_t exceptionCode, int32_t errorCode);
  Status(int32_t exceptionCode, int32_t errorCode, const String8& message);

  int32_t exception_ = EX_NONE;
  int32_t errorCode_ = 0;
  String8 message_;
};

}  // namespace android::binder
