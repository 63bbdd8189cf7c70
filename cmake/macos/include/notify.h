#pragma once

// Declarations of the notification-state functions used here, for builds on hosts without the macOS SDK.
// With the SDK this folder is not on the include path.

#include <stdint.h>

#define NOTIFY_STATUS_OK 0

extern "C" {

uint32_t notify_register_check(const char* name, int* token);
uint32_t notify_get_state(int token, uint64_t* state);
uint32_t notify_cancel(int token);

}  // extern "C"
