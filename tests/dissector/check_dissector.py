#!/usr/bin/env python3
"""Holds the dissector that wirelens prints to wirelens decode, field by field, on frames of all command classes.

Usage: check_dissector.py WIRELENS VECTORS    exits with 77 where there is no tshark with Lua

The frames are made from the golden vectors. They go over TCP in segments that end anywhere, on a port of the
preferences and on others, where the dissector has to recognise them, and as datagrams, one or several in each.
"""
import functools
import json
import os
import re
import shutil
import struct
import subprocess
import sys
import tempfile
import xml.etree.ElementTree

sys.path.insert(0, os.path.dirname(os.path.abspath(__file__)))
from capture import Capture  # noqa: E402

PORT, DATAGRAM_PORT = 7000, 7001
NAME = "commonground."
EXPERTS = {NAME + name for name in ("stopped", "left", "bad_frame", "passed_over", "unknown_id")}
ADDRESS = bytes(range(16))


def stream_frame(number, payload, source=b"", target=b""):
    word = len(payload) << 2 | (1 if source else 0) | (2 if target else 0)
    return struct.pack("<HI", number, word) + source + target + payload


def datagram_frame(number, payload):
    word = len(payload) << 2
    more = 0 if word <= 0x3F else 1 if word <= 0x3FFF else 2 if word <= 0x3FFFFF else 3
    return struct.pack("<H", number) + (word | more << (8 * more + 6)).to_bytes(more + 1, "big") + payload


def packet(frame):
    return struct.pack("<I", len(frame)) + frame


def cut_anywhere(data, sizes=(1, 3, 700, 2, 1400, 9, 64)):
    at, turn = 0, 0
    while at < len(data):
        size = sizes[turn % len(sizes)]
        yield data[at:at + size]
        at, turn = at + size, turn + 1


class Checker:
    def __init__(self, wirelens, folder):
        self.wirelens = wirelens
        self.script = os.path.join(folder, "commonground.lua")
        self.path = os.path.join(folder, "capture.pcap")
        with open(self.script, "wb") as file:
            file.write(subprocess.run([wirelens, "dissector"], check=True, capture_output=True).stdout)
        self.tcp_ports = PORT
        self.faults = []

    def fail(self, *words):
        self.faults.append(" ".join(str(word) for word in words))

    def tshark(self, *options):
        """What tshark prints about the capture. Its errors, and those of the script, fail the test."""
        run = subprocess.run(["tshark", "-n", "-r", self.path, "-X", "lua_script:" + self.script,
                              "-o", f"commonground.tcp_ports:{self.tcp_ports}", "-o", f"commonground.udp_ports:{DATAGRAM_PORT}",
                              "-o", "commonground.width:32-bit host", *options],
                             capture_output=True, encoding="utf-8", errors="replace")
        noise = [line for line in run.stderr.splitlines() if line and not line.startswith("Running as user")]
        if run.returncode != 0 or noise:
            self.fail("tshark:", run.returncode, *noise[:5])
        return run.stdout

    def decoded(self):
        run = subprocess.run([self.wirelens, "decode", self.path], capture_output=True, encoding="utf-8")
        return [json.loads(line) for line in run.stdout.splitlines()]

    def dissected(self, *preferences):
        """The frames that the dissector shows, in the form of wirelens decode, by connection."""
        text = self.tshark("-T", "pdml", *(word for preference in preferences for word in ("-o", preference)))
        for fault in sorted(set(re.findall(r"Lua Error[^\"]*", text))):
            self.fail(fault)
        document = xml.etree.ElementTree.fromstring(text)
        frames = {}
        for shown in document.iter("packet"):
            layers = {layer.get("name"): layer for layer in shown.findall("proto")}
            carrier = "tcp" if "tcp" in layers else "udp"
            ports = [layers[carrier].find(f"field[@name='{carrier}.{end}port']").get("show") for end in ("src", "dst")]
            ends = [layers["ip"].find(f"field[@name='ip.{end}']").get("show") for end in ("src", "dst")]
            key = f"{ends[0]}:{ports[0]}-{ends[1]}:{ports[1]}"
            for layer in shown.findall("proto"):
                if layer.get("name") == "commonground":
                    frames.setdefault(key, []).extend(frames_in(layer))
        return frames


