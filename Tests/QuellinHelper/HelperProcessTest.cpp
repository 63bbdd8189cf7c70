// The tool as a process: every byte it writes and how it ends, whoever starts it and however.

#include <array>
#include <csignal>
#include <fcntl.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <unistd.h>

#include <gtest/gtest.h>

#include "Support/ProgramRun.h"
#include "Support/TemporaryFolder.h"

namespace quellin {
namespace {

using testing_support::becomeOrdinaryUser;
using testing_support::installProgram;
using testing_support::ordinaryUser;
using testing_support::ProgramResult;
using testing_support::require;
using testing_support::runProgram;
using testing_support::TemporaryFolder;

const std::string tool = QUELLIN_HELPER;
const std::vector<std::string> commands{"status-json", "read-temperatures-json", "read-pro-telemetry-json"};

const ProgramResult usage{
    .error = "usage: QuellinHelper status-json|read-temperatures-json|read-pro-telemetry-json\n",
    .exitStatus = 64};
const ProgramResult notRoot{.error = "QuellinHelper must run with effective uid 0\n", .exitStatus = 77};
const ProgramResult outputLost{.exitStatus = 74};

std::string statusDocument(const std::string& group, const std::string& path) {
  return R"({"isInstalled":true,"isExecutable":true,"isSetuidRoot":true,"ownerUserID":0,"groupID":)" + group +
         R"(,"installedVersion":"0.9.4","supportsProTelemetry":true,"path":")" + path + "\"}\n";
}

ProgramResult success(std::string output) { return {.output = std::move(output), .exitStatus = 0}; }

ProgramResult run(const std::vector<std::string>& arguments, const std::function<void()>& prepare = [] {}) {
  return runProgram({.executable = tool, .arguments = arguments, .prepare = prepare});
}

/// Copies of the tool where every user can run them.
class InstalledTool {
 public:
  InstalledTool(unsigned owner, unsigned mode) : path(folder_.pathOf("QuellinHelper")) {
    chmod(folder_.path().c_str(), 0755);
    installProgram(tool, path, owner, mode);
  }

 private:
  TemporaryFolder folder_;

