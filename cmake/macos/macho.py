"""Reads what the checks need from a 64-bit little-endian Mach-O file."""

import hashlib
import struct
from dataclasses import dataclass, field

MAGIC_64 = 0xFEEDFACF
CPU_ARM64 = 0x0100000C
TYPE_EXECUTE = 2
FLAG_PIE = 0x200000
PLATFORM_MACOS = 1

LC_REQUIRED = 0x80000000
LC_SYMTAB = 0x2
LC_LOAD_DYLIB = 0xC
LC_LOAD_WEAK_DYLIB = 0x18 | LC_REQUIRED
LC_REEXPORT_DYLIB = 0x1F | LC_REQUIRED
LC_LAZY_LOAD_DYLIB = 0x20
LC_LOAD_UPWARD_DYLIB = 0x23 | LC_REQUIRED
LC_RPATH = 0x1C | LC_REQUIRED
LC_CODE_SIGNATURE = 0x1D
LC_DYLD_ENVIRONMENT = 0x27
LC_BUILD_VERSION = 0x32

LIBRARY_COMMANDS = (LC_LOAD_DYLIB, LC_LOAD_WEAK_DYLIB, LC_REEXPORT_DYLIB, LC_LAZY_LOAD_DYLIB, LC_LOAD_UPWARD_DYLIB)

N_STAB = 0xE0
N_TYPE = 0x0E
N_EXT = 0x01

SIGNATURE_MAGIC = 0xFADE0CC0
CODE_DIRECTORY_MAGIC = 0xFADE0C02
HASH_SHA256 = 2


class Malformed(Exception):
    """The file is no Mach-O file, or its parts point outside it."""


@dataclass
class UndefinedSymbol:
    """A symbol that another image must supply; `ordinal` counts that image from 1 in load order."""

    name: str
    ordinal: int


@dataclass
class MachO:
    """The facts of one image."""

    cpu: int
    file_type: int
    flags: int
    platform: int | None = None
    minimum_os: str | None = None
    libraries: list[str] = field(default_factory=list)
    run_paths: list[str] = field(default_factory=list)
    dyld_environment: list[str] = field(default_factory=list)
    undefined: list[UndefinedSymbol] = field(default_factory=list)
    signature: bytes | None = None
    signed_content: bytes = b""


def _unpack(layout, data, offset):
    if offset < 0 or offset + struct.calcsize(layout) > len(data):
        raise Malformed(f"nothing to read at offset {offset}")
    return struct.unpack_from(layout, data, offset)


def _slice(data, offset, size):
    if offset + size > len(data):
        raise Malformed(f"{size} bytes at offset {offset} reach past the end")
    return data[offset:offset + size]


def _string(data, offset):
    end = data.find(b"\0", offset)
    if offset > len(data) or end < 0:
        raise Malformed(f"no text at offset {offset}")
    return data[offset:end].decode("utf-8", "replace")


def _command_text(command):
    return _string(command + b"\0", _unpack("<I", command, 8)[0])


def _version(packed):
    return f"{packed >> 16}.{packed >> 8 & 0xFF}"


def _undefined_symbols(data, command):
    offset, count, text_offset, text_size = _unpack("<4I", command, 8)
    texts = _slice(data, text_offset, text_size) + b"\0"
    found = []
    for index in range(count):
        text, kind, _, description, _ = _unpack("<IBBHQ", data, offset + 16 * index)
        if not kind & N_STAB and kind & N_TYPE == 0 and kind & N_EXT:
            found.append(UndefinedSymbol(_string(texts, text), description >> 8))
    return found


def parse(data):
    """The facts of the image in `data`; raises Malformed."""
    magic, cpu, _, file_type, count, _, flags, _ = _unpack("<8I", data, 0)
    if magic != MAGIC_64:
        raise Malformed(f"magic number {magic:#x}")
    image = MachO(cpu, file_type, flags)
    offset = 32
    for _ in range(count):
        kind, size = _unpack("<2I", data, offset)
        if size < 8:
            raise Malformed(f"load command of {size} bytes")
        command = _slice(data, offset, size)
        if kind == LC_BUILD_VERSION:
            image.platform, minimum = _unpack("<2I", command, 8)
            image.minimum_os = _version(minimum)
        elif kind in LIBRARY_COMMANDS:
            image.libraries.append(_command_text(command))
        elif kind == LC_RPATH:
            image.run_paths.append(_command_text(command))
        elif kind == LC_DYLD_ENVIRONMENT:
            image.dyld_environment.append(_command_text(command))
        elif kind == LC_SYMTAB:
            image.undefined = _undefined_symbols(data, command)
        elif kind == LC_CODE_SIGNATURE:
            start, length = _unpack("<2I", command, 8)
            image.signature = _slice(data, start, length)
            image.signed_content = data[:start]
        offset += size
    return image


def _code_directory(signature):
    magic, _, count = _unpack(">3I", signature, 0)
    if magic != SIGNATURE_MAGIC:
        raise Malformed(f"signature magic {magic:#x}")
    for index in range(count):
        slot, offset = _unpack(">2I", signature, 12 + 8 * index)
        if slot == 0:
            return offset
    raise Malformed("the signature holds no code directory")


def signature_matches(image):
    """Whether every page of the image has the hash that its signature gives; raises Malformed."""
    start = _code_directory(image.signature)
    magic, _, _, _, hashes, _, _, pages, limit = _unpack(">9I", image.signature, start)
    hash_size, hash_type, _, page_shift = _unpack(">4B", image.signature, start + 36)
    if magic != CODE_DIRECTORY_MAGIC or hash_type != HASH_SHA256:
        raise Malformed(f"code directory {magic:#x} with hash type {hash_type}")
    page_size = 1 << page_shift
    if limit != len(image.signed_content) or pages != -(-limit // page_size):
        return False
    for page in range(pages):
        expected = _slice(image.signature, start + hashes + page * hash_size, hash_size)
        content = image.signed_content[page * page_size:(page + 1) * page_size]
        if hashlib.sha256(content).digest() != expected:
            return False
    return True
