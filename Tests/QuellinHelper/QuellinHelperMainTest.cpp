#include <csignal>
#include <limits>
#include <new>

#include <gtest/gtest.h>

#include "QuellinCore/Support/FileDescriptor.h"
#include "QuellinHelper/QuellinHelperMain.h"

namespace quellin {
namespace {

const std::string usage = "usage: QuellinHelper status-json|read-temperatures-json|read-pro-telemetry-json\n";
const std::string notRoot = "QuellinHelper must run with effective uid 0\n";

struct Answer {
  ExitStatus status;
  std::string output;
  std::string error;

  bool operator==(const Answer&) const = default;
};

Answer success(std::string output) {
  return {.status = ExitStatus::success, .output = std::move(output), .error = ""};
}

/// The tool run by root on a machine whose readings are given.
class QuellinHelperMainTest : public testing::Test {
 protected:
  QuellinHelperMainTest() {
    with.effectiveUserID = 0;
    with.effectiveGroupID = 20;
    with.readTemperatures = [this] {
      ++readings;
      return temperatures;
    };
    with.sampleProTelemetry = [this] {
      ++readings;
      return snapshot;
    };
  }

  Answer answer(const std::vector<std::string>& arguments) {
    Pipe output = std::move(*Pipe::open());
    Pipe error = std::move(*Pipe::open());
    with.standardOutput = output.writeEnd.get();
    with.standardError = error.writeEnd.get();
    const ExitStatus status = QuellinHelperMain::answer(arguments, with);
    output.writeEnd.reset();
    error.writeEnd.reset();
    return {
        .status = status, .output = readToEnd(output.readEnd.get()), .error = readToEnd(error.readEnd.get())};
  }