 public:
  const std::string path;
};

TEST(HelperProcessTest, WithoutAKnownCommandWordItPrintsItsUsage) {
  const std::vector<std::vector<std::string>> cases{{"tool"},
                                                    {"tool", ""},
                                                    {"tool", "STATUS-JSON"},
                                                    {"tool", "status-json "},
                                                    {"tool", "Read-Temperatures-Json"},
                                                    {"tool", "--help"},
                                                    {"tool", "unknown", "status-json"}};
  for (const auto& arguments : cases) EXPECT_EQ(run(arguments), usage) << testing::PrintToString(arguments);
}

// Newer kernels give a program without arguments one empty argument; older ones and macOS give it none.
TEST(HelperProcessTest, NotEvenAProgramNameIsAUsageErrorToo) { EXPECT_EQ(run({}), usage); }

TEST(HelperProcessTest, ClosedErrorStreamLeavesTheExitStatus) {
  EXPECT_EQ(run({"tool"}, [] { close(STDERR_FILENO); }), (ProgramResult{.exitStatus = 64}));
}

TEST(HelperProcessNeedsRootTest, StatusIsOneLineAndNamesTheToolAsTyped) {
  const std::string group = std::to_string(getegid());
  EXPECT_EQ(run({"a b/\"tool", "status-json"}), success(statusDocument(group, R"(a b\/\"tool)")));
  EXPECT_EQ(run({"", "status-json"}), success(statusDocument(group, "")));
}

TEST(HelperProcessNeedsRootTest, FurtherArgumentsAreIgnored) {
  EXPECT_EQ(run({"tool", "status-json", "read-temperatures-json", "--help", ""}),
            success(statusDocument(std::to_string(getegid()), "tool")));
}

TEST(HelperProcessNeedsRootTest, RelativePathIsReportedAsTyped) {
  const std::size_t slash = tool.rfind('/');
  const std::string folder = tool.substr(0, slash);
  const std::string name = "." + tool.substr(slash);
  const ProgramResult result =
      runProgram({.executable = name, .arguments = {name, "status-json"}, .prepare = [&] {
                    require(chdir(folder.c_str()) == 0, "folder");
                  }});
  EXPECT_EQ(result, success(statusDocument(std::to_string(getegid()), ".\\/" + name.substr(2))));
}

TEST(HelperProcessNeedsRootTest, TemperaturesAreOneArrayOnOneLine) {
  const ProgramResult result = run({"tool", "read-temperatures-json"});
  EXPECT_TRUE(result.output.starts_with("[") && result.output.ends_with("]\n")) << result.output;
  EXPECT_EQ(result.output.find('\n'), result.output.size() - 1);
  EXPECT_EQ(result.error, "");
  EXPECT_EQ(result.exitStatus, 0);
}

TEST(HelperProcessNeedsRootTest, OrdinaryUserIsTurnedAwayButOnlyWithAKnownCommandWord) {
  const InstalledTool plain{0, 0755};
  for (const std::string& command : commands) {
    EXPECT_EQ(runProgram({plain.path, {"tool", command}, {}, becomeOrdinaryUser}), notRoot);
  }
  EXPECT_EQ(runProgram({plain.path, {"tool", "nonsense"}, {}, becomeOrdinaryUser}), usage);
  EXPECT_EQ(runProgram({plain.path, {"tool"}, {}, becomeOrdinaryUser}), usage);
}

TEST(HelperProcessNeedsRootTest, SetUserIDToolAnswersAnOrdinaryUser) {
  const InstalledTool installed{0, 04755};
  EXPECT_EQ(runProgram({installed.path, {"tool", "status-json"}, {}, becomeOrdinaryUser}),
            success(statusDocument(std::to_string(ordinaryUser), "tool")));
  EXPECT_EQ(runProgram({installed.path, {"tool", "unknown"}, {}, becomeOrdinaryUser}), usage);
}

TEST(HelperProcessNeedsRootTest, SetUserIDToolOfItsCallerIsNotRoot) {
  const InstalledTool installed{ordinaryUser, 04755};
  EXPECT_EQ(runProgram({installed.path, {"tool", "status-json"}, {}, becomeOrdinaryUser}), notRoot);
}

TEST(HelperProcessNeedsRootTest, HostileEnvironmentIsHarmless) {
  const InstalledTool installed{0, 04755};
  const TemporaryFolder hostile;
  chmod(hostile.path().c_str(), 0755);
  // Each is an unusable library: whoever loads it cannot even start, or complains.
  for (const std::string name : {"libc.so.6", "libm.so.6", "evil.so"}) hostile.write(name, "not a library");
  const std::string folder = hostile.path().string();
  const std::vector<std::string> environment{"LD_PRELOAD=" + folder + "/evil.so",
                                             "LD_AUDIT=" + folder + "/evil.so",
                                             "LD_LIBRARY_PATH=" + folder,
                                             "DYLD_INSERT_LIBRARIES=" + folder + "/evil.so",
                                             "GLIBC_TUNABLES=glibc.malloc.mxfast=glibc.malloc.mxfast=A",
                                             "TMPDIR=" + folder,
                                             "PATH=" + folder,
                                             "LC_ALL=xx_XX",
                                             "IFS=/",
                                             "no equals sign"};
  EXPECT_EQ(runProgram({installed.path, {"tool", "status-json"}, environment, becomeOrdinaryUser}),
            success(statusDocument(std::to_string(ordinaryUser), "tool")));
}

TEST(HelperProcessNeedsRootTest, HostileProcessStateIsHarmless) {
  const InstalledTool installed{0, 04755};
  const auto prepare = [] {
    becomeOrdinaryUser();
    sigset_t every{};
    sigfillset(&every);
    pthread_sigmask(SIG_SETMASK, &every, nullptr);
    for (const int number : {SIGCHLD, SIGPIPE, SIGTERM})
      require(std::signal(number, SIG_IGN) != SIG_ERR, "ignore");
    for (const int number : {3, 9, 77}) require(dup2(STDIN_FILENO, number) == number, "descriptor");
    close(STDIN_FILENO);
    umask(0);
    require(chdir("/tmp") == 0, "folder");
  };
  EXPECT_EQ(runProgram({installed.path, {"tool", "status-json"}, {}, prepare}),
            success(statusDocument(std::to_string(ordinaryUser), "tool")));
}

TEST(HelperProcessNeedsRootTest, DocumentThatGoesNowhereIsAFailure) {
  const std::vector<std::string> arguments{"tool", "status-json"};
  EXPECT_EQ(run(arguments, [] { close(STDOUT_FILENO); }), outputLost) << "closed";
  EXPECT_EQ(run(arguments,
                [] {
                  std::array<int, 2> ends{};
                  require(pipe(ends.data()) == 0 && dup2(ends[1], STDOUT_FILENO) >= 0 && close(ends[0]) == 0,
                          "pipe");
                }),
            outputLost)
      << "pipe without a reader";
  EXPECT_EQ(
      run(arguments, [] { require(dup2(open("/dev/null", O_RDONLY), STDOUT_FILENO) >= 0, "read-only"); }),
      outputLost)
      << "not open for writing";
  const TemporaryFolder folder;
  EXPECT_EQ(run(arguments,
                [path = folder.pathOf("output")] {
                  const int file = open(path.c_str(), O_WRONLY | O_CREAT, 0600);
                  const rlimit none{};
                  require(dup2(file, STDOUT_FILENO) >= 0 && setrlimit(RLIMIT_FSIZE, &none) == 0, "limit");
                }),
            outputLost)
      << "file that may not grow";
}

/// Fills the pipe that is standard output, so that the tool cannot write at first.
void fillOutput(bool staysNonBlocking) {
  require(fcntl(STDOUT_FILENO, F_SETFL, O_NONBLOCK) == 0, "non-blocking");
  std::array<char, 4096> filling{};
  filling.fill('x');
  for (std::size_t size : {filling.size(), std::size_t{1}}) {
    while (write(STDOUT_FILENO, filling.data(), size) > 0) {
    }
  }
  require(errno == EAGAIN && (staysNonBlocking || fcntl(STDOUT_FILENO, F_SETFL, 0) == 0), "full");
}

TEST(HelperProcessNeedsRootTest, FullPipeIsWaitedFor) {
  const std::string document = statusDocument(std::to_string(getegid()), "tool");
  for (const bool staysNonBlocking : {false, true}) {
    const ProgramResult result =
        run({"tool", "status-json"}, [staysNonBlocking] { fillOutput(staysNonBlocking); });
    const std::size_t start = result.output.find_first_not_of('x');
    ASSERT_GT(start, 4095U);
    ASSERT_NE(start, std::string::npos);
    EXPECT_EQ(result.output.substr(start), document);
    EXPECT_EQ(result.exitStatus, 0);
  }
}

}  // namespace
}  // namespace quellin
