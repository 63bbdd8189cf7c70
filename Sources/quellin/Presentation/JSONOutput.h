#pragma once

#include "QuellinCore/Support/JSON/JSONEncoder.h"
#include "quellin/Outcome/Failure.h"
#include "quellin/Terminal/Output.h"

namespace quellin::cli {

/// `record` as one JSON document for people and programs, in one line where the layout is compact. Throws
/// `Failure` when it has no JSON form.
template <class T>
[[nodiscard]] std::string jsonText(const T& record, JSONLayout layout = JSONLayout::pretty) {
  const auto text = encodeJSON(record, KeyOrder::declaration, layout);
  if (!text) {
    throw Failure{ExitStatus::failed, "no JSON can be written: " + text.error().path + " " +
                                          text.error().reason + ". The command without --json shows it."};
  }
  return *text;
}

/// Writes `record` as one JSON document; throws as `jsonText`, and what `out` throws.
template <class T>
void writeJSON(Output& out, const T& record) {
  out.line(jsonText(record));
}

}  // namespace quellin::cli
