#pragma once

#include <unistd.h>

#include <mutex>
#include <tuple>

#include <com/qv/detail/Platform.h>

#include <binder/Status.h>
#include <com/qv/ClientBase.h>
#include <com/qv/CommonParcelable.h>

#include "ipc/PlatformCompat.h"

namespace com::qv {

/** The result if no client is connected. */
struct IfNotConnected {
  int value;
};

/** The initial value of the out-argument, and so the result if a remote call fails. */
struct IfFailed {
  int value;
};

/** A C record as an in-argument. */
struct Record {
  const void* bytes;
  size_t size;
  operator CommonParcelable() const { return {bytes, size}; }
};

/** A C array as an in-argument; empty for a count of 0 or less. */
struct IntArray {
  const int* values;
  int count;
  operator std::vector<int32_t>() const {
    return count > 0 ? std::vector<int32_t>(values, values + count) : std::vector<int32_t>();
  }
};

/** The usual rule for a fetched record: copied if its size is exactly `size`. */
struct ExactSize {
  void* bytes;
  size_t size;
  bool store(const CommonParcelable& record) const { return record.copyTo(bytes, size); }
};

/** A service's current client. Its lock is held for a few instructions only. */
class ClientSlot {
 public:
  using DiedCallback = void (*)();

  ClientSlot(const ClientSlot&) = delete;
  ClientSlot& operator=(const ClientSlot&) = delete;

  /** Releases the client. */
  void disconnect();

 protected:
  struct Connection {
    android::sp<ClientBase> client;
    DiedCallback onServiceDied = nullptr;
  };

  ClientSlot();
  /** Never called: see ClientApi::instance(). */
  ~ClientSlot() = default;

  /** Replaces the client and runs `storeCallbacks`, both under the lock. */
  template <class StoreCallbacks>
  void publish(Connection connection, StoreCallbacks storeCallbacks) {
    connectedPid_ = ::getpid();
    {
      const std::lock_guard lock(mutex_);
      storeCallbacks();
      std::swap(current_, connection);
    }
    // `connection` is the earlier one now. It is released without the lock, since its destructor
    // may call back into here.
    unlinkFromDeath(connection);
  }

  /** Links the published client to the death of its service. */
  void linkToDeath(const android::sp<ClientBase>& client);

  /** Handles the death of a client's service. A client that was replaced before reports nothing. */
  void died(const ClientBase* client);

  mutable std::mutex mutex_;
  Connection current_;

 private:
  friend struct ReleaseAtExit;

  static void unlinkFromDeath(const Connection& connection);

  std::atomic<pid_t> connectedPid_{0};
  ClientSlot* const next_;
};

/**
 * The current client of a service, and the steps that all of its C functions share. Each C function
 * passes one member a method of the proxy, the arguments of the call and the values to return on
 * failure. The member holds a strong reference to the proxy during the call. It ignores the Status:
 * a failed call leaves the out-values at their initial values. All members may be called from any
 * thread. Those that make the call are not inlined, so that they are compiled once for each
 * parameter list.
 */
template <class Client>
class ClientApi : public ClientSlot {
 public:
  using Interface = typename Client::Interface;
  template <class... Parameters>
  using Method = android::binder::Status (Interface::*)(Parameters...);

  /** The singleton. It is never destroyed, since calls and events may still use it
   * while the process exits; only its client is released then. */
  static ClientApi& instance() {
    static ClientApi& api = *new ClientApi;
    return api;
  }

  /** A failed attempt keeps the earlier client. */
  bool connectWithoutDeathNotification() {
    const android::sp<Client> client = newClient();
    if (client->connected) publish({client, nullptr}, [] {});
    return client->connected;
  }

  /** A failed attempt keeps the earlier client and does not run `storeCallbacks`. */
  template <class StoreCallbacks = void (*)()>
  bool connect(
      DiedCallback onServiceDied, StoreCallbacks storeCallbacks = [] {}) {
    const android::sp<Client> client = newClient();
    if (!client->connected) return false;
    client->deathHook = [](ClientBase* dead, const android::wp<android::IBinder>&) { instance().died(dead); };
    publish({client, onServiceDied}, storeCallbacks);
    linkToDeath(client);
    return true;
  }

  /** The proxy of the current client; null without one. */
  android::sp<Interface> proxy() const {
    const std::lock_guard lock(mutex_);
    return current_.client == nullptr ? nullptr : static_cast<const Client&>(*current_.client).service;
  }

