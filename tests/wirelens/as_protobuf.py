#!/usr/bin/env python3
"""Turns lines of `wirelens decode` into a schema and a text for protoc: as_protobuf.py LINES FOLDER

Writes FOLDER/lines.proto, with a message for each class and each record, and FOLDER/lines.txt, the same commands as one
message; `protoc --encode=Lines` makes the bytes. For a comparison of speed: the types follow from the values, and
lines with errors are left out.
"""
import json
import os
import re
import sys

SCALARS = {bool: "bool", int: "int64", float: "double", str: "string"}


def is_record(value):
    return isinstance(value, dict) and all(re.fullmatch(r"[A-Za-z_]\w*", name) for name in value)


class Shape:
    """What a field holds: the message of a record, entries of a map, or a scalar; alone or repeated."""

    def __init__(self):
        self.kind, self.repeated, self.fields = None, False, {}

    def take(self, value):
        if isinstance(value, list):
            self.repeated = True
            for each in value:
                self.take_one(each)
        else:
            self.take_one(value)

    def take_one(self, value):
        if isinstance(value, (dict, list)):
            self.kind = "message"
            for name, inner in members(value):
                self.fields.setdefault(name, Shape()).take(inner)
        elif value is not None:
            kind = SCALARS[type(value)]
            if self.kind not in (None, kind):
                kind = "double" if {kind, self.kind} <= {"double", "int64"} else "string"
            self.kind = kind


def members(value):
    if is_record(value):
        return list(value.items())
    if isinstance(value, list):
        return [("element", value)]
    return [("entry", [{"key": name, "value": inner} for name, inner in value.items()])]


def declare(name, shape, indent="  "):
    lines = [indent + f"message {name} {{"]
    for number, (field, inner) in enumerate(shape.fields.items(), 1):
        kind = inner.kind or "string"
        if kind == "message":
            kind = "T" + field
            lines += declare(kind, inner, indent + "  ")
        lines.append(indent + f"  {'repeated' if inner.repeated else 'optional'} {kind} {field} = {number};")
    return lines + [indent + "}"]


def scalar(value, kind):
    if kind == "string":
        return json.dumps(value if isinstance(value, str) else json.dumps(value))
    return {True: "true", False: "false"}[value] if kind == "bool" else repr(value)


def text(name, value, shape, out):
    for each in value if isinstance(value, list) else [value]:
        if each is None:
            continue
        if shape.kind == "message":
            out.append(name + " {")
            for field, inner in members(each):
                text(field, inner, shape.fields[field], out)
            out.append("}")
        else:
            out.append(name + ": " + scalar(each, shape.kind))


def main():
    lines, folder = sys.argv[1:]
    count = 0
    with open(lines, encoding="utf-8") as file:
        commands = [(line["class"], line["fields"]) for line in map(json.loads, file) if "error" not in line]
    shapes = {}
    for name, fields in commands:
        shapes.setdefault(name, Shape()).take(fields)
    with open(os.path.join(folder, "lines.proto"), "w", encoding="utf-8") as file:
        out = ['syntax = "proto2";', "message Line {"]
        for number, (name, shape) in enumerate(shapes.items(), 1):
            out += declare("T" + name, shape)
            out.append(f"  optional T{name} {name} = {number};")
        file.write("\n".join(out + ["}", "message Lines {", "  repeated Line line = 1;", "}", ""]))
    with open(os.path.join(folder, "lines.txt"), "w", encoding="utf-8") as file:
        for name, fields in commands:
            out = ["line {"]
            text(name, fields, shapes[name], out)
            file.write("\n".join(out + ["}", ""]))
            count += 1
    print(count, "commands of", len(shapes), "classes")


if __name__ == "__main__":
    sys.exit(main())
