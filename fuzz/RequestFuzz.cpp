/* Sends arbitrary frames over a channel to this process. */
#include <sys/socket.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <memory>
#include <thread>

#include "Binders.h"
#include "Connect.h"
#include "Packets.h"
#include "Transport.h"

namespace {

using android::BBinder;
using android::IBinder;
using android::OK;
using android::Parcel;
using android::sp;
using namespace android::transport;
using vesk::fuzz::Known;

class Target : public BBinder {
 public:
  enum Code : uint32_t { kEcho = 1, kPass, kMake, kTooMuch, kFail };

 protected:
  android::status_t onTransact(uint32_t code, const Parcel& data, Parcel* reply, uint32_t flags) override {
    vesk::fuzz::touch(vesk::fuzz::bytesOf(data));
    switch (code) {
      case kEcho:
        return reply->write(data.data(), data.dataSize());
      case kPass: {
        sp<IBinder> binder;
        const android::status_t status = data.readStrongBinder(&binder);
        if (binder != nullptr) binder->isBinderAlive();
        return status == OK ? reply->writeStrongBinder(binder) : status;
      }
      case kMake:
        return reply->writeStrongBinder(new BBinder);
      case kTooMuch:
        return reply->setDataSize(kMaxDataSize + 1);
      case kFail:
        return data.readInt32();
      default:
        return BBinder::onTransact(code, data, reply, flags);
    }
  }
};

struct Process {
  sp<Target> held = new Target;
  sp<Target> notHeld = new Target;
  Known known;

  Process() {
    vesk::fuzz::setUp();
    Transport& transport = Transport::self();
    transport.poolStarted = true;
    Address address{};
    for (const sp<Target>& object : {held, notHeld}) {
      FUZZ_CHECK(transport.addressOf(object.get(), &address) == OK);
      known.objects.push_back(address.number);
    }
    known.processes = {transport.id, 77};
  }
};

void expectReply(vesk::fuzz::Bytes frame) {
  FrameHeader header{};
  FUZZ_CHECK(frame.size() >= sizeof(header));
  std::memcpy(&header, frame.data(), sizeof(header));
  FUZZ_CHECK(header.magic == kMagic && header.kind == FrameKind::kReply);
  FUZZ_CHECK(header.status == OK || header.dataSize == 0);
  const size_t size =
      sizeof(header) + size_t{header.dataSize} + size_t{header.objectCount} * sizeof(ObjectEntry);
  FUZZ_CHECK(frame.size() == std::min(size, SharedSlot::kCapacity));
}

/** The lowest free descriptors of this process. */
std::array<int, 4> nextDescriptors() {
  std::array<int, 4> next{};
  for (int& descriptor : next) FUZZ_CHECK((descriptor = ::dup(STDERR_FILENO)) >= 0);
  for (const int descriptor : next) ::close(descriptor);
  return next;
}

void run(const Process& process, const std::vector<vesk::fuzz::Packet>& packets) {
  int sockets[2];
  FUZZ_CHECK(::socketpair(AF_UNIX, SOCK_SEQPACKET | SOCK_CLOEXEC, 0, sockets) == 0);
  UniqueFd caller(sockets[0]);
  UniqueFd served(sockets[1]);
  // The replies are not read from the socket, so its buffer has to hold them.
  const int room = 1 << 20;
  ::setsockopt(served.get(), SOL_SOCKET, SO_SNDBUF, &room, sizeof(room));
  UniqueFd memory;
  vesk::fuzz::Sender sender(caller.get(), SharedSlots::make(&memory));
  sender.onFrame = expectReply;
  FUZZ_CHECK(sendHello(caller.get(), {.kind = ConnectionKind::kChannel, .process = 77}, memory.get()) > 0);
  memory = UniqueFd();
  std::thread sending([&] {
    sender.send(packets);
    ::shutdown(caller.get(), SHUT_WR);
  });

  const auto holder = std::make_shared<HolderProcess>(77, ::getpid(), UniqueFd());
  FUZZ_CHECK(holder->hold(process.known.objects[0], process.held));
  Transport::self().served.serve(std::move(served), holder, ::getuid());
  sending.join();
  holder->end();
  FUZZ_CHECK(process.held->getStrongCount() == 1);
  FUZZ_CHECK(process.notHeld->getStrongCount() == 1);
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  static const Process& process = *new Process;
  // The first run opens the descriptors that the process keeps.
  static const bool ready = (run(process, {}), true);
  FUZZ_CHECK(ready);
  const auto packets = vesk::fuzz::packetsOf({data, size}, process.known);
  const std::array<int, 4> before = nextDescriptors();
  run(process, packets);
  FUZZ_CHECK(nextDescriptors() == before);
  return 0;
}
