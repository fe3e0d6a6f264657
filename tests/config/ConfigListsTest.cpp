#include <climits>
#include <string>
#include <vector>

#include "ConfigFixture.h"

using vesk::test::Wire;

namespace {

/** Where an element went, and its bytes. */
using Put = std::pair<std::string, std::string>;
using Puts = std::vector<Put>;

void store(void* context, size_t index, const void* element, size_t size) {
  static_cast<Puts*>(context)->push_back(
      {std::to_string(index), std::string(static_cast<const char*>(element), size)});
}

void append(void* context, const void* element, size_t size) {
  static_cast<Puts*>(context)->push_back({"end", std::string(static_cast<const char*>(element), size)});
}

/** An element with the mark at both ends. */
std::string element(size_t size, char mark) {
  std::string bytes(size, '\0');
  bytes.front() = bytes.back() = mark;
  return bytes;
}

const struct Row {
  const char* name;
  int (*call)(const vesk_array* array);
  uint32_t code;
  size_t size;
  bool stores;
} kRows[] = {
    {"icons", binder_get_dsskey_icon_changed_arr, 216, 16, true},
    {"pick-up", binder_get_pick_up_info, 213, 188, true},
    {"monitors", binder_get_monitor_device, 253, 68, false},
    {"scan", binder_get_qddp_scan_result, 264, 480, false},
    {"alarms", binder_get_alarm_logs, 277, 152, false},
};

class ConfigListsTest : public ConfigFixture {
 protected:
  void answerList(const std::vector<std::string>& elements) { answer(listOf(elements)); }

  static Wire listOf(const std::vector<std::string>& elements) {
    Wire list = Wire().i32(static_cast<int32_t>(elements.size()));
    for (const std::string& element : elements) list.record(element);
    return list;
  }
};

TEST_F(ConfigListsTest, ElementsOfTheRightSizeAreHandedOver) {
  connect();
  for (const Row& row : kRows) {
    SCOPED_TRACE(row.name);
    const std::string a = element(row.size, 'a');
    const std::string b = element(row.size, 'b');
    answerList({a, element(row.size - 1, 'x'), b, element(row.size + 1, 'y'), ""});
    Puts puts;
    const vesk_array array{&puts, row.stores ? store : nullptr, row.stores ? nullptr : append};
    EXPECT_EQ(row.call(&array), 0);
    EXPECT_EQ(puts, row.stores ? (Puts{{"0", a}, {"1", b}}) : (Puts{{"end", a}, {"end", b}}));
    expectRequest(row.code, Wire());

    answerList({});
    EXPECT_EQ(row.call(&array), 0);
    answerException(listOf({a}));
    EXPECT_EQ(row.call(&array), 0);
    answer(Wire().i32(2).record(a));
    EXPECT_EQ(row.call(&array), 0) << "a list that breaks off is no list";
    EXPECT_EQ(puts.size(), 2u);
    service_->take();
  }
}

TEST_F(ConfigListsTest, ArrayWithoutTheOperationIsRefused) {
  Puts puts;
  const auto* unreadable = reinterpret_cast<const vesk_array*>(8);
  for (const Row& row : kRows) EXPECT_EQ(row.call(unreadable), -1) << row.name << ": without a connection";
  connect();
  for (const Row& row : kRows) {
    SCOPED_TRACE(row.name);
    answerList({element(row.size, 'a')});
    const vesk_array other{&puts, row.stores ? nullptr : store, row.stores ? append : nullptr};
    EXPECT_EQ(row.call(&other), -1);
    EXPECT_EQ(row.call(nullptr), -1);
    EXPECT_FALSE(service_->take().has_value());
  }
  EXPECT_TRUE(puts.empty());
}

TEST_F(ConfigListsTest, RtpStatusFillsTheBufferUpToItsEnd) {
  std::string buffer(4 * 128, '#');
  const std::string untouched = buffer;
  EXPECT_EQ(binder_get_rtp_status(buffer.data(), 2), -1);
  connect();
  const std::string a = element(128, 'a');
  const std::string b = element(128, 'b');
  answerList({a, element(100, 'x'), b, element(128, 'c')});
  const struct {
    int max;
    int result;
    std::string written;
  } rows[] = {
      {INT_MIN, 0, ""},
      {-1, 0, ""},
      {0, 0, ""},
      {1, 1, a},
      {2, 2, a + b},
      {3, 3, a + b + element(128, 'c')},
      {4, 3, a + b + element(128, 'c')},
  };
  for (const auto& row : rows) {
    SCOPED_TRACE(row.max);
    buffer = untouched;
    EXPECT_EQ(binder_get_rtp_status(buffer.data(), row.max), row.result);
    EXPECT_EQ(buffer, row.written + untouched.substr(row.written.size()));
    expectRequest(164, Wire());
  }
  answerException(listOf({a}));
  EXPECT_EQ(binder_get_rtp_status(buffer.data(), 2), 0);
}

}  // namespace
