#!/usr/bin/env python3
"""Prints a public header with its comments in Doxygen's form.

Usage: reference_filter.py FILE; Doxygen calls it for each header.

A comment belongs to the declaration that follows it at once, and to the functions after that one, up to the next
comment or blank line, but not to overrides and to what the compiler could make by itself. A comment at the end of a
line belongs to the declaration of that line. Comments inside function bodies are left as they are. The macros that
declare members of serializable classes, and the files that list the command ids, are replaced by what they declare.
"""
import os
import re
import sys

# Not what is for other tools.
COMMENT = re.compile(r"\s*//(?! NOLINT)( |$)")
TRAILING = re.compile(r"^(\s*[^/\s].*?[;,{}])\s*// (.*)$")
MEMBERS = re.compile(r"^(\s*)(COMMAND_INTERFACE|WIRE_INTERFACE_\w+|COMMONGROUND_VALUE_OPERATIONS)(?:\((\w+)\))?$")
SCOPE = re.compile(r"^(?:typedef\s+)?(?:inline\s+)?(namespace|class|struct|union|enum|extern)\b")
NOT_DECLARATIONS = re.compile(r"^\s*(?:[{}:]|public:|protected:|private:|#|$|//)")
# Where the macros are defined, relative to the top of the tree.
DEFINITIONS = ("packaging/wire_interface.h", "packaging/value_operations.h", "dispatch/command_process.h")

# The contracts of what the macros declare; packaging/wire_interface.h and packaging/value_operations.h have them in
# full.
PACKED = {
    "Write": "Appends the fields in wire order. False if a field does not fit; what was written by then stays.",
    "Read": "Reads the fields in wire order from the read pointer on. False at the first field that cannot be read; "
            "what was read by then stays.",
    "Wire": "The layout, for the project's own tools.",
    "_Process": "For CCmdAnalyser::Install: reads the command and calls the handler. False, and logged, for a payload "
                "that does not fit the class.",
    "_ProcessSocket": "For CCmdAnalyserSocket::Install: reads the command and calls the handler. False, and logged, "
                      "for a payload that does not fit the class.",
}
VALUES = {
    "Write": "Appends the value. False if there is no space.",
    "Write15": "Appends the value in one or two bytes; 15 bits of it. False if there is no space.",
    "Write30": "Appends the value in one to four bytes; 30 bits of it. False if there is no space.",
    "Read": "Reads a value at the read pointer. False if too few bytes are left; a scalar then stays as it was.",
    "Read15": "By pointer reads what Write15 appends; by reference reads a fixed two bytes.",
    "Read30": "By pointer reads what Write30 appends; by reference reads a fixed four bytes.",
}


def escape(text):
    """Text of a comment without a meaning of its own to Doxygen."""
    text = re.sub(r"([\\@<>&#$%\"]|(?<!\w)::)", r"\\\1", text)
    return re.sub(r"\b([A-Z]{4,}): ", r"<b>\1:</b> ", text, count=1) if re.match(r"[A-Z]{4,}: ", text) else text


def definitions(root):
    """Bodies of the macros, by name."""
    bodies = {}
    for path in DEFINITIONS:
        with open(os.path.join(root, path), encoding="utf-8") as file:
            text = file.read().replace("\\\n", "\n")
        for name, parameter, body in re.findall(r"^#define (\w+)(?:\((\w+)\))?((?:\n? .*)*)", text, re.MULTILINE):
            bodies[name] = (parameter, body)
    return bodies


def expand(root, name, argument):
    """The declarations of a macro, each with its comment, in one line."""
    bodies = definitions(root)

    def text_of(name, argument):
        parameter, body = bodies[name]
        if parameter:
            body = body.replace("##", "").replace(parameter, argument)
        return re.sub(r"\b(WIRE_INTERFACE_\w+)\b", lambda match: text_of(match.group(1), ""), body)

    comments = VALUES if name == "COMMONGROUND_VALUE_OPERATIONS" else PACKED
    text = re.sub(r"\{[^{}]*\}", ";", re.sub(r"\s+", " ", text_of(name, argument)))
    declarations = []
    for declaration in filter(None, (part.strip() for part in text.split(";"))):
        function = re.search(r"(\w+)\(", declaration).group(1)
        key = function.removeprefix(argument) if argument else function
        declarations.append(f"/** {escape(comments[key])} */ {declaration};")
    return " ".join(declarations)


def id_constants(path, text):
    """What a header in dispatch/ids/ declares by including its rows."""
    rows = re.search(r'#define COMMAND_ROWS "([^"]+)"', text).group(1)
    with open(os.path.join(os.path.dirname(path), os.path.basename(rows)), encoding="utf-8") as file:
        found = re.findall(r"^(?:COMMAND|SHARED)\((0x\w+), *(\w+), *(\w+)\)", file.read(), re.MULTILINE)
    return ["namespace command_id {"] + [f"/** The id of {name}. */ inline constexpr unsigned short {name} = {number};"
                                         for number, name, _ in found] + ["}"]


