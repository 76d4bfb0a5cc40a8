"""Words that have no place in the tree or in commit messages.

They are put together here, so that this file holds none of them.
"""

import re
import subprocess

from common import ROOT, Finding, read


def word(*parts):
    return "".join(parts)


UNFINISHED = [
    (rf"\b{word('TO', 'DO')}\b|\b{word('FIX', 'ME')}\b|\b{word('XX', 'X')}\b|\b{word('HA', 'CK')}\b",
     0, "finish it, or remove it"),
    (rf"(?<!std::)\b{word('place', 'holder')}s?\b|{word('not ', 'implemented ', 'yet')}|\b{word('st', 'ub')}s?\b",
     re.IGNORECASE, "write what it stands for"),
    (word(r"\\fi", r"le\b"), 0, "a plain comment on top tells what a file holds"),
]
FOREIGN = [
    (rf"\b{word('specific', 'ation')}s?\b|{word('spec', '.md')}|\b{word('Par', 'ts')}? \d+\.\d+",
     re.IGNORECASE, "say it in the system's own words"),
    (rf"{word('/wo', 'rk/')}|\b{word('helper ', 'session')}|\b{word('tool ', 'library')}|\b{word('far', 'm-')}(?=bench|studio)",
     re.IGNORECASE, "leave out where and by whom it was written"),
]
IN_MESSAGES = FOREIGN + [(rf"\b{word('ses', 'sion')}s?\b",
                          re.IGNORECASE, "leave out where and by whom it was written")]
# Bytes and generated files, which nobody reads as text.
LEFT_OUT = re.compile(r"fuzz/corpus/|tests/data/|tools/package-lock\.json$|.*\.(png|gltf|glb|bin)$")
MESSAGES_READ = 100


def find(text, rules):
    for number, line in enumerate(text.splitlines(), 1):
        for pattern, flags, fix in rules:
            match = re.search(pattern, line, flags)
            if match:
                yield number, match.group(), fix


def check(files):
    for name in files:
        if LEFT_OUT.match(name):
            continue
        for number, found, fix in find(read(name), UNFINISHED + FOREIGN):
            yield Finding(name, number, f'the word "{found}"', fix)
    log = subprocess.run(["git", "log", f"-{MESSAGES_READ}", "--format=%h%x00%B%x01"], cwd=ROOT,
                         stdout=subprocess.PIPE, stderr=subprocess.DEVNULL, text=True).stdout
    for entry in log.split("\x01"):
        commit, _, message = entry.strip().partition("\0")
        for number, found, fix in find(message, IN_MESSAGES):
            yield Finding(f"commit {commit}", number, f'the word "{found}" in the message', fix)


