"""Runs the tests of the Darwin sources and says which of their lines and decisions were executed; fails unless all were.

A decision is a condition, a loop or a choice between two values: each way out of it has to be taken, because a failing
call and the way on from it mostly share a line.

usage: coverage.py BUILD_FOLDER
"""

import json
import re
import subprocess
import sys
from collections import defaultdict
from pathlib import Path

ROOT = Path(__file__).resolve().parents[2]
ROOMS = [ROOT / "Sources/QuellinCore/Platform/Darwin", ROOT / "Sources/QuellinCore/IOReport"]
DECISION = re.compile(r"\b(if|for|while)\b|\?|&&|\|\|")
# A closing brace stands for the destruction of locals, which for a returned one happens under an exception only.
BRACE = re.compile(r"^\s*}\s*$")
# A process that ends here leaves no counts; the tests see it die.
END = re.compile(r"\b(endOnOverflow|abort)\(\)")


class FileCoverage:
    """What was executed of one file, over every object that contains a part of it."""

    def __init__(self):
        self.lines = defaultdict(int)
        self.branches = defaultdict(int)  # (line, function's plain name, index) to how often

    def add(self, entry):
        """Adds one line of one function as gcov reports it. Instances of a template count as one function."""
        number = entry["line_number"]
        self.lines[number] += entry["count"]
        function = re.sub(r"I.*", "", entry.get("function_name", ""))
        for index, branch in enumerate(branch for branch in entry["branches"] if not branch["throw"]):
            self.branches[number, function, index] += branch["count"]

    def missed_lines(self, source):
        """The lines of `source`, a list, that were never executed."""
        return sorted(number for number, count in self.lines.items()
                      if count == 0 and not BRACE.match(source[number - 1]))

    def missed_decisions(self, source):
        """The lines of `source`, a list, where a decision never went one of its ways."""
        never = {number for (number, _, _), count in self.branches.items() if count == 0}
        return sorted(number for number in never
                      if DECISION.search(source[number - 1]) and not END.search(source[number - 1]))


def merged(reports, folders):
    """The coverage of each file below the folders, from gcov's reports."""
    files = defaultdict(FileCoverage)
    for report in reports:
        for file in report["files"]:
            path = (Path(report["current_working_directory"]) / file["file"]).resolve()
            if any(path.is_relative_to(folder) for folder in folders):
                for entry in file["lines"]:
                    files[path].add(entry)
    return files


def describe(files):
    """The lines to print, and whether everything was executed."""
    text, complete, executed, total = [], True, 0, 0
    for path, file in sorted(files.items()):
        source = path.read_text(encoding="utf-8").splitlines()
        missed, undecided = file.missed_lines(source), file.missed_decisions(source)
        executed += len(file.lines) - len(missed)
        total += len(file.lines)
        complete = complete and not missed and not undecided
        text.append(f"{100 * (1 - len(missed) / len(file.lines)):6.1f} %  {path.name}"
                    + (f", lines never executed: {missed}" if missed else "")
                    + (f", decisions never taken one way: {undecided}" if undecided else ""))
    text.append(f"{100 * executed / total if total else 0:6.1f} %  of {total} lines")
    return text, complete and total > 0


def run(build):
    objects = build / "Tests/CMakeFiles/DarwinTests.dir"
    for counts in objects.rglob("*.gcda"):
        counts.unlink()
    subprocess.run([build / "bin/DarwinTests", "--gtest_brief=1"], check=True)
    reports = []
    for notes in sorted(objects.rglob("*.gcno")):
        gcov = subprocess.run(["gcov", "--json-format", "--stdout", "--branch-probabilities", notes], cwd=build,
                              check=True, capture_output=True, text=True)
        reports += [json.loads(line) for line in gcov.stdout.splitlines() if line]
    return reports


def main():
    text, complete = describe(merged(run(Path(sys.argv[1]).resolve()), ROOMS))
    print("\n".join(text))
    return 0 if complete else 1


if __name__ == "__main__":
    sys.exit(main())
