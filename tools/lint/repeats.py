"""Nothing is written twice: runs of equal code lines in two places of the product."""

import re

from common import PRODUCT_FOLDERS, Finding, cpp_files, read, without_comments

SHORTEST = 6
PASSED_OVER = re.compile(r"[\s{}()\[\];,]*$|#\s*(include|pragma|ifndef|define|endif)\b|using\s"
                         r"|(public|private|protected):$|namespace\b|(inline )?namespace\b")


def code_lines(name):
    """(line number, text with its blanks folded) of each line that says something."""
    for number, line in enumerate(without_comments(read(name)).splitlines(), 1):
        text = " ".join(line.split())
        if not PASSED_OVER.match(text):
            yield number, text


def check(files):
    lines = {name: list(code_lines(name)) for name in cpp_files(files, PRODUCT_FOLDERS)}
    first_seen = {}
    reported = set()  # starts whose run was reported with the start before
    for name, own in lines.items():
        for index in range(len(own) - SHORTEST + 1):
            window = tuple(text for _, text in own[index:index + SHORTEST])
            place = first_seen.setdefault(window, (name, index))
            other, at = place
            if place == (name, index) or (other == name and index - at < SHORTEST):
                continue
            reported.add((name, index, other, at))
            if (name, index - 1, other, at - 1) in reported:
                continue
            length = SHORTEST
            theirs = lines[other]
            while (index + length < len(own) and at + length < len(theirs)
                   and own[index + length][1] == theirs[at + length][1]):
                length += 1
            yield Finding(name, own[index][0],
                          f"{length} lines stand again at {other}:{theirs[at][0]}",
                          "let both call one function")
