#pragma once

#include "console/Console.h"

namespace sim {

/** The prompt on a terminal, with line editing, history and completion. At most one exists at a
 * time, and one thread uses it. */
class Prompt {
 public:
  explicit Prompt(Console& console);
  /** Restores the terminal. */
  ~Prompt();
  Prompt(const Prompt&) = delete;
  Prompt& operator=(const Prompt&) = delete;

  /** Readable when output has replaced the prompt's line. */
  int printedFd() const { return printedFd_; }
  void redraw();

  /** Reads from the terminal. False at its end, or after Ctrl-D. */
  bool read();

 private:
  void begin();
  void take(const char* line);

  Console& console_;
  int printedFd_;
  bool open_ = true;
};

}  // namespace sim
