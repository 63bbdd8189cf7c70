#include "QuellinCore/Support/MacRoman.h"

#include <string_view>

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

constexpr unsigned continuationBits = 6;

char continuation(unsigned codePoint) { return static_cast<char>(0x80U | (codePoint & 0x3FU)); }

// Nothing in this character set lies beyond the basic plane, so three bytes are the most a character takes.
void appendUTF8(std::string& text, unsigned codePoint) {
  if (codePoint < 0x80) {
    text += static_cast<char>(codePoint);
  } else if (codePoint < 0x800) {
    text += static_cast<char>(0xC0U | (codePoint >> continuationBits));
    text += continuation(codePoint);
  } else {
    text += static_cast<char>(0xE0U | (codePoint >> (2 * continuationBits)));
    text += continuation(codePoint >> continuationBits);
    text += continuation(codePoint);
  }
}

}  // namespace

std::string decodeMacRoman(std::span<const std::uint8_t> bytes) {
  std::string text;
  text.reserve(bytes.size());
  for (const std::uint8_t byte : bytes) {
    appendUTF8(text, byte < 0x80 ? byte : upperHalf[byte - 0x80U]);
  }
  return text;
}

}  // namespace quellin
