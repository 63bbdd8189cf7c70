"""Makes up JSON documents for the record of the probe: good ones in every spelling, and damaged ones."""

SEED = 20250304
NAMES = ["flag", "small", "wide", "count", "number", "text", "numbers", "leaves", "leaf"]
LEAF_NAMES = ["text", "number"]
BLANKS = ["", "", "", "", " ", "\n", "\t", "\r\n", "  "]
CHARACTERS = ["a", "Z", "0", "/", "é", "ß", "€", "語", "😀", "\u2028", "\x7f", "\u00a0", "\ufeff", "\uffff", "'", "{", "]", ":", ","]
ESCAPES = ['\\"', "\\\\", "\\/", "\\b", "\\f", "\\n", "\\r", "\\t", "\\u0000", "\\u001F", "\\u00e9", "\\u20AC", "\\ud83d\\ude00"]
INTEGERS = [0, 1, -1, 2**31 - 1, 2**31, -2**31, -2**31 - 1, 2**53, 2**53 + 1, 2**63 - 1, 2**63, -2**63, -2**63 - 1,
            2**64 - 1, 2**64, 10**30]
DOUBLES = ["0.1", "-0", "-0.0", "1e-5", "1E+16", "123.456", "5e-324", "2e-324", "1.7976931348623157e308", "1e309",
           "-1e400", "2.2250738585072011e-308", "9007199254740993", "0.30000000000000004", "1e22", "1e23", "0e99", "1.0"]
# What a slip of the pen puts in.
SLIPS = list('{}[]",:\\/0123456789+-.eEtfnulr \t\n') + ["\x01", "\x0b", "\x1a", "\x7f", "é", "NaN", "true", "null", "\\u", "\\ud800"]
ENCODINGS = ["utf-8-sig", "utf-16", "utf-16-le", "utf-16-be", "utf-32", "utf-32-le", "utf-32-be"]


class Documents:
    """A source of documents; the same ones for the same `random.Random`."""

    def __init__(self, random):
        self.random = random

    def blank(self):
        return self.random.choice(BLANKS)

    def integer(self):
        random = self.random
        value = random.choice(INTEGERS) if random.random() < 0.4 else random.randrange(-10**random.randrange(1, 20), 10**9)
        spellings = [str(value), str(value), f"{value}.0", f"{value}e0", f"{value}000E-3", f"{value}.5"]
        if value % 10 == 0 and value:
            spellings.append(f"{value // 10}e1")
        return random.choice(spellings)

    def double(self):
        random = self.random
        if random.random() < 0.4:
            return random.choice(DOUBLES)
        digits = "".join(random.choice("0123456789") for _ in range(random.randrange(1, 25)))
        return f"{random.randrange(-999, 1000)}.{digits}e{random.randrange(-330, 310)}"

    def string(self):
        random = self.random
        pieces = [random.choice(ESCAPES if random.random() < 0.3 else CHARACTERS) for _ in range(random.randrange(6))]
        return '"' + "".join(pieces) + '"'

    def key(self, name):
        """`name` between quotes, now and then with one of its letters as an escape."""
        if self.random.random() < 0.1:
            place = self.random.randrange(len(name))
            name = f"{name[:place]}\\u{ord(name[place]):04x}{name[place + 1:]}"
        return f'"{name}"'

    def array(self, element):
        elements = [self.blank() + element() + self.blank() for _ in range(self.random.randrange(4))]
        return "[" + (",".join(elements) or self.blank()) + "]"

    def object(self, entries):
        text = ",".join(f"{self.blank()}{key}{self.blank()}:{self.blank()}{value}{self.blank()}" for key, value in entries)
        return "{" + (text or self.blank()) + "}"

    def anything(self, depth=0):
        kinds = [self.integer, self.double, self.string, lambda: self.random.choice(["true", "false", "null"])]
        if depth < 4:
            kinds += [lambda: self.array(lambda: self.anything(depth + 1)),
                      lambda: self.object([(self.string(), self.anything(depth + 1))])]
        return self.random.choice(kinds)()

    def leaf(self):
        fitting = {"text": self.string, "number": self.double}
        names = self.random.sample(LEAF_NAMES, self.random.randrange(3))
        return self.object([(self.key(name), self.value(fitting[name])) for name in names])

    def value(self, fitting):
        """Mostly what fits; now and then nothing, or anything."""
        chance = self.random.random()
        if chance < 0.05:
            return "null"
        return self.anything() if chance < 0.08 else fitting()

    def fitting(self, name):
        return {"flag": lambda: self.random.choice(["true", "false"]), "text": self.string, "number": self.double,
                "numbers": lambda: self.array(self.double), "leaves": lambda: self.array(self.leaf),
                "leaf": self.leaf}.get(name, self.integer)

    def record(self):
        random = self.random
        entries = [(self.key(name), self.value(self.fitting(name))) for name in NAMES if random.random() < 0.4]
        if random.random() < 0.3:
            entries.append((self.string(), self.anything()))
        if entries and random.random() < 0.15:
            entries.append((random.choice(entries)[0], self.anything()))
        random.shuffle(entries)
        return self.blank() + self.object(entries) + self.blank()

    def damaged(self, text):
        for _ in range(self.random.randrange(1, 3)):
            place = self.random.randrange(len(text) + 1)
            removed = self.random.randrange(2)
            put = self.random.choice(SLIPS) if self.random.random() < 0.7 or not removed else ""
            text = text[:place] + put + text[place + removed:]
        return text

    def document(self):
        text = self.record() if self.random.random() < 0.97 else self.anything()
        if self.random.random() < 0.4:
            text = self.damaged(text)
        encoding = self.random.choice(ENCODINGS) if self.random.random() < 0.1 else "utf-8"
        return text.encode(encoding)
