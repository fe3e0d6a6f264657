#include <com/qv/ICallService.h>
#include <com/qv/IMiscService.h>
#include <gtest/gtest.h>

#include <memory>
#include <string>
#include <vector>

#include "Events.h"
#include "Names.h"
#include "Render.h"
#include "Value.h"

/* What veskctl's library makes of events, values and names. All its calls are in
 * tests/sim/EveryMethodTest.cpp. */

namespace {

using android::sp;
using android::String16;

TEST(Listener, ReadsWhatProxiesSend) {
  const auto queue = std::make_shared<veskctl::EventQueue>();
  const sp<android::IBinder> listener = new veskctl::EventListener(vesk::interfaces::listeners()[0], queue);
  const auto call = com::qv::ICallEventListener::asInterface(listener);
  const auto ate = com::qv::IAteEventListener::asInterface(
      new veskctl::EventListener(vesk::interfaces::listeners()[2], queue));
  EXPECT_TRUE(call->conferenceStartEvent(-7, {1, -2}).isOk());
  EXPECT_TRUE(call->callCompletionInfoChangedEvent({"a\0b", 3}, true).isOk());
  EXPECT_TRUE(ate->updateContextEvent("a\"ä").isOk());
  std::string shown;
  for (const veskctl::Event& event : queue->take()) {
    shown += event.method->name;
    for (size_t i = 0; i < event.arguments.size(); ++i) {
      shown += " " + veskctl::brief(event.method->ins()[i], event.arguments[i]);
    }
    shown += "\n";
  }
  EXPECT_EQ(shown,
            "conferenceStartEvent -7 [1, -2]\n"
            "callCompletionInfoChangedEvent {3 bytes: 61 00 62} true\n"
            "updateContextEvent \"a\\\"ä\"\n");
  // A request of another interface, one that ends too soon, and a method that is none.
  android::Parcel reply;
  android::Parcel foreign;
  foreign.writeInterfaceToken(String16("com.qv.ICallService"));
  EXPECT_EQ(listener->transact(1, foreign, &reply), android::BAD_TYPE);
  android::Parcel shortened;
  shortened.writeInterfaceToken(String16("com.qv.ICallEventListener"));
  EXPECT_EQ(listener->transact(2, shortened, &reply), android::NOT_ENOUGH_DATA);
  EXPECT_EQ(listener->transact(99, foreign, &reply), android::UNKNOWN_TRANSACTION);
  EXPECT_TRUE(queue->take().empty());
}

TEST(Value, TakesOnlyWhatFits) {
  using veskctl::Type;
  struct {
    Type type;
    const char* text;
    const char* shown; /**< or why not */
  } const rows[] = {
      {Type::kInt32, "2147483647", "2147483647"},
      {Type::kInt32, "-2147483648", "-2147483648"},
      {Type::kInt32, "0xFFFFFFFE", "-2"},
      {Type::kInt32, "-0x80000000", "-2147483648"},
      {Type::kInt32, "+5", "5"},
      {Type::kInt32, "2147483648", "'2147483648' is not a number of 32 bits"},
      {Type::kInt32, "-2147483649", "'-2147483649' is not a number of 32 bits"},
      {Type::kInt32, "", "'' is not a number of 32 bits"},
      {Type::kInt32, "--5", "'--5' is not a number of 32 bits"},
      {Type::kInt32, "5x", "'5x' is not a number of 32 bits"},
      {Type::kBool, "off", "false"},
      {Type::kBool, "2", "'2' is neither true nor false"},
      {Type::kString, "", "\"\""},
      {Type::kString, "a\n\x1b[1m\xc2\x9b", R"("a\n\x1b[1m\xc2\x9b")"},
      {Type::kString, "\xff", "the text is not UTF-8"},
      {Type::kInt32s, "", "[]"},
      {Type::kInt32s, "[]", "[]"},
      {Type::kInt32s, "[3]", "[3]"},
      {Type::kInt32s, "1,", "'1,' is not a list of numbers, such as 1,2,3"},
      {Type::kRecord, "hex:", "{0 bytes}"},
      {Type::kRecord, "hex:01 A0:ff_00", "{4 bytes: 01 a0 ff 00}"},
      {Type::kRecord, "hex:012", "an odd number of hexadecimal digits, 3"},
      {Type::kRecord, "hex:0g", "'g' is not a hexadecimal digit"},
      {Type::kRecord, "zero:17", "{17 bytes: 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 ...}"},
      {Type::kRecord, "zero:1048577", "'zero:1048577': the size is not a number from 0 to 1048576"},
      {Type::kRecord, "zero:-1", "'zero:-1': the size is not a number from 0 to 1048576"},
      {Type::kRecord, "@/dev/null", "{0 bytes}"},
      {Type::kRecord, "@/dev/zero", "'/dev/zero' is larger than a record can be, 1 MiB"},
      {Type::kRecord, "@/nowhere", "can't read '/nowhere': No such file or directory"},
      {Type::kRecord, "@/", "can't read '/': Is a directory"},
      {Type::kRecord, "01", "'01' is not a record: @FILE, hex:DIGITS or zero:SIZE"},
  };
  for (const auto& row : rows) {
    std::string error;
    const auto value = veskctl::parse(row.type, row.text, &error);
    const veskctl::Parameter parameter{"value", row.type, false, {}};
    EXPECT_EQ(value ? veskctl::brief(parameter, *value) : error, row.shown) << row.text;
  }
}

TEST(Render, DumpsEachByteOnce) {
  EXPECT_EQ(veskctl::hexDump("", "  "), "");
  EXPECT_EQ(veskctl::hexDump("0123456789abcdefg\n", "  "),
            "  0000  30 31 32 33 34 35 36 37  38 39 61 62 63 64 65 66  |0123456789abcdef|\n"
            "  0010  67 0a                                             |g.|\n");
  const std::string zeros = veskctl::hexDump(std::string(16 * 5, '\0'), "");
  EXPECT_EQ(std::ranges::count(zeros, '\n'), 3) << zeros;
  EXPECT_NE(zeros.find("\n*\n0040"), std::string::npos) << zeros;
}

TEST(Render, ShowsWhatIsKnownOfARecord) {
  std::string bytes(360, '\0');
  bytes[0] = 2;
  bytes[4] = 1;
  bytes.replace(8, 8, "Al \xff \"x\"");
  bytes.replace(264, 3, "200");
  bytes[356] = 4;
  const veskctl::Parameter parameter{"callInfo", veskctl::Type::kRecord, false, {}};
  EXPECT_EQ(veskctl::brief(parameter, veskctl::Record{bytes}),
            R"({line=2 chan=1 name="Al \xff \"x\"" number="200" [356]=4})");
  // A number that fills its field has no end, and nothing behind it.
  bytes.replace(264, 96, std::string(96, '9'));
  EXPECT_NE(veskctl::brief(parameter, veskctl::Record{bytes}).find(std::string(96, '9') + "\"}"),
            std::string::npos);
  // Of another size it is another record.
  bytes.pop_back();
  EXPECT_EQ(veskctl::brief(parameter, veskctl::Record{bytes}).substr(0, 11), "{359 bytes:");
}

TEST(Render, ShowsValuesOfEveryType) {
  using veskctl::Type;
  const struct {
    Type type;
    veskctl::Value value;
    const char* inFull;
    const char* json;
  } rows[] = {
      {Type::kInt32, -7, "int32     -7\n", "-7"},
      {Type::kBool, true, "bool      true\n", "true"},
      {Type::kInt32s, std::vector<int32_t>{1, -2}, "int32[]   [1, -2]\n", "[1,-2]"},
      {Type::kStrings, std::vector<std::string>{"one", ""},
       "string[]  2 texts\n    [0] \"one\"\n    [1] \"\"\n", R"(["one",""])"},
      {Type::kRecords, std::vector<veskctl::Record>{{""}}, "record[]  1 record\n    [0] 0 bytes\n",
       R"([{"size":0,"hex":""}])"},
      {Type::kListener, sp<android::IBinder>(), "listener  null\n", "null"},
  };
  for (const auto& row : rows) {
    const veskctl::Parameter parameter{"value", row.type, false, {}};
    EXPECT_EQ(veskctl::inFull(parameter, row.value, 5), std::string("  value  ") + row.inFull);
    EXPECT_EQ(veskctl::toJson(parameter, row.value).dump(), row.json);
  }
}

TEST(Names, AreFoundOrSuggested) {
  struct {
    const char* interface;
    const char* method;
    const char* found; /**< or what is said */
  } const rows[] = {
      {"call", "makeCall", "com.qv.ICallService 14"},
      {"com.qv.CallService", "14", "com.qv.ICallService 14"},
      {"com.qv.icallservice", "MAKECALL", "com.qv.ICallService 14"},
      {"ExternalKeyService", "5", "com.qv.IExternalKeyService 5"},
      {"test-events", "lcdSwitchEvent", "com.qv.IAteEventListener 4"},
      {"databse", "", "there is no service 'databse'; did you mean database?"},
      {"x", "",
       "there is no service 'x'; there are call, config, database, misc, relay, externalkey, call-events, "
       "misc-events, test-events"},
      {"call", "0", "com.qv.ICallService has no method 0; its codes are 1 to 42"},
      {"call", "43", "com.qv.ICallService has no method 43; its codes are 1 to 42"},
      {"misc", "backlightPresetLevel",
       "com.qv.IMiscService has no method 'backlightPresetLevel'; did you mean balcklightPresetLevel?"},
      {"call", "qqqqqqqq", "com.qv.ICallService has no method 'qqqqqqqq'"},
      {"call", "", "com.qv.ICallService has no method ''"},
  };
  for (const auto& row : rows) {
    std::string result;
    const veskctl::Interface* interface =
        veskctl::findInterface(vesk::interfaces::all(), row.interface, &result);
    const veskctl::Method* method =
        interface == nullptr ? nullptr : veskctl::findMethod(*interface, row.method, &result);
    if (method != nullptr) result = interface->descriptor() + " " + std::to_string(method->code);
    EXPECT_EQ(result, row.found);
  }
}

}  // namespace
