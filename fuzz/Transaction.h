#pragma once

#include "Fuzz.h"
#include "Interfaces.h"

namespace vesk::fuzz {

/** One of the transactions of which the inputs of StubFuzz and ProxyFuzz consist. */
struct Transaction {
  /** Its place among interfaces(). */
  uint8_t interface;
  /** For a stub: `data` is all there is, and no token stands before it. For a proxy: the transaction fails
   * with `flags`. */
  bool isRaw;
  uint32_t code;
  uint32_t flags;
  /** For a stub: what its method answers. For a proxy: the arguments. */
  Bytes answers;
  /** The arguments that a stub gets or the reply that a proxy gets. */
  Bytes data;
};

/** No more of one input, so that the inputs stay small. */
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
    // One of the methods, or 0xffff and so on, down, for what is none.
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
