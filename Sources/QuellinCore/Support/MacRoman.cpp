#include "QuellinCore/Support/MacRoman.h"

#include <string_view>

#include "QuellinCore/Support/Text.h"

namespace quellin {
namespace {

// The characters of bytes 0x80 to 0xFF; the lower half is ASCII.
constexpr std::u16string_view upperHalf =
    u"ÄÅÇÉÑÖÜáàâäãåçéè"
    u"êëíìîïñóòôöõúùûü"
    u"†°¢£§•¶ß®©™´¨≠ÆØ"
    u"∞±≤≥¥µ∂∑∏π∫ªºΩæø"
    u"¿¡¬√ƒ≈∆«»…\u00A0ÀÃÕŒœ"
    u"–—“”‘’÷◊ÿŸ⁄€‹›ﬁﬂ"
    u"‡·‚„‰ÂÊÁËÈÍÎÏÌÓÔ"
    u"\uF8FFÒÚÛÙıˆ˜¯˘˙˚¸˝˛ˇ";
static_assert(upperHalf.size() == 128);

}  // namespace

std::string decodeMacRoman(std::span<const std::uint8_t> bytes) {
  std::string text;
  text.reserve(bytes.size());
  for (const std::uint8_t byte : bytes) {
    appendUTF8(text, byte < 0x80 ? char32_t{byte} : char32_t{upperHalf[byte - 0x80U]});
  }
  return text;
}

}  // namespace quellin
