#pragma once

#include <unistd.h>

#include <cstddef>
#include <cstdint>
#include <memory>
#include <mutex>
#include <string>
#include <system_error>
#include <thread>
#include <tuple>
#include <type_traits>
#include <vector>

#include <com/qv/detail/Platform.h>

#include <binder/Status.h>
#include <com/qv/ClientBase.h>
#include <com/qv/CommonParcelable.h>

#include "ipc/Arguments.h"
#include "ipc/Method.h"
#include "ipc/Slot.h"

namespace com::qv {

/** What a function returns when there is no client. */
struct IfNotConnected {
  int value;
};

/** What an out-value holds before the call, and so after a failed one. */
struct IfFailed {
  int value;
};

/** The rule for most records as out-values: taken at exactly `size` bytes. */
struct Exactly {
  void* bytes;
  size_t size;
  bool store(const CommonParcelable& record) const { return record.copyTo(bytes, size); }
};

/**
 * One service as the C functions see it: the current client, and the frame that they share. Each C function
 * states its facts to one of the members below. They hold what they call for the length of the call, look
 * at nothing but the out-values, and may be called from any thread.
 *
 * A Service is immortal, as calls and events may still look in while the process exits; ReleaseAtExit lets
 * its client go.
 */
template <class Client>
class Service {
 public:
  using Interface = typename Client::Service;
  using DiedCallback = Slot::DiedCallback;
  template <class... Parameters>
  using Method = Row<Interface, Parameters...>;

  /** Connects without death notification. A failed attempt leaves the earlier client. */
  bool connect() {
    const android::sp<Client> client = newClient();
    if (client->connected) publish(client, nullptr, [] {});
    return client->connected;
  }

  /**
   * Connects with death notification. `hook` has to hand the client to died(); `storeCallbacks` runs on
   * success only. A failed attempt leaves the earlier client.
   */
  template <class StoreCallbacks>
  bool connect(ClientBase::DeathHook hook, DiedCallback onServiceDied, StoreCallbacks storeCallbacks) {
    const android::sp<Client> client = newClient();
    if (!client->connected) return false;
    client->deathHook = hook;
    publish(client, onServiceDied, storeCallbacks);
    // Last, so that the death, which may be told at once on another thread, finds everything in place. A
    // service that died before this tells nobody by itself.
    if (client->binder->linkToDeath(client, nullptr, 0) == android::DEAD_OBJECT) tellOfDeath(client);
    return true;
  }

  /** The proxy of the current client, null without one, for what none of the members below does. */
  android::sp<Interface> proxy() const { return slot_.template service<Client>(); }

  /** Gives up the current client. */
  void disconnect() { static_cast<void>(slot_.exchange({})); }

  /** The death hook's work. A client that is no longer the current one has nothing to tell. */
  void died(const ClientBase* client) {
    if (const DiedCallback onServiceDied = slot_.onDeathOf(client)) onServiceDied();
    slot_.drop(client);
  }

  /** A method whose answer nobody looks at; an out-value, if it has one, is read and dropped. 0 once the call
   * was made, whatever came of it; -1 without a client. */
  template <class... Parameters, class... Arguments>
  int send(Method<Parameters...> method, Arguments... arguments) const {
    return sendPlain(method, plain(arguments)...);
  }

  /** A method with one int32_t or bool out-value, which is the result; -1 or false without one. */
  template <class... Parameters, class... Arguments>
  int value(Method<Parameters...> method, Arguments... arguments) const {
    constexpr int kNone = std::is_same_v<OutValue<Parameters...>, bool> ? 0 : -1;
    return value(IfNotConnected{kNone}, IfFailed{kNone}, method, arguments...);
  }

  /** The same for a method with values of its own. */
  template <class... Parameters, class... Arguments>
  int value(IfNotConnected absent, IfFailed preset, Method<Parameters...> method,
            Arguments... arguments) const {
    return valuePlain(absent, preset, method, plain(arguments)...);
  }

  /** A method with one record of `kSize` bytes as out-value: 0 if it was copied to `record`, else -1 and that
   * is untouched. */
  template <size_t kSize, class... Parameters, class... Arguments>
  int fetch(void* record, Method<Parameters...> method, Arguments... arguments) const {
    return fetch(Exactly{record, kSize}, method, arguments...);
  }

  /** A method with one record as out-value, handed out by `rule`: its `store(record)` tells whether it took
   * it. -1 if it did not; else the method's int32_t out-value, preset to -1, or 0 if it has none. */
  template <class Rule, class... Parameters, class... Arguments>
  int fetch(Rule rule, Method<Parameters...> method, Arguments... arguments) const {
    return fetchPlain(rule, method, plain(arguments)...);
  }

  /** A method with one text as out-value, handed out by `rule` (see Text.h), whose result is returned. */
  template <class Rule, class... Parameters, class... Arguments>
  int text(IfNotConnected absent, Rule rule, Method<Parameters...> method, Arguments... arguments) const {
    return textPlain(absent, rule, method, plain(arguments)...);
  }

