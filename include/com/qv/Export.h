#pragma once

/** Marks what libvesk_client.so exports; everything else in it is hidden. */
#define COM_QV_EXPORT __attribute__((visibility("default")))
/** Marks a member of an exported class that nobody outside of the library calls by name. */
#define COM_QV_HIDDEN __attribute__((visibility("hidden")))