class Scopes:
    """Follows braces to know whether a line is inside a function body."""

    def __init__(self):
        self.kinds = []
        self.statement = ""

    def in_body(self):
        return "body" in self.kinds

    def add(self, line):
        code = re.sub(r"//.*|L?\"(?:\\.|[^\"\\])*\"|'(?:\\.|[^'\\])'", "", line)
        # Neither an access specifier nor a macro in a line of its own is a part of a declaration.
        if re.match(r"\s*(?:#|(?:public:|protected:|private:|[A-Z_]+(?:\(\w+\))?)\s*$)", code):
            return
        for char in code:
            if char == "{":
                head = re.sub(r"^template\s*<(?:[^<>]|<(?:[^<>]|<[^<>]*>)*>)*>\s*", "", self.statement.strip())
                self.kinds.append("scope" if SCOPE.match(head) and "(" not in head.split(":")[0] else "body")
                self.statement = ""
            elif char == "}":
                if self.kinds:
                    self.kinds.pop()
                self.statement = ""
            elif char == ";":
                self.statement = ""
            else:
                self.statement += char
        self.statement += " "


def is_function(declaration):
    """Whether a declaration shares the comment before it: not an override, which has that of its base, not what the
    compiler could make, and no type or field."""
    if re.search(r"^\s*using |\(\*|= (?:delete|default)$|~\w+\(|\boverride$", declaration):
        return False
    return "(" in declaration and not re.search(r"\b(?:(\w+)\((?:const )?\1&&? ?\w*\)|operator=\()", declaration)


def one_line(comment):
    return " ".join(re.sub(r"^\s*// ?", "", line) for line in comment)


def convert(path, root):
    with open(path, encoding="utf-8") as file:
        text = file.read()
    lines = text.split("\n")
    if os.path.basename(os.path.dirname(path)) == "ids":
        lines += id_constants(path, text)
    # Rows are not declarations.
    lines = ["" if re.match(r'#(?:include ".*\.def"|(?:define|undef) COMMAND_ROWS)', line) else line for line in lines]
    result = []
    scopes = Scopes()
    shared = None
    i = 0
    while i < len(lines):
        line = lines[i]
        if not scopes.in_body() and COMMENT.match(line):
            end = i
            while end < len(lines) and COMMENT.match(lines[end]):
                end += 1
            comment = lines[i:end]
            after = lines[end] if end < len(lines) else ""
            indent = re.match(r"\s*", line).group()
            if i == 0 or not NOT_DECLARATIONS.match(after) or re.match(r"#define", after):
                in_code = False
                for k, part in enumerate(comment):
                    body = re.sub(r"^\s*// ?", "", part)
                    # Indented by three or more: a table or an example.
                    is_code = bool(re.match(r"  +\S", body)) or (in_code and not body)
                    if not body and not any(re.match(r"\s*//   ?\S", rest) for rest in comment[k + 1:k + 2]):
                        is_code = False
                    opening = f"{indent}/// \\verbatim\n" if is_code and not in_code else ""
                    closing = f"{indent}/// \\endverbatim\n" if in_code and not is_code else ""
                    result.append(f"{opening}{closing}{indent}/// {body if is_code else escape(body)}")
                    in_code = is_code
                if in_code:
                    result.append(f"{indent}/// \\endverbatim")
                if i == 0:
                    result.append(f"/// \\file {os.path.relpath(path, root)}")
            else:
                result += comment
            shared = comment if i > 0 and not NOT_DECLARATIONS.match(after) else None
            shared_indent = indent
            i = end
            is_first = True
            continue
        if not line.strip():
            shared = None
        expanded = MEMBERS.match(line)
        in_body = scopes.in_body()
        before = scopes.statement.strip()
        if not in_body:
            scopes_before = len(scopes.kinds)
        scopes.add(line)
        if in_body:
            result.append(line)
        elif expanded:
            result.append(expanded.group(1) + expand(root, expanded.group(2), expanded.group(3) or ""))
        else:
            starts = not NOT_DECLARATIONS.match(line) and not before and re.match(r"\s*", line).group() == (
                shared_indent if shared else None)
            declaration = re.split("[;{]", " ".join(lines[i:i + 4]))[0].rstrip()
            if shared and starts and not is_first and is_function(declaration):
                result.append(f"/** {escape(one_line(shared))} */ {line}")
            elif TRAILING.match(line) and not re.match(r"\s*}", line):
                code, comment = TRAILING.match(line).groups()
                result.append(f"{code} ///< {escape(comment)}")
            else:
                result.append(line)
            if shared and starts:
                is_first = False
        i += 1
    return "\n".join(result)


def main():
    path = sys.argv[1]
    root = os.path.abspath(path)
    # The top of the installed headers has this folder.
    while not os.path.isdir(os.path.join(root, "packaging")) and root != os.path.dirname(root):
        root = os.path.dirname(root)
    sys.stdout.write(convert(path, root))


if __name__ == "__main__":
    main()
