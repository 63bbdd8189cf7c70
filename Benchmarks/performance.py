"""Prints one table of all hot paths: what each costs, its floor, and what a user would run instead.

usage: performance.py FOLDER_OF_PROGRAMS [--quick] [--write FILE]

All figures are CPU time. --quick measures shortly, to see that everything still runs; --write also keeps the table.
"""

import argparse
import json
import os
import platform
import subprocess
import sys
import tempfile
from dataclasses import dataclass
from pathlib import Path

from processes import medians, sleeping_processes


@dataclass(frozen=True)
class Row:
    """A hot path. The figures are names of measurements; the floor and the alternative say what they are."""

    path: str
    ours: str
    floor: str = None
    floor_is: str = ""
    instead: str = None
    instead_is: str = ""


ROWS = [
    Row("one poll of the live engine, all sources answer at once", "Engine/poll",
        "Engine/poll/floor", "copying the state it publishes"),
    Row("energy of 565 counters", "Readings/energy/565", "Readings/energy/floor/565", "one look at each name and amount"),
    Row("process activity of 2,000 processes, two snapshots", "Processes/measure/2000",
        "Processes/measure/floor/2000/2", "opening, reading, closing the files"),
    Row("the same as a process of its own (`readings`)", "process/readings",
        "Processes/measure/floor/2000/2", "opening, reading, closing the files", "process/top", "`top -b -n 1`"),
    Row("4 MB of the measuring tool's output", "PropertyLists/read/1/1600",
        "PropertyLists/read/floor/1600", "Expat with nobody listening"),
    Row("the same as a process of its own", "process/propertyList", "process/true", "`true`",
        "process/plistutil", "`plistutil`, which also writes it"),
    Row("a sample to JSON, 4.4 kB", "JSON/encode/sample", "JSON/encode/sample/floor", "copying the text",
        "JSON/encode/sample/instead", "nlohmann::json, from its tree"),
    Row("a sample from JSON", "JSON/decode/sample", "JSON/decode/sample/floor", "simdjson, nothing made of it",
        "JSON/decode/sample/instead", "nlohmann::json, to its tree"),
    Row("a trace of 217 ticks read", "Trace/read", "Trace/read/floor", "its lines parsed by simdjson",
        "Trace/read/instead", "its lines parsed by nlohmann::json"),
    Row("a sample appended to the store on disk", "Store/append", "Store/append/floor", "INSERT of the same bytes",
        "Store/append/instead", "INSERT of its JSON, SQLite as it comes"),
    Row("a reading through the recorder, store in memory", "Session/record", "Session/record/floor", "append alone"),
    Row("opening a store and listing 1,000 sessions", "Store/list/1000", "Store/list/floor/1000",
        "SELECT, every value copied"),
    Row("summary of an hour, 3,600 samples", "Session/summary/3600", "Session/summary/floor/3600",
        "SELECT of the numbers", "process/jq", "`jq`, average of the export"),
    Row("summary of a day, 86,400 samples", "Session/summary/86400", "Session/summary/floor/86400",
        "SELECT of the numbers"),
    Row("data of a report of a day, 86,400 samples", "Session/report/86400", "Session/summary/86400",
        "the summary alone"),
    Row("export of an hour, 16.7 MB", "Session/export/3600", "Session/export/floor/3600",
        "SELECT of the blobs, copying the text", "Session/export/instead/3600", "nlohmann::json, line by line"),
    Row("start and end of `quellin --version`", "process/version", "process/true", "`true`",
        "process/python", "`python3 -c pass`"),
    Row("recording for ten seconds, a sample a second", "process/record", "process/sleep", "`sleep 10`",
        "process/sadc", "`sadc 1 10`"),
]

# What grows with what: the names of measurements that end with a number.
GROWTH = [
    ("readings for the dashboard", "sensors", "Readings/dashboard"),
    ("plausible temperatures", "sensors", "Readings/temperatures"),
    ("energy", "counters", "Readings/energy"),
    ("process activity", "processes", "Processes/measure"),
    ("ranking of processes", "processes", "Processes/rank"),
    ("summary", "samples", "Session/summary"),
    ("recorder that resumes", "samples", "Session/resume"),
    ("export", "samples", "Session/export"),
    ("opening and listing", "sessions", "Store/list"),
]


def parsed_benchmarks(document):
    """CPU seconds by name, of what google-benchmark wrote as JSON; repetitions give their median."""
    units = {"ns": 1e-9, "us": 1e-6, "ms": 1e-3, "s": 1.0}
    found = {}
    for run in document["benchmarks"]:
        if run.get("error_occurred"):
            raise ValueError(f"{run['name']}: {run['error_message']}")
        if run.get("aggregate_name", "median") == "median":
            found[run["run_name"].split("/iterations:")[0]] = run["cpu_time"] * units[run["time_unit"]]
    return found


def run_benchmarks(programs, quick):
    options = ["--benchmark_min_time=0.05"] if quick else ["--benchmark_repetitions=3", "--benchmark_min_time=0.2",
                                                           "--benchmark_report_aggregates_only=true"]
    with tempfile.NamedTemporaryFile() as out:
        subprocess.run([programs / "QuellinBenchmarks", *options, f"--benchmark_out={out.name}"], check=True,
                       stdout=subprocess.DEVNULL)
        return parsed_benchmarks(json.load(out))


