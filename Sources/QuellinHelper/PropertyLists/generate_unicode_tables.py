"""Writes UnicodeTables.cpp: which characters are letters or numbers, and their lower-case forms.

usage: generate_unicode_tables.py > UnicodeTables.cpp

The tables follow the Unicode version of the Python that runs this; the output names it. Letters and numbers are the
general categories L* and N*. A character whose lower-case form is longer than one character (U+0130 alone) gets the
first character of that form: the rest is a combining mark.
"""

import unicodedata

ALL = [code for code in range(0x110000) if not 0xD800 <= code < 0xE000]
PER_LINE = 5


def kept_ranges():
    ranges = []
    for code in ALL:
        if unicodedata.category(chr(code))[0] not in "LN":
            continue
        if ranges and ranges[-1][1] == code - 1:
            ranges[-1][1] = code
        else:
            ranges.append([code, code])
    return ranges


def lower_case_runs():
    """(first, last, step, distance): every step-th character of the run is lower-cased by adding the distance."""
    runs = []
    for code in ALL:
        distance = ord(chr(code).lower()[0]) - code
        if distance == 0:
            continue
        if runs:
            first, last, step, known = runs[-1]
            gap = code - last
            if known == distance and (gap == step or (first == last and gap <= 2)):
                runs[-1] = (first, code, gap, known)
                continue
        runs.append((code, code, 1, distance))
    return runs


def rows(items):
    return [", ".join(items[start:start + PER_LINE]) + "," for start in range(0, len(items), PER_LINE)]


def main():
    kept = ["{0x%X, 0x%X}" % tuple(pair) for pair in kept_ranges()]
    runs = ["{0x%X, 0x%X, %d, %d}" % run for run in lower_case_runs()]
    print(f"""// Written by generate_unicode_tables.py from Unicode {unicodedata.unidata_version}.
#include "QuellinHelper/PropertyLists/UnicodeTables.h"

#include <array>

namespace quellin::detail {{
namespace {{

// clang-format off
// NOLINTBEGIN(modernize-use-designated-initializers)
constexpr std::array<CharacterRange, {len(kept)}> kept{{{{""")
    print("\n".join("    " + row for row in rows(kept)))
    print(f"""}}}};

constexpr std::array<LowerCaseRun, {len(runs)}> runs{{{{""")
    print("\n".join("    " + row for row in rows(runs)))
    print("""}};
// NOLINTEND(modernize-use-designated-initializers)
// clang-format on

}  // namespace

std::span<const CharacterRange> lettersAndNumbers() { return kept; }

std::span<const LowerCaseRun> lowerCaseRuns() { return runs; }

}  // namespace quellin::detail""")


if __name__ == "__main__":
    main()
