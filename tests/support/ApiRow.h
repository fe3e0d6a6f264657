#pragma once

#include <binder/Status.h>
#include <com/qv/CommonParcelable.h>

#include <algorithm>
#include <climits>
#include <functional>
#include <map>
#include <optional>
#include <string>
#include <tuple>
#include <type_traits>
#include <vector>

#include "Wire.h"

/*
 * The tables of the C functions' tests. A row states the function, the code of its method and the
 * sizes of its records; its group states the results. Arguments and the bytes of requests and
 * answers follow from the types of the function and of its method.
 */
namespace vesk::test {

/** The result of a C function, an int or a bool as int; none for void. */
using Result = std::optional<int>;

/** The int32_t or bool in every answer that has one. */
constexpr int kAnswer = 4711;

/** The size of the output buffer, which the functions get as their limit by default. */
constexpr int kBufferSize = 4600;

/** The results of a C function. */
struct Expected {
  Result success = std::nullopt;
  Result failed = std::nullopt; /**< after a failed call, and with a record of another size */
  Result absent = std::nullopt; /**< without a connection */
  enum Text { kNone, kTruncate, kAllOrNothing, kZeroFill } text = kNone;
  /** A null pointer for a record is sent as an empty record, sent and refused afterwards, or not
   * sent. */
  enum Null { kSent, kSentAndRefused, kRefused } null = kSent;
  bool logsFailure = false; /**< a record of another size */
  bool logsRecord = false;  /**< the content of a record */
};

constexpr Expected integer(int absent, int failed) { return {kAnswer, failed, absent}; }
constexpr Expected flag(int absent) { return {1, 0, absent}; }
/** A failed call returns an empty text. */
constexpr Expected text(Expected::Text rule, Result result, Result absent) {
  return {result, result, absent, rule};
}
constexpr Expected kNothing{};
constexpr Expected kValue = integer(-1, -1);
constexpr Expected kZeroUnlessAnswered = integer(0, 0);
constexpr Expected kFlag = flag(0);
constexpr Expected kFetched{0, -1, -1};
/** Success once the request is sent. */
constexpr Expected kDone{0, 0, -1};

/** A parameter of a method or of a C function, and the roles that ints play in the latter. */
enum class Kind {
  kInt,
  kBool,
  kText,
  kRecord,
  kInts,
  kCount,
  kCapacity,
  kSize,
  kOut,
  kOutInt,
  kOutBlob,
  kOutText
};
using Kinds = std::vector<Kind>;

template <class T>
constexpr Kind kindOf() {
  using Target = std::remove_pointer_t<T>;
  if constexpr (std::is_same_v<T, bool>) return Kind::kBool;
  if constexpr (std::is_integral_v<T>) return Kind::kInt;
  if constexpr (std::is_same_v<T, const char*> || std::is_same_v<T, const std::string&>) return Kind::kText;
  if constexpr (std::is_same_v<T, const int*> || std::is_same_v<T, const std::vector<int32_t>&>) {
    return Kind::kInts;
  }
  if constexpr (std::is_same_v<Target, int32_t> || std::is_same_v<Target, bool>) return Kind::kOutInt;
  if constexpr (std::is_same_v<Target, com::qv::CommonParcelable>) return Kind::kOutBlob;
  if constexpr (std::is_same_v<Target, std::string>) return Kind::kOutText;
  return std::is_pointer_v<T> && !std::is_const_v<Target> ? Kind::kOut : Kind::kRecord;
}

/** The parameters of a service's methods by their codes. METHOD_KINDS makes an entry. */
using MethodKinds = std::map<uint32_t, Kinds>;
template <class Interface, class... Parameters>
Kinds kindsOf(android::binder::Status (Interface::*)(Parameters...)) {
  return {kindOf<Parameters>()...};
}
#define METHOD_KINDS(interface, code, name) {code, vesk::test::kindsOf(&com::qv::interface::name)},

/** `size` bytes, all values among them. */
inline std::string pattern(size_t size) {
  std::string bytes;
  for (size_t i = 0; i < size; ++i) bytes += static_cast<char>(i * 7);
  return bytes;
}

/** The contents of a sent record, before truncation to its size: small ints and short texts. */
inline std::string sentBytes(int which = 0) {
  std::string bytes;
  for (int i = 0; i < 4544; ++i)
    bytes += static_cast<char>(i >= 32 ? i % 41 * 6 : i % 4 == 0 ? 1 + which : 0);
  return bytes;
}

/** The arguments of one call of a C function, in one of kRounds variants. */
struct Arguments {
  static constexpr int kRounds = 3;

  const Kinds& kinds;
  int round = 0;
  char* out = nullptr;
  int room = kBufferSize;
  int nullAt = -1;               /**< the index of a null pointer */
  std::vector<int> numbers = {}; /**< ints instead of the round's */
  bool isBad = false;            /**< passes invalid pointers */
  size_t next = 0;

  template <class T>
  T take() {
    const size_t at = next++;
    if constexpr (std::is_pointer_v<T>) {
      return static_cast<T>(const_cast<void*>(pointerAt(at)));
    } else {
      return static_cast<T>(intAt(at));
    }
  }

