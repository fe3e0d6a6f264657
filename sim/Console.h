#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "Device.h"

namespace sim {

/** The commands that a person or a script gives the device. */
class Console {
 public:
  explicit Console(Device& device) : device_(device) {}

  /** Takes bytes as they come in, and carries out each line that is complete. */
  void feed(std::string_view bytes);

  bool hasQuit() const { return quit_; }

 private:
  void run(const std::string& line);
  /** False if it is none of these. */
  bool runMisc(const std::vector<std::string>& words);
  void showStatus();

  Device& device_;
  std::string pending_;
  bool quit_ = false;
};

}  // namespace sim
