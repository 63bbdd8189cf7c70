"""Times the property-list reader side by side with others on the same 4 MB, and measures its memory.

usage: compare_property_lists.py FOLDER_OF_PROGRAMS      (such as build/release/bin)

Needs plistutil (Debian: libplist-utils). As processes: our reader and plistutil, each from the file to the end of the
process; plistutil also writes what it read, to /dev/null. Within a process: our reader, Python's plistlib, and the
library behind plistutil. Fails when the reader is less than three times as fast as the faster of plistutil and
plistlib, or needs three times the memory of its input.
"""

import ctypes
import ctypes.util
import plistlib
import subprocess
import sys
import tempfile
import time
from pathlib import Path

ROUNDS = 15
SAMPLES_ROWS = {"one sample": (1, 1600), "40 samples": (40, 40)}


def best_milliseconds(action, rounds=ROUNDS):
    times = []
    for _ in range(rounds):
        start = time.perf_counter()
        action()
        times.append((time.perf_counter() - start) * 1000)
    return min(times)


def pieces(stream):
    return [piece for piece in stream.split(b"\0") if piece]


def library_reader():
    """Reads and frees one property list with plistutil's own library; nothing where it is not found."""
    name = ctypes.util.find_library("plist-2.0")
    if name is None:
        return None
    library = ctypes.CDLL(name)
    library.plist_free.argtypes = [ctypes.c_void_p]

    def read(piece):
        node = ctypes.c_void_p()
        library.plist_from_memory(piece, ctypes.c_uint32(len(piece)), ctypes.byref(node))
        if not node:
            raise ValueError("not read")
        library.plist_free(node)

    return read


def run(*command):
    return subprocess.run(command, check=True, capture_output=True, text=True).stdout


def compare(reader, path, samples):
    stream = path.read_bytes()
    found, ours, _ = run(reader, "read", path, str(ROUNDS)).split()
    peak = int(run(reader, "read", path, "1").split()[2])
    if int(found) != samples:
        raise ValueError(f"read {found} samples of {samples}")
    times = {"ours, process": best_milliseconds(lambda: run(reader, "read", path, "1"))}
    if samples == 1:  # plistutil reads one property list
        times["plistutil, process"] = best_milliseconds(lambda: run("plistutil", "-i", path, "-o", "/dev/null"))
    times["ours"] = float(ours)
    times["plistlib"] = best_milliseconds(lambda: [plistlib.loads(piece) for piece in pieces(stream)])
    library = library_reader()
    if library:
        times["library of plistutil"] = best_milliseconds(lambda: [library(piece) for piece in pieces(stream)])
    return len(stream), times, peak


def report(name, size, times, peak):
    print(f"{name}, {size / 1e6:.2f} MB")
    for reader, milliseconds in times.items():
        own = times["ours, process" if reader.endswith("process") else "ours"]
        print(f"  {reader:22} {milliseconds:8.1f} ms   {milliseconds / own:5.2f}")
    print(f"  peak memory of the whole process {peak / 1000:.1f} MB, {peak * 1024 / size:.2f} times the input")


def is_good_enough(size, times, peak):
    plistutil = times.get("plistutil, process", float("inf")) / times["ours, process"]
    return min(plistutil, times["plistlib"] / times["ours"]) >= 3 and peak * 1024 < 3 * size


def main():
    reader = Path(sys.argv[1]) / "PropertyListReading"
    good = True
    with tempfile.TemporaryDirectory() as folder:
        for name, (samples, rows) in SAMPLES_ROWS.items():
            path = Path(folder) / "stream"
            run(reader, "write", path, str(samples), str(rows))
            result = compare(reader, path, samples)
            report(name, *result)
            good = is_good_enough(*result) and good
    print("at least 3 times as fast within 3 times the memory:", "yes" if good else "NO")
    return 0 if good else 1


if __name__ == "__main__":
    sys.exit(main())
