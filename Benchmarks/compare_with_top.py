"""Compares the CPU time of one look at 2,000 sleeping processes: ours, and `top -b -n 1`.

usage: compare_with_top.py READINGS [ROUNDS]     READINGS is build/release/bin/readings

Both run in turns, each from a cold start of its process. Ours takes two snapshots and also asks every other source.
"""

import statistics
import sys

from processes import in_turns, sleeping_processes


def main():
    if len(sys.argv) < 2:
        print(__doc__, file=sys.stderr)
        return 64
    with sleeping_processes():
        ours, top = in_turns([[sys.argv[1]], ["top", "-b", "-n", "1"]], int(sys.argv[2]) if len(sys.argv) > 2 else 15)
    ratio = statistics.median(a / b for a, b in zip(ours, top))
    print(f"readings        median {statistics.median(ours):6.1f} ms of CPU, worst {max(ours):6.1f}")
    print(f"top -b -n 1     median {statistics.median(top):6.1f} ms of CPU, best  {min(top):6.1f}")
    print(f"ratio of pairs  median {ratio:6.2f}")
    return 0 if ratio < 1 else 1


if __name__ == "__main__":
    sys.exit(main())
