#pragma once

// The host's threads, and the one question that only macOS answers.
#include_next <pthread.h>

extern "C" int pthread_main_np(void);
