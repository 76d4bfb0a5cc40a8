#!/usr/bin/env python3
"""Runs the benchmarks, prints a table of our time beside each peer's, and writes it as JSON.

A benchmark is named "<topic>/mirvane" or "<topic>/<peer>". Both run in one process, in any order,
and the medians of several such processes are compared: where the system happens to put a process's
memory can change a loop's speed by half. Counters that are read: "hash" (of the result, shown so
that a reader can see that the work was done; a peer that has one must have ours), "peak_bytes"
(compared like a time) and "limit" (the target of a topic that benchmarks/targets.json does not
name). The table tells which targets are met; it never fails a run.
"""

import argparse
import json
import pathlib
import re
import statistics
import subprocess
import sys

OURS = "mirvane"
NANOSECONDS = {"ns": 1.0, "us": 1e3, "ms": 1e6, "s": 1e9}
# What the benchmark library adds to a name.
SUFFIX = re.compile(r"(real_time|manual_time|process_time|[a-z_]+:[0-9.]+)")


def split_name(full_name):
    """The topic and who did it; arguments that follow the name belong to the topic."""
    parts = [part for part in full_name.split("/") if not SUFFIX.fullmatch(part)]
    arguments = []
    while len(parts) > 2 and parts[-1].isdigit():
        arguments.insert(0, parts.pop())
    return "/".join(parts[:-1] + arguments), parts[-1]


def run_once(program, name_filter):
    command = [str(program), "--benchmark_format=json",
               "--benchmark_enable_random_interleaving=true"]
    if name_filter:
        command.append(f"--benchmark_filter={name_filter}")
    done = subprocess.run(command, stdout=subprocess.PIPE, stderr=subprocess.PIPE, text=True)
    for line in done.stderr.splitlines():
        if not line.startswith("Failed to match any benchmarks"):
            print(line, file=sys.stderr)
    if done.returncode != 0 or not done.stdout.strip():
        return []
    return json.loads(done.stdout)["benchmarks"]


def gather(runs):
    """(topic, who) -> lists of times in nanoseconds and of counters."""
    found = {}
    runs.sort(key=lambda run: run["family_index"])  # interleaving shuffles them
    for run in runs:
        if run.get("run_type") != "iteration":
            continue
        topic, who = split_name(run["name"])
        if run.get("error_occurred"):
            print(f"bench: {run['name']}: {run.get('error_message')}", file=sys.stderr)
            continue
        wall = "real_time" in run["name"] or "manual_time" in run["name"]
        time = run["real_time" if wall else "cpu_time"] * NANOSECONDS[run["time_unit"]]
        entry = found.setdefault((topic, who), {"time": [], "peak_bytes": [], "hash": [],
                                                "limit": []})
        entry["time"].append(time)
        for counter in ("peak_bytes", "hash", "limit"):
            if counter in run:
                entry[counter].append(run[counter])
    return found


def hash_of(entry):
    """Hexadecimal; None without one, "unsteady" if it differs between repetitions."""
    values = set(entry["hash"])
    if len(values) > 1:
        return "unsteady"
    return f"{int(values.pop()):x}" if values else None


def compare(found, targets):
    limits = {(t["topic"], t["peer"], t["what"]): t["limit"] for t in targets}
    rows = []
    for (topic, peer), theirs in found.items():
        ours = found.get((topic, OURS))
        if peer == OURS or ours is None:
            continue
        for what in ("time", "peak_bytes"):
            if not ours[what] or not theirs[what]:
                continue
            mine, other = statistics.median(ours[what]), statistics.median(theirs[what])
            limit = limits.get((topic, peer, what))
            if limit is None and what == "time" and ours["limit"]:
                limit = ours["limit"][0]
            ratio = mine / other if other else float("inf")
            rows.append({"name": topic, "peer": peer, "what": what, "ours": mine, "theirs": other,
                         "ratio": round(ratio, 4), "limit": limit,
                         "met": None if limit is None else ratio <= limit,
                         "hash": hash_of(ours), "peer_hash": hash_of(theirs)})
    return rows


def quantity(value, what):
    if what == "peak_bytes":
        return f"{value / 1e6:.2f} MB"
    for unit, scale in (("s", 1e9), ("ms", 1e6), ("us", 1e3)):
        if value >= scale:
            return f"{value / scale:.2f} {unit}"
    return f"{value:.1f} ns"


def hash_text(row):
    if row["peer_hash"] is not None and row["peer_hash"] != row["hash"]:
        return f"{row['hash']} (peer {row['peer_hash']})"
    return row["hash"] or "-"


def print_table(rows):
    lines = [("name", "peer", "what", "ours", "peer's", "ratio", "target", "", "hash")]
    for row in rows:
        limit = row["limit"]
        lines.append((row["name"], row["peer"], row["what"].replace("_bytes", " memory"),
                      quantity(row["ours"], row["what"]), quantity(row["theirs"], row["what"]),
                      f"{row['ratio']:.3f}", "-" if limit is None else f"<= {limit:.4g}",
                      {None: "", True: "met", False: "MISSED"}[row["met"]], hash_text(row)))
    widths = [max(len(line[column]) for line in lines) for column in range(len(lines[0]))]
    for line in lines:
        print("  ".join(cell.ljust(width) for cell, width in zip(line, widths)).rstrip())
    stated = [row for row in rows if row["met"] is not None]
    print(f"\n{sum(row['met'] for row in stated)} of {len(stated)} targets met")


def main():
    parser = argparse.ArgumentParser(description="Times our code beside its peers.")
    parser.add_argument("--folder", required=True, type=pathlib.Path, help="of *_benchmark")
    parser.add_argument("--out", required=True, type=pathlib.Path, help="the JSON file to write")
    parser.add_argument("--targets", type=pathlib.Path,
                        default=pathlib.Path(__file__).parents[1] / "benchmarks/targets.json")
    parser.add_argument("--repetitions", type=int, default=5,
                        help="processes that each program runs in (%(default)s)")
    parser.add_argument("filter", nargs="?", help="regular expression over benchmark names")
    arguments = parser.parse_args()

    targets = json.loads(arguments.targets.read_text())
    found, broken = {}, []
    for program in sorted(arguments.folder.glob("*_benchmark")):
        runs = [run_once(program, arguments.filter) for _ in range(arguments.repetitions)]
        if not all(runs) and not arguments.filter:
            broken.append(program.name)
        found.update(gather(sum(runs, [])))
    rows = compare(found, targets)
    arguments.out.write_text(json.dumps(rows, indent=1) + "\n")
    print_table(rows)
    seen = {(row["name"], row["peer"], row["what"]) for row in rows}
    for target in targets:
        key = (target["topic"], target["peer"], target["what"])
        if key not in seen and not arguments.filter:
            print(f"bench: no result for the target {' / '.join(key)}", file=sys.stderr)
    for name in broken:
        print(f"bench: {name} gave no result in a run", file=sys.stderr)
    print(f"written to {arguments.out}")


if __name__ == "__main__":
    main()