  HelperSurroundings with;
  std::vector<TemperatureSensor> temperatures;
  ProTelemetrySnapshot snapshot;
  int readings = 0;
};

TEST_F(QuellinHelperMainTest, NoOrUnknownCommandWordIsAUsageErrorForEveryUser) {
  const std::vector<std::vector<std::string>> cases{
      {},
      {"tool"},
      {"tool", ""},
      {"tool", "STATUS-JSON"},
      {"tool", "Status-json"},
      {"tool", "status-json "},
      {"tool", " status-json"},
      {"tool", "status"},
      {"tool", "status-json2"},
      {"tool", "read-temperatures-json\n"},
      {"tool", "--", "status-json"},
      {"tool", "help", "status-json"},
  };
  for (const auto& arguments : cases) {
    for (const uid_t user : {0U, 501U}) {
      with.effectiveUserID = user;
      EXPECT_EQ(answer(arguments), (Answer{.status = ExitStatus::usage, .output = "", .error = usage}))
          << testing::PrintToString(arguments);
    }
  }
  EXPECT_EQ(readings, 0);
}

TEST_F(QuellinHelperMainTest, EveryCommandNeedsTheEffectiveUserToBeRoot) {
  with.effectiveUserID = 501;
  for (const std::string command : {"status-json", "read-temperatures-json", "read-pro-telemetry-json"}) {
    EXPECT_EQ(answer({"tool", command}),
              (Answer{.status = ExitStatus::notRoot, .output = "", .error = notRoot}));
  }
  EXPECT_EQ(readings, 0);
}

TEST_F(QuellinHelperMainTest, StatusNamesTheToolAsItWasTypedAndLeavesTheErrorOut) {
  struct Case {
    std::string typed;
    std::string path;
  };
  const std::vector<Case> cases{{.typed = "./bin/QuellinHelper", .path = R"(.\/bin\/QuellinHelper)"},
                                {.typed = "", .path = ""},
                                {.typed = "a\"b", .path = R"(a\"b)"}};
  for (const Case& c : cases) {
    const std::string document =
        R"({"isInstalled":true,"isExecutable":true,"isSetuidRoot":true,"ownerUserID":0,"groupID":20,)"
        R"("installedVersion":"0.9.4","supportsProTelemetry":true,"path":")" +
        c.path + "\"}\n";
    EXPECT_EQ(answer({c.typed, "status-json"}), success(document));
    EXPECT_EQ(answer({c.typed, "status-json", "read-temperatures-json", "-v"}), success(document));
  }
}

TEST_F(QuellinHelperMainTest, GroupIsWidenedAsAnUnsignedNumber) {
  with.effectiveGroupID = std::numeric_limits<gid_t>::max();
  EXPECT_NE(answer({"tool", "status-json"}).output.find(R"("groupID":4294967295,)"), std::string::npos);
}

TEST_F(QuellinHelperMainTest, TemperaturesAreAnArrayThatMayBeEmpty) {
  EXPECT_EQ(answer({"tool", "read-temperatures-json"}), success("[]\n"));
  temperatures = {{.key = "TC0P", .name = "CPU/GPU", .temperature = 41.5},
                  {.key = "Ts0P", .name = "Palm Rest", .temperature = 30}};
  EXPECT_EQ(answer({"tool", "read-temperatures-json"}).output,
            R"([{"key":"TC0P","name":"CPU\/GPU","temperature":41.5},)"
            R"({"key":"Ts0P","name":"Palm Rest","temperature":30}])"
            "\n");
}

TEST_F(QuellinHelperMainTest, SnapshotLeavesAbsentFieldsOutAndItsDateHasWholeSeconds) {
  ProProcessEnergy row;
  row.pid = 7;
  row.name = "a/b";
  row.energyImpact = 4.5;
  snapshot.isAvailable = true;
  snapshot.source = "powermetrics --show-process-energy";
  snapshot.sampledAt = instantAt(1740821412.875);
  snapshot.sampleIntervalMilliseconds = 1000;
  snapshot.processes = {row};
  snapshot.anePowerWatts = 0.25;
  EXPECT_EQ(answer({"tool", "read-pro-telemetry-json"}),
            success(R"({"isAvailable":true,"source":"powermetrics --show-process-energy",)"
                    R"("sampledAt":"2025-03-01T09:30:12Z","sampleIntervalMilliseconds":1000,)"
                    R"("processes":[{"pid":7,"name":"a\/b","energyImpact":4.5}],"anePowerWatts":0.25})"
                    "\n"));
}

TEST_F(QuellinHelperMainTest, FailedMeasurementIsStillAnAnswer) {
  snapshot.source = "powermetrics";
  snapshot.sampledAt = instantAt(0);
  snapshot.sampleIntervalMilliseconds = 1000;
  snapshot.error = "powermetrics timed out";
  EXPECT_EQ(answer({"tool", "read-pro-telemetry-json"}),
            success(R"({"isAvailable":false,"source":"powermetrics","sampledAt":"1970-01-01T00:00:00Z",)"
                    R"("sampleIntervalMilliseconds":1000,"processes":[],"error":"powermetrics timed out"})"
                    "\n"));
}

TEST_F(QuellinHelperMainTest, PayloadThatCannotBeEncodedLeavesStandardOutputEmpty) {
  const Answer failure{
      .status = ExitStatus::encodingFailure, .output = "", .error = "failed to encode helper payload\n"};
  for (const double value :
       {std::numeric_limits<double>::quiet_NaN(), std::numeric_limits<double>::infinity(),
        -std::numeric_limits<double>::infinity()}) {
    temperatures = {{.key = "TC0P", .name = "fine", .temperature = 40},
                    {.key = "Tp01", .name = "broken", .temperature = value}};
    EXPECT_EQ(answer({"tool", "read-temperatures-json"}), failure);
    snapshot.gpuPowerWatts = value;
    EXPECT_EQ(answer({"tool", "read-pro-telemetry-json"}), failure);
  }
}

TEST_F(QuellinHelperMainTest, OutputThatTakesNothingIsAFailureWithoutAMessage) {
  const auto previous = std::signal(SIGPIPE, SIG_IGN);
  Pipe error = std::move(*Pipe::open());
  with.standardError = error.writeEnd.get();
  with.standardOutput = -1;
  EXPECT_EQ(QuellinHelperMain::answer(std::vector<std::string>{"tool", "status-json"}, with),
            ExitStatus::outputFailure);
  Pipe output = std::move(*Pipe::open());
  output.readEnd.reset();
  with.standardOutput = output.writeEnd.get();
  EXPECT_EQ(QuellinHelperMain::answer(std::vector<std::string>{"tool", "status-json"}, with),
            ExitStatus::outputFailure);
  error.writeEnd.reset();
  EXPECT_EQ(readToEnd(error.readEnd.get()), "");
  std::signal(SIGPIPE, previous);
}

TEST_F(QuellinHelperMainTest, RunningOutOfMemoryIsAFailureWithoutAWord) {
  const Answer failure{.status = ExitStatus::systemFailure, .output = "", .error = ""};
  with.readTemperatures = []() -> std::vector<TemperatureSensor> { throw std::bad_alloc{}; };
  EXPECT_EQ(answer({"tool", "read-temperatures-json"}), failure);
  with.sampleProTelemetry = []() -> ProTelemetrySnapshot { throw std::bad_alloc{}; };
  EXPECT_EQ(answer({"tool", "read-pro-telemetry-json"}), failure);
}

TEST(ExitStatusTest, NumbersAreThoseOfTheCommandLine) {
  EXPECT_EQ(static_cast<int>(ExitStatus::success), 0);
  EXPECT_EQ(static_cast<int>(ExitStatus::usage), 64);
  EXPECT_EQ(static_cast<int>(ExitStatus::encodingFailure), 70);
  EXPECT_EQ(static_cast<int>(ExitStatus::systemFailure), 71);
  EXPECT_EQ(static_cast<int>(ExitStatus::outputFailure), 74);
  EXPECT_EQ(static_cast<int>(ExitStatus::notRoot), 77);
}

}  // namespace
}  // namespace quellin
