#include "Reactor.h"

#include <sys/epoll.h>

#include <cerrno>
#include <utility>

#include "Deadline.h"
#include "Thread.h"

namespace android::transport {

namespace {

/** All signals but faults: the application's handlers run on the application's threads. */
sigset_t maskOfReactor() {
  sigset_t mask;
  sigfillset(&mask);
  for (const int fault : {SIGSEGV, SIGBUS, SIGFPE, SIGILL, SIGTRAP, SIGSYS, SIGABRT}) sigdelset(&mask, fault);
  return mask;
}

}  // namespace

status_t Reactor::start() {
  if (epoll_.valid()) return OK;
  UniqueFd epoll(::epoll_create1(EPOLL_CLOEXEC));
  if (!epoll.valid()) return -errno;
  pthread_sigmask(SIG_SETMASK, nullptr, &applicationMask_);
  hasFirstThread_ = hasFirstThread_ || callbacks_.start(applicationMask_);
  epoll_ = std::move(epoll);
  if (hasFirstThread_ && startThread("binder:reactor", maskOfReactor(), [this] { run(); })) return OK;
  epoll_ = UniqueFd();
  return -EAGAIN;
}

status_t Reactor::add(int fd, uint32_t events, Handler handler, Key* key) {
  auto shared = std::make_shared<Handler>(std::move(handler));
  const std::lock_guard lock(mutex_);
  if (const status_t status = start(); status != OK) return status;
  epoll_event event = {};
  event.events = events;
  event.data.u64 = lastKey_ + 1;
  if (::epoll_ctl(epoll_.get(), EPOLL_CTL_ADD, fd, &event) < 0) return -errno;
  *key = ++lastKey_;
  watched_.emplace(*key, Watched{fd, std::move(shared)});
  return OK;
}

void Reactor::setEvents(Key key, uint32_t events) {
  const std::lock_guard lock(mutex_);
  const auto watched = watched_.find(key);
  if (watched == watched_.end()) return;
  epoll_event event = {};
  event.events = events;
  event.data.u64 = key;
  ::epoll_ctl(epoll_.get(), EPOLL_CTL_MOD, watched->second.fd, &event);
}

void Reactor::remove(Key key) {
  std::shared_ptr<Handler> handler;  // Destroyed without the lock: it may own the descriptor's object.
  const std::lock_guard lock(mutex_);
  const auto watched = watched_.find(key);
  if (watched == watched_.end()) return;
  ::epoll_ctl(epoll_.get(), EPOLL_CTL_DEL, watched->second.fd, nullptr);
  handler = std::move(watched->second.handler);
  watched_.erase(watched);
}

void Reactor::runAfter(std::chrono::milliseconds delay, Handler handler) {
  timers_.emplace(Clock::now() + delay, std::move(handler));
}

int Reactor::timeoutMs() const { return timers_.empty() ? -1 : millisecondsUntil(timers_.begin()->first); }

void Reactor::runTimers() {
  while (!timers_.empty() && timers_.begin()->first <= Clock::now()) {
    timers_.extract(timers_.begin()).mapped()();
  }
}

void Reactor::run() {
  for (;;) {
    // One at a time: a handler may end the watch of another descriptor that is ready.
    epoll_event event;
    const int ready = ::epoll_wait(epoll_.get(), &event, 1, timeoutMs());
    runTimers();
    if (ready != 1) continue;
    // A copy, since the packed event has it misaligned.
    const uint64_t id = event.data.u64;
    std::shared_ptr<Handler> handler;
    {
      const std::lock_guard lock(mutex_);
      if (const auto watched = watched_.find(id); watched != watched_.end())
        handler = watched->second.handler;
    }
    if (handler != nullptr) (*handler)();
  }
}

}  // namespace android::transport
