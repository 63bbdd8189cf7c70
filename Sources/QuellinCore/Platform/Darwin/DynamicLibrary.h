#pragma once

#include <dlfcn.h>

#include "QuellinCore/Platform/Darwin/Owned.h"

namespace quellin::darwin {

struct LibraryKind {
  using Handle = void*;
  static void release(void* library) { dlclose(library); }
};

/// Owner of a handle from `dlopen`. Functions found in the library live as long as it.
using OwnedLibrary = Owned<LibraryKind>;

/// Looks functions up in a library by name and remembers the first that had to be there and was not. The
/// library must outlive it.
class SymbolResolver {
 public:
  explicit SymbolResolver(const OwnedLibrary& library) : library_(&library) {}

  /// Finds a function that has to be there. Does nothing once one is missing.
  template <class Function>
  void require(const char* name, Function*& function) {
    if (missing_ != nullptr) return;
    find(name, function);
    if (function == nullptr) missing_ = name;
  }

  /// Finds a function that need not be there; null when it is not.
  template <class Function>
  void find(const char* name, Function*& function) const {
    function = reinterpret_cast<Function*>(dlsym(library_->get(), name));
  }

  /// The name of the first missing function; null when all are there.
  [[nodiscard]] const char* missing() const { return missing_; }

 private:
  const OwnedLibrary* library_;
  const char* missing_ = nullptr;
};

}  // namespace quellin::darwin
