// Reads JSON documents, one a line in hexadecimal digits, as a record with every kind of field. Prints what
// was read as JSON, "unsuitable" when a value is not what its field wants, or "invalid" when the document is
// no JSON.

#include <cstdint>
#include <optional>
#include <string>
#include <tuple>
#include <vector>

#include "Differential/HexLines.h"
#include "QuellinCore/Support/JSON/JSONDecoder.h"
#include "QuellinCore/Support/JSON/JSONEncoder.h"

namespace {

using namespace quellin;

struct Leaf {
  std::optional<std::string> text;
  std::optional<double> number;

  static constexpr auto fields() {
    return std::tuple{Field{"text", &Leaf::text}, Field{"number", &Leaf::number}};
  }
};

struct Document {
  std::optional<bool> flag;
  std::optional<std::int32_t> small;
  std::optional<std::int64_t> wide;
  std::optional<std::uint64_t> count;
  std::optional<double> number;
  std::optional<std::string> text;
  std::optional<std::vector<double>> numbers;
  std::optional<std::vector<Leaf>> leaves;
  std::optional<Leaf> leaf;

  static constexpr auto fields() {
    return std::tuple{Field{"flag", &Document::flag},       Field{"small", &Document::small},
                      Field{"wide", &Document::wide},       Field{"count", &Document::count},
                      Field{"number", &Document::number},   Field{"text", &Document::text},
                      Field{"numbers", &Document::numbers}, Field{"leaves", &Document::leaves},
                      Field{"leaf", &Document::leaf}};
  }
};

std::string answer(JSONDecoder& decoder, const std::string& document) {
  const auto value = decoder.decode<Document>(document);
  if (value) return encodeJSON(*value).value_or("not encodable");
  return value.error().debugDescription() == "The given data was not valid JSON." ? "invalid" : "unsuitable";
}

}  // namespace

int main() {
  JSONDecoder decoder;
  return differential::answerLines([&](const std::string& document) { return answer(decoder, document); });
}
