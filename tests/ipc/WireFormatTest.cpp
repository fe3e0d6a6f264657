#include <binder/HostPlatform.h>
#include <binder/IServiceManager.h>
#include <binder/ProcessState.h>
#include <com/qv/ICallService.h>
#include <com/qv/IDatabaseService.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <cstdio>
#include <cstring>
#include <fstream>
#include <map>
#include <optional>
#include <sstream>

#include "RawPeer.h"
#include "RecordingBinder.h"
#include "WaitUntil.h"
#include "ipc/Marshal.h"

/* The dumps of docs/wire-format.md against the bytes that are sent. */

using android::Parcel;
using android::sp;
using android::String16;
using android::binder::Status;
using vesk::test::bytesOf;
using vesk::test::RawPeer;
using vesk::test::RecordingBinder;

namespace com::qv {
namespace {

/** Bytes, some of which may be left open. */
class Dump {
 public:
  /** A line of the documentation: bytes, and behind two blanks their meaning. */
  void addLine(const std::string& line) {
    std::istringstream bytes(line.substr(0, line.find("  ")));
    for (std::string byte; bytes >> byte;) {
      bytes_.push_back(byte == ".." ? std::nullopt
                                    : std::optional(static_cast<char>(std::stoi(byte, nullptr, 16))));
    }
  }

  bool matches(const std::string& bytes) const {
    return std::equal(bytes_.begin(), bytes_.end(), bytes.begin(), bytes.end(),
                      [](const auto& documented, char byte) { return documented.value_or(byte) == byte; });
  }

  /** The bytes, those that are left open taken from `number`. */
  std::string with(uint64_t number) const {
    std::string bytes;
    for (const auto& documented : bytes_) {
      if (!documented.has_value()) {
        bytes += static_cast<char>(number);
        number >>= 8;
      } else {
        bytes += *documented;
      }
    }
    return bytes;
  }

 private:
  std::vector<std::optional<char>> bytes_;
};

/** The dumps of docs/wire-format.md whose names begin alike. */
class Documentation {
 public:
  explicit Documentation(const std::string& prefix) {
    std::ifstream file(WIRE_FORMAT_DOCUMENT);
    EXPECT_TRUE(file.is_open());
    Dump* open = nullptr;
    for (std::string line; std::getline(file, line);) {
      if (line.rfind("```wire " + prefix, 0) == 0) {
        open = &dumps_[line.substr(std::strlen("```wire "))];
      } else if (line.rfind("```", 0) == 0) {
        open = nullptr;
      } else if (open != nullptr) {
        open->addLine(line);
      }
    }
  }
  ~Documentation() {
    for (const auto& [name, dump] : dumps_) ADD_FAILURE() << "nothing checks the dump \"" << name << "\"";
  }

  Dump take(const std::string& name) {
    const auto dump = dumps_.extract(name);
    EXPECT_FALSE(dump.empty()) << "there is no dump \"" << name << "\"";
    return dump.empty() ? Dump() : dump.mapped();
  }

