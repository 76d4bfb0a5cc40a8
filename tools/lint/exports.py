"""The export table of the built core holds what hosts look up, and nothing else; it has no data of
each thread.

As a program: exports.py LIBRARY [NAME...] checks that file, against other names if there are some.
"""

import subprocess
import sys

from common import ROOT, Finding

EXPECTED = {"attach", "detach", "getVersion", "pumpEvents"}
LIBRARY = "build/release/lib/mirvane/libcore.so"


def dynamic_names(path, which):
    done = subprocess.run(["nm", "-D", which, "--format=posix", str(path)],
                          stdout=subprocess.PIPE, check=True, text=True)
    return {line.split()[0].split("@")[0] for line in done.stdout.splitlines()}


def compare(path, shown, expected=EXPECTED):
    names = dynamic_names(path, "--defined-only")
    for name in sorted(names - expected):
        yield Finding(shown, 0, f"exports {name}",
                      "keep it hidden; cmake/core_exports.map lists what hosts look up")
    for name in sorted(expected - names):
        yield Finding(shown, 0, f"does not export {name}",
                      "define it in src/core/exports.cpp with MVR_EXPORT")
    if "__tls_get_addr" in dynamic_names(path, "--undefined-only"):
        yield Finding(shown, 0, "has data of each thread",
                      "LeakSanitizer may misread its bounds; all runs on the host's thread")


def check(_files):
    # The build is quick where nothing changed; a stale library would answer for old code.
    for command in (["cmake", "--preset", "release", "--log-level=WARNING"],
                    ["cmake", "--build", "--preset", "release", "--target", "core"]):
        done = subprocess.run(command, cwd=ROOT, stdout=subprocess.PIPE, stderr=subprocess.STDOUT,
                              text=True)
        if done.returncode != 0:
            yield Finding(LIBRARY, 0, "the release build failed:\n" + done.stdout[-2000:],
                          "./dev build shows all of it")
            return
    yield from compare(ROOT / LIBRARY, LIBRARY)


if __name__ == "__main__":
    wanted = set(sys.argv[2:]) or EXPECTED
    found = [str(finding) for finding in compare(sys.argv[1], sys.argv[1], wanted)]
    print("\n".join(found) or "exports: " + " ".join(sorted(wanted)))
    sys.exit(1 if found else 0)
