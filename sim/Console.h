#pragma once

#include <string>
#include <string_view>

#include "phone/LivePhone.h"

namespace sim {

/** The commands that a person or a script gives the device. */
class Console {
 public:
  explicit Console(LivePhone& phone) : phone_(phone) {}

  /** Takes bytes as they come in, and carries out each line that is complete. */
  void feed(std::string_view bytes);

  bool hasQuit() const { return quit_; }

 private:
  void run(const std::string& line);
  void showStatus();

  LivePhone& phone_;
  std::string pending_;
  bool quit_ = false;
};

}  // namespace sim
