#!/usr/bin/env python3
"""Writes a large capture: commands of the golden vectors over many connections at once, each ended and made anew.

Usage: big_capture.py WIRELENS VECTORS MEBIBYTES FILE

Each connection gets the commands one after the other in segments of 1,400 bytes, from a client to a server.
"""
import json
import struct
import subprocess
import sys

MEBIBYTE = 1 << 20
CONNECTIONS, SEGMENTS, SEGMENT = 64, 500, 1400
SYN, FIN, PUSH, ACK = 2, 1, 8, 16


def frames_of(wirelens, vectors):
    """The stream frames of all vectors of commands, each as a packet of a connection."""
    rows = json.loads(subprocess.run([wirelens, "catalogue", "--json"], check=True, capture_output=True).stdout)
    ids = {row["class"]: int(row["id"], 16) for row in rows if row["family"] == "command"}
    with open(vectors, encoding="utf-8") as file:
        for vector in map(json.loads, file):
            if vector["class"] in ids:
                payload = bytes.fromhex(vector["bytes"])
                frame = struct.pack("<HI", ids[vector["class"]], len(payload) << 2) + payload
                yield struct.pack("<I", len(frame)) + frame


class Connection:
    """Endless segments of one client's port: connections one after the other."""

    def __init__(self, port, stream):
        self.port, self.stream, self.sent, self.at = port, stream, -1, 0

    def segment(self):
        """Sequence number, flags and data of the next one."""
        self.sent += 1
        if self.sent == 0:
            return 0, SYN, b""
        sequence = 1 + self.at
        if self.sent > SEGMENTS and self.at % len(self.stream) == 0:
            self.sent, self.at = -1, 0
            return sequence, FIN | ACK, b""
        begin = self.at % len(self.stream)
        data = self.stream[begin:begin + SEGMENT]
        self.at += len(data)
        return sequence, PUSH | ACK, data


def write(path, size, frames):
    stream = b"".join(frames)
    connections = [Connection(20000 + i, stream) for i in range(CONNECTIONS)]
    addresses = bytes([192, 0, 2, 1, 192, 0, 2, 2])
    with open(path, "wb") as file:
        file.write(struct.pack("<IHHiIII", 0xA1B2C3D4, 2, 4, 0, 0, 0x10000, 101))
        written, count = 24, 0
        while written < size:
            for connection in connections:
                sequence, flags, data = connection.segment()
                length = 40 + len(data)
                file.write(struct.pack("<IIII", 1700000000 + count // 100000, count % 100000 * 10, length, length)
                           + struct.pack(">BBHHHBBH", 0x45, 0, length, 0, 0, 64, 6, 0) + addresses
                           + struct.pack(">HHIIBBHHH", connection.port, 7000, sequence & 0xFFFFFFFF, 1, 0x50, flags,
                                         0xFFFF, 0, 0) + data)
                written += 16 + length
                count += 1


if __name__ == "__main__":
    if len(sys.argv) != 5:
        sys.exit(__doc__)
    write(sys.argv[4], int(sys.argv[3]) * MEBIBYTE, list(frames_of(sys.argv[1], sys.argv[2])))
