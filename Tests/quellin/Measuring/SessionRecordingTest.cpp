#include <cstdint>
#include <filesystem>
#include <optional>
#include <utility>

#include <gmock/gmock.h>

#include "QuellinCore/Sessions/Storage/Database.h"
#include "Support/SQLWork.h"
#include "Support/TemporaryFolder.h"
#include "quellin/Measuring/SessionRecording.h"
#include "quellin/Outcome/Failure.h"
#include "quellin/Support/BusyStore.h"
#include "quellin/Support/ExampleOptions.h"
#include "quellin/Support/LoopRuns.h"
#include "quellin/Support/OldSessions.h"
#include "quellin/Support/TalkPipe.h"

namespace quellin::cli {
namespace {

using testing::HasSubstr;
using testing::Optional;
using testing_support::BusyStore;
using testing_support::exampleWord;
using testing_support::impatient;
using testing_support::recordOldSessions;
using testing_support::SQLWork;

// Recordings of the example trace into a store of their own.
struct SessionRecordingTest : testing::Test {
  testing_support::TemporaryFolder folder;
  testing_support::TalkPipe talk;
  const Invocation surroundings = talk.onTerminal(80);
  const Options options = testing_support::optionsOverExample(folder.path() / "a.store");
  const Invocation invocation{.options = options,
                              .out = surroundings.out,
                              .talk = surroundings.talk,
                              .outTerminal = surroundings.outTerminal,
                              .talkTerminal = surroundings.talkTerminal,
                              .tool = surroundings.tool};
  const MeasuredHost host = MeasuredHost::open(options);
  Loop loop;
  std::optional<SessionRecording> recording;

  void open() { recording.emplace(invocation, host, loop, Seconds{30}, impatient()); }

  std::shared_ptr<PowerSession> begin() {
    open();
    return recording->begin("Ours", Seconds{1});
  }

  void sample() {
    testing_support::runToItsEnd(loop, [this](auto done) { recording->sample(std::move(done)); });
  }

  [[nodiscard]] std::filesystem::path lockFile() const { return folder.path() / "a.store-recorder"; }

  // The work that one more sample takes, with the look at the session before it.
  std::int64_t workOfASample(const SQLWork& work) {
    sample();
    return work.of([this] {
      EXPECT_TRUE(recording->isStillOurs());
      sample();
    });
  }

  [[nodiscard]] std::string statusOf(const UUID& session) const {
    PowerSessionStore store{"reader", *options.store};
    const auto found = store.session(session);
    return found ? found->statusRaw().value_or("none") : "gone";
  }
};

TEST_F(SessionRecordingTest, ASampleCostsTheSameHoweverManySessionsThereAre) {
  const SQLWork work;
  recordOldSessions(*options.store, 2);
  begin();
  const std::int64_t withFew = workOfASample(work);
  recording.reset();
  recordOldSessions(*options.store, 40);
  begin();
  EXPECT_GT(withFew, 0);
  EXPECT_EQ(workOfASample(work), withFew);
}

TEST_F(SessionRecordingTest, EndsItsSessionWhenItGoes) {
  const UUID session = begin()->id();
  sample();
  EXPECT_EQ(statusOf(session), "active");
  EXPECT_TRUE(std::filesystem::exists(lockFile()));
  recording.reset();
  EXPECT_EQ(statusOf(session), "completed");
  EXPECT_FALSE(std::filesystem::exists(lockFile()));
}

// Its word tells the next recorder what that session is over.
TEST_F(SessionRecordingTest, WhoCannotGoOnLeavesTheWord) {
  PowerSessionStore store{"elsewhere", *options.store};
  store.start("Theirs", PowerSessionSource::cli, 1, instantAt(1000));
  folder.write("a.store-recorder", exampleWord);
  open();
  const BusyStore writer{*options.store};
  EXPECT_THROW(recording->begin("Ours", Seconds{1}), Failure);
  recording.reset();
  EXPECT_EQ(testing_support::contentOf(lockFile()), exampleWord);
}

TEST_F(SessionRecordingTest, WhoCannotBeginLeavesNoWord) {
  open();
  const BusyStore writer{*options.store};
  EXPECT_THROW(recording->begin("Ours", Seconds{1}), Failure);
  recording.reset();
  EXPECT_FALSE(std::filesystem::exists(lockFile()));
}

TEST_F(SessionRecordingTest, AnEndingThatCannotBeSavedLeavesTheWord) {
  for (const auto ending : {&SessionRecording::end, &SessionRecording::interrupt}) {
    const UUID session = begin()->id();
    sample();
    const BusyStore writer{*options.store};
    ((*recording).*ending)();
    EXPECT_NE(recording->failure(), std::nullopt);
    recording.reset();
    EXPECT_EQ(statusOf(session), "active");
    EXPECT_EQ(testing_support::contentOf(lockFile()), exampleWord);
  }
}

TEST_F(SessionRecordingTest, AnInterruptedSessionHasItsCost) {
  const auto session = begin();
  sample();
  recording->interrupt();
  EXPECT_EQ(statusOf(session->id()), "interrupted");
  EXPECT_THAT(recording->store().cost(*session),
              Optional(testing::Field(&RecorderCost::bytesWritten, testing::Gt(0))));
}

TEST_F(SessionRecordingTest, LeavesASessionAloneThatItDidNotBegin) {
  PowerSessionStore store{"elsewhere", *options.store};
  const auto session = store.start("Theirs", PowerSessionSource::cli, 1, instantAt(1000));
  recording.emplace(invocation, host, loop, Seconds{30});
  EXPECT_NE(recording->recorder().activeSession(), nullptr);
  recording.reset();
  EXPECT_EQ(statusOf(session->id()), "active");
}

TEST_F(SessionRecordingTest, NoticesThatTheSessionWasEndedOrDeletedElsewhere) {
  PowerSessionStore store{"elsewhere", *options.store};
  for (const bool isDeleted : {false, true}) {
    const UUID session = begin()->id();
    sample();
    EXPECT_TRUE(recording->isStillOurs());
    if (isDeleted) {
      store.remove(store.session(session));
    } else {
      store.interrupt(store.session(session), instantAt(2000));
    }
    EXPECT_FALSE(recording->isStillOurs());
    recording.reset();
    EXPECT_EQ(statusOf(session), isDeleted ? "gone" : "interrupted") << "the recording leaves it as it is";
    EXPECT_FALSE(std::filesystem::exists(lockFile()));
  }
}

// Others may delete the session after a look at it and before the sample that follows.
TEST_F(SessionRecordingTest, ASampleTooLateForADeletedSessionIsNoFailure) {
  const auto session = begin();
  sample();
  PowerSessionStore store{"elsewhere", *options.store};
  store.remove(store.session(session->id()));
  sample();
  EXPECT_TRUE(session->isDeleted());
  EXPECT_EQ(recording->newFailure(), std::nullopt);
  EXPECT_EQ(recording->failure(), std::nullopt);
  EXPECT_FALSE(recording->isStillOurs());
}

TEST_F(SessionRecordingTest, AFailureIsToldOnceForAsLongAsItLasts) {
  begin();
  sample();
  EXPECT_EQ(recording->failure(), std::nullopt);
  Database(*options.store, Database::Access::readWrite, {}).execute("DROP TABLE PowerSessionSample");
  sample();
  EXPECT_THAT(recording->newFailure(), Optional(HasSubstr(options.store->string())));
  sample();
  EXPECT_EQ(recording->newFailure(), std::nullopt);
  EXPECT_NE(recording->failure(), std::nullopt);
}

}  // namespace
}  // namespace quellin::cli
