#include <binder/IBinder.h>
#include <binder/Parcel.h>
#include <gtest/gtest.h>

#include <cstdlib>
#include <functional>
#include <new>
#include <string>
#include <thread>
#include <vector>

#include "ParcelAccess.h"
#include "ParcelTesting.h"

namespace {

thread_local bool memoryIsShort = false;

}  // namespace

// Also replaces the allocations of the platform's libraries. Not inlined: GCC warns of mismatched
// allocation functions when it sees only one of a pair.
[[gnu::noinline]] void* operator new(size_t size) {
  void* const memory = memoryIsShort ? nullptr : malloc(size);
  if (memory == nullptr) throw std::bad_alloc();
  return memory;
}
[[gnu::noinline]] void operator delete(void* memory) noexcept { free(memory); }
[[gnu::noinline]] void operator delete(void* memory, size_t) noexcept { free(memory); }

namespace android {
namespace {

class Record : public Parcelable {
 public:
  Record() = default;
  explicit Record(const String8& blob) : blob_(blob) {}

  status_t writeToParcel(Parcel* parcel) const override { return parcel->writeString8(blob_); }
  status_t readFromParcel(const Parcel* parcel) override { return parcel->readString8(&blob_); }
  bool operator==(const Record& other) const { return blob_ == other.blob_; }

