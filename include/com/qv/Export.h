#pragma once

/** Marks what libvesk_client.so exports; everything else in it is hidden. */
#define COM_QV_EXPORT __attribute__((visibility("default")))
