#include "quellin/Measuring/HostTree.h"

#include <filesystem>

#include "quellin/Outcome/Failure.h"

#ifdef __linux__
#include "QuellinCore/Platform/Linux/LinuxSources.h"
#endif

namespace quellin::cli {

#ifdef __linux__

PlatformSources hostTree(const std::string& folder) {
  const std::filesystem::path root{folder};
  if (!std::filesystem::is_directory(root / "sys")) {
    throw Failure{ExitStatus::failed,
                  "--source " + folder +
                      ": the folder has no sys/. Name a folder with a copy of a machine's sys/ "
                      "(and proc/), or the file of a trace."};
  }
  return linuxSources(directoryTree((root / "sys").string()), directoryTree((root / "proc").string()));
}

#else

PlatformSources hostTree(const std::string& folder) {
  throw Failure{
      ExitStatus::failed,
      "--source " + folder + " is a folder; kernel files can be read on Linux only. Name a trace instead."};
}

#endif

}  // namespace quellin::cli
