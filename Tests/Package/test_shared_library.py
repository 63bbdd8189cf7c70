"""Installs the shared libraries below a DESTDIR, looks at what they show, and links a program of somebody else with them.

usage: test_shared_library.py BUILD_FOLDER COMPILER
"""

import os
import re
import shutil
import sys
import tempfile
import unittest
from pathlib import Path

from using import assert_exports_a_session, build_by_cmake, build_by_pkg_config, run

BUILD = Path(sys.argv.pop(1)).resolve()
COMPILER = sys.argv.pop(1)
LIBRARIES = ("QuellinCore", "QuellinSessions")

# What compilers make for a class; its name follows.
MADE = re.compile(r"^(?:typeinfo(?: name)?|vtable|VTT) for ")
OURS = re.compile(r"^quellin::(?:\w+(?:\[abi:\w+\])?(?:<[^()]*>)?::)*~?\w+")


def strangers(names, words):
    """The names that are not in our namespace, or that no installed header says."""
    def is_ours(name):
        match = OURS.match(MADE.sub("", name))
        return match and set(re.findall(r"\w+", re.sub(r"\[.*?\]|<.*>", "", match.group()))) <= words
    return [name for name in names if not is_ours(name)]


class StrangersTest(unittest.TestCase):
    def test_what_headers_say_of_our_namespace_is_no_stranger(self):
        names = ["quellin::UUID::text() const", "vtable for quellin::UUID", "quellin::UUID::~UUID()"]
        self.assertEqual(strangers(names, {"quellin", "UUID", "text"}), [])

    def test_others_and_internals_are(self):
        names = ["std::vector<quellin::UUID>::size()", "quellin::Database::open()", "typeinfo for std::exception",
                 "quellin::UUID::secret()"]
        self.assertEqual(strangers(names, {"quellin", "UUID", "text", "std", "exception"}), names)


class SharedLibraryTest(unittest.TestCase):
    @classmethod
    def setUpClass(cls):
        cls.folder = Path(tempfile.mkdtemp(prefix="quellin-shared-"))
        cls.addClassCleanup(shutil.rmtree, cls.folder)
        run("cmake", "--install", BUILD, "--prefix", "/opt/quellin", env={**os.environ, "DESTDIR": str(cls.folder / "root")})
        cls.prefix = cls.folder / "root/opt/quellin"
        cls.libraries = next(cls.prefix.rglob("libQuellinCore.so")).parent

    def test_nothing_is_installed_outside_of_the_destination(self):
        self.assertEqual([path.name for path in (self.folder / "root").iterdir()], ["opt"])

    def test_each_has_its_version_in_its_name_and_links_to_it(self):
        for name in LIBRARIES:
            dynamic = run("readelf", "--dynamic", self.libraries / f"lib{name}.so")
            soname = re.search(r"SONAME.*\[(.*)\]", dynamic).group(1)
            self.assertRegex(soname, rf"^lib{name}\.so\.\d+\.\d+$")
            self.assertEqual(os.readlink(self.libraries / f"lib{name}.so"), soname)
            self.assertRegex(os.readlink(self.libraries / soname), rf"^{re.escape(soname)}\.\d+$")

    def test_each_finds_the_other_beside_it_and_nothing_where_it_was_built(self):
        for name in LIBRARIES:
            dynamic = run("readelf", "--dynamic", self.libraries / f"lib{name}.so")
            self.assertEqual(re.findall(r"(?:RUNPATH|RPATH).*\[(.*)\]", dynamic), ["$ORIGIN"])

    def test_they_show_what_installed_headers_say_and_nothing_else(self):
        headers = "".join(path.read_text(encoding="utf-8") for path in (self.prefix / "include").rglob("*.h"))
        words = set(re.findall(r"\w+", headers))
        for name in LIBRARIES:
            names = self.shown_by(self.libraries / f"lib{name}.so")
            self.assertGreater(len(names), 100)
            self.assertEqual(strangers(names, words), [])

    def shown_by(self, library):
        """What it exports, but for weak copies of templates of the C++ library, which the linker takes for ours when one
        of our types stands first in what it makes of their names."""
        mangled, readable = (run("nm", flags, "--defined-only", library).splitlines() for flags in ("-Dp", "-DCp"))
        return [name.split(" ", 2)[2] for symbol, name in zip(mangled, readable, strict=True)
                if not re.search(r" [WV] _ZN?K?St", symbol)]

    def test_a_cmake_project_links_with_them(self):
        program = build_by_cmake(self.prefix, COMPILER, self.folder / "consumer", "-DLIBRARY=QuellinSessionsShared")
        self.assert_loads_them(program)
        assert_exports_a_session(self, run(program))

    def test_a_project_with_pkg_config_links_with_them(self):
        program = build_by_pkg_config(self.prefix, COMPILER, self.folder / "with-pkg-config")
        self.assert_loads_them(program)
        assert_exports_a_session(self, run(program, env={**os.environ, "LD_LIBRARY_PATH": str(self.libraries)}))

    def test_our_own_programs_need_none_of_them(self):
        for name in ("bin/quellin", "libexec/quellin/QuellinHelper"):
            self.assertNotIn("libQuellin", run("readelf", "--dynamic", self.prefix / name))

    def assert_loads_them(self, program):
        needed = set(re.findall(r"NEEDED.*\[lib(Quellin\w+)\.so", run("readelf", "--dynamic", program)))
        self.assertEqual(needed, set(LIBRARIES))


if __name__ == "__main__":
    unittest.main(argv=[sys.argv[0], "-v"])
