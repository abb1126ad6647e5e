#!/usr/bin/env python3
"""Frames, packets, envelopes and errors of a generated codec, against the bytes of docs/wire.md: frames.py MODULE."""
import importlib.util
import sys
import unittest

spec = importlib.util.spec_from_file_location("codec", sys.argv[1])
codec = importlib.util.module_from_spec(spec)
sys.modules["codec"] = codec
spec.loader.exec_module(codec)

HEAD = bytes.fromhex("00020007") + bytes(16) + b"\0"
ECHO = bytes.fromhex("0d1264000000") + HEAD + bytes.fromhex("0000002a")


class Frames(unittest.TestCase):
    def test_stream_frame(self):
        frame = codec.frame_of(codec.CCmdServerEcho(m_ClientIndex=7, m_Data=42))
        self.assertEqual(frame.stream(), ECHO)
        self.assertEqual(codec.Frame.from_stream(ECHO).command(), codec.CCmdServerEcho(m_ClientIndex=7, m_Data=42))

    def test_addresses(self):
        frame = codec.Frame(0x1234, b"\1", target_address=bytes([9] * 16))
        self.assertEqual(frame.stream(), bytes.fromhex("341206000000") + bytes([9] * 16) + b"\1")
        self.assertEqual(codec.Frame.from_stream(frame.stream()), frame)
        with self.assertRaises(codec.EncodeError):
            frame.datagram()

    def test_datagram(self):
        frame = codec.frame_of(codec.CCmdServerEcho(m_ClientIndex=7, m_Data=42))
        self.assertEqual(frame.datagram(), bytes.fromhex("0d124064") + ECHO[6:])
        self.assertEqual(codec.Frame.from_datagram(frame.datagram()), frame)
        self.assertEqual(frame.udp_packet()[:2], bytes([len(frame.datagram()), 0]))

    def test_packets_in_pieces(self):
        packets = codec.frame_of(codec.CCmdHostnameRequest(m_ServerType=3)).packet()
        self.assertEqual(packets.hex(), "0b000000" "0010" "14000000" "00020000" "03")
        reader = codec.PacketReader()
        found = []
        for byte in bytes(4) + packets + packets:
            found += reader.feed(bytes([byte]))
        self.assertEqual([each.command().m_ServerType for each in found], [3, 3])

    def test_envelope(self):
        message = codec.HomePack_LoadData_Request()
        envelope = codec.CCmdHomePackRequest(m_PackType=7, m_PackData=message.encode())
        back = codec.CCmdHomePackRequest.decode(envelope.encode())
        self.assertEqual(codec.HomePack_LoadData_Request.decode(back.m_PackData), message)

    def test_errors_name_the_place(self):
        with self.assertRaisesRegex(codec.DecodeError, "CCmdServerEcho: needed 4 bytes, had 3 at offset 21, m_Data") as cut:
            codec.CCmdServerEcho.decode(ECHO[6:-1])
        self.assertEqual(cut.exception.partial.m_ClientIndex, 7)
        with self.assertRaisesRegex(codec.DecodeError, r"m_Items\[1\]\.m_"):
            codec.FGameTrade.decode(bytes.fromhex("00000002") + codec.FGameItem().encode())
        with self.assertRaisesRegex(codec.DecodeError, "1 bytes after the last field"):
            codec.CCmdServerEcho.decode(ECHO[6:] + b"\0")
        with self.assertRaisesRegex(codec.DecodeError, "version 3 instead of 2"):
            codec.CCmdServerEcho.decode(b"\0\3" + ECHO[8:])

    def test_values_out_of_range(self):
        with self.assertRaises(codec.EncodeError):
            codec.CCmdHostnameRequest(m_ServerType=256).encode()
        with self.assertRaises(codec.EncodeError):
            codec.CCmdServerEcho(m_ClientAddress=b"short").encode()

    def test_large_counts_are_bounded(self):
        value = codec.CCmdGS_PawnRunning()
        value.read(codec.Reader(bytes.fromhex("7fffffff00000001")))
        self.assertEqual(len(value.m_Values), 3)

    def test_texts_of_both_widths(self):
        busy = codec.CCmdServerRegisterFail(m_Msg="full")
        self.assertEqual(busy.encode()[21:].hex(), "04" "660075006c006c00")
        self.assertEqual(busy.encode(width=32)[21:].hex(), "0a" "660075006c006c00" + "00" * 12)
        self.assertEqual(codec.CCmdServerRegisterFail(m_Msg="\U0001F600").encode(width=32)[21:].hex(),
                         "04" "40d800dc" + "00" * 4)

    def test_floats_are_rounded_half_to_even(self):
        w = codec.Writer()
        for value in (0.0078125, 0.0234375, -1e-9, 1e30):
            codec.FLOAT.write(w, value)
        self.assertEqual(bytes(w.data), b"\x080.007812" b"\x080.023438" b"\x09-0.000000"
                                        b"\x261000000015047466219876688855040.000000")


if __name__ == "__main__":
    unittest.main(argv=sys.argv[:1])
