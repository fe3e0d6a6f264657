#pragma once

#include <cstddef>
#include <vector>

namespace vesk::bench {

/** The bytes of a request and its reply. */
struct FrameSizes {
  size_t request;
  size_t reply;
};

/**
 * The baseline: pairs of stream sockets that carry the bytes of a request and its reply, without
 * any other work. To be made before the process that serves them is started.
 */
class BarePairs {
 public:
  BarePairs(size_t count, FrameSizes sizes);

  void call(size_t pair) const;
  /** In the other process: answers all calls. Does not return. */
  void serve(size_t pair) const;

  size_t count() const { return pairs_.size(); }

 private:
  struct Pair {
    int ends[2];
  };

  FrameSizes sizes_;
  std::vector<Pair> pairs_;
};

}  // namespace vesk::bench