  /** The arguments as the method's parameters. Records have these sizes. */
  Wire wire(const std::vector<size_t>& sizes) const {
    Wire wire;
    size_t records = 0;
    for (size_t at = 0; at < kinds.size(); ++at) {
      const Kind kind = kinds[at];
      if (kind == Kind::kInt || kind == Kind::kSize) wire.i32(intAt(at));
      if (kind == Kind::kBool) wire.i32(intAt(at) != 0);
      if (kind == Kind::kText) wire.text(textAt(at).second);
      if (kind == Kind::kRecord) wire.record(recordAt(at).substr(0, sizes.at(records++)));
      if (kind == Kind::kInts) wire.i32(std::max(kCounts[round], 0));
      for (int i = 0; kind == Kind::kInts && i < kCounts[round]; ++i) wire.i32(kMembers[i]);
    }
    return wire;
  }

 private:
  static constexpr int kMembers[] = {1, 2, -1, INT_MAX};
  static constexpr int kCounts[kRounds] = {2, INT_MIN, 4};
  static constexpr int kNumbers[kRounds] = {1, -70'000, INT_MAX - 8};
  static constexpr int kFlags[kRounds] = {2, 0, -1};
  static constexpr std::pair<const char*, const char16_t*> kTexts[kRounds][4] = {
      {{"1", u"1"}, {"2", u"2"}, {"3", u"3"}, {"4", u"4"}},
      {{"", u""}, {"%s", u"%s"}, {"", u""}, {"a longer text", u"a longer text"}},
      {{"\xC3\xA4", u"\u00e4"}, {"", u""}, {"\xF0\x9F\x93\x9E", u"\U0001F4DE"}, {"z", u"z"}}};

  /** The number of parameters of the same kind in front of this one. */
  int ordinal(size_t at) const {
    return static_cast<int>(
        std::count(kinds.begin(), kinds.begin() + static_cast<std::ptrdiff_t>(at), kinds[at]));
  }

  const void* pointerAt(size_t at) const {
    if (isBad) return reinterpret_cast<const void*>(8);
    if (nullAt == static_cast<int>(at)) return nullptr;
    const Kind kind = kinds[at];
    if (kind == Kind::kText) return textAt(at).first;
    if (kind == Kind::kRecord) return recordAt(at).data();
    return kind == Kind::kInts ? static_cast<const void*>(kMembers) : out;
  }
  int intAt(size_t at) const {
    const Kind kind = kinds[at];
    if (kind == Kind::kBool) return kFlags[(round + ordinal(at)) % kRounds];
    if (kind == Kind::kCount) return kCounts[round];
    if (kind != Kind::kInt) return room;
    const auto which = static_cast<size_t>(ordinal(at));
    return which < numbers.size() ? numbers[which] : kNumbers[round] + ordinal(at);
  }
  const std::string& recordAt(size_t at) const {
    static const std::string kRecords[] = {sentBytes(0), sentBytes(1)};
    return kRecords[ordinal(at)];
  }
  const std::pair<const char*, const char16_t*>& textAt(size_t at) const {
    return kTexts[round][ordinal(at)];
  }
};

/** A C function. */
struct ApiRow {
  std::string function;
  uint32_t code;
  std::vector<size_t> sizes; /**< of the records that it sends, then of the one that it receives */
  Kinds kinds;
  std::function<Result(Arguments&)> call;
  /** Whether the simulated device accepts the call, with the arguments of the first round. */
  bool isServed = true;
  /** The ints to send to the simulated device instead. */
  std::vector<int> numbers;
  Expected gives = {};

  template <class R, class... Parameters>
  ApiRow(const char* name, R (*pointer)(Parameters...), uint32_t methodCode, std::vector<size_t> recordSizes)
      : function(name),
        code(methodCode),
        sizes(std::move(recordSizes)),
        kinds{kindOf<Parameters>()...},
        call([pointer]([[maybe_unused]] Arguments& arguments) {
          const std::tuple<Parameters...> values{arguments.take<Parameters>()...};
          if constexpr (std::is_void_v<R>) {
            std::apply(pointer, values);
            return Result();
          } else {
            return Result(std::apply(pointer, values));
          }
        }) {}

  /** Assigns each parameter its role in a call of the method; false if they do not match. */
  bool fit(const Kinds& method) {
    auto in = method.begin();
    for (Kind& kind : kinds) {
      const bool isDone = in == method.end() || *in >= Kind::kOut;
      if (kind >= Kind::kOut) continue;
      if (kind == Kind::kInt && &kind != &kinds.front() && (&kind)[-1] == Kind::kInts) {
        kind = Kind::kCount;
      } else if (kind == Kind::kInt && isDone) {
        kind = Kind::kCapacity;
      } else {
        const bool fits = !isDone && (kind == *in || (kind == Kind::kInt && *in == Kind::kBool) ||
                                      (kind == Kind::kText && *in == Kind::kRecord));
        if (!fits) return false;
        kind = *in++;
      }
    }
    // The buffer size is also an argument of the method.
    if (std::ranges::count(method, Kind::kOutText) > 0 && std::ranges::count(kinds, Kind::kCapacity) == 0) {
      *std::ranges::find(kinds, Kind::kInt) = Kind::kSize;
    }
    return in == method.end() || *in >= Kind::kOut;
  }

  ApiRow& with(std::vector<int> deviceNumbers) {
    numbers = std::move(deviceNumbers);
    return *this;
  }

  ApiRow& refused() {
    isServed = false;
    return *this;
  }
};

/** ROW(binder_do, code, size...) */
#define ROW(function, code, ...) vesk::test::ApiRow(#function, function, code, {__VA_ARGS__})

/** Functions with the same results. */
struct ApiGroup {
  Expected gives;
  std::vector<ApiRow> rows;
};
template <class... Rows>
ApiGroup group(const Expected& gives, const Rows&... rows) {
  return {gives, {rows...}};
}

}  // namespace vesk::test
