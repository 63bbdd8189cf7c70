#include "Support/ProcessResources.h"

#include <filesystem>
#include <iterator>
#include <sys/resource.h>

#if defined(__has_feature)
#define QUELLIN_HAS_FEATURE(feature) __has_feature(feature)
#else
#define QUELLIN_HAS_FEATURE(feature) 0
#endif

#if defined(__SANITIZE_ADDRESS__) || defined(__SANITIZE_THREAD__) || \
    QUELLIN_HAS_FEATURE(address_sanitizer) || QUELLIN_HAS_FEATURE(thread_sanitizer)
#define QUELLIN_HEAP_OF_SANITIZER
// From the interface of the sanitizers, whose header does not come with every compiler.
extern "C" std::size_t __sanitizer_get_current_allocated_bytes();
#elif defined(__APPLE__)
#include <malloc/malloc.h>
#else
#include <malloc.h>
#endif

namespace quellin::testing_support {

std::int64_t heapBytesInUse() {
#if defined(QUELLIN_HEAP_OF_SANITIZER)
  return static_cast<std::int64_t>(__sanitizer_get_current_allocated_bytes());
#elif defined(__APPLE__)
  return static_cast<std::int64_t>(mstats().bytes_used);
#else
  const auto heap = mallinfo2();
  return static_cast<std::int64_t>(heap.uordblks + heap.hblkhd);
#endif
}

std::int64_t peakResidentBytes() {
  rusage usage{};
  ::getrusage(RUSAGE_SELF, &usage);
#if defined(__APPLE__)
  constexpr std::int64_t unit = 1;
#else
  constexpr std::int64_t unit = 1024;
#endif
  return std::int64_t{usage.ru_maxrss} * unit;
}

std::size_t openDescriptors() {
  // The one that reads the folder is among them, every time.
  return static_cast<std::size_t>(std::distance(std::filesystem::directory_iterator("/dev/fd"), {}));
}

}  // namespace quellin::testing_support
