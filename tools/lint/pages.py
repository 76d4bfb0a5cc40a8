"""Code that a page of docs/ shows is the code of the file it names.

A page names the file in a comment right before the block: <!-- code: docs/examples/... -->. With
--write (pages.py alone) the blocks are brought up to date.
"""

import re
import sys

from common import ROOT, Finding, read

_BLOCK = re.compile(r"(<!-- code: (\S+) -->\n```\w+\n)(.*?)(```\n)", re.DOTALL)


def pages(files):
    return [name for name in files if name.startswith("docs/") and name.endswith(".md")]


def check(files):
    for name in pages(files):
        text = read(name)
        for match in _BLOCK.finditer(text):
            source = ROOT / match.group(2)
            if not source.is_file() or source.read_text(encoding="utf-8") != match.group(3):
                yield Finding(name, text.count("\n", 0, match.start()) + 1,
                              f"shows other code than {match.group(2)}",
                              f"python3 tools/lint/pages.py --write {name}")


def write(name):
    text = read(name)
    text = _BLOCK.sub(lambda m: m.group(1) + read(m.group(2)) + m.group(4), text)
    (ROOT / name).write_text(text, encoding="utf-8")


if __name__ == "__main__":
    if sys.argv[1:2] != ["--write"] or len(sys.argv) < 3:
        sys.exit("usage: pages.py --write PAGE...")
    for page in sys.argv[2:]:
        write(page)
