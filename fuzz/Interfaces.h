#pragma once

#include <binder/Binder.h>
#include <binder/Status.h>

#include "Fuzz.h"

namespace vesk::fuzz {

/** One of the interfaces, with its stub and its proxy. */
struct Interface {
  const android::String16& descriptor;
  uint32_t methods;
  /** Makes a stub that reads every argument and takes its results from `answers`. */
  android::sp<android::BBinder> (*stub)();
  /** Calls the method of that code through a proxy for `remote`. */
  android::binder::Status (*call)(uint32_t code, const android::sp<android::IBinder>& remote,
                                  Input* arguments, const android::sp<android::IBinder>& object);
};

std::span<const Interface> interfaces();

/** The results of the stubs' methods, and the number of calls to these. */
extern Input answers;
extern int calls;

/** An input of StubFuzz or ProxyFuzz is a sequence of these. */
struct Transaction {
  /** An index into interfaces(). */
  uint8_t interface;
  /** For a stub: no token precedes `data`. For a proxy: the transaction fails with the status
   * `flags`. */
  bool isRaw;
  uint32_t code;
  uint32_t flags;
  /** For a stub: the results of its method. For a proxy: the arguments. */
  Bytes answers;
  /** For a stub: the arguments. For a proxy: the reply. */
  Bytes data;
};

/** The limit for one input, which keeps inputs small. */
constexpr int kMostTransactions = 32;

template <class F>
void forEachTransaction(Bytes bytes, F f) {
  using android::IBinder;
  constexpr uint32_t kSpecial[] = {0, IBinder::PING_TRANSACTION, IBinder::DUMP_TRANSACTION,
                                   IBinder::INTERFACE_TRANSACTION, 0xffffffff};
  Input input(bytes);
  for (int left = kMostTransactions; left > 0 && !input.empty(); --left) {
    Transaction transaction{};
    const uint8_t head = input.byte();
    transaction.interface = static_cast<uint8_t>(head % interfaces().size());
    const uint32_t methods = interfaces()[transaction.interface].methods;
    // 0xffff and down select a special code, everything else a method.
    const uint16_t code = input.number<uint16_t>();
    const size_t special = 0xffffu - code;
    transaction.code = special < std::size(kSpecial) ? kSpecial[special] : 1 + code % (methods + 1);
    if (head >= 128) {
      transaction.isRaw = true;
      transaction.flags = input.number<uint32_t>();
    }
    transaction.answers = input.block();
    transaction.data = input.take(input.number<uint16_t>());
    f(transaction);
  }
}

}  // namespace vesk::fuzz
