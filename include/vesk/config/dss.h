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

/** The display of a DSS key. */
typedef struct vesk_dss_display {
  char name[256];  /**< ends with a zero */
  char value[512]; /**< ends with a zero */
  uint32_t icon;   /**< the icon, as a number of the service */
  int32_t theme;   /**< the theme, as a number of the service */
} vesk_dss_display;
static_assert(sizeof(vesk_dss_display) == VESK_DSS_DISPLAY_SIZE, "DSS key display record");

/** The type of a DSS key and its value text, as the library and the service exchange them. */
typedef struct vesk_dsskey_value {
  int32_t type;   /**< the type, as a number of the service */
  char text[512]; /**< ends with a zero */
} vesk_dsskey_value;
static_assert(sizeof(vesk_dsskey_value) == VESK_DSSKEY_VALUE_SIZE, "DSS key value record");

/** A soft key of the user. */
typedef struct vesk_user_softkey {
  char name[64]; /**< ends with a zero */
  uint32_t type; /**< the type, as a number of the service */
  int32_t icon;  /**< the icon, as a number of the service */
} vesk_user_softkey;
static_assert(sizeof(vesk_user_softkey) == VESK_USER_SOFTKEY_CONFIG_SIZE, "user soft key record");

/* DSS keys. The service defines the numbers that select a key: page, module, index. */

/** Returns the number of pages of DSS keys; 0 on failure. */
VESK_API int binder_get_dsskey_pages(int value);

/** Returns the number of DSS keys; 0 on failure. */
VESK_API int binder_get_dsskey_numbers(int value);

/** Returns the index of an empty DSS URL; 0 on failure. */
VESK_API int binder_get_empty_dss_url_index(int value);

/** Returns whether automatic line selection is disabled for a memory key; 0 on failure. */
VESK_API int binder_dss_memory_disable_auto_line(int value);

/** Fetches the display of a DSS key (vesk_dss_display) and logs it at debug level. */
VESK_API int binder_get_dss_display(int a, int b, int c, void* display);

/** Fetches the settings of a DSS key (VESK_DSSKEY_CONFIG_SIZE bytes). */
VESK_API int binder_get_dsskey_config(int a, int b, int c, void* dsskey);

/**
 * Sets the settings of a DSS key (VESK_DSSKEY_CONFIG_SIZE bytes). Returns 0 even if the call fails;
 * -1 without a connection.
 */
VESK_API int binder_set_dsskey_config(int a, int b, int c, const char* dsskey);

/** Fetches the name of the icon of a DSS key (VESK_DSS_ICON_NAME_SIZE bytes). */
VESK_API int binder_get_dss_icon_name(int index, void* name);

/* Value texts of DSS keys */

/**
 * Converts the settings of a DSS key to its type and its value text.
 *
 * @param      dsskey VESK_DSSKEY_CONFIG_SIZE bytes; null: -1
 * @param[out] type   may be null
 * @param[out] buffer receives the text, cut to fit; null: -1. Untouched on failure
 * @param      size   0 or less: -1
 */
VESK_API int binder_formatting_dsskey_value(const char* dsskey, int* type, char* buffer, int size);

/**
 * Converts the type and the value text of a DSS key to its settings.
 *
 * @param      text   at most 511 bytes of it are sent; null stands for ""
 * @param[out] dsskey VESK_DSSKEY_CONFIG_SIZE bytes; null: -1
 */
VESK_API int binder_parsing_dsskey_value(int type, const char* text, void* dsskey);

/* Expansion modules (MDC) */

/** Fetches the settings of a DSS key of an expansion module (VESK_MDC_DSSKEY_CONFIG_SIZE bytes). */
VESK_API int binder_get_mdc_dsskey_config(int a, int b, void* mdc_dsskey);

/**
 * Fetches the settings of the first DSS key of an expansion module (VESK_MDC_DSSKEY_CONFIG_SIZE
 * bytes).
 */
VESK_API int binder_get_mdc_first_dsskey_config(int a, void* mdc_dsskey);

/**
 * Sets the settings of a DSS key of an expansion module (VESK_MDC_DSSKEY_CONFIG_SIZE bytes).
 * Returns 0 even if the call fails; -1 without a connection.
 */
VESK_API int binder_set_mdc_dsskey_config(int a, int b, const char* mdc_dsskey);

/* Requests of DSS keys */

/** Sends the request of a side DSS key. */
VESK_API void binder_side_dsskey_request(int value);

/** Sends the request of a function key. */
VESK_API void binder_func_dsskey_request(int value);

/** Sends the request of a soft DSS key. */
VESK_API void binder_soft_dsskey_request(int value);

/** Sends the request of an "ex" DSS key. */
VESK_API void binder_ex_dsskey_request(int value);

/** Sends the request of a DSS key that opens the door. */
VESK_API void binder_opendoor_dsskey_request(int value);

/* Soft keys */

/** Fetches a soft key of the user (vesk_user_softkey) and logs it at debug level. */
VESK_API int binder_get_user_softkey_config(int index, void* softkey);

/** Returns the number of soft keys. */
VESK_API int binder_get_softkey_config_num(int value);

/** Fetches the text of a soft key. */
VESK_API int binder_get_softkey_config_text(int a, int b, char* buffer, int size);

/** Returns the index of a soft key. */
VESK_API int binder_get_softkey_config_key_index(int a, int b);

/** Sets the soft keys. */
VESK_API int binder_set_softkey(int value);

/** Returns the mode of the soft keys. */
VESK_API int binder_get_softkey_mode(void);

/** Returns the exit style of the soft keys. */
VESK_API int binder_get_softkey_exit_style(void);

/** Fetches the name of the icon of a soft key (VESK_SOFTKEY_ICON_NAME_SIZE bytes). */
VESK_API int binder_get_softkey_icon_name(int index, void* name);

/* Expansion modules: URL and layout */

/** Sizes of the records in bytes. */
#define VESK_MDC_RECOMBINE_URL_SIZE 980
#define VESK_MDC_EXPAND_SIZE 472

/**
 * Recombines the URL in the record of an expansion module's key.
 *
 * @param[in,out] buf VESK_MDC_RECOMBINE_URL_SIZE bytes; the answer replaces the whole record
 */
VESK_API int binder_get_mdc_recombine_url(void* buf);

/** Fetches the settings of an expansion module (VESK_MDC_EXPAND_SIZE bytes). */
VESK_API int binder_get_mdc_expand_config(int a, int b, void* out);

/** Returns the state of an expansion key; 0 on failure. */
VESK_API int binder_get_exkey_state(int value);

/* Soft key list */

/** Fetches the list of soft keys. Always returns 0. */
VESK_API int binder_get_softkey_list(char* dst, int size);

/** Sets the list of soft keys. Returns 0 on failure. */
VESK_API int binder_set_softkey_list(int value, const char* list);

#ifdef __cplusplus
}
#endif

#endif
