"""What the checks share: the files of the tree, and a view of C++ text without its comments."""

import dataclasses
import pathlib
import re
import subprocess

ROOT = pathlib.Path(__file__).resolve().parents[2]
PRODUCT_FOLDERS = ("src", "stage", "drivers", "examples")
TEST_FOLDERS = ("tests", "fuzz")


@dataclasses.dataclass
class Finding:
    """One thing that is wrong, and how to mend it. A warning does not fail the run."""

    path: str
    line: int
    wrong: str
    fix: str
    warning: bool = False

    def __str__(self):
        place = f"{self.path}:{self.line}" if self.line else self.path
        return f"{place}: {'warning: ' if self.warning else ''}{self.wrong}\n    fix: {self.fix}"


def tree_files():
    """Every file that git tracks or would track, relative to the root."""
    listed = subprocess.run(["git", "ls-files", "-z", "-c", "-o", "--exclude-standard"], cwd=ROOT,
                            stdout=subprocess.PIPE, check=True).stdout
    names = sorted(set(listed.decode().split("\0")) - {""})
    return [name for name in names if (ROOT / name).is_file()]


def cpp_files(files, folders, suffixes=(".h", ".cpp")):
    return [name for name in files
            if name.split("/")[0] in folders and name.endswith(tuple(suffixes))]


def read(name):
    return (ROOT / name).read_text(encoding="utf-8", errors="replace")


_TOKEN = re.compile(
    r"""//[^\n]*|/\*.*?\*/|R"(?P<d>[^(\s]*)\(.*?\)(?P=d)"|"(?:\\.|[^"\\\n])*"|'(?:\\.|[^'\\\n])*'""",
    re.DOTALL)
_DIGIT_SEPARATOR = re.compile(r"(?<=[0-9A-Fa-f])'(?=[0-9A-Fa-f])")


def without_comments(text, keep_strings=True):
    """Comments become blanks, strings too if asked; the line breaks stay where they are."""

    def blank(match):
        token = match.group()
        if keep_strings and not token.startswith(("//", "/*")):
            return token
        return "\n" * token.count("\n") or " "

    return _TOKEN.sub(blank, _DIGIT_SEPARATOR.sub("", text))
