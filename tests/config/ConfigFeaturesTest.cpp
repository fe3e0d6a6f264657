#include <com/qv/IConfigService.h>

#include <climits>

#include "ConfigFixture.h"

/* The functions that no row of ConfigRowsTest can express. */

using android::sp;
using android::String16;
using android::binder::Status;
using vesk::test::Wire;

namespace {

constexpr size_t kBufferSize = 1000;
const std::string kUntouched(kBufferSize, '#');

using ConfigFeaturesTest = ConfigFixture;

TEST_F(ConfigFeaturesTest, RecordReplacesTheRequestInItsBuffer) {
  std::string mdc(980, '\0');
  mdc.front() = 'm';
  mdc.back() = 'c';
  const struct {
    const char* name;
    int (*call)(char* buffer);
    uint32_t code;
    size_t size;
    std::string request;
    Wire arguments;
  } rows[] = {
      {"URL", [](char* buffer) { return binder_get_mdc_recombine_url(buffer); }, 118, 980, mdc,
       Wire().record(mdc)},
      {"privacy", [](char* buffer) { return binder_get_number_privacy_data(buffer); }, 241, 129,
       std::string("?4711\0", 6), Wire().text(u"4711")},
      {"name", binder_get_device_name_by_ip, 271, 88, std::string("192.0.2.1\0", 10),
       Wire().text(u"192.0.2.1")},
  };
  const auto check = [](const auto& row, int result, const std::string& record) {
    std::string buffer = row.request + kUntouched;
    const std::string expected = record + buffer.substr(record.size());
    EXPECT_EQ(row.call(buffer.data()), result);
    EXPECT_EQ(buffer, expected);
  };
  for (const auto& row : rows) check(row, -1, "");
  connect();
  for (const auto& row : rows) {
    SCOPED_TRACE(row.name);
    answer(Wire().record(std::string(row.size, 'r')));
    check(row, 0, std::string(row.size, 'r'));
    expectRequest(row.code, row.arguments);
    for (const size_t size : {size_t{0}, row.size - 1, row.size + 1}) {
      answer(Wire().record(std::string(size, 'r')));
      check(row, -1, "");
    }
    answerException(Wire().record(std::string(row.size, 'r')));
    check(row, -1, "");
    service_->take();
  }
}

TEST_F(ConfigFeaturesTest, DeviceNameIsSentAsTwoTexts) {
  char record[] = "192.0.2.1\0..............Door";
  EXPECT_EQ(binder_set_device_name_by_ip(nullptr), -1);
  connect();
  for (const bool fails : {false, true}) {
    if (fails) answerNothing();
    EXPECT_EQ(binder_set_device_name_by_ip(record), 0);
    expectRequest(272, Wire().text(u"192.0.2.1").text(u"Door"));
  }
}

TEST_F(ConfigFeaturesTest, DoorOpenUrlFillsItsBuffer) {
  const auto check = [](int result, const std::string& text) {
    std::string buffer = kUntouched;
    EXPECT_EQ(binderGenQcmsMonitorDoorOpenUrl("1", "", "three", "4", buffer.data()), result);
    EXPECT_EQ(buffer, text + kUntouched.substr(text.size()));
  };
  check(-1, "");
  connect();
  for (const size_t length : {1u, 13u, 510u, 511u, 512u, 900u}) {
    answer(Wire().text(std::u16string(length, u'x')));
    std::string text(std::min<size_t>(length, 511), 'x');
    text.resize(512);
    check(0, text);
    expectRequest(302, Wire().text(u"1").text(u"").text(u"three").text(u"4"));
  }
  answer(Wire().text(u""));
  check(-1, "");
  answerException(Wire().text(u"x"));
  check(-1, "");
}

TEST_F(ConfigFeaturesTest, Base64IsCopiedWhole) {
  std::string buffer = kUntouched;
  EXPECT_EQ(binder_src_to_B64("source", -3, buffer.data(), 4), -1);
  EXPECT_EQ(buffer, kUntouched);
  connect();
  answer(Wire().text(std::u16string(900, u'Q')));
  EXPECT_EQ(binder_src_to_B64("source", -3, buffer.data(), 4), 0);
  EXPECT_EQ(buffer, std::string(900, 'Q') + '\0' + std::string(kBufferSize - 901, '#'));
  expectRequest(268, Wire().text(u"source").i32(-3).i32(4));

  answerException(Wire().text(u"x"));
  buffer = kUntouched;
  EXPECT_EQ(binder_src_to_B64("source", 1, buffer.data(), 0), 0);
  EXPECT_EQ(buffer, '\0' + kUntouched.substr(1));
}

/** Answers the two questions about QCMS. */
class QcmsService : public com::qv::DefaultConfigService {
 public:
  QcmsService(int32_t type, const char* url, bool fails) : type_(type), url_(url), fails_(fails) {}

  Status getQcmsPlatformType(int32_t* type) override {
    *type = type_;
    return Status::ok();
  }
  Status getQcmsPlatformUrl(std::string* url) override {
    ++urlCalls;
    if (fails_) return Status::fromExceptionCode(Status::EX_ILLEGAL_STATE);
    *url = url_;
    return Status::ok();
  }

  int urlCalls = 0;

 private:
  const int32_t type_;
  const char* const url_;
  const bool fails_;
};

TEST_F(ConfigFeaturesTest, QcmsIsOnForTheRightTypeWithAUrl) {
  EXPECT_EQ(binderIsQcmsEnabled(), 0) << "without a connection";
  const struct {
    int32_t type;
    const char* url;
    bool fails;
    int result;
    int urlCalls;
  } rows[] = {
      {2, "http://192.0.2.1", false, 1, 1}, {2, "", false, 0, 1},
      {2, "http://192.0.2.1", true, 0, 1},  {1, "http://192.0.2.1", false, 0, 0},
      {0, "http://192.0.2.1", false, 0, 0}, {3, "http://192.0.2.1", false, 0, 0},
  };
  for (const auto& row : rows) {
    SCOPED_TRACE(testing::Message() << row.type << " \"" << row.url << "\" " << row.fails);
    const sp<QcmsService> qcms = new QcmsService(row.type, row.url, row.fails);
    ASSERT_EQ(android::defaultServiceManager()->addService(String16("com.qv.ConfigService"), qcms),
              android::OK);
    ASSERT_TRUE(connect_config_service(nullptr));
    EXPECT_EQ(binderIsQcmsEnabled(), row.result);
    EXPECT_EQ(qcms->urlCalls, row.urlCalls);
  }
  connect();
  answerException(Wire().i32(2));
  EXPECT_EQ(binderIsQcmsEnabled(), 0);
  expectRequest(300, Wire());
}

}  // namespace
