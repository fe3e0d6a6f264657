#include <com/qv/ICallService.h>
#include <com/qv/IMiscService.h>
#include <gtest/gtest.h>

#include <memory>
#include <string>
#include <vector>

#include "Events.h"
#include "Names.h"
#include "Render.h"
#include "Text.h"
#include "Value.h"

/* The parts of veskctl. tests/sim/EveryMethodTest.cpp makes every call of the tables. */

namespace {

using android::sp;
using android::String16;
using veskctl::Record;
using veskctl::Type;

TEST(Listener, RequestsOfProxies) {
  const auto queue = std::make_shared<veskctl::EventQueue>();
  const auto interfaces = vesk::interfaces::listeners();
  const sp<android::IBinder> listener = new veskctl::EventListener(interfaces[0], queue);
  const auto call = com::qv::ICallEventListener::asInterface(listener);
  const auto ate = com::qv::IAteEventListener::asInterface(new veskctl::EventListener(interfaces[2], queue));
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
  for (const auto& [code, token, status] :
       {std::tuple(1u, u"com.qv.ICallService", android::BAD_TYPE),
        {2u, u"com.qv.ICallEventListener", android::NOT_ENOUGH_DATA},
        {99u, u"com.qv.ICallEventListener", android::UNKNOWN_TRANSACTION}}) {
    android::Parcel request;
    android::Parcel reply;
    request.writeInterfaceToken(String16(token));
    EXPECT_EQ(listener->transact(code, request, &reply), status);
  }
  EXPECT_TRUE(queue->take().empty());
}

TEST(Value, Parse) {
  const struct {
    Type type;
    const char* text;
    const char* expected; /**< the value, or the error */
  } rows[] = {
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
      {Type::kRecord, "hex:012", "an odd number of hexadecimal digits: 3"},
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
    EXPECT_EQ(value ? veskctl::brief(parameter, *value) : error, row.expected) << row.text;
  }
}

TEST(Render, ValuesOfEveryType) {
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
      {Type::kRecords, std::vector<Record>{{""}}, "record[]  1 record\n    [0] 0 bytes\n",
       R"([{"size":0,"hex":""}])"},
      {Type::kRecord, Record{"0123456789abcdefg\n"},
       "record    18 bytes\n"
       "    0000  30 31 32 33 34 35 36 37  38 39 61 62 63 64 65 66  |0123456789abcdef|\n"
       "    0010  67 0a                                             |g.|\n",
       R"({"size":18,"hex":"30313233343536373839616263646566670a"})"},
      {Type::kListener, sp<android::IBinder>(), "listener  null\n", "null"},
  };
  for (const auto& row : rows) {
    const veskctl::Parameter parameter{"value", row.type, false, {}};
    EXPECT_EQ(veskctl::inFull(parameter, row.value, 5), std::string("  value  ") + row.inFull);
    EXPECT_EQ(veskctl::toJson(parameter, row.value).dump(), row.json);
  }
  const std::string row = "  00 00 00 00 00 00 00 00  00 00 00 00 00 00 00 00  |................|\n";
  EXPECT_EQ(veskctl::hexDump(std::string(80, '\0'), ""), "0000" + row + "*\n0040" + row);
}

TEST(Render, FieldsOfARecord) {
  std::string bytes(360, '\0');
  bytes[0] = 2;
  bytes[4] = 1;
  bytes.replace(8, 8, "Al \xff \"x\"");
  bytes.replace(264, 3, "200");
  bytes[356] = 4;
  const veskctl::Parameter parameter{"callInfo", Type::kRecord, false, {}};
  const auto brief = [&] { return veskctl::brief(parameter, Record{bytes}); };
  EXPECT_EQ(brief(), R"({line=2 chan=1 name="Al \xff \"x\"" number="200" [356]=4})");
  // A number that fills its field has no zero byte, and no fields follow it.
  bytes.replace(264, 96, std::string(96, '9'));
  EXPECT_TRUE(brief().ends_with(std::string(96, '9') + "\"}")) << brief();
  bytes.pop_back();
  EXPECT_TRUE(brief().starts_with("{359 bytes:")) << brief();
}

TEST(Names, Search) {
  const struct {
    const char* interface;
    const char* method;
    const char* expected; /**< the method found, or the error */
  } rows[] = {
      {"call", "makeCall", "com.qv.ICallService 14"},
      {"com.qv.CallService", "14", "com.qv.ICallService 14"},
      {"com.qv.icallservice", "MAKECALL", "com.qv.ICallService 14"},
      {"ExternalKeyService", "5", "com.qv.IExternalKeyService 5"},
      {"test-events", "lcdSwitchEvent", "com.qv.IAteEventListener 4"},
      {"databse", "", "there is no service 'databse'; did you mean database?"},
      {"cal", "", "there is no service 'cal'; did you mean call, call-events?"},
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
    const auto* interface = veskctl::findInterface(vesk::interfaces::all(), row.interface, &result);
    const auto* method =
        interface == nullptr ? nullptr : veskctl::findMethod(*interface, row.method, &result);
    if (method != nullptr) result = interface->descriptor() + " " + std::to_string(method->code);
    EXPECT_EQ(result, row.expected);
  }
}

}  // namespace
