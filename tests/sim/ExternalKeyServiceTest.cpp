#include "externalkey/ExternalKeyService.h"

#include <gtest/gtest.h>

#include "ServiceTesting.h"

namespace {

using com::qv::IExternalKeyService;
using sim::pack;
using sim::textOf;
using vesk::test::ask;
using vesk::test::fetch;

class ExternalKeyServiceTest : public testing::Test {
 protected:
  void SetUp() override { start(); }

  void start() {
    std::string error;
    const android::sp<sim::ExternalKeyService> started = new sim::ExternalKeyService(store_);
    ASSERT_TRUE(started->prepare(&error)) << error;
    service_ = started;
  }

  sim::ModuleKeysRecord keysOf(int32_t module) {
    return fetch<sim::ModuleKeysRecord>(*service_, &IExternalKeyService::getExkeyConfig, module);
  }
  int32_t add(const sim::AddKeyRecord& key) {
    return ask(*service_, &IExternalKeyService::addBtkConfig, pack(key));
  }
  sim::KeyStateRecord state(int32_t selector, int32_t module, int32_t key, int32_t state = 0) {
    return fetch<sim::KeyStateRecord>(*service_, &IExternalKeyService::set_or_get_singleState_config,
                                      pack(sim::KeyStateRecord{selector, module, key, state, {}}));
  }

  const std::shared_ptr<sim::Store> store_ = vesk::test::openStore();
  android::sp<IExternalKeyService> service_;
};

TEST_F(ExternalKeyServiceTest, KeysAreAddedAndReset) {
  EXPECT_EQ(textOf(keysOf(1).key[0].value), "200");
  EXPECT_EQ(keysOf(0).keys, 0) << "there is no such module";
  EXPECT_EQ(keysOf(3).keys, 0);

  sim::AddKeyRecord key{.module = 1, .key = 0, .type = 2, .line = 1, .label = "Door", .value = "240"};
  EXPECT_EQ(add(key), 4) << "the first unused key";
  key.key = 16;
  EXPECT_EQ(add(key), 16);
  start();
  EXPECT_EQ(textOf(keysOf(1).key[3].label), "Door");
  EXPECT_EQ(textOf(keysOf(1).key[15].value), "240");
  EXPECT_EQ(keysOf(1).key[15].type, 2);
  EXPECT_EQ(keysOf(2).key[15].type, 0);

  key.key = 17;
  EXPECT_EQ(add(key), -1);
  key.key = 1;
  key.type = 256;
  EXPECT_EQ(add(key), -1);
  key.type = 1;
  std::fill_n(key.value, sizeof(sim::ModuleKey::value), '1');
  EXPECT_EQ(add(key), -1) << "too long";
  EXPECT_EQ(textOf(keysOf(1).key[0].value), "200");

  key = {.module = 2, .key = 0, .type = 1, .line = 0, .label = "", .value = ""};
  for (int32_t i = 1; i <= sim::kModuleKeys; ++i) EXPECT_EQ(add(key), i);
  EXPECT_EQ(add(key), -1) << "all are in use";

  EXPECT_TRUE(service_->resetExkDevConfig(2, 1).isOk());
  EXPECT_EQ(keysOf(2).key[0].type, 0);
  EXPECT_EQ(keysOf(1).key[15].type, 2);
  EXPECT_FALSE(service_->resetExkDevConfig(3, 0).isOk());
  EXPECT_FALSE(service_->resetExkDevConfig(0, 3).isOk());
  EXPECT_TRUE(service_->resetExkDevConfig(0, 0).isOk());
  EXPECT_EQ(keysOf(1).key[15].type, 0);
  EXPECT_EQ(textOf(keysOf(1).key[0].value), "200");
}

TEST_F(ExternalKeyServiceTest, StatesAreSetReadAndReset) {
  constexpr int32_t kGet = VESK_SINGLE_STATE_GET;
  constexpr int32_t kSet = 2;
  EXPECT_EQ(state(kGet, 1, 3).key, 3);
  EXPECT_EQ(state(kGet, 1, 3).state, 0);
  state(kSet, 1, 3, 7);
  state(kSet, 2, 3, 8);
  start();
  EXPECT_EQ(state(kGet, 1, 3).state, 7);
  EXPECT_EQ(state(kGet, 1, 3).selector, kGet);
  EXPECT_EQ(state(kGet, 2, 3).state, 8);
  EXPECT_EQ(state(kGet, 1, 17).key, 0);
  EXPECT_EQ(state(kSet, 3, 1, 1).key, 0);
  EXPECT_TRUE(service_->resetExkDevConfig(1, 1).isOk());
  EXPECT_EQ(state(kGet, 1, 3).state, 7) << "only the keys";
  EXPECT_TRUE(service_->resetExkDevConfig(1, 2).isOk());
  EXPECT_EQ(state(kGet, 1, 3).state, 0);
  EXPECT_EQ(state(kGet, 2, 3).state, 8);
}

}  // namespace
