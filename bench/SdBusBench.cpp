/* The short call as a D-Bus method of systemd's library, between two processes directly and through
 * a private daemon. */
#include <spawn.h>
#include <sys/socket.h>
#include <sys/wait.h>
#include <systemd/sd-bus.h>
#include <unistd.h>

#include <chrono>
#include <csignal>
#include <filesystem>
#include <string>
#include <thread>

#include "BarePairs.h"
#include "MakeCall.h"
#include "Measure.h"

using namespace vesk::bench;

namespace {

constexpr const char* kName = "com.qv.CallService";
constexpr const char* kPath = "/com/qv/CallService";

void check(int result, const char* what) {
  if (result >= 0) return;
  errno = -result;
  fatal(what);
}

int makeCall(sd_bus_message* message, void*, sd_bus_error*) {
  int32_t line;
  const char* number;
  check(sd_bus_message_read(message, "is", &line, &number), "reading a call");
  return sd_bus_reply_method_return(message, "i", line);
}

const sd_bus_vtable kMethods[] = {SD_BUS_VTABLE_START(0),
                                  SD_BUS_METHOD("makeCall", "is", "i", makeCall, SD_BUS_VTABLE_UNPRIVILEGED),
                                  SD_BUS_VTABLE_END};

[[noreturn]] void serve(sd_bus* bus) {
  check(sd_bus_add_object_vtable(bus, nullptr, kPath, kName, kMethods, nullptr), "adding the object");
  for (;;) {
    const int result = sd_bus_process(bus, nullptr);
    check(result, "serving");
    if (result == 0) check(sd_bus_wait(bus, UINT64_MAX), "waiting for calls");
  }
}

void call(sd_bus* bus, const char* destination) {
  sd_bus_error error = {};
  sd_bus_message* reply = nullptr;
  check(sd_bus_call_method(bus, destination, kPath, kName, "makeCall", &error, &reply, "is", kLine, kNumber),
        "calling");
  int32_t result;
  check(sd_bus_message_read(reply, "i", &result), "reading the answer");
  sd_bus_message_unref(reply);
}

sd_bus* connectTo(int socket, bool asServer) {
  sd_bus* bus = nullptr;
  check(sd_bus_new(&bus), "making a bus");
  check(sd_bus_set_fd(bus, socket, socket), "connecting a bus");
  if (asServer) {
    sd_id128_t id{};
    id.bytes[0] = 1;
    check(sd_bus_set_server(bus, 1, id), "making a server");
  }
  check(sd_bus_start(bus), "starting a bus");
  return bus;
}

sd_bus* connectTo(const std::string& address) {
  sd_bus* bus = nullptr;
  check(sd_bus_new(&bus), "making a bus");
  check(sd_bus_set_address(bus, address.c_str()), "setting the address");
  check(sd_bus_set_bus_client(bus, 1), "becoming a client");
  int result;
  do {
    result = sd_bus_start(bus);
    if (result == -ENOENT || result == -ECONNREFUSED) {
      std::this_thread::sleep_for(std::chrono::milliseconds(20));
    }
  } while (result == -ENOENT || result == -ECONNREFUSED);
  check(result, "connecting to the daemon");
  return bus;
}

}  // namespace

int main(int argc, char** argv) {
  const PrivateRuntimeDir directory;
  const std::string socket = directory.path() + "/bus";
  const std::string address = "unix:path=" + socket;

  const BarePairs pairs(1, makeCallSizes());
  int ends[2];
  if (::socketpair(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0, ends) != 0) fatal("socketpair");
  const Child bare([&] { pairs.serve(0); });
  const Child direct([&] {
    ::close(ends[0]);
    serve(connectTo(ends[1], true));
  });
  ::close(ends[1]);
  const Child daemon([&] {
    ::execlp("dbus-daemon", "dbus-daemon", "--session", "--nofork", ("--address=" + address).c_str(),
             nullptr);
    fatal("dbus-daemon");
  });
  while (!std::filesystem::exists(socket)) {
    if (::waitpid(daemon.pid(), nullptr, WNOHANG) != 0) return 1;
    std::this_thread::sleep_for(std::chrono::milliseconds(20));
  }
  const Child brokered([&] {
    sd_bus* const bus = connectTo(address);
    check(sd_bus_request_name(bus, kName, 0), "taking the name");
    serve(bus);
  });

  sd_bus* const toDirect = connectTo(ends[0], false);
  sd_bus* const toDaemon = connectTo(address);
  while (sd_bus_get_name_creds(toDaemon, kName, 0, nullptr) < 0) {
    std::this_thread::sleep_for(std::chrono::milliseconds(20));
  }
  registerCalls("sd_bus", "stream", {bare.pid()}, [&] { pairs.call(0); });
  registerCalls("sd_bus", "direct", {direct.pid()}, [=] { call(toDirect, nullptr); });
  registerCalls("sd_bus", "through_a_daemon", {brokered.pid(), daemon.pid()}, [=] { call(toDaemon, kName); });
  return run(argc, argv);
}
