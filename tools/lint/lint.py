#!/usr/bin/env python3
"""Checks what the compiler does not: lint.py [CHECK...]; --list names the checks.

Each finding tells the place, what is wrong and the fix. Exits 1 if there is one.
"""

import concurrent.futures
import os
import subprocess
import sys
import time

import exports
import floors
import headers
import house_map
import pages
import repeats
import sizes
import words
from common import ROOT, Finding, cpp_files, tree_files


def check_format(files):
    """The code has the format of .clang-format."""
    folders = ("src", "stage", "drivers", "examples", "tests", "fuzz", "benchmarks", "docs")
    names = cpp_files(files, folders)

    def run(batch):
        return subprocess.run(["clang-format-14", "--dry-run", *batch], cwd=ROOT, text=True,
                              stderr=subprocess.PIPE).stderr

    batches = [names[start:start + 20] for start in range(0, len(names), 20)]
    wrong = {}
    with concurrent.futures.ThreadPoolExecutor(os.cpu_count()) as pool:
        for said in pool.map(run, batches):
            for line in said.splitlines():
                if "code should be clang-formatted" in line:
                    name, number = line.split(":")[:2]
                    wrong.setdefault(name, int(number))
    for name, number in wrong.items():
        yield Finding(name, number, "not in the project's format", f"clang-format-14 -i {name}")


def check_scripts(files):
    """The shell scripts parse."""
    for name in files:
        with (ROOT / name).open("rb") as file:
            first = file.readline(40)
        if not name.endswith(".sh") and not (first.startswith(b"#!") and b"sh" in first):
            continue
        done = subprocess.run(["bash", "-n", name], cwd=ROOT, stderr=subprocess.PIPE, text=True)
        if done.returncode != 0:
            yield Finding(name, 0, done.stderr.strip(), "mend the syntax")
        if not os.access(ROOT / name, os.X_OK):
            yield Finding(name, 0, "a script that can't be run", f"chmod +x {name}")


CHECKS = {
    "floors": floors.check,
    "headers": headers.check,
    "exports": exports.check,
    "repeats": repeats.check,
    "words": words.check,
    "format": check_format,
    "sizes": sizes.check,
    "ratio": sizes.check_ratio,
    "scripts": check_scripts,
    "pages": pages.check,
    "map": house_map.check,
}


def main():
    wanted = sys.argv[1:] or list(CHECKS)
    if "--list" in wanted:
        for name, check in CHECKS.items():
            about = check.__doc__ or sys.modules[check.__module__].__doc__
            print(f"{name:9} {about.splitlines()[0]}")
        return 0
    unknown = [name for name in wanted if name not in CHECKS]
    if unknown:
        print(f"lint: no check named {unknown[0]}; there are: {' '.join(CHECKS)}", file=sys.stderr)
        return 2
    files = tree_files()
    failed = []
    for name in wanted:
        begin = time.monotonic()
        print(f"lint: {name}", flush=True)
        findings = list(CHECKS[name](files))
        for finding in findings:
            print(finding)
        if any(not finding.warning for finding in findings):
            failed.append(name)
        took = time.monotonic() - begin
        if took > 1:
            print(f"      {took:.0f} s")
    print(f"lint: failed: {', '.join(failed)}" if failed else "lint: all checks passed")
    return 1 if failed else 0


if __name__ == "__main__":
    sys.exit(main())
