#!/usr/bin/env python3
"""Asks wirelens of both systems the same things: compare_wirelens.py GOLDEN --native FOLDER --foreign SYSTEM FOLDER -- EMULATOR

Every line that `read` answers, over all golden vectors in both widths, and every `new` must be the same. Only where the
width of characters differs, so do the rewritten bytes: each text has the form of the writer's width."""

import concurrent.futures
import functools
import json
import re
import subprocess
import sys

import systems

EXPLAINED = re.compile(r"(\d+)  ([0-9a-f]*)  (.*)")
# Each process draws one of its own.
SEED = re.compile(r'"m_VerifySeed":"[0-9a-f]{12}"')
REWRITE = '"rewrite":"'
FEWEST_LINES = 1000
FEWEST_TEXTS = 500


def run(command, text=""):
    done = subprocess.run(command, input=text.encode(), stdout=subprocess.PIPE, stderr=subprocess.DEVNULL, check=False)
    return done.stdout.decode("utf-8")


def count_word(count):
    """The variable form of a count, up to 16,383."""
    return bytes([count]) if count <= 0x3F else bytes([count >> 8 | 0x40, count & 0xFF])


def widened(text):
    """A text of the 16-bit form in the 32-bit form, or None for what is no such text."""
    width = 1 if text[0] <= 0x3F else 2
    count = text[0] if width == 1 else (text[0] & 0x3F) << 8 | text[1]
    units = text[width:]
    if count == 0 or text[0] > 0x7F or len(units) != 2 * count:
        return None
    return count_word(2 * count + 2) + units + bytes(2 * (count + 2))


class Comparison:
    def __init__(self, both):
        self.both = both
        self.foreign = both.foreign
        self.systems = (both.foreign, "linux")
        self.other_width = both.width(both.foreign) != both.width("linux")
        self.faults = []

    def fault(self, *lines):
        self.faults.append("\n".join(lines))

    @functools.lru_cache(maxsize=None)
    def explain(self, name, hexadecimal):
        """Bytes and meaning of each value, by this system's second reader, which knows no class."""
        answer = run(self.both.command("linux", "wirelens", "explain", name, hexadecimal or "-"))
        rows = [EXPLAINED.fullmatch(line) for line in answer.splitlines()]
        return [row.groups()[1:] if row else ("", answer.splitlines()[i]) for i, row in enumerate(rows)]

    def compare_rewrites(self, name, windows, linux):
        """Returns how many texts stand in the form of their width."""
        if windows == linux:
            return 0
        if not self.other_width:
            self.fault(f"{name}: other bytes are written again", windows, linux)
            return 0
        narrow, wide = self.explain(name, windows), self.explain(name, linux)
        if "".join(row[0] for row in narrow) != windows or "".join(row[0] for row in wide) != linux:
            self.fault(f"{name}: not all of what is written again is explained", windows, linux)
            return 0
        texts = 0
        for (small, meaning), (large, same) in zip(narrow, wide):
            if small == large:
                continue
            is_text = '  "' in meaning
            if meaning != same or not is_text or widened(bytes.fromhex(small)) != bytes.fromhex(large):
                self.fault(f"{name}: {meaning} as {small} on Windows, {same} as {large} here")
            texts += is_text
        if len(narrow) != len(wide):
            self.fault(f"{name}: {len(narrow)} values on Windows, {len(wide)} here")
        return texts

    def compare_lines(self, question, windows, linux):
        if SEED.search(windows) and SEED.search(linux):
            windows, linux = (SEED.sub("", line).partition(REWRITE)[0] for line in (windows, linux))
        before, found, _ = linux.partition(REWRITE)
        if windows.partition(REWRITE)[:2] != (before, found):
            self.fault(f"{question[:200]}:", f"{self.foreign}: {windows}", f"here: {linux}")
        elif found:
            here = json.loads(linux)
            return self.compare_rewrites(here["class"], json.loads(windows)["rewrite"], here["rewrite"])
        return 0

    def compare_read(self, golden):
        lines = run(self.both.command("linux", "interop", "lines", golden))
        same = run(self.both.command(self.foreign, "interop", "lines", self.both.path(self.foreign, golden)))
        if lines != same.replace("\r", ""):
            self.fault("the golden vectors are not the same lines on both sides")
        questions = lines.splitlines() + ["Nobody cmd 00", "CCmdLogin data 00", "CCmdLogin cmd 0"]
        text = "\n".join(questions) + "\n"
        windows, linux = (run(self.both.command(system, "wirelens", "read"), text).split("\n")
                          for system in self.systems)
        if not len(questions) + 1 == len(windows) == len(linux):
            self.fault(f"{len(questions)} questions, {len(windows) - 1} answers of {self.foreign}, {len(linux) - 1} here")
        if len(questions) < FEWEST_LINES:
            self.fault(f"no more than {len(questions)} lines")
        with concurrent.futures.ThreadPoolExecutor(2) as pool:
            texts = sum(pool.map(self.compare_lines, questions, windows, linux))
        print(f"read: {len(questions)} lines compared, {texts} texts in the form of their width")
        if self.other_width and texts < FEWEST_TEXTS:
            self.fault("hardly a text was compared")

    def compare_new(self):
        catalogue = [run(self.both.command(system, "wirelens", "catalogue", "--json"))
                     for system in self.systems]
        if catalogue[0] != catalogue[1]:
            self.fault("the catalogues are not the same")
        names = sorted({row["class"] for row in json.loads(catalogue[1])})

        def compare(name):
            windows, linux = (run(self.both.command(system, "wirelens", "new", name))
                              for system in self.systems)
            self.compare_lines("new " + name, windows, linux)
            return bool(json.loads(linux)["fields"])
        with concurrent.futures.ThreadPoolExecutor(2) as pool:
            print(f"new: {len(names)} classes compared, {sum(pool.map(compare, names))} of them with fields")


def main():
    arguments, both = systems.parse(__doc__, "golden")
    comparison = Comparison(both)
    comparison.compare_read(arguments.golden)
    comparison.compare_new()
    for fault in comparison.faults[:20]:
        print(fault)
    print(f"{len(comparison.faults)} differences")
    return 1 if comparison.faults else 0


if __name__ == "__main__":
    sys.exit(main())
