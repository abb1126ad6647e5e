"""Captures for tests: pcap files of Ethernet frames with TCP segments and UDP datagrams over IPv4."""
import struct

CLIENT, SERVER = bytes([192, 0, 2, 1]), bytes([192, 0, 2, 2])


def checksum(data):
    total = sum(struct.unpack(f">{len(data) // 2}H", data))
    while total > 0xFFFF:
        total = (total & 0xFFFF) + (total >> 16)
    return ~total & 0xFFFF


class Capture:
    """Packets from a client to a server, a microsecond apart."""

    def __init__(self):
        self.packets = []

    def _add(self, protocol, payload, kept):
        head = struct.pack(">BBHHHBBH4s4s", 0x45, 0, 20 + len(payload), 0, 0, 64, protocol, 0, CLIENT, SERVER)
        head = head[:10] + struct.pack(">H", checksum(head)) + head[12:]
        packet = b"\2" * 6 + b"\4" * 6 + b"\x08\0" + head + payload
        self.packets.append((packet[:kept], len(packet)))

    def add_datagram(self, data, to_port, from_port=40000):
        self._add(17, struct.pack(">HHHH", from_port, to_port, 8 + len(data), 0) + data, None)

    def _add_segment(self, ports, sequence, flags, data, kept=None):
        self._add(6, struct.pack(">HHIIBBHHH", *ports, sequence, 1, 0x50, flags, 0xFFFF, 0, 0) + data, kept)

    def add_connection(self, from_port, to_port, segments, kept=None):
        """A connection whose client sends the segments. kept: how many bytes of the last packet are captured."""
        ports, sequence = (from_port, to_port), 1001
        self._add_segment(ports, 1000, 0x02, b"")
        for i, data in enumerate(segments):
            self._add_segment(ports, sequence, 0x18, data, kept if i + 1 == len(segments) else None)
            sequence += len(data)

    def write(self, path):
        with open(path, "wb") as file:
            file.write(struct.pack("<IHHiIII", 0xA1B2C3D4, 2, 4, 0, 0, 0x10000, 1))
            for i, (kept, size) in enumerate(self.packets):
                file.write(struct.pack("<IIII", 1700000000 + i // 1000000, i % 1000000, len(kept), size) + kept)
