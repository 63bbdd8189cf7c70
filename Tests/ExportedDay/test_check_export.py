#!/usr/bin/env python3
"""The check of exports can fail: the documented export passes, and each way of spoiling it does not."""

import tempfile
import unittest
from pathlib import Path

import check_export

DOCUMENT = (Path(__file__).parents[2] / "docs" / "formats.md").read_text(encoding="utf-8")
EXPORT = DOCUMENT.split("```jsonl\n", 1)[1].split("```", 1)[0]


def complaint_about(text):
    with tempfile.NamedTemporaryFile(suffix=".jsonl") as document:
        document.write(text.encode())
        document.flush()
        try:
            check_export.check_file(document.name)
        except check_export.Complaint as complaint:
            return str(complaint)
    return None


class CheckExportTest(unittest.TestCase):
    def test_the_documented_export_passes(self):
        self.assertIsNone(complaint_about(EXPORT))

    def test_every_spoilt_export_is_refused(self):
        lines = EXPORT.splitlines(keepends=True)
        spoilt = {
            "keys are not sorted": EXPORT.replace('"pressure":0,"state":"nominal"', '"state":"nominal","pressure":0'),
            "NaN is no JSON": EXPORT.replace('"elapsedSeconds":60', '"elapsedSeconds":NaN'),
            "null in": EXPORT.replace('"fans":[]', '"fans":null'),
            "the last line is not ended": EXPORT[:-1],
            "written differently": EXPORT.replace('"elapsedSeconds":60', '"elapsedSeconds":6e1'),
            "not a session of version 2": EXPORT.replace('"schemaVersion":2', '"schemaVersion":3'),
            "not a sample": lines[0] + lines[0],
            "samples are out of order": lines[0] + lines[2] + lines[1],
            "timestamps have lost": EXPORT.replace('12:01:00Z"}}', '12:01:01Z"}}'),
            "segments differ": EXPORT.replace('"totalWattHours":0.25,"wattSampleCount":2}]', '"totalWattHours":0.26,"wattSampleCount":2}]'),
            "samples are missing": EXPORT.replace('"sampleCount":2,"topContributors"', '"sampleCount":3,"topContributors"'),
            "the note is wrong": EXPORT.replace('"averageWatts":15,"batteryPercentDelta":0', '"averageWatts":15,"averageWattsNote":"Mixed","batteryPercentDelta":0', 1),
        }
        for complaint, text in spoilt.items():
            with self.subTest(complaint):
                self.assertNotEqual(text, EXPORT)
                self.assertIn(complaint, complaint_about(text) or "")

    def test_jq_reads_too(self):
        figures = check_export.JQ_FIGURES
        try:
            check_export.JQ_FIGURES = figures.replace(".lines += 1", ".lines += 2")
            self.assertIn("jq reads", complaint_about(EXPORT))
        finally:
            check_export.JQ_FIGURES = figures


if __name__ == "__main__":
    unittest.main()
