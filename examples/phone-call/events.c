/* For clock_gettime() and nanosleep() in strict C. */
#define _POSIX_C_SOURCE 200809L

#include "events.h"

#include <pthread.h>
#include <stdarg.h>
#include <stddef.h>
#include <stdio.h>
#include <string.h>
#include <time.h>

/* Far more than are ever pending at once. */
enum { QUEUE_SIZE = 64, MS_PER_S = 1000, NS_PER_MS = 1000000 };

static pthread_mutex_t lock = PTHREAD_MUTEX_INITIALIZER;
static pthread_cond_t arrived = PTHREAD_COND_INITIALIZER;
static struct event queue[QUEUE_SIZE];
static size_t first, count;

static void put(const struct event* event) {
  pthread_mutex_lock(&lock);
  if (count < QUEUE_SIZE) {
    queue[(first + count++) % QUEUE_SIZE] = *event;
  } else {
    fprintf(stderr, "the queue is full: an event is lost\n");
  }
  pthread_cond_signal(&arrived);
  pthread_mutex_unlock(&lock);
}

bool next_event(struct event* event, int timeout_ms) {
  struct timespec deadline;
  clock_gettime(CLOCK_REALTIME, &deadline);
  deadline.tv_sec += timeout_ms / MS_PER_S;
  deadline.tv_nsec += (long)(timeout_ms % MS_PER_S) * NS_PER_MS;
  if (deadline.tv_nsec >= (long)MS_PER_S * NS_PER_MS) {
    deadline.tv_sec += 1;
    deadline.tv_nsec -= (long)MS_PER_S * NS_PER_MS;
  }

  pthread_mutex_lock(&lock);
  int error = 0;
  while (count == 0 && error == 0) error = pthread_cond_timedwait(&arrived, &lock, &deadline);
  const bool found = count > 0;
  if (found) {
    *event = queue[first];
    first = (first + 1) % QUEUE_SIZE;
    --count;
  }
  pthread_mutex_unlock(&lock);
  return found;
}

static void put_call(enum event_kind kind, const void* call_info) {
  struct event event = {.kind = kind};
  int32_t state;
  memcpy(&event.call, call_info, sizeof(event.call));
  /* The simulated device stores the state in the last four bytes. */
  memcpy(&state, (const char*)call_info + VESK_CALL_INFO_SIZE - sizeof(state), sizeof(state));
  event.chan = event.call.chan;
  event.state = state;
  put(&event);
}

void on_new_call(void* call_info) { put_call(EVENT_CALL_NEW, call_info); }

void on_call_state(void* call_info) { put_call(EVENT_CALL_STATE, call_info); }

void on_call_gone(int chan) { put(&(struct event){.kind = EVENT_CALL_GONE, .chan = chan}); }

void on_call_result(const char* text) {
  struct event event = {.kind = EVENT_CALL_RESULT};
  snprintf(event.text, sizeof(event.text), "%s", text);
  put(&event);
}

void on_conference_start(int conference, const int* members, int member_count) {
  (void)conference;
  (void)members;
  put(&(struct event){.kind = EVENT_CONFERENCE_START, .value = member_count});
}

void on_conference_stop(int conference) {
  (void)conference;
  put(&(struct event){.kind = EVENT_CONFERENCE_STOP});
}

void on_completion(void* completion_info, bool free_now) {
  struct event event = {.kind = EVENT_COMPLETION, .value = free_now};
  const vesk_call_completion_info* info = completion_info;
  snprintf(event.text, sizeof(event.text), "%.127s", info->dialNumber);
  put(&event);
}

void on_service_died(void) { put(&(struct event){.kind = EVENT_SERVICE_DIED}); }

long now_ms(void) {
  struct timespec time;
  clock_gettime(CLOCK_MONOTONIC, &time);
  return (long)time.tv_sec * MS_PER_S + time.tv_nsec / NS_PER_MS;
}

void sleep_ms(int ms) {
  const struct timespec time = {.tv_sec = ms / MS_PER_S, .tv_nsec = (long)(ms % MS_PER_S) * NS_PER_MS};
  nanosleep(&time, NULL);
}

void print_line(const char* format, ...) {
  static long start;
  if (start == 0) start = now_ms();
  printf("%6.2f  ", (double)(now_ms() - start) / MS_PER_S);

  va_list args;
  va_start(args, format);
  vprintf(format, args);
  va_end(args);
  printf("\n");
  fflush(stdout);
}
