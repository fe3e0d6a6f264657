/**
 * @file
 * DSS keys (the programmable keys), those of expansion modules (MDC), and soft keys.
 *
 * A part of <vesk/config.h>. The conventions in <vesk/vesk_client.h> hold for all functions.
 */
#ifndef VESK_CONFIG_DSS_H
#define VESK_CONFIG_DSS_H

#include <assert.h>
#include <stdint.h>

#include <vesk/common.h>

#ifdef __cplusplus
extern "C" {
#endif

/* Records */

/** Sizes in bytes. */
#define VESK_DSS_DISPLAY_SIZE 776
#define VESK_DSSKEY_CONFIG_SIZE 684
#define VESK_DSSKEY_VALUE_SIZE 516
#define VESK_MDC_DSSKEY_CONFIG_SIZE 980
#define VESK_DSS_ICON_NAME_SIZE 256
#define VESK_USER_SOFTKEY_CONFIG_SIZE 72
#define VESK_SOFTKEY_ICON_NAME_SIZE 256

/** What a DSS key shows. */
typedef struct vesk_dss_display {
  char name[256];  /**< ends with a zero */
  char value[512]; /**< ends with a zero */
  uint32_t icon;   /**< for the service to interpret */
  int32_t theme;   /**< for the service to interpret */
} vesk_dss_display;
static_assert(sizeof(vesk_dss_display) == VESK_DSS_DISPLAY_SIZE, "DSS key display record");

/** The type of a DSS key and its value in words, as they cross between the library and the service. */
typedef struct vesk_dsskey_value {
  int32_t type;   /**< for the service to interpret */
  char text[512]; /**< ends with a zero */
} vesk_dsskey_value;
static_assert(sizeof(vesk_dsskey_value) == VESK_DSSKEY_VALUE_SIZE, "DSS key value record");

/** A soft key of the user. */
typedef struct vesk_user_softkey {
  char name[64]; /**< ends with a zero */
  uint32_t type; /**< for the service to interpret */
  int32_t icon;  /**< for the service to interpret */
} vesk_user_softkey;
static_assert(sizeof(vesk_user_softkey) == VESK_USER_SOFTKEY_CONFIG_SIZE, "user soft key record");

/* DSS keys. A key goes by numbers that the service gives a meaning: pages, modules, indexes. */

/**
 * Asks how many pages of DSS keys there are.
 *
 * @param value for the service to interpret
 * @return the service's answer; 0 on failure
 */
VESK_API int binder_get_dsskey_pages(int value);

/**
 * Asks how many DSS keys there are.
 *
 * @param value for the service to interpret
 * @return the service's answer; 0 on failure
 */
VESK_API int binder_get_dsskey_numbers(int value);

/**
 * Asks for the index of an empty DSS URL.
 *
 * @param value for the service to interpret
 * @return the service's answer; 0 on failure
 */
VESK_API int binder_get_empty_dss_url_index(int value);

/**
 * Asks whether the automatic choice of a line is disabled for a memory key.
 *
 * @param value for the service to interpret
 * @return 1 if so, 0 if not; 0 on failure
 */
VESK_API int binder_dss_memory_disable_auto_line(int value);

/**
 * Fetches what a DSS key shows, and logs it at debug level.
 *
 * @param      a       for the service to interpret
 * @param      b       for the service to interpret
 * @param      c       for the service to interpret
 * @param[out] display receives a vesk_dss_display of VESK_DSS_DISPLAY_SIZE bytes
 * @return 0; -1 on failure
 */
VESK_API int binder_get_dss_display(int a, int b, int c, void* display);

/**
 * Fetches the settings of a DSS key.
 *
 * @param      a      for the service to interpret
 * @param      b      for the service to interpret
 * @param      c      for the service to interpret
 * @param[out] dsskey receives a record of VESK_DSSKEY_CONFIG_SIZE bytes
 * @return 0; -1 on failure
 */
VESK_API int binder_get_dsskey_config(int a, int b, int c, void* dsskey);

/**
 * Sets the settings of a DSS key.
 *
 * @param a      for the service to interpret
 * @param b      for the service to interpret
 * @param c      for the service to interpret
 * @param dsskey a record of VESK_DSSKEY_CONFIG_SIZE bytes
 * @return 0 once the service has been asked, whatever came of it; -1 without a connection
 */
VESK_API int binder_set_dsskey_config(int a, int b, int c, const char* dsskey);

/**
 * Fetches the name of the icon of a DSS key.
 *
 * @param      index for the service to interpret
 * @param[out] name  receives a record of VESK_DSS_ICON_NAME_SIZE bytes
 * @return 0; -1 on failure
 */
VESK_API int binder_get_dss_icon_name(int index, void* name);

/* Values of DSS keys in words */

/**
 * Has the service put the value of a DSS key in words.
 *
 * @param      dsskey the settings of the key, a record of VESK_DSSKEY_CONFIG_SIZE bytes; null is a failure
 * @param[out] type   receives the type of the key; may be null
 * @param[out] buffer receives the text with a terminating zero, cut to fit; null is a failure
 * @param      size   the size of the buffer in bytes; 0 or less is a failure
 * @return 0; -1 on failure, and nothing is written
 */
VESK_API int binder_formatting_dsskey_value(const char* dsskey, int* type, char* buffer, int size);

/**
 * The reverse: has the service make the settings of a DSS key of its type and its value in words.
 *
 * @param      type   the type of the key
 * @param      text   the value, of which 511 bytes are sent; may be null, which is the same as ""
 * @param[out] dsskey receives a record of VESK_DSSKEY_CONFIG_SIZE bytes; null is a failure
 * @return 0; -1 on failure
 */
VESK_API int binder_parsing_dsskey_value(int type, const char* text, void* dsskey);

/* Expansion modules (MDC) */

/**
 * Fetches the settings of a DSS key of an expansion module.
 *
 * @param      a          for the service to interpret
 * @param      b          for the service to interpret
 * @param[out] mdc_dsskey receives a record of VESK_MDC_DSSKEY_CONFIG_SIZE bytes
 * @return 0; -1 on failure
 */
VESK_API int binder_get_mdc_dsskey_config(int a, int b, void* mdc_dsskey);

/**
 * Fetches the settings of the first DSS key of an expansion module.
 *
 * @param      a          for the service to interpret
 * @param[out] mdc_dsskey receives a record of VESK_MDC_DSSKEY_CONFIG_SIZE bytes
 * @return 0; -1 on failure
 */
VESK_API int binder_get_mdc_first_dsskey_config(int a, void* mdc_dsskey);

/**
 * Sets the settings of a DSS key of an expansion module.
 *
 * @param a          for the service to interpret
 * @param b          for the service to interpret
 * @param mdc_dsskey a record of VESK_MDC_DSSKEY_CONFIG_SIZE bytes
 * @return 0 once the service has been asked, whatever came of it; -1 without a connection
 */
VESK_API int binder_set_mdc_dsskey_config(int a, int b, const char* mdc_dsskey);

/* Requests of DSS keys */

/**
 * Sends the request of a DSS key at the side.
 *
 * @param value for the service to interpret
 */
VESK_API void binder_side_dsskey_request(int value);

/**
 * Sends the request of a function key.
 *
 * @param value for the service to interpret
 */
VESK_API void binder_func_dsskey_request(int value);

/**
 * Sends the request of a soft DSS key.
 *
 * @param value for the service to interpret
 */
VESK_API void binder_soft_dsskey_request(int value);

/**
 * Sends the request of an "ex" DSS key.
 *
 * @param value for the service to interpret
 */
VESK_API void binder_ex_dsskey_request(int value);

/**
 * Sends the request of a DSS key that opens the door.
 *
 * @param value for the service to interpret
 */
VESK_API void binder_opendoor_dsskey_request(int value);

/* Soft keys */

/**
 * Fetches a soft key of the user, and logs it at debug level.
 *
 * @param      index   which of the soft keys
 * @param[out] softkey receives a vesk_user_softkey of VESK_USER_SOFTKEY_CONFIG_SIZE bytes
 * @return 0; -1 on failure
 */
VESK_API int binder_get_user_softkey_config(int index, void* softkey);

/**
 * Asks how many soft keys there are.
 *
 * @param value for the service to interpret
 * @return the service's answer; -1 on failure
 */
VESK_API int binder_get_softkey_config_num(int value);

/**
 * Fetches the text of a soft key.
 *
 * @param      a      for the service to interpret
 * @param      b      for the service to interpret
 * @param[out] buffer receives the text, cut to fit
 * @param      size   the size of the buffer in bytes
 * @return 0; -1 without a connection
 */
VESK_API int binder_get_softkey_config_text(int a, int b, char* buffer, int size);

/**
 * Asks for the index of a soft key.
 *
 * @param a for the service to interpret
 * @param b for the service to interpret
 * @return the service's answer; -1 on failure
 */
VESK_API int binder_get_softkey_config_key_index(int a, int b);

/**
 * Sets the soft keys.
 *
 * @param value for the service to interpret
 * @return the service's answer; -1 on failure
 */
VESK_API int binder_set_softkey(int value);

/**
 * Asks for the mode of the soft keys.
 *
 * @return the service's answer; -1 on failure
 */
VESK_API int binder_get_softkey_mode(void);

/**
 * Asks for the exit style of the soft keys.
 *
 * @return the service's answer; -1 on failure
 */
VESK_API int binder_get_softkey_exit_style(void);

/**
 * Fetches the name of the icon of a soft key.
 *
 * @param      index for the service to interpret
 * @param[out] name  receives a record of VESK_SOFTKEY_ICON_NAME_SIZE bytes
 * @return 0; -1 on failure
 */
VESK_API int binder_get_softkey_icon_name(int index, void* name);

/* Expansion modules: URL and layout */

/** Sizes of the records in bytes. */
#define VESK_MDC_RECOMBINE_URL_SIZE 980
#define VESK_MDC_EXPAND_SIZE 472

/**
 * Has the service put the URL in the record of an expansion key together anew.
 *
 * @param[in,out] buf a record of VESK_MDC_RECOMBINE_URL_SIZE bytes, which is sent, and replaced by the one
 *                    that comes back; untouched on failure
 * @return 0; -1 on failure
 */
VESK_API int binder_get_mdc_recombine_url(void* buf);

/**
 * Fetches the settings of an expansion module.
 *
 * @param      a   for the service to interpret
 * @param      b   for the service to interpret
 * @param[out] out receives a record of VESK_MDC_EXPAND_SIZE bytes; untouched on failure
 * @return 0; -1 on failure
 */
VESK_API int binder_get_mdc_expand_config(int a, int b, void* out);

/**
 * Asks for the state of an expansion key.
 *
 * @param value for the service to interpret
 * @return the service's answer; 0 on failure
 */
VESK_API int binder_get_exkey_state(int value);

/* List of soft keys */

/**
 * Fetches the list of soft keys.
 *
 * @param[out] dst  receives the list as one text, cut to fit
 * @param      size the size of the buffer in bytes
 * @return 0 always
 */
VESK_API int binder_get_softkey_list(char* dst, int size);

/**
 * Sets the list of soft keys.
 *
 * @param value for the service to interpret
 * @param list  the list as one text
 * @return the service's answer; 0 on failure
 */
VESK_API int binder_set_softkey_list(int value, const char* list);

#ifdef __cplusplus
}
#endif

#endif
