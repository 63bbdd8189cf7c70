"""Runs every fuzz harness of a build folder for a time, several at once, and prints what each tried and how much it reached.

usage: run.py BIN_FOLDER SECONDS [SEED]

A crash, a leak, undefined behaviour or an input that takes too long fails the run; its input is kept beside the build
folder. Once mended, it belongs into corpus/ under a name that says what it shows.
"""

import os
import re
import subprocess
import sys
import tempfile
from concurrent.futures import ThreadPoolExecutor
from pathlib import Path

HERE = Path(__file__).resolve().parent
AT_ONCE = 3 * os.cpu_count()
LONGEST_INPUT = 65536
SLOWEST_INPUT_SECONDS = 20
STARTING_SECONDS = 300  # beyond the time for fuzzing: reading the corpus, looking for leaks
MEMORY_FOLDER = Path("/dev/shm")


class Result:
    """What came of running one harness."""

    def __init__(self, name, seconds, run, kept):
        self.name, self.kept, self.status, self.output = name, kept, run.returncode, run.stderr
        self.executions = self.number(r"number_of_executed_units: *(\d+)")
        self.per_second = self.executions // seconds if self.executions else None
        self.edges = self.number(r"cov: (\d+)")
        self.all_edges = self.number(r"\((\d+) inline 8-bit counters\)")
        self.inputs = self.number(r"corp: (\d+)")

    def number(self, pattern):
        found = re.findall(pattern, self.output)
        return int(found[-1]) if found else None

    def is_good(self):
        """Whether nothing broke, and something was tried and counted at all."""
        return self.status == 0 and not self.kept and bool(self.executions) and bool(self.edges)

    def row(self):
        figures = [self.executions, self.per_second, self.inputs, self.edges, self.all_edges]
        return [self.name, *("?" if figure is None else str(figure) for figure in figures),
                "ok" if self.is_good() else "BROKEN"]


HEADINGS = ["harness", "executions", "a second", "inputs", "edges", "of", ""]


def table(rows):
    widths = [max(len(row[column]) for row in rows) for column in range(len(rows[0]))]
    return "\n".join("  ".join([row[0].ljust(widths[0]), *(cell.rjust(width) for cell, width in zip(row[1:-1], widths[1:])),
                                row[-1]]).rstrip() for row in rows)


def fuzz(program, seconds, work, scratch, seed=0):
    """Runs one harness; what it finds new lies in `work`, what breaks it beside that."""
    work.mkdir(parents=True, exist_ok=True)
    prefix = f"{program.name}-"
    earlier = set(work.parent.glob(prefix + "*"))
    command = [str(program), f"-max_total_time={seconds}", f"-seed={seed}", f"-max_len={LONGEST_INPUT}",
               f"-timeout={SLOWEST_INPUT_SECONDS}", "-print_final_stats=1",
               f"-artifact_prefix={work.parent / prefix}", str(work), str(HERE / "corpus" / program.name)]
    try:
        run = subprocess.run(command, capture_output=True, text=True, errors="replace", stdin=subprocess.DEVNULL,
                             timeout=seconds + STARTING_SECONDS, env={**os.environ, "TMPDIR": scratch})
    except subprocess.TimeoutExpired:
        run = subprocess.CompletedProcess(command, 1, "", f"{program.name} did not end")
    return Result(program.name, seconds, run, sorted(set(work.parent.glob(prefix + "*")) - earlier))


def harnesses(folder, sources=HERE):
    return [folder / source.stem for source in sorted(sources.glob("*Fuzzer.cpp"))]


def run_all(programs, seconds, work, seed=0):
    """The results of all harnesses, and whether all are good; says what is broken. A seed of 0 is another each time."""
    scratch_parent = MEMORY_FOLDER if MEMORY_FOLDER.is_dir() else None
    with tempfile.TemporaryDirectory(dir=scratch_parent, prefix="quellin-fuzz-") as scratch:
        with ThreadPoolExecutor(max_workers=AT_ONCE) as workers:
            results = list(workers.map(lambda program: fuzz(program, seconds, work / program.name, scratch, seed), programs))
    print(table([HEADINGS, *(result.row() for result in results)]))
    for result in results:
        if result.is_good():
            continue
        print(f"\n{result.name} ended with status {result.status}:\n{result.output[-4000:]}", file=sys.stderr)
        for path in result.kept:
            print(f"kept: {path}", file=sys.stderr)
    return results, bool(results) and all(result.is_good() for result in results)


def main():
    folder, seconds = Path(sys.argv[1]), int(sys.argv[2])
    seed = int(sys.argv[3]) if len(sys.argv) > 3 else 0
    _, all_good = run_all(harnesses(folder), seconds, folder.parent / "fuzzing", seed)
    return 0 if all_good else 1


if __name__ == "__main__":
    sys.exit(main())
