#!/usr/bin/env python3
"""The runner of the harnesses passes good ones and fails each kind of bad one, and keeps what broke it."""

import contextlib
import io
import re
import signal
import sys
import tempfile
import unittest
import unittest.mock
from pathlib import Path

import run

GOOD = """echo "INFO: Loaded 1 modules   (900 inline 8-bit counters): 900 [0x1, 0x2)," >&2
echo "#2 INITED cov: 7 ft: 9 corp: 2/5b" >&2
echo "#60 DONE cov: 12 ft: 30 corp: 4/17b lim: 4 exec/s: 30" >&2
echo "stat::number_of_executed_units: 60" >&2
"""
KEEP = 'for argument; do case $argument in -artifact_prefix=*) echo bad > "${argument#*=}crash-1" ;; esac; done\n'


BOUNDS = run.Bounds(seen_per_second=100, seen_edges=10)


@unittest.mock.patch.object(run, "BOUNDS", {"AFuzzer": BOUNDS, "BadFuzzer": BOUNDS, "LongerFuzzer": BOUNDS})
class RunTest(unittest.TestCase):
    def outcome(self, **bodies):
        """What comes of harnesses that are the given shell scripts: the results, the verdict, the two outputs."""
        with tempfile.TemporaryDirectory() as folder:
            programs = []
            for name, body in bodies.items():
                program = Path(folder) / "bin" / name
                program.parent.mkdir(exist_ok=True)
                program.write_text("#!/bin/sh\n" + body, encoding="utf-8")
                program.chmod(0o755)
                programs.append(program)
            output, errors = io.StringIO(), io.StringIO()
            with contextlib.redirect_stdout(output), contextlib.redirect_stderr(errors):
                results, verdict = run.run_all(programs, 2, Path(folder) / "fuzzing")
            kept = [path.read_text(encoding="utf-8") for result in results for path in result.kept]
            return verdict, output.getvalue(), errors.getvalue(), kept

    def test_good_harnesses_pass_and_are_listed(self):
        verdict, output, errors, kept = self.outcome(AFuzzer=GOOD, LongerFuzzer=GOOD)
        self.assertTrue(verdict)
        self.assertEqual(output, "harness       executions  a CPU second  inputs  edges   of\n"
                                 "AFuzzer               60            60       4     12  900  ok\n"
                                 "LongerFuzzer          60            60       4     12  900  ok\n")
        self.assertEqual((errors, kept), ("", []))

    def test_each_bad_harness_fails_the_run(self):
        bad = {
            "a crash": GOOD + KEEP + "exit 77",
            "an input that is kept": GOOD + KEEP,
            "another status": GOOD + "exit 1",
            "too few executions": GOOD.replace("executed_units: 60", "executed_units: 3"),
            "too few edges": GOOD.replace("cov: 12", "cov: 4"),
            "a harness that returns at once": GOOD.replace("cov: 12", "cov: 2").replace("executed_units: 60", "executed_units: 9999"),
            "no counters": GOOD.replace("cov: 12", "cov: 0").replace("cov: 7", "cov: 0"),
            "nothing run": GOOD.replace("executed_units: 60", "executed_units: 0"),
            "silence": "",
        }
        for what, body in bad.items():
            with self.subTest(what):
                verdict, output, errors, kept = self.outcome(AFuzzer=GOOD, BadFuzzer=body)
                self.assertFalse(verdict)
                self.assertRegex(output, "(?m)^AFuzzer .* ok$")
                self.assertRegex(output, "(?m)^BadFuzzer .* BROKEN$")
                self.assertIn("BadFuzzer ended with status", errors)
                self.assertEqual(kept, ["bad\n"] if KEEP in body else [])

    def test_no_harness_is_no_success(self):
        verdict, _, _, _ = self.outcome()
        self.assertFalse(verdict)

    def test_limits_and_words_reach_the_harness(self):
        body = GOOD + """for argument; do
          case $argument in -dict=*) grep -e totalWatts -e "<dict>" "${argument#*=}" >&2 ;; *) echo "$argument" >&2 ;; esac
        done; exit 1"""
        bounds = run.Bounds(10, 2, "json", slowest_seconds=7, megabytes=99)
        with unittest.mock.patch.dict(run.BOUNDS, AFuzzer=bounds):
            _, _, errors, _ = self.outcome(AFuzzer=body)
        for line in ("-timeout=7", "-rss_limit_mb=99", r'"\"totalWatts\":"'):
            self.assertIn(line + "\n", errors)
        with unittest.mock.patch.dict(run.BOUNDS, AFuzzer=run.Bounds(10, 2, "propertyLists")):
            _, _, errors, _ = self.outcome(AFuzzer=body)
        self.assertIn('"<dict>"\n', errors)


