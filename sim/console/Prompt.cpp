#include "console/Prompt.h"

// <editline/readline.h> does not include it.
#include <cstdio>

#include <editline/readline.h>
#include <poll.h>
#include <sys/eventfd.h>
#include <unistd.h>

#include <clocale>
#include <cstdlib>
#include <cstring>
#include <cwchar>
#include <filesystem>
#include <sstream>
#include <string>
#include <vector>

#include "console/Output.h"

namespace sim {

namespace {

constexpr const char* kPrompt = "vesk> ";
constexpr const char* kClearLine = "\r\033[K";
constexpr int kHistoryLines = 1000;

/** Empty without a directory for it. */
std::string historyFile() {
  const char* const state = std::getenv("XDG_STATE_HOME");
  const char* const home = std::getenv("HOME");
  std::filesystem::path directory;
  if (state != nullptr && *state == '/') {
    directory = state;
  } else if (home != nullptr && *home == '/') {
    directory = std::filesystem::path(home) / ".local/state";
  } else {
    return {};
  }
  directory /= "vesk-device";
  std::error_code error;
  std::filesystem::create_directories(directory, error);
  return error ? std::string() : (directory / "history").string();
}

char* nextCompletion(const char* /*text*/, int state) {
  static std::vector<std::string> found;
  static size_t next = 0;
  if (state == 0) {
    std::istringstream stream(std::string(rl_line_buffer, static_cast<size_t>(rl_point)));
    std::vector<std::string> words;
    for (std::string word; stream >> word;) words.push_back(word);
    if (words.empty() || rl_line_buffer[rl_point - 1] == ' ') words.emplace_back();
    found = completions(words);
    next = 0;
  }
  return next < found.size() ? strdup(found[next++].c_str()) : nullptr;
}

char** complete(const char* text, int /*start*/, int /*end*/) {
  rl_attempted_completion_over = 1;
  return rl_completion_matches(text, nextCompletion);
}

/** Reads a character, with a short timeout: after a lone Escape, libedit waits for the rest of a
 * sequence. */
int readCharacter(FILE* /*terminal*/) {
  constexpr int kTimeoutMs = 200;
  std::mbstate_t state{};
  for (;;) {
    pollfd fd{STDIN_FILENO, POLLIN, 0};
    char byte;
    if (poll(&fd, 1, kTimeoutMs) <= 0 || ::read(STDIN_FILENO, &byte, 1) <= 0) return EOF;
    wchar_t character;
    const size_t length = std::mbrtowc(&character, &byte, 1, &state);
    if (length <= 1) return static_cast<int>(character);
    // Skips invalid UTF-8.
    if (length == static_cast<size_t>(-1)) state = {};
  }
}

/** libedit's callback has no parameter for it. */
Prompt* current = nullptr;

}  // namespace

Prompt::Prompt(Console& console) : console_(console), printedFd_(eventfd(0, EFD_CLOEXEC | EFD_NONBLOCK)) {
  current = this;
  std::setlocale(LC_CTYPE, "");
  rl_readline_name = "vesk-device";
  rl_attempted_completion_function = complete;
  // Must precede using_history(), which initialises libedit.
  rl_getc_function = readCharacter;
  using_history();
  stifle_history(kHistoryLines);
  if (const std::string file = historyFile(); !file.empty()) read_history(file.c_str());
  begin();
  Output::self().aroundPrompt(printedFd_);
}

Prompt::~Prompt() {
  Output::self().aroundPrompt(-1);
  if (open_) rl_callback_handler_remove();
  std::fputs("\n", stdout);
  std::fflush(stdout);
  // printedFd_ stays open: the output thread may be about to use it.
  current = nullptr;
}

void Prompt::begin() {
  rl_callback_handler_install(kPrompt, [](char* line) {
    current->take(line);
    std::free(line);
  });
}

// These two change the state of libedit, which belongs to the prompt.
// NOLINTNEXTLINE(readability-make-member-function-const)
void Prompt::redraw() {
  uint64_t count;
  if (::read(printedFd_, &count, sizeof(count)) < 0 || !open_) return;
  std::fputs(kClearLine, stdout);
  rl_forced_update_display();
  std::fflush(stdout);
}

// NOLINTNEXTLINE(readability-make-member-function-const)
bool Prompt::read() {
  rl_callback_read_char();
  std::fflush(stdout);
  return open_;
}

void Prompt::take(const char* line) {
  if (line == nullptr) {
    open_ = false;
    rl_callback_handler_remove();
    Output::self().aroundPrompt(-1);
    return;
  }
  if (*line != '\0') {
    add_history(line);
    if (const std::string file = historyFile(); !file.empty()) write_history(file.c_str());
  }
  console_.run(line);
  // Without this, libedit would redraw the line and block in reading the next one.
  begin();
}

}  // namespace sim
