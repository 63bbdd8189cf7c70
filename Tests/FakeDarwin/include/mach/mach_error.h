#pragma once

#include <mach/mach.h>

extern "C" char* mach_error_string(kern_return_t code);
