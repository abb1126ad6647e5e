#!/usr/bin/env python3
"""Builds the API reference of the installed headers with Doxygen, or lists the public names without a comment.

Usage: reference.py build CMAKE BUILD   installs the headers of a build and writes BUILD/reference/html/index.html;
                                        fails with each warning
       reference.py check BUILD         lists public classes and functions without a comment, from the last build
       reference.py --self-test         violates each rule in a small header and checks that it is reported
"""
import os
import re
import shutil
import subprocess
import sys
import tempfile
import xml.etree.ElementTree as ElementTree

ROOT = os.path.dirname(os.path.dirname(os.path.abspath(__file__)))
# The vocabulary: the constructor of a record or message needs no comment.
VOCABULARY = ("commands/", "packs/", "playerdata/")


def generate(headers, place, page=""):
    """Runs Doxygen, with a page beside the headers. Returns its exit code; warnings are on the standard error stream."""
    settings = f"""
@INCLUDE = "{ROOT}/docs/reference/Doxyfile"
INPUT = "{headers}" "{page}"
INPUT_FILTER = "{sys.executable} {ROOT}/scripts/reference_filter.py"
STRIP_FROM_PATH = "{headers}" "{ROOT}/docs/reference"
STRIP_FROM_INC_PATH = "{headers}"
OUTPUT_DIRECTORY = "{place}"
"""
    for kind in ("html", "xml"):
        shutil.rmtree(os.path.join(place, kind), ignore_errors=True)
    os.makedirs(place, exist_ok=True)
    return subprocess.run(["doxygen", "-"], input=settings, text=True, check=False).returncode


def build(cmake, folder):
    place = os.path.join(folder, "reference")
    with tempfile.TemporaryDirectory() as prefix:
        subprocess.run([cmake, "--install", folder, "--component", "headers", "--prefix", prefix], check=True,
                       stdout=subprocess.DEVNULL)
        headers = os.path.join(prefix, "include", "commonground")
        result = generate(headers, place, f"{ROOT}/docs/reference/main.dox")
    if result == 0:
        print(f"{place}/html/index.html")
    return result


def has_comment(element):
    return any("".join(element.find(kind).itertext()).strip() for kind in ("briefdescription", "detaileddescription")
               if element.find(kind) is not None)


def needs_comment(function, owner, path):
    """Not what is declared away or made by the compiler, what overrides, and a constructor of the vocabulary."""
    name = function.findtext("name")
    arguments = function.findtext("argsstring") or ""
    if function.get("prot") not in ("public", "protected") or name.startswith("~"):
        return False
    if re.search(r"(=\s*(default|delete)|override)$", arguments) or function.find("reimplements") is not None:
        return False
    is_own = re.fullmatch(rf"\((const )?{owner} ?&{{0,2}} ?\w*\)( ?noexcept)?", arguments) if owner else None
    if (name == owner or name == "operator=") and is_own:
        return False
    return not (name == owner and path.startswith(VOCABULARY))


def check(place):
    """All violations, as lines, and the number of names that were looked at."""
    faults = set()
    seen = set()
    folder = os.path.join(place, "xml")
    for file in sorted(os.listdir(folder)):
        if file in ("index.xml", "Doxyfile.xml") or not file.endswith(".xml"):
            continue
        for compound in ElementTree.parse(os.path.join(folder, file)).getroot().iter("compounddef"):
            kind = compound.get("kind")
            if kind not in ("class", "struct", "namespace", "file"):
                continue
            full = compound.findtext("compoundname")
            owner = full.split("::")[-1] if kind in ("class", "struct") else ""
            location = compound.find("location")
            if owner and compound.get("prot") != "private":
                key = f"{location.get('file')}: {full}"
                seen.add(key)
                if not has_comment(compound):
                    faults.add(key)
            if compound.get("prot") == "private":
                continue
            for function in compound.iter("memberdef"):
                if function.get("kind") != "function":
                    continue
                path = function.find("location").get("file")
                if not needs_comment(function, owner, path):
                    continue
                name = function.findtext("name")
                key = f"{path}: {full + '::' if kind != 'file' else ''}{name}{function.findtext('argsstring')}"
                seen.add(key)
                if not has_comment(function):
                    faults.add(key)
    return sorted(faults), len(seen)


# A header per rule, and a part of each expected line.
TRIALS = [
    ("// A.\nclass A\n{\npublic:\n    // B.\n    int b(int);\n    int b(long);\n    ~A();\n};\n", []),
    ("class A\n{\n};\n", ["a.h: A"]),
    ("// A.\nclass A\n{\npublic:\n    int b();\n};\n", ["a.h: A::b()"]),
    ("// A.\nclass A\n{\npublic:\n    // B.\n    int b();\n\n    int c();\n};\n", ["a.h: A::c()"]),
    ("// A.\nclass A\n{\npublic:\n    A() = default;\n    A(const A&) = delete;\n    // B.\n    virtual void b();\n};\n"
     "// C.\nclass C : public A\n{\npublic:\n    void b() override;\n\nprivate:\n    void d();\n};\n", []),
    ("// A.\nclass A\n{\npublic:\n    // B.\n    int b()\n    {\n        // Nothing of c.\n        return 1;\n    }\n"
     "    struct C\n    {\n        int m_D;\n    };\n};\n", ["a.h: A::C"]),
    ("int a();\n", ["a.h: a()"]),
]
# A comment that Doxygen misreads must fail the build; the filter escapes what comments have.
WARNING = "/** See \\ref missing. */\nclass A\n{\n};\n"
QUIET = "// 1 < 2 & 3 > 2, \\n, @name, <b>, #x, %d, \"text\", on<Command>(), a@b.\nint a();\n"


def self_test():
    failed = 0
    for number, (text, expected) in enumerate(TRIALS):
        with tempfile.TemporaryDirectory() as folder:
            headers = os.path.join(folder, "headers")
            os.makedirs(headers)
            with open(os.path.join(headers, "a.h"), "w", encoding="utf-8") as file:
                file.write("// Head.\n#pragma once\n\n" + text)
            result = generate(headers, folder)
            faults, _ = check(folder)
        if result != 0 or len(faults) != len(expected) or any(e not in f for e, f in zip(expected, faults)):
            failed += 1
            print(f"trial {number}: expected {expected}, found {faults}, Doxygen ended with {result}")
    for text, is_good in ((WARNING, False), (QUIET, True)):
        with tempfile.TemporaryDirectory() as folder:
            headers = os.path.join(folder, "headers")
            os.makedirs(headers)
            with open(os.path.join(headers, "a.h"), "w", encoding="utf-8") as file:
                file.write("// Head.\n#pragma once\n\n" + text)
            result = generate(headers, folder)
        if (result == 0) != is_good:
            failed += 1
            print(f"Doxygen ended with {result} for {text}")
    print(f"{len(TRIALS) + 2 - failed} of {len(TRIALS) + 2} trials as expected")
    return failed


def main():
    if sys.argv[1:] == ["--self-test"]:
        return 1 if self_test() else 0
    if sys.argv[1] == "build":
        return build(*sys.argv[2:])
    faults, count = check(os.path.join(sys.argv[2], "reference"))
    if faults:
        print("\n".join(faults))
    print(f"{len(faults)} of {count} public classes and functions have no comment")
    return 1 if faults or count < 500 else 0


if __name__ == "__main__":
    sys.exit(main())
