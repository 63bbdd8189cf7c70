#pragma once

#include <string>
#include <vector>

#include "FakeDarwin/CallLog.h"
#include "FakeDarwin/FakeCoreFoundation.h"
#include "FakeDarwin/FakeDispatch.h"
#include "FakeDarwin/FakeHID.h"
#include "FakeDarwin/FakeIOKit.h"
#include "FakeDarwin/FakeIOReport.h"
#include "FakeDarwin/FakeLoader.h"
#include "FakeDarwin/FakeNotify.h"
#include "FakeDarwin/FakeObjectiveC.h"
#include "FakeDarwin/FakePowerSources.h"
#include "FakeDarwin/FakeProcesses.h"
#include "FakeDarwin/Ledger.h"
#include "FakeDarwin/ObjectTable.h"

namespace quellin::fake {

/// The operating system of one test: the state behind the faked C functions. One exists at a time, and the C
/// functions find it through `current`. An area of the system is one member here, one header for its state
/// and one source file for its C functions (`FakeIOKitCalls.cpp`). Not thread-safe.
class FakeDarwin {
 public:
  FakeDarwin();
  FakeDarwin(const FakeDarwin&) = delete;
  FakeDarwin& operator=(const FakeDarwin&) = delete;
  ~FakeDarwin();

  /// The system of the running test; ends the process when there is none.
  static FakeDarwin& current();

  /// Everything that was not given back, in every area.
  [[nodiscard]] std::vector<std::string> leaks() const;

  CallLog calls;
  Ledger ledger;
  ObjectTable objects{ledger};
  FakeCoreFoundation coreFoundation{objects};
  FakeIOKit ioKit{ledger};
  FakeDispatch dispatch;
  FakeHID hid;
  FakeIOReport ioReport;
  FakeLoader loader{ledger};
  FakeNotify notify{ledger};
  FakeObjectiveC objectiveC{ledger};
  FakePowerSources powerSources;
  FakeProcesses processes;
};

}  // namespace quellin::fake
