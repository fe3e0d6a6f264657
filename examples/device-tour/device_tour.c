/*
 * Uses each of the six services of the simulated device, and checks every result. The records have
 * the layouts of that device, which docs/simulated-device.md lists.
 */

/* For nanosleep() and clock_gettime() in strict C. */
#define _POSIX_C_SOURCE 200809L

#include <assert.h>
#include <semaphore.h>
#include <stdint.h>
#include <stdio.h>
#include <string.h>
#include <time.h>

#include <vesk/vesk_client.h>

enum { TIMEOUT_S = 15, ANY_LINE = 0, DEVICE = 1, FRONT_DOOR = 1 };

/* Polls until ask(argument) returns `wanted`. False after the timeout. */
static bool wait_until(int (*ask)(int), int argument, int wanted) {
  const struct timespec pause = {.tv_nsec = 20 * 1000 * 1000};
  for (int i = 0; i < TIMEOUT_S * 50; ++i) {
    if (ask(argument) == wanted) return true;
    nanosleep(&pause, NULL);
  }
  return false;
}

/* Config: a setting, saved and read back */

static bool setting(void) {
  char value[32] = "";
  if (binder_set_config("tour", "greeting", "", "Good morning") != 0 || binder_save_config() != 0)
    return false;
  if (binder_get_config("tour", "greeting", "", value, sizeof(value)) != 0) return false;
  printf("  The greeting is '%s', and saved\n", value);
  return strcmp(value, "Good morning") == 0;
}

/* Database: a message, a contact, the call log */

enum { BOX_UNREAD = 1 };

/* This number sends each message back. */
static bool message(void) {
  const int before = binder_get_sms_count(BOX_UNREAD);
  const int sent = binder_send_sms(ANY_LINE, "300", "Is anybody there?");
  const int after = binder_get_sms_count(BOX_UNREAD);
  if (sent < 0 || after != before + 1) return false;
  binder_set_sms_read_done(sent + 1);
  const int read = binder_get_sms_count(BOX_UNREAD);
  printf("  Message %d sent, and answered: %d unread, %d once it was read\n", sent, after, read);
  return read == before;
}

struct contact {
  int32_t id;
  int32_t line;
  char name[256];
  char numbers[3][64];
  char rest[4036];
};
static_assert(sizeof(struct contact) == VESK_CONTACT_SIZE, "a contact");

static struct contact found;

static bool contact(void) {
  enum { LOCAL = 0, BY_INDEX = 1 };
  if (binder_phonebook_contact_search(LOCAL, "lind") != 1) return false;
  if (binder_phonebook_contact_retrieve(BY_INDEX, 0, &found) < 0) return false;
  printf("  'lind' is %s, %s\n", found.name, found.numbers[0]);
  return strcmp(found.numbers[0], "202") == 0;
}

struct call_log_entry {
  int32_t id;
  int32_t older;
  int32_t line;
  int32_t kind;
  uint32_t time;
  int32_t seconds;
  char number[64];
  char name[192];
};
static_assert(sizeof(struct call_log_entry) == VESK_CALL_LOG_ENTRY_SIZE, "a call");

static int have_ivr(int unused) {
  (void)unused;
  return binder_get_call_have_ivr();
}

/* An answering machine takes the call. phone_call shows how to follow a call by its events. */
static bool logged_call(void) {
  enum { NEWEST = 0 };
  const int chan = binder_make_call(binder_get_first_valid_line(), "300");
  if (chan < 0 || !wait_until(have_ivr, 0, 1)) return false;
  binder_close_call(chan);
  struct call_log_entry entry;
  if (binder_get_clog_info_by_id(NEWEST, &entry) < 0) return false;
  printf("  The newest call went to %s, %d s\n", entry.name, (int)entry.seconds);
  return strcmp(entry.number, "300") == 0;
}

/* Door access and relay: an access code opens a door */

