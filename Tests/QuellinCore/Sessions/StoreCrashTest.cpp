// A recording process is killed at random points, again and again, over one store after another.
// QUELLIN_CRASHES=10000 asks for that many in all.

#include <array>
#include <fcntl.h>
#include <filesystem>
#include <random>
#include <set>
#include <signal.h>
#include <spawn.h>
#include <string>
#include <sys/wait.h>
#include <unistd.h>

#include <gmock/gmock.h>

#include "QuellinCore/Sessions/PowerSessionStore.h"
#include "QuellinCore/Sessions/Storage/Database.h"
#include "QuellinCore/Sessions/Storage/Query.h"
#include "QuellinCore/Support/FileDescriptor.h"
#include "Support/AskedCount.h"
#include "Support/TemporaryFolder.h"

namespace quellin {
namespace {

constexpr int shares = 4;  // tests that share the crashes, to run side by side
constexpr int crashesPerStore = 50;

int crashesPerShare() {
  constexpr int usual = 200;
  return testing_support::askedCount("QUELLIN_CRASHES", usual, usual) / shares;
}

class Recording {
 public:
  Recording(const std::filesystem::path& store, unsigned seed) {
    auto pipe = Pipe::open();
    posix_spawn_file_actions_t actions;
    posix_spawn_file_actions_init(&actions);
    posix_spawn_file_actions_adddup2(&actions, pipe->writeEnd.get(), STDOUT_FILENO);
    std::string program = QUELLIN_CRASHING_RECORDER;
    std::string path = store.string();
    std::string seedText = std::to_string(seed);
    std::array<char*, 4> arguments{program.data(), path.data(), seedText.data(), nullptr};
    EXPECT_EQ(::posix_spawn(&process_, program.c_str(), &actions, nullptr, arguments.data(), environ), 0);
    posix_spawn_file_actions_destroy(&actions);
    acknowledgements_ = std::move(pipe->readEnd);
  }

  Recording(const Recording&) = delete;
  Recording& operator=(const Recording&) = delete;
  Recording(Recording&&) = delete;
  Recording& operator=(Recording&&) = delete;
  ~Recording() { kill(); }

  // Waits for one acknowledgement; false when the recorder is gone.
  bool read(std::set<UUID>& acknowledged) {
    UUID::Bytes id{};
    const auto count = ::read(acknowledgements_.get(), id.data(), id.size());
    if (count != static_cast<ssize_t>(id.size())) return false;
    acknowledged.insert(UUID(id));
    return true;
  }

  // True when it was the kill that ended the recorder.
  bool kill() {
    if (process_ == 0) return false;
    ::kill(process_, SIGKILL);
    int status = 0;
    ::waitpid(std::exchange(process_, 0), &status, 0);
    return WIFSIGNALED(status) && WTERMSIG(status) == SIGKILL;
  }

 private:
  pid_t process_ = 0;
  FileDescriptor acknowledgements_;
};

// Nothing that a clock would know of: just some work, so that the kill meets the recorder anywhere.
void spin(unsigned rounds) {
  volatile unsigned sink = 0;
  for (unsigned round = 0; round < rounds; ++round) sink = sink + round;
}

void expectEverythingThere(const std::filesystem::path& path, const std::set<UUID>& acknowledged) {
  PowerSessionStore store("test", path);
  Query integrity(store.container().database(), "PRAGMA integrity_check");
  ASSERT_TRUE(integrity.step());
  EXPECT_EQ(integrity.bytes(0), "ok");
  const auto session = store.activeSession();
  EXPECT_TRUE(session != nullptr || acknowledged.empty());
  if (!session) return;
  EXPECT_EQ(store.sessions().size(), 1U);
  EXPECT_TRUE(store.check(*session).isWhole());
  std::set<UUID> stored;
  for (const auto& sample : store.samples(session)) stored.insert(sample->id());
  for (const UUID& id : acknowledged) EXPECT_TRUE(stored.contains(id)) << id.text();
  // The one that was under way when the kill came may be there without its acknowledgement.
  EXPECT_LE(stored.size(), acknowledged.size() + crashesPerStore);
}

class StoreCrashTest : public testing::TestWithParam<unsigned> {};

TEST_P(StoreCrashTest, EverySampleThatWasAcknowledgedIsThere) {
  constexpr unsigned mostSamples = 30;
  constexpr unsigned mostInLongRecording = 200;  // enough for the log to move into the file
  constexpr unsigned mostRounds = 400'000;
  constexpr unsigned startRounds = 20'000'000;  // about as long as a recorder takes to make a store
  const testing_support::TemporaryFolder folder;
  std::mt19937 engine(GetParam());
  const auto random = [&] { return static_cast<unsigned>(engine()); };
  std::filesystem::path path;
  std::set<UUID> acknowledged;
  for (int crash = 0; crash < crashesPerShare(); ++crash) {
    if (crash % crashesPerStore == 0) {
      path = folder.path() / (std::to_string(crash) + ".store");
      acknowledged.clear();
    }
    Recording recording(path, random());
    const bool isLong = crash % 4 == 3;
    const unsigned wanted = random() % (isLong ? mostInLongRecording : mostSamples);
    for (unsigned count = 0; count < wanted; ++count) ASSERT_TRUE(recording.read(acknowledged)) << crash;
    spin(random() % (wanted == 0 ? startRounds : mostRounds));
    ASSERT_TRUE(recording.kill()) << crash;
    while (recording.read(acknowledged)) {
    }
    expectEverythingThere(path, acknowledged);
    if (HasFailure()) FAIL() << "crash " << crash;
  }
}

INSTANTIATE_TEST_SUITE_P(Shares, StoreCrashTest, testing::Range(1U, 1U + shares));

}  // namespace
}  // namespace quellin
