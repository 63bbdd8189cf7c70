"""Times whole processes by their CPU time, in turns, from a cold start each."""

import os
import resource
import statistics
import subprocess
import time
from contextlib import contextmanager

SLEEPERS = 2000


def cpu_milliseconds(command):
    """CPU time of one run of a command, user and system, in milliseconds."""
    before = resource.getrusage(resource.RUSAGE_CHILDREN)
    subprocess.run(command, check=True, stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL)
    after = resource.getrusage(resource.RUSAGE_CHILDREN)
    return (after.ru_utime - before.ru_utime + after.ru_stime - before.ru_stime) * 1000


def in_turns(commands, rounds):
    """The CPU milliseconds of each command, one list a command; the commands take turns."""
    times = [[] for _ in commands]
    for _ in range(rounds):
        for command, taken in zip(commands, times):
            taken.append(cpu_milliseconds(command))
    return times


def medians(commands, rounds):
    return [statistics.median(taken) for taken in in_turns(commands, rounds)]


@contextmanager
def sleeping_processes(count=SLEEPERS):
    """So many processes that do nothing, while it lasts."""
    sleepers = [os.posix_spawn("/bin/sleep", ["sleep", "600"], os.environ) for _ in range(count)]
    try:
        time.sleep(1)
        yield
    finally:
        for pid in sleepers:
            os.kill(pid, 9)
        for pid in sleepers:
            os.waitpid(pid, 0)
