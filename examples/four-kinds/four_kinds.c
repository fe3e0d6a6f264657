/* The four kinds of results, a number, a text, a record and a list of records, and their
 * failures. */
#include <assert.h>
#include <stdint.h>
#include <stdio.h>
#include <string.h>
#include <vesk/vesk_client.h>

static void show_number(void) {
  /* -1 is a failure, but may also be the answer of the service. */
  const int line = binder_get_first_valid_line();
  if (line < 0) {
    puts("there is no line");
  } else {
    printf("the first line is %d\n", line);
  }
}

static void show_text(void) {
  char greeting[32] = "";
  binder_set_greeting_word("Good morning");
  /* A long text is truncated; the buffer always ends with a zero byte. Without a connection it
   * keeps its content. */
  binder_get_greeting_word(greeting, sizeof(greeting));
  printf("the greeting is '%s'\n", greeting);
}

static void show_record(void) {
  /* The layout of the simulated device, from docs/simulated-device.md. */
  struct {
    int32_t device, outputs, enabled, reserved;
    char name[64];
    char address[24];
  } record;
  static_assert(sizeof(record) == VESK_RELAY_DEV_CONFIG_SIZE, "the relay");
  /* A failure leaves the buffer untouched. */
  if (binder_get_relay_dev_config(1, &record) == 0) {
    printf("the relay '%s' has %d outputs\n", record.name, (int)record.outputs);
  }
}

static void show_list(void) {
  struct alarm {
    int32_t number, input, type, time;
    char text[136];
  };
  static_assert(sizeof(struct alarm) == VESK_ALARM_LOG_SIZE, "an alarm");
  vesk_records* logs = vesk_records_create(VESK_ALARM_LOG_SIZE);
  if (binder_get_alarm_logs(vesk_records_array(logs)) == 0) {
    for (size_t i = 0; i < vesk_records_count(logs); ++i) {
      const struct alarm* alarm = vesk_records_element(logs, i);
      printf("alarm %d: %s\n", (int)alarm->number, alarm->text);
    }
  }
  vesk_records_free(logs);
}

int main(void) {
  /* Not connected yet: this fails at once. */
  show_number();
  if (!connect_call_service(NULL, NULL, NULL, NULL, NULL, NULL, NULL, NULL, NULL, NULL, NULL, NULL, NULL,
                            NULL, NULL, NULL, NULL, NULL, NULL) ||
      !connect_config_service(NULL) || !connect_relay_service()) {
    return 1;
  }
  show_number();
  show_text();
  show_record();
  show_list();
  return 0;
}
