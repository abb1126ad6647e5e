#!/usr/bin/env python3
"""Checks that a source file fails to compile for the reason that its first line gives as `// expect: REGEX`.

Usage: check_compile_fail.py FILE COMPILER ARGUMENT...

The wrong part may be inside `#ifdef COMPILE_FAIL`: then the file must compile without that macro and fail with it, so
that it cannot fail for another reason. If the wrong line ends with `// here`, the compiler must report one error only,
and name that line. If the wrong part is a compiler option, the second line names it as `// flags: OPTIONS`; the option is
used together with the macro.
"""
import re
import subprocess
import sys


def compile_file(path, command, *more):
    return subprocess.run([*command, *more, "-fsyntax-only", path], capture_output=True, text=True, check=False)


def main():
    path, command = sys.argv[1], sys.argv[2:]
    with open(path, encoding="utf-8") as file:
        text = file.read()
    match = re.match(r"// expect: (.+)", text)
    if not match:
        print(f"{path}: the first line is not `// expect: REGEX`")
        return 1
    if re.search(r"^#\s*ifdef COMPILE_FAIL\b", text, re.MULTILINE):
        sound = compile_file(path, command)
        if sound.returncode != 0:
            print(f"{path}: does not compile without COMPILE_FAIL either:\n{sound.stderr}")
            return 1
    flags = re.match(r".*\n// flags: (.+)", text)
    wrong = compile_file(path, command, "-DCOMPILE_FAIL", *(flags.group(1).split() if flags else []))
    if wrong.returncode == 0:
        print(f"{path}: compiles")
        return 1
    if not re.search(match.group(1).strip(), wrong.stderr):
        print(f"{path}: fails, but without '{match.group(1).strip()}':\n{wrong.stderr}")
        return 1
    here = [i for i, line in enumerate(text.split("\n"), 1) if line.endswith("// here")]
    errors = len(re.findall(r"\berror: ", wrong.stderr))
    if here and (errors != 1 or not re.search(rf"{re.escape(path)}:{here[0]}:", wrong.stderr)):
        print(f"{path}: fails with {errors} errors, not with one that names line {here[0]}:\n{wrong.stderr}")
        return 1
    return 0


if __name__ == "__main__":
    sys.exit(main())
