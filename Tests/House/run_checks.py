"""Checks the tree against the rules of the house. With a build folder, also that everything on disk is registered.

usage: run_checks.py [BUILD_FOLDER]
"""

import json
import subprocess
import sys
from pathlib import Path

import house

ROOT = Path(__file__).resolve().parents[2]


def registered_tests(build):
    listing = subprocess.run(["ctest", "--test-dir", build, "--show-only=json-v1"], check=True, capture_output=True)
    return [test["name"] for test in json.loads(listing.stdout)["tests"]]


def main():
    found = house.include_violations(ROOT / "Sources") + house.page_import_violations(ROOT) + house.budgets_of_tree(ROOT)
    found += house.undocumented_installs(ROOT) + house.silent_on_threads(ROOT) + house.stale_pictures(ROOT)
    if len(sys.argv) > 1:
        build = Path(sys.argv[1])
        commands = json.loads((build / "compile_commands.json").read_text(encoding="utf-8"))
        files = house.tracked(ROOT, "Tests/*Test.cpp", "Tests/Fuzz/*.cpp", "Benchmarks/*.cpp", "Examples/*.cpp")
        found += house.unregistered_tests(ROOT / "Tests", registered_tests(build))
        found += house.uncompiled_files(files, commands)
    for line in found:
        print(line, file=sys.stderr)
    return 1 if found else 0


if __name__ == "__main__":
    sys.exit(main())