 private:
  String8 blob_;
};

// A value, its writer, its bytes and its reader.
struct Kind {
  std::string name;
  std::string bytes;
  std::function<status_t(Parcel*)> write;
  // Reads into a target that has another value. Checks that success sets the target and that an
  // error leaves it unchanged.
  std::function<status_t(const Parcel&)> read;
};

template <typename W, typename T, typename R>
Kind kind(std::string name, const std::string& hex, status_t (Parcel::*write)(W), const T& value,
          status_t (Parcel::*read)(R*) const, const R& expected, const R& before) {
  return {std::move(name), unhex(hex), [=](Parcel* parcel) { return (parcel->*write)(value); },
          [=](const Parcel& parcel) {
            R target = before;
            const status_t status = (parcel.*read)(&target);
            EXPECT_TRUE(target == (status == OK ? expected : before));
            return status;
          }};
}

const std::vector<Kind>& kinds() {
  using P = Parcel;
  const auto int32 = [](int32_t v, const char* hex) {
    return kind("int32", hex, &P::writeInt32, v, &P::readInt32, v, int32_t{77});
  };
  const auto boolean = [](bool v, const char* hex) {
    return kind("bool", hex, &P::writeBool, v, &P::readBool, v, !v);
  };
  const auto string8 = [](const String8& v, const char* hex) {
    return kind("String8", hex, &P::writeString8, v, &P::readString8, v, String8("before"));
  };
  const auto string16 = [](const String16& v, const char* hex) {
    return kind<const String16&>("String16", hex, &P::writeString16, v, &P::readString16, v,
                                 String16("before"));
  };
  const auto utf8 = [](const std::string& v, const char* hex) {
    return kind("UTF-8", hex, &P::writeUtf8AsUtf16, v, &P::readUtf8FromUtf16, v, std::string("before"));
  };
  const auto ints = [](const std::vector<int32_t>& v, const char* hex) {
    return kind("int32 vector", hex, &P::writeInt32Vector, v, &P::readInt32Vector, v,
                std::vector<int32_t>{7, 7, 7});
  };
  const auto strings = [](const std::vector<String16>& v, const char* hex) {
    return kind("String16 vector", hex, &P::writeString16Vector, v, &P::readString16Vector, v,
                std::vector<String16>(3, String16("before")));
  };
  const auto record = [](const Record& v, const char* hex) {
    Kind made = {"parcelable", unhex(hex), [=](Parcel* parcel) { return parcel->writeParcelable(v); },
                 [=](const Parcel& parcel) {
                   const Record before(String8("before"));
                   Record target = before;
                   const status_t status = parcel.readParcelable(&target);
                   EXPECT_TRUE(target == (status == OK ? v : before));
                   return status;
                 }};
    return made;
  };
  static const std::vector<Kind> kKinds = {
      int32(0x01020304, "04030201"),
      int32(-2, "FEFFFFFF"),
      kind("uint32", "FEFFFFFF", &P::writeUint32, 0xFFFFFFFEu, &P::readUint32, 0xFFFFFFFEu, 77u),
      kind("int64", "FEFFFFFF FFFFFFFF", &P::writeInt64, -2, &P::readInt64, int64_t{-2}, int64_t{77}),
      kind("uint64", "08070605 04030201", &P::writeUint64, 0x0102030405060708u, &P::readUint64,
           uint64_t{0x0102030405060708}, uint64_t{77}),
      boolean(true, "01000000"),
      boolean(false, "00000000"),
      string8(String8("a"), "01000000 61000000"),
      string8(String8("abc"), "03000000 61626300"),
      string8(String8("abcd"), "04000000 61626364 00000000"),
      string8(String8("\0\xFF\0\0\0", 5), "05000000 00FF0000 00000000"),
      string16(String16(), "00000000 00000000"),
      string16(String16("a"), "01000000 61000000"),
      string16(String16("ab"), "02000000 61006200 00000000"),
      string16(String16(u"\0\xD800\0", 3), "03000000 000000D8 00000000"),
      utf8("", "00000000 00000000"),
      utf8("é", "01000000 E9000000"),
      utf8("€😀", "03000000 AC203DD8 00DE0000"),
      utf8(std::string("a\0b", 3), "03000000 61000000 62000000"),
      ints({}, "00000000"),
      ints({1, -2}, "02000000 01000000 FEFFFFFF"),
      strings({}, "00000000"),
      strings({String16(), String16("ab")}, "02000000 00000000 00000000 02000000 61006200 00000000"),
      record(Record(String8("a\0b\0", 4)), "01000000 04000000 61006200 00000000"),
  };
  return kKinds;
}

TEST(Parcel, EncodesEveryType) {
  for (const Kind& kind : kinds()) {
    SCOPED_TRACE(kind.name);
    Parcel parcel;
    // The padding must not show earlier contents.
    const std::vector<uint8_t> dirt(64, 0xDD);
    parcel.setData(dirt.data(), dirt.size());
    parcel.setDataSize(0);
    EXPECT_EQ(kind.write(&parcel), OK);
    EXPECT_EQ(bytesOf(parcel), kind.bytes);
    EXPECT_EQ(parcel.dataAvail(), 0u);
    parcel.setDataPosition(0);
    EXPECT_EQ(kind.read(parcel), OK);
    EXPECT_EQ(parcel.dataAvail(), 0u);
  }
}

TEST(Parcel, TruncatedContents) {
  for (const Kind& kind : kinds()) {
    for (size_t length = 0; length < kind.bytes.size(); ++length) {
      SCOPED_TRACE(kind.name + " cut to " + std::to_string(length));
      Parcel parcel;
      const size_t start = fillTightly(&parcel, kind.bytes.substr(0, length));
      EXPECT_EQ(kind.read(parcel), NOT_ENOUGH_DATA);
      EXPECT_EQ(parcel.dataPosition(), start);
    }
  }
}

TEST(Parcel, EmptyString8OfEveryGeneration) {
  Parcel written;
  EXPECT_EQ(written.writeString8(String8()), OK);
  EXPECT_EQ(bytesOf(written), unhex("00000000 00000000"));
  const std::pair<const char*, size_t> kRows[] = {
      {"00000000 00000000", 8}, {"00000000 00000000 01000000", 8}, {"00000000", 4},
      {"00000000 010000", 4},   {"00000000 01000000", 4},          {"00000000 00010000", 4},
  };
  for (const auto& [hex, size] : kRows) {
    Parcel parcel;
    const size_t start = fillTightly(&parcel, unhex(hex));
    String8 read("before");
    EXPECT_EQ(parcel.readString8(&read), OK) << hex;
    EXPECT_EQ(read.size(), 0u);
    EXPECT_EQ(parcel.dataPosition() - start, size) << hex;
  }
}

const Kind& kindNamed(const std::string& name) {
  for (const Kind& kind : kinds()) {
    if (kind.name == name) return kind;
  }
  ADD_FAILURE() << "no kind " << name;
  return kinds().front();
}

TEST(Parcel, MalformedContents) {
  struct Row {
    const char* kind;
    const char* hex;
    status_t status;
  };
  const Row kRows[] = {
      {"String8", "FFFFFFFF 61000000", UNEXPECTED_NULL},
      {"String8", "00000080 61000000", UNEXPECTED_NULL},
      {"String8", "FFFFFF7F 61000000", NOT_ENOUGH_DATA},
      {"String8", "04000000 61626364", NOT_ENOUGH_DATA},
      {"String8", "03000000 61626364", BAD_TYPE},
      {"String16", "FFFFFFFF 61000000", UNEXPECTED_NULL},
      {"String16", "FFFFFF7F 61000000", NOT_ENOUGH_DATA},
      {"String16", "FFFFFF3F 61000000", NOT_ENOUGH_DATA},
      {"String16", "02000000 61006200", NOT_ENOUGH_DATA},
      {"String16", "01000000 61006200", BAD_TYPE},
      {"String16", "01000000 61000001", BAD_TYPE},
      {"UTF-8", "FFFFFFFF 61000000", UNEXPECTED_NULL},
      {"UTF-8", "FEFFFF7F 61000000", NOT_ENOUGH_DATA},
      {"int32 vector", "FFFFFFFF", UNEXPECTED_NULL},
      {"int32 vector", "FFFFFF7F 01000000", NOT_ENOUGH_DATA},
      {"int32 vector", "00000040 01000000", NOT_ENOUGH_DATA},
      {"String16 vector", "FFFFFFFF", UNEXPECTED_NULL},
      {"String16 vector", "FFFFFF7F 00000000 00000000", NOT_ENOUGH_DATA},
      {"String16 vector", "00000020 00000000 00000000", NOT_ENOUGH_DATA},
      {"String16 vector", "02000000 00000000 00000000 FFFFFFFF 00000000", UNEXPECTED_NULL},
      {"parcelable", "00000000 00000000 00000000", UNEXPECTED_NULL},
      {"parcelable", "01000000 FFFFFFFF", UNEXPECTED_NULL},
  };
  for (const Row& row : kRows) {
    SCOPED_TRACE(std::string(row.kind) + " " + row.hex);
    Parcel parcel;
    const size_t start = fillTightly(&parcel, unhex(row.hex));
    EXPECT_EQ(kindNamed(row.kind).read(parcel), row.status);
    EXPECT_EQ(parcel.dataPosition(), start);
  }
}

TEST(Parcel, ContentsOfOtherWriters) {
  Parcel parcel;
  parcel.writeInt32(-5);
  parcel.writeString16(u"\xDC00x", 2);
  parcel.writeInt32(9);
  parcel.writeString8(String8("blob"));
  parcel.setDataPosition(0);
  EXPECT_TRUE(parcel.readBool());
  std::string text;
  EXPECT_EQ(parcel.readUtf8FromUtf16(&text), OK);
  EXPECT_EQ(text, "\uFFFDx");
  Record record;
  EXPECT_EQ(parcel.readParcelable(&record), OK);
  EXPECT_EQ(record, Record(String8("blob")));
}

TEST(Parcel, GrowsBeyondItsInlineBuffer) {
  Parcel parcel;
  const uint8_t* const inPlace = parcel.data();
  constexpr int32_t kInts = Parcel::kInlineCapacity / sizeof(int32_t);
  for (int32_t i = 0; i < kInts; ++i) parcel.writeInt32(i);
  EXPECT_EQ(parcel.data(), inPlace);
  for (int32_t i = kInts; i < 20 * kInts; ++i) ASSERT_EQ(parcel.writeInt32(i), OK);
  EXPECT_NE(parcel.data(), inPlace);
  EXPECT_GE(parcel.dataCapacity(), parcel.dataSize());
  parcel.setDataPosition(0);
  for (int32_t i = 0; i < 20 * kInts; ++i) ASSERT_EQ(parcel.readInt32(), i);
  EXPECT_EQ(parcel.dataAvail(), 0u);

  parcel.freeData();
  EXPECT_EQ(parcel.data(), inPlace);
  EXPECT_EQ(parcel.dataSize(), 0u);
  EXPECT_EQ(parcel.dataCapacity(), Parcel::kInlineCapacity);
}

// Fills the parcel beyond its inline buffer, so that strings read from it share its memory.
String8 readFromLarge(Parcel* parcel, const std::string& text) {
  while (parcel->dataSize() < 1000) EXPECT_EQ(parcel->writeString8(String8(text.c_str())), OK);
  parcel->setDataPosition(0);
  return parcel->readString8();
}

bool standsIn(const Parcel& parcel, const String8& string) {
  const char* const begin = reinterpret_cast<const char*>(parcel.data());
  return string.c_str() >= begin && string.c_str() < begin + parcel.dataCapacity();
}

TEST(Parcel, StringsSurviveChangesOfTheirParcel) {
  const std::string dirt(2000, '#');
  const auto bytes = reinterpret_cast<const uint8_t*>(dirt.data());
  const std::function<void(Parcel*)> kRows[] = {
      [&](Parcel* p) { p->write(bytes, 500); },
      [&](Parcel* p) { p->setData(bytes, 500); },
      [&](Parcel* p) { p->setData(bytes, dirt.size()); },
      [](Parcel* p) { p->setDataSize(0), p->setDataSize(500); },
      [](Parcel* p) { p->setDataCapacity(10000); },
      [&](Parcel* p) { p->freeData(), p->write(bytes, 1000); },
      [&](Parcel* p) { memcpy(transport::ParcelAccess::prepare(p, 500), bytes, 500); },
      [](Parcel* p) { p->~Parcel(), new (p) Parcel; },
  };
  const std::string text(200, 'x');
  for (const auto& change : kRows) {
    SCOPED_TRACE(&change - kRows);
    Parcel parcel;
    const String8 read = readFromLarge(&parcel, text);
    EXPECT_TRUE(standsIn(parcel, read));
    const String8 copy = read;
    EXPECT_FALSE(standsIn(parcel, copy)) << "a copy would keep the whole parcel";
    change(&parcel);
    EXPECT_EQ(read, text.c_str());
    EXPECT_EQ(copy, text.c_str());
  }
}

TEST(Parcel, NeitherShortTextsNorLargeContentsAreShared) {
  const std::pair<size_t, bool> kRows[] = {{63, false}, {64, true}, {60'000, true}, {70'000, false}};
  for (const auto& [length, shared] : kRows) {
    Parcel parcel;
    EXPECT_EQ(standsIn(parcel, readFromLarge(&parcel, std::string(length, 'x'))), shared) << length;
    // The string is destroyed, so the parcel owns the memory alone.
    const uint8_t* const before = parcel.data();
    parcel.setDataPosition(0);
    EXPECT_EQ(parcel.writeInt32(8), OK);
    EXPECT_EQ(parcel.data(), before);
  }
}

TEST(Parcel, StringsAreFreedOnAnyThread) {
  const std::string text(200, 'x');
  for (int round = 0; round < 50; ++round) {
    std::vector<std::thread> threads;
    {
      Parcel parcel;
      for (int i = 0; i < 3; ++i) {
        std::vector<String8> strings;
        while (strings.size() < 200) strings.push_back(readFromLarge(&parcel, text));
        threads.emplace_back([text, strings = std::move(strings)] {
          for (const String8& string : strings) EXPECT_EQ(string, text.c_str());
        });
      }
    }
    for (std::thread& thread : threads) thread.join();
  }
}

TEST(Parcel, FailedWriteChangesNothing) {
  class Broken : public Parcelable {
   public:
    status_t writeToParcel(Parcel* parcel) const override {
      parcel->writeString8(String8("half"));
      return BAD_INDEX;
    }
    status_t readFromParcel(const Parcel*) override { return OK; }
  };
  const char16_t unit = u'x';
  const std::pair<const char*, std::pair<std::function<status_t(Parcel*)>, status_t>> kRows[] = {
      {"cut off", {[](Parcel* p) { return p->writeUtf8AsUtf16("ab\xC3"); }, BAD_VALUE}},
      {"surrogate", {[](Parcel* p) { return p->writeUtf8AsUtf16("ab\xED\xA0\x80"); }, BAD_VALUE}},
      {"half a parcelable", {[](Parcel* p) { return p->writeParcelable(Broken()); }, BAD_INDEX}},
      {"too many bytes", {[&](Parcel* p) { return p->write(&unit, SIZE_MAX); }, NO_MEMORY}},
      {"all bytes", {[&](Parcel* p) { return p->write(&unit, size_t{INT32_MAX} - 3); }, NO_MEMORY}},
      {"too many units", {[&](Parcel* p) { return p->writeString16(&unit, SIZE_MAX / 2); }, BAD_VALUE}},
      {"too large", {[](Parcel* p) { return p->setDataSize(size_t{INT32_MAX} + 1); }, NO_MEMORY}},
      {"too much room", {[](Parcel* p) { return p->setDataCapacity(SIZE_MAX); }, NO_MEMORY}},
  };
  for (const auto& [name, row] : kRows) {
    SCOPED_TRACE(name);
    Parcel parcel;
    parcel.writeInt32(5);
    EXPECT_EQ(row.first(&parcel), row.second);
    EXPECT_EQ(bytesOf(parcel), unhex("05000000"));
    EXPECT_EQ(parcel.dataPosition(), 4u);
  }
}

TEST(Parcel, ReadWithoutMemoryCanBeRepeated) {
  const std::string text(100, 'x');
  Parcel parcel;
  const std::pair<const char*, Kind> kRows[] = {
      {"String8", kind("", "", &Parcel::writeString8, String8(text.c_str()), &Parcel::readString8,
                       String8(text.c_str()), String8("-"))},
      {"String16", kind<const String16&>("", "", &Parcel::writeString16, String16(text.c_str()),
                                         &Parcel::readString16, String16(text.c_str()), String16("-"))},
      {"UTF-8",
       kind("", "", &Parcel::writeUtf8AsUtf16, text, &Parcel::readUtf8FromUtf16, text, std::string("-"))},
      {"ints", kind("", "", &Parcel::writeInt32Vector, std::vector<int32_t>(9, 3), &Parcel::readInt32Vector,
                    std::vector<int32_t>(9, 3), std::vector<int32_t>())},
      {"strings", kind("", "", &Parcel::writeString16Vector, std::vector<String16>(2),
                       &Parcel::readString16Vector, std::vector<String16>(2), std::vector<String16>())},
  };
  for (const auto& [name, row] : kRows) {
    SCOPED_TRACE(name);
    const size_t start = parcel.dataPosition();
    ASSERT_EQ(row.write(&parcel), OK);
    parcel.setDataPosition(start);
    memoryIsShort = true;
    const status_t status = row.read(parcel);
    memoryIsShort = false;
    EXPECT_EQ(status, NO_MEMORY);
    EXPECT_EQ(parcel.dataPosition(), start);
    EXPECT_EQ(row.read(parcel), OK);
  }
}

TEST(Parcel, InterfaceToken) {
  Parcel parcel;
  parcel.writeInterfaceToken(String16("com.qv.ICallService"));
  const size_t end = parcel.dataPosition();
  for (const auto& [wanted, same] : {std::pair("com.qv.ICallService", true),
                                     {"com.qv.ICallServicf", false},
                                     {"com.qv.ICallServic", false},
                                     {"com.qv.ICallService2", false},
                                     {"", false}}) {
    parcel.setDataPosition(0);
    EXPECT_EQ(parcel.enforceInterface(String16(wanted)), same) << wanted;
    EXPECT_EQ(parcel.dataPosition(), end);
  }
  EXPECT_FALSE(parcel.enforceInterface(String16("")));
  EXPECT_EQ(parcel.dataPosition(), end);
}

TEST(Parcel, RawBytesAndPositions) {
  Parcel parcel;
  EXPECT_EQ(parcel.write("abcde", 5), OK);
  EXPECT_EQ(parcel.write(nullptr, 0), OK);
  EXPECT_EQ(bytesOf(parcel), std::string("abcde\0\0\0", 8));
  parcel.setDataPosition(4);
  parcel.writeInt32(-1);
  parcel.setDataPosition(100);
  EXPECT_EQ(parcel.dataPosition(), 8u);
  parcel.setDataSize(12);
  EXPECT_EQ(bytesOf(parcel), unhex("61626364 FFFFFFFF 00000000"));
  parcel.setDataPosition(0);
  EXPECT_EQ(memcmp(parcel.readInplace(3), "abc", 3), 0);
  EXPECT_EQ(parcel.dataPosition(), 4u);
  EXPECT_EQ(parcel.readInplace(9), nullptr);
  EXPECT_EQ(parcel.readInplace(SIZE_MAX), nullptr);
  EXPECT_EQ(parcel.readInt32(), -1);

  // Raw contents may end off the four-byte grid; the next value is aligned to it.
  parcel.setData(reinterpret_cast<const uint8_t*>("abcde"), 5);
  parcel.setDataPosition(5);
  EXPECT_EQ(parcel.writeUtf8AsUtf16("x"), OK);
  EXPECT_EQ(bytesOf(parcel), unhex("61626364 65000000 01000000 78000000"));
  parcel.setData(reinterpret_cast<const uint8_t*>("a\0\0\0\0\0\0\0\0"), 9);
  parcel.setDataPosition(1);
  String16 text;
  EXPECT_EQ(parcel.readString16(&text), BAD_TYPE);
}

}  // namespace
}  // namespace android
