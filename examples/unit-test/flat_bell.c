#include "flat_bell.h"

#include <stdatomic.h>
#include <vesk/vesk_client.h>

/* Callbacks run on threads of the library. */
static atomic_bool works;
static atomic_int refusals;

static void on_make_call_ret(const char* text) {
  (void)text;
  ++refusals;
}

static void on_service_died(void) { works = false; }

bool flat_bell_connect(void) {
  /* First, since the service may die right after the connect. */
  works = true;
  if (!connect_call_service(NULL, NULL, NULL, NULL, NULL, NULL, NULL, NULL, NULL, NULL, NULL, NULL, NULL,
                            NULL, on_make_call_ret, NULL, NULL, NULL, on_service_died)) {
    works = false;
    return false;
  }
  return true;
}

bool flat_bell_works(void) { return works; }

int flat_bell_ring(const char* const* numbers, size_t count) {
  const int line = binder_get_first_valid_line();
  if (line < 0) return -1;
  for (size_t i = 0; i < count; ++i) {
    const int chan = binder_make_call(line, numbers[i]);
    if (chan >= 0) return chan;
  }
  return -1;
}

int flat_bell_refusals(void) { return refusals; }
