#!/usr/bin/env python3
"""Checks the syntax of every file of a configured build, without generating code: check_syntax.py BUILD [OPTION...]

Takes the commands from BUILD/compile_commands.json and adds the options. Prints the files that do not compile.
"""
import concurrent.futures
import json
import os
import shlex
import subprocess
import sys


def look(entry, options):
    words = shlex.split(entry["command"])
    out = words.index("-o")
    words[out:out + 2] = []
    # Without an object file, a dependency file and the compiler cache, which stores objects only.
    first = next(i for i, word in enumerate(words) if os.path.basename(word).startswith("clang"))
    command = [word for word in words[first:] if word != "-c"] + ["-fsyntax-only", *options]
    return subprocess.run(command, cwd=entry["directory"], capture_output=True, text=True, check=False)


def main():
    build, options = sys.argv[1], sys.argv[2:]
    with open(os.path.join(build, "compile_commands.json"), encoding="utf-8") as file:
        entries = json.load(file)
    faults = 0
    with concurrent.futures.ThreadPoolExecutor(os.cpu_count()) as pool:
        for entry, done in zip(entries, pool.map(lambda entry: look(entry, options), entries)):
            if done.returncode != 0 or done.stderr:
                faults += 1
                print(entry["file"], done.stderr, sep="\n")
    print(f"{len(entries)} files {' '.join(options)}: {faults} faults")
    return 1 if faults or not entries else 0


if __name__ == "__main__":
    sys.exit(main())
