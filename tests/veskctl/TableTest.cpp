#include <binder/Binder.h>
#include <com/qv/ICallService.h>
#include <com/qv/IConfigService.h>
#include <com/qv/IDatabaseService.h>
#include <com/qv/IExternalKeyService.h>
#include <com/qv/IMiscService.h>
#include <com/qv/IRelayService.h>
#include <gtest/gtest.h>

#include <functional>
#include <memory>
#include <string>
#include <tuple>
#include <type_traits>
#include <vector>

#include "Binder.h"
#include "Events.h"
#include "Interfaces.h"
#include "Render.h"
#include "Value.h"

/* veskctl's own reading of the tables, against the library's proxies and stubs, row by row. */

namespace {

using android::sp;
using android::String16;
using android::binder::Status;
using com::qv::CommonParcelable;
using com::qv::IAteEventListener;
using com::qv::ICallEventListener;
using com::qv::IMiscEventListener;

/* The sample of each type, as the library has it. */

sp<android::IBinder> sampleBinder() {
  static const sp<android::IBinder>& binder = *new sp<android::IBinder>(new android::BBinder);
  return binder;
}

void sample(int32_t* value) { *value = -7; }
void sample(bool* value) { *value = true; }
void sample(std::string* value) { *value = "a\"ä"; }
void sample(std::vector<int32_t>* value) { *value = {1, -2}; }
void sample(std::vector<String16>* value) { *value = {String16("one"), String16()}; }
void sample(CommonParcelable* value) { *value = CommonParcelable("a\0b", 3); }
void sample(std::vector<CommonParcelable>* value) {
  *value = {CommonParcelable("a\0b", 3), CommonParcelable()};
}
template <class Listener>
void sample(sp<Listener>* value) {
  *value = Listener::asInterface(sampleBinder());
}

/** And as veskctl takes and shows it, in the order of its types. */
struct {
  const char* argument;
  const char* shown;
} const kSamples[] = {
    {"-7", "-7"},
    {"yes", "true"},
    {"a\"ä", R"("a\"ä")"},
    {"1,-2", "[1, -2]"},
    {nullptr, R"(["one", ""])"},
    {"hex:610062", "{3 bytes: 61 00 62}"},
    {nullptr, "[{3 bytes: 61 00 62}, {0 bytes}]"},
    {nullptr, nullptr},
};

template <class T>
bool isSample(const T& value) {
  T expected;
  sample(&expected);
  return value == expected;
}
bool isSample(const CommonParcelable& value) { return value.blob() == android::String8("a\0b", 3); }
bool isSample(const std::vector<CommonParcelable>& value) {
  return value.size() == 2 && isSample(value[0]) && value[1].blob().empty();
}
template <class Listener>
bool isSample(const sp<Listener>& value) {
  return Listener::asBinder(value) == sampleBinder();
}

template <class... Parameters>
Status answerSamples(const Parameters&... parameters) {
  [[maybe_unused]] const auto each = [](const auto& parameter) {
    if constexpr (std::is_pointer_v<std::remove_cvref_t<decltype(parameter)>>) {
      sample(parameter);
    } else {
      EXPECT_TRUE(isSample(parameter));
    }
  };
  (each(parameters), ...);
  return Status::ok();
}

/** Calls a method with samples, and expects samples back. */
template <class Interface, class... Parameters>
Status callWithSamples(Interface& interface, Status (Interface::*method)(Parameters...)) {
  std::tuple<std::remove_pointer_t<std::remove_cvref_t<Parameters>>...> values;
  const auto fill = [&]<class Parameter>(auto& value, std::type_identity<Parameter>) {
    if constexpr (!std::is_pointer_v<Parameter>) sample(&value);
  };
  const auto pass = []<class Parameter>(auto& value, std::type_identity<Parameter>) -> decltype(auto) {
    if constexpr (std::is_pointer_v<Parameter>) {
      return &value;
    } else {
      return (value);
    }
  };
  return std::apply(
      [&](auto&... value) {
        (fill(value, std::type_identity<Parameters>()), ...);
        const Status status = (interface.*method)(pass(value, std::type_identity<Parameters>())...);
        [[maybe_unused]] const auto check = [](const auto& one) { EXPECT_TRUE(isSample(one)); };
        if (status.isOk()) (check(value), ...);
        return status;
      },
      values);
}

struct InterfaceSample {
  const char* className;
  sp<android::IBinder> (*makeService)();
  /** In the order of their codes. */
  std::vector<Status (*)(const sp<android::IBinder>& binder)> calls;
};

#define COM_QV_INTERFACE CallService
#define COM_QV_METHODS <com/qv/CallService.def>
#include "Echo.h"
#define COM_QV_INTERFACE ConfigService
#define COM_QV_METHODS <com/qv/ConfigService.def>
#include "Echo.h"
#define COM_QV_INTERFACE DatabaseService
#define COM_QV_METHODS <com/qv/DatabaseService.def>
#include "Echo.h"
#define COM_QV_INTERFACE MiscService
#define COM_QV_METHODS <com/qv/MiscService.def>
#include "Echo.h"
#define COM_QV_INTERFACE RelayService
#define COM_QV_METHODS <com/qv/RelayService.def>
#include "Echo.h"
#define COM_QV_INTERFACE ExternalKeyService
#define COM_QV_METHODS <com/qv/ExternalKeyService.def>
#include "Echo.h"
#define COM_QV_INTERFACE CallEventListener
#define COM_QV_METHODS <com/qv/CallEventListener.def>
#include "Echo.h"
#define COM_QV_INTERFACE MiscEventListener
#define COM_QV_METHODS <com/qv/MiscEventListener.def>
#include "Echo.h"
#define COM_QV_INTERFACE AteEventListener
#define COM_QV_METHODS <com/qv/AteEventListener.def>
#include "Echo.h"

/** Passes transactions on and keeps the bytes of the last one. */
class Tee : public android::BBinder {
 public:
  explicit Tee(const sp<android::IBinder>& target) : target_(target) {}

