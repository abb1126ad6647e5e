#!/usr/bin/env python3
"""Compiles the C++ code blocks of pages, without generating code, in the namespace pages of the preamble.

Usage: check_pages.py PREAMBLE PAGE... -- COMPILER...  prefixes the blocks with PREAMBLE, in one source file
       check_pages.py --self-test                      checks how blocks are found and wrapped

A block with a class, a function or a template at the start of a line is compiled at namespace scope, in a namespace of
its own; any other is the body of a function.
"""
import os
import re
import subprocess
import sys
import tempfile

BLOCK = re.compile(r"^( *)```cpp\n(.*?)^\1```$", re.DOTALL | re.MULTILINE)
DECLARATION = re.compile(r"^(?:(?:class|struct|template|namespace|int main)\b|\{)", re.MULTILINE)


def wrap(page, text):
    """The blocks of a page as source text: each with the line numbers of the page, and the includes apart."""
    includes = []
    parts = []
    for number, match in enumerate(BLOCK.finditer(text)):
        indent, code = match.groups()
        code = re.sub(rf"^{indent}", "", code, flags=re.MULTILINE)
        includes += re.findall(r"^#include .*$", code, re.MULTILINE)
        code = re.sub(r"^#include .*$", "", code, flags=re.MULTILINE)
        line = text.count("\n", 0, match.start()) + 2
        begin, end = ("{", "}") if DECLARATION.search(code) else ("{ static void run() {", "} }")
        parts.append(f'namespace block_{number} {begin}\n#line {line} "{page}"\n{code}{end}\n')
    return includes, parts


def self_test():
    text = "# A\n```cpp\n#include <a>\nclass A\n{\n};\n```\n- b\n\n  ```cpp\n  b();\n  ```\n```sh\nc\n```\n"
    includes, parts = wrap("a.md", text)
    good = (includes == ["#include <a>"] and len(parts) == 2
            and parts[0] == 'namespace block_0 {\n#line 3 "a.md"\n\nclass A\n{\n};\n}\n'
            and parts[1] == 'namespace block_1 { static void run() {\n#line 11 "a.md"\nb();\n} }\n')
    print("as expected" if good else f"found {includes}, {parts}")
    return 0 if good else 1


def main():
    if sys.argv[1:] == ["--self-test"]:
        return self_test()
    at = sys.argv.index("--")
    preamble, pages, compiler = sys.argv[1], sys.argv[2:at], sys.argv[at + 1:]
    with open(preamble, encoding="utf-8") as file:
        source = file.read()
    blocks = []
    for page in pages:
        with open(page, encoding="utf-8") as file:
            includes, parts = wrap(page, file.read())
        if not parts:
            print(f"{page} has no code block")
            return 1
        source = "\n".join(includes) + "\n" + source
        name = re.sub(r"\W", "_", os.path.basename(page))
        blocks.append(f"namespace pages::{name} {{\n" + "".join(parts) + "}\n")
    with tempfile.NamedTemporaryFile("w", suffix=".cpp", encoding="utf-8") as file:
        file.write(source + "\n" + "".join(blocks))
        file.flush()
        return subprocess.run(compiler + ["-fsyntax-only", file.name], check=False).returncode


if __name__ == "__main__":
    sys.exit(main())
