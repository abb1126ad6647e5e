class Message:
    """The base of all classes: a record, a message or a command."""

    # The forms that it has: "cmd" as a command or within one, "data" as a stored record.
    FORMS: ClassVar[tuple[str, ...]] = ("cmd",)
    # Bytes of the smallest object.
    SMALLEST: ClassVar[int] = 0
    # The order on the wire.
    ORDER: ClassVar[list[Step]] = []

    def read(self, r: Reader) -> bool:
        """Reads the fields that are there; whether the class takes the bytes as whole."""
        counts: Counts = {}
        good = True
        for step in self.ORDER:
            if step.always:
                step.read(r, self, counts)
            elif good:
                result = step.read(r, self, counts)
                if result is None:
                    return True
                good = result
        return good

    def write(self, w: Writer) -> None:
        for step in self.ORDER:
            step.write(w, self)

    def encode(self, form: str = "", width: int = 16) -> bytes:
        """The bytes on the wire, of a command without its frame."""
        w = Writer(form or self.FORMS[0], width)
        self.write(w)
        return bytes(w.data)

    @classmethod
    def decode(cls, data: bytes, form: str = ""):  # type: ignore[no-untyped-def]
        """An object of the class; DecodeError if the bytes are not one."""
        value = cls()
        r = Reader(data, form or cls.FORMS[0])
        if not value.read(r):
            raise DecodeError(f"{cls.__name__}: {r.failure}", value)
        if r.left and issubclass(cls, Command):
            raise DecodeError(f"{cls.__name__}: {r.left} bytes after the last field", value)
        return value

    def as_json(self) -> dict[str, Any]:
        """The fields in the form of wirelens read."""
        out: dict[str, Any] = {}
        for step in self.ORDER:
            step.show(self, out)
        return out


class Command(Message):
    """The base of all commands."""

    ID: ClassVar[int] = 0

    @property
    def id(self) -> int:
        return self.ID


@dataclass
class Frame:
    """A command's payload with its id and the addresses, 16 bytes each, of the frame."""

    id: int
    payload: bytes = b""
    from_address: bytes = bytes(16)
    target_address: bytes = bytes(16)

    def _head(self) -> tuple[int, bytes]:
        flags = any(self.from_address) | any(self.target_address) << 1
        addresses = (self.from_address if flags & 1 else b"") + (self.target_address if flags & 2 else b"")
        return len(self.payload) << 2 | flags, addresses

    def stream(self) -> bytes:
        """The frame of a stream."""
        word, addresses = self._head()
        return struct.pack("<HI", self.id, word) + addresses + self.payload

    def packet(self) -> bytes:
        """The frame with the length that precedes it over TCP."""
        frame = self.stream()
        return struct.pack("<I", len(frame)) + frame

    def datagram(self) -> bytes:
        """The frame of a datagram. Its receivers do not read addresses as they are sent, so it has none."""
        word, addresses = self._head()
        if addresses:
            raise EncodeError("a datagram frame is sent without addresses")
        return struct.pack("<H", self.id) + count30(word) + self.payload

    def udp_packet(self) -> bytes:
        """The datagram frame with the length that precedes it over UDP."""
        frame = self.datagram()
        if len(frame) > 0x7FFF:
            raise EncodeError(f"a frame of {len(frame)} bytes")
        return struct.pack("<h", len(frame)) + frame

    @classmethod
    def _of(cls, number: int, word: int, rest: bytes) -> "Frame":
        frame = cls(number)
        if word & 1:
            frame.from_address, rest = rest[:16], rest[16:]
        if word & 2:
            frame.target_address, rest = rest[:16], rest[16:]
        frame.payload = rest[:word >> 2]
        if len(rest) < word >> 2 or len(frame.from_address) + len(frame.target_address) < 32:
            raise DecodeError(f"the frame of 0x{number:04x} is cut", frame)
        return frame

    @classmethod
    def from_stream(cls, data: bytes) -> "Frame":
        if len(data) < 6:
            raise DecodeError("the head of a frame is cut")
        number, word = struct.unpack_from("<HI", data)
        return cls._of(number, word, data[6:])

    @classmethod
    def from_datagram(cls, data: bytes) -> "Frame":
        more = data[2] >> 6 if len(data) > 2 else 0
        if len(data) < 3 + more:
            raise DecodeError("the head of a frame is cut")
        word = int.from_bytes(data[2:3 + more], "big") & (1 << (8 * more + 6)) - 1
        return cls._of(int.from_bytes(data[:2], "little"), word, data[3 + more:])

    def command(self) -> Command:
        """The command in the frame; of the classes that share an id, the first that reads."""
        fault: Exception = DecodeError(f"no class has the id 0x{self.id:04x}")
        for each in COMMANDS.get(self.id, []):
            try:
                return each.decode(self.payload)
            except DecodeError as error:
                fault = error
        raise fault


def frame_of(command: Command, width: int = 16) -> Frame:
    """The frame of a command, without addresses."""
    return Frame(command.ID, command.encode(width=width))


class PacketReader:
    """Frames from the bytes of a TCP connection, in any pieces."""

    def __init__(self, most: int = 1 << 28):
        self.pending = bytearray()
        self.most = most

    def feed(self, data: bytes) -> Iterator[Frame]:
        """Adds bytes and gives the frames that are whole. An empty packet means nothing."""
        self.pending += data
        while len(self.pending) >= 4:
            (size,) = struct.unpack_from("<I", self.pending)
            if size > self.most:
                raise DecodeError(f"a packet of {size} bytes")
            if len(self.pending) < 4 + size:
                return
            frame = bytes(self.pending[4:4 + size])
            del self.pending[:4 + size]
            if frame:
                yield Frame.from_stream(frame)
