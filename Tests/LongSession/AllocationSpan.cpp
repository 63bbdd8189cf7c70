#include "LongSession/AllocationSpan.h"

#include <atomic>
#include <cstddef>
#include <cstdlib>
#include <new>
#if defined(__APPLE__)
#include <malloc/malloc.h>
#else
#include <malloc.h>
#endif

namespace {

std::atomic<std::int64_t> requestCount{0};
std::atomic<std::int64_t> heldBytes{0};
std::atomic<std::int64_t> mostHeldBytes{0};

std::int64_t sizeOf(void* memory) {
#if defined(__APPLE__)
  return static_cast<std::int64_t>(malloc_size(memory));
#else
  return static_cast<std::int64_t>(malloc_usable_size(memory));
#endif
}

void count(void* memory) {
  requestCount.fetch_add(1, std::memory_order_relaxed);
  const std::int64_t held = heldBytes.fetch_add(sizeOf(memory), std::memory_order_relaxed) + sizeOf(memory);
  std::int64_t most = mostHeldBytes.load(std::memory_order_relaxed);
  while (held > most && !mostHeldBytes.compare_exchange_weak(most, held, std::memory_order_relaxed)) {
  }
}

}  // namespace

namespace quellin::testing_support {

AllocationSpan::AllocationSpan()
    : requestsBefore_(requestCount.load(std::memory_order_relaxed)),
      heldBefore_(heldBytes.load(std::memory_order_relaxed)) {
  mostHeldBytes.store(heldBefore_, std::memory_order_relaxed);
}

std::int64_t AllocationSpan::requests() const {
  return requestCount.load(std::memory_order_relaxed) - requestsBefore_;
}

std::int64_t AllocationSpan::mostHeld() const {
  return mostHeldBytes.load(std::memory_order_relaxed) - heldBefore_;
}

}  // namespace quellin::testing_support

void* operator new(std::size_t size) {
  if (void* memory = std::malloc(size)) {
    count(memory);
    return memory;
  }
  throw std::bad_alloc{};
}

void* operator new(std::size_t size, const std::nothrow_t&) noexcept {
  void* memory = std::malloc(size);
  if (memory != nullptr) count(memory);
  return memory;
}

void operator delete(void* memory) noexcept {
  if (memory != nullptr) heldBytes.fetch_sub(sizeOf(memory), std::memory_order_relaxed);
  std::free(memory);
}
void operator delete(void* memory, std::size_t) noexcept { operator delete(memory); }
void operator delete(void* memory, const std::nothrow_t&) noexcept { operator delete(memory); }
