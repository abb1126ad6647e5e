#!/usr/bin/env python3
"""Runs the benchmarks of a build and prints the table of what is wanted: bench_table.py BUILD [--json].

A row is short if its median misses the wanted value. The spread is that of the rounds of one run. Exits with 1 only if
a benchmark fails: a time decides nothing.
"""

import json
import os
import pathlib
import re
import subprocess
import sys

# Program, row, what is compared ("ratio" to the floor or the "own" value), the wanted bound, and if it is an upper one.
WANTED = [
    ("socket_bench", "a small command there and back, one core", "ratio", 1.05, True),
    ("socket_bench", "small commands one way, one core", "ratio", 1.9, True),
    ("socket_bench", "60 KiB there and back, one core", "ratio", 1.2, True),
    ("dispatch_bench", "CCmdKeyEvent, object to frame", "ratio", 1.6, True),
    ("dispatch_bench", "CCmdKeyEvent, frame to handler", "ratio", 1.7, True),
    ("codec_bench", "account encode, floats by integers", "ratio", 1.35, True),
    ("codec_bench", "account decode", "ratio", 0.75, True),
    ("many_bench", "one command to 1,000 connections, each", "ratio", 1.05, True),
    ("many_bench", "accepting a connection, the server's time", "ratio", 1.1, True),
    ("many_bench", "accepting a connection, system calls", "own", 3, True),
    ("many_bench", "100 of 10,000 connections active, a command", "ratio", 1.15, True),
    ("udp_bench", "4 KiB there and back over UDP, against ENet", "ratio", 0.6, True),
    ("udp_bench", "small commands one way over UDP, against ENet", "ratio", 0.25, True),
    ("idle_bench", "a tick over 10000 idle connections", "own", 1000, True),
    ("idle_bench", "a tick over 10000 idle connections, against none", "ratio", 1.05, True),
    ("idle_bench", "an idle connection", "own", 700, True),
    ("tls_bench", "a small command there and back, TLS 1.3", "ratio", 1.05, True),
    ("cores_bench", "two Systems on one port and two cores, against one", "ratio", 1.9, False),
    ("wirelens_bench", "wirelens decode, recording", "own", 100, False),
    ("library", "code of the library (.text)", "own", 2.4, True),
    ("library", "relocations of the library", "own", 800, True),
    ("start_bench", "the start of hello over an empty program", "own", 1000, True),
]


def rows_of(program):
    # A higher priority, where the system allows it, keeps other programs out of the rounds.
    start = (lambda: os.nice(-15)) if os.geteuid() == 0 else None
    run = subprocess.run([program, "--json"], capture_output=True, text=True, preexec_fn=start)
    if run.returncode != 0:
        raise RuntimeError(f"{program.name} failed: {run.stderr.strip()}")
    return {row["name"]: row for row in map(json.loads, run.stdout.splitlines())}


def rows_of_library(build):
    library = build / "libcommonground.so"
    sections = subprocess.run(["readelf", "-SW", library], capture_output=True, text=True, check=True).stdout
    text = int(re.search(r"\.text\s+PROGBITS\s+\S+\s+\S+\s+(\S+)", sections)[1], 16) / 1e6
    relocations = subprocess.run(["readelf", "-rW", library], capture_output=True, text=True, check=True).stdout
    count = len(re.findall(r"\bR_[A-Z0-9_]+\b", relocations))
    return {
        "code of the library (.text)": {"unit": "MB", "own": text, "least": text, "most": text},
        "relocations of the library": {"unit": "", "own": count, "least": count, "most": count},
    }


def printed(row):
    if "skipped" in row:
        return f"{row['name']:52} skipped: {row['skipped']}"
    floor = f"{row['floor']:12.1f}" if "floor" in row else " " * 12
    ratio = f"{row['ratio']:7.2f}" if "ratio" in row else " " * 7
    spread = f"{row['least']:.4g} to {row['most']:.4g}"
    sign = "<=" if row["upper"] else ">="
    short = "  short" if row["short"] else ""
    return (f"{row['name']:52}{row['own']:12.1f} {row['unit']:5}{floor}{ratio}  {spread:20}"
            f"{sign} {row['wanted']:g}{'' if row['what'] == 'ratio' else ' ' + row['unit']}{short}")


def main():
    as_json = sys.argv[2:] == ["--json"]
    if len(sys.argv) < 2 or (sys.argv[2:] and not as_json):
        sys.exit(__doc__)
    build = pathlib.Path(sys.argv[1]).resolve()
    if not as_json:
        print(f"{'measure':52}{'here':>12} {'':5}{'floor':>12}{'ratio':>7}  {'spread':20}wanted")
    programs = {}
    failed = []
    short = []
    for program, name, what, wanted, is_upper in WANTED:
        if program not in programs:
            try:
                programs[program] = rows_of_library(build) if program == "library" else rows_of(build / program)
            except (RuntimeError, OSError, subprocess.CalledProcessError) as error:
                programs[program] = {}
                failed.append(str(error))
        row = programs[program].get(name)
        if row is None:
            failed.append(f"no row '{name}' of {program}")
            continue
        row = {**row, "name": name, "what": what, "wanted": wanted, "upper": is_upper}
        if what not in row and "skipped" not in row:
            row["skipped"] = "nothing to compare with"
        if "skipped" not in row:
            row["short"] = row[what] > wanted if is_upper else row[what] < wanted
            if row["short"]:
                short.append(name)
        print(json.dumps(row) if as_json else printed(row), flush=True)
    if not as_json:
        print(f"\n{len(short)} of {len(WANTED)} fall short:" if short else "\nNone falls short.")
        for name in short:
            print(f"  {name}")
    for line in failed:
        print(line, file=sys.stderr)
    sys.exit(1 if failed else 0)


main()
