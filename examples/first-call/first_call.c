/* Calls 200, talks for a while and hangs up. */
#include <stdio.h>
#include <unistd.h>

#include <vesk/vesk_client.h>

/* Callbacks run on threads of the library. */
static void on_call_state_changed(void* call_info) {
  const vesk_call_info* call = call_info;
  printf("news of the call to %s (%s) on line %d\n", call->name, call->number, (int)call->line);
}

static void on_make_call_ret(const char* text) { printf("no call: %s\n", text); }

int main(void) {
  /* Events without a callback are dropped. */
  if (!connect_call_service(NULL, NULL, NULL, NULL, on_call_state_changed, NULL, NULL, NULL, NULL, NULL, NULL,
                            NULL, NULL, NULL, on_make_call_ret, NULL, NULL, NULL, NULL)) {
    fprintf(stderr, "the call service isn't there\n");
    return 1;
  }
  const int chan = binder_make_call(binder_get_first_valid_line(), "200");
  if (chan < 0) return 1;
  sleep(3);
  binder_close_call(chan);
  sleep(1);
  return 0;
}
