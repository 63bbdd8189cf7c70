"""Checks the executables of the macOS cross build.

usage: check_macho.py FOLDER   (every file in it is an executable; the set-user-ID tool must be among them)
"""

import sys
from pathlib import Path

import macho

TOOL = "QuellinHelper"
MINIMUM_OS = "12.0"
SYSTEM = ("/usr/lib/", "/System/Library/")
# Where a Mac keeps the libraries that only the library and the front end may use.
HOMEBREW = ("/opt/homebrew/opt/",)

# What a set-user-ID tool must not even be able to call: a shell, a search of PATH, guessable temporary names.
FORBIDDEN_IN_TOOL = {"_system", "_popen", "_execvp", "_execvP", "_execlp", "_posix_spawnp", "_tmpnam",
                     "_tempnam", "_mktemp", "_gets"}

DYNAMIC_LOOKUP_ORDINAL = 0xFE
EXECUTABLE_ORDINAL = 0xFF


def image_violations(image):
    """What is wrong with any executable of ours."""
    found = []
    if image.cpu != macho.CPU_ARM64:
        found.append(f"is for CPU type {image.cpu:#x}, not arm64")
    if image.file_type != macho.TYPE_EXECUTE:
        found.append(f"has file type {image.file_type}, is no executable")
    if not image.flags & macho.FLAG_PIE:
        found.append("is not position-independent")
    if image.platform != macho.PLATFORM_MACOS or image.minimum_os != MINIMUM_OS:
        found.append(f"is for platform {image.platform}, at least {image.minimum_os}; wanted macOS {MINIMUM_OS}")
    found += [f"searches libraries in {path}" for path in image.run_paths]
    found += [f"sets {text} for the dynamic linker" for text in image.dyld_environment]
    return found + signature_violations(image) + symbol_violations(image)


def signature_violations(image):
    if image.signature is None:
        return ["is not signed: arm64 macOS would not start it"]
    try:
        return [] if macho.signature_matches(image) else ["has a signature that does not match its content"]
    except macho.Malformed as problem:
        return [f"has a broken signature: {problem}"]


def symbol_violations(image):
    """Undefined symbols that are not bound to one particular library."""
    found = []
    for symbol in image.undefined:
        if symbol.ordinal in (DYNAMIC_LOOKUP_ORDINAL, EXECUTABLE_ORDINAL):
            found.append(f"looks {symbol.name} up in whatever is loaded")
        elif not 1 <= symbol.ordinal <= len(image.libraries):
            found.append(f"needs {symbol.name}, which no library of its supplies")
    return found


def library_violations(image, allowed):
    return [f"links {library}" for library in image.libraries if not library.startswith(allowed)]


def tool_violations(image):
    """What is wrong with the set-user-ID tool beyond the rules for all."""
    found = library_violations(image, SYSTEM)
    found += [f"can call {symbol.name[1:]}" for symbol in image.undefined if symbol.name in FORBIDDEN_IN_TOOL]
    return found


def file_violations(path):
    try:
        image = macho.parse(Path(path).read_bytes())
    except macho.Malformed as problem:
        return [f"is no Mach-O file: {problem}"]
    if Path(path).name == TOOL:
        return image_violations(image) + tool_violations(image)
    return image_violations(image) + library_violations(image, SYSTEM + HOMEBREW)


def folder_violations(folder):
    files = sorted(path for path in Path(folder).iterdir() if path.is_file()) if Path(folder).is_dir() else []
    found = [f"{path.name}: {problem}" for path in files for problem in file_violations(path)]
    if TOOL not in [path.name for path in files]:
        found.append(f"{TOOL}: was not built")
    return found


def main():
    folder = Path(sys.argv[1])
    found = folder_violations(folder)
    for line in found:
        print(line, file=sys.stderr)
    if not found:
        print("macos:", ", ".join(sorted(path.name for path in folder.iterdir())), "checked: arm64, macOS",
              MINIMUM_OS, "or later, signed")
    return 1 if found else 0


if __name__ == "__main__":
    sys.exit(main())
