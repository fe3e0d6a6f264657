/*
 * Passes events from the library's threads to the application's main thread.
 *
 * The service waits until a callback returns. So the callbacks only copy the event into a queue,
 * from which the main thread takes it.
 */
#ifndef EVENTS_H
#define EVENTS_H

#include <stdbool.h>

#include <vesk/vesk_client.h>

enum event_kind {
  EVENT_CALL_NEW,
  EVENT_CALL_STATE,
  EVENT_CALL_GONE,
  EVENT_CALL_RESULT,
  EVENT_CONFERENCE_START,
  EVENT_CONFERENCE_STOP,
  EVENT_COMPLETION,
  EVENT_SERVICE_DIED,
};

/* The states of a call, which the simulated device stores in the last four bytes of the record. */
enum call_state {
  STATE_DIALLING = 1,
  STATE_RINGING,
  STATE_INCOMING,
  STATE_TALKING,
  STATE_HELD,
  STATE_CONFERENCE,
  STATE_CONFERENCE_HELD,
  STATE_ENDED,
};

struct event {
  enum event_kind kind;
  int chan;            /* of the call, or 0 */
  int state;           /* of the call, or 0 */
  int value;           /* the number of members of a conference */
  char text[128];      /* the reason of a refusal, or the number that is free now */
  vesk_call_info call; /* for EVENT_CALL_NEW and EVENT_CALL_STATE */
};

/* The callbacks for connect_call_service. */
void on_new_call(void* call_info);
void on_call_state(void* call_info);
void on_call_gone(int chan);
void on_call_result(const char* text);
void on_conference_start(int conference, const int* members, int count);
void on_conference_stop(int conference);
void on_completion(void* completion_info, bool free_now);
void on_service_died(void);

/* Waits for the next event. False after the timeout. */
bool next_event(struct event* event, int timeout_ms);

void sleep_ms(int ms);
/* The time of a monotonic clock. */
long now_ms(void);

/* Prints a line that begins with the time since the first line. */
void print_line(const char* format, ...) __attribute__((format(printf, 1, 2)));

#endif
