#pragma once

#include "console/Console.h"

namespace sim {

/**
 * The prompt on a terminal: lines can be edited, are kept for later devices, and are completed by the Tab
 * key. There is one at most, for one thread.
 */
class Prompt {
 public:
  explicit Prompt(Console& console);
  /** Gives the terminal back as it was. */
  ~Prompt();
  Prompt(const Prompt&) = delete;
  Prompt& operator=(const Prompt&) = delete;

  /** Readable when something was printed in the prompt's place. */
  int printedFd() const { return printedFd_; }
  void redraw();

  /** The terminal has something to read. False at its end, or when Ctrl-D has been typed. */
  bool read();

 private:
  void begin();
  void take(const char* line);

  Console& console_;
  int printedFd_;
  bool open_ = true;
};

}  // namespace sim
