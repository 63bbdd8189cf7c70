"""The check of the macOS executables accepts a good image and refuses each broken one."""

import hashlib
import struct
import sys
import tempfile
import unittest
from pathlib import Path

sys.path.insert(0, str(Path(__file__).resolve().parents[2] / "cmake/macos"))

import check_macho  # noqa: E402
import macho  # noqa: E402

PAGE = 4096
LIBSYSTEM = "/usr/lib/libSystem.B.dylib"


def text_command(kind, text, header):
    """A load command whose text follows `header` bytes of fixed fields."""
    body = text.encode() + b"\0"
    body += b"\0" * (-len(body) % 8)
    return struct.pack("<3I", kind, header + len(body), header) + b"\0" * (header - 12) + body


def symbol_table(symbols, offset):
    """The entries and texts of (name, ordinal) pairs placed at `offset`, and the load command that names them."""
    texts, entries = b"\0", b""
    for name, ordinal in symbols:
        entries += struct.pack("<IBBHQ", len(texts), macho.N_EXT, 0, ordinal << 8, 0)
        texts += name.encode() + b"\0"
    command = struct.pack("<6I", macho.LC_SYMTAB, 24, offset, len(symbols), offset + len(entries), len(texts))
    return entries + texts, command


def signature_of(content):
    pages = [content[start:start + PAGE] for start in range(0, len(content), PAGE)]
    hashes = b"".join(hashlib.sha256(page).digest() for page in pages)
    directory = struct.pack(">9I4B", macho.CODE_DIRECTORY_MAGIC, 40 + len(hashes), 0x20400, 0, 40, 0, 0, len(pages),
                            len(content), 32, macho.HASH_SHA256, 0, 12) + hashes
    return struct.pack(">5I", macho.SIGNATURE_MAGIC, 20 + len(directory), 1, 0, 20) + directory


def image(cpu=macho.CPU_ARM64, file_type=macho.TYPE_EXECUTE, flags=macho.FLAG_PIE, platform=macho.PLATFORM_MACOS,
          minimum=12 << 16, libraries=(LIBSYSTEM,), kind=macho.LC_LOAD_DYLIB, symbols=(("_write", 1),), extra=b"",
          extra_count=0, signed=True):
    """A small image that every rule accepts, unless an argument says otherwise."""
    commands = struct.pack("<6I", macho.LC_BUILD_VERSION, 24, platform, minimum, minimum, 0)
    commands += b"".join(text_command(kind, library, 24) for library in libraries) + extra
    table_offset = 32 + len(commands) + 24 + 16
    table, table_command = symbol_table(symbols, table_offset)
    padding = b"\0" * (2 * PAGE - table_offset - len(table) + 100)
    end = table_offset + len(table) + len(padding)
    signature_size = len(signature_of(b"\0" * end))
    commands += table_command
    if signed:
        commands += struct.pack("<4I", macho.LC_CODE_SIGNATURE, 16, end, signature_size)
    else:
        commands += struct.pack("<2I", 0x7F, 16) + b"\0" * 8
    count = 3 + len(libraries) + extra_count
    content = struct.pack("<8I", macho.MAGIC_64, cpu, 0, file_type, count, len(commands), flags, 0)
    content += commands + table + padding
    return content + (signature_of(content) if signed else b"")


def violations(content, name="QuellinHelper"):
    with tempfile.TemporaryDirectory() as folder:
        path = Path(folder) / name
        path.write_bytes(content)
        return check_macho.file_violations(path)


