"""Every header compiles alone; the public ones in each language standard of their users."""

import concurrent.futures
import hashlib
import os
import re
import subprocess

from common import PRODUCT_FOLDERS, ROOT, TEST_FOLDERS, Finding, cpp_files, read
from floors import includes_of, is_public

WARNINGS = ["-Wall", "-Wextra", "-Wpedantic", "-Wnon-virtual-dtor", "-Werror"]
STAMPS = ROOT / "build/lint/headers"


def digest(name, seen):
    """Over the header and all that it includes from the tree."""
    seen.add(name)
    text = read(name)
    parts = [name, text]
    for _, is_system, target in includes_of(name):
        folder = os.path.dirname(name)
        for found in (f"src/{target}", target, f"{folder}/{target}"):
            if not is_system and found not in seen and (ROOT / found).is_file():
                parts.append(digest(found, seen))
                break
    return hashlib.sha256("\0".join(parts).encode()).hexdigest()


def compile_alone(name, standard, compiler_version):
    command = ["g++", f"-std={standard}", "-fsyntax-only", *WARNINGS, "-Isrc", "-I.",
               "-x", "c++", "-include", name, "/dev/null"]
    key = hashlib.sha256("\0".join([compiler_version, digest(name, set()), *command]).encode())
    stamp = STAMPS / key.hexdigest()
    if stamp.exists():
        return None
    done = subprocess.run(command, cwd=ROOT, stderr=subprocess.PIPE, text=True)
    if done.returncode == 0:
        stamp.touch()
        return None
    first = re.search(r"^.*(?:error|warning): .*$", done.stderr, re.MULTILINE)
    said = first.group() if first else done.stderr.strip()[:300]
    return Finding(name, 1, f"does not compile alone as {standard}: {said}",
                   "include what it uses, or forward-declare it")


def check_guards(files):
    for name in cpp_files(files, (*PRODUCT_FOLDERS, *TEST_FOLDERS, "benchmarks"), (".h",)):
        if not re.search(r"^#pragma once$", read(name), re.MULTILINE):
            yield Finding(name, 1, "guarded by other than #pragma once", "write #pragma once on top")


def check(files):
    STAMPS.mkdir(parents=True, exist_ok=True)
    version = subprocess.run(["g++", "--version"], stdout=subprocess.PIPE, text=True).stdout
    yield from check_guards(files)
    work = [(name, "c++17") for name in files if is_public(name)]
    work += [(name, "c++20")
             for name in cpp_files(files, ("src", "stage", "drivers", "examples"), (".h",))]
    with concurrent.futures.ThreadPoolExecutor(os.cpu_count()) as pool:
        for finding in pool.map(lambda item: compile_alone(*item, version), work):
            if finding:
                yield finding
