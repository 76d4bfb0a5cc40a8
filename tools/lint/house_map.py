"""The map in docs/architecture.md names what is there, and its picture shows today's rooms."""

import re
import sys

from common import ROOT, Finding, read

sys.path.insert(0, str(ROOT / "tools"))

import draw_floors

PAGE = "docs/architecture.md"
PICTURE = "docs/images/floors.svg"
# A path in backticks: with a folder or a suffix, "*" for the rest of a name, {a,b} for either.
_PATH = re.compile(r"`([\w./*{},-]*[/.][\w./*{},-]*)`")


def alternatives(path):
    match = re.search(r"\{([^}]*)\}", path)
    if not match:
        return [path]
    return [rest for each in match.group(1).split(",")
            for rest in alternatives(path[:match.start()] + each + path[match.end():])]


def is_there(path):
    return any(any(base.glob(path)) for base in (ROOT, ROOT / "src"))


def check(files):
    for number, line in enumerate(read(PAGE).splitlines(), 1):
        for named in _PATH.findall(line):
            for path in alternatives(named):
                if not is_there(path):
                    yield Finding(PAGE, number, f"names {path}, which is not there",
                                  "name what took its place")
    if read(PICTURE) != draw_floors.draw():
        yield Finding(PICTURE, 0, "shows other rooms than the tree has",
                      f"python3 tools/draw_floors.py > {PICTURE}")
