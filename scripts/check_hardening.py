#!/usr/bin/env python3
"""Checks the memory protections of built files: check_hardening.py FILE...

Each file has a non-executable stack, tables that are bound and read-only once loaded, stack guards and checked copies;
a program is position-independent; on x86-64 each exported function starts with the mark of a valid call target.
"""
import os
import re
import subprocess
import sys

MARK = b"\xf3\x0f\x1e\xfa"


def run(*command):
    return subprocess.run(command, capture_output=True, text=True, check=True).stdout


def unmarked_functions(path, segments):
    """Exported functions without the mark, and how many there are in all."""
    with open(path, "rb") as file:
        content = file.read()
    loads = [[int(word, 16) for word in match] for match in
             re.findall(r"LOAD +(0x\w+) (0x\w+) 0x\w+ (0x\w+)", segments)]
    functions = re.findall(r"^ *\d+: (\w+) +[1-9]\d* FUNC +(?:GLOBAL|WEAK) +DEFAULT +\d+ (\S+)",
                           run("readelf", "--dyn-syms", "-W", path), re.MULTILINE)
    found = []
    for value, name in functions:
        address = int(value, 16)
        at = next(address - start + offset for offset, start, size in loads if start <= address < start + size)
        if content[at:at + 4] != MARK:
            found.append(name)
    return found, len(functions)


def check(path, faults):
    def fault(text):
        faults.append(f"{os.path.basename(path)} {text}")
    segments = run("readelf", "-lW", path)
    dynamic = run("readelf", "-dW", path)
    asked_for = set(re.findall(r" UND (\w+)", run("readelf", "--dyn-syms", "-W", path)))
    if not re.search(r"GNU_STACK .* RW +0x", segments):
        fault("has an executable stack")
    if "GNU_RELRO" not in segments:
        fault("has writable tables after loading (no RELRO)")
    if not re.search(r"\(FLAGS_1\).*\bNOW\b", dynamic):
        fault("binds its calls lazily")
    is_program = "INTERP" in segments
    if is_program and not re.search(r"\(FLAGS_1\).*\bPIE\b", dynamic):
        fault("is not position-independent")
    if not asked_for & {"__stack_chk_fail", "__stack_chk_guard"}:
        fault("has no stack guards")
    checked = sorted(name for name in asked_for if re.fullmatch(r"__\w+_chk", name))
    if not checked and os.path.basename(path).startswith("libcommonground"):
        fault("has no checked copies")
    marked = ""
    if "X86-64" in run("readelf", "-hW", path):
        unmarked, functions = unmarked_functions(path, segments)
        for name in unmarked[:10]:
            fault(f"has no call target mark at {name}")
        marked = f", {functions - len(unmarked)} of {functions} functions marked"
    print(f"{os.path.basename(path)}: {' '.join(checked) or 'no checked copies'}{marked}")


def main():
    faults = []
    for path in sys.argv[1:]:
        check(path, faults)
    print(*faults, sep="\n")
    print(f"{len(sys.argv) - 1} files, {len(faults)} faults")
    return 1 if faults or len(sys.argv) < 2 else 0


if __name__ == "__main__":
    sys.exit(main())
