"""Runs every fuzz harness of a build folder for a time, one on each core, and prints what each tried and how much it reached.

usage: run.py BIN_FOLDER SECONDS [SEED]

A crash, a leak, undefined behaviour or an input that takes too long or too much memory fails the run; its input is kept
beside the build folder. Once mended, it belongs into corpus/ under a name that says what it shows. A harness that tries
or reaches far less than it once did fails the run, too.
"""

import os
import re
import signal
import subprocess
import sys
import tempfile
import threading
import time
from concurrent.futures import ThreadPoolExecutor
from dataclasses import dataclass
from pathlib import Path

HERE = Path(__file__).resolve().parent
SOURCES = HERE.parents[1] / "Sources"
AT_ONCE = os.cpu_count()
LONGEST_INPUT = 65536
STARTING_SECONDS = 300  # beyond the time for fuzzing: reading the corpus, looking for leaks
KEPT_AFTER_FREEING = "quarantine_size_mb=64"  # the sanitizer's, which counts as memory that an input took
MEMORY_FOLDER = Path("/dev/shm")


@dataclass(frozen=True)
class Bounds:
    """What a harness was seen to do from its corpus alone within 20 s of a processor, and what one input may take at most."""

    seen_per_second: int
    seen_edges: int
    dictionary: str = None
    slowest_seconds: int = 2
    megabytes: int = 512

    @property
    def per_second(self):
        """The fewest executions in a second of a processor: a tenth."""
        return self.seen_per_second // 10

    @property
    def edges(self):
        """The fewest edges: half, since a slow machine reaches nearly as many."""
        return self.seen_edges // 2


BOUNDS = {
    "BatteryFuzzer": Bounds(11_900, 1562),
    "ChildOutputFuzzer": Bounds(22_800, 1828, "json", slowest_seconds=10),
    "ISO8601Fuzzer": Bounds(238_000, 206),
    "JSONDecoderFuzzer": Bounds(6800, 3825, "json"),
    "PowermetricsFuzzer": Bounds(4650, 1629, "propertyLists"),
    "PropertyListFuzzer": Bounds(5700, 1173, "propertyLists"),
    "SMCFuzzer": Bounds(33_400, 529),
    "StoreFuzzer": Bounds(347, 1744, slowest_seconds=10),
    "TraceFuzzer": Bounds(8430, 4654, "json"),
}


class Result:
    """What came of running one harness."""

    def __init__(self, name, seconds, bounds, run, kept):
        # Others may keep the machine busy; a harness that just waits is held to half of its bounds all the same.
        self.busy_seconds, self.bounds = max(run.processor_seconds, seconds / 2), bounds
        self.name, self.kept, self.status, self.output = name, kept, run.status, run.output
        self.executions = self.number(r"number_of_executed_units: *(\d+)")
        self.per_second = int(self.executions / self.busy_seconds) if self.executions else None
        self.edges = self.number(r"cov: (\d+)")
        self.all_edges = self.number(r"\((\d+) inline 8-bit counters\)")
        self.inputs = self.number(r"corp: (\d+)")

    def number(self, pattern):
        found = re.findall(pattern, self.output)
        return int(found[-1]) if found else None

    def is_good(self):
        """Whether nothing broke, and as much was tried and reached as is to be expected."""
        return self.status == 0 and not self.kept and not self.shortfall()

    def shortfall(self):
        """What this harness did less of than its bounds ask, in words; empty when it did enough."""
        fewest = {"executions": int(self.bounds.per_second * self.busy_seconds), "edges": self.bounds.edges}
        found = {"executions": self.executions or 0, "edges": self.edges or 0}
        return ", ".join(f"{found[what]} {what} of at least {fewest[what]}" for what in fewest if found[what] < fewest[what])

    def row(self):
        figures = [self.executions, self.per_second, self.inputs, self.edges, self.all_edges]
        return [self.name, *("?" if figure is None else str(figure) for figure in figures),
                "ok" if self.is_good() else "BROKEN"]


HEADINGS = ["harness", "executions", "a CPU second", "inputs", "edges", "of", ""]


