#pragma once

#include <binder/Binder.h>
#include <utils/String16.h>

#include <chrono>
#include <memory>
#include <mutex>
#include <string>
#include <vector>

#include "Names.h"
#include "Value.h"

namespace veskctl {

/** An event of a listener, or a change in the connection to a service. */
struct Event {
  std::chrono::system_clock::time_point time = std::chrono::system_clock::now();
  /** Set for an event of a listener. */
  const Interface* listener = nullptr;
  const Method* method = nullptr;
  std::vector<Value> arguments;
  /** Set for a connection: its service, and "waiting", "watching", "died" or "refused". */
  std::string service;
  std::string state;
  /** Set if the state is "refused". */
  std::string reason;
};

/** Passes events from binder threads to the main thread, in order. Thread-safe. */
class EventQueue {
 public:
  EventQueue();
  ~EventQueue();
  EventQueue(const EventQueue&) = delete;
  EventQueue& operator=(const EventQueue&) = delete;

  /** A descriptor that is readable while there are events. */
  int fd() const { return fd_; }
  void push(Event event);
  std::vector<Event> take();

 private:
  const int fd_;
  std::mutex mutex_;
  std::vector<Event> events_;
};

/** A listener of any listener interface. Queues its events, and returns ok. */
class EventListener : public android::BBinder {
 public:
  EventListener(const Interface& listener, std::shared_ptr<EventQueue> queue);

  const android::String16& getInterfaceDescriptor() const override { return descriptor_; }

 protected:
  android::status_t onTransact(uint32_t code, const android::Parcel& data, android::Parcel* reply,
                               uint32_t flags = 0) override;

 private:
  const Interface& listener_;
  const android::String16 descriptor_;
  const std::shared_ptr<EventQueue> queue_;
};

}  // namespace veskctl
