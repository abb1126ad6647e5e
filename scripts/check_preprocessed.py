#!/usr/bin/env python3
"""Bounds what public headers cost each file that includes them: their lines after preprocessing.

Usage: check_preprocessed.py HEADER=LINES... -- COMPILER ARGUMENT...
"""
import subprocess
import sys


def lines_of(header, command):
    """The lines that are left of a file that includes the header alone, without markers and blank ones at the ends."""
    run = subprocess.run([*command, "-E", "-P", "-x", "c++", "-"], input=f'#include "{header}"\n', capture_output=True,
                         text=True, check=True)
    return run.stdout.count("\n")


def main():
    split = sys.argv.index("--")
    faults = 0
    for bound in sys.argv[1:split]:
        header, most = bound.split("=")
        lines = lines_of(header, sys.argv[split + 1:])
        fault = not 0 < lines <= int(most)
        faults += fault
        print(f"{header}: {lines} lines, {most} at most{': it includes more than it did' if fault else ''}")
    return 1 if faults or split == 1 else 0


if __name__ == "__main__":
    sys.exit(main())
