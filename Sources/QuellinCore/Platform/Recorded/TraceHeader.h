#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <tuple>

#include "QuellinCore/Models/SourceDiagnosis.h"
#include "QuellinCore/Support/Record.h"

namespace quellin {

/// What the first line of every trace says, of whatever version.
inline constexpr std::string_view traceFormat = "quellin-trace";

/// A reader understands every minor version of its own major version.
inline constexpr std::int64_t traceMajorVersion = 1;
inline constexpr std::int64_t traceMinorVersion = 0;

/// What the sources said about themselves when a trace was begun.
struct TraceDiagnoses {
  std::optional<SourceDiagnosis> smc;
  std::optional<SourceDiagnosis> hid;
  std::optional<SourceDiagnosis> battery;
  std::optional<SourceDiagnosis> energy;
  std::optional<SourceDiagnosis> thermal;
  std::optional<SourceDiagnosis> processes;

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
  std::string kind = "trace";
  std::string format{traceFormat};
  std::int64_t majorVersion = traceMajorVersion;
  std::int64_t minorVersion = traceMinorVersion;
  double createdAt = 0;              ///< seconds since 1970
  bool redactsSerialNumbers = true;  ///< whether serial numbers were left out
  std::optional<TraceDiagnoses> diagnoses;

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
