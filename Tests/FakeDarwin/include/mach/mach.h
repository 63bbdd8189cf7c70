#pragma once

// The few names of the Mach kernel interface that the Darwin sources use, for hosts without one.

extern "C" {

typedef int kern_return_t;
typedef unsigned int mach_port_t;
typedef mach_port_t task_port_t;

extern mach_port_t mach_task_self_;

}  // extern "C"

#define mach_task_self() mach_task_self_
#define KERN_SUCCESS 0
#define MACH_PORT_NULL 0
