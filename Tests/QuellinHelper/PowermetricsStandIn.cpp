#include "QuellinHelper/PowermetricsStandIn.h"

#include <fcntl.h>
#include <filesystem>
#include <sched.h>
#include <stdexcept>
#include <sys/mount.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include "QuellinCore/Support/FileDescriptor.h"
#include "QuellinHelper/MeasuringScript.h"
#include "Support/ProgramRun.h"

namespace quellin::testing_support {
namespace {

const std::string place = "/usr/bin/powermetrics";

bool leaveSharedView() {
  return unshare(CLONE_NEWNS) == 0 && mount("none", "/", nullptr, MS_REC | MS_PRIVATE, nullptr) == 0;
}

// Tried in a process of its own, which alone is changed by it.
bool allowsOwnView() {
  const pid_t processID = fork();
  if (processID == 0) _exit(leaveSharedView() ? 0 : 1);
  int status = 1;
  return waitpid(processID, &status, 0) == processID && status == 0;
}

void writeProgram(const std::string& path, const std::string& text) {
  const FileDescriptor file{open(path.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, S_IRUSR | S_IWUSR)};
  require(write(file.get(), text.data(), text.size()) == static_cast<ssize_t>(text.size()) &&
              fchmod(file.get(), 0755) == 0,
          path.c_str());
}

}  // namespace

PowermetricsStandIn::PowermetricsStandIn(const std::string& body) : programs_(folder_.pathOf("bin")) {
  if (!allowsOwnView()) {
    throw std::runtime_error(
        "the system allows no mount view of our own, and the real " + place +
        " is not replaced: run this test with CAP_SYS_ADMIN, or leave out the label needs-root");
  }
  std::filesystem::permissions(folder_.path(), std::filesystem::perms{0777});
  std::filesystem::create_directory(programs_);
  script_ = "#!" + programs_ + "/sh\nPATH=" + programs_ + "\n" + std::string{outputOfArguments} + body;
}

void PowermetricsStandIn::enter() const {
  require(leaveSharedView(), "own view of the file system");
  require(mount("/usr/bin", programs_.c_str(), nullptr, MS_BIND, nullptr) == 0, "programs");
  require(mount("none", "/usr/bin", "tmpfs", MS_NOSUID, "mode=755") == 0, "empty /usr/bin");
  writeProgram(place, script_);
}

}  // namespace quellin::testing_support
