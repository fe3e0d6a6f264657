#include <gtest/gtest.h>
#include <vesk/array.h>
#include <vesk/array.hpp>

#include <cstdint>
#include <memory>
#include <string>

namespace {

using Records = std::unique_ptr<vesk_records, decltype(&vesk_records_free)>;

Records makeRecords(size_t elementSize) { return {vesk_records_create(elementSize), vesk_records_free}; }

void append(vesk_records* records, const std::string& element) {
  const vesk_array* array = vesk_records_array(records);
  array->append(array->context, element.data(), element.size());
}

void store(vesk_records* records, size_t index, const std::string& element) {
  const vesk_array* array = vesk_records_array(records);
  array->store(array->context, index, element.data(), element.size());
}

std::string contents(vesk_records* records, size_t elementSize) {
  std::string all;
  for (size_t i = 0; i < vesk_records_count(records); ++i) {
    all.append(static_cast<const char*>(vesk_records_element(records, i)), elementSize);
  }
  return all;
}

TEST(RecordsTest, KeepsAppendedAndStoredElements) {
  const Records records = makeRecords(2);
  store(records.get(), 2, "cc");
  append(records.get(), "dd");
  store(records.get(), 0, "aa");
  store(records.get(), 2, "CC");
  EXPECT_EQ(contents(records.get(), 2), std::string("aa\0\0CCdd", 8));
  EXPECT_TRUE(vesk_records_complete(records.get()));

  vesk_records_clear(records.get());
  EXPECT_EQ(vesk_records_count(records.get()), 0U);
  EXPECT_EQ(vesk_records_element(records.get(), 0), nullptr);
  store(records.get(), 1, "ee");
  EXPECT_EQ(contents(records.get(), 2), std::string("\0\0ee", 4))
      << "nothing of the cleared elements is left";
}

TEST(RecordsTest, GrowsBeyondItsFirstCapacity) {
  const Records records = makeRecords(1);
  std::string expected;
  for (int i = 0; i < 1000; ++i) {
    expected += static_cast<char>(i);
    append(records.get(), expected.substr(expected.size() - 1));
  }
  EXPECT_EQ(contents(records.get(), 1), expected);
}

TEST(RecordsTest, DroppedElementIsReportedUntilTheArrayIsCleared) {
  const struct {
    const char* name;
    void (*drop)(vesk_records*);
  } rows[] = {
      {"too short", [](vesk_records* records) { append(records, "x"); }},
      {"too long", [](vesk_records* records) { append(records, "xyz"); }},
      {"no room for so many bytes", [](vesk_records* records) { store(records, PTRDIFF_MAX / 2, "xy"); }},
      {"no room for so many elements", [](vesk_records* records) { store(records, SIZE_MAX, "xy"); }},
  };
  for (const auto& row : rows) {
    SCOPED_TRACE(row.name);
    const Records records = makeRecords(2);
    append(records.get(), "ab");
    row.drop(records.get());
    EXPECT_FALSE(vesk_records_complete(records.get()));
    append(records.get(), "cd");
    EXPECT_EQ(contents(records.get(), 2), "abcd");
    EXPECT_FALSE(vesk_records_complete(records.get()));
    vesk_records_clear(records.get());
    EXPECT_TRUE(vesk_records_complete(records.get()));
  }
}

TEST(RecordsTest, RefusesElementsWithoutASizeAndAcceptsNull) {
  EXPECT_EQ(vesk_records_create(0), nullptr);
  EXPECT_EQ(vesk_records_array(nullptr), nullptr);
  EXPECT_EQ(vesk_records_count(nullptr), 0U);
  EXPECT_EQ(vesk_records_element(nullptr, 0), nullptr);
  EXPECT_FALSE(vesk_records_complete(nullptr));
  vesk_records_clear(nullptr);
  vesk_records_free(nullptr);
}

TEST(RecordsTest, FillsAVectorWithElementsOfItsSize) {
  std::vector<int16_t> vector;
  const vesk::VectorArray adaptor(vector);
  const vesk_array* array = adaptor;
  const int16_t values[] = {1, 2, 3};
  array->append(array->context, &values[0], sizeof(values[0]));
  array->store(array->context, 2, &values[1], sizeof(values[1]));
  array->append(array->context, &values[2], sizeof(values[2]));
  array->store(array->context, 0, &values[2], sizeof(values[2]));
  array->append(array->context, &values[0], 1);
  array->store(array->context, 0, values, sizeof(values));
  EXPECT_EQ(vector, (std::vector<int16_t>{3, 0, 2, 3}));
}

}  // namespace
