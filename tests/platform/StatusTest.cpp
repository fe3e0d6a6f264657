#include <binder/Status.h>
#include <gtest/gtest.h>

#include <string>

#include "ParcelTesting.h"

namespace android {
namespace {

using binder::Status;

struct Outcome {
  int32_t exception;
  String8 message;
  int32_t serviceError;
  status_t transport;

  explicit Outcome(const Status& status)
      : exception(status.exceptionCode()),
        message(status.exceptionMessage()),
        serviceError(status.serviceSpecificErrorCode()),
        transport(status.transactionError()) {}
  bool operator==(const Outcome&) const = default;
};

struct Row {
  Status status;
  const char* hex;
  const char* text;
};

const Row kRows[] = {
    {Status::ok(), "00000000", "No error"},
    {Status::fromExceptionCode(Status::EX_NULL_POINTER), "FCFFFFFF 00000000 00000000 00000000",
     "Status(-4, EX_NULL_POINTER): ''"},
    {Status::fromExceptionCode(Status::EX_UNSUPPORTED_OPERATION, "é"), "F9FFFFFF 01000000 E9000000 00000000",
     "Status(-7, EX_UNSUPPORTED_OPERATION): 'é'"},
    {Status::fromServiceSpecificError(-7), "F8FFFFFF 00000000 00000000 00000000 F9FFFFFF",
     "Status(-8, EX_SERVICE_SPECIFIC): '-7: '"},
    {Status::fromServiceSpecificError(9, "no"), "F8FFFFFF 02000000 6E006F00 00000000 00000000 09000000",
     "Status(-8, EX_SERVICE_SPECIFIC): '9: no'"},
    {Status::fromExceptionCode(Status::EX_PARCELABLE), "F7FFFFFF 00000000 00000000 00000000 00000000",
     "Status(-9, EX_PARCELABLE): ''"},
    {Status::fromExceptionCode(42, "new"), "2A000000 03000000 6E006500 77000000 00000000",
     "Status(42, EX_UNKNOWN): 'new'"},
};

TEST(Status, BytesAndText) {
  for (const Row& row : kRows) {
    SCOPED_TRACE(row.text);
    EXPECT_STREQ(row.status.toString8().c_str(), row.text);
    Parcel parcel;
    EXPECT_EQ(row.status.writeToParcel(&parcel), OK);
    EXPECT_EQ(bytesOf(parcel), unhex(row.hex));
    parcel.setDataPosition(0);
    Status read = Status::fromServiceSpecificError(77, "before");
    EXPECT_EQ(read.readFromParcel(parcel), OK);
    EXPECT_EQ(Outcome(read), Outcome(row.status));
    EXPECT_EQ(parcel.dataAvail(), 0u);
  }
}

TEST(Status, Setters) {
  Status status;
  status.setException(Status::EX_ILLEGAL_ARGUMENT, String8("line 9"));
  EXPECT_EQ(status.toString8(), "Status(-3, EX_ILLEGAL_ARGUMENT): 'line 9'");
  status.setServiceSpecificError(9, String8("no"));
  EXPECT_EQ(Outcome(status), Outcome(Status::fromServiceSpecificError(9, "no")));
}

TEST(Status, TruncatedHeaderIsATransportError) {
  for (const Row& row : kRows) {
    const std::string bytes = unhex(row.hex);
    for (size_t length = 0; length < bytes.size(); ++length) {
      // The form without a stack trace.
      if (length > 0 && length + 4 == bytes.size()) continue;
      SCOPED_TRACE(row.text + (" cut to " + std::to_string(length)));
      Parcel parcel;
      fillTightly(&parcel, bytes.substr(0, length));
      Status read = Status::fromServiceSpecificError(77, "before");
      EXPECT_EQ(read.readFromParcel(parcel), NOT_ENOUGH_DATA);
      EXPECT_EQ(Outcome(read), Outcome(Status::fromStatusT(NOT_ENOUGH_DATA)));
    }
  }
}

TEST(Status, HeadersOfOtherGenerations) {
  struct Foreign {
    const char* hex;
    status_t result;
    Outcome outcome;
    size_t rest = 4;
  };
  const auto failed = [](status_t status) { return Outcome(Status::fromStatusT(status)); };
  const Outcome illegalState(Status::fromExceptionCode(Status::EX_ILLEGAL_STATE));
  const Foreign kForeign[] = {
      // a reply header of 4 or 8 bytes, or none
      {"80FFFFFF 04000000 63000000", OK, Outcome(Status::ok())},
      {"80FFFFFF 08000000 FFFFFFFF 63000000", OK, Outcome(Status::ok())},
      {"80FFFFFF 00000000 63000000", OK, Outcome(Status::ok())},
      {"80FFFFFF 0C000000 FFFFFFFF", NOT_ENOUGH_DATA, failed(NOT_ENOUGH_DATA)},
      {"80FFFFFF FFFFFF7F FFFFFFFF", NOT_ENOUGH_DATA, failed(NOT_ENOUGH_DATA)},
      {"80FFFFFF FFFFFFFF FFFFFFFF", BAD_VALUE, failed(BAD_VALUE)},
      {"80FFFFFF 03000000 FFFFFFFF", BAD_VALUE, failed(BAD_VALUE)},
      // a stack trace
      {"FBFFFFFF 00000000 00000000 08000000 FFFFFFFF 63000000", OK, illegalState},
      {"FBFFFFFF 00000000 00000000 0C000000 FFFFFFFF", NOT_ENOUGH_DATA, failed(NOT_ENOUGH_DATA)},
      {"FBFFFFFF FFFFFFFF 00000000 00000000", UNEXPECTED_NULL, failed(UNEXPECTED_NULL)},
      // no stack trace, as before 8.0
      {"FBFFFFFF 00000000 00000000", OK, illegalState, 0},
      {"F8FFFFFF 00000000 00000000 F9FFFFFF", OK, Outcome(Status::fromServiceSpecificError(-7)), 0},
      {"F7FFFFFF 00000000 00000000 00000000", OK, Outcome(Status::fromExceptionCode(Status::EX_PARCELABLE)),
       0},
      // a code that is never sent
      {"7FFFFFFF 63000000", FAILED_TRANSACTION, failed(FAILED_TRANSACTION)},
  };
  for (const Foreign& row : kForeign) {
    SCOPED_TRACE(row.hex);
    Parcel parcel;
    fillTightly(&parcel, unhex(row.hex));
    Status read = Status::fromServiceSpecificError(77, "before");
    EXPECT_EQ(read.readFromParcel(parcel), row.result);
    EXPECT_EQ(Outcome(read), row.outcome);
    if (row.result == OK) {
      EXPECT_EQ(parcel.dataAvail(), row.rest);
    }
  }
}

TEST(Status, TransportErrorIsNotWritten) {
  const std::pair<Status, status_t> kErrors[] = {
      {Status::fromStatusT(DEAD_OBJECT), DEAD_OBJECT},
      {Status::fromExceptionCode(Status::EX_TRANSACTION_FAILED), FAILED_TRANSACTION},
  };
  for (const auto& [status, error] : kErrors) {
    Parcel parcel;
    EXPECT_EQ(status.writeToParcel(&parcel), error);
    EXPECT_EQ(parcel.dataSize(), 0u);
    EXPECT_EQ(status.transactionError(), error);
    EXPECT_FALSE(status.isOk());
  }
  EXPECT_EQ(Status::fromStatusT(DEAD_OBJECT).toString8(),
            "Status(-129, EX_TRANSACTION_FAILED): 'DEAD_OBJECT: '");
  EXPECT_TRUE(Status::fromStatusT(OK).isOk());
  EXPECT_EQ(Status::fromServiceSpecificError(5).transactionError(), OK);
  EXPECT_EQ(Status::fromStatusT(DEAD_OBJECT).serviceSpecificErrorCode(), 0);
}

}  // namespace
}  // namespace android
