#pragma once

#include <memory>
#include <string>
#include <utility>

#include "QuellinCore/Sessions/PowerSessionStore.h"
#include "Support/BracketDateText.h"
#include "Support/ManualClock.h"

namespace quellin::testing_support {

/// A session store in memory, with a clock that the test sets.
struct MemoryStore {
  std::shared_ptr<ThreadExecutor> executor = std::make_shared<ThreadExecutor>();
  ManualWallClock clock{instantAt(1741089600)};
  BracketDateText dateText;
  std::shared_ptr<PowerSessionStore> store = std::make_shared<PowerSessionStore>(
      "0.9.4", std::nullopt, true,
      PowerSessionStoreSurroundings{.executor = executor, .clock = clock, .dateText = dateText});

  /// A session that begins `second` seconds after 1970.
  std::shared_ptr<PowerSession> start(double second, std::string title = "Test") const {
    return store->start(std::move(title), PowerSessionSource::app, 2, instantAt(second));
  }
};

}  // namespace quellin::testing_support
