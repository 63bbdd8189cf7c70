"""How both tests of the installed tree run programs and build the consumer, and what it must print."""

import json
import os
import subprocess
from pathlib import Path

CONSUMER = Path(__file__).resolve().parent / "Consumer"


def run(*command, **options):
    result = subprocess.run([str(word) for word in command], capture_output=True, text=True, **options)
    if result.returncode != 0:
        raise AssertionError(f"{command}: exit status {result.returncode}\n{result.stdout}{result.stderr}")
    return result.stdout


def build_by_cmake(prefix, compiler, folder, *definitions):
    """Builds the consumer in `folder` as a CMake project that finds the library below `prefix`; its path."""
    run("cmake", "-G", "Ninja", "-S", CONSUMER, "-B", folder, f"-DCMAKE_PREFIX_PATH={prefix}",
        f"-DCMAKE_CXX_COMPILER={compiler}", *definitions)
    run("cmake", "--build", folder)
    return folder / "consumer"


def build_by_pkg_config(prefix, compiler, program, *options):
    """Builds the consumer as `program` with what pkg-config, given `options`, says of the library below `prefix`; its path."""
    package = next(prefix.rglob("quellincore.pc"))
    flags = run("pkg-config", *options, "--cflags", "--libs", "quellincore",
                env={**os.environ, "PKG_CONFIG_PATH": str(package.parent)})
    run(compiler, "-std=c++23", CONSUMER / "main.cpp", "-o", program, *flags.split())
    return program


def assert_exports_a_session(case, text):
    records = [json.loads(line) for line in text.splitlines()]
    case.assertEqual([record["recordType"] for record in records], ["session", "sample"])
    case.assertEqual(records[0]["session"]["title"], "Consumer")
