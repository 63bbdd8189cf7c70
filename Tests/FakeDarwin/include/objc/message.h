#pragma once

#include <objc/runtime.h>

// Called through a pointer of the message's own type only, as on a Mac.
extern "C" void objc_msgSend(void);
