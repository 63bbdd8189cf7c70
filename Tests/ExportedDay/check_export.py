#!/usr/bin/env python3
"""Reads an exported session with other people's JSON readers, and works out its segments anew.

usage: check_export.py FILE            check a document
       check_export.py PROGRAM ARG...  check what a program prints
"""

import calendar
import json
import subprocess
import sys
import tempfile
import time

JQ_FIGURES = """reduce inputs as $line ({"lines": 0, "sensors": 0, "joules": 0};
  .lines += 1 | .sensors += ($line.sample.snapshot.sensors // [] | length)
  | .joules += ($line.sample.snapshot.totalWatts // 0))"""


class Complaint(Exception):
    """What is wrong with a document."""


def require(condition, text):
    if not condition:
        raise Complaint(text)


def record(pairs):
    """An object, whose keys must be sorted and all hold something."""
    keys = [key for key, _ in pairs]
    require(keys == sorted(set(keys)), f"keys are not sorted: {keys}")
    require(all(value is not None for _, value in pairs), f"null in {keys}")
    return dict(pairs)


def no_number(text):
    raise Complaint(f"{text} is no JSON")


def parsed(line):
    """A line as a value; written again by the same rules it must be the same text."""
    require(line.endswith("\n"), "the last line is not ended")
    value = json.loads(line, object_pairs_hook=record, parse_constant=no_number)
    again = json.dumps(value, separators=(",", ":"), ensure_ascii=False).replace("/", "\\/")
    require(again + "\n" == line, f"written differently: {line[:200]}")
    return value


def seconds(text):
    return calendar.timegm(time.strptime(text, "%Y-%m-%dT%H:%M:%SZ"))


class Segment:
    """A stretch of samples with one source, from its first sample."""

    def __init__(self, source, start):
        self.source, self.start, self.end = source, start, start
        self.samples, self.watts, self.watt_hours, self.last = 0, [], 0.0, None

    def add(self, at, watts):
        self.samples += 1
        self.end = at
        if watts is None:
            return
        if self.last:
            self.watt_hours += (self.last[1] + watts) * 0.5 * max(0, at - self.last[0]) / 3600
        self.watts.append(watts)
        self.last = (at, watts)

    def figures(self):
        """The keys that every segment with two readings and some time must have, worked out anew."""
        duration = self.end - self.start
        return {"sourceKind": self.source[0], "acConnected": self.source[1], "durationSeconds": duration,
                "sampleCount": self.samples, "wattSampleCount": len(self.watts), "minWatts": min(self.watts),
                "maxWatts": max(self.watts), "totalWattHours": self.watt_hours,
                "averageWatts": self.watt_hours * 3600 / duration}


def segments_of(samples):
    segments = []
    for sample in samples:
        snapshot = sample["snapshot"]
        source = (snapshot.get("powerSourceKind", "unavailable"), snapshot.get("battery", {}).get("acConnected"))
        if not segments or segments[-1].source != source:
            segments.append(Segment(source, sample["elapsedSeconds"]))
        segments[-1].add(sample["elapsedSeconds"], snapshot.get("totalWatts"))
    return segments


def check(lines):
    """Checks a document; returns its figures."""
    lines = iter(lines)
    envelope = parsed(next(lines))
    start = seconds(envelope["session"]["startedAt"])
    require(envelope["recordType"] == "session" and envelope["schemaVersion"] == 2, "not a session of version 2")
    totals = {"lines": 1, "sensors": 0, "joules": 0.0}

    def samples():
        previous = 0
        for line in lines:
            value = parsed(line)
            require(list(value) == ["recordType", "sample"] and value["recordType"] == "sample", "not a sample")
            sample = value["sample"]
            elapsed = sample["elapsedSeconds"]
            require(elapsed >= previous, "samples are out of order")
            require(abs(seconds(sample["timestamp"]) - start - elapsed) < 1, "timestamps have lost more than fractions")
            previous = elapsed
            totals["lines"] += 1
            totals["sensors"] += len(sample["snapshot"]["sensors"])
            totals["joules"] += sample["snapshot"].get("totalWatts", 0)
            yield sample

    computed = [segment.figures() for segment in segments_of(samples())]
    summary = envelope["summary"]
    stated = [{key: segment.get(key) for key in computed[0]} for segment in summary["powerSegments"]]
    require(stated == computed, f"segments differ:\n{stated}\n{computed}")
    require(summary["sampleCount"] == totals["lines"] - 1, "samples are missing")
    mixed = len({segment["sourceKind"] for segment in computed}) > 1
    require(mixed == ("averageWattsNote" in summary) and mixed != ("averageWatts" in summary), "the note is wrong")
    return totals | {"segments": len(computed)}


def check_file(path):
    with open(path, encoding="utf-8", newline="") as document:
        totals = check(document)
    with open(path, "rb") as document:
        answer = subprocess.run(["jq", "-cn", JQ_FIGURES], check=True, stdin=document, stdout=subprocess.PIPE)
    read = json.loads(answer.stdout)
    require(read["lines"] == totals["lines"] and read["sensors"] == totals["sensors"]
            and abs(read["joules"] - totals["joules"]) <= 1e-9 * totals["joules"], f"jq reads {read}, not {totals}")
    return totals


def main(arguments):
    if len(arguments) == 1:
        print(check_file(arguments[0]))
        return
    with tempfile.NamedTemporaryFile(suffix=".jsonl") as document:
        subprocess.run(arguments, check=True, stdout=document)
        print(check_file(document.name))


if __name__ == "__main__":
    if len(sys.argv) < 2:
        sys.exit(__doc__)
    main(sys.argv[1:])
