#!/usr/bin/env python3
"""Writes the tables of the characters that take no column of a terminal, or two.

usage: generate_character_columns.py > CharacterColumns.cpp

Two: East Asian width W or F. None: the general categories Mn, Me and Cf, and the vowels and final consonants of
Hangul, which join the syllable before them; not the soft hyphen and the signs that span the numbers behind them.
Characters that are not assigned count as their neighbours do, which keeps the ranges few.
"""

import unicodedata

LAST = 0x10FFFF
JOINING_HANGUL = (range(0x1160, 0x1200), range(0xD7B0, 0xD800))
VISIBLE_FORMATS = {0xAD, *range(0x600, 0x606), 0x6DD, 0x70F, 0x890, 0x891, 0x8E2, 0x110BD, 0x110CD}


def columns_of(code_point):
    character = chr(code_point)
    category = unicodedata.category(character)
    if category == "Cn":
        return None
    if any(code_point in jamo for jamo in JOINING_HANGUL):
        return 0
    if category in ("Mn", "Me", "Cf") and code_point not in VISIBLE_FORMATS:
        return 0
    return 2 if unicodedata.east_asian_width(character) in ("W", "F") else 1


def ranges_of(columns):
    """First and last code point of each stretch of characters that take so many columns."""
    ranges = []
    is_open = False
    for code_point in range(LAST + 1):
        found = columns_of(code_point)
        if found == columns:
            if is_open:
                ranges[-1][1] = code_point
            else:
                ranges.append([code_point, code_point])
            is_open = True
        elif found is not None:
            is_open = False
    return ranges


def table(name, ranges, per_line=7):
    pairs = [f"{{0x{first:X}, 0x{last:X}}}" for first, last in ranges]
    lines = [", ".join(pairs[start : start + per_line]) + "," for start in range(0, len(pairs), per_line)]
    body = "\n".join("    " + line for line in lines)
    return f"constexpr std::array<CharacterRange, {len(ranges)}> {name}{{{{\n{body}\n}}}};"


def main():
    print(f"""// Written by generate_character_columns.py from Unicode {unicodedata.unidata_version}.
#include "quellin/Terminal/CharacterColumns.h"

#include <array>

namespace quellin::cli {{
namespace {{

// clang-format off
// NOLINTBEGIN(modernize-use-designated-initializers)
{table("none", ranges_of(0))}

{table("two", ranges_of(2))}
// NOLINTEND(modernize-use-designated-initializers)
// clang-format on

}}  // namespace

std::span<const CharacterRange> charactersWithoutColumn() {{ return none; }}

std::span<const CharacterRange> charactersOfTwoColumns() {{ return two; }}

}}  // namespace quellin::cli""")


if __name__ == "__main__":
    main()
