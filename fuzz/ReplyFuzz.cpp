/* Calls a service whose process replies with arbitrary packets. */
#include <poll.h>
#include <sys/socket.h>
#include <sys/un.h>

#include <memory>
#include <mutex>
#include <thread>

#include "Binders.h"
#include "Connect.h"
#include "Packets.h"
#include "Transport.h"

namespace {

using android::IBinder;
using android::OK;
using android::Parcel;
using android::sp;
using namespace android::transport;
using vesk::fuzz::Known;

constexpr uint64_t kHostile = 77;

/** Sends the packets to the caller that opens a channel, and then closes it. */
class HostileProcess {
 public:
  HostileProcess() : listening_(::socket(AF_UNIX, SOCK_SEQPACKET | SOCK_CLOEXEC, 0)) {
    sockaddr_un address;
    FUZZ_CHECK(runtime_dir::socketAddress(kHostile, &address));
    FUZZ_CHECK(::bind(listening_.get(), reinterpret_cast<const sockaddr*>(&address), sizeof(address)) == 0);
    FUZZ_CHECK(::listen(listening_.get(), SOMAXCONN) == 0);
    std::thread([this] { run(); }).detach();
  }

  void answer(std::vector<vesk::fuzz::Packet> packets) {
    const std::lock_guard lock(mutex_);
    packets_ = std::move(packets);
  }

 private:
  void run() {
    for (;;) {
      UniqueFd connection(::accept4(listening_.get(), nullptr, nullptr, SOCK_CLOEXEC));
      pollfd poller{connection.get(), POLLIN, 0};
      Hello hello{};
      UniqueFd memory;
      if (::poll(&poller, 1, -1) <= 0 || !receiveHello(connection.get(), &hello, &memory)) continue;
      if (hello.kind == ConnectionKind::kWatch) {
        // Sends a valid Hello, so that the caller can hold the objects in a reply.
        const Hello greeting{.kind = ConnectionKind::kWatch, .process = kHostile};
        ::send(connection.get(), &greeting, sizeof(greeting), MSG_NOSIGNAL);
        watches_.push_back(std::move(connection));
        continue;
      }
      vesk::fuzz::Sender sender(connection.get(), SharedSlots::accept(memory));
      const std::lock_guard lock(mutex_);
      sender.sendNow(packets_);
    }
  }

  const UniqueFd listening_;
  std::mutex mutex_;
  std::vector<vesk::fuzz::Packet> packets_;
  std::vector<UniqueFd> watches_;
};

struct Processes {
  sp<IBinder> object = new android::BBinder;
  Known known;
  HostileProcess* hostile;

  Processes() {
    vesk::fuzz::setUp();
    Address address{};
    FUZZ_CHECK(Transport::self().addressOf(object.get(), &address) == OK);
    known = {{Transport::self().id, kHostile}, {address.number}};
    hostile = new HostileProcess;
  }
};

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  static Processes& processes = *new Processes;
  processes.hostile->answer(vesk::fuzz::packetsOf({data, size}, processes.known));
  // A new OwnerProcess for each input: the channel of the previous one has ended.
  const auto owner = std::make_shared<OwnerProcess>(kHostile);
  Parcel request;
  Parcel reply;
  request.writeInt32(1);
  const android::status_t status = owner->transact(1, 1, request, &reply, 0);
  vesk::fuzz::touch(vesk::fuzz::bytesOf(reply));
  if (status != OK) FUZZ_CHECK(reply.dataSize() == 0);
  while (reply.dataAvail() >= sizeof(int32_t)) {
    sp<IBinder> binder;
    if (reply.readStrongBinder(&binder) != OK) reply.readInt32();
    if (binder != nullptr) binder->isBinderAlive();
  }
  reply.freeData();
  FUZZ_CHECK(processes.object->getStrongCount() == 1);
  return 0;
}
