/* The platform's log. Lines go to stderr in logcat's "threadtime" form unless a logger is set. */
#pragma once

#include <stdarg.h>
#include <stddef.h>
#include <stdint.h>

#ifdef __cplusplus
extern "C" {
#endif

typedef enum android_LogPriority {
  ANDROID_LOG_UNKNOWN = 0,
  ANDROID_LOG_DEFAULT,
  ANDROID_LOG_VERBOSE,
  ANDROID_LOG_DEBUG,
  ANDROID_LOG_INFO,
  ANDROID_LOG_WARN,
  ANDROID_LOG_ERROR,
  ANDROID_LOG_FATAL,
  ANDROID_LOG_SILENT
} android_LogPriority;

typedef enum log_id {
  LOG_ID_MIN = 0,
  LOG_ID_MAIN = 0,
  LOG_ID_RADIO = 1,
  LOG_ID_EVENTS = 2,
  LOG_ID_SYSTEM = 3,
  LOG_ID_CRASH = 4,
  LOG_ID_STATS = 5,
  LOG_ID_SECURITY = 6,
  LOG_ID_KERNEL = 7,
  LOG_ID_MAX,
  LOG_ID_DEFAULT = 0x7FFFFFFF
} log_id_t;

/**
 * Writes one message. All three return 1, or -EPERM for a priority below the minimum.
 *
 * @param prio an android_LogPriority
 * @param tag  the sender; null for the program's name
 * @param text the message; '\n' separates lines, and a final '\n' adds no line
 */
int __android_log_write(int prio, const char* tag, const char* text);

/** The same with a printf format. The text is truncated to 1023 bytes. */
int __android_log_print(int prio, const char* tag, const char* fmt, ...)
    __attribute__((format(printf, 3, 4)));
int __android_log_vprint(int prio, const char* tag, const char* fmt, va_list ap)
    __attribute__((format(printf, 3, 0)));

/** A message for the logger. */
struct __android_log_message {
  size_t struct_size; /**< sizeof(struct __android_log_message) */
  int32_t buffer_id;  /**< a log_id_t */
  int32_t priority;   /**< an android_LogPriority */
  const char* tag;    /**< null for the program's name */
  const char* file;   /**< source file, or null */
  uint32_t line;      /**< line in that file */
  const char* message;
};

/** Receives a message, on the thread that logs and on several threads at once. The strings are
 * valid only during the call. */
typedef void (*__android_logger_function)(const struct __android_log_message* log_message);

/** Passes the message to the logger regardless of the minimum priority, after replacing a null tag
 * or message. */
void __android_log_write_log_message(struct __android_log_message* log_message);

/** Sets the logger of this process. Null stands for the default, __android_log_stderr_logger. */
void __android_log_set_logger(__android_logger_function logger);

/**
 * Writes the message to stderr, each line after date, time, process, thread, priority and tag, in a
 * single write.
 *
 * The environment variable ANDROID_LOG_TAGS filters the messages: a list of `tag:priority`,
 * separated by blanks or commas, for example "CallClient:I *:S". `*` stands for all other tags; the
 * priority is one of V D I W E F S (silent), V if left out. Without a `*` all messages of other
 * tags are written. The variable is read once, at the first message.
 */
void __android_log_stderr_logger(const struct __android_log_message* log_message);

/** True if a message would reach the logger. `default_prio` is the minimum if none is set. */
int __android_log_is_loggable(int prio, const char* tag, int default_prio);

/**
 * Sets the lowest priority that reaches the logger. ANDROID_LOG_DEFAULT, the initial value, is no
 * limit.
 *
 * @return the previous minimum
 */
int32_t __android_log_set_minimum_priority(int32_t priority);
int32_t __android_log_get_minimum_priority(void);

#ifdef __cplusplus
}
#endif
