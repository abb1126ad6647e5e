#!/usr/bin/env python3
"""Searches built files for the path of the build, and compares the builds of two copies of the tree.

Usage: check_folders.py paths FOLDER... -- FILE...   no file contains the path of a folder
       check_folders.py copies ROOT BUILD COMPILER [TARGET...]
                                                     builds two copies of the tree in BUILD, without the compiler
                                                     cache, and compares the bytes of the targets, by default of all
                                                     that is installed
"""
import os
import re
import shutil
import subprocess
import sys

# Not needed to build the library, or created by the build.
LEFT_OUT = shutil.ignore_patterns("build", ".git", "tests", "fuzz", "bench", "docs", "__pycache__")
INSTALLED = ["commonground", "wirelens", "zet_ConsoleLog", "zet_FileLog", "zet_Secure"]


def check_paths(folders, files):
    faults = 0
    for path in files:
        with open(path, "rb") as file:
            content = file.read()
        for folder in folders:
            found = re.search(re.escape(folder.encode()) + rb"(/[ -~]*|(?=[\0:]))", content)
            if found:
                faults += 1
                print(f"{os.path.basename(path)} holds {found.group().decode()}")
    print(f"{len(files)} files, {faults} faults")
    return 1 if faults or not files else 0


def build_copy(root, place, compiler, targets):
    """Builds a copy of the tree and returns the bytes of each built file by name."""
    shutil.rmtree(place, ignore_errors=True)
    shutil.copytree(root, place, ignore=LEFT_OUT)
    environment = dict(os.environ, CCACHE_DISABLE="1")
    # With debug information, which contains most paths, and without precompiled headers, like the preset release: with
    # them GCC's debug information differs between runs.
    for command in (["cmake", "-S", place, "-B", f"{place}/build/it", "-G", "Ninja", f"-DCMAKE_CXX_COMPILER={compiler}",
                     "-DCMAKE_BUILD_TYPE=RelWithDebInfo", "-DCMAKE_DISABLE_PRECOMPILE_HEADERS=ON",
                     "-DCOMMONGROUND_TESTS=OFF", "-DCOMMONGROUND_BENCH=OFF"],
                    ["cmake", "--build", f"{place}/build/it", "--parallel", str(os.cpu_count()), "--target", *targets]):
        done = subprocess.run(command, env=environment, stdout=subprocess.PIPE, stderr=subprocess.STDOUT, text=True,
                              check=False)
        if done.returncode != 0:
            print(" ".join(command), done.stdout, sep="\n")
            sys.exit(1)
    found = {}
    for folder, _, files in os.walk(f"{place}/build/it"):
        for name in files:
            path = os.path.join(folder, name)
            with open(path, "rb") as file:
                content = file.read()
            if content.startswith(b"\x7fELF"):
                found[os.path.relpath(path, place)] = content
    shutil.rmtree(place)
    return found


def check_copies(root, build, compiler, targets):
    first = build_copy(root, f"{build}/copies/a", compiler, targets or INSTALLED)
    second = build_copy(root, f"{build}/copies/of/a/longer/name", compiler, targets or INSTALLED)
    faults = [name for name in sorted(first.keys() | second.keys()) if first.get(name) != second.get(name)]
    for name in faults[:40]:
        print(f"{name} differs")
    print(f"{len(first)} files compared, {len(faults)} differ")
    return 1 if faults or len(first) < len(targets or INSTALLED) else 0


def main():
    if sys.argv[1] == "paths":
        end = sys.argv.index("--")
        return check_paths(sys.argv[2:end], sys.argv[end + 1:])
    return check_copies(*sys.argv[2:5], sys.argv[5:])


if __name__ == "__main__":
    sys.exit(main())
