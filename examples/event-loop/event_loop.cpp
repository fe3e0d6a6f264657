/*
 * event_loop NUMBER: calls NUMBER and prints the events, until SIGINT or SIGTERM. If the call
 * service dies, it connects and calls again.
 *
 * All decisions are made on the main thread, in one loop that waits for signals and events.
 */
#include <poll.h>
#include <pthread.h>
#include <signal.h>
#include <sys/signalfd.h>
#include <unistd.h>

#include <vesk/vesk_client.h>
#include <cstdio>
#include <cstring>
#include <string>
#include <thread>
#include <variant>

#include "EventQueue.h"

namespace {

struct Connected {};
struct ServiceDied {};
struct CallRefused {
  std::string reason;
};
struct CallChanged {
  vesk_call_info call;
};
struct CallGone {
  int channel;
};
using Event = std::variant<Connected, ServiceDied, CallRefused, CallChanged, CallGone>;

/** Never destroyed: callbacks may still run while the process exits. */
EventQueue<Event>& events() {
  static auto& queue = *new EventQueue<Event>;
  return queue;
}

// The callbacks run on threads of the library. A record is valid until its callback returns.

void onCallStateChanged(void* callInfo) {
  CallChanged event;
  std::memcpy(&event.call, callInfo, sizeof(event.call));
  events().post(event);
}

void onCallGone(int channel) { events().post(CallGone{channel}); }
void onMakeCallRet(const char* text) { events().post(CallRefused{text}); }
void onServiceDied() { events().post(ServiceDied{}); }

bool connectOnce() {
  return connect_call_service(nullptr, nullptr, nullptr, nullptr, onCallStateChanged, nullptr, nullptr,
                              onCallGone, nullptr, nullptr, nullptr, nullptr, nullptr, nullptr, onMakeCallRet,
                              nullptr, nullptr, nullptr, onServiceDied);
}

/** On another thread: without a service each attempt takes seconds. */
void connectInBackground() {
  std::thread([] {
    while (!connectOnce()) sleep(1);
    events().post(Connected{});
  }).detach();
}

/** Handles the events. Used on the main thread only, so it needs no lock. */
class Caller {
 public:
  explicit Caller(const char* number) : number_(number) {}

  void operator()(const Connected&) {
    std::puts("connected");
    channel_ = binder_make_call(binder_get_first_valid_line(), number_);
    if (channel_ >= 0) std::printf("calling %s on channel %d\n", number_, channel_);
  }

  void operator()(const ServiceDied&) {
    std::puts("the call service has died");
    channel_ = kNone;
    connectInBackground();
  }

  void operator()(const CallRefused& refused) const { std::printf("no call: %s\n", refused.reason.c_str()); }

  void operator()(const CallChanged& changed) const {
    if (changed.call.chan == channel_) std::printf("news of the call to %s\n", changed.call.name);
  }

  void operator()(const CallGone& gone) {
    if (gone.channel != channel_) return;
    std::puts("the call is over");
    channel_ = kNone;
  }

  void hangUp() const {
    if (channel_ >= 0) binder_close_call(channel_);
  }

 private:
  static constexpr int kNone = -1;

  const char* number_;
  int channel_ = kNone;
};

/** A descriptor that becomes readable on SIGINT and SIGTERM. To be called before any thread starts,
 * since threads inherit the blocked signals. */
int endSignals() {
  sigset_t signals;
  sigemptyset(&signals);
  sigaddset(&signals, SIGINT);
  sigaddset(&signals, SIGTERM);
  pthread_sigmask(SIG_BLOCK, &signals, nullptr);
  return signalfd(-1, &signals, SFD_CLOEXEC);
}

}  // namespace

// NOLINTNEXTLINE(bugprone-exception-escape): without memory or threads the program cannot run.
int main(int argc, char** argv) {
  if (argc != 2) {
    std::fputs("usage: event_loop NUMBER\n", stderr);
    return 2;
  }
  // Line buffering also for a pipe.
  std::setvbuf(stdout, nullptr, _IOLBF, 0);

  pollfd sources[] = {{endSignals(), POLLIN, 0}, {events().fd(), POLLIN, 0}};
  Caller caller(argv[1]);
  connectInBackground();
  while (sources[0].revents == 0) {
    // Only a debugger interrupts this: there are no signal handlers.
    if (poll(sources, std::size(sources), -1) < 0) continue;
    for (const Event& event : events().take()) std::visit(caller, event);
  }
  caller.hangUp();
  std::puts("bye");
  return 0;
}