struct door_access {
  int32_t id;
  int32_t enabled;
  int32_t door;
  uint32_t valid_from;
  uint32_t valid_until;
  int32_t granted;
  int32_t refusal;
  int32_t reserved;
  char name[128];
  char credential[64];
  char note[152];
};
static_assert(sizeof(struct door_access) == VESK_DOOR_ACCESS_SIZE, "door access");

struct relay_act {
  int32_t device;
  int32_t output;
  int32_t act;
};
static_assert(sizeof(struct relay_act) == VESK_RELAY_ACT_SIZE, "a relay's action");

static int front_door(int output) { return binder_get_relay_do_state(DEVICE, output); }

static bool door(void) {
  enum { RELAY_ON = 1 };
  struct door_access access;
  if (binderCheckDoorAccessInfo("4321", FRONT_DOOR, &access) != 0 || access.granted != 0) return false;
  printf("  4321 is refused, for reason %d\n", (int)access.refusal);
  if (binderCheckDoorAccessInfo("1234", FRONT_DOOR, &access) != 0 || access.granted != 1) return false;
  printf("  1234 is granted: %s\n", access.name);

  const struct relay_act open = {.device = DEVICE, .output = FRONT_DOOR, .act = RELAY_ON};
  if (binder_relay_set_act((const char*)&open) != 0 || front_door(FRONT_DOOR) != 1) return false;
  printf("  The front door is open\n");
  if (!wait_until(front_door, FRONT_DOOR, 0)) return false;
  printf("  The front door has closed\n");
  return true;
}

/* Misc: a recording on the USB disk, and a test with its events */

struct recording {
  int32_t seconds;
  int32_t kib;
  int32_t reserved[2];
  char file[48];
};
static_assert(sizeof(struct recording) == VESK_UDISK_RECORD_FILE_SIZE, "a recording");

enum { STOPPED, PLAYING, PAUSED };

static int play_state(int unused) {
  (void)unused;
  return binder_get_play_rec_file_state();
}

static bool play(const struct recording* recording) {
  if (recording == NULL || binder_play_rec_file_start(recording->file) != 0) return false;
  if (play_state(0) != PLAYING) return false;
  printf("  %s plays, %d s\n", recording->file, (int)recording->seconds);
  binder_play_rec_file_pause();
  if (play_state(0) != PAUSED) return false;
  binder_play_rec_file_resume();
  return wait_until(play_state, 0, STOPPED);
}

static bool recordings(void) {
  enum { DISK_READY = 1 };
  if (binder_get_udisk_status() != DISK_READY) return false;
  vesk_records* files = vesk_records_create(VESK_UDISK_RECORD_FILE_SIZE);
  const bool listed = binder_get_udisk_record_files(vesk_records_array(files)) == 0;
  printf("  The USB disk has %zu recordings\n", vesk_records_count(files));
  const bool played = listed && play(vesk_records_element(files, 0));
  vesk_records_free(files);
  if (played) printf("  The recording is over\n");
  return played;
}

/* The callbacks run on threads of the library. */
static sem_t screen_is_tested, test_is_over;

static void on_touch_screen_start(void) { sem_post(&screen_is_tested); }
static void on_test_stopped(void) { sem_post(&test_is_over); }
static void on_text(const char* text) { printf("  The test shows '%s'\n", text); }
static void ignore(void) {}
static void ignore_value(int value) { (void)value; }

static const vesk_misc_callbacks kCallbacks = {
    .on_online_ate_started = ignore,
    .on_online_ate_stopped = on_test_stopped,
    .on_update_context = on_text,
    .on_lcd_switch = ignore,
    .on_touch_screen_start = on_touch_screen_start,
    .on_touch_screen_stop = ignore,
    .on_system_reboot = ignore,
    .on_web_screenshot = ignore,
    .on_ring = ignore_value,
    .on_scan_cancel = ignore,
};

static bool wait_for(sem_t* event) {
  struct timespec deadline;
  clock_gettime(CLOCK_REALTIME, &deadline);
  deadline.tv_sec += TIMEOUT_S;
  return sem_timedwait(event, &deadline) == 0;
}

