#include <gtest/gtest.h>

#include <algorithm>
#include <map>
#include <optional>
#include <string>
#include <vector>

#include "Binder.h"
#include "Names.h"
#include "ServiceTesting.h"
#include "Value.h"
#include "call/CallService.h"
#include "config/ConfigService.h"
#include "database/DatabaseService.h"
#include "externalkey/ExternalKeyService.h"
#include "misc/MiscService.h"
#include "relay/RelayService.h"

/* All methods of the simulated device, by the tables of the interfaces. */

namespace {

using android::sp;
using android::binder::Status;
using veskctl::Answer;
using veskctl::Interface;
using veskctl::Method;
using veskctl::transact;
using veskctl::Value;

/** A number is `number`; a text, a list and a record are empty. */
Value valueOf(veskctl::Type type, int32_t number) {
  switch (type) {
    case veskctl::Type::kInt32:
      return number;
    case veskctl::Type::kBool:
      return number != 0;
    case veskctl::Type::kString:
      return std::string();
    case veskctl::Type::kInt32s:
      return std::vector<int32_t>();
    case veskctl::Type::kRecord:
      return veskctl::Record();
    default:
      return sp<android::IBinder>();
  }
}

std::vector<Value> argumentsOf(const Method& method, int32_t number) {
  std::vector<Value> arguments;
  for (const veskctl::Parameter& in : method.ins()) arguments.push_back(valueOf(in.type, number));
  return arguments;
}

/** In the order of vesk::interfaces::services(). */
std::vector<sp<android::BBinder>> makeServices() {
  std::string error;
  const auto store = vesk::test::openStore();
  const auto settings = std::make_shared<sim::Settings>(store);
  const sp<sim::DatabaseService> database = new sim::DatabaseService(store);
  const sp<sim::RelayService> relay = new sim::RelayService(1, store);
  const sp<sim::ExternalKeyService> keys = new sim::ExternalKeyService(store);
  EXPECT_TRUE(settings->load(sim::ConfigService::factoryValues(), &error) && database->prepare(&error) &&
              relay->load(&error) && keys->prepare(&error))
      << error;
  return {new sim::CallService(1, [](sim::Time, const sim::Event&) {}),
          new sim::ConfigService(settings),
          database,
          new sim::MiscService(1, [](const std::string&) {}),
          relay,
          keys};
}

TEST(EveryMethod, IsServedAndRefusesEmptyRecords) {
  const std::vector<sp<android::BBinder>> services = makeServices();
  size_t calls = 0;
  for (size_t i = 0; i < services.size(); ++i) {
    const Interface& interface = vesk::interfaces::services()[i];
    for (const Method& method : interface.methods) {
      SCOPED_TRACE(interface.descriptor() + "::" + method.signature());
      const Answer answer = transact(*services[i], interface, method, argumentsOf(method, 0));
      ++calls;
      const int32_t exception = answer.status.exceptionCode();
      EXPECT_TRUE(exception == Status::EX_NONE || exception == Status::EX_ILLEGAL_ARGUMENT ||
                  exception == Status::EX_ILLEGAL_STATE || exception == Status::EX_NULL_POINTER)
          << answer.status.toString8().c_str();
      EXPECT_EQ(exception == Status::EX_NONE, answer.status.exceptionMessage().length() == 0)
          << "a refusal has a message";

      for (const Value& out : answer.outs) {
        if (const auto* record = std::get_if<veskctl::Record>(&out)) {
          EXPECT_FALSE(record->bytes.empty());
        }
      }
      if (std::ranges::find(method.ins(), veskctl::Type::kRecord, &veskctl::Parameter::type) ==
          method.ins().end())
        continue;
      EXPECT_TRUE(exception == Status::EX_ILLEGAL_ARGUMENT || answer.outs == std::vector<Value>{-1});
    }
  }
  EXPECT_EQ(calls, 458u);
}

/** Found by the name of the setter. */
const Method* getterOf(const Interface& config, std::string name) {
  static const std::map<std::string, std::string> kOdd = {
      {"setStaticIpconfig", "getStaticIpConfig"},
      {"setBluetoothEnabled", "getBluetoothEnebled"},
      {"setBluetoothAdapterName", "getBluetoothAdaperName"},
      {"setMenuPassword", "getEnterPassword"},
      {"setFamilyCallEnabled", "getFamilyCallType"},
  };
  const size_t at = name.find("Set");
  if (const auto odd = kOdd.find(name); odd != kOdd.end()) {
    name = odd->second;
  } else if (name.starts_with("set") || at != std::string::npos) {
    name[name.starts_with("set") ? 0 : at] = name.starts_with("set") ? 'g' : 'G';
  } else {
    return nullptr;
  }
  const auto found =
      std::ranges::find_if(config.methods, [&](const Method& each) { return each.name == name; });
  return found == config.methods.end() ? nullptr : &*found;
}

/** Another value of the same type and, if it is a record, size. */
Value changed(Value value) {
  if (auto* number = std::get_if<int32_t>(&value)) ++*number;
  if (auto* on = std::get_if<bool>(&value)) *on = !*on;
  if (auto* text = std::get_if<std::string>(&value)) *text += "日本語";
  if (auto* record = std::get_if<veskctl::Record>(&value)) {
    size_t i = record->bytes.size();
    for (char& byte : record->bytes) byte = static_cast<char>(i++ * 7);
  }
  return value;
}

class Settings : public testing::Test {
 protected:
  Settings() { start(); }

