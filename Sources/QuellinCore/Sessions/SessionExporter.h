#pragma once

#include <expected>
#include <string>

#include "QuellinCore/Sessions/PowerSessionExport.h"
#include "QuellinCore/Sessions/StoredSample.h"
#include "QuellinCore/Sessions/TextSink.h"
#include "QuellinCore/Support/JSON/JSONDecoder.h"
#include "QuellinCore/Support/JSON/JSONEncoder.h"

namespace quellin {

/// Writes an exported session line by line, holding one piece of it at a time. One thread at a time; the sink
/// is called on it.
class SessionExporter {
 public:
  explicit SessionExporter(TextSink sink);  ///< `sink` gets pieces of text, not lines

  /// Writes the first line; fails, and writes nothing, when it has no JSON form.
  std::expected<void, EncodingError> write(const PowerSessionExportEnvelope& envelope);

  /// Writes the line of a sample, none for one whose snapshot cannot be decoded. Process data that cannot be
  /// decoded is left out. Fails, and writes nothing of the sample, when the line has no JSON form.
  std::expected<void, EncodingError> write(const StoredSample& sample);

  /// Hands what is left to the sink.
  void finish();

 private:
  template <class T>
  std::expected<void, EncodingError> writeLine(const T& record);

  TextSink sink_;
  JSONDecoder decoder_;
  std::string pending_;
};

}  // namespace quellin