def frames_in(layer):
    """The outermost frames of a layer: the elements that have an id."""
    if layer.find(f"field[@name='{NAME}id']") is not None:
        return [Frame(layer)]
    return [frame for child in layer for frame in frames_in(child)]


def experts_in(element):
    """The expert infos of a frame, without those of frames within it."""
    for child in element:
        if child.get("name") in EXPERTS:
            yield child.get("name")
        if child.find(f"field[@name='{NAME}id']") is None:
            yield from experts_in(child)


def unescaped(text):
    known = {"n": "\n", "r": "\r", "t": "\t", "a": "\a", "b": "\b", "f": "\f", "v": "\v"}
    return re.sub(r"\\(x[0-9a-f]{2}|[0-7]{3}|.)",
                  lambda m: known.get(m[1]) or (chr(int(m[1][1:], 16)) if m[1][0] == "x" and len(m[1]) == 3
                                                else m[1]), text)


class Frame:
    """A frame as the dissector shows it."""

    def __init__(self, layer):
        self.experts = set(experts_in(layer))
        self.inner, self.fields = None, {}
        self.class_name, self.source, self.target, self.number = None, None, None, None
        for field in layer.findall("field"):
            name = field.get("name")[len(NAME):]
            if name == "class":
                self.class_name = field.get("show")
            elif name == "id":
                self.number = field.get("show")
            elif name == "from":
                self.source = field.get("value")
            elif name == "target":
                self.target = field.get("value")
            elif name.startswith("head.") or name.split(".")[0] == self.class_name:
                for inner in frames_in(field):
                    self.inner = self.inner or inner
                add(self.fields, field)
        self.fields.pop("m_HeadVersion", None)


def add(fields, field):
    parts = field.get("name")[len(NAME):].split(".")
    if parts[-1] != "table":
        fields[display_of(field)] = value_of(field, parts)
        return
    # Cells, named with their places, or one array.
    for cell in field.findall("field"):
        parts = cell.get("name")[len(NAME):].split(".")
        name, *places = re.split(r"[\[\]]+", display_of(cell).rstrip("]"))
        if parts[-1] == "rows":
            continue
        if not places:
            fields[name] = value_of(cell, parts)
            continue
        lines = fields.setdefault(name, Column())
        if len(places) > 1:
            while len(lines) <= int(places[0]):
                lines.append(Column())
            lines = lines[int(places[0])]
        lines.append(value_of(cell, parts))


class Column(list):
    """Cells of a table. An array keeps those that it has places for, and the rest of its places their defaults."""


def display_of(field):
    """The member's expression: the filter's name has other characters in place of brackets."""
    return re.match(r"[^:]*", field.get("showname") or field.get("show"))[0].split(" (")[0].strip()


def named(field):
    return field.get("name", "").startswith(NAME)


def value_of(field, parts):
    children = [child for child in field.findall("field") if named(child) and
                child.get("name") not in (NAME + "stopped", NAME + "left", NAME + "passed_over")]
    suffix = parts[-1]
    if suffix in ("count", "array") and field.get("size") is not None:
        values = [value_of(child, child.get("name")[len(NAME):].split(".")) for child in children]
        keys = [child.get("name").endswith(".key") for child in children]
        if any(keys):
            return [list(pair) for pair in zip(values[::2], values[1::2])]
        return values
    if suffix == "pair":
        return [value_of(child, child.get("name")[len(NAME):].split(".")) for child in children]
    shown, raw = field.get("show"), field.get("value") or ""
    showname = field.get("showname") or ""
    if children and not any(child.get("name") == "commonground" for child in children):
        record = {}
        for child in children:
            add(record, child)
        return record
    return Leaf(shown, raw, showname)


class Leaf:
    """One value: compared with what wirelens decode has by the kind of that."""

    def __init__(self, shown, raw, showname):
        self.shown, self.raw, self.showname = shown, raw, showname

    def __repr__(self):
        return f"{self.shown!r} ({self.raw[:40]})"

    def equals(self, value):
        if isinstance(value, bool):
            return self.shown in (("True", "1") if value else ("False", "0"))
        if isinstance(value, int):
            return self.shown == str(value)
        if isinstance(value, float):
            text = bytes.fromhex(self.raw[2:]).decode("latin-1")
            try:
                return struct.pack("f", float(text)) == struct.pack("f", value)
            except ValueError:
                return float(self.shown) == value
        if isinstance(value, str):
            # Raw bytes as they are, a block after its size, a text as shown.
            return self.raw == value or self.raw[8:] == value or unescaped(self.shown) == value
        # What neither is a number.
        return value is None or (isinstance(value, (dict, list)) and not value and not self.raw)