  /** Starts the service on the same store, as a restart of the device does. */
  void start() {
    const auto settings = std::make_shared<sim::Settings>(store_);
    std::string error;
    ASSERT_TRUE(settings->load(sim::ConfigService::factoryValues(), &error)) << error;
    service_ = new sim::ConfigService(settings);
  }

  /** A value with a setter and a getter. */
  struct Setting {
    const Method& setter;
    const Method& getter;
    /** The value among the setter's arguments. */
    size_t place;

    /** True if the getter takes the setter's arguments except the value. */
    bool hasKey() const { return setter.ins().size() > 1 && setter.ins().size() == getter.ins().size() + 1; }
  };

  std::vector<Setting> settings() const {
    std::vector<Setting> all;
    for (const Method& setter : config_.methods) {
      const Method* getter = getterOf(config_, setter.name);
      const auto ins = setter.ins();
      // ConfigServiceTest tests the others.
      const auto records = std::ranges::count(ins, veskctl::Type::kRecord, &veskctl::Parameter::type);
      if (getter == nullptr || getter->outs().size() != 1 || (ins.size() > 2 && records == 0) || records > 1)
        continue;
      const auto record = std::ranges::find(ins, veskctl::Type::kRecord, &veskctl::Parameter::type);
      const size_t place = record != ins.end() ? static_cast<size_t>(record - ins.begin()) : ins.size() - 1;
      if (getter->outs()[0].type == ins[place].type) all.push_back({setter, *getter, place});
    }
    return all;
  }

  Value get(const Setting& setting, int32_t of) const {
    const Answer answer = transact(*service_, config_, setting.getter, argumentsOf(setting.getter, of));
    EXPECT_TRUE(answer.status.isOk()) << answer.status.toString8().c_str();
    return answer.outs.at(0);
  }
  Status set(const Setting& setting, int32_t of, const Value& value) const {
    std::vector<Value> arguments = argumentsOf(setting.setter, of);
    arguments[setting.place] = value;
    return transact(*service_, config_, setting.setter, arguments).status;
  }

  const Interface& config_ = vesk::interfaces::services()[1];
  sp<android::BBinder> service_;

 private:
  const std::shared_ptr<sim::Store> store_ = vesk::test::openStore();
};

TEST_F(Settings, AreReadBackAndSaved) {
  std::vector<Value> expected;
  for (const Setting& setting : settings()) {
    SCOPED_TRACE(setting.setter.name);
    const Value before = get(setting, 0);
    const Value of1 = get(setting, 1);
    expected.push_back(changed(before));
    EXPECT_TRUE(set(setting, 0, expected.back()).isOk());
    EXPECT_EQ(get(setting, 0), expected.back());
    if (setting.hasKey()) {
      EXPECT_EQ(get(setting, 1), of1) << "another key";
    }
    if (auto* record = std::get_if<veskctl::Record>(&before)) {
      EXPECT_EQ(set(setting, 0, veskctl::Record{record->bytes + "x"}).exceptionCode(),
                Status::EX_ILLEGAL_ARGUMENT);
    }
  }
  EXPECT_EQ(expected.size(), 70u);
  const auto expectAll = [&] {
    const std::vector<Setting> all = settings();
    for (size_t i = 0; i < all.size(); ++i) EXPECT_EQ(get(all[i], 0), expected[i]) << all[i].setter.name;
  };
  expectAll();
  transact(*service_, config_, *config_.find("saveConfig"), {});
  set(settings()[0], 0, 7);
  start();
  expectAll();
}

}  // namespace