def run_processes(programs, quick):
    """CPU seconds of whole processes, by name."""
    rounds = 1 if quick else 9
    with tempfile.TemporaryDirectory() as folder:
        def measured(**commands):
            found.update(zip((f"process/{name}" for name in commands), medians(commands.values(), rounds)))

        found = {}
        measured(version=[programs / "quellin", "--version"], true=["true"], python=["python3", "-c", "pass"])
        document = f"{folder}/hour.jsonl"
        with open(document, "wb") as file:
            subprocess.run([programs / "ExportedDay", "3600", "1"], check=True, stdout=file)
        average = "reduce (inputs.sample.snapshot.totalWatts | numbers) as $w ([0, 0]; [.[0] + $w, .[1] + 1]) | .[0] / .[1]"
        measured(jq=["jq", "-n", average, document])
        plist = f"{folder}/plist"
        subprocess.run([programs / "PropertyListReading", "write", plist, "1", "1600"], check=True)
        measured(propertyList=[programs / "PropertyListReading", "read", plist, "1"],
                 plistutil=["plistutil", "-i", plist, "-o", "/dev/null"])
        with sleeping_processes():
            measured(readings=[programs / "readings"], top=["top", "-b", "-n", "1"])
        rounds = 1
        length = "1" if quick else "10"
        measured(record=[programs / "quellin", "record", "--for", f"{length}s", "--title", "T", "--store", f"{folder}/s"],
                 sadc=["/usr/lib/sysstat/sadc", "1", length, f"{folder}/sadc"], sleep=["sleep", length])
        return {name: milliseconds / 1000 for name, milliseconds in found.items()}


def duration(seconds):
    for unit, size in (("s", 1), ("ms", 1e-3), ("µs", 1e-6)):
        if seconds >= size:
            return f"{seconds / size:.3g} {unit}"
    return f"{seconds / 1e-9:.3g} ns"


def cells(ours, other, description):
    """A time with what it is, and ours as a multiple of it."""
    return [f"{duration(other)} ({description})", f"{ours / other:.2g}" if other else "–"]


def table_row(row, times):
    ours = times[row.ours]
    floor = cells(ours, times[row.floor], row.floor_is) if row.floor else ["–", "–"]
    instead = cells(ours, times[row.instead], row.instead_is) if row.instead else ["–", "–"]
    return [row.path, duration(ours), *floor, *instead]


def growth_row(what, of, prefix, times):
    sizes = sorted(int(name.rsplit("/", 1)[1]) for name in times
                   if name.rsplit("/", 1)[0] == prefix and name.rsplit("/", 1)[1].isdigit())
    each = ", ".join(f"{size:,}: {duration(times[f'{prefix}/{size}'])}" for size in sizes)
    per = [times[f"{prefix}/{size}"] / size for size in sizes]
    return [what, of, each, ", ".join(duration(value) for value in per)]


def markdown(header, rows):
    return "\n".join("| " + " | ".join(line) + " |" for line in [header, ["---"] * len(header), *rows])


def kernel_version(release):
    """The two first numbers of a kernel's release; what follows is the business of who built it."""
    return ".".join(release.split("-")[0].split(".")[:2])


def machine():
    memory = os.sysconf("SC_PAGE_SIZE") * os.sysconf("SC_PHYS_PAGES") / 2**30
    processor = "unknown processor"
    if Path("/proc/cpuinfo").exists():
        lines = dict(line.split("\t:", 1) if "\t:" in line else (line.split(":")[0].strip(), line.split(":", 1)[-1])
                     for line in Path("/proc/cpuinfo").read_text().splitlines() if ":" in line)
        processor = lines.get("model name", processor).strip()
    return f"{os.cpu_count()} cores, {processor}, {memory:.0f} GB, {platform.system()} {kernel_version(platform.release())}"


def others(times):
    """What is measured and stands in no other table."""
    named = {name for row in ROWS for name in (row.ours, row.floor, row.instead)}
    grown = tuple(f"{prefix}/" for _, _, prefix in GROWTH)
    return sorted(name for name in times if name not in named and not name.startswith(grown))


def report(times):
    return "\n\n".join([
        markdown(["hot path", "CPU time", "floor", "× floor", "instead", "× instead"],
                 [table_row(row, times) for row in ROWS]),
        markdown(["grows", "with", "CPU time", "for each"], [growth_row(*growth, times) for growth in GROWTH]),
        markdown(["also measured", "CPU time"], [[f"`{name}`", duration(times[name])] for name in others(times)]),
    ])


PAGE = """# Performance

What each hot path costs in CPU time, beside its floor (what cannot be avoided) and what one would run instead. Written by

    ./dev bench --write

on {machine}; release build. The factors are ours divided by the other: below 1, ours is cheaper.

{tables}

A single path: `build/release/bin/QuellinBenchmarks --benchmark_filter=Session/`; `--benchmark_list_tests` names them all.
"""


def further_sections(page):
    """What stands on a page below its tables, written by hand: everything from its first section on."""
    begin = page.find("\n## ")
    return page[begin:] if begin >= 0 else ""


def main():
    parser = argparse.ArgumentParser(description=__doc__.splitlines()[0])
    parser.add_argument("programs", type=Path)
    parser.add_argument("--quick", action="store_true")
    parser.add_argument("--write", metavar="FILE", type=Path)
    given = parser.parse_args()
    times = run_benchmarks(given.programs, given.quick) | run_processes(given.programs, given.quick)
    tables = report(times)
    print(tables)
    if given.write:
        below = further_sections(given.write.read_text(encoding="utf-8")) if given.write.exists() else ""
        given.write.write_text(PAGE.format(machine=machine(), tables=tables) + below, encoding="utf-8")
    return 0


if __name__ == "__main__":
    sys.exit(main())
