#pragma once

#include <functional>
#include <memory>
#include <optional>
#include <string>

#include "QuellinCore/Sessions/PowerSessionRecorder.h"
#include "quellin/CommandLine/Options.h"
#include "quellin/Measuring/Loop.h"
#include "quellin/Measuring/MeasuredHost.h"
#include "quellin/Storage/RecorderLock.h"

namespace quellin::cli {

/// The session that the live view records when it is asked to, and what the store holds besides. A store that
/// is not there is made by the first session. Used on the loop's thread.
class WatchSession {
 public:
  /// All must outlive it, and the loop must not run after it has gone. `storeFile` is how the store is
  /// opened.
  WatchSession(const Options& options, const MeasuredHost& host, Loop& loop, StoreFileOptions storeFile = {});

  /// Whether states are being recorded.
  [[nodiscard]] bool isRecording() const { return session_ != nullptr; }

  /// Begins a session, going on with the active one, every `interval`; or ends the one that is recorded. One
  /// that may not be begun, see `claimStore`, is a failure until it is asked for again or no longer active.
  void toggle(Seconds interval);

  /// Ends the session that is recorded, if any, as completed.
  void end();

  /// Records one state, where states are recorded; `done` is called once, inside this call or later.
  void record(const SystemPowerState& state, const std::function<void()>& done);

  /// How things stand, in one line.
  [[nodiscard]] std::string text() const;

  /// What went wrong last; absent when all is well.
  [[nodiscard]] std::optional<std::string> failure() const;

  /// Whether a session was ever asked for.
  [[nodiscard]] bool wasAsked() const { return wasAsked_; }

  /// The short identifier of the session that was recorded last and has ended.
  [[nodiscard]] const std::optional<std::string>& completed() const { return completed_; }

 private:
  void open();
  void claim();
  void look();
  void giveUp();
  void forget(bool isOver);
  [[nodiscard]] bool attempt(const std::function<void()>& action);

  const Options& options_;
  const MeasuredHost& host_;
  Loop& loop_;
  StoreFileOptions storeFile_;
  std::unique_ptr<PowerSessionRecorder> recorder_;
  std::optional<RecorderLock> lock_;         // while a session is recorded here
  std::shared_ptr<PowerSession> session_;    // recorded here
  std::shared_ptr<PowerSession> elsewhere_;  // active, not recorded here
  bool wasAsked_ = false;
  std::optional<std::string> completed_;
  std::optional<std::string> refusal_;  // of a session that was asked for
  std::optional<std::string> problem_;
};

}  // namespace quellin::cli
