#pragma once

#include <cstddef>
#include <vector>

namespace vesk::bench {

/** How many bytes go there and back. */
struct Exchange {
  size_t request;
  size_t reply;
};

/**
 * What everything is compared with: stream sockets that carry as many bytes each way, and nothing else. To be
 * made before the process of the other ends is started.
 */
class BarePairs {
 public:
  BarePairs(size_t count, Exchange exchange);

  void call(size_t pair) const;
  /** In the other process: answers for ever. */
  void serve(size_t pair) const;

  size_t count() const { return pairs_.size(); }

 private:
  struct Pair {
    int ends[2];
  };

  Exchange exchange_;
  std::vector<Pair> pairs_;
};

}  // namespace vesk::bench
