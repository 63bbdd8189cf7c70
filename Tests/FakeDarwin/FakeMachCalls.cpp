#include <array>
#include <cstdio>
#include <mach/mach.h>
#include <mach/mach_error.h>

extern "C" {

mach_port_t mach_task_self_ = 0x203;

char* mach_error_string(kern_return_t code) {
  static std::array<char, 32> text{};
  std::snprintf(text.data(), text.size(), "error 0x%08x", static_cast<unsigned>(code));
  return text.data();
}

}  // extern "C"
