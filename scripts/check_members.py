#!/usr/bin/env python3
"""Checks that each command has a wire order, and that an order names each member: sent, or marked as not sent.

Reads the headers and the orders as text. Usage: check_members.py ROOT
"""
import re
import sys
from pathlib import Path

FOLDERS = ("playerdata", "commands", "packs")


def without_comments(text):
    return re.sub(r"//[^\n]*|/\*.*?\*/", "", text, flags=re.S)


def body_at(text, brace):
    depth = 0
    for i in range(brace, len(text)):
        depth += {"{": 1, "}": -1}.get(text[i], 0)
        if depth == 0:
            return text[brace + 1 : i]
    return ""


def members_of(body):
    """Names of the data members declared directly in a class body."""
    flat = []
    depth = 0
    for char in body:
        if char == "{":
            depth += 1
        if depth == 0:
            flat.append(char)
        if char == "}":
            depth -= 1
            if depth == 0:
                flat.append(";")
    names = set()
    for declaration in "".join(flat).split(";"):
        declaration = re.sub(r"\b(public|private|protected)\s*:", "", declaration)
        # A macro of the interface has no semicolon, so the first member follows it in the same piece.
        declaration = re.sub(r"\b[A-Z][A-Z_]+\([^()]*\)|\bWIRE_INTERFACE_\w+", "", declaration).strip()
        head = declaration.split("=")[0]
        if "(" in head or re.match(r"(static|using|friend|typedef|enum|struct|class)\b", head):
            continue
        for part in head.split(","):
            match = re.search(r"\b(m_\w+)\s*((\[[^\]]*\]\s*)*)$", part.strip())
            if match:
                names.add(match.group(1))
    return names


def main(root):
    orders = {}
    for folder in FOLDERS:
        for path in sorted((root / folder).glob("*.cpp")):
            text = without_comments(path.read_text(encoding="utf-8"))
            for match in re.finditer(r"\bWIRE_\w+\((\w+)[^)]*\)\s*\{", text):
                body = body_at(text, match.end() - 1)
                orders[match.group(1)] = (path.relative_to(root), set(re.findall(r"\br\.(m_\w+)", body)))

    failures = []
    checked = set()
    for folder in FOLDERS:
        for path in sorted((root / folder).glob("*.h")):
            text = without_comments(path.read_text(encoding="utf-8"))
            for match in re.finditer(r"\b(?:class|struct)\s+(?:COMMONGROUND_API\s+)?(\w+)(?:\s+final)?(?:\s*:[^;{]*)?\s*\{", text):
                name = match.group(1)
                if name not in orders:
                    if f"COMMAND_INTERFACE({name})" in text:
                        failures.append(
                            f"{path.relative_to(root)}: {name} has no order; state it by WIRE_COMMAND({name})")
                    continue
                checked.add(name)
                source, sent = orders[name]
                for member in sorted(members_of(body_at(text, match.end() - 1)) - sent):
                    failures.append(
                        f"{source}: the order of {name} does not name {member}; send it or list it in NOT_SENT")
    for failure in failures:
        print(failure)
    print(f"{len(checked)} classes with an order, {len(failures)} classes or members without one")
    unseen = sorted(set(orders) - checked)
    if not checked or unseen:
        print("orders whose class the check does not see:", *unseen)
        return 1
    return 1 if failures else 0


if __name__ == "__main__":
    sys.exit(main(Path(sys.argv[1] if len(sys.argv) > 1 else ".")))
