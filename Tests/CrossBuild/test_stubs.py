"""Declarations and link stubs of the macOS cross build name the same things: neither grows without the other."""

import re
import unittest
from pathlib import Path

MACOS = Path(__file__).resolve().parents[2] / "cmake/macos"
DECLARATION = re.compile(r"^(?!typedef|extern \"C\")[\w ]+[ *&]+(\w+)\(|^extern const \w+ (\w+);", re.MULTILINE)
EXPORT = re.compile(r"^ +- _(\w+)$", re.MULTILINE)


def declared(*headers):
    text = "\n".join((MACOS / "include" / header).read_text(encoding="utf-8") for header in headers)
    return {function or constant for function, constant in DECLARATION.findall(text)}


def exported(stub):
    return set(EXPORT.findall((MACOS / stub).read_text(encoding="utf-8")))


class StubsTest(unittest.TestCase):
    def test_core_foundation(self):
        names = declared("CoreFoundation/CoreFoundation.h")
        self.assertIn("CFRelease", names)
        self.assertIn("kCFAllocatorDefault", names)
        self.assertEqual(names, exported("frameworks/CoreFoundation.framework/CoreFoundation.tbd"))

    def test_iokit(self):
        names = declared("IOKit/IOKitLib.h", "IOKit/ps/IOPowerSources.h")
        self.assertIn("IOServiceOpen", names)
        self.assertEqual(names, exported("frameworks/IOKit.framework/IOKit.tbd"))

    def test_every_stub_is_for_a_library_that_the_executables_may_link(self):
        stubs = sorted(MACOS.glob("frameworks/*/*.tbd")) + sorted(MACOS.glob("lib/*.tbd"))
        self.assertGreater(len(stubs), 3)
        for stub in stubs:
            name = re.search(r"^install-name: (\S+)$", stub.read_text(encoding="utf-8"), re.MULTILINE)
            self.assertRegex(name[1], r"^(/System/Library/Frameworks|/usr/lib|/opt/homebrew/opt)/", stub)


if __name__ == "__main__":
    unittest.main()
