#pragma once

/** Exports a C++ class from libvesk_client.so, where symbols are hidden by default. */
#define COM_QV_EXPORT __attribute__((visibility("default")))
/** Hides a member of an exported class that is only used inside the library. */
#define COM_QV_HIDDEN __attribute__((visibility("hidden")))