class ResultTest(unittest.TestCase):
    def verdict(self, executions, edges, processor_seconds):
        """Whether a harness is good that was to run for 20 s, and what it fell short of."""
        output = f"cov: {edges} \nstat::number_of_executed_units: {executions}\n"
        result = run.Result("AFuzzer", 20, BOUNDS, run.Run(0, output, processor_seconds), [])
        return result.is_good(), result.shortfall()

    def test_a_tenth_of_the_speed_and_half_of_the_edges_are_enough(self):
        self.assertEqual(self.verdict(200, 5, 20), (True, ""))
        self.assertEqual(self.verdict(199, 5, 20), (False, "199 executions of at least 200"))
        self.assertEqual(self.verdict(200, 4, 20), (False, "4 edges of at least 5"))

    def test_the_time_that_others_took_does_not_count(self):
        self.assertEqual(self.verdict(120, 5, 12), (True, ""))
        self.assertEqual(self.verdict(119, 5, 12), (False, "119 executions of at least 120"))

    def test_a_harness_that_just_waits_is_noticed(self):
        self.assertEqual(self.verdict(99, 5, 0.1), (False, "99 executions of at least 100"))


class RunMeasuredTest(unittest.TestCase):
    def test_the_work_of_what_it_runs_counts(self):
        work = "import os, time\nif os.fork() == 0:\n  while time.process_time() < 0.2: pass\nelse: os.wait()"
        done = run.run_measured([sys.executable, "-c", work], 60, {})
        self.assertEqual(done.status, 0)
        self.assertGreaterEqual(done.processor_seconds, 0.2)

    def test_what_does_not_end_is_killed(self):
        killed = run.run_measured(["/bin/sh", "-c", "while :; do :; done"], 0.1, {})
        self.assertEqual(killed.status, -signal.SIGKILL)
        self.assertIn("did not end", killed.output)
        ended = run.run_measured(["/bin/sh", "-c", "kill -KILL $$"], 60, {})
        self.assertEqual((ended.status, ended.output), (-signal.SIGKILL, ""))


class HarnessesTest(unittest.TestCase):
    def test_every_harness_on_disk_has_bounds(self):
        self.assertEqual(sorted(run.BOUNDS), [program.name for program in run.harnesses(Path("bin"))])
        self.assertTrue(all(bounds.per_second > 0 and bounds.edges > 10 for bounds in run.BOUNDS.values()))

    def test_every_harness_on_disk_has_a_corpus(self):
        programs = run.harnesses(Path("bin"))
        self.assertIn("JSONDecoderFuzzer", [program.name for program in programs])
        for program in programs:
            with self.subTest(program.name):
                self.assertTrue(any((run.HERE / "corpus" / program.name).iterdir()))

    def test_the_whole_corpus_goes_through_a_child(self):
        source = (run.HERE / "ChildOutputFuzzer.cpp").read_text(encoding="utf-8")
        first = int(re.search(r"constexpr unsigned first = (\d+);", source).group(1))
        inputs = len(list((run.HERE / "corpus/ChildOutputFuzzer").iterdir()))
        self.assertLessEqual(inputs + 1, first, "libFuzzer begins with an empty input")


if __name__ == "__main__":
    unittest.main()
