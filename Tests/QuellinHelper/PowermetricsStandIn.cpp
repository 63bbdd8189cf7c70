#include "QuellinHelper/PowermetricsStandIn.h"

#include <fcntl.h>
#include <filesystem>
#include <sched.h>
#include <stdexcept>
#include <sys/file.h>
#include <sys/mount.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include "Support/ProgramRun.h"

namespace quellin::testing_support {
namespace {

const std::string place = "/usr/bin/powermetrics";

bool leaveSharedView() {
  return unshare(CLONE_NEWNS) == 0 && mount("none", "/", nullptr, MS_REC | MS_PRIVATE, nullptr) == 0;
}

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

PowermetricsStandIn::PowermetricsStandIn(const std::string& body)
    : programs_(folder_.pathOf("bin")), hasOwnView_(allowsOwnView()) {
  std::filesystem::permissions(folder_.path(), std::filesystem::perms{0777});
  std::filesystem::create_directory(programs_);
  if (!hasOwnView_) programs_ = "/usr/bin";
  script_ = "#!" + programs_ + "/sh\nPATH=" + programs_ +
            "\nwhile [ \"$1\" != -o ]; do shift; done; output=$2\n" + body;
  if (!hasOwnView_) occupyRealPlace();
}

PowermetricsStandIn::~PowermetricsStandIn() {
  if (!hasOwnView_) unlink(place.c_str());
}

void PowermetricsStandIn::enter() const {
  if (!hasOwnView_) return;
  require(leaveSharedView(), "own view of the file system");
  require(mount("/usr/bin", programs_.c_str(), nullptr, MS_BIND, nullptr) == 0, "programs");
  require(mount("none", "/usr/bin", "tmpfs", MS_NOSUID, "mode=755") == 0, "empty /usr/bin");
  writeProgram(place, script_);
}

void PowermetricsStandIn::occupyRealPlace() {
  turn_ =
      FileDescriptor{open("/tmp/QuellinHelperTests.turn", O_RDWR | O_CREAT | O_CLOEXEC, S_IRUSR | S_IWUSR)};
  if (!turn_ || flock(turn_.get(), LOCK_EX) != 0) throw std::runtime_error("no turn for " + place);
  if (std::filesystem::exists(place)) throw std::runtime_error(place + " exists");
  writeProgram(place, script_);
}

}  // namespace quellin::testing_support
