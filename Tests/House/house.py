"""The rules of the house, as functions that return the places where a rule is broken."""

import re
import statistics
import subprocess
from pathlib import Path

SUPPORT = ["QuellinCore/Support", "QuellinCore/Support/JSON"]
MODELS = ["QuellinCore/Models", *SUPPORT]
CONTRACTS = ["QuellinCore/Platform", *MODELS]

# What each room may include, besides itself. A longer path is a room of its own.
ALLOWED = {
    "QuellinCore/Support": [],
    "QuellinCore/Support/JSON": ["QuellinCore/Support"],
    "QuellinCore/Models": SUPPORT,
    "QuellinCore/Platform": MODELS,
    "QuellinCore/Platform/Darwin": ["QuellinCore/IOReport", *CONTRACTS],
    "QuellinCore/Platform/Linux": CONTRACTS,
    "QuellinCore/Platform/Recorded": CONTRACTS,
    "QuellinCore/IOReport": ["QuellinCore/Platform/Darwin", *CONTRACTS],
    "QuellinCore/Services": CONTRACTS,
    "QuellinCore/Sessions": ["QuellinCore/Sessions/Storage", *MODELS],
    "QuellinCore/Sessions/Storage": SUPPORT,
    "QuellinCore/Sessions/Analysis": ["QuellinCore/Sessions", *MODELS],
    "QuellinHelper": ["QuellinHelper/PropertyLists", "QuellinCore/Services", *CONTRACTS],
    "QuellinHelper/PropertyLists": ["QuellinCore/Support"],
}

# The front end calls all of the core; its own rooms, from the lowest to the highest.
CORE = [room for room in ALLOWED if room.startswith("QuellinCore/")]
FRONT_END = {
    "quellin/Outcome": [],
    "quellin/Terminal": ["Outcome"],
    "quellin/CommandLine": ["Outcome", "Terminal"],
    "quellin/Storage": ["Outcome", "Terminal", "CommandLine"],
    "quellin/Measuring": ["Outcome", "Terminal", "CommandLine", "Storage"],
    "quellin/Presentation": ["Outcome", "Terminal", "Storage", "Measuring"],
    "quellin/Progress": ["Terminal", "CommandLine", "Presentation"],
    "quellin/Watch": ["Outcome", "Terminal", "CommandLine", "Storage", "Measuring", "Presentation"],
    "quellin/Commands": ["Outcome", "Terminal", "CommandLine", "Storage", "Measuring", "Presentation", "Progress",
                         "Watch"],
    "quellin": ["Outcome", "Terminal", "CommandLine", "Commands"],
}
ALLOWED |= {room: [*CORE, *(f"quellin/{name}" for name in rooms)] for room, rooms in FRONT_END.items()}

# Single files of a room that is closed otherwise.
ALLOWED_FILES = {
    # The recorder measures processes while it records: the one arrow from Sessions to Services.
    "QuellinCore/Sessions": ["QuellinCore/Services/ProcessActivityService.h"],
    # What the store keeps, and how it says that it cannot.
    "QuellinCore/Sessions/Storage": [f"QuellinCore/Sessions/{name}.h"
                                     for name in ("PowerSession", "PowerSource", "RecorderCost", "SampleColumns",
                                                  "SampleFacts", "StoreError", "StoreFileOptions")],
}

# The same of the report's page.
PAGE_ROOMS = {"data": [], "common": [], "plot": ["data", "common"], "page": ["data", "common"]}

PAGE_IMPORT = re.compile(r'^import\s[^"]*"(\.[^"]+)";', re.MULTILINE)
INCLUDE = re.compile(r'^\s*#\s*include\s*"([^"]+)"', re.MULTILINE)
TEST = re.compile(r"^(TEST|TEST_F|TEST_P|TYPED_TEST|TYPED_TEST_P)\(\s*(\w+)\s*,\s*(\w+)\s*\)", re.MULTILINE)

# Executable.Prefix/Suite/0.Case/parameter, of which only suite and case are always there; a parameter may hold anything.
REGISTERED = re.compile(r"[^.]+\.(?P<suites>[^.]+)\.(?P<case>\w+)")

BUDGETED = (".h", ".cpp", ".js", ".mjs", ".css")
MAX_LINES = 450
MAX_MEDIAN = 130


def source_files(root):
    return sorted(path for path in Path(root).rglob("*") if path.suffix in (".h", ".cpp"))


def room_of(relative):
    """The longest known room that a path below Sources/ lies in."""
    rooms = [room for room in ALLOWED if relative.startswith(room + "/")]
    return max(rooms, key=len) if rooms else None


def include_violations(sources):
    """Includes that run against the arrows, or that name a file which is neither there nor configured from an .in."""
    found = []
    for path in source_files(sources):
        relative = path.relative_to(sources).as_posix()
        room = room_of(relative)
        if room is None:
            found.append(f"{relative}: lies in no known room")
            continue
        for target in INCLUDE.findall(path.read_text(encoding="utf-8")):
            if not (Path(sources) / target).exists():
                if "/" in target and not (Path(sources) / f"{target}.in").exists():
                    found.append(f"{relative}: includes {target}, which is not there")
                continue
            target_room = room_of(target)
            if target_room not in [room, *ALLOWED[room]] and target not in ALLOWED_FILES.get(room, []):
                found.append(f"{relative}: {room} must not include {target}")
    return found


