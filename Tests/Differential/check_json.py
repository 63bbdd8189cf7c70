#!/usr/bin/env python3
"""Holds the JSON reader and writer against those of Python and jq, on made-up documents.

usage: check_json.py PROBE
"""

import json
import random
import re
import struct
import subprocess
import sys
from fractions import Fraction

from json_documents import SEED, Documents
from probe import Complaint, answers, check_all, check_named, status_of

COUNT = 12000
DEEPEST = 512

# Where the reader is freer than the letter of JSON: what is read, and as what.
LIBERTIES = {
    "of a repeated key the first counts": (b'{"small":1,"small":2,"small":"x"}', '{"small":1}'),
    "a whole number may be spelled with a fraction": (b'{"wide":12.0}', '{"wide":12}'),
    "a whole number may be spelled with an exponent": (b'{"wide":1e3,"count":1200e-2}', '{"wide":1000,"count":12}'),
    "unknown keys are ignored": (b'{"unknown":{"flag":1},"flag":true}', '{"flag":true}'),
    "null stands for an absent optional": (b'{"flag":null,"leaf":null}', "{}"),
    "a byte-order mark is accepted": (b'\xef\xbb\xbf{"small":1}', '{"small":1}'),
    "UTF-16 is accepted": ('{"text":"é"}'.encode("utf-16-be"), '{"text":"é"}'),
    "UTF-32 is accepted": ('{"text":"é"}'.encode("utf-32-le"), '{"text":"é"}'),
    "containers may be nested 512 deep": (b'{"x":' + b"[" * 511 + b"]" * 511 + b"}", "{}"),
}

# What Python reads, and this reader does not.
REFUSED = {
    "not a number": b'{"number":NaN}',
    "infinity": b'{"number":-Infinity}',
    "half of a surrogate pair": b'{"text":"\\ud83d"}',
    "half of a surrogate pair in a key": b'{"\\ude00":1}',
    "half of a surrogate pair as bytes": b'{"text":"\xed\xa0\xbd"}',
    "containers 513 deep": b'{"x":' + b"[" * 512 + b"]" * 512 + b"}",
}


class Invalid(Exception):
    """No JSON, by this reader's rules."""


class Unsuitable(Exception):
    """A value is not what its field wants."""


class Number(str):
    """A number as it was spelled."""


def refuse(text):
    raise Invalid(text)


def check_value(value, depth):
    """Refuses half surrogate pairs and deep nesting, which Python takes."""
    if isinstance(value, str) and re.search("[\ud800-\udfff]", value):
        raise Invalid("half a surrogate pair")
    if isinstance(value, (dict, list)) and depth >= DEEPEST:
        raise Invalid("too deep")
    for element in value.values() if isinstance(value, dict) else value if isinstance(value, list) else ():
        check_value(element, depth + 1)


def first_of_equal_keys(pairs):
    """An object as a dict; what is repeated is kept under keys that no document can hold, so that it is checked, too."""
    result = {}
    for index, (key, value) in enumerate(pairs):
        check_value(key, 0)
        result[key if key not in result else (key, index)] = value
    return result


def parsed(document):
    """The document as Python reads it, without the liberties that Python takes."""
    try:
        text = document.decode(json.detect_encoding(document))
        value = json.loads(text, parse_int=Number, parse_float=Number, parse_constant=refuse,
                           object_pairs_hook=first_of_equal_keys)
    except ValueError as error:
        raise Invalid(str(error)) from error
    check_value(value, 0)
    return value


def whole(lowest, highest):
    def read(value):
        if not isinstance(value, Number):
            raise Unsuitable
        mantissa, _, exponent = value.lower().partition("e")
        # Whatever its digits are, a number that far out is 0 or too large or no whole one.
        if abs(int(exponent or 0)) > 5000:
            number = Fraction(0) if not mantissa.strip("-0.") else Fraction(1, 2)
        else:
            number = Fraction(value)
        if number.denominator != 1 or not lowest <= number <= highest:
            raise Unsuitable
        return int(number)

    return read


def double(value):
    if not isinstance(value, Number):
        raise Unsuitable
    number = float(value)
    vanishes = number == 0 and value.lower().partition("e")[0].strip("-0.")
    if vanishes or abs(number) == float("inf"):
        raise Unsuitable
    return number


def boolean(value):
    if not isinstance(value, bool):
        raise Unsuitable
    return value


def string(value):
    if not isinstance(value, str) or isinstance(value, Number):
        raise Unsuitable
    return value


def array(element):
    def read(value):
        if not isinstance(value, list):
            raise Unsuitable
        return [element(each) for each in value]

    return read


def record(fields):
    def read(value):
        if not isinstance(value, dict):
            raise Unsuitable
        return {name: field(value[name]) for name, field in fields.items() if value.get(name) is not None}

    return read


LEAF = record({"text": string, "number": double})
DOCUMENT = record({"flag": boolean, "small": whole(-2**31, 2**31 - 1), "wide": whole(-2**63, 2**63 - 1),
                   "count": whole(0, 2**64 - 1), "number": double, "text": string, "numbers": array(double),
                   "leaves": array(LEAF), "leaf": LEAF})


def kind_of(line):
    return line if line in ("invalid", "unsuitable") else "read"


def expected(document):
    """What the reader must make of a document: a word, or the record."""
    try:
        return DOCUMENT(parsed(document))
    except Invalid:
        return "invalid"
    except Unsuitable:
        return "unsuitable"


def exact(value):
    """A value in a form that tells 0 from -0."""
    if isinstance(value, float):
        return struct.pack(">d", value)
    if isinstance(value, dict):
        return [(key, exact(each)) for key, each in value.items()]
    return [exact(each) for each in value] if isinstance(value, list) else value


def complaint_about(document, line):
    """What is wrong with an answer; None when both readers agree."""
    wanted = expected(document)
    if isinstance(wanted, str) or kind_of(line) != "read":
        return None if wanted == line else f"Python: {wanted}, here: {line}"
    written = parsed(line.encode())
    same = list(written) == list(wanted) and exact(DOCUMENT(written)) == exact(wanted)
    return None if same else f"Python: {wanted}, here: {line}"


def check_jq(lines):
    """Raises a complaint unless jq reads, in what was written, the values that Python reads."""
    run = subprocess.run(["jq", "-c", "."], input="\n".join(lines).encode(), capture_output=True, check=True)
    read = run.stdout.decode().split("\n")[:-1]
    if len(read) != len(lines):
        raise Complaint(f"jq reads {len(read)} of {len(lines)} documents")
    for line, again in zip(lines, read):
        if json.loads(line, parse_int=float) != json.loads(again, parse_int=float):
            raise Complaint(f"jq reads {again}, written was {line}")


def check_kinds(lines):
    """Raises a complaint unless the made-up documents were of all kinds in good number."""
    for kind, fewest in {"read": COUNT // 4, "unsuitable": COUNT // 20, "invalid": COUNT // 10}.items():
        found = sum(kind_of(line) == kind for line in lines)
        if found < fewest:
            raise Complaint(f"only {found} of {COUNT} documents were {kind}")


def check(program):
    source = Documents(random.Random(SEED))
    documents = [source.document() for _ in range(COUNT)]
    lines = answers(program, documents)
    check_kinds(lines)
    check_all(documents, lines, complaint_about)
    check_jq([line for line in lines if kind_of(line) == "read"])
    check_named(program, LIBERTIES)
    check_named(program, {name: (document, "invalid") for name, document in REFUSED.items()})


if __name__ == "__main__":
    sys.exit(status_of(check))
