#!/usr/bin/env python3
"""Checks that the installed headers show nothing internal.

Usage: check_installed.py CMAKE BUILD  installs the headers of a build into a folder of its own and lists the violations
       check_installed.py --self-test  violates each rule in a small tree and checks that it is reported
"""
import os
import re
import subprocess
import sys
import tempfile

# Folders whose headers are for the library's own source files.
INTERNAL_FOLDERS = ("inner", "platform", "wire", "door", "modules")
INCLUDE = re.compile(r'^[ \t]*#[ \t]*include[ \t]*"([^"]+)"', re.MULTILINE)
# Code without comments: words of a comment are no names.
COMMENT = re.compile(r"//[^\n]*|/\*.*?\*/", re.DOTALL)
INTERNAL_NAMES = re.compile(r"\b(?:zet\s*::\s*)?platform\s*::|\bnamespace\s+zet\s*::\s*platform\b")
# A derived class of a host reaches protected members.
MEMBER = re.compile(r"\binner\s*::[^;(){}]*\bm_\w+")
SECTION = re.compile(r"^\s*(public|protected|private)\s*:", re.MULTILINE)


def is_internal(path):
    return any(folder in INTERNAL_FOLDERS for folder in path.split("/")[:-1])


def reachable(text):
    """The text without the private sections of its classes."""
    parts = SECTION.split(text)
    kept = parts[0]
    for access, part in zip(parts[1::2], parts[2::2]):
        # A private section ends with its class.
        kept += part.partition("\n};")[2] if access == "private" else part
    return kept


def check(root):
    """All violations, as lines."""
    headers = sorted(os.path.relpath(os.path.join(folder, name), root).replace(os.sep, "/")
                     for folder, _, names in os.walk(root) for name in names if name.endswith(".h"))
    faults = [] if headers else ["no header is installed"]
    present = set(headers)
    for path in headers:
        with open(os.path.join(root, path), encoding="utf-8") as file:
            text = file.read()
        if is_internal(path):
            faults.append(f"{path}: is internal")
        for name in INCLUDE.findall(text):
            if is_internal(name):
                faults.append(f"{path}: includes {name}, which is internal")
            elif name not in present and name.endswith(".h"):
                faults.append(f"{path}: includes {name}, which is not installed")
        code = COMMENT.sub("", text)
        faults += [f"{path}: names {name.strip()}, which is internal" for name in INTERNAL_NAMES.findall(code)]
        faults += [f"{path}: shows {name}, which is internal, to derived classes"
                   for name in MEMBER.findall(reachable(code))]
    return faults


# One tree per rule: its files, and a part of the expected line. None: no line is expected.
TRIALS = [
    ({"net/a.h": '#include "framework/b.h"\nclass A\n{\nprotected:\n    int m_A;\n\nprivate:\n'
                 "    inner::B* m_B = nullptr;\n};\n",
      "framework/b.h": "// zet::platform::c() is called by the library.\n#include <vector>\n"}, None),
    ({}, "no header"),
    ({"net/inner/a.h": ""}, "is internal"),
    ({"framework/platform/a.h": ""}, "is internal"),
    ({"net/a.h": '#include "net/inner/b.h"\n'}, "includes net/inner/b.h, which is internal"),
    ({"net/a.h": '#include "framework/platform/b.h"\n'}, "includes framework/platform/b.h, which is internal"),
    ({"net/a.h": '#include "net/b.h"\n'}, "not installed"),
    ({"net/a.h": "inline int a() { return zet::platform::b(); }\n"}, "names zet::platform::"),
    ({"net/a.h": "namespace zet\n{\ninline int a() { return platform::b(); }\n}\n"}, "names platform::"),
    ({"net/a.h": "class A\n{\nprotected:\n    inner::B* m_B = nullptr;\n};\n"}, "to derived classes"),
    ({"net/a.h": "class A\n{\nprivate:\n    int m_A;\n};\nclass B\n{\npublic:\n"
                 "    std::shared_ptr<inner::B> m_B;\n};\n"}, "to derived classes"),
]


def self_test():
    failed = 0
    for number, (files, expected) in enumerate(TRIALS):
        with tempfile.TemporaryDirectory() as root:
            for path, text in files.items():
                os.makedirs(os.path.join(root, os.path.dirname(path)), exist_ok=True)
                with open(os.path.join(root, path), "w", encoding="utf-8") as file:
                    file.write(text)
            faults = check(root)
        good = len(faults) == 1 and expected in faults[0] if expected else not faults
        if not good:
            failed += 1
            print(f"trial {number}: expected {expected or 'nothing'}, found {faults}")
    print(f"{len(TRIALS) - failed} of {len(TRIALS)} trials as expected")
    return failed


def main():
    if sys.argv[1:] == ["--self-test"]:
        return 1 if self_test() else 0
    cmake, build = sys.argv[1:]
    with tempfile.TemporaryDirectory() as prefix:
        subprocess.run([cmake, "--install", build, "--component", "headers", "--prefix", prefix], check=True,
                       stdout=subprocess.DEVNULL)
        faults = check(os.path.join(prefix, "include", "commonground"))
    print("\n".join(faults) if faults else "no violations")
    return 1 if faults else 0


if __name__ == "__main__":
    sys.exit(main())
