#include <binder/Binder.h>
#include <binder/Parcel.h>
#include <gtest/gtest.h>
#include <unistd.h>

#include <cstring>
#include <string>
#include <tuple>

#include "ParcelAccess.h"
#include "ParcelTesting.h"

namespace android {
namespace {

using transport::FlatBinder;
using transport::ParcelAccess;

class Object : public IBinder {
 public:
  const String16& getInterfaceDescriptor() const override { return descriptor_; }
  bool isBinderAlive() const override { return true; }
  status_t pingBinder() override { return OK; }
  status_t transact(uint32_t, const Parcel&, Parcel*, uint32_t) override { return OK; }
  status_t linkToDeath(const sp<DeathRecipient>&, void*, uint32_t) override { return OK; }
  status_t unlinkToDeath(const wp<DeathRecipient>&, void*, uint32_t, wp<DeathRecipient>*) override {
    return OK;
  }

 private:
  String16 descriptor_;
};

TEST(ParcelObjects, RoundTripAndLifetime) {
  wp<IBinder> weak;
  Parcel parcel;
  {
    const sp<IBinder> object = sp<Object>::make();
    weak = object;
    parcel.writeInt32(1);
    EXPECT_EQ(parcel.writeStrongBinder(object), OK);
    EXPECT_EQ(parcel.writeStrongBinder(nullptr), OK);
    EXPECT_EQ(parcel.writeStrongBinder(object), OK);
    EXPECT_EQ(parcel.dataSize(), 4 + 3 * sizeof(FlatBinder));
  }
  EXPECT_NE(weak.promote(), nullptr);
  parcel.setDataPosition(4);
  EXPECT_EQ(parcel.readStrongBinder(), weak.promote());
  sp<IBinder> target = weak.promote();
  EXPECT_EQ(parcel.readStrongBinder(&target), OK);
  EXPECT_EQ(target, nullptr);
  EXPECT_EQ(parcel.readStrongBinder(), weak.promote());
  EXPECT_EQ(parcel.readStrongBinder(&target), NOT_ENOUGH_DATA);
  parcel.freeData();
  EXPECT_EQ(weak.promote(), nullptr);
}

TEST(ParcelObjects, ForgedBytesAreRefused) {
  const sp<IBinder> object = sp<Object>::make();
  Parcel real;
  real.writeStrongBinder(object);
  const std::string flat = bytesOf(real);

  Parcel forged;
  for (size_t length = 0; length <= flat.size(); ++length) {
    const size_t start = fillTightly(&forged, flat.substr(0, length));
    sp<IBinder> target = object;
    EXPECT_EQ(forged.readStrongBinder(&target), length < flat.size() ? NOT_ENOUGH_DATA : BAD_TYPE);
    EXPECT_EQ(forged.dataPosition(), start);
    EXPECT_EQ(target, object);
  }
  forged.setData(reinterpret_cast<const uint8_t*>(std::string(sizeof(FlatBinder), '\0').data()),
                 sizeof(FlatBinder));
  sp<IBinder> target = object;
  EXPECT_EQ(forged.readStrongBinder(&target), BAD_TYPE);
  EXPECT_EQ(target, object);
}

TEST(ParcelObjects, OverwrittenObjectsAreReleased) {
  const sp<IBinder> object = sp<Object>::make();
  const sp<IBinder> other = sp<Object>::make();
  Parcel parcel;
  parcel.writeStrongBinder(object);
  parcel.writeStrongBinder(object);
  parcel.writeStrongBinder(object);
  EXPECT_EQ(object->getStrongCount(), 4);

  parcel.setDataSize(3 * sizeof(FlatBinder) - 4);
  EXPECT_EQ(object->getStrongCount(), 3);
  parcel.setDataPosition(sizeof(FlatBinder) - 4);
  parcel.writeInt32(0);
  EXPECT_EQ(object->getStrongCount(), 2);
  parcel.setDataPosition(0);
  EXPECT_EQ(parcel.writeStrongBinder(other), OK);
  EXPECT_EQ(parcel.readStrongBinder(), object);
  parcel.setDataPosition(0);
  EXPECT_EQ(parcel.readStrongBinder(), other);
  EXPECT_EQ(object->getStrongCount(), 2);
  parcel.setData(nullptr, 0);
  EXPECT_EQ(object->getStrongCount(), 1);
}

TEST(ParcelObjects, ReceivedFromTheTransport) {
  const sp<IBinder> object = sp<Object>::make();
  Parcel sent;
  sent.writeInt32(1);
  sent.writeStrongBinder(nullptr);
  sent.writeStrongBinder(object);
  ASSERT_EQ(ParcelAccess::objects(sent).size(), 1u);
  const uint32_t offset = ParcelAccess::objects(sent)[0].offset;

  Parcel received;
  received.writeStrongBinder(object);
  for (const size_t size : {sent.dataSize(), 2 * Parcel::kInlineCapacity}) {
    uint8_t* const to = ParcelAccess::prepare(&received, size);
    ASSERT_NE(to, nullptr);
    EXPECT_EQ(received.dataSize(), size);
    EXPECT_TRUE(ParcelAccess::objects(received).empty());
    memset(to, 0, size);
    memcpy(to, sent.data(), sent.dataSize());
    for (size_t at = 0; at < size + 8; ++at) {
      EXPECT_EQ(ParcelAccess::hasFlatBinder(received, at), at == offset) << at;
    }
    EXPECT_FALSE(ParcelAccess::hasFlatBinder(received, SIZE_MAX - 3));
    ParcelAccess::setObjects(&received, {{offset, object}});
    EXPECT_EQ(received.readInt32(), 1);
    EXPECT_EQ(received.readStrongBinder(), nullptr);
    EXPECT_EQ(received.readStrongBinder(), object);
  }
  EXPECT_EQ(ParcelAccess::prepare(&received, SIZE_MAX), nullptr);
  EXPECT_EQ(received.dataSize(), 0u);
}

TEST(Binder, PredefinedTransactions) {
  class Stub : public BBinder {
    const String16& getInterfaceDescriptor() const override { return descriptor_; }
    const String16 descriptor_{"a"};
  };
  const sp<BBinder> stub = sp<Stub>::make();
  const int32_t pid = getpid();
  const std::string pidBytes(reinterpret_cast<const char*>(&pid), sizeof(pid));
  const std::tuple<uint32_t, status_t, std::string> kRows[] = {
      {IBinder::PING_TRANSACTION, OK, unhex("00000000")},
      {IBinder::INTERFACE_TRANSACTION, OK, unhex("01000000 61000000")},
      {IBinder::DUMP_TRANSACTION, OK, ""},
      {IBinder::SHELL_COMMAND_TRANSACTION, OK, ""},
      {IBinder::SYSPROPS_TRANSACTION, OK, ""},
      {IBinder::DEBUG_PID_TRANSACTION, OK, pidBytes},
      {IBinder::FIRST_CALL_TRANSACTION, UNKNOWN_TRANSACTION, ""},
      {IBinder::LAST_CALL_TRANSACTION, UNKNOWN_TRANSACTION, ""},
      {B_PACK_CHARS('_', 'X', 'Y', 'Z'), UNKNOWN_TRANSACTION, ""},
  };
  for (const auto& [code, status, bytes] : kRows) {
    SCOPED_TRACE(code);
    Parcel reply;
    EXPECT_EQ(stub->transact(code, Parcel(), &reply), status);
    EXPECT_EQ(bytesOf(reply), bytes);
    EXPECT_EQ(stub->transact(code, Parcel(), nullptr), status);
  }
}

}  // namespace
}  // namespace android
