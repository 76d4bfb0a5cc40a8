"""Includes point down: the floors of tools/lint/floors.txt, and who may see the machine."""

import re

from common import ROOT, Finding, cpp_files, read

INCLUDE = re.compile(r'^\s*#\s*include\s*([<"])([^>"]+)[>"]')
# The one header above that a .cpp of any floor may include, to reach the services of others.
DOOR = "core/core_implementation.h"
TOOLKIT = re.compile(r"Q[A-Z]|Qt|X11/|xcb/|gtk/|windows\.h|GL/")
MACHINE = re.compile(
    r"sys/|netinet/|arpa/|net/|linux/|mach|(unistd|dlfcn|fcntl|dirent|poll|pthread|pwd|termios|link"
    r"|netdb|sched|signal|spawn|io|direct)\.h$")


def load_floors():
    floors = {}
    for line in (ROOT / "tools/lint/floors.txt").read_text().splitlines():
        if line and not line.startswith("#"):
            floor, start = line.split()
            floors[start] = int(floor)
    return floors


def floor_of(path, floors):
    fitting = [start for start in floors if path.startswith(start)]
    return floors[max(fitting, key=len)] if fitting else None


def includes_of(name):
    for number, line in enumerate(read(name).splitlines(), 1):
        match = INCLUDE.match(line)
        if match:
            yield number, match.group(1) == "<", match.group(2)


def check_library_file(name, floors):
    path = name.removeprefix("src/")
    own = floor_of(path, floors)
    if own is None:
        yield Finding(name, 0, "stands on no floor", "give its folder a line in tools/lint/floors.txt")
        return
    is_source = name.endswith(".cpp")
    back_end = path.startswith("platform/") and path.count("/") > 1
    for number, is_system, target in includes_of(name):
        if is_system:
            if not back_end and (MACHINE.match(target) or TOOLKIT.match(target)):
                yield Finding(name, number, f"<{target}> belongs to an operating system or toolkit",
                              "reach it through a header of src/platform/; only a back end knows it")
            continue
        above = floor_of(target, floors)
        if above is None:
            yield Finding(name, number, f'"{target}" is no path from src/ with a floor',
                          "include by path from src/, and name the folder in tools/lint/floors.txt")
        elif above > own and target != DOOR:
            yield Finding(name, number, f'floor {own} includes "{target}" of floor {above}',
                          "move what is needed down, or hand it in from above by an interface"
                          + (f'; a .cpp may ask the core for it through "{DOOR}"'
                             if is_source else ""))
        elif target == DOOR and not is_source and path != DOOR:
            yield Finding(name, number, f'a header includes "{DOOR}"', "include it in the .cpp")


def own_header(name):
    """The header of the family: the longest name in the folder that begins the file's name."""
    stem = (ROOT / name).with_suffix("")
    words = stem.name.split("_")
    for count in range(len(words), 0, -1):
        header = stem.with_name("_".join(words[:count]) + ".h")
        if header.is_file():
            return str(header.relative_to(ROOT))
    return None


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
    for name in cpp_files(files, ("src",)):
        yield from check_library_file(name, floors)
    for name in cpp_files(files, ("src", "stage", "drivers", "examples"), (".cpp",)):
        yield from check_own_header_first(name)
    for name in cpp_files(files, ("stage", "drivers", "examples")):
        for number, is_system, target in includes_of(name):
            if is_system and TOOLKIT.match(target):
                yield Finding(name, number, f"<{target}> belongs to a toolkit",
                              "only src/platform/qt/ knows it")
