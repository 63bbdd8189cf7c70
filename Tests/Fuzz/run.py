"""Runs every fuzz harness of a build folder for a time, and says how many inputs each tried and how much it covered.

usage: run.py BIN_FOLDER SECONDS
"""

import re
import subprocess
import sys
from pathlib import Path

HERE = Path(__file__).resolve().parent


def fuzz(program, seconds, work):
    """Runs one harness; what it finds new lies in `work`, what breaks it beside it."""
    work.mkdir(parents=True, exist_ok=True)
    command = [str(program), f"-max_total_time={seconds}", "-max_len=65536", "-print_final_stats=1",
               f"-artifact_prefix={work.parent}/{program.name}-", str(work), str(HERE / "corpus" / program.name)]
    run = subprocess.run(command, capture_output=True, text=True, errors="replace")
    executions = re.search(r"number_of_executed_units: *(\d+)", run.stderr)
    coverage = re.findall(r"cov: (\d+)", run.stderr)
    print(f"{program.name}: {executions.group(1) if executions else '?'} executions, "
          f"{coverage[-1] if coverage else '?'} edges, {'ok' if run.returncode == 0 else 'BROKEN'}", flush=True)
    if run.returncode != 0:
        print(run.stderr[-4000:], file=sys.stderr)
    return run.returncode == 0


def main():
    folder, seconds = Path(sys.argv[1]), int(sys.argv[2])
    programs = [folder / source.stem for source in sorted(HERE.glob("*Fuzzer.cpp"))]
    work = folder.parent / "fuzzing"
    return 0 if all([fuzz(program, seconds, work / program.name) for program in programs]) else 1


if __name__ == "__main__":
    sys.exit(main())