def same(theirs, mine, is_whole):
    """Whether wirelens decode's value is the dissector's. Of a damaged payload the dissector has the beginning."""
    if isinstance(mine, dict):
        # A table without rows has no cells to be shown.
        return isinstance(theirs, dict) and all(
            name in theirs and same(theirs[name], value, is_whole) for name, value in mine.items()) and (
            not is_whole or all(name in mine or theirs[name] == [] for name in theirs))
    if isinstance(mine, list):
        if not isinstance(theirs, list):
            return False
        if isinstance(mine, Column):
            return all(same(a, b, is_whole) for a, b in zip(theirs, mine))
        # The elements of a map come in the order of their keys; the position as a key is not sent.
        by_place = [[i, value] for i, value in enumerate(mine)]
        if len(theirs) == len(mine):
            return (all(same(a, b, is_whole) for a, b in zip(theirs, mine))
                    or all(same(a, b, is_whole) for a, b in zip(theirs, by_place))
                    or all(any(same(a, b, is_whole) for a in theirs) for b in mine))
        if len(theirs) > len(mine):
            return not is_whole and all(any(same(a, b, False) for a in theirs) for b in mine)
        # Of two elements with one key a map has the later.
        return bool(theirs) and all(any(same(a, b, is_whole) for b in mine) for a in theirs)
    if isinstance(mine, int):
        return theirs == mine
    if not is_whole and isinstance(theirs, (dict, list)):
        # Nothing of it was there.
        return mine.shown == ""
    return mine.equals(theirs) or not is_whole and isinstance(theirs, str) and theirs.startswith(mine.raw)


def compare(checker, place, theirs, mine):
    what = f"{place} {theirs.get('class')} {theirs.get('error', '')}"
    if (theirs.get("from"), theirs.get("target")) != (mine.source, mine.target):
        checker.fail(what, "addresses", mine.source, mine.target)
    if theirs.get("class") != mine.class_name:
        checker.fail(what, "shown as", mine.class_name)
        return
    is_refused = bool(mine.experts & {NAME + "stopped", NAME + "left", NAME + "unknown_id"})
    if is_refused != ("error" in theirs):
        checker.fail(what, "marked as", sorted(mine.experts))
    is_whole = not is_refused and not mine.experts
    fields = theirs.get("fields", {})
    for name in {**fields, **mine.fields} if is_whole else mine.fields:
        if name not in mine.fields or name not in fields or not same(fields[name], mine.fields[name], is_whole):
            checker.fail(what, name, "is", str(fields.get(name, "nothing"))[:300], "and the dissector has",
                         str(mine.fields.get(name, "nothing"))[:300])
    if ("inner" in theirs) != (mine.inner is not None):
        checker.fail(what, "inner frame")
    elif mine.inner is not None:
        compare(checker, place + " inner", theirs["inner"], mine.inner)


