"""Runs clang-tidy over the files of this repository that a build folder compiles: what ships, or with --all the tests too.

usage: run_tidy.py BUILD_FOLDER JOBS [--all]
"""

import json
import subprocess
import sys
from concurrent.futures import ThreadPoolExecutor
from pathlib import Path

ROOT = Path(__file__).resolve().parents[2]


def own_files(build, with_tests):
    commands = json.loads((build / "compile_commands.json").read_text(encoding="utf-8"))
    paths = {Path(entry["file"]).resolve() for entry in commands}
    left_out = [ROOT / "build"] if with_tests else [ROOT / "build", ROOT / "Tests"]
    return sorted(path for path in paths
                  if path.is_relative_to(ROOT) and not any(path.is_relative_to(folder) for folder in left_out))


def tidy(build, path):
    command = ["clang-tidy-19", "-p", str(build), "--quiet", "--warnings-as-errors=*", str(path)]
    run = subprocess.run(command, capture_output=True, text=True)
    return run.stdout if run.returncode else ""


def main():
    build, jobs = Path(sys.argv[1]), int(sys.argv[2])
    files = own_files(build, "--all" in sys.argv)
    if not files:
        print(f"clang-tidy: {build} compiles nothing", file=sys.stderr)
        return 1
    with ThreadPoolExecutor(jobs) as pool:
        reports = [text for text in pool.map(lambda path: tidy(build, path), files) if text]
    print("".join(reports), end="", file=sys.stderr)
    print(f"clang-tidy: {len(files)} files, {len(reports)} with findings")
    return 1 if reports else 0


if __name__ == "__main__":
    sys.exit(main())
