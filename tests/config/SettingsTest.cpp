#include <climits>
#include <cstring>
#include <functional>

#include "ConfigFixture.h"

using android::sp;
using vesk::test::LogLine;
using vesk::test::RecordingBinder;

namespace {

constexpr size_t kBufferSize = 1100;
const std::string kUntouched(kBufferSize, '#');

class SettingsTest : public ConfigFixture {
 protected:
  SettingsTest() {
    connect();
    log_.take();
  }

  std::string buffer_ = kUntouched;
};

/** A service of this process that calls `act` before it answers. */
class ActingService : public RecordingBinder {
 public:
  explicit ActingService(std::function<void()> act) : act_(std::move(act)) {}

 protected:
  android::status_t onTransact(uint32_t code, const android::Parcel& data, android::Parcel* reply,
                               uint32_t flags) override {
    act_();
    return RecordingBinder::onTransact(code, data, reply, flags);
  }

 private:
  const std::function<void()> act_;
};

template <class Record>
std::string bytesOf(const Record& record) {
  return {reinterpret_cast<const char*>(&record), sizeof(record)};
}

template <size_t kSize>
void fill(char (&text)[kSize], const char* with) {
  std::memset(text, 0, kSize);
  std::strncpy(text, with, kSize);
}

/* The display of DSS keys and soft keys */

TEST_F(SettingsTest, DssDisplayIsLogged) {
  vesk_dss_display display{};
  fill(display.name, "Reception");
  fill(display.value, "200@1");
  display.icon = 3000000000;
  display.theme = -2;
  answer(Wire().record(bytesOf(display)));
  char* unaligned = buffer_.data() + 1;
  EXPECT_EQ(binder_get_dss_display(1, 2, 3, unaligned), 0);
  EXPECT_EQ(std::memcmp(unaligned, &display, sizeof(display)), 0);
  EXPECT_EQ(log_.take(),
            std::vector<LogLine>({{ANDROID_LOG_DEBUG, "ConfigClient",
                                   "dsskey display: name[Reception], value[200@1], icon[-1294967296], "
                                   "theme[-2]\n"}}));

  std::memset(&display, 'x', sizeof(display));
  answer(Wire().record(bytesOf(display)));
  EXPECT_EQ(binder_get_dss_display(1, 2, 3, buffer_.data()), 0);
  const std::string line = log_.take().at(0).text;
  EXPECT_TRUE(line.starts_with("dsskey display: name[" + std::string(256, 'x') + "], value[" +
                               std::string(512, 'x') + "], "))
      << line;
}

TEST_F(SettingsTest, SoftKeyIsLogged) {
  vesk_user_softkey softkey{};
  fill(softkey.name, "Menu");
  softkey.type = 7;
  softkey.icon = -8;
  answer(Wire().record(bytesOf(softkey)));
  EXPECT_EQ(binder_get_user_softkey_config(34, buffer_.data()), 0);
  EXPECT_EQ(log_.take(), std::vector<LogLine>({{ANDROID_LOG_DEBUG, "ConfigClient",
                                                "user softkey display: name[Menu], icon[-8], type[7]\n"}}));
}

/* The value of a DSS key in words */

TEST_F(SettingsTest, DssKeyValueIsFormatted) {
  const std::string key(700, 'k');
  vesk_dsskey_value value{};
  value.type = -36;
  fill(value.text, "12345678");
  answer(Wire().record(bytesOf(value)));
  int type = 0;
  EXPECT_EQ(binder_formatting_dsskey_value(key.data(), &type, buffer_.data(), 5), 0);
  expectRequest(36, Wire().record(key.substr(0, 684)));
  EXPECT_EQ(type, -36);
  EXPECT_EQ(buffer_, std::string("1234") + '\0' + kUntouched.substr(5));
  EXPECT_EQ(binder_formatting_dsskey_value(key.data(), nullptr, buffer_.data(), 9), 0);
  EXPECT_STREQ(buffer_.c_str(), "12345678");

  std::memset(value.text, 'x', sizeof(value.text));
  answer(Wire().record(bytesOf(value)));
  EXPECT_EQ(binder_formatting_dsskey_value(key.data(), nullptr, buffer_.data(), kBufferSize), 0);
  EXPECT_EQ(buffer_.c_str(), std::string(512, 'x')) << "nothing ends the text but the record";
}

TEST_F(SettingsTest, FailedFormattingWritesNothing) {
  const std::string key(684, 'k');
  int type = 4711;
  for (const size_t size : {515u, 517u, 0u}) {
    answer(Wire().record(std::string(size, 'r')));
    EXPECT_EQ(binder_formatting_dsskey_value(key.data(), &type, buffer_.data(), kBufferSize), -1) << size;
    EXPECT_TRUE(service_->take().has_value());
  }
  answer(Wire().record(std::string(516, 'r')));
  EXPECT_EQ(binder_formatting_dsskey_value(nullptr, &type, buffer_.data(), kBufferSize), -1);
  EXPECT_EQ(binder_formatting_dsskey_value(key.data(), &type, nullptr, kBufferSize), -1);
  for (const int size : {0, -1, INT_MIN}) {
    EXPECT_EQ(binder_formatting_dsskey_value(key.data(), &type, buffer_.data(), size), -1) << size;
  }
  EXPECT_FALSE(service_->take().has_value()) << "refused before the call";
  die();
  EXPECT_EQ(binder_formatting_dsskey_value(key.data(), &type, buffer_.data(), kBufferSize), -1);
  EXPECT_EQ(type, 4711);
  EXPECT_EQ(buffer_, kUntouched);
}

TEST_F(SettingsTest, DssKeyValueIsParsed) {
  const auto sent = [](int type, const std::string& text) {
    return Wire().record(Wire().i32(type).bytes() + text + std::string(512 - text.size(), '\0'));
  };
  const std::string tooLong(600, 'x');
  const struct {
    const char* text;
    std::string field;
  } rows[] = {{"12", "12"}, {"", ""}, {nullptr, ""}, {tooLong.c_str(), std::string(511, 'x')}};
  for (const auto& row : rows) {
    answer(Wire().record(std::string(684, 'k')));
    buffer_ = kUntouched;
    EXPECT_EQ(binder_parsing_dsskey_value(-37, row.text, buffer_.data()), 0);
    expectRequest(37, sent(-37, row.field));
    EXPECT_EQ(buffer_, std::string(684, 'k') + kUntouched.substr(684));
  }

  buffer_ = kUntouched;
  for (const size_t size : {683u, 685u}) {
    answer(Wire().record(std::string(size, 'k')));
    EXPECT_EQ(binder_parsing_dsskey_value(1, "12", buffer_.data()), -1);
  }
  service_->take();
  EXPECT_EQ(binder_parsing_dsskey_value(1, "12", nullptr), -1);
  EXPECT_FALSE(service_->take().has_value());
  die();
  EXPECT_EQ(binder_parsing_dsskey_value(1, reinterpret_cast<const char*>(8), buffer_.data()), -1);
  EXPECT_EQ(buffer_, kUntouched);
}

/* Time zones */

TEST_F(SettingsTest, TimeZonesAreNumberedAndAppended) {
  answer(Wire().i32(3).text(u"UTC").text(u"").text(u"Z\u00fcrich"));
  buffer_ = "before;";
  buffer_.resize(kBufferSize, '\0');
  EXPECT_EQ(binder_get_time_zone(buffer_.data(), 793), 0);
  EXPECT_STREQ(buffer_.c_str(), "before;0:UTC;1:;2:Z\xC3\xBCrich;");
  expectRequest(58, Wire());

  buffer_ = kUntouched;
  buffer_[0] = '\0';
  EXPECT_EQ(binder_get_time_zone(buffer_.data(), 793), 0);
  EXPECT_EQ(buffer_, std::string("0:UTC;1:;2:Z\xC3\xBCrich;") + '\0' + kUntouched.substr(20));
}

TEST_F(SettingsTest, TimeZonesNeedTheirRoom) {
  answer(Wire().i32(3).text(u"a").text(u"b").text(u"c"));
  buffer_[0] = '\0';
  const std::string untouched = buffer_;
  for (const int size : {792, 264, 1, 0, -1, INT_MIN}) {
    EXPECT_EQ(binder_get_time_zone(buffer_.data(), size), -1) << size;
    EXPECT_EQ(buffer_, untouched) << size;
  }
  for (const Wire& reply : {Wire().i32(0), Wire()}) {
    answer(reply);
    for (const int size : {INT_MIN, 0}) EXPECT_EQ(binder_get_time_zone(nullptr, size), -1) << size;
    for (const int size : {INT_MIN, 0}) EXPECT_EQ(binder_get_time_zone(nullptr, size), -1) << size;
    for (const int size : {1, 1000}) EXPECT_EQ(binder_get_time_zone(nullptr, size), 0) << size;
  }
  die();
  EXPECT_EQ(binder_get_time_zone(buffer_.data(), kBufferSize), -1);
  EXPECT_EQ(buffer_, untouched);
}

TEST_F(SettingsTest, TimeZonesStopWhereTheBufferIsFull) {
  answer(Wire().i32(3).text(u"a").text(u"b").text(u"c"));
  const struct {
    size_t before;
    int result;
    const char* appended;
  } rows[] = {{793 - 13, 0, "0:a;1:b;2:c;"}, {793 - 12, -1, "0:a;1:b;"}, {793 - 1, -1, ""}};
  for (const auto& row : rows) {
    SCOPED_TRACE(row.before);
    buffer_ = std::string(row.before, 'x') + std::string(kBufferSize - row.before, '\0');
    EXPECT_EQ(binder_get_time_zone(buffer_.data(), 793), row.result);
    EXPECT_EQ(buffer_.c_str(), std::string(row.before, 'x') + row.appended);
  }
  buffer_ = kUntouched;
  EXPECT_EQ(binder_get_time_zone(buffer_.data(), 793), -1) << "no zero within the size";
  EXPECT_EQ(buffer_, kUntouched);
}

TEST_F(SettingsTest, LongTimeZoneIsCutWithItsSemicolon) {
  for (const size_t length : {260u, 261u, 300u}) {
    answer(Wire().i32(2).text(std::u16string(length, u'z')).text(u"b"));
    buffer_ = std::string(kBufferSize, '\0');
    EXPECT_EQ(binder_get_time_zone(buffer_.data(), 529), 0);
    const std::string first = ("0:" + std::string(length, 'z') + ";").substr(0, 263);
    EXPECT_EQ(buffer_.c_str(), first + "1:b;") << length;
  }
}

/* The rest */

TEST_F(SettingsTest, SecurityRecordIsRestoredAfterTheCall) {
  const std::string sent = std::string(463, 's') + '\0';
  answer(Wire());
  std::string record = sent;
  EXPECT_EQ(binder_set_security(28, record.data()), 0);
  expectRequest(28, Wire().i32(28).record(sent));

  const sp<ActingService> acting = new ActingService([&] { record.assign(record.size(), 'x'); });
  ASSERT_EQ(android::defaultServiceManager()->addService(android::String16(name_), acting), android::OK);
  ASSERT_TRUE(connect_config_service(nullptr));
  for (const android::status_t status : {android::OK, android::DEAD_OBJECT}) {
    acting->status = status;
    record = sent + "behind";
    EXPECT_EQ(binder_set_security(28, record.data()), 0) << "even if the call fails";
    EXPECT_EQ(record, sent + "xxxxxx");
  }
  connect();  // Once more, to one that can die.
  die();
  EXPECT_EQ(binder_set_security(28, nullptr), -1) << "the arguments are not read";
}

}  // namespace
