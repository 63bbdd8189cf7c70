"""Installs the build, uses it as others would, and packs it for Debian.

usage: test_package.py BUILD_FOLDER COMPILER
"""

import os
import re
import shutil
import stat
import sys
import tempfile
import unittest
from pathlib import Path

from using import assert_exports_a_session, build_by_cmake, build_by_pkg_config, run

BUILD = Path(sys.argv.pop(1)).resolve()
COMPILER = sys.argv.pop(1)

PROGRAM_FILES = {
    "bin/quellin", "libexec/quellin/QuellinHelper", "share/man/man1/quellin.1",
    "share/bash-completion/completions/quellin", "share/zsh/vendor-completions/_quellin",
    "share/fish/vendor_completions.d/quellin.fish", "lib/systemd/system/quellin-record.service",
    "share/doc/quellin/README.md", "share/doc/quellin/linux.md", "share/doc/quellin/macos.md",
    "share/doc/quellin/copyright", "share/doc/quellin/THIRD_PARTY.md", "share/doc/quellin/LICENSE",
}


class PackageTest(unittest.TestCase):
    @classmethod
    def setUpClass(cls):
        cls.folder = Path(tempfile.mkdtemp(prefix="quellin-package-"))
        cls.addClassCleanup(shutil.rmtree, cls.folder)
        cls.prefix = cls.folder / "installed"
        for component in ("program", "development"):
            run("cmake", "--install", BUILD, "--prefix", cls.prefix, "--component", component)

    def test_every_file_has_its_place(self):
        found = {str(path.relative_to(self.prefix)) for path in self.prefix.rglob("*") if path.is_file()}
        self.assertLessEqual(PROGRAM_FILES, found)
        self.assertTrue(any(re.fullmatch(r"lib/.*/cmake/QuellinCore/QuellinCoreConfig.cmake|"
                                         r"lib/cmake/QuellinCore/QuellinCoreConfig.cmake", name) for name in found))
        self.assertIn("include/QuellinCore/Sessions/PowerSessionStore.h", found)
        self.assertFalse([name for name in found if "/Linux/" in name or "/Darwin/" in name or "Test" in name])
        headers = {name: (self.prefix / name).read_text(encoding="utf-8") for name in found if name.endswith(".h")}
        including = [name for name, text in headers.items() if "#include <boost/" in text]
        self.assertEqual(including, ["include/QuellinCore/Support/AsioExecutor.h"])
        self.assertEqual([name for name, text in headers.items() if "#include <simdjson" in text], [])

    def test_the_tool_is_not_privileged_until_somebody_says_so(self):
        mode = os.stat(self.prefix / "libexec/quellin/QuellinHelper").st_mode
        self.assertEqual(stat.S_IMODE(mode), 0o755)

    def test_the_installed_program_runs(self):
        self.assertRegex(run(self.prefix / "bin/quellin", "--version"), r"^quellin \d+\.\d+\.\d+\n$")

    def test_a_cmake_project_builds_against_it(self):
        program = build_by_cmake(self.prefix, COMPILER, self.folder / "consumer")
        assert_exports_a_session(self, run(program))

    def test_a_project_with_pkg_config_builds_against_it(self):
        program = build_by_pkg_config(self.prefix, COMPILER, self.folder / "with-pkg-config", "--static")
        assert_exports_a_session(self, run(program))

    def test_every_header_that_is_installed_stands_alone(self):
        include = self.prefix / "include"
        headers = sorted(str(path.relative_to(include)) for path in include.rglob("*.h"))
        self.assertGreater(len(headers), 80)
        source = self.folder / "headers.cpp"
        source.write_text("".join(f'#include "{name}"\n' for name in reversed(headers)), encoding="utf-8")
        run(COMPILER, "-std=c++23", "-fsyntax-only", f"-I{include}", source)

    def test_debian_packages_are_made(self):
        packages = self.folder / "packages"
        run("cpack", "--config", BUILD / "CPackConfig.cmake", "-B", packages)
        made = {path.name.split("_")[0]: path for path in packages.glob("*.deb")}
        self.assertEqual(set(made), {"quellin", "libquellincore-dev"})
        listing = run("dpkg-deb", "--contents", made["quellin"])
        for name in PROGRAM_FILES:
            self.assertIn(f" ./usr/{name}\n", listing)
        self.assertRegex(listing, r"-rwxr-xr-x root/root .*/QuellinHelper\n")
        self.assertEqual(re.findall(r"^\S*[sS]\S* .*", listing, re.MULTILINE), [])
        self.assertIn(" ./usr/share/doc/libquellincore-dev/copyright\n", run("dpkg-deb", "--contents", made["libquellincore-dev"]))
        control = run("dpkg-deb", "--field", made["quellin"], "Depends")
        self.assertIn("libsqlite3-0", control)
        control = run("dpkg-deb", "--field", made["libquellincore-dev"], "Depends")
        for needed in ("libboost1.81-dev", "libsimdjson-dev", "libsqlite3-dev", "libzstd-dev", "libicu-dev"):
            self.assertIn(needed, control)


if __name__ == "__main__":
    unittest.main(argv=[sys.argv[0], "-v"])
