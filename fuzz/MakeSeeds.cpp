/*
 * MakeSeeds DIRECTORY: writes inputs to begin with, a folder for each fuzzer. They are what the library and
 * the host platform themselves send.
 */
#include <sys/socket.h>
#include <vesk/call.h>

#include <filesystem>
#include <fstream>

#include <com/qv/CommonParcelable.h>

#include "Binders.h"
#include "Channel.h"
#include "Interfaces.h"
#include "ParcelAccess.h"
#include "Transaction.h"

namespace {

using android::IBinder;
using android::Parcel;
using android::sp;
using android::String16;
using android::String8;
using namespace android::transport;
using namespace vesk::fuzz;

std::filesystem::path directory;

/** Puts an input together, as Input takes it apart. */
class Output {
 public:
  template <class T>
  Output& number(T value) {
    return bytes({reinterpret_cast<const uint8_t*>(&value), sizeof(value)});
  }
  Output& bytes(Bytes bytes) {
    text_.append(reinterpret_cast<const char*>(bytes.data()), bytes.size());
    return *this;
  }
  Output& block(Bytes block) { return number(static_cast<uint8_t>(block.size())).bytes(block); }
  Output& sized(Bytes block) { return number(static_cast<uint16_t>(block.size())).bytes(block); }

  /** Begins anew. */
  void save(const char* fuzzer, const std::string& name) {
    std::filesystem::create_directories(directory / fuzzer);
    std::ofstream(directory / fuzzer / name, std::ios::binary) << text_;
    text_.clear();
  }

 private:
  std::string text_;
};

/** Hands on what comes, and keeps both the request and the reply. */
class Recorder : public android::BBinder {
 public:
  sp<android::BBinder> target;
  Parcel data;
  Parcel reply;

 protected:
  android::status_t onTransact(uint32_t code, const Parcel& request, Parcel* answer,
                               uint32_t flags) override {
    data.setData(request.data(), request.dataSize());
    const android::status_t status = target->transact(code, request, answer, flags);
    reply.setData(answer->data(), answer->dataSize());
    return status;
  }
};

/** Each method of each interface is called once, with every kind of argument that isn't empty. */
void makeTransactions() {
  // As numbers, sizes of texts and of vectors, and truth values it is all good.
  const std::vector<uint8_t> values(16, 3);
  Output requests;
  Output replies;
  for (size_t i = 0; i < interfaces().size(); ++i) {
    const Interface& interface = interfaces()[i];
    const sp<Recorder> recorder = new Recorder;
    recorder->target = interface.stub();
    for (uint32_t code = 1; code <= interface.methods; ++code) {
      Input arguments(values);
      answers = Input(values);
      FUZZ_CHECK(interface.call(code, recorder, &arguments, new android::BBinder).isOk());
      Parcel token;
      token.writeInterfaceToken(interface.descriptor);
      const auto head = static_cast<uint8_t>(i);
      const auto row = static_cast<uint16_t>(code - 1);
      requests.number(head).number(row).block(values).sized(
          bytesOf(recorder->data).subspan(token.dataSize()));
      replies.number(head).number(row).block(values).sized(bytesOf(recorder->reply));
      if (code % kMostTransactions == 0 || code == interface.methods) {
        const std::string name = std::to_string(i) + "-" + std::to_string(code);
        requests.save("StubFuzz", name);
        replies.save("ProxyFuzz", name);
      }
    }
  }
}

void makeEvents() {
  // The first listener has all of them, the others some.
  Output output;
  for (const int size : {VESK_CALL_INFO_SIZE, VESK_AUTO_REDIAL_INFO_SIZE, VESK_CALL_COMPLETION_INFO_SIZE}) {
    for (uint8_t event = 0; event < 18; ++event) {
      Parcel record;
      record.writeInt32(1);
      record.writeString8(String8(std::string(static_cast<size_t>(size), 'x')));
      record.writeBool(true);
      output.number(uint8_t{0}).number(event).sized(bytesOf(record));
    }
    output.save("EventFuzz", "records-" + std::to_string(size));
  }
  for (uint8_t listener = 0; listener < 3; ++listener) {
    for (uint8_t event = 0; event < 18; ++event) {
      Parcel text;
      text.writeUtf8AsUtf16(std::string(130, 'a'));
      Parcel members;
      members.writeInt32(1);
      members.writeInt32Vector({1, 2, 3});
      for (const Parcel* parcel : {&text, &members})
        output.number(listener).number(event).sized(bytesOf(*parcel));
    }
    output.save("EventFuzz", "values-" + std::to_string(listener));
  }
}

void makeParcels() {
  Parcel parcel;
  parcel.writeInt32(-2);
  parcel.writeUint32(1);
  parcel.writeInt64(2);
  parcel.writeUint64(3);
  parcel.writeBool(true);
  parcel.writeString8(String8("eight"));
  parcel.writeString16(String16("sixteen"));
  parcel.writeUtf8AsUtf16("a\xc3\xa4\xf0\x9f\x93\x9e");
  parcel.writeInt32Vector({1, -1});
  parcel.writeString16Vector({String16("one"), String16()});
  parcel.writeStrongBinder(new android::BBinder);
  parcel.writeParcelable(com::qv::CommonParcelable("record", 6));
  parcel.writeInt32(1);
  parcel.writeParcelable(com::qv::CommonParcelable("record", 6));
  Output output;
  for (const bool fromMiddle : {false, true}) {
    // As ParcelFuzz numbers them: the reads in order, then everything else.
    std::vector<uint8_t> operations;
    if (fromMiddle) operations = {18, 24};
    for (uint8_t operation = fromMiddle ? 5 : 0; operation < 32; ++operation) {
      operations.push_back(operation);
      if (operation > 12) operations.insert(operations.end(), {8, 0, 0, 0, 0, 0, 0, 0});
    }
    output.block(operations).bytes(bytesOf(parcel)).save("ParcelFuzz", fromMiddle ? "some" : "all");
  }
}

void makeTexts() {
  Output output;
  const char16_t* const units = u"a\u00e4\u20ac\U0001f4de\xd83d!\xdcde";
  const char* const texts[] = {"plain text, longer than a word",
                               "a\xc3\xa4\xe2\x82\xac\xf0\x9f\x93\x9e",
                               "\xed\xa0\x80",
                               "\xf4\x90\x80\x80",
                               "\xc0\x80",
                               "\xe2\x82"};
  for (size_t i = 0; i < std::size(texts); ++i) {
    output.number(uint8_t{5}).bytes({reinterpret_cast<const uint8_t*>(texts[i]), std::strlen(texts[i])});
    output.save("UnicodeFuzz", std::to_string(i));
  }
  output.number(uint8_t{5})
      .bytes({reinterpret_cast<const uint8_t*>(units), 2 * std::char_traits<char16_t>::length(units)});
  output.save("UnicodeFuzz", "utf16");
}

/** Frames as they go over a channel. */
class Frames {
 public:
  Frames() {
    int sockets[2];
    FUZZ_CHECK(::socketpair(AF_UNIX, SOCK_SEQPACKET | SOCK_CLOEXEC, 0, sockets) == 0);
    channel_ = std::make_unique<Channel>(UniqueFd(sockets[0]), Channel::Side::kCalls);
    other_ = UniqueFd(sockets[1]);
  }