def check_commands(checker, wirelens, vectors):
    ids = {row["class"]: int(row["id"], 16) for row in
           json.loads(subprocess.run([wirelens, "catalogue", "--json"], check=True, capture_output=True).stdout)
           if row["family"] == "command"}
    payloads = [(ids[vector["class"]], bytes.fromhex(vector["bytes"]))
                for vector in map(json.loads, open(vectors, encoding="utf-8")) if vector["class"] in ids]
    used = {number for number, _ in payloads}
    if used != set(ids.values()):
        checker.fail("no golden vector for the ids", sorted(set(ids.values()) - used))
    frames = [stream_frame(number, payload, ADDRESS if i % 5 == 1 else b"", ADDRESS[::-1] if i % 7 == 1 else b"")
              for i, (number, payload) in enumerate(payloads)]

    capture = Capture()
    capture.add_connection(40001, PORT, list(cut_anywhere(b"".join(packet(frame) for frame in frames))))
    # Recognised without a port: the first segment starts with a whole head.
    capture.add_connection(40002, 9999, [data for frame in frames for data in cut_anywhere(packet(frame), (20, 1400))])
    datagrams = [datagram_frame(number, payload) for number, payload in payloads if len(payload) < 1400]
    for frame in datagrams:
        capture.add_datagram(frame, DATAGRAM_PORT)
        capture.add_datagram(frame, 9998)
    # Of a stream over UDP: a row of frames, each after its length.
    for i in range(0, len(datagrams), 3):
        row = b"".join(struct.pack("<H", len(frame)) + frame for frame in datagrams[i:i + 3])
        capture.add_datagram(row, DATAGRAM_PORT, 40010)
        capture.add_datagram(row, 9998, 40010)
    capture.write(checker.path)

    theirs, mine = {}, checker.dissected()
    for line in checker.decoded():
        theirs.setdefault(line["connection"], []).append(line)
    count = 0
    for connection in sorted(set(theirs) | set(mine)):
        ours, shown = theirs.get(connection, []), mine.get(connection, [])
        if len(ours) != len(shown):
            checker.fail(connection, "has", len(ours), "frames, and the dissector shows", len(shown))
        for place, (line, frame) in enumerate(zip(ours, shown)):
            compare(checker, f"{connection} frame {place}", line, frame)
            count += 1
    if count < 6 * len(ids):
        checker.fail("only", count, "frames compared")
    return count


def envelope_payload(schema, number, message):
    """A payload of an envelope by its printed schema, all fields but the type 0 or empty."""
    out = b""
    for line in schema.splitlines()[1:-1]:
        name, kind = line.split("  ")[1:3]
        if kind == "version":
            out += b"\0\2"
        elif kind == "payload":
            out += struct.pack(">I", len(message)) + message
        elif kind == "text":
            out += b"\0"
        else:
            size = {"int": 4, "unsigned short": 2, "uuid": 16}[kind]
            out += (number if name == "m_PackType" else 0).to_bytes(size, "big")
    return out


@functools.cache
def dropping(checker, name):
    """The lists of a class that are read into the elements that they have: an object made for reading has none."""
    run = subprocess.run([checker.wirelens, "schema", name], check=True, capture_output=True, encoding="utf-8")
    return [line.split()[0] for line in run.stdout.splitlines() if "IntoExistingSlots" in line]


def check_messages(checker, wirelens, vectors):
    """The messages of packs, opened by the preference that names them, against wirelens read."""
    rows = json.loads(subprocess.run([wirelens, "catalogue", "--json"], check=True, capture_output=True).stdout)
    ids = {row["class"]: int(row["id"], 16) for row in rows if row["family"] == "command"}
    messages = {row["class"]: row for row in rows if row["family"] == "message"}
    schemas, types, sent, capture = {}, [], [], Capture()
    numbers = {name: i + 1 for i, name in enumerate(messages)}
    for vector in map(json.loads, open(vectors, encoding="utf-8")):
        row = messages.get(vector["class"])
        if not row or vector["form"] not in row["forms"].split()[0]:
            continue
        envelope, number = row["envelope"], numbers[vector["class"]]
        if envelope not in schemas:
            schemas[envelope] = subprocess.run([wirelens, "schema", envelope], check=True, capture_output=True,
                                               encoding="utf-8").stdout
        payload = envelope_payload(schemas[envelope], number, bytes.fromhex(vector["bytes"]))
        types.append(f"{envelope} {number} {vector['class']}")
        sent.append((vector, stream_frame(ids[envelope], payload)))
    capture.add_connection(40003, PORT, list(cut_anywhere(b"".join(packet(frame) for _, frame in sent), (1460,))))
    capture.write(checker.path)
    lines = "".join(f"{vector['class']} {vector['form']} {vector['bytes'] or '-'}\n" for vector, _ in sent)
    read = subprocess.run([wirelens, "read"], input=lines, check=True, capture_output=True, encoding="utf-8").stdout
    shown = next(iter(checker.dissected("commonground.pack_types:" + ", ".join(dict.fromkeys(types))).values()), [])
    if len(shown) != len(sent) or len({vector["class"] for vector, _ in sent}) != len(messages):
        checker.fail(len(sent), "messages of", len(messages), "classes sent, and", len(shown), "shown")
    for (vector, _), line, frame in zip(sent, read.splitlines(), shown):
        theirs = json.loads(line)
        what = f"message {vector['class']} {vector['name']}"
        if (theirs["read"] and theirs["consumed"] == theirs["size"]) == bool(frame.experts - {NAME + "passed_over"}):
            checker.fail(what, "marked as", sorted(frame.experts))
        mine = frame.fields.get("m_PackData")
        mine = mine if isinstance(mine, dict) else {}
        for name in dropping(checker, vector["class"]):
            mine.pop(name, None)
            theirs["fields"].pop(name)
        if not same(theirs["fields"], mine, not frame.experts):
            checker.fail(what, "is", str(theirs["fields"])[:300], "and the dissector has", str(mine)[:300])
    return len(sent)


