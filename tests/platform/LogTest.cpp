#include <android/log.h>
#include <errno.h>
#include <gtest/gtest.h>
#include <stdlib.h>
#include <sys/socket.h>
#include <sys/wait.h>
#include <unistd.h>

#include <array>
#include <functional>
#include <regex>
#include <string>
#include <thread>
#include <vector>

namespace {

// Runs the body in a child process, since the environment is read only once. Returns its writes to
// stderr.
std::vector<std::string> stderrOf(const std::function<void()>& body, const char* tags = nullptr) {
  int ends[2];
  EXPECT_EQ(socketpair(AF_UNIX, SOCK_SEQPACKET | SOCK_CLOEXEC, 0, ends), 0);
  const pid_t child = fork();
  if (child == 0) {
    dup2(ends[1], STDERR_FILENO);
    close(ends[0]);
    close(ends[1]);
    if (tags != nullptr) {
      setenv("ANDROID_LOG_TAGS", tags, 1);
    } else {
      unsetenv("ANDROID_LOG_TAGS");
    }
    body();
    _exit(0);
  }
  close(ends[1]);
  std::vector<std::string> writes;
  std::array<char, 0x10000> buffer;
  for (ssize_t got; (got = read(ends[0], buffer.data(), buffer.size())) > 0;) {
    writes.emplace_back(buffer.data(), static_cast<size_t>(got));
  }
  close(ends[0]);
  int status = -1;
  EXPECT_EQ(waitpid(child, &status, 0), child);
  EXPECT_EQ(status, 0);
  return writes;
}

struct Line {
  std::string priority;
  std::string tag;
  std::string text;