def page_import_violations(root):
    """Imports between the rooms of the report's page that run against the arrows."""
    found = []
    source = Path(root) / "Web/src"
    for room, allowed in PAGE_ROOMS.items():
        for path in sorted((source / room).glob("*.js")):
            for target in PAGE_IMPORT.findall(path.read_text(encoding="utf-8")):
                target_room = (path.parent / target).resolve().relative_to(source.resolve()).parts[0]
                if target_room not in (room, *allowed):
                    found.append(f"Web/src/{room}/{path.name}: {room} must not import {target}")
    return found


def budget_violations(sources):
    """Files over the line budget, and a median that has grown past it."""
    lengths = {path: len(path.read_text(encoding="utf-8").splitlines()) for path in Path(sources).rglob("*")
               if path.suffix in BUDGETED and "node_modules" not in path.parts}
    found = [f"{path}: {length} lines, the budget is {MAX_LINES}" for path, length in lengths.items()
             if length > MAX_LINES]
    if lengths and statistics.median(lengths.values()) > MAX_MEDIAN:
        found.append(f"the median file has {statistics.median(lengths.values())} lines, the budget is {MAX_MEDIAN}")
    return found


def budgets_of_tree(root):
    """`budget_violations` of the sources, the page and the tests: all are read by people."""
    return [line for part in ("Sources", "Web", "Tests") for line in budget_violations(Path(root) / part)]


def test_cases(path):
    """The (macro, suite, case) triples that a test file declares."""
    return TEST.findall(Path(path).read_text(encoding="utf-8"))


def unregistered_tests(tests_root, registered):
    """Test cases on disk that no registered test runs; `registered` holds the names as ctest knows them."""
    names = set()
    for name in registered:
        case = REGISTERED.match(name)
        if case:
            names.update((suite, case["case"]) for suite in case["suites"].split("/"))
    found = []
    for path in sorted(Path(tests_root).rglob("*Test.cpp")):
        cases = test_cases(path)
        if not cases:
            found.append(f"{path}: declares no test")
        found += [f"{path}: {suite}.{case} is not registered" for _, suite, case in cases if (suite, case) not in names]
    return found


def uncompiled_files(files, compile_commands):
    """Files on disk that no build command names."""
    compiled = {str(Path(entry["file"]).resolve()) for entry in compile_commands}
    return [f"{path}: is in no build" for path in files if str(Path(path).resolve()) not in compiled]


def stale_pictures(root):
    """The text pictures of `docs` that the README does not show as they are; tests draw them anew."""
    readme = (Path(root) / "README.md").read_text(encoding="utf-8")
    return [f"README.md: does not show {path.name} as it is" for path in sorted((Path(root) / "docs").glob("*.txt"))
            if path.read_text(encoding="utf-8").rstrip("\n") not in readme]


def tracked(root, *patterns):
    """The files below `root` that git tracks or would track, matching the patterns."""
    command = ["git", "-C", str(root), "ls-files", "--cached", "--others", "--exclude-standard", "--", *patterns]
    listing = subprocess.run(command, check=True, capture_output=True, text=True).stdout
    return [Path(root) / line for line in listing.splitlines()]


def internal_names(root):
    """The folders and headers of the core that are not installed."""
    sharing = (Path(root) / "cmake/SharedLibrary.cmake").read_text(encoding="utf-8")
    return re.search(r"set\(QUELLIN_INTERNAL ([^)]*)\)", sharing).group(1).split()


def silent_on_threads(root):
    """Classes of installed headers that do not say which threads may use them."""
    internal = re.compile(rf"/({'|'.join(internal_names(root))})(/|$)")
    headers = [path for path in sorted((Path(root) / "Sources/QuellinCore").rglob("*.h")) if not internal.search(str(path))]
    found = []
    for path in headers:
        comment, name = "", ""
        for line in path.read_text(encoding="utf-8").splitlines():
            declared = re.match(r"class (\w+).*\{$", line)
            name = declared.group(1) if declared else name
            if name or line.startswith("///"):
                comment += line
            if name and line.startswith("};") and not re.search(r"thread|main(\s|///)+executor", comment, re.IGNORECASE):
                found.append(f"{path.relative_to(root)}: {name} does not say which threads may use it")
            if line.startswith("};") or not (name or line.startswith(("///", "template"))):
                comment, name = "", ""
    return found


def undocumented_installs(root):
    """Headers that are installed but left out of the API documentation, and the reverse."""
    doxyfile = (Path(root) / "docs/Doxyfile").read_text(encoding="utf-8")
    not_installed = {name if name.endswith(".h") else f"{name}/" for name in internal_names(root)}
    not_documented = {name.removesuffix("*") for name in re.findall(r"\*/(\w+/(?:\*|\w+\.h))", doxyfile)}
    return [f"{name}: is left out of only one of cmake/SharedLibrary.cmake and docs/Doxyfile"
            for name in sorted(not_installed ^ not_documented)]
