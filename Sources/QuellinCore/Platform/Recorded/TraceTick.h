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
#include "QuellinCore/Support/JSON/Record.h"

namespace quellin {

/// A key of the SMC; see `codeText` and `hexText`.
struct TraceSMCKey {
  std::string key;    ///< four characters, or "0x" and eight digits
  std::string type;   ///< four-character code of the type, spelled alike
  std::string bytes;  ///< hexadecimal

  static constexpr auto fields() {
    return std::tuple{Field{"key", &TraceSMCKey::key}, Field{"type", &TraceSMCKey::type},
                      Field{"bytes", &TraceSMCKey::bytes}};
  }
};

/// A temperature service; at most one of the last two.
struct TraceHIDService {
  std::optional<std::string> product;  ///< absent where the service has no name
  std::optional<double> temperature;   ///< degrees Celsius
  std::optional<NonFinite> nonFinite;  ///< a temperature that is no number

  static constexpr auto fields() {
    return std::tuple{Field{"product", &TraceHIDService::product},
                      Field{"temperature", &TraceHIDService::temperature},
                      Field{"nonFinite", &TraceHIDService::nonFinite}};
  }
};

/// What the battery's two tables held.
struct TraceBattery {
  std::optional<std::vector<TraceProperty>> registry;     ///< the battery's entry in the registry
  std::optional<std::vector<TraceProperty>> powerSource;  ///< the first entry of the list of power sources

  static constexpr auto fields() {
    return std::tuple{Field{"registry", &TraceBattery::registry},
                      Field{"powerSource", &TraceBattery::powerSource}};
  }
};

/// What one measurement of the energy counters gave.
struct TraceEnergy {
  double seconds = 0;                                  ///< between the two samples; 0 when not known
  std::optional<std::vector<EnergyChannel>> channels;  ///< absent when the second sample could not be had

  static constexpr auto fields() {
    return std::tuple{Field{"seconds", &TraceEnergy::seconds}, Field{"channels", &TraceEnergy::channels}};
  }
};

/// One line of a trace: what the sources answered at one tick. A source that gave nothing is left out.
struct TraceTick {
  std::string kind = "tick";  ///< always "tick"
  double wall = 0;            ///< seconds since 1970, when all but the processes had been read
  double monotonic = 0;       ///< seconds; never less than in the tick before
  std::optional<std::vector<TraceSMCKey>> smc;      ///< every key that has a value
  std::optional<std::vector<TraceHIDService>> hid;  ///< every service, in the order of the host
  std::optional<TraceBattery> battery;              ///< both tables
  std::optional<TraceEnergy> energy;                ///< gains between the two samples of the tick
  std::optional<ThermalSignals> thermal;            ///< as the host gave them
  std::optional<TraceProcesses> processes;          ///< absent at a tick that did not measure them

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