def table(rows):
    widths = [max(len(row[column]) for row in rows) for column in range(len(rows[0]))]
    return "\n".join("  ".join([row[0].ljust(widths[0]), *(cell.rjust(width) for cell, width in zip(row[1:-1], widths[1:])),
                                row[-1]]).rstrip() for row in rows)


def field_names(sources):
    """The names of all fields of records, as the sources describe them."""
    return sorted({name for header in sources.rglob("*.h")
                   for name in re.findall(r'Field\{\s*"(\w+)"', header.read_text(encoding="utf-8"))})


def dictionary_path(name, scratch):
    """Where the words of a format lie; those of our JSON, the names of our own fields, are written into `scratch`."""
    if name != "json":
        return HERE / "dictionaries" / f"{name}.dict"
    with tempfile.NamedTemporaryFile("w", dir=scratch, suffix=".dict", delete=False, encoding="utf-8") as file:
        file.writelines(f'"\\"{field}\\":"\n' for field in field_names(SOURCES))
    return file.name


@dataclass(frozen=True)
class Run:
    """How a command ended, what it said on standard error, and what it took of the processors with all that it ran."""

    status: int
    output: str
    processor_seconds: float


def run_measured(command, longest_seconds, environment):
    """Runs a command to its end, or kills it when that is late."""
    with tempfile.TemporaryFile() as errors:
        process = subprocess.Popen(command, stdin=subprocess.DEVNULL, stdout=subprocess.DEVNULL, stderr=errors,
                                   env={**os.environ, **environment})
        late = threading.Event()

        def end():
            late.set()
            os.kill(process.pid, signal.SIGKILL)

        timer = threading.Timer(longest_seconds, end)
        timer.start()
        try:
            _, status, usage = os.wait4(process.pid, 0)
        finally:
            timer.cancel()
        process.returncode = os.waitstatus_to_exitcode(status)
        errors.seek(0)
        output = errors.read().decode(errors="replace") + ("\nIt did not end by itself." if late.is_set() else "")
        return Run(process.returncode, output, usage.ru_utime + usage.ru_stime)


def fuzz(program, seconds, work, scratch, seed=0):
    """Runs one harness; what it finds new lies in `work`, what breaks it beside that."""
    bounds = BOUNDS[program.name]
    work.mkdir(parents=True, exist_ok=True)
    prefix = f"{program.name}-"
    earlier = set(work.parent.glob(prefix + "*"))
    command = [str(program), f"-max_total_time={seconds}", f"-seed={seed}", f"-max_len={LONGEST_INPUT}",
               f"-timeout={bounds.slowest_seconds}", f"-rss_limit_mb={bounds.megabytes}", "-print_final_stats=1",
               *([f"-dict={dictionary_path(bounds.dictionary, scratch)}"] if bounds.dictionary else []),
               f"-artifact_prefix={work.parent / prefix}", str(work), str(HERE / "corpus" / program.name)]
    run = run_measured(command, seconds + STARTING_SECONDS, {"TMPDIR": scratch, "ASAN_OPTIONS": KEPT_AFTER_FREEING})
    return Result(program.name, seconds, bounds, run, sorted(set(work.parent.glob(prefix + "*")) - earlier))


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
        print(f"\n{result.name} ended with status {result.status}: {result.shortfall()}\n{result.output[-4000:]}", file=sys.stderr)
        for path in result.kept:
            print(f"kept: {path}", file=sys.stderr)
    return results, bool(results) and all(result.is_good() for result in results)


def main():
    folder, seconds = Path(sys.argv[1]), int(sys.argv[2])
    seed = int(sys.argv[3]) if len(sys.argv) > 3 else 0
    programs = harnesses(folder)
    begin = time.monotonic()
    _, all_good = run_all(programs, seconds, folder.parent / "fuzzing", seed)
    print(f"{len(programs)} harnesses, {AT_ONCE} at a time, {seconds} s each: {time.monotonic() - begin:.0f} s")
    return 0 if all_good else 1


if __name__ == "__main__":
    sys.exit(main())
