"""Runs clang-tidy over every file that a build folder compiles from this repository.

usage: run_tidy.py BUILD_FOLDER JOBS
"""

import json
import subprocess
import sys
from concurrent.futures import ThreadPoolExecutor
from pathlib import Path

ROOT = Path(__file__).resolve().parents[2]


def own_files(build):
    commands = json.loads((build / "compile_commands.json").read_text(encoding="utf-8"))
    paths = {Path(entry["file"]).resolve() for entry in commands}
    return sorted(path for path in paths if path.is_relative_to(ROOT) and not path.is_relative_to(ROOT / "build"))


def tidy(build, path):
    command = ["clang-tidy-19", "-p", str(build), "--quiet", "--warnings-as-errors=*", str(path)]
    run = subprocess.run(command, capture_output=True, text=True)
    return run.stdout if run.returncode else ""


def main():
    build, jobs = Path(sys.argv[1]), int(sys.argv[2])
    files = own_files(build)
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