  bool operator==(const Line&) const = default;
};

std::ostream& operator<<(std::ostream& out, const Line& line) {
  return out << line.priority << '/' << line.tag << '/' << line.text;
}

// Removes the prefixes; fails on a line without one.
std::vector<Line> linesOf(const std::string& written) {
  static const std::regex kLine(R"(\d\d-\d\d \d\d:\d\d:\d\d\.\d{3} +\d+ +\d+ ([?VDIWEFS]) ([^ ]*) *: (.*))");
  std::vector<Line> lines;
  std::istringstream in(written);
  for (std::string line; std::getline(in, line);) {
    std::smatch parts;
    if (!std::regex_match(line, parts, kLine)) {
      ADD_FAILURE() << "not a log line: " << line;
      continue;
    }
    lines.push_back({parts[1], parts[2], parts[3]});
  }
  EXPECT_TRUE(written.empty() || written.back() == '\n');
  return lines;
}

TEST(Log, OneWriteWithAPrefixOnEveryLine) {
  struct Row {
    const char* message;
    std::vector<std::string> lines;
  };
  const Row kRows[] = {
      {"Connect call done. ", {"Connect call done. "}},
      {"ends with a newline\n", {"ends with a newline"}},
      {"two\nlines", {"two", "lines"}},
      {"a gap\n\nbetween\n", {"a gap", "", "between"}},
      {"", {""}},
      {"\n", {""}},
      {nullptr, {""}},
  };
  for (const Row& row : kRows) {
    const auto writes = stderrOf([&] { __android_log_write(ANDROID_LOG_INFO, "CallClient", row.message); });
    std::vector<Line> expected;
    for (const std::string& text : row.lines) expected.push_back({"I", "CallClient", text});
    ASSERT_EQ(writes.size(), 1u);
    EXPECT_EQ(linesOf(writes[0]), expected);
  }
}

TEST(Log, PriorityLetters) {
  const std::string letters = "??VDIWEFS?";
  const auto writes = stderrOf([&] {
    __android_log_set_minimum_priority(ANDROID_LOG_UNKNOWN);
    for (int priority = 0; priority <= 9; ++priority) __android_log_print(priority, "Tag", "%d", priority);
    __android_log_write(-1, "Tag", "-1");
    __android_log_set_minimum_priority(-1);
    __android_log_write(-1, "Tag", "-1");
  });
  ASSERT_EQ(writes.size(), letters.size() + 1);
  for (size_t i = 0; i < letters.size(); ++i) {
    EXPECT_EQ(linesOf(writes[i]), std::vector<Line>({{letters.substr(i, 1), "Tag", std::to_string(i)}}));
  }
}

TEST(Log, LongTextIsSplit) {
  std::string text;
  for (int i = 0; i < 3000; ++i) text += std::to_string(i) + (i % 100 == 50 ? "\n" : "-");
  const std::string huge(9000, 'x');
  const auto writes =
      stderrOf([&] { __android_log_write(ANDROID_LOG_DEBUG, "Tag", (text + "\n" + huge).c_str()); });
  std::string together;
  for (const std::string& written : writes) {
    EXPECT_LE(written.size(), 4096u);
    for (const Line& line : linesOf(written)) together += line.text;
  }
  std::erase(text, '\n');
  EXPECT_EQ(together, text + huge);
}

TEST(Log, MissingAndLongTags) {
  const auto writes = stderrOf([] {
    __android_log_write(ANDROID_LOG_INFO, nullptr, "text");
    __android_log_write(ANDROID_LOG_INFO, std::string(500, 't').c_str(), "text");
  });
  ASSERT_EQ(writes.size(), 2u);
  EXPECT_EQ(linesOf(writes[0]), std::vector<Line>({{"I", program_invocation_short_name, "text"}}));
  EXPECT_EQ(linesOf(writes[1]), std::vector<Line>({{"I", std::string(96, 't'), "text"}}));
}

TEST(Log, LinesOfSeveralThreads) {
  constexpr int kThreads = 4;
  constexpr int kMessages = 200;
  const auto writes = stderrOf([] {
    std::vector<std::thread> threads;
    for (int i = 0; i < kThreads; ++i) {
      threads.emplace_back([i] {
        for (int n = 0; n < kMessages; ++n) __android_log_print(ANDROID_LOG_INFO, "Tag", "%d\n%d", i, n);
      });
    }
    for (std::thread& thread : threads) thread.join();
  });
  std::array<int, kThreads> next = {};
  for (const std::string& written : writes) {
    const std::vector<Line> lines = linesOf(written);
    ASSERT_EQ(lines.size(), 2u);
    EXPECT_EQ(lines[1].text, std::to_string(next.at(std::stoul(lines[0].text))++));
  }
  for (const int count : next) EXPECT_EQ(count, kMessages);
}

TEST(Log, LogsDuringExit) {
  const auto writes = stderrOf([] {
    atexit([] { __android_log_write(ANDROID_LOG_INFO, "Tag", "exiting"); });
    for (int i = 0; i < 2; ++i) {
      std::thread([] {
        for (;;) __android_log_write(ANDROID_LOG_INFO, "Tag", "busy");
      }).detach();
    }
    usleep(10'000);
    exit(0);
  });
  bool exiting = false;
  for (const std::string& written : writes)
    exiting |= linesOf(written) == std::vector<Line>({{"I", "Tag", "exiting"}});
  EXPECT_TRUE(exiting);
}

TEST(Log, TagFilter) {
  struct Row {
    const char* tags;
    const char* tag;
    char lowestShown;
  };
  const Row kRows[] = {
      {"", "Tag", 'V'},           {"*:W", "Tag", 'W'},
      {"*:w", "Tag", 'W'},        {"*", "Tag", 'D'},
      {"*:S", "Tag", 'S'},        {"Tag:I *:S", "Tag", 'I'},
      {"*:S Tag:I", "Tag", 'I'},  {"Tag:I,*:S", "Tag", 'I'},
      {"Tag:I *:S", "Tags", 'S'}, {"Tag:I *:S", "Ta", 'S'},
      {"Tag *:E", "Tag", 'V'},    {"Tag:E Tag:D", "Tag", 'D'},
      {"Tag:E", "Other", 'V'},    {"\t Tag:Q Tag: Tag:IE  Tag:F\t", "Tag", 'F'},
  };
  const std::string letters = "VDIWEFS";
  for (const Row& row : kRows) {
    std::string shown;
    for (const std::string& written : stderrOf(
             [&] {
               for (int p = ANDROID_LOG_VERBOSE; p <= ANDROID_LOG_SILENT; ++p)
                 __android_log_write(p, row.tag, "text");
             },
             row.tags)) {
      shown += linesOf(written).at(0).priority;
    }
    EXPECT_EQ(shown, letters.substr(letters.find(row.lowestShown))) << row.tags << " for " << row.tag;
  }
}

std::vector<std::string>& taken() {
  static std::vector<std::string> messages;
  return messages;
}

void take(const __android_log_message* message) {
  EXPECT_EQ(message->struct_size, sizeof(*message));
  EXPECT_EQ(message->buffer_id, LOG_ID_MAIN);
  taken().push_back(std::to_string(message->priority) + "/" + message->tag + "/" + message->message);
  errno = EIO;
}

class Logger : public testing::Test {
 protected:
  void SetUp() override { __android_log_set_logger(take); }
  void TearDown() override {
    __android_log_set_logger(nullptr);
    __android_log_set_minimum_priority(ANDROID_LOG_DEFAULT);
    taken().clear();
  }
};

TEST_F(Logger, ReceivesTheMessageUnchanged) {
  errno = ENOENT;
  EXPECT_EQ(__android_log_print(ANDROID_LOG_INFO, "CallClient", "%s is died. \n", "call"), 1);
  EXPECT_EQ(errno, ENOENT);
  __android_log_print(ANDROID_LOG_DEBUG, "CallClient", "%s", std::string(3000, 'x').c_str());
  EXPECT_EQ(taken(), std::vector<std::string>(
                         {"4/CallClient/call is died. \n", "3/CallClient/" + std::string(1023, 'x')}));
}

TEST_F(Logger, MinimumPriority) {
  EXPECT_EQ(__android_log_is_loggable(ANDROID_LOG_DEBUG, "Tag", ANDROID_LOG_INFO), 0);
  EXPECT_EQ(__android_log_is_loggable(ANDROID_LOG_INFO, "Tag", ANDROID_LOG_INFO), 1);
  EXPECT_EQ(__android_log_set_minimum_priority(ANDROID_LOG_WARN), ANDROID_LOG_DEFAULT);
  EXPECT_EQ(__android_log_is_loggable(ANDROID_LOG_INFO, "Tag", ANDROID_LOG_INFO), 0);
  EXPECT_EQ(__android_log_write(ANDROID_LOG_INFO, "Tag", "no"), -EPERM);
  EXPECT_EQ(__android_log_print(ANDROID_LOG_WARN, "Tag", "yes"), 1);
  EXPECT_EQ(__android_log_set_minimum_priority(ANDROID_LOG_DEFAULT), ANDROID_LOG_WARN);
  EXPECT_EQ(taken(), std::vector<std::string>({"5/Tag/yes"}));
}

TEST_F(Logger, NullRestoresTheDefault) {
  const auto writes = stderrOf([] {
    __android_log_set_logger(nullptr);
    __android_log_write(ANDROID_LOG_INFO, "Tag", "text");
  });
  ASSERT_EQ(writes.size(), 1u);
}

}  // namespace
