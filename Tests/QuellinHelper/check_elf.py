"""Checks the built tool: what a set-user-ID executable may load, and how it is linked.

usage: check_elf.py ELF
"""

import re
import subprocess
import sys

# The C library and its parts; the loader is one of them.
ALLOWED_LIBRARY = re.compile(r"(libc|libm)\.so\.6|ld-linux[\w-]*\.so\.\d+")
# What the tool has no use for: parsing of JSON, executors, stores, compression, locale data.
UNWANTED_SYMBOL = re.compile(r"simdjson|boost::|sqlite3|ZSTD_|icu_\d+|CLI::")
LARGEST_IMAGE = 1_300_000


def violations(dynamic, headers, symbols):
    """The rules broken, given what readelf -dW, readelf -hlW and nm -C print."""
    found = []
    for library in re.findall(r"\(NEEDED\)\s+Shared library: \[(.*)\]", dynamic):
        if not ALLOWED_LIBRARY.fullmatch(library):
            found.append(f"loads {library}")
    if "(NEEDED)" not in dynamic:
        found.append("loads no library at all: not the dynamic executable that is checked here")
    for tag in re.findall(r"\((RPATH|RUNPATH|TEXTREL)\)", dynamic):
        found.append(f"has {tag}")
    if not re.search(r"\(FLAGS_1\).*\bNOW\b", dynamic):
        found.append("binds its functions lazily")
    if not re.search(r"\(FLAGS_1\).*\bPIE\b", dynamic) or not re.search(r"Type:\s+DYN", headers):
        found.append("is not position-independent")
    if "GNU_RELRO" not in headers:
        found.append("leaves its relocated data writable")
    stack = re.search(r"GNU_STACK\s.*", headers)
    if not stack or "E" in stack.group().split()[-2]:
        found.append("has an executable stack")
    if re.search(r"^\s*LOAD\s.*\bRWE\b", headers, re.MULTILINE):
        found.append("has a segment both writable and executable")
    for symbol in sorted(set(UNWANTED_SYMBOL.findall(symbols))):
        found.append(f"holds code of {symbol}")
    if "quellin::QuellinHelperMain::main" not in symbols:
        found.append("has no symbols to check")
    size = sum(int(fields, 16) for fields in re.findall(r"^\s*LOAD(?:\s+0x\w+){4}\s+0x(\w+)", headers, re.MULTILINE))
    if size > LARGEST_IMAGE:
        found.append(f"takes {size} bytes of memory, more than {LARGEST_IMAGE}")
    return found


def output_of(*command):
    return subprocess.run(command, check=True, capture_output=True, text=True, env={"LC_ALL": "C", "PATH": "/usr/bin"}).stdout


def main():
    path = sys.argv[1]
    found = violations(output_of("readelf", "-dW", path), output_of("readelf", "-hlW", path), output_of("nm", "-C", path))
    for text in found:
        print(f"{path}: {text}")
    return 1 if found else 0


if __name__ == "__main__":
    sys.exit(main())
