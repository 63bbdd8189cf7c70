#include <cstring>
#include <dlfcn.h>
#include <mach-o/dyld.h>

#include "FakeDarwin/FakeDarwin.h"

// The linker turns each call of f into one of __wrap_f, and __real_f into the host's own f.
// NOLINTBEGIN(bugprone-reserved-identifier,cert-dcl37-c,cert-dcl51-cpp,readability-identifier-naming)

using quellin::fake::FakeDarwin;

extern "C" {

void* __real_dlopen(const char* path, int mode);
void* __real_dlsym(void* library, const char* symbol);
int __real_dlclose(void* library);
char* __real_dlerror();

void* __wrap_dlopen(const char* path, int mode) {
  FakeDarwin& system = FakeDarwin::current();
  const auto failure = system.calls.enter("dlopen");
  system.loader.noteOpening(
      {.path = path == nullptr ? std::nullopt : std::optional<std::string>{path}, .mode = mode});
  if (failure) return nullptr;
  void* library = __real_dlopen(path, mode);
  if (library != nullptr) system.loader.noteOpened(library);
  return library;
}

void* __wrap_dlsym(void* library, const char* symbol) {
  FakeDarwin& system = FakeDarwin::current();
  const auto failure = system.calls.enter("dlsym");
  const bool mayBeFound = system.loader.noteLookUp(library, symbol);
  return mayBeFound && !failure ? __real_dlsym(library, symbol) : nullptr;
}

int __wrap_dlclose(void* library) {
  FakeDarwin& system = FakeDarwin::current();
  const auto failure = system.calls.enter("dlclose");
  system.loader.noteClosed(library);
  const int status = __real_dlclose(library);
  return failure.value_or(status);
}

int _NSGetExecutablePath(char* buffer, uint32_t* size) {
  FakeDarwin& system = FakeDarwin::current();
  const auto failure = system.calls.enter(__func__);
  const std::string& path = system.loader.executable;
  const uint32_t room = *size;
  *size = static_cast<uint32_t>(path.size() + 1);
  if (failure || room < *size) return -1;
  std::memcpy(buffer, path.c_str(), *size);
  return 0;
}

char* __wrap_dlerror() {
  FakeDarwin::current().calls.enter("dlerror");
  return __real_dlerror();
}

}  // extern "C"

// NOLINTEND(bugprone-reserved-identifier,cert-dcl37-c,cert-dcl51-cpp,readability-identifier-naming)
