"""A quellin that was built without Node.js: everything works but the report, which says what is missing.

usage: test_without_page.py QUELLIN
"""

import subprocess
import sys
import tempfile
import unittest
from pathlib import Path

quellin = sys.argv.pop(1)


class WithoutPage(unittest.TestCase):
    def run_quellin(self, *words):
        with tempfile.TemporaryDirectory() as home:
            result = subprocess.run([quellin, *words], cwd=home, env={"HOME": home}, capture_output=True, text=True)
            self.assertEqual(list(Path(home).glob("*.html")), [])
        return result

    def test_the_report_says_what_is_missing_and_what_to_do(self):
        result = self.run_quellin("report", "last", "-o", "session.html")
        self.assertEqual(result.returncode, 1)
        self.assertIn("built without the page for reports: the build found no node; install Node.js", result.stderr)
        self.assertIn("'quellin export last'", result.stderr)

    def test_all_else_works(self):
        self.assertEqual(self.run_quellin("sessions").returncode, 0)


unittest.main()
