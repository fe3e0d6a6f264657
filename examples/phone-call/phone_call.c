/*
 * A first application: it makes and takes phone calls through the call service and prints the
 * events.
 *
 *   phone_call            a call, a conference, an engaged number, an incoming call
 *   phone_call --outage   then also waits until the call service is killed and started again
 *
 * It exits with 0 only if every step succeeded. The numbers and the states of a call are those of
 * the simulated device; see docs/simulated-device.md.
 */
#include <stdio.h>
#include <string.h>

#include <vesk/vesk_client.h>

#include "events.h"

enum { TIMEOUT_MS = 15000, MOMENT_MS = 400 };

/* Connecting */

/* The service may not be running yet, or still be down. Each attempt waits a few seconds. */
static bool connect_to_service(void) {
  for (int tries = 0; tries < 5; ++tries) {
    if (connect_call_service(NULL, NULL, NULL, on_new_call, on_call_state, NULL, NULL, on_call_gone, NULL,
                             on_conference_start, on_conference_stop, NULL, NULL, NULL, on_call_result, NULL,
                             NULL, on_completion, on_service_died)) {
      print_line("Connected to the call service");
      return true;
    }
    print_line("The call service isn't there");
    sleep_ms(MOMENT_MS);
  }
  return false;
}

/* Prints the event in words. EVENT_CALL_GONE only repeats that a call has ended. */
static void print_event(const struct event* event) {
  static const char* const kWords[] = {
      [STATE_DIALLING] = "Dialling",     [STATE_RINGING] = "Ringing",
      [STATE_INCOMING] = "Call from",    [STATE_TALKING] = "Talking to",
      [STATE_HELD] = "On hold:",         [STATE_CONFERENCE] = "In conference:",
      [STATE_CONFERENCE_HELD] = "Held:", [STATE_ENDED] = "End of call with",
  };
  const vesk_call_info* call = &event->call;
  switch (event->kind) {
    case EVENT_CALL_NEW:
    case EVENT_CALL_STATE:
      print_line("%-16s %s (%s), line %d", kWords[event->state],
                 call->name[0] != '\0' ? call->name : "somebody", call->number, (int)call->line);
      break;
    case EVENT_CALL_GONE:
      break;
    case EVENT_CALL_RESULT:
      print_line("No call: %s", event->text);
      break;
    case EVENT_CONFERENCE_START:
      print_line("A conference of %d begins", event->value);
      break;
    case EVENT_CONFERENCE_STOP:
      print_line("The conference is over");
      break;
    case EVENT_COMPLETION:
      print_line("The phone offers to call %s when it is free", event->text);
      break;
    case EVENT_SERVICE_DIED:
      print_line("The call service has died");
      break;
  }
}

/* Waits for one event, and prints all events up to it. */
static bool wait_for(enum event_kind kind, int chan, int state) {
  struct event event;
  while (next_event(&event, TIMEOUT_MS)) {
    print_event(&event);
    if (event.kind == kind && event.chan == chan && event.state == state) return true;
    if (event.kind == EVENT_SERVICE_DIED) return false;
  }
  print_line("Timed out waiting for event %d, channel %d, state %d", kind, chan, state);
  return false;
}

static bool wait_for_state(int chan, int state) { return wait_for(EVENT_CALL_STATE, chan, state); }

/* Leaves the call as it is for a moment. */
static bool a_moment(void) {
  const long end = now_ms() + MOMENT_MS;
  struct event event;
  while (now_ms() < end) {
    if (next_event(&event, (int)(end - now_ms()))) print_event(&event);
  }
  return true;
}

/* Calling */

static bool dial(const char* number, int* chan) {
  *chan = binder_make_call(binder_get_first_valid_line(), number);
  if (*chan < 0) print_line("%s can't be called", number);
  return *chan >= 0;
}

static bool call_and_talk(const char* number, int* chan) {
  return dial(number, chan) && wait_for_state(*chan, STATE_RINGING) && wait_for_state(*chan, STATE_TALKING);
}

static bool hang_up(int chan) {
  binder_close_call(chan);
  return wait_for_state(chan, STATE_ENDED) && wait_for(EVENT_CALL_GONE, chan, 0);
}

static bool set_hold(int chan, bool hold) {
  binder_set_call_hold_status(chan, hold);
  return wait_for_state(chan, hold ? STATE_HELD : STATE_TALKING);
}

static bool one_call(void) {
  int alice;
  return call_and_talk("200", &alice) && a_moment() && set_hold(alice, true) && a_moment() &&
         set_hold(alice, false) && a_moment() && hang_up(alice);
}

static bool conference(void) {
  int alice, ben;
  /* The first call goes on hold by itself when the second is made. */
  if (!call_and_talk("200", &alice) || !call_and_talk("201", &ben)) return false;
  binder_add_conference_members((const int[]){ben, alice}, 2);
  return wait_for(EVENT_CONFERENCE_START, 0, 0) && wait_for_state(ben, STATE_CONFERENCE) &&
         wait_for_state(alice, STATE_CONFERENCE) && a_moment() && hang_up(ben) &&
         wait_for(EVENT_CONFERENCE_STOP, 0, 0) && hang_up(alice);
}

static bool engaged_number(void) {
  int chan;
  return dial("221", &chan) && wait_for(EVENT_CALL_RESULT, 0, 0) && wait_for(EVENT_CALL_GONE, chan, 0) &&
         wait_for(EVENT_COMPLETION, 0, 0);
}

/* This number hangs up soon, and calls back. */
static bool incoming_call(void) {
  int chan;
  if (!call_and_talk("250", &chan) || !wait_for(EVENT_CALL_GONE, chan, 0)) return false;
  /* Its channel is free again, so the call that comes in gets the same one. */
  if (!wait_for(EVENT_CALL_NEW, chan, STATE_INCOMING)) return false;
  binder_headset_answer_call();
  return wait_for_state(chan, STATE_TALKING) && a_moment() && hang_up(chan);
}

/* Without a service every function fails at once; after connecting again all is as before. */
static bool outage(void) {
  int chan;
  if (!call_and_talk("202", &chan)) return false;
  print_line("Now the call service may die, within %d s", TIMEOUT_MS / 1000);
  if (!wait_for(EVENT_SERVICE_DIED, 0, 0)) return false;
  if (binder_make_call(1, "202") != -1) return false;
  return connect_to_service() && call_and_talk("202", &chan) && a_moment() && hang_up(chan);
}

int main(int argc, char** argv) {
  static const struct {
    const char* title;
    bool (*run)(void);
  } kParts[] = {
      {"A call, held and resumed", one_call},
      {"A conference", conference},
      {"An engaged number", engaged_number},
      {"A call that comes in", incoming_call},
      {"The call service dies and comes back", outage},
  };
  const bool with_outage = argc == 2 && strcmp(argv[1], "--outage") == 0;
  if (argc > 1 && !with_outage) {
    fprintf(stderr, "usage: phone_call [--outage]\n");
    return 2;
  }
  if (!connect_to_service()) return 1;

  const size_t count = sizeof(kParts) / sizeof(kParts[0]) - (with_outage ? 0 : 1);
  for (size_t i = 0; i < count; ++i) {
    printf("\n%s\n", kParts[i].title);
    if (!kParts[i].run()) {
      printf("\nThis step failed.\n");
      return 1;
    }
  }
  printf("\nAll went well.\n");
  return 0;
}
