#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <tuple>

#include "QuellinCore/Models/SourceDiagnosis.h"
#include "QuellinCore/Support/JSON/Record.h"

namespace quellin {

/// What the first line of every trace says, of whatever version.
inline constexpr std::string_view traceFormat = "quellin-trace";

/// A reader understands every minor version of its own major version.
inline constexpr std::int64_t traceMajorVersion = 1;
inline constexpr std::int64_t traceMinorVersion = 0;  ///< raised when kinds of lines, keys or sources come in

/// What the sources said about themselves when a trace was begun.
struct TraceDiagnoses {
  std::optional<SourceDiagnosis> smc;        ///< absent in a trace that does not say
  std::optional<SourceDiagnosis> hid;        ///< the same of the temperature services
  std::optional<SourceDiagnosis> battery;    ///< the same of the battery
  std::optional<SourceDiagnosis> energy;     ///< the same of the energy counters
  std::optional<SourceDiagnosis> thermal;    ///< the same of the thermal signals
  std::optional<SourceDiagnosis> processes;  ///< the same of the processes

  static constexpr auto fields() {
    return std::tuple{
        Field{"smc", &TraceDiagnoses::smc},         Field{"hid", &TraceDiagnoses::hid},
        Field{"battery", &TraceDiagnoses::battery}, Field{"energy", &TraceDiagnoses::energy},
        Field{"thermal", &TraceDiagnoses::thermal}, Field{"processes", &TraceDiagnoses::processes}};
  }

  bool operator==(const TraceDiagnoses&) const = default;
};

/// The first line of a trace.
struct TraceHeader {
  std::string kind = "trace";                     ///< always "trace"
  std::string format{traceFormat};                ///< any other text: not a trace of ours
  std::int64_t majorVersion = traceMajorVersion;  ///< of the writer
  std::int64_t minorVersion = traceMinorVersion;  ///< of the writer
  double createdAt = 0;                           ///< seconds since 1970
  bool redactsSerialNumbers = true;               ///< whether serial numbers were left out
  std::optional<TraceDiagnoses> diagnoses;        ///< absent in a trace that does not say

  static constexpr auto fields() {
    return std::tuple{Field{"kind", &TraceHeader::kind},
                      Field{"format", &TraceHeader::format},
                      Field{"majorVersion", &TraceHeader::majorVersion},
                      Field{"minorVersion", &TraceHeader::minorVersion},
                      Field{"createdAt", &TraceHeader::createdAt},
                      Field{"redactsSerialNumbers", &TraceHeader::redactsSerialNumbers},
                      Field{"diagnoses", &TraceHeader::diagnoses}};
  }

  bool operator==(const TraceHeader&) const = default;
};

}  // namespace quellin
