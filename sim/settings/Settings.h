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

/**
 * The values that are set, by key. Texts and records are stored as their bytes, numbers in decimal,
 * switches as 1 or 0.
 */
using Values = std::map<std::string, std::string>;

/** Joins the parts with slashes. Different parts give different keys. */
std::string joinKey(std::initializer_list<std::string_view> parts);
/** Adds a part to a key. */
void extendKey(std::string& key, std::string_view part);

/** The numbers that directly follow `prefix` in keys. */
std::set<int32_t> numbersAfter(const Values& values, const std::string& prefix);
/** Erases the keys with `number` directly after `prefix`, and decreases greater numbers there by
 * one. */
void eraseNumbered(Values& values, const std::string& prefix, int32_t number);

/** The settings of the device. Changes take effect at once, but are lost at the end of the device
 * unless they are saved. Thread-safe. */
class Settings {
 public:
  explicit Settings(std::shared_ptr<Store> store) : store_(std::move(store)) {}

  /** Loads the values that were saved last, or `factory` if none were saved. False, with the reason
   * in `error`, if the store fails. */
  bool load(const Values& factory, std::string* error);
  /** Saves all values. If it fails, none of them is saved. */
  bool save(std::string* error) const;

  /** Runs `action` on the values under the lock. */
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
