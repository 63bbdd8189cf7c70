#!/usr/bin/env python3
"""The table of the benchmarks: its figures are those that were measured, and it names what is there.

usage: test_performance.py FOLDER_OF_THE_TABLE PROGRAM_OF_THE_BENCHMARKS
"""

import subprocess
import sys
import unittest

sys.path.insert(0, sys.argv[1])
import performance  # noqa: E402
from performance import Row  # noqa: E402

PROGRAM = sys.argv[2]


def registered():
    listing = subprocess.run([PROGRAM, "--benchmark_list_tests"], check=True, capture_output=True, text=True).stdout
    return {name.split("/iterations:")[0] for name in listing.split()}


class PerformanceTest(unittest.TestCase):
    def test_every_benchmark_that_the_table_names_is_there(self):
        named = {name for row in performance.ROWS for name in (row.ours, row.floor, row.instead)
                 if name and not name.startswith("process/")}
        self.assertLessEqual(named, registered())
        prefixes = {name.rsplit("/", 1)[0] for name in registered()}
        self.assertLessEqual({prefix for _, _, prefix in performance.GROWTH}, prefixes)

    def test_a_row_has_ours_and_both_others_with_their_factors(self):
        row = Row("path", "a", "b", "the floor", "c", "the other")
        self.assertEqual(performance.table_row(row, {"a": 3e-6, "b": 1.5e-6, "c": 6e-6}),
                         ["path", "3 µs", "1.5 µs (the floor)", "2", "6 µs (the other)", "0.5"])
        self.assertEqual(performance.table_row(Row("path", "a"), {"a": 2}), ["path", "2 s", "–", "–", "–", "–"])

    def test_growth_tells_the_cost_of_each(self):
        times = {"x/10": 1e-6, "x/1000": 5e-4, "x/floor/10": 9, "xy/10": 9}
        self.assertEqual(performance.growth_row("what", "things", "x", times),
                         ["what", "things", "10: 1 µs, 1,000: 500 µs", "100 ns, 500 ns"])

    def test_times_come_in_seconds_and_failures_are_told(self):
        run = {"name": "a/iterations:5", "run_name": "a/iterations:5", "cpu_time": 2.0, "time_unit": "us"}
        mean = run | {"aggregate_name": "mean", "cpu_time": 9.0}
        median = run | {"aggregate_name": "median", "cpu_time": 4.0}
        self.assertEqual(performance.parsed_benchmarks({"benchmarks": [run]}), {"a": 2e-6})
        self.assertEqual(performance.parsed_benchmarks({"benchmarks": [median, mean]}), {"a": 4e-6})
        failed = run | {"error_occurred": True, "error_message": "gone"}
        with self.assertRaisesRegex(ValueError, "gone"):
            performance.parsed_benchmarks({"benchmarks": [failed]})

    def test_nothing_that_was_measured_is_left_out(self):
        times = dict.fromkeys([row.ours for row in performance.ROWS] + ["Other/thing", "Store/list/7"], 1.0)
        self.assertEqual(performance.others(times), ["Other/thing"])

    def test_what_is_written_by_hand_stays(self):
        self.assertEqual(performance.further_sections("# P\n\n| a |\n\n## Later\n\nx\n\n## More\n"), "\n## Later\n\nx\n\n## More\n")
        self.assertEqual(performance.further_sections("# P\n"), "")

    def test_a_kernel_is_named_without_its_build(self):
        self.assertEqual(performance.kernel_version("6.18.44-somewhere-7"), "6.18")
        self.assertEqual(performance.kernel_version("24.5.0"), "24.5")

    def test_durations_have_three_digits_and_their_unit(self):
        for seconds, text in ((2.5, "2.5 s"), (0.01234, "12.3 ms"), (4.56e-5, "45.6 µs"), (7.8e-8, "78 ns")):
            self.assertEqual(performance.duration(seconds), text)


if __name__ == "__main__":
    unittest.main(argv=sys.argv[:1])