  Frames& add(const FrameHeader& header, const Parcel* data = nullptr,
              const std::vector<ObjectEntry>& objects = {}) {
    FUZZ_CHECK(channel_->send(header, data, objects) == android::OK);
    std::vector<uint8_t> packet(64 * 1024);
    ssize_t size;
    while ((size = ::recv(other_.get(), packet.data(), packet.size(), MSG_DONTWAIT)) > 0) {
      output_.sized(Bytes(packet).first(static_cast<size_t>(size)));
    }
    return *this;
  }

  /** As Packets.h says. */
  Frames& addDescriptors(uint16_t which) {
    output_.number(which);
    return *this;
  }

  void save(const char* fuzzer, const std::string& name) { output_.save(fuzzer, name); }

 private:
  std::unique_ptr<Channel> channel_;
  UniqueFd other_;
  Output output_;
};

void makeFrames() {
  Parcel small;
  small.writeInt32(7);
  Parcel large;
  large.setDataSize(20000);
  Parcel binder;
  binder.writeStrongBinder(new android::BBinder);
  Frames frames;
  // 0 and 1 name processes and objects that are known, as Packets.h says.
  const std::vector<ObjectEntry> own{{.owner = 0, .number = 0, .offset = 0}};
  const std::vector<ObjectEntry> foreign{{.owner = 1, .number = 1, .offset = 0}};
  for (uint32_t code = 1; code <= 5; ++code) {
    const FrameHeader request{.kind = FrameKind::kRequest, .code = code};
    frames.add({.kind = FrameKind::kAcquire}).add(request, code == 1 ? &large : &small);
    for (const auto& entries : {own, foreign})
      frames.add(request, &binder, entries).add({.kind = FrameKind::kClaimed});
    frames.add({.kind = FrameKind::kRelease}).add({.kind = FrameKind::kRelease}).add(request);
    frames.save("RequestFuzz", std::to_string(code));
  }
  // Some packets come with descriptors.
  for (const uint16_t descriptors : {uint16_t{0xc001}, uint16_t{0xc002}, uint16_t{0xc005}}) {
    frames.addDescriptors(descriptors).add({.kind = FrameKind::kShare});
    const FrameHeader request{.kind = FrameKind::kRequest, .code = 1, .hints = kHintBackToBack};
    for (int i = 0; i < 3; ++i) frames.add(request, &small);
    frames.save("RequestFuzz", "descriptors-" + std::to_string(descriptors));
  }
  const FrameHeader reply{.kind = FrameKind::kReply};
  frames.add(reply, &small).save("ReplyFuzz", "small");
  frames.add(reply, &large).save("ReplyFuzz", "large");
  frames.add({.kind = FrameKind::kReply, .hints = kHintShared}, &binder, own).save("ReplyFuzz", "shared");
  frames.add(reply, &binder, own).save("ReplyFuzz", "own");
  frames.add(reply, &binder, foreign).save("ReplyFuzz", "foreign");
  frames.add({.kind = FrameKind::kReply, .status = android::DEAD_OBJECT}).save("ReplyFuzz", "dead");
}

}  // namespace

int main(int argc, char** argv) {
  if (argc != 2) {
    std::fprintf(stderr, "usage: %s DIRECTORY\n", argv[0]);
    return 2;
  }
  directory = argv[1];
  setUp();
  makeTransactions();
  makeEvents();
  makeParcels();
  makeTexts();
  makeFrames();
}
