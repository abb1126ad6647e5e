// Frames, packets, envelopes and errors of a generated codec, against the bytes of docs/wire.md: node frames.mjs MODULE.
import assert from "node:assert/strict";
import { pathToFileURL } from "node:url";

const codec = await import(pathToFileURL(process.argv[2]).href);
const { bytesOf, decode, hexOf, make } = codec;

const payload = "00020007" + "00".repeat(17) + "0000002a";
const echo = make(codec.CCmdServerEcho, { m_ClientIndex: 7, m_Data: 42 });
const frame = codec.frameOf(echo);
assert.equal(hexOf(frame.stream()), "0d1264000000" + payload);
assert.deepEqual(codec.Frame.fromStream(frame.stream()).command(), echo);
assert.equal(hexOf(frame.datagram()), "0d124064" + payload);
assert.deepEqual(codec.Frame.fromDatagram(frame.datagram()), frame);
assert.equal(hexOf(frame.udpPacket()).slice(0, 4), "1d00");

const addressed = new codec.Frame(0x1234, bytesOf("01"), new Uint8Array(16), new Uint8Array(16).fill(9));
assert.equal(hexOf(addressed.stream()), "341206000000" + "09".repeat(16) + "01");
assert.deepEqual(codec.Frame.fromStream(addressed.stream()), addressed);
assert.throws(() => addressed.datagram(), codec.EncodeError);

const packet = codec.frameOf(make(codec.CCmdHostnameRequest, { m_ServerType: 3 })).packet();
assert.equal(hexOf(packet), "0b000000" + "0010" + "14000000" + "00020000" + "03");
const reader = new codec.PacketReader();
const found = [];
for (const byte of [0, 0, 0, 0, ...packet, ...packet]) found.push(...reader.feed(Uint8Array.of(byte)));
assert.deepEqual(
  found.map((each) => each.command().m_ServerType),
  [3, 3],
);

const message = new codec.HomePack_LoadData_Request();
const envelope = make(codec.CCmdHomePackRequest, { m_PackType: 7, m_PackData: message.encode() });
const back = decode(codec.CCmdHomePackRequest, envelope.encode());
assert.deepEqual(decode(codec.HomePack_LoadData_Request, back.m_PackData), message);

assert.throws(
  () => decode(codec.CCmdServerEcho, bytesOf(payload.slice(0, -2))),
  (error) =>
    error instanceof codec.DecodeError &&
    error.message === "CCmdServerEcho: needed 4 bytes, had 3 at offset 21, m_Data" &&
    error.partial.m_ClientIndex === 7,
);
assert.throws(() => decode(codec.CCmdServerEcho, bytesOf(payload + "00")), /1 bytes after the last field/);
assert.throws(() => decode(codec.CCmdServerEcho, bytesOf("0003" + payload.slice(4))), /version 3 instead of 2/);
assert.throws(() => make(codec.CCmdHostnameRequest, { m_ServerType: 256 }).encode(), codec.EncodeError);

const running = new codec.CCmdGS_PawnRunning();
running.read(new codec.Reader(bytesOf("7fffffff00000001")));
assert.equal(running.m_Values.length, 3);

const fail = make(codec.CCmdServerRegisterFail, { m_Msg: "full" });
assert.equal(hexOf(fail.encode().slice(21)), "04" + "660075006c006c00");
assert.equal(hexOf(fail.encode({ width: 32 }).slice(21)), "0a" + "660075006c006c00" + "00".repeat(12));

for (const [value, text] of [
  [0.0078125, "0.007812"],
  [0.0234375, "0.023438"],
  [-1e-9, "-0.000000"],
  [1e30, "1000000015047466219876688855040.000000"],
  [4294967296, "4294967296.000000"],
])
  assert.equal(codec.floatText(value), text);