 private:
  std::map<std::string, Dump> dumps_;
};

std::string hexOf(const std::string& bytes) {
  std::ostringstream text;
  for (const char byte : bytes) {
    char digits[4];
    std::snprintf(digits, sizeof(digits), "%02x ", static_cast<unsigned char>(byte));
    text << digits;
  }
  return text.str();
}

/** A value as it stands in a parcel. */
template <class T>
std::string written(const T& value) {
  Parcel parcel;
  EXPECT_EQ(write(&parcel, value), android::OK);
  return bytesOf(parcel);
}

CommonParcelable recordOf(std::string_view bytes) { return {bytes.data(), bytes.size()}; }

/** The request of `Interface`'s proxy in `call`. */
template <class Interface, class Call>
std::string requestOf(Call call) {
  const sp<RecordingBinder> remote = new RecordingBinder;
  call(*Interface::asInterface(remote));
  return remote->take().value().bytes;
}

class CallService : public DefaultCallService {
 public:
  Status makeCall(int32_t line, const std::string& number, int32_t* result) override {
    *result = line == 1 && number == "42" ? 7 : -1;
    return outcome;
  }
  Status outcome;
};

class DatabaseService : public DefaultDatabaseService {
 public:
  Status getMemoByIndex(int32_t, CommonParcelable* memo, int32_t* result) override {
    *memo = recordOf("tea");
    *result = 1;
    return Status::ok();
  }
};

std::string replyOf(const sp<android::IBinder>& stub, uint32_t code, const std::string& request) {
  Parcel data;
  Parcel reply;
  data.setData(reinterpret_cast<const uint8_t*>(request.data()), request.size());
  EXPECT_EQ(stub->transact(code, data, &reply), android::OK);
  return bytesOf(reply);
}

const auto kMakeCall = [](ICallService& service) {
  int32_t result = 0;
  service.makeCall(1, "42", &result);
};

TEST(WireFormatTest, ParcelsAreAsDocumented) {
  const std::string request = requestOf<ICallService>(kMakeCall);
  const sp<CallService> ok = new CallService;
  const sp<CallService> security = new CallService;
  security->outcome = Status::fromExceptionCode(Status::EX_SECURITY, "no");
  const sp<CallService> busy = new CallService;
  busy->outcome = Status::fromServiceSpecificError(17, "busy");
  const sp<CallService> null = new CallService;
  null->outcome = Status::fromStatusT(android::UNEXPECTED_NULL);
  const std::string memoRequest = requestOf<IDatabaseService>([](IDatabaseService& service) {
    CommonParcelable memo;
    int32_t result = 0;
    service.getMemoByIndex(0, &memo, &result);
  });

  const struct {
    const char* name;
    std::string bytes;
  } rows[] = {
      {"parcel int32_t", written(int32_t{-2})},
      {"parcel bool", written(true)},
      {"parcel string", written(std::string("a\xC3\xA4\xF0\x9F\x93\x9E"))},
      {"parcel empty string", written(std::string())},
      {"parcel ints", written(std::vector<int32_t>{1, -1})},
      {"parcel texts", written(std::vector<String16>{String16("one"), String16()})},
      {"parcel record", written(recordOf({"a\0b", 3}))},
      {"parcel records", written(std::vector<CommonParcelable>{recordOf("abcd"), {}})},
      {"parcel no records", written(std::vector<CommonParcelable>())},
      {"parcel listener", written(sp<ICallEventListener>(new DefaultCallEventListener))},
      {"parcel request", request},
      {"parcel reply", replyOf(ok, 14, request)},
      {"parcel reply of two values", replyOf(new DatabaseService, 44, memoRequest)},
      {"parcel exception", replyOf(security, 14, request)},
      {"parcel service specific error", replyOf(busy, 14, request)},
      {"parcel unexpected null", replyOf(null, 14, request)},
  };
  Documentation documentation("parcel");
  for (const auto& row : rows) {
    EXPECT_TRUE(documentation.take(row.name).matches(row.bytes)) << row.name << ": " << hexOf(row.bytes);
  }
}

TEST(WireFormatTest, ConnectionsAreAsDocumented) {
  constexpr const char* kName = "test.wire";
  const sp<CallService> service = new CallService;
  ASSERT_EQ(android::defaultServiceManager()->addService(String16(kName), service), android::OK);
  android::ProcessState::self()->startThreadPool();
  const uint64_t number = vesk::test::numberOf(kName);
  const std::string request = requestOf<ICallService>(kMakeCall);

  Documentation documentation("connection");
  RawPeer watch(vesk::test::socketOf(kName));
  RawPeer channel(vesk::test::socketOf(kName));
  const auto matches = [&](const char* name, const std::string& bytes, const std::string& data = "") {
    ASSERT_GE(bytes.size(), data.size());
    const size_t headerSize = bytes.size() - data.size();
    EXPECT_TRUE(documentation.take(name).matches(bytes.substr(0, headerSize)))
        << name << ": " << hexOf(bytes);
    EXPECT_EQ(hexOf(bytes.substr(headerSize)), hexOf(data)) << name;
  };
  const auto packetOf = [&](const char* name) { return documentation.take(name).with(number); };
  const auto packetFromWatch = [&](size_t size) {
    std::string bytes(size, '\0');
    EXPECT_TRUE(watch.receive(bytes.data(), size));
    return bytes;
  };
  const std::string greeting = packetOf("connection watch");
  watch.send(greeting.data(), greeting.size());
  matches("connection watch answered", packetFromWatch(greeting.size()));
  const auto kChannel = android::transport::ConnectionKind::kChannel;
  const android::transport::Hello hello{.kind = kChannel, .process = vesk::test::kStranger};
  matches("connection channel", std::string(reinterpret_cast<const char*>(&hello), sizeof(hello)));
  channel.greet(kChannel);
  const std::string acquire = packetOf("connection acquire");
  channel.sendBytes(acquire);
  matches("connection acquired", channel.receiveFrame());
  const std::string frame = packetOf("connection request") + request;
  channel.sendBytes(frame);
  matches("connection reply", channel.receiveFrame(), replyOf(service, 14, request));
  const std::string release = packetOf("connection release");
  watch.send(release.data(), release.size());
  // The process reads it at some time.
  const Dump failed = documentation.take("connection failed");
  vesk::test::waitUntil("the release", [&] {
    channel.sendBytes(frame);
    return failed.matches(channel.receiveFrame());
  });
  channel.sendBytes(acquire);
  EXPECT_EQ(channel.statusOfReply(), android::OK);
  android::host::killObject(service);
  matches("connection object's death", packetFromWatch(sizeof(number)));
}

}  // namespace
}  // namespace com::qv
