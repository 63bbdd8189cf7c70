"""What is packed beside the programs: the units that record from the start, the formula, the notices."""

import configparser
import hashlib
import json
import plistlib
import re
import subprocess
import tempfile
import unittest
from pathlib import Path

PROJECT = Path(__file__).resolve().parents[2]
PACKAGING = PROJECT / "packaging"


def sources_called(name):
    return subprocess.run(["git", "ls-files", name], cwd=PROJECT, check=True, capture_output=True, text=True).stdout.split()


def read_service():
    service = configparser.ConfigParser(interpolation=None)
    service.optionxform = str
    service.read_string((PACKAGING / "quellin-record.service").read_text(encoding="utf-8"))
    return service


def exit_statuses():
    text = (PROJECT / "Sources/quellin/Outcome/ExitStatus.h").read_text(encoding="utf-8")
    return {name: value for name, value in re.findall(r"^  (\w+) = (\d+),", text, re.MULTILINE)}


class ServiceTest(unittest.TestCase):
    def test_it_records_into_its_state_folder(self):
        service = read_service()["Service"]
        self.assertEqual(service["StateDirectory"], "quellin")
        self.assertRegex(service["ExecStart"], r"^quellin record .*--store \$\{STATE_DIRECTORY\}/QuellinSessions\.store$")

    def test_it_ends_its_session_by_a_signal_that_ends_it_properly(self):
        self.assertEqual(read_service()["Service"]["KillSignal"], "SIGTERM")

    def test_it_gives_up_where_trying_again_is_of_no_use(self):
        service, statuses = read_service(), exit_statuses()
        self.assertEqual(service["Service"]["RestartPreventExitStatus"].split(),
                         [statuses["usage"], statuses["nothingMeasurable"]])
        self.assertEqual(service["Unit"]["StartLimitIntervalSec"], "10min")
        burst, pause = int(service["Unit"]["StartLimitBurst"]), int(service["Service"]["RestartSec"])
        self.assertLess(burst * pause, 600)

    def test_it_says_that_it_has_no_use_for_the_tool(self):
        self.assertEqual(read_service()["Service"]["NoNewPrivileges"], "yes")
        text = (PACKAGING / "quellin-record.service").read_text(encoding="utf-8").replace("\n# ", " ")
        self.assertIn("NoNewPrivileges disables the set-user-ID tool", text)


class AgentTest(unittest.TestCase):
    def setUp(self):
        self.text = (PACKAGING / "org.quellin.record.plist.in").read_text(encoding="utf-8")
        self.agent = plistlib.loads(self.text.replace("@CMAKE_INSTALL_FULL_BINDIR@", "/opt/quellin/bin").encode())

    def test_it_records_from_login_on(self):
        self.assertEqual(self.agent["Label"], "org.quellin.record")
        self.assertEqual(self.agent["ProgramArguments"], ["/opt/quellin/bin/quellin", "record", "--interval", "5s"])
        self.assertIs(self.agent["RunAtLoad"], True)

    def test_it_starts_again_after_a_crash_alone(self):
        self.assertEqual(self.agent["KeepAlive"], {"Crashed": True})
        self.assertEqual(self.agent["ThrottleInterval"], 60)

    def test_it_says_how_it_is_installed_and_ended(self):
        self.assertIn("launchctl bootstrap gui/$UID ~/Library/LaunchAgents/org.quellin.record.plist", self.text)
        self.assertIn("launchctl bootout gui/$UID/org.quellin.record", self.text)
        self.assertNotIn("launchctl load", self.text)


