import copy
import re
import struct
from dataclasses import dataclass, field
from typing import Any, Callable, ClassVar, Iterator, Optional, Sequence


class DecodeError(ValueError):
    """Bytes that do not read. partial is the object with what was read before."""

    def __init__(self, text: str, partial: Any = None):
        super().__init__(text)
        self.partial = partial


class EncodeError(ValueError):
    """A value that its form on the wire has no space for."""


class Reader:
    """Bytes with a position. form is "cmd" or "data", whose limits differ."""

    def __init__(self, data: bytes, form: str = "cmd"):
        self.data = data
        self.at = 0
        self.form = form
        self.path: list[str] = []
        # Of the first value that was missing.
        self.failure = ""

    @property
    def left(self) -> int:
        return len(self.data) - self.at

    def take(self, size: int) -> Optional[bytes]:
        """The next bytes, or None if they are not there."""
        if size < 0 or size > self.left:
            self.fail(f"needed {size} bytes, had {self.left}")
            return None
        self.at += size
        return self.data[self.at - size:self.at]

    def fail(self, what: str) -> None:
        if not self.failure:
            path = "".join(part if part.startswith("[") else "." + part for part in self.path)
            self.failure = f"{what} at offset {self.at}, {path[1:]}"


class Writer:
    """Bytes in the making. width is that of the wide characters of the host that it stands for: 16 or 32."""

    def __init__(self, form: str = "cmd", width: int = 16):
        self.data = bytearray()
        self.form = form
        self.width = width

    def put(self, data: bytes) -> None:
        if len(self.data) + len(data) > LIMITS[self.form]["bytes"]:
            raise EncodeError(f"more than {LIMITS[self.form]['bytes']} bytes")
        self.data += data


# The forms of values. read() gives the value, or the old one, and whether it was read.


class Type:
    smallest = 0

    def default(self) -> Any:
        raise NotImplementedError

    def read(self, r: Reader, old: Any) -> tuple[Any, bool]:
        raise NotImplementedError

    def read_untested(self, r: Reader, old: Any) -> Any:
        return self.read(r, old)[0]

    def write(self, w: Writer, value: Any) -> None:
        raise NotImplementedError

    def show(self, value: Any) -> Any:
        """The value in the JSON of wirelens read."""
        return value


class Number(Type):
    def __init__(self, size: int, signed: bool):
        self.size = self.smallest = size
        self.signed = signed

    def default(self) -> int:
        return 0

    def read(self, r: Reader, old: Any) -> tuple[Any, bool]:
        data = r.take(self.size)
        if data is None:
            return old, False
        return int.from_bytes(data, "big", signed=self.signed), True

    def write(self, w: Writer, value: int) -> None:
        try:
            w.put(value.to_bytes(self.size, "big", signed=self.signed))
        except OverflowError:
            raise EncodeError(f"{value} does not fit in {self.size} bytes") from None


class Bool(Type):
    smallest = 1

    def default(self) -> bool:
        return False

    def read(self, r: Reader, old: Any) -> tuple[Any, bool]:
        data = r.take(1)
        return (old, False) if data is None else (data != b"\0", True)

    def write(self, w: Writer, value: bool) -> None:
        w.put(b"\1" if value else b"\0")


_FLOAT = re.compile(rb"[ \t-\r]*([+-]?(?:inf(?:inity)?|nan|(?:\d+\.?\d*|\.\d+)(?:e[+-]?\d+)?))", re.IGNORECASE)


def single(value: float) -> float:
    """The nearest number of 32 bits."""
    try:
        return struct.unpack("<f", struct.pack("<f", value))[0]
    except OverflowError:
        return float("inf") if value > 0 else float("-inf")


class Float(Type):
    """A length byte and the number as text, with six decimals."""

    smallest = 1

    def default(self) -> float:
        return 0.0

    def read(self, r: Reader, old: Any) -> tuple[Any, bool]:
        length = r.take(1)
        text = None if length is None else r.take(length[0])
        if text is None:
            return old, False
        # Text that is not a number leaves the value as it was.
        number = _FLOAT.match(text)
        return (single(float(number[1])) if number else old), True

    def write(self, w: Writer, value: float) -> None:
        text = b"%f" % single(value)
        w.put(bytes([len(text)]) + text)


