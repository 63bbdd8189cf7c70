#pragma once

#include "QuellinCore/Support/JSON/JSONEncoder.h"
#include "quellin/CommandLine/Failure.h"
#include "quellin/Terminal/Output.h"

namespace quellin::cli {

/// Writes `record` as one JSON document for people and programs. Throws `Failure` when it has no JSON form.
template <class T>
void writeJSON(Output& out, const T& record) {
  const auto text = encodeJSON(record, KeyOrder::declaration, JSONLayout::pretty);
  if (!text) {
    throw Failure{ExitStatus::failed, "no JSON can be written: " + text.error().path + " " +
                                          text.error().reason + ". The command without --json shows it."};
  }
  out.line(*text);
}

}  // namespace quellin::cli
