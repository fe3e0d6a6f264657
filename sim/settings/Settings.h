#pragma once

#include <cstdint>
#include <initializer_list>
#include <map>
#include <memory>
#include <mutex>
#include <set>
#include <string>
#include <string_view>
#include <utility>

#include "store/Store.h"

namespace sim {

/** Everything that is set, by key: texts and records as their bytes, numbers in decimal, switches as 1 or 0.
 */
using Values = std::map<std::string, std::string>;

/** Joins the parts with slashes, so that no other parts have the same key. */
std::string joinKey(std::initializer_list<std::string_view> parts);
/** Adds a part to a key. */
void extendKey(std::string& key, std::string_view part);

/** The numbers that follow `prefix` in keys, whatever stands behind them. */
std::set<int32_t> numbersAfter(const Values& values, const std::string& prefix);
/** Erases what is numbered `number` after `prefix`; those above move down by one. */
void eraseNumbered(Values& values, const std::string& prefix, int32_t number);

/** The settings of the device. A change is there at once, but survives the device only if it is saved. For
 * any thread. */
class Settings {
 public:
  explicit Settings(std::shared_ptr<Store> store) : store_(std::move(store)) {}

  /** Takes what was saved last, or `factory` if nothing ever was. False, with the reason in `error`, if the
   * store fails. */
  bool load(const Values& factory, std::string* error);
  /** Saves all of it, or, if that fails, nothing. */
  bool save(std::string* error) const;

  /** Runs `action` on the values, with nobody else at them. */
  template <typename Action>
  auto use(Action&& action) {
    const std::lock_guard lock(mutex_);
    return std::forward<Action>(action)(values_);
  }

 private:
  const std::shared_ptr<Store> store_;
  mutable std::mutex mutex_;
  Values values_;
};

}  // namespace sim
