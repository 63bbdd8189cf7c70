#include "QuellinCore/Support/OwnEnvironment.h"

#if defined(__APPLE__)
#include <crt_externs.h>
#else
#include <unistd.h>
#endif

namespace quellin {

char** ownEnvironment() {
#if defined(__APPLE__)
  return *_NSGetEnviron();
#else
  return environ;
#endif
}

}  // namespace quellin