def check_damage(checker):
    """Marks of damaged frames: what was needed, what there was, and where."""
    echo = bytes.fromhex("00020007") + bytes(16) + b"\0" + bytes.fromhex("0000002a")
    cut = stream_frame(0x120D, echo[:-2])
    short = stream_frame(0x120D, echo)[:-2]
    cases = [
        ([packet(cut)], None, "needed 4, had 2 at m_Data"),
        ([packet(short)], None, "a payload of 25 bytes, had 23"),
        ([packet(stream_frame(0x120D, echo + b"\1\2"))], None, "2 bytes after the last field of CCmdServerEcho"),
        ([packet(stream_frame(0x120D, b"\0\3" + echo[2:]))], None, "version 3, expected 2, at m_HeadVersion"),
        ([packet(stream_frame(0x0FFF, echo))], None, "No class has the id 0x0fff"),
        ([packet(b"\x0d\x12\1")], None, "no whole frame head"),
        ([packet(stream_frame(0x120D, echo) + b"\1")], None, "1 bytes after the frame"),
        ([struct.pack("<I", 0xFFFFFFFF) + cut], None, "a packet of 4294967295 bytes, more than a peer accepts"),
        # The packet of the capture is cut, 54 bytes before the segment's data.
        ([packet(stream_frame(0x120D, echo))], 54 + 33, "needed 4, had 2 at m_Data"),
    ]
    capture = Capture()
    for i, (segments, kept, _) in enumerate(cases):
        capture.add_connection(41000 + i, PORT, segments, kept)
    capture.write(checker.path)
    lines = checker.tshark("-T", "fields", "-e", "tcp.srcport", "-e", "_ws.expert.message").splitlines()
    for i, (_, _, mark) in enumerate(cases):
        if not any(line.startswith(f"{41000 + i}\t") and mark in line for line in lines):
            checker.fail("no mark", repr(mark), "but", [line for line in lines if line.startswith(str(41000 + i))])
    capture = Capture()
    capture.add_connection(40005, PORT, [packet(stream_frame(0x120D, echo)) * 2])
    capture.write(checker.path)
    text = checker.tshark("-T", "fields", "-e", "_ws.col.Protocol", "-e", "_ws.col.Info", "-Y",
                          "commonground.CCmdServerEcho.m_Data == 42 && commonground.head.m_ClientIndex == 7")
    if "CCmdServerEcho 0x120d, CCmdServerEcho 0x120d" not in text or "commonground" not in text:
        checker.fail("the filter by fields and the column show", repr(text))


def main():
    if len(sys.argv) != 3:
        print(__doc__)
        return 2
    if not shutil.which("tshark") or "with Lua" not in " ".join(
            subprocess.run(["tshark", "--version"], capture_output=True, encoding="utf-8").stdout.split()):
        print("no tshark with Lua")
        return 77
    with tempfile.TemporaryDirectory() as folder:
        checker = Checker(sys.argv[1], folder)
        count = check_commands(checker, sys.argv[1], sys.argv[2])
        count += check_messages(checker, sys.argv[1], sys.argv[2])
        check_damage(checker)
    print(f"{count} frames, {len(checker.faults)} faults")
    for fault in checker.faults[:20]:
        print(fault)
    return 1 if checker.faults else 0


if __name__ == "__main__":
    sys.exit(main())
