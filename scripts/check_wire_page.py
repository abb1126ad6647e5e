#!/usr/bin/env python3
"""Reads the byte examples of docs/wire.md with wirelens.

Usage: check_wire_page.py WIRELENS PAGE    fails if an example does not read, or reads as another class
       check_wire_page.py --self-test

An example is a block of the kind "bytes". Its first line says what the bytes are (CMD, a payload; FRAME, DATAGRAM or
PACKET) and their class. Each further line has bytes in hexadecimal, "x16" to repeat the one before, and after two spaces
or more their meaning.
"""
import json
import re
import subprocess
import sys

BLOCK = re.compile(r"^```bytes\n(\w+) (\w+)[^\n]*\n(.*?)^```$", re.DOTALL | re.MULTILINE)
OPTIONS = {"FRAME": [], "DATAGRAM": ["--datagram"], "PACKET": ["--packets"]}


def bytes_of(lines):
    """The bytes of an example in hexadecimal."""
    found = []
    for line in lines.splitlines():
        for word in re.split(r"  +", line.strip())[0].split():
            if word.startswith("x"):
                found += [found[-1]] * (int(word[1:]) - 1)
            else:
                found.append(f"{int(word, 16):02x}")
    return "".join(found)


def fault_of(wirelens, kind, name, data):
    """What is wrong with an example; empty for nothing."""
    arguments, text = (["read"], f"{name} cmd {data}\n") if kind == "CMD" else (["decode", *OPTIONS[kind], "-"], data)
    run = subprocess.run([wirelens, *arguments], input=text, capture_output=True, text=True)
    lines = [json.loads(line) for line in run.stdout.splitlines()]
    if run.returncode != 0 or len(lines) != 1 or "error" in lines[0]:
        return f"does not read: {run.stdout}{run.stderr}"
    if kind == "CMD" and not (lines[0]["read"] and lines[0]["consumed"] == lines[0]["size"]):
        return f"is not read to its end: {run.stdout}"
    if lines[0].get("class", lines[0].get("command")) != name:
        return f"reads as another class: {run.stdout}"
    return ""


def self_test():
    good = bytes_of("0d 12       an id\n00 x3 01    zeros and a one\n") == "0d1200000001"
    blocks = BLOCK.findall("a\n```bytes\nCMD A with b\n00  c\n```\n```\nd\n```\n")
    good = good and blocks == [("CMD", "A", "00  c\n")]
    print("as expected" if good else f"found {blocks}")
    return 0 if good else 1


def main():
    if sys.argv[1:] == ["--self-test"]:
        return self_test()
    wirelens, page = sys.argv[1:]
    with open(page, encoding="utf-8") as file:
        blocks = BLOCK.findall(file.read())
    faults = 0
    for kind, name, lines in blocks:
        fault = fault_of(wirelens, kind, name, bytes_of(lines))
        if fault:
            print(f"{kind} {name} {fault}")
            faults += 1
    print(f"{len(blocks)} examples, {faults} wrong")
    return 1 if faults or not blocks else 0


if __name__ == "__main__":
    sys.exit(main())
