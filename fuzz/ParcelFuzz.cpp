/* Reads and writes a Parcel in any order: a failed read changes nothing, and a value that was read
 * can be written and read again. */
#include <binder/Parcel.h>
#include <com/qv/CommonParcelable.h>

#include <vector>

#include "Binders.h"
#include "ipc/Marshal.h"

namespace {

using android::IBinder;
using android::OK;
using android::Parcel;
using android::sp;
using android::status_t;
using android::String16;
using android::String8;
using com::qv::CommonParcelable;
using vesk::fuzz::Input;

bool same(const CommonParcelable& a, const CommonParcelable& b) { return a.blob() == b.blob(); }
template <class T>
bool same(const T& a, const T& b) {
  return a == b;
}

/** `untouched` differs from the default value of `read`. */
template <class T, class Read, class Write>
void readAndWriteBack(const Parcel& parcel, const T& untouched, Read read, Write write) {
  const size_t start = parcel.dataPosition();
  T value = untouched;
  const status_t status = read(parcel, &value);
  const size_t end = parcel.dataPosition();
  FUZZ_CHECK(end <= parcel.dataSize());
  if (status != OK) {
    FUZZ_CHECK(same(value, untouched));
    FUZZ_CHECK(end == start);
    return;
  }
  FUZZ_CHECK(end > start);
  Parcel written;
  FUZZ_CHECK(write(&written, value) == OK);
  // From an aligned position, every value but an empty String8 has the length that was read.
  FUZZ_CHECK(start % 4 != 0 || same(value, T()) || written.dataSize() == (end - start + 3) / 4 * 4);
  written.setDataPosition(0);
  T again = untouched;
  FUZZ_CHECK(read(written, &again) == OK);
  FUZZ_CHECK(same(again, value));
  FUZZ_CHECK(written.dataAvail() == 0);
}

template <class T>
void member(const Parcel& parcel, const T& untouched, status_t (Parcel::*read)(T*) const,
            status_t (Parcel::*write)(T)) {
  readAndWriteBack(
      parcel, untouched, [&](const Parcel& p, T* value) { return (p.*read)(value); },
      [&](Parcel* p, const T& value) { return (p->*write)(value); });
}

template <class T>
void member(const Parcel& parcel, const T& untouched, status_t (Parcel::*read)(T*) const,
            status_t (Parcel::*write)(const T&)) {
  readAndWriteBack(
      parcel, untouched, [&](const Parcel& p, T* value) { return (p.*read)(value); },
      [&](Parcel* p, const T& value) { return (p->*write)(value); });
}

void readInplace(const Parcel& parcel, size_t length) {
  const size_t start = parcel.dataPosition();
  const void* const found = parcel.readInplace(length);
  FUZZ_CHECK(found != nullptr || parcel.dataPosition() == start);
  if (found != nullptr) vesk::fuzz::touch(found, length);
}

void readString16Inplace(const Parcel& parcel) {
  size_t length = 1;
  const char16_t* const text = parcel.readString16Inplace(&length);
  if (text == nullptr) {
    FUZZ_CHECK(length == 0);
    return;
  }
  vesk::fuzz::touch(text, (length + 1) * sizeof(char16_t));
  FUZZ_CHECK(text[length] == 0);
}

void step(Parcel* parcel, Input* input) {
  switch (const uint8_t operation = input->byte(); operation % 32) {
    case 0:
      return member<int32_t>(*parcel, 77, &Parcel::readInt32, &Parcel::writeInt32);
    case 1:
      return member<uint32_t>(*parcel, 77, &Parcel::readUint32, &Parcel::writeUint32);
    case 2:
      return member<int64_t>(*parcel, 77, &Parcel::readInt64, &Parcel::writeInt64);
    case 3:
      return member<uint64_t>(*parcel, 77, &Parcel::readUint64, &Parcel::writeUint64);
    case 4:
      return member<bool>(*parcel, operation >= 128, &Parcel::readBool, &Parcel::writeBool);
    case 5:
      return member(*parcel, String8("untouched"), &Parcel::readString8, &Parcel::writeString8);
    case 6:
      return member(*parcel, String16("untouched"), &Parcel::readString16, &Parcel::writeString16);
    case 7:
      return member(*parcel, std::string("untouched"), &Parcel::readUtf8FromUtf16, &Parcel::writeUtf8AsUtf16);
    case 8:
      return member(*parcel, std::vector<int32_t>{77}, &Parcel::readInt32Vector, &Parcel::writeInt32Vector);
    case 9:
      return member(*parcel, {String16("untouched")}, &Parcel::readString16Vector,
                    &Parcel::writeString16Vector);
    case 10: {
      static const sp<IBinder>& untouched = *new sp<IBinder>(new android::BBinder);
      return member(*parcel, untouched, &Parcel::readStrongBinder, &Parcel::writeStrongBinder);
    }
    case 11:
      return readAndWriteBack(
          *parcel, CommonParcelable("untouched", 9),
          [](const Parcel& p, CommonParcelable* value) { return p.readParcelable(value); },
          [](Parcel* p, const CommonParcelable& value) { return p->writeParcelable(value); });
    case 12: {
      // A read of several steps does not restore the position.
      const size_t start = parcel->dataPosition();
      std::vector<CommonParcelable> value{CommonParcelable("untouched", 9)};
      if (com::qv::read(*parcel, &value) != OK)
        FUZZ_CHECK(value.size() == 1 && value[0].blob() == "untouched");
      FUZZ_CHECK(parcel->dataPosition() >= start);
      return;
    }
    case 13:
      return readInplace(*parcel, input->number<uint16_t>());
    case 14:
      return readInplace(*parcel, input->number<size_t>());
    case 15:
      return readString16Inplace(*parcel);
    case 16: {
      uint8_t target[64];
      std::memset(target, 77, sizeof(target));
      const size_t length = input->byte() % sizeof(target);
      if (parcel->read(target, length) != OK)
        FUZZ_CHECK(std::count(target, target + sizeof(target), 77) == sizeof(target));
      return;
    }
    case 17:
      parcel->enforceInterface(String16("com.qv.ICallService"));
      return;
    case 18:
      return parcel->setDataPosition(input->byte());
    case 19:
      return parcel->setDataPosition(input->number<size_t>());
    case 20:
      parcel->setDataSize(input->number<uint16_t>());
      return;
    case 21:
      parcel->setDataCapacity(input->number<uint16_t>());
      return;
    case 22:
      parcel->writeStrongBinder(operation >= 128 ? nullptr : new android::BBinder);
      return;
    case 23:
      parcel->writeInt32(input->number<int32_t>());
      return;
    case 24:
      parcel->writeUtf8AsUtf16(input->text());
      return;
    case 25: {
      const vesk::fuzz::Bytes bytes = input->block();
      parcel->write(bytes.data(), bytes.size());
      return;
    }
    case 26: {
      const vesk::fuzz::Bytes bytes = input->block();
      parcel->setData(bytes.data(), bytes.size());
      return;
    }
    case 27:
      // The readers that return a default value instead of a status.
      parcel->readInt32();
      parcel->readBool();
      parcel->readString8();
      parcel->readString16();
      parcel->readStrongBinder();
      return;
    default:
      return;
  }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  vesk::fuzz::setUp();
  Input input({data, size});
  Input operations(input.take(input.byte()));
  Parcel parcel;
  vesk::fuzz::fill(&parcel, input.rest());
  while (!operations.empty()) {
    step(&parcel, &operations);
    FUZZ_CHECK(parcel.dataPosition() <= parcel.dataSize() && parcel.dataSize() <= parcel.dataCapacity());
  }
  return 0;
}