class Text(Type):
    """A count of UTF-16 units and the units; it ends at its first zero unit."""

    smallest = 1

    def default(self) -> str:
        return ""

    def read(self, r: Reader, old: Any) -> tuple[Any, bool]:
        first = r.take(1)
        if first is None:
            return old, False
        count = first[0] & 0x3F
        for _ in range(first[0] >> 6):
            more = r.take(1)
            if more is None:
                return old, False
            count = count << 8 | more[0]
        most = LIMITS[r.form].get("text_units", count)
        if count > most:
            r.fail(f"a text of {count} units, more than {most}")
            return "", False
        data = r.take(2 * count)
        if data is None:
            return old, False
        return data.decode("utf-16-le", "surrogatepass").split("\0", 1)[0], True

    def write(self, w: Writer, value: str) -> None:
        if w.width == 32:
            units = b"".join(unit.encode("utf-16-le", "surrogatepass") if ord(unit) < 0x10000 else b"\x40\xd8\x00\xdc"
                             for unit in value)
            if len(value) > LIMITS[w.form].get("text_units", len(value)):
                raise EncodeError(f"a text of {len(value)} characters")
            units = units.ljust(4 * len(value) + 4 if value else 0, b"\0")
        else:
            units = value.encode("utf-16-le", "surrogatepass")
        w.put(count30(len(units) // 2) + units)


def count30(value: int) -> bytes:
    """A number in one to four bytes; the two highest bits say how many follow."""
    more = 0 if value <= 0x3F else 1 if value <= 0x3FFF else 2 if value <= 0x3FFFFF else 3
    return (value | more << (8 * more + 6)).to_bytes(more + 1, "big")


class Raw(Type):
    def __init__(self, size: int):
        self.size = self.smallest = size

    def default(self) -> bytes:
        return bytes(self.size)

    def read(self, r: Reader, old: Any) -> tuple[Any, bool]:
        data = r.take(self.size)
        return (old, False) if data is None else (data, True)

    def write(self, w: Writer, value: bytes) -> None:
        if len(value) != self.size:
            raise EncodeError(f"{len(value)} bytes instead of {self.size}")
        w.put(value)

    def show(self, value: bytes) -> str:
        return value.hex()


class Buffer(Type):
    """A size and that many bytes."""

    smallest = 4

    def __init__(self, limited: bool = True):
        self.limited = limited

    def default(self) -> bytes:
        return b""

    def most(self, form: str) -> int:
        return LIMITS[form].get("buffer_bytes", 0x7FFFFFFF) if self.limited else 0x7FFFFFFF

    def read(self, r: Reader, old: Any) -> tuple[Any, bool]:
        size, good = INT.read(r, 0)
        if not good:
            return old, False
        if size > self.most(r.form):
            r.fail(f"{size} bytes, more than {self.most(r.form)}")
            return old, False
        data = r.take(size)
        if data is None:
            # A block of a believable size is made before its bytes are there.
            return (bytes(size) if 0 <= size <= 0x10000 else old), False
        return data, True

    def write(self, w: Writer, value: bytes) -> None:
        if len(value) > self.most(w.form):
            raise EncodeError(f"{len(value)} bytes, more than {self.most(w.form)}")
        INT.write(w, len(value))
        w.put(value)

    def show(self, value: bytes) -> str:
        return value.hex()


class Payload(Type):
    """The bytes of another packager: an encoded message."""

    smallest = 4

    def __init__(self, most: int, may_be_negative: bool = False):
        self.most = most
        self.may_be_negative = may_be_negative

    def default(self) -> bytes:
        return b""

    def read(self, r: Reader, old: Any) -> tuple[Any, bool]:
        size, good = INT.read(r, 0)
        if not good:
            return old, False
        if size <= 0 and self.may_be_negative:
            return old, True
        if self.may_be_negative and size > self.most:
            r.fail(f"{size} bytes, more than {self.most}")
            return old, False
        data = r.take(size)
        if data is None:
            return old, False
        if len(old) + size > self.most:
            r.fail(f"{size} bytes, more than {self.most}")
            return old, False
        return old + data, True

    def write(self, w: Writer, value: bytes) -> None:
        INT.write(w, len(value))
        w.put(value)

    def show(self, value: bytes) -> str:
        return value.hex()


class Record(Type):
    """Another class of this module, named by a function since it may follow later."""

    def __init__(self, of: "Callable[[], type[Message]]"):
        self.of = of

    @property
    def smallest(self) -> int:  # type: ignore[override]
        return self.of().SMALLEST

    def default(self) -> "Message":
        return self.of()()

    def read(self, r: Reader, old: Any) -> tuple[Any, bool]:
        return old, old.read(r)

    def write(self, w: Writer, value: "Message") -> None:
        value.write(w)

    def show(self, value: "Message") -> dict[str, Any]:
        return value.as_json()


class Array(Type):
    def __init__(self, of: Type, length: int):
        self.of = of
        self.length = length

    @property
    def smallest(self) -> int:  # type: ignore[override]
        return self.of.smallest * self.length

    def default(self) -> list[Any]:
        return [self.of.default() for _ in range(self.length)]

    def read(self, r: Reader, old: Any) -> tuple[Any, bool]:
        for i in range(self.length):
            r.path.append(f"[{i}]")
            old[i], good = self.of.read(r, old[i])
            r.path.pop()
            if not good:
                return old, False
        return old, True

    def read_untested(self, r: Reader, old: Any) -> Any:
        for i in range(self.length):
            old[i] = self.of.read_untested(r, old[i])
        return old

    def write(self, w: Writer, value: Sequence[Any]) -> None:
        if len(value) != self.length:
            raise EncodeError(f"{len(value)} elements instead of {self.length}")
        for element in value:
            self.of.write(w, element)

    def show(self, value: Sequence[Any]) -> list[Any]:
        return [self.of.show(element) for element in value]


class Pair(Type):
    def __init__(self, first: Type, second: Type):
        self.parts = (first, second)

    @property
    def smallest(self) -> int:  # type: ignore[override]
        return sum(part.smallest for part in self.parts)

    def default(self) -> list[Any]:
        return [part.default() for part in self.parts]

    def read(self, r: Reader, old: Any) -> tuple[Any, bool]:
        value = list(old)
        for i, part in enumerate(self.parts):
            value[i], good = part.read(r, value[i])
            if not good:
                return value, False
        return value, True

    def write(self, w: Writer, value: Sequence[Any]) -> None:
        for part, each in zip(self.parts, value):
            part.write(w, each)

    def show(self, value: Sequence[Any]) -> list[Any]:
        return [part.show(each) for part, each in zip(self.parts, value)]


INT = Number(4, True)


def bounded(count: int, left: int, smallest: int) -> int:
    """The elements to read for a count: no more than the bytes can hold and one more, if it is large."""
    if count <= LIMITS["trusted_count"]:
        return max(count, 0)
    return min(count, left // max(smallest, 1) + 1)
