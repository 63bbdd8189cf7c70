#pragma once

// The call of the dynamic loader that the Darwin sources use, for hosts without it.

#include <stdint.h>

extern "C" {

int _NSGetExecutablePath(char* buffer, uint32_t* size);

}  // extern "C"