  /**
   * A method with a list of records as out-value. Each element of exactly `kSize` bytes goes to `store(index,
   * bytes)`, index counting those elements; others are skipped; a false from `store` ends the walk without
   * counting the element. The number of stored elements, -1 without a client.
   */
  template <size_t kSize, class Store, class... Parameters, class... Arguments>
  [[gnu::noinline]] int list(Store store, Method<Parameters...> method, Arguments... arguments) const {
    std::vector<CommonParcelable> elements;
    if (!call(method, plain(arguments)..., &elements)) return -1;
    int stored = 0;
    for (const CommonParcelable& element : elements) {
      if (element.blob().length() != kSize) continue;
      if (!store(stored, element.blob().c_str())) break;
      ++stored;
    }
    return stored;
  }

 private:
  template <class... Parameters>
  using OutValue =
      std::remove_pointer_t<std::tuple_element_t<sizeof...(Parameters) - 1, std::tuple<Parameters...>>>;

  /* Compiled once for each parameter list and the arguments for it, whatever the size of a record. */

  template <class... Parameters, class... Arguments>
  [[gnu::noinline]] int sendPlain(Method<Parameters...> method, Arguments... arguments) const {
    if constexpr (sizeof...(Arguments) == sizeof...(Parameters)) {
      return call(method, arguments...) ? 0 : -1;
    } else {
      OutValue<Parameters...> dropped{};
      return call(method, arguments..., &dropped) ? 0 : -1;
    }
  }

  template <class... Parameters, class... Arguments>
  [[gnu::noinline]] int valuePlain(IfNotConnected absent, IfFailed preset, Method<Parameters...> method,
                                   Arguments... arguments) const {
    auto result = static_cast<OutValue<Parameters...>>(preset.value);
    return call(method, arguments..., &result) ? result : absent.value;
  }

  template <class Rule, class... Parameters, class... Arguments>
  [[gnu::noinline]] int fetchPlain(Rule rule, Method<Parameters...> method, Arguments... arguments) const {
    CommonParcelable record;
    int32_t result = 0;
    bool called = false;
    if constexpr (std::is_same_v<OutValue<Parameters...>, int32_t>) {
      result = -1;
      called = call(method, arguments..., &record, &result);
    } else {
      called = call(method, arguments..., &record);
    }
    return called && rule.store(record) ? result : -1;
  }

  template <class Rule, class... Parameters, class... Arguments>
  [[gnu::noinline]] int textPlain(IfNotConnected absent, Rule rule, Method<Parameters...> method,
                                  Arguments... arguments) const {
    std::string result;
    return call(method, arguments..., &result) ? rule.store(result) : absent.value;
  }

  static android::sp<Client> newClient() { return new Client(android::String16(Client::kServiceName)); }

  static std::shared_ptr<const Slot::Callee> calleeOf(const Client& client) {
    const auto local = client.binder->queryLocalInterface(Interface::descriptor);
    const bool isLocal = local.get() == client.service.get();
    return std::make_shared<Slot::Callee>(Slot::Callee{client.service, isLocal ? nullptr : client.binder,
                                                       Interface::descriptor, implementationOf<Interface>});
  }

  /** Makes `client` the current one and its callbacks the current ones, as one step among concurrent ones. */
  template <class StoreCallbacks>
  void publish(const android::sp<Client>& client, DiedCallback onServiceDied, StoreCallbacks storeCallbacks) {
    Slot::Connection replaced;  // Outlives the lock, so that the client goes outside it.
    const std::shared_ptr<const Slot::Callee> callee = calleeOf(*client);
    const std::lock_guard lock(publishing_);
    replaced = slot_.exchange({client, onServiceDied, callee});
    storeCallbacks();
  }

  /** False without a client. */
  template <class... Parameters, class... Arguments>
  bool call(Method<Parameters...> method, const Arguments&... arguments) const {
    void* values[] = {addressOf<Parameters>(arguments)..., nullptr};
    return slot_.call(method.code,
                      ArgumentsOf<std::tuple<Parameters...>, std::tuple<Arguments...>>::kArguments, values);
  }

  /** As the binder would: on a thread of its own, since the application may hold locks around its connect. */
  static void tellOfDeath(const android::sp<Client>& client) {
    try {
      std::thread([client] { client->binderDied(client->binder); }).detach();
    } catch (const std::system_error&) {
      client->binderDied(client->binder);  // Better here than not at all.
    }
  }

  Slot slot_;
  std::mutex publishing_;
};

/** Releases a service's client when the library's static objects are destroyed. A forked child leaves it
 * alone: it is its parent's. */
template <class Client>
struct ReleaseAtExit {
  Service<Client>& service;
  const pid_t process = ::getpid();
  ~ReleaseAtExit() {
    if (::getpid() == process) service.disconnect();
  }
};

}  // namespace com::qv
