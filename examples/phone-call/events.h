/*
 * The way of an event from the library to the application's main thread.
 *
 * The callbacks run on threads of the library, and the service waits for each of them. So they do one thing:
 * copy the event into a queue. The main thread takes it out when it likes.
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

/* The states that the simulated device puts into the last four bytes of a call's record. */
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
  int value;           /* how many members a conference has */
  char text[128];      /* what came of a call; the number that can be completed */
  vesk_call_info call; /* for EVENT_CALL_NEW and EVENT_CALL_STATE */
};

/* The callbacks to give to connect_call_service. */
void on_new_call(void* call_info);
void on_call_state(void* call_info);
void on_call_gone(int chan);
void on_call_result(const char* text);
void on_conference_start(int conference, const int* members, int count);
void on_conference_stop(int conference);
void on_completion(void* completion_info, bool free_now);
void on_service_died(void);

/* Waits for the next event; false if none comes in time. */
bool next_event(struct event* event, int patience_ms);

void sleep_ms(int ms);
/* The time since some moment that stays the same. */
long now_ms(void);

/* Prints a line with the time since the start before it. */
void tell(const char* format, ...) __attribute__((format(printf, 1, 2)));

#endif
