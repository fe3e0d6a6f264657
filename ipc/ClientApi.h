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

/** The result of a C function without a client. */
struct IfNotConnected {
  int value;
};

/** The value of an out-argument before the call, and therefore after a failed one. */
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

/** The usual rule for a record as an out-argument: accepted at exactly `size` bytes. */
struct Exactly {
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

  /** Replaces the client, and the callbacks by `storeCallbacks`, in one step. */
  template <class StoreCallbacks>
  void publish(Connection connection, StoreCallbacks storeCallbacks) {
    connectedBy_ = ::getpid();
    {
      const std::lock_guard lock(mutex_);
      storeCallbacks();
      std::swap(current_, connection);
    }
    // Outside of the lock, since the end of a client could call back into here.
    retire(connection);
  }

  /** Links the published client to the death of its service. */
  void linkToDeath(const android::sp<ClientBase>& client);

  /** The death hook's work. A client that has been replaced reports no death and removes nothing. */
  void died(const ClientBase* client);

  mutable std::mutex mutex_;
  Connection current_;

 private:
  friend struct ReleaseAtExit;

  static void retire(const Connection& connection);

  std::atomic<pid_t> connectedBy_{0};
  ClientSlot* const next_;
};

/**
 * The C functions of one service: the current client, and the steps that all functions share. A C function is
 * a call of one of the members below with the proxy's method and the function's own facts. Each member holds
 * the proxy for the length of the call and judges success by the out-values only. Every member may be called
 * from any thread.
 */
template <class Client>
class ClientApi : public ClientSlot {
 public:
  using Interface = typename Client::Interface;
  template <class... Parameters>
  using Method = android::binder::Status (Interface::*)(Parameters...);

  /** The one object of the process. It is never destroyed, since calls and events may still use it while the
   * process exits; only its client is released then. */
  static ClientApi& instance() {
    static ClientApi& api = *new ClientApi;
    return api;
  }

  /** A failed attempt keeps the earlier client, here and below. */
  bool connectWithoutDeathNotification() {
    const android::sp<Client> client = newClient();
    if (client->connected) publish({client, nullptr}, [] {});
    return client->connected;
  }

  /** `storeCallbacks` runs on success only, under a lock. */
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

  /** A method whose reply is ignored. 0 once the call was made, even if it failed; -1 without a client. */
  template <class... Parameters, class... Arguments>
  [[gnu::noinline]] int send(Method<Parameters...> method, Arguments... arguments) const {
    const android::sp<Interface> service = proxy();
    if (service == nullptr) return -1;
    if constexpr (sizeof...(Arguments) == sizeof...(Parameters)) {
      call(*service, method, arguments...);
    } else {
      OutValue<Parameters...> ignored = failed<OutValue<Parameters...>>();
      call(*service, method, arguments..., &ignored);
    }
    return 0;
  }

  /** A method with one int32_t or bool as out-argument, which is the result; -1 or false on failure. */
  template <class... Parameters, class... Arguments>
  int value(Method<Parameters...> method, Arguments... arguments) const {
    constexpr int kFailed = failed<OutValue<Parameters...>>();
    return value(IfNotConnected{kFailed}, IfFailed{kFailed}, method, arguments...);
  }

  /** The same with other values on failure. */
  template <class... Parameters, class... Arguments>
  [[gnu::noinline]] int value(IfNotConnected ifNotConnected, IfFailed ifFailed, Method<Parameters...> method,
                              Arguments... arguments) const {
    const android::sp<Interface> service = proxy();
    if (service == nullptr) return ifNotConnected.value;
    auto result = static_cast<OutValue<Parameters...>>(ifFailed.value);
    call(*service, method, arguments..., &result);
    return result;
  }

  /** A method with one record of `kSize` bytes as out-argument: 0 and the record copied to `record`, or -1
   * and `record` untouched. */
  template <size_t kSize, class... Parameters, class... Arguments>
  int fetch(void* record, Method<Parameters...> method, Arguments... arguments) const {
    return fetch(Exactly{record, kSize}, method, arguments...);
  }

  /** A method with one record as out-argument, which `rule.store(record)` accepts or refuses. -1 if it was
   * refused; otherwise the method's int32_t out-argument, -1 before the call, or 0 if it has none. */
  template <class Rule, class... Parameters, class... Arguments>
  [[gnu::noinline]] int fetch(Rule rule, Method<Parameters...> method, Arguments... arguments) const {
    const android::sp<Interface> service = proxy();
    if (service == nullptr) return -1;
    CommonParcelable record;
    int32_t result = 0;
    if constexpr (std::is_same_v<OutValue<Parameters...>, int32_t>) {
      result = -1;
      call(*service, method, arguments..., &record, &result);
    } else {
      call(*service, method, arguments..., &record);
    }
    return rule.store(record) ? result : -1;
  }

  /** A method with one text as out-argument. The result is that of `rule`, one of the rules in Text.h. */
  template <class Rule, class... Parameters, class... Arguments>
  [[gnu::noinline]] int text(IfNotConnected ifNotConnected, Rule rule, Method<Parameters...> method,
                             Arguments... arguments) const {
    const android::sp<Interface> service = proxy();
    if (service == nullptr) return ifNotConnected.value;
    std::string result;
    call(*service, method, arguments..., &result);
    return rule.store(result);
  }

  /**
   * A method with a list of records as out-argument. Each element of exactly `kSize` bytes goes to
   * `store(index, bytes)`; the index counts these elements, others are skipped. `store` returns false to end
   * the walk without counting the element. The result is the number of stored elements; -1 without a client.
   */
  template <size_t kSize, class Store>
  int list(Store store, Method<std::vector<CommonParcelable>*> method) const {
    const android::sp<Interface> service = proxy();
    if (service == nullptr) return -1;
    std::vector<CommonParcelable> elements;
    call(*service, method, &elements);
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

  /** Calls the method with the C function's arguments converted to its parameters. A null text raises the
   * standard library's logic error here. */
  template <class... Parameters, class... Arguments>
  static void call(Interface& service, Method<Parameters...> method, const Arguments&... arguments) {
    (service.*method)(static_cast<Parameters>(arguments)...);
  }

  static android::sp<Client> newClient() {
    return android::sp<Client>(new Client(android::String16(Client::kServiceName)));
  }
};

}  // namespace com::qv
