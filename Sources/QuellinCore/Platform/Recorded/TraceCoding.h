#pragma once

#include <expected>
#include <string>
#include <string_view>

#include "QuellinCore/Platform/Recorded/HostAnswers.h"
#include "QuellinCore/Platform/Recorded/TraceHeader.h"
#include "QuellinCore/Platform/Recorded/TraceProperty.h"
#include "QuellinCore/Support/JSON/JSONDecoder.h"

// The lines of a trace and what they mean. Errors are texts that say what is wrong with the line.
namespace quellin {

/// The answers of one tick as a line, without a line feed. What no reader would take is not written.
[[nodiscard]] std::expected<std::string, std::string> tickLine(const HostAnswers& answers,
                                                               SerialNumbers serialNumbers);

/// What a line is.
enum class TraceLineKind {
  tick,
  unknown,  ///< of a later version; to be passed over
};

/// The kind of any line but the first.
[[nodiscard]] std::expected<TraceLineKind, std::string> traceLineKind(JSONDecoder& decoder,
                                                                      std::string_view line);

/// The answers that a line of kind `tick` holds.
[[nodiscard]] std::expected<HostAnswers, std::string> answersOfTickLine(JSONDecoder& decoder,
                                                                        std::string_view line);

/// Why a first line is not the header of a trace that can be read here.
struct HeaderFault {
  std::string reason;    ///< for people: what is wrong, without the place
  bool isNewer = false;  ///< it is a trace, of a version that this program does not know

  bool operator==(const HeaderFault&) const = default;
};

/// The header that the first line holds.
[[nodiscard]] std::expected<TraceHeader, HeaderFault> headerOfLine(JSONDecoder& decoder,
                                                                   std::string_view line);

}  // namespace quellin
