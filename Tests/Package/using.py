"""How both tests of the installed tree run programs, and what the consumer must print."""

import json
import subprocess
from pathlib import Path

HERE = Path(__file__).resolve().parent


def run(*command, **options):
    result = subprocess.run([str(word) for word in command], capture_output=True, text=True, **options)
    if result.returncode != 0:
        raise AssertionError(f"{command}: exit status {result.returncode}\n{result.stdout}{result.stderr}")
    return result.stdout


def assert_exports_a_session(case, text):
    records = [json.loads(line) for line in text.splitlines()]
    case.assertEqual([record["recordType"] for record in records], ["session", "sample"])
    case.assertEqual(records[0]["session"]["title"], "Consumer")
