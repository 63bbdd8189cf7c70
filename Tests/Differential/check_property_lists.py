#!/usr/bin/env python3
"""Holds the property-list reader against Python's, on made-up trees in both encodings.

usage: check_property_lists.py PROBE
"""

import plistlib
import random
import struct
import sys
from datetime import datetime, timedelta, timezone

from probe import Complaint, answers, check_all, check_named, status_of

SEED = 20250305
COUNT = 1500  # in each encoding
CHARACTERS = ["a", "Z", " ", "<", "&", ">", '"', "'", "\n", "\t", "é", "€", "語", "😀", "]]>", "\u2028"]
INTEGERS = [0, 1, -1, 127, 128, 255, 256, 65535, 65536, 2**31, 2**32, 2**63 - 1, 2**63, 2**64 - 1, -2**31, -2**63]
REALS = [0.0, -0.0, 0.1, -1.5, 1e300, 5e-324, 1.7976931348623157e308, float("inf"), float("-inf"), float("nan"), 2.0**53]
EPOCH = datetime(1970, 1, 1)

# What the two readers make of these differs, and is meant to.
LIBERTIES = {
    "an identifier is read as the dictionary that stands for it in XML":
        (plistlib.dumps({"a": plistlib.UID(7)}, fmt=plistlib.FMT_BINARY), "{61:{434624554944:i7,},}"),
    "data without a byte is refused in XML": (b'<plist version="1.0"><data></data></plist>', "refused"),
}


class Trees:
    """A source of trees; the same ones for the same `random.Random`."""

    def __init__(self, source, fmt):
        self.random, self.is_binary = source, fmt == plistlib.FMT_BINARY

    def text(self):
        characters = CHARACTERS + ["\0", "\x01", "\r"] if self.is_binary else CHARACTERS
        return "".join(self.random.choice(characters) for _ in range(self.random.choice([0, 1, 3, 14, 15, 40])))

    def integer(self):
        return self.random.choice(INTEGERS) if self.random.random() < 0.5 else self.random.randrange(-2**40, 2**40)

    def real(self):
        if self.random.random() < 0.5:
            return self.random.choice(REALS)
        return self.random.uniform(-1, 1) * 10.0 ** self.random.randrange(-300, 300)

    def date(self):
        half = self.random.choice([0, 500000]) if self.is_binary else 0
        return datetime(1, 1, 2) + timedelta(seconds=self.random.randrange(0, 315_000_000_000), microseconds=half)

    def data(self):
        return self.random.randbytes(self.random.choice([1, 2, 3, 14, 15, 300]))

    def tree(self, depth=0):
        kinds = [self.text, self.integer, self.real, self.date, self.data, lambda: self.random.random() < 0.5]
        if depth < 5:
            count = self.random.choice([0, 1, 3, 16 if depth < 2 else 2])
            kinds += 2 * [lambda: [self.tree(depth + 1) for _ in range(count)],
                          lambda: {self.text(): self.tree(depth + 1) for _ in range(count)}]
        return self.random.choice(kinds)()

    def document(self):
        fmt = plistlib.FMT_BINARY if self.is_binary else plistlib.FMT_XML
        return plistlib.dumps(self.tree(), fmt=fmt, sort_keys=False)


def bits(value):
    return "nan" if value != value else str(struct.unpack(">Q", struct.pack(">d", value))[0])


def described(value):
    """A tree as the probe prints it."""
    if isinstance(value, dict):
        return "{" + "".join(f"{key.encode().hex()}:{described(each)}," for key, each in value.items()) + "}"
    if isinstance(value, list):
        return "[" + "".join(described(each) + "," for each in value) + "]"
    if isinstance(value, bool):
        return "true" if value else "false"
    if isinstance(value, str):
        return "s" + value.encode().hex()
    if isinstance(value, int):
        return f"i{value}"
    if isinstance(value, float):
        return "r" + bits(value)
    if isinstance(value, datetime):
        return "d" + bits((value - EPOCH) / timedelta(seconds=1))
    if isinstance(value, bytes):
        return "x" + value.hex()
    raise Complaint(f"unknown kind {type(value)}")


def complaint_about(document, line):
    """What is wrong with an answer; None when both readers agree."""
    wanted = described(plistlib.loads(document))
    return None if line == wanted else f"Python: {wanted}\n  here:   {line}"


def check(program):
    for fmt in (plistlib.FMT_XML, plistlib.FMT_BINARY):
        trees = Trees(random.Random(SEED), fmt)
        documents = [trees.document() for _ in range(COUNT)]
        check_all(documents, answers(program, documents), complaint_about)
    check_named(program, LIBERTIES, lambda line: "refused" if line.startswith("refused:") else line)


if __name__ == "__main__":
    sys.exit(status_of(check))
