#include "QuellinCore/Support/JSON/DecodingError.h"

namespace quellin {

std::string_view DecodingError::localizedDescription() const {
  switch (kind_) {
    case Kind::valueNotFound:
    case Kind::keyNotFound:
      return "The data couldn’t be read because it is missing.";
    case Kind::typeMismatch:
    case Kind::dataCorrupted:
      break;
  }
  return "The data couldn’t be read because it isn’t in the correct format.";
}

}  // namespace quellin
