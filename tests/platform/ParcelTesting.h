// Helpers of the parcel tests.
#pragma once

#include <binder/Parcel.h>
#include <gtest/gtest.h>

#include <string>

namespace android {

inline std::string bytesOf(const Parcel& parcel) {
  return std::string(reinterpret_cast<const char*>(parcel.data()), parcel.dataSize());
}

// Bytes from hexadecimal digits; blanks are ignored.
inline std::string unhex(const std::string& digits) {
  std::string bytes;
  std::string pair;
  for (const char digit : digits) {
    if (digit == ' ') continue;
    pair += digit;
    if (pair.size() < 2) continue;
    bytes += static_cast<char>(std::stoi(pair, nullptr, 16));
    pair.clear();
  }
  return bytes;
}

// Fills a parcel so that the contents end where its memory ends, so that the address sanitizer
// reports a read beyond them. Returns their start, where the position is then.
inline size_t fillTightly(Parcel* parcel, const std::string& contents) {
  const std::string filler(Parcel::kInlineCapacity, '\xEE');
  const std::string all = filler + contents;
  EXPECT_EQ(parcel->setData(reinterpret_cast<const uint8_t*>(all.data()), all.size()), OK);
  EXPECT_EQ(parcel->dataCapacity(), all.size());
  parcel->setDataPosition(filler.size());
  return filler.size();
}

}  // namespace android