struct test_info {
  int32_t running;
  int32_t test;
  int32_t passed;
  int32_t failed;
  char text[128];
  char device[16];
};
static_assert(sizeof(struct test_info) == VESK_ATE_INFO_SIZE, "test information");

static bool test_mode(void) {
  enum { TOUCH_SCREEN = 2, PASSED = 0 };
  struct test_info info;
  if (binder_local_ate_start(TOUCH_SCREEN) != 0 || !wait_for(&screen_is_tested)) return false;
  binder_ate_touch_screen_result(PASSED, 0);
  if (!wait_for(&test_is_over) || binder_get_ate_info_config(&info) != 0) return false;
  return info.running == 0 && info.passed == 1 && info.failed == 0;
}

/* External keys: a speed dial for the contact */

struct new_key {
  int32_t module;
  int32_t key;
  int32_t type;
  int32_t line;
  char label[24];
  char value[96];
};
static_assert(sizeof(struct new_key) == VESK_BTK_CONFIG_SIZE, "a new key");

struct module_keys {
  uint8_t module;
  uint8_t keys;
  struct {
    char label[24];
    char value[46];
    uint8_t type;
    uint8_t line;
  } key[16];
};
static_assert(sizeof(struct module_keys) == VESK_EXK_CONFIG_SIZE, "the keys of a module");

static bool key_module(void) {
  enum { MODULE = 2, KEY = 5, SPEED_DIAL = 1, KEYS = 1 };
  struct new_key added = {.module = MODULE, .key = KEY, .type = SPEED_DIAL};
  snprintf(added.label, sizeof(added.label), "%.20s", found.name);
  snprintf(added.value, sizeof(added.value), "%s", found.numbers[0]);
  struct module_keys keys;
  if (binder_add_btk_config((const char*)&added) != 0 || binder_get_exk_config(MODULE, &keys) != 0)
    return false;
  printf("  Key %d of module %d calls %s, %s\n", KEY, MODULE, keys.key[KEY - 1].label,
         keys.key[KEY - 1].value);
  if (strcmp(keys.key[KEY - 1].value, found.numbers[0]) != 0) return false;
  binder_reset_exkdev_default_config(MODULE, KEYS);
  return binder_get_exk_config(MODULE, &keys) == 0 && keys.key[KEY - 1].type == 0;
}

/* NULL callbacks: phone_call shows the events of the call service. */
static bool connect_to_services(void) {
  return connect_call_service(NULL, NULL, NULL, NULL, NULL, NULL, NULL, NULL, NULL, NULL, NULL, NULL, NULL,
                              NULL, NULL, NULL, NULL, NULL, NULL) &&
         connect_config_service(NULL) && connect_database_service(NULL) &&
         connect_misc_service(kCallbacks, NULL) && connect_relay_service() && connect_external_key_service();
}

int main(void) {
  static const struct {
    const char* title;
    bool (*run)(void);
  } kParts[] = {
      {"A setting", setting},
      {"A message", message},
      {"A contact", contact},
      {"A call, and its entry in the log", logged_call},
      {"A door that opens for a code", door},
      {"Recordings", recordings},
      {"The test of the touch screen", test_mode},
      {"A key module", key_module},
  };
  setvbuf(stdout, NULL, _IOLBF, 0);
  sem_init(&screen_is_tested, 0, 0);
  sem_init(&test_is_over, 0, 0);
  if (!connect_to_services()) {
    fprintf(stderr, "not all of the six services are running\n");
    return 1;
  }
  for (size_t i = 0; i < sizeof(kParts) / sizeof(kParts[0]); ++i) {
    printf("\n%s\n", kParts[i].title);
    if (!kParts[i].run()) {
      printf("\nThis step failed.\n");
      return 1;
    }
  }
  printf("\nAll six services work.\n");
  return 0;
}