class CheckMachoTest(unittest.TestCase):
    def refuses(self, text, content, name="QuellinHelper"):
        found = violations(content, name)
        self.assertEqual(len(found), 1, found)
        self.assertIn(text, found[0])

    def test_accepts_a_good_image(self):
        self.assertEqual(violations(image()), [])

    def test_reads_every_fact(self):
        facts = macho.parse(image(symbols=(("_read", 1), ("_write", 1))))
        self.assertEqual(facts.libraries, [LIBSYSTEM])
        self.assertEqual(facts.minimum_os, "12.0")
        self.assertEqual([symbol.name for symbol in facts.undefined], ["_read", "_write"])

    def test_refuses_another_processor(self):
        self.refuses("arm64", image(cpu=0x01000007))

    def test_refuses_what_is_no_executable(self):
        self.refuses("file type 6", image(file_type=6))

    def test_refuses_a_fixed_address(self):
        self.refuses("position-independent", image(flags=0))

    def test_refuses_another_platform(self):
        self.refuses("platform 2", image(platform=2))

    def test_refuses_another_minimum_version(self):
        self.refuses("at least 13.1", image(minimum=13 << 16 | 1 << 8))

    def test_refuses_a_run_path(self):
        self.refuses("@loader_path", image(extra=text_command(macho.LC_RPATH, "@loader_path/x", 12), extra_count=1))

    def test_refuses_a_dynamic_linker_variable(self):
        command = text_command(macho.LC_DYLD_ENVIRONMENT, "DYLD_LIBRARY_PATH=/tmp", 12)
        self.refuses("DYLD_LIBRARY_PATH", image(extra=command, extra_count=1))

    def test_refuses_a_missing_signature(self):
        self.refuses("not signed", image(signed=False))

    def test_refuses_content_changed_after_signing(self):
        content = bytearray(image())
        content[PAGE + 10] ^= 1
        self.refuses("does not match", bytes(content))

    def test_refuses_a_signature_without_a_directory(self):
        facts = macho.parse(image())
        facts.signature = struct.pack(">5I", macho.SIGNATURE_MAGIC, 20, 1, 5, 20)
        self.assertIn("broken signature", check_macho.signature_violations(facts)[0])

    def test_refuses_a_signature_over_a_part_only(self):
        facts = macho.parse(image())
        facts.signature = signature_of(facts.signed_content[:PAGE])
        self.assertIn("does not match", check_macho.signature_violations(facts)[0])

    def test_refuses_dynamic_lookup(self):
        self.refuses("_mystery", image(symbols=(("_mystery", 0xFE),)))

    def test_refuses_an_ordinal_without_a_library(self):
        self.refuses("_mystery", image(symbols=(("_mystery", 2),)))

    def test_refuses_a_library_outside_the_system_in_the_tool(self):
        for kind in macho.LIBRARY_COMMANDS:
            with self.subTest(kind=hex(kind)):
                self.refuses("/opt/homebrew", image(libraries=("/opt/homebrew/opt/x/lib/x.dylib",), kind=kind))

    def test_refuses_a_relative_library(self):
        self.refuses("@rpath/x.dylib", image(libraries=("@rpath/x.dylib",)))

    def test_refuses_a_path_that_only_begins_like_the_system(self):
        self.refuses("/usr/library", image(libraries=("/usr/library/x.dylib",)))

    def test_lets_the_front_end_use_homebrew_but_no_other_place(self):
        homebrew = image(libraries=("/opt/homebrew/opt/x/lib/x.dylib",))
        self.assertEqual(violations(homebrew, "quellin"), [])
        self.refuses("/usr/local", image(libraries=("/usr/local/lib/x.dylib",)), "quellin")

    def test_refuses_a_shell_in_the_tool_only(self):
        self.refuses("can call system", image(symbols=(("_system", 1),)))
        self.assertEqual(violations(image(symbols=(("_system", 1),)), "quellin"), [])

    def test_refuses_other_files(self):
        for content in (b"", b"\x7fELF" + b"\0" * 60, b"#!/bin/sh\n" * 10):
            with self.subTest(content=content[:4]):
                self.refuses("no Mach-O", content)

    def test_refuses_an_image_cut_short_anywhere(self):
        content = image()
        for length in range(0, len(content), 97):
            with self.subTest(length=length):
                self.assertNotEqual(violations(content[:length]), [])

    def test_refuses_a_folder_without_the_tool(self):
        with tempfile.TemporaryDirectory() as folder:
            self.assertEqual(check_macho.folder_violations(folder), ["QuellinHelper: was not built"])
            self.assertEqual(check_macho.folder_violations(Path(folder) / "missing"), ["QuellinHelper: was not built"])


if __name__ == "__main__":
    unittest.main()
