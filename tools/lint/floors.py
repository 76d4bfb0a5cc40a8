"""Includes point down: the floors of tools/lint/floors.txt, and who may see the machine."""

import pathlib
import dataclasses
import re

from common import ROOT, Finding, cpp_files, read
from sizes import LONGEST_FILE

INCLUDE = re.compile(r'^\s*#\s*include\s*([<"])([^>"]+)[>"]')
# Rooms whose headers are installed: other people's programs include them.
PUBLIC_ROOMS = ("sdk", "contract")
TABLE = "tools/lint/floors.txt"
TOOLKIT = re.compile(r"Q[A-Z]|Qt|X11/|xcb/|gtk/|windows\.h|GL/")
MACHINE = re.compile(
    r"sys/|netinet/|arpa/|net/|linux/|mach|(unistd|dlfcn|fcntl|dirent|poll|pthread|pwd|termios|link"
    r"|netdb|sched|signal|spawn|io|direct)\.h$")
# They are called by their names, from outside.
DEFINES_NOTHING = re.compile(r"(^|/)main\.cpp$|^src/core/exports\.cpp$")
# The one knot of folders that their sources may form.
KNOT = {"instance", "plugins", "plugins/model", "plugins/model/elements"}


@dataclasses.dataclass
class Room:
    floor: int
    folder: str
    purpose: str


def load_rooms():
    lines = (ROOT / TABLE).read_text().splitlines()
    words = [line.split(None, 2) for line in lines if line and not line.startswith("#")]
    return [Room(int(floor), folder, purpose) for floor, folder, purpose in words]


def load_floors():
    return {room.folder: room.floor for room in load_rooms()}


def folder_of(path):
    return path.removeprefix("src/").rpartition("/")[0]


def is_public(name):
    return (name.startswith("src/") and name.endswith(".h")
            and folder_of(name).rpartition("/")[2] in PUBLIC_ROOMS)


def includes_of(name):
    for number, line in enumerate(read(name).splitlines(), 1):
        match = INCLUDE.match(line)
        if match:
            yield number, match.group(1) == "<", match.group(2)


def check_file(name, floors):
    folder = folder_of(name)
    own = floors.get(folder)
    if own is None:
        yield Finding(name, 0, "stands on no floor", f"give its folder a line in {TABLE}")
        return
    back_end = folder.startswith("platform/") and folder != "platform/sdk"
    for number, is_system, target in includes_of(name):
        if is_system:
            if not back_end and (TOOLKIT.match(target)
                                 or name.startswith("src/") and MACHINE.match(target)):
                yield Finding(name, number, f"<{target}> belongs to an operating system or toolkit",
                              "reach it through a header of src/platform/; only a back end knows it")
            continue
        above = floors.get(folder_of(target))
        if above is None:
            yield Finding(name, number, f'"{target}" is no path from a folder with a floor',
                          f"include by path from src/, and name the folder in {TABLE}")
        elif above > own:
            yield Finding(name, number, f'floor {own} includes "{target}" of floor {above}',
                          "move what is needed down, or hand it in from above by an interface, as "
                          "core/services/core_services.h does for what the whole core offers")
        elif is_public(name) and not is_public(f"src/{target}"):
            yield Finding(name, number, f'a public header includes "{target}", which is not',
                          "forward-declare, or move that to a room named sdk or contract")


def knots(edges):
    """The sets of more than one folder that reach each other."""
    reach = {}
    for start in edges:
        seen, waiting = set(), [start]
        while waiting:
            for target in edges.get(waiting.pop(), ()):
                if target not in seen:
                    seen.add(target)
                    waiting.append(target)
        reach[start] = seen
    together = {frozenset(other for other in reach[start] if start in reach.get(other, ()))
                for start in reach if start in reach[start]}
    return [knot for knot in together if len(knot) > 1]


def check_knots(files):
    """Headers of two folders never include each other, and all files form at most one knot."""
    headers, everything = {}, {}
    for name in files:
        for _, is_system, target in includes_of(name):
            other = folder_of(target)
            if is_system or other == folder_of(name):
                continue
            everything.setdefault(folder_of(name), set()).add(other)
            if name.endswith(".h"):
                headers.setdefault(folder_of(name), set()).add(other)
    for knot in knots(headers):
        yield Finding(TABLE, 0, "headers of these folders form a circle: " + ", ".join(sorted(knot)),
                      "forward-declare, or move what both need to a room below them")
    for knot in knots(everything):
        if not knot <= KNOT:
            yield Finding(TABLE, 0, "these folders form a circle: " + ", ".join(sorted(knot)),
                          "hand in by an interface from above what one of them reaches up for")


def header_rooms(folder):
    """Where the headers of a folder's .cpp files stand; a back end's are those of the purposes."""
    purposes = ROOT / "src/platform"
    for each in (folder, purposes) if folder.parent == purposes else (folder,):
        yield each
        for room in PUBLIC_ROOMS:
            yield each / room


def own_header(name):
    """The header of the class: of the same name, or of the longest name that begins the file's."""
    stem = (ROOT / name).with_suffix("")
    words = stem.name.split("_")
    for count in range(len(words), 0, -1):
        for room in header_rooms(stem.parent):
            header = room / ("_".join(words[:count]) + ".h")
            if header.is_file():
                return str(header.relative_to(ROOT))
    return None


def check_header_of_its_own(names):
    """Each .cpp has one; but a class may have a second file where one would be too long."""
    more = {}  # by header: the files of the class beyond the one of the header's name
    for name in names:
        header = own_header(name)
        if header is None:
            if not DEFINES_NOTHING.search(name):
                yield Finding(name, 0, "has no header of its own",
                              "declare what it defines in a header of the same name")
        elif pathlib.Path(header).stem != pathlib.Path(name).stem:
            more.setdefault(header, []).append(name)
    for header, others in more.items():
        first = pathlib.Path(others[0]).with_name(pathlib.Path(header).stem + ".cpp")
        together = sum(len(read(each).splitlines()) for each in (first, others[0])
                       if (ROOT / each).is_file())
        if len(others) == 1 and together > LONGEST_FILE:
            continue
        for name in others:
            yield Finding(name, 0, f"is a slice of {header}, and has no header of its own",
                          "give what it does a class with its own state")


def check_own_header_first(name):
    header = own_header(name)
    if header is None:
        return
    for number, _, target in includes_of(name):
        if not header.endswith(target):
            yield Finding(name, number, "its own header does not come first",
                          f'include "{header.removeprefix("src/")}" before all others')
        return


def check(files):
    floors = load_floors()
    placed = cpp_files(files, ("src", "stage"))
    for folder in sorted(set(floors) - {folder_of(name) for name in placed}):
        yield Finding(TABLE, 0, f"names {folder}, which holds no code", "take the line out")
    for name in placed:
        yield from check_file(name, floors)
    yield from check_knots(placed)
    yield from check_header_of_its_own(cpp_files(files, ("src", "stage"), (".cpp",)))
    for name in cpp_files(files, ("src", "stage", "drivers", "examples"), (".cpp",)):
        yield from check_own_header_first(name)
    for name in cpp_files(files, ("drivers", "examples")):
        for number, is_system, target in includes_of(name):
            if is_system and TOOLKIT.match(target):
                yield Finding(name, number, f"<{target}> belongs to a toolkit",
                              "only src/platform/qt/ knows it")
