#!/usr/bin/env python3
"""Checks what the loader does for the built library, and how much code it has.

Usage: check_relocations.py LIBRARY LIST RELOCATIONS [CODE]. At most RELOCATIONS entries of the library name a symbol,
which the loader looks up in every library of the program. LIST names exactly the variables that the library exports
and a program may change or copy: the linker binds what is not in it. With CODE, at most so many bytes are in .text.
"""
import fnmatch
import re
import subprocess
import sys


def run(*command):
    return subprocess.run(command, capture_output=True, text=True, check=True).stdout


def main():
    library, names = sys.argv[1:3]
    relocations = re.findall(r"\bR_[A-Z0-9_]+\b", run("readelf", "-rW", library))
    named = sum(not kind.endswith("_RELATIVE") for kind in relocations)
    code = int(re.search(r"\.text +PROGBITS +\w+ \w+ (\w+)", run("readelf", "-SW", library))[1], 16)
    faults = []
    if named > int(sys.argv[3]):
        faults.append(f"more than {sys.argv[3]} relocations name a symbol")
    if sys.argv[4:] and code > int(sys.argv[4]):
        faults.append(f".text has more than {sys.argv[4]} bytes")

    # Tables of classes are not variables; they never change.
    variables = re.findall(r"^\w+ [BD] (?!(?:vtable|VTT|construction vtable|typeinfo|guard variable)\b)(.*)$",
                           run("nm", "-DC", "--defined-only", library), re.MULTILINE)
    with open(names, encoding="utf-8") as file:
        text = re.sub(r"/\*.*?\*/", "", file.read(), flags=re.DOTALL)
    patterns = re.findall(r"([^\s;{}\"]+);", text)
    faults += [f"{variable} is not in the list" for variable in variables
               if not any(fnmatch.fnmatchcase(variable, pattern) for pattern in patterns)]
    faults += [f"{pattern} is the name of no variable" for pattern in patterns if not fnmatch.filter(variables, pattern)]
    print(*faults, sep="\n")
    print(f"{named} relocations name a symbol, {len(relocations) - named} do not and are not packed, "
          f"{code} bytes of code, {len(variables)} exported variables, {len(faults)} faults")
    return 1 if faults or not variables else 0


if __name__ == "__main__":
    sys.exit(main())