  std::string taken() { return std::exchange(bytes_, {}); }

 protected:
  android::status_t onTransact(uint32_t code, const android::Parcel& data, android::Parcel* reply,
                               uint32_t flags) override {
    bytes_ = std::to_string(code) + " " + std::to_string(flags) + " ";
    bytes_.append(reinterpret_cast<const char*>(data.data()), data.dataSize());
    return target_->transact(code, data, reply, flags);
  }

 private:
  const sp<android::IBinder> target_;
  std::string bytes_;
};

std::vector<veskctl::Value> sampleArguments(const veskctl::Method& method) {
  std::vector<veskctl::Value> values;
  for (const veskctl::Parameter& parameter : method.ins()) {
    const char* const text = kSamples[static_cast<size_t>(parameter.type)].argument;
    std::string error;
    values.push_back(text == nullptr ? veskctl::Value(sampleBinder())
                                     : veskctl::parse(parameter.type, text, &error).value());
  }
  return values;
}

void expectSamples(std::span<const veskctl::Parameter> parameters,
                   const std::vector<veskctl::Value>& values) {
  ASSERT_EQ(values.size(), parameters.size());
  for (size_t i = 0; i < values.size(); ++i) {
    EXPECT_EQ(veskctl::brief(parameters[i], values[i]),
              kSamples[static_cast<size_t>(parameters[i].type)].shown);
  }
}

TEST(Table, SendsWhatProxiesSendAndReadsWhatStubsAnswer) {
  const std::vector<const InterfaceSample*> samples = {
      &sampleOfCallService,       &sampleOfConfigService,     &sampleOfDatabaseService,
      &sampleOfMiscService,       &sampleOfRelayService,      &sampleOfExternalKeyService,
      &sampleOfCallEventListener, &sampleOfMiscEventListener, &sampleOfAteEventListener};
  ASSERT_EQ(veskctl::interfaces().size(), samples.size());
  size_t rows = 0;
  for (size_t i = 0; i < samples.size(); ++i) {
    const veskctl::Interface& interface = veskctl::interfaces()[i];
    EXPECT_STREQ(interface.className, samples[i]->className);
    ASSERT_EQ(interface.methods.size(), samples[i]->calls.size());
    const sp<Tee> tee = new Tee(samples[i]->makeService());
    for (const veskctl::Method& method : interface.methods) {
      SCOPED_TRACE(interface.descriptor() + "::" + method.signature());
      ASSERT_TRUE(samples[i]->calls[method.code - 1](tee).isOk());
      const std::string proxySent = tee->taken();
      const veskctl::Answer answer = veskctl::transact(*tee, interface, method, sampleArguments(method));
      ASSERT_TRUE(answer.status.isOk()) << veskctl::toText(answer.status);
      EXPECT_EQ(tee->taken(), proxySent);
      expectSamples(method.outs(), answer.outs);
      ++rows;
    }
  }
  EXPECT_EQ(rows, 486u);
}

TEST(Table, ListenersReadWhatProxiesSend) {
  const std::vector<const InterfaceSample*> samples = {&sampleOfCallEventListener, &sampleOfMiscEventListener,
                                                       &sampleOfAteEventListener};
  for (size_t i = 0; i < samples.size(); ++i) {
    const veskctl::Interface& interface = veskctl::listeners()[i];
    const auto queue = std::make_shared<veskctl::EventQueue>();
    const sp<android::IBinder> listener = new veskctl::EventListener(interface, queue);
    for (const veskctl::Method& method : interface.methods) {
      SCOPED_TRACE(method.signature());
      EXPECT_TRUE(samples[i]->calls[method.code - 1](listener).isOk());
      const std::vector<veskctl::Event> events = queue->take();
      ASSERT_EQ(events.size(), 1u);
      EXPECT_EQ(events[0].method, &method);
      expectSamples(method.ins(), events[0].arguments);
    }
    // A request of another interface, one that ends too soon, and a method that is none.
    android::Parcel reply;
    android::Parcel foreign;
    foreign.writeInterfaceToken(String16("com.qv.ICallService"));
    EXPECT_EQ(listener->transact(1, foreign, &reply), android::BAD_TYPE);
    EXPECT_EQ(listener->transact(99, foreign, &reply), android::UNKNOWN_TRANSACTION);
    EXPECT_TRUE(queue->take().empty());
  }
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
        veskctl::findInterface(veskctl::interfaces(), row.interface, &result);
    const veskctl::Method* method =
        interface == nullptr ? nullptr : veskctl::findMethod(*interface, row.method, &result);
    if (method != nullptr) result = interface->descriptor() + " " + std::to_string(method->code);
    EXPECT_EQ(result, row.found);
  }
}

}  // namespace
