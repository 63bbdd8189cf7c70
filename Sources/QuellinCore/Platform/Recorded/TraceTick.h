#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <tuple>
#include <vector>

#include "QuellinCore/Models/EnergyChannel.h"
#include "QuellinCore/Models/ThermalSignals.h"
#include "QuellinCore/Platform/Recorded/TraceProcesses.h"
#include "QuellinCore/Platform/Recorded/TraceProperty.h"
#include "QuellinCore/Platform/Recorded/TraceText.h"
#include "QuellinCore/Support/Record.h"

namespace quellin {

/// A key of the SMC; see `codeText` and `hexText`.
struct TraceSMCKey {
  std::string key;
  std::string type;
  std::string bytes;

  static constexpr auto fields() {
    return std::tuple{Field{"key", &TraceSMCKey::key}, Field{"type", &TraceSMCKey::type},
                      Field{"bytes", &TraceSMCKey::bytes}};
  }
};

/// A temperature service; at most one of the last two.
struct TraceHIDService {
  std::optional<std::string> product;
  std::optional<double> temperature;
  std::optional<NonFinite> nonFinite;

  static constexpr auto fields() {
    return std::tuple{Field{"product", &TraceHIDService::product},
                      Field{"temperature", &TraceHIDService::temperature},
                      Field{"nonFinite", &TraceHIDService::nonFinite}};
  }
};

struct TraceBattery {
  std::optional<std::vector<TraceProperty>> registry;
  std::optional<std::vector<TraceProperty>> powerSource;

  static constexpr auto fields() {
    return std::tuple{Field{"registry", &TraceBattery::registry},
                      Field{"powerSource", &TraceBattery::powerSource}};
  }
};

struct TraceEnergy {
  double seconds = 0;
  std::optional<std::vector<EnergyChannel>> channels;

  static constexpr auto fields() {
    return std::tuple{Field{"seconds", &TraceEnergy::seconds}, Field{"channels", &TraceEnergy::channels}};
  }
};

/// One line of a trace: what the sources answered at one tick. A source that gave nothing is left out.
struct TraceTick {
  std::string kind = "tick";
  double wall = 0;
  double monotonic = 0;
  std::optional<std::vector<TraceSMCKey>> smc;
  std::optional<std::vector<TraceHIDService>> hid;
  std::optional<TraceBattery> battery;
  std::optional<TraceEnergy> energy;
  std::optional<ThermalSignals> thermal;
  std::optional<TraceProcesses> processes;

  static constexpr auto fields() {
    return std::tuple{Field{"kind", &TraceTick::kind},
                      Field{"wall", &TraceTick::wall},
                      Field{"monotonic", &TraceTick::monotonic},
                      Field{"smc", &TraceTick::smc},
                      Field{"hid", &TraceTick::hid},
                      Field{"battery", &TraceTick::battery},
                      Field{"energy", &TraceTick::energy},
                      Field{"thermal", &TraceTick::thermal},
                      Field{"processes", &TraceTick::processes}};
  }
};

}  // namespace quellin