class FormulaTest(unittest.TestCase):
    URL = "https://archives.example/quellin.tar.gz"

    @classmethod
    def setUpClass(cls):
        folder = tempfile.TemporaryDirectory(prefix="quellin-formula-")
        cls.addClassCleanup(folder.cleanup)
        printed = subprocess.run([PACKAGING / "make_formula.sh", folder.name, cls.URL], check=True, capture_output=True, text=True)
        cls.archive, cls.formula = (Path(line) for line in printed.stdout.split())
        cls.text = cls.formula.read_text(encoding="utf-8")

    def value_of(self, field):
        return re.search(rf'^  {field} "([^"]*)"$', self.text, re.MULTILINE).group(1)

    def test_it_is_ruby(self):
        checked = subprocess.run(["ruby", "-wc", self.formula], check=True, capture_output=True, text=True)
        self.assertEqual((checked.stdout, checked.stderr), ("Syntax OK\n", ""))

    def test_nothing_is_left_to_fill_in(self):
        self.assertNotRegex(self.text, r"@\w+@")

    def test_it_names_the_archive_and_what_it_holds(self):
        self.assertEqual(self.value_of("url"), self.URL)
        self.assertEqual(self.value_of("sha256"), hashlib.sha256(self.archive.read_bytes()).hexdigest())
        listing = subprocess.run(["tar", "-tzf", self.archive], check=True, capture_output=True, text=True).stdout.split()
        self.assertRegex(listing[0], r"^quellin-\d+\.\d+\.\d+/$")
        for name in ("CMakeLists.txt", "LICENSE", "Web/package-lock.json", "Examples/macbook.trace.jsonl"):
            self.assertIn(listing[0] + name, listing)

    def test_its_home_page_is_a_page(self):
        self.assertRegex(self.value_of("homepage"), r"^https://[a-z.]+$")

    def test_it_depends_on_what_the_build_needs(self):
        needed = set(re.findall(r'^  depends_on "([^"]+)"', self.text, re.MULTILINE))
        building = (PROJECT / "Brewfile").read_text(encoding="utf-8").split('brew "googletest"')[0]
        self.assertEqual(needed, set(re.findall(r'^brew "([^"]+)"', building, re.MULTILINE)) - {"ccache"})


class NoticesTest(unittest.TestCase):
    def setUp(self):
        self.text = (PROJECT / "THIRD_PARTY.md").read_text(encoding="utf-8")
        self.rows = [line for line in self.text.splitlines() if line.startswith("| ")][1:]

    def test_every_library_that_the_build_finds_has_its_row(self):
        lists = [PROJECT / name for name in sources_called("Sources/*CMakeLists.txt")]
        found = {name for path in lists for name in re.findall(r"find_package\((\w+)", path.read_text(encoding="utf-8"))}
        self.assertGreater(len(found), 8)
        self.assertEqual([name for name in sorted(found) if name.rstrip("3").lower() not in "\n".join(self.rows).lower()], [])

    def test_every_package_that_the_page_is_bundled_with_has_its_row(self):
        lock = json.loads((PROJECT / "Web/package-lock.json").read_text(encoding="utf-8"))["packages"]
        bundled = [name.removeprefix("node_modules/") for name, package in lock.items() if name and not package.get("dev")]
        self.assertTrue(bundled)
        self.assertEqual([name for name in bundled if name not in "\n".join(self.rows).lower()], [])

    def test_every_row_says_licence_and_way(self):
        for row in self.rows:
            self.assertRegex(row, r"^\| [^|]+ \| [^|]+ \| [^|]+ \|$")

    def test_what_is_compiled_in_and_wants_its_notice_has_it(self):
        for holder in ("Leon Sorokin", "Expat maintainers", "Victor Zverovich", "University of Cincinnati"):
            self.assertRegex(self.text, rf"    Copyright \(c\) .*{holder}")

    def test_the_licence_of_the_package_is_the_licence(self):
        def words(name):
            return re.sub(r"\n \.\n", "\n", (PROJECT / name).read_text(encoding="utf-8")).split()
        licence = words("LICENSE")
        body = licence[licence.index("Permission"):]
        self.assertEqual(words("packaging/copyright")[-len(body):], body)


if __name__ == "__main__":
    unittest.main()
