#include "Support/RefusedCalls.h"

#if defined(__linux__)

#include <cerrno>
#include <cstddef>
#include <linux/filter.h>
#include <linux/seccomp.h>
#include <sys/prctl.h>
#include <sys/syscall.h>
#include <vector>

#include "Support/ProgramRun.h"

namespace quellin::testing_support {
namespace {

using Filter = std::vector<sock_filter>;

constexpr sock_filter refuse{.code = BPF_RET | BPF_K, .jt = 0, .jf = 0, .k = SECCOMP_RET_ERRNO | EPERM};
constexpr sock_filter allow{.code = BPF_RET | BPF_K, .jt = 0, .jf = 0, .k = SECCOMP_RET_ALLOW};

sock_filter load(std::size_t offset) {
  return {.code = BPF_LD | BPF_W | BPF_ABS, .jt = 0, .jf = 0, .k = static_cast<unsigned>(offset)};
}

// Goes on with the next instruction if the loaded value is `value`, else skips `others`.
sock_filter expect(long value, unsigned char others) {
  return {.code = BPF_JMP | BPF_JEQ | BPF_K, .jt = 0, .jf = others, .k = static_cast<unsigned>(value)};
}

void install(Filter filter) {
  const sock_fprog program{.len = static_cast<unsigned short>(filter.size()), .filter = filter.data()};
  require(prctl(PR_SET_NO_NEW_PRIVS, 1, 0, 0, 0) == 0 &&
              prctl(PR_SET_SECCOMP, SECCOMP_MODE_FILTER, &program) == 0,
          "filter");
}

}  // namespace

void refuseCall(long number) {
  install({load(offsetof(seccomp_data, nr)), expect(number, 1), refuse, allow});
}

// The lower half of the third argument comes first on the little-endian machines we test on.
void refuseOpening(int flags) {
  install({load(offsetof(seccomp_data, nr)), expect(SYS_openat, 3),
           load(offsetof(seccomp_data, args) + 2 * sizeof(seccomp_data::args[0])), expect(flags, 1), refuse,
           allow});
}

}  // namespace quellin::testing_support

#endif