  /** A method whose reply is ignored. 0 once the call was made, even if it failed; -1 without a
   * client. */
  template <class... Parameters, class... Arguments>
  [[gnu::noinline]] int send(Method<Parameters...> method, Arguments... arguments) const {
    const android::sp<Interface> proxy = this->proxy();
    if (proxy == nullptr) return -1;
    if constexpr (sizeof...(Arguments) == sizeof...(Parameters)) {
      invoke(*proxy, method, arguments...);
    } else {
      OutValue<Parameters...> ignored = failed<OutValue<Parameters...>>();
      invoke(*proxy, method, arguments..., &ignored);
    }
    return 0;
  }

  /** A method with one int32_t or bool as out-argument, which is the result; -1 or false on
   * failure. */
  template <class... Parameters, class... Arguments>
  int value(Method<Parameters...> method, Arguments... arguments) const {
    constexpr int kFailed = failed<OutValue<Parameters...>>();
    return value(IfNotConnected{kFailed}, IfFailed{kFailed}, method, arguments...);
  }

  /** The same with other values on failure. */
  template <class... Parameters, class... Arguments>
  [[gnu::noinline]] int value(IfNotConnected ifNotConnected, IfFailed ifFailed, Method<Parameters...> method,
                              Arguments... arguments) const {
    const android::sp<Interface> proxy = this->proxy();
    if (proxy == nullptr) return ifNotConnected.value;
    auto result = static_cast<OutValue<Parameters...>>(ifFailed.value);
    invoke(*proxy, method, arguments..., &result);
    return result;
  }

  /** A method with one record of `kSize` bytes as out-argument: 0 and the record copied to
   * `record`, or -1 and `record` untouched. */
  template <size_t kSize, class... Parameters, class... Arguments>
  int fetch(void* record, Method<Parameters...> method, Arguments... arguments) const {
    return fetch(ExactSize{record, kSize}, method, arguments...);
  }

  /** A method with one record as out-argument, which `rule.store(record)` accepts or refuses. -1 if
   * it was refused; otherwise the method's int32_t out-argument, -1 before the call, or 0 if it has
   * none. */
  template <class Rule, class... Parameters, class... Arguments>
  [[gnu::noinline]] int fetch(Rule rule, Method<Parameters...> method, Arguments... arguments) const {
    const android::sp<Interface> proxy = this->proxy();
    if (proxy == nullptr) return -1;
    CommonParcelable record;
    int32_t result = 0;
    if constexpr (std::is_same_v<OutValue<Parameters...>, int32_t>) {
      result = -1;
      invoke(*proxy, method, arguments..., &record, &result);
    } else {
      invoke(*proxy, method, arguments..., &record);
    }
    return rule.store(record) ? result : -1;
  }

  /** A method with one text as out-argument. The result is that of `rule`, one of the rules in
   * Text.h. */
  template <class Rule, class... Parameters, class... Arguments>
  [[gnu::noinline]] int text(IfNotConnected ifNotConnected, Rule rule, Method<Parameters...> method,
                             Arguments... arguments) const {
    const android::sp<Interface> proxy = this->proxy();
    if (proxy == nullptr) return ifNotConnected.value;
    std::string result;
    invoke(*proxy, method, arguments..., &result);
    return rule.store(result);
  }

  /**
   * A method with a list of records as out-argument. Calls `store(index, bytes)` for each element
   * of exactly `kSize` bytes; `index` counts these only. `store` returns false to stop. The result
   * is the number of stored elements; -1 without a client.
   */
  template <size_t kSize, class Store>
  int list(Store store, Method<std::vector<CommonParcelable>*> method) const {
    const android::sp<Interface> proxy = this->proxy();
    if (proxy == nullptr) return -1;
    std::vector<CommonParcelable> elements;
    invoke(*proxy, method, &elements);
    int stored = 0;
    for (const CommonParcelable& element : elements) {
      if (element.blob().length() != kSize) continue;
      if (!store(stored, bytesOf(element.blob()))) break;
      ++stored;
    }
    return stored;
  }

 private:
  ClientApi() = default;

  template <class... Parameters>
  using OutValue =
      std::remove_pointer_t<std::tuple_element_t<sizeof...(Parameters) - 1, std::tuple<Parameters...>>>;

  /** The value of a number or a flag after a failed call. */
  template <class Value>
  static constexpr Value failed() {
    if constexpr (std::is_same_v<Value, int32_t>) {
      return -1;
    } else {
      return {};
    }
  }

  /** Calls the method with the C function's arguments converted to its parameters. A null text
   * raises the standard library's logic error here. */
  template <class... Parameters, class... Arguments>
  static void invoke(Interface& proxy, Method<Parameters...> method, const Arguments&... arguments) {
    (proxy.*method)(static_cast<Parameters>(arguments)...);
  }

  static android::sp<Client> newClient() {
    return android::sp<Client>(new Client(android::String16(Client::kServiceName)));
  }
};

}  // namespace com::qv
