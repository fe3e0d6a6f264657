#include "Events.h"

#include <binder/Status.h>
#include <sys/eventfd.h>
#include <unistd.h>

#include <utility>

#include "Binder.h"

namespace veskctl {

EventQueue::EventQueue() : fd_(eventfd(0, EFD_CLOEXEC | EFD_NONBLOCK)) {}
EventQueue::~EventQueue() { close(fd_); }

void EventQueue::push(Event event) {
  const std::lock_guard lock(mutex_);
  events_.push_back(std::move(event));
  eventfd_write(fd_, 1);
}

std::vector<Event> EventQueue::take() {
  const std::lock_guard lock(mutex_);
  eventfd_t count;
  eventfd_read(fd_, &count);
  return std::exchange(events_, {});
}

EventListener::EventListener(const Interface& listener, std::shared_ptr<EventQueue> queue)
    : listener_(listener), descriptor_(listener.descriptor().c_str()), queue_(std::move(queue)) {}

android::status_t EventListener::onTransact(uint32_t code, const android::Parcel& data,
                                            android::Parcel* reply, uint32_t flags) {
  const Method* method = listener_.find(code);
  if (method == nullptr) return BBinder::onTransact(code, data, reply, flags);
  if (!data.checkInterface(this)) return android::BAD_TYPE;
  Event event;
  event.listener = &listener_;
  event.method = method;
  if (const android::status_t status = readArguments(data, *method, &event.arguments);
      status != android::OK) {
    return status;
  }
  queue_->push(std::move(event));
  return android::binder::Status::ok().writeToParcel(reply);
}

}  // namespace veskctl
