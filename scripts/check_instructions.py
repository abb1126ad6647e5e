#!/usr/bin/env python3
"""Counts the instructions of the paths in tests/instructions/paths.cpp and compares them with the stored counts.

Usage: check_instructions.py BUILD [--refresh], or --self-test. Fails if a path takes over 3 % more than in
tests/instructions/baseline.json; --refresh stores the counts of this build. Instructions are counted by valgrind in
user space, so the counts do not depend on the speed or the load of the machine. They do depend on the compiler, the
options and the C library, so each combination has counts of its own; without them, or without valgrind, the result is
77, which CTest shows as skipped.
"""

import json
import pathlib
import re
import shutil
import subprocess
import sys
import tempfile

ALLOWED = 1.03
SKIPPED = 77
BASELINE = pathlib.Path(__file__).resolve().parent.parent / "tests/instructions/baseline.json"


def skip(reason):
    print(f"skipped: {reason}")
    sys.exit(SKIPPED)


def counts_of(program):
    """Instructions per call of each path."""
    with tempfile.TemporaryDirectory() as folder:
        run = subprocess.run(["valgrind", "--tool=callgrind", "--collect-atstart=no", "--combine-dumps=no",
                              f"--callgrind-out-file={folder}/out", program], capture_output=True, text=True)
        if run.returncode != 0:
            sys.exit(f"{program} failed:\n{run.stdout}{run.stderr}")
        counts = {}
        for dump in sorted(pathlib.Path(folder).iterdir()):
            text = dump.read_text()
            name = re.search(r"^desc: Trigger: Client Request: (.*)/(\d+)$", text, re.M)
            total = re.search(r"^(?:totals|summary): (\d+)", text, re.M)
            if name and total:
                counts[name[1]] = round(int(total[1]) / int(name[2]), 1)
        return counts


def faults_of(stored, counts):
    """What is wrong with the counts, in sentences."""
    faults = []
    for name, old in stored.items():
        if name not in counts:
            faults.append(f"{name} was not counted")
        elif counts[name] > old * ALLOWED:
            faults.append(f"{name} grew from {old} to {counts[name]} instructions")
    return faults + [f"{name} has no stored count" for name in counts if name not in stored]


def self_test():
    stored = {"a": 100.0, "b": 1000.0}
    for counts, faults in (({"a": 102.9, "b": 500.0}, 0), ({"a": 103.1, "b": 1000.0}, 1), ({"a": 100.0}, 1),
                           ({"a": 104.0, "b": 1031.0, "c": 1.0}, 3)):
        if len(faults_of(stored, counts)) != faults:
            sys.exit(f"{counts} should have {faults} faults, has {faults_of(stored, counts)}")


def main():
    if sys.argv[1:] == ["--self-test"]:
        return self_test()
    if len(sys.argv) not in (2, 3) or sys.argv[2:] not in ([], ["--refresh"]):
        sys.exit(__doc__)
    program = pathlib.Path(sys.argv[1]).resolve() / "instruction_paths"
    if not shutil.which("valgrind"):
        skip("valgrind is not installed")
    if not program.exists():
        skip(f"{program.name} was not built: valgrind's headers were missing")
    key = subprocess.run([program, "--key"], capture_output=True, text=True, check=True).stdout.strip()
    stored = json.loads(BASELINE.read_text()) if BASELINE.exists() else {}
    if "--refresh" not in sys.argv and key not in stored:
        skip(f"no counts for {key}; {pathlib.Path(__file__).name} BUILD --refresh stores them")
    counts = counts_of(program)
    if not counts:
        sys.exit("valgrind reported no path")
    if "--refresh" in sys.argv:
        stored[key] = counts
        BASELINE.write_text(json.dumps(stored, indent=2, sort_keys=True) + "\n")
    print(f"instructions per call, {key}")
    for name, old in stored[key].items():
        new = counts.get(name, 0)
        print(f"  {name:40} {old:12.1f} {new:12.1f} {(new / old - 1) * 100:+6.1f} %")
    faults = faults_of(stored[key], counts)
    for fault in faults:
        print(fault)
    sys.exit(1 if faults else 0)


main()
