#include "FakeDarwin/FakeDarwin.h"

#include <cstdlib>

namespace quellin::fake {
namespace {

FakeDarwin* currentSystem = nullptr;  // C functions have no other way to reach the test they run in

}  // namespace

FakeDarwin::FakeDarwin() {
  if (currentSystem != nullptr) std::abort();
  currentSystem = this;
}

FakeDarwin::~FakeDarwin() { currentSystem = nullptr; }

FakeDarwin& FakeDarwin::current() {
  if (currentSystem == nullptr) std::abort();
  return *currentSystem;
}

std::vector<std::string> FakeDarwin::leaks() const {
  std::vector<std::string> leaked = objects.leaks();
  for (const auto& more :
       {ioKit.leaks(), loader.leaks(), notify.leaks(), objectiveC.leaks(), dispatch.leaks()}) {
    leaked.insert(leaked.end(), more.begin(), more.end());
  }
  return leaked;
}

}  // namespace quellin::fake
