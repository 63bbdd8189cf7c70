#pragma once

// The few names of the dispatch library that the Darwin sources use, for hosts without it.

typedef struct dispatch_queue_s* dispatch_queue_t;
typedef void (*dispatch_function_t)(void*);

extern "C" {

dispatch_queue_t dispatch_get_main_queue(void) noexcept;
void dispatch_async_f(dispatch_queue_t queue, void* context, dispatch_function_t work) noexcept;

}  // extern "C"
