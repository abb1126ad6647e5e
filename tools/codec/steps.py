# The steps of an order. read() gives whether the walk goes on; None ends it with success.

Counts = dict[str, int]


def attribute(name: str) -> str:
    """m_Address[1] is the attribute m_Address_1."""
    return name.replace("[", "_").replace("]", "")


class Step:
    name = ""
    # Taken whatever failed before it, and never decides.
    always = False

    def read(self, r: Reader, of: Any, counts: Counts) -> Optional[bool]:
        raise NotImplementedError

    def write(self, w: Writer, of: Any) -> None:
        raise NotImplementedError

    def show(self, of: Any, out: dict[str, Any]) -> None:
        pass


class Version(Step):
    def __init__(self, value: int):
        self.value = value

    def read(self, r: Reader, of: Any, counts: Counts) -> Optional[bool]:
        r.path.append("(version)")
        value, good = Number(2, False).read(r, 0)
        if good and value != self.value:
            r.fail(f"version {value} instead of {self.value}")
        r.path.pop()
        return good and value == self.value

    def write(self, w: Writer, of: Any) -> None:
        Number(2, False).write(w, self.value)


class Field(Step):
    def __init__(self, name: str, of: Type, untested: bool = False, from_zero: bool = False):
        self.name = name
        self.attribute = attribute(name)
        self.type = of
        self.untested = untested
        self.from_zero = from_zero

    def read(self, r: Reader, of: Any, counts: Counts) -> Optional[bool]:
        r.path.append(self.name)
        old = self.type.default() if self.from_zero else getattr(of, self.attribute)
        if self.untested:
            value, good = self.type.read_untested(r, old), True
        else:
            value, good = self.type.read(r, old)
        setattr(of, self.attribute, value)
        r.path.pop()
        return good

    def write(self, w: Writer, of: Any) -> None:
        self.type.write(w, getattr(of, self.attribute))

    def show(self, of: Any, out: dict[str, Any]) -> None:
        out[self.name] = self.type.show(getattr(of, self.attribute))


class EitherWay(Step):
    """The first step that fails ends these, and the walk goes on."""

    goes_on: Optional[bool] = True

    def __init__(self, *steps: Step):
        self.steps = steps

    def read(self, r: Reader, of: Any, counts: Counts) -> Optional[bool]:
        for step in self.steps:
            if not step.read(r, of, counts):
                return self.goes_on
        return True

    def write(self, w: Writer, of: Any) -> None:
        for step in self.steps:
            step.write(w, of)

    def show(self, of: Any, out: dict[str, Any]) -> None:
        for step in self.steps:
            step.show(of, out)


class EndsWell(EitherWay):
    """The first step that fails ends the walk, with success."""

    goes_on = None


class Count(Step):
    """The count of a list whose elements follow later."""

    def __init__(self, of: str):
        self.of = of

    def read(self, r: Reader, of: Any, counts: Counts) -> Optional[bool]:
        counts[self.of], good = INT.read(r, 0)
        return good

    def write(self, w: Writer, of: Any) -> None:
        INT.write(w, len(getattr(of, attribute(self.of))))


class Items(Step):
    """A list, or a map by its keys.

    reading: what decides: "all", "count", "nothing", "last" (the count and the last element), "above_zero" (nothing,
    and a count below 1 leaves the list as it was). into: where elements go. counted: the count was sent earlier.
    key: of a map, a type that is sent before the element, or the name of a member of it, or "" for its place.
    """

    def __init__(self, name: str, of: Type, reading: str = "all", into: str = "cleared", counted: bool = False,
                 key: "Type | str | None" = None):
        self.name = name
        self.attribute = attribute(name)
        self.type = of
        self.reading = reading
        self.into = into
        self.counted = counted
        self.key = key

    @property
    def smallest(self) -> int:
        return self.type.smallest + (self.key.smallest if isinstance(self.key, Type) else 0)

    def read(self, r: Reader, of: Any, counts: Counts) -> Optional[bool]:
        r.path.append(self.name)
        good = self.read_list(r, of, counts)
        r.path.pop()
        return good

    def read_list(self, r: Reader, of: Any, counts: Counts) -> bool:
        items = getattr(of, self.attribute)
        if self.into == "cleared_first":
            items.clear()
        if self.counted:
            count = counts.get(self.name, 0)
        else:
            count, good = INT.read(r, 0)
            if not good and self.reading not in ("nothing", "above_zero"):
                return False
        if self.reading == "above_zero" and count < 1:
            return True
        bound = bounded(count, r.left, self.smallest)
        if self.into == "sized":
            del items[bound:]
            items.extend(self.type.default() for _ in range(bound - len(items)))
        elif self.into == "cleared":
            items.clear()
        good = True
        for i in range(bound):
            r.path.append(f"[{i}]")
            good = self.read_element(r, items, i)
            r.path.pop()
            if not good and self.reading == "all":
                return False
        return good or self.reading != "last"

    def read_element(self, r: Reader, items: Any, i: int) -> bool:
        if self.into in ("sized", "slots"):
            value, good = self.type.read(r, items[i] if i < len(items) else self.type.default())
            if i < len(items):
                items[i] = value
            return good
        key: Any = i
        if isinstance(self.key, Type):
            key, good = self.key.read(r, self.key.default())
            if not good and self.reading == "all":
                return False
        value, good = self.type.read(r, self.type.default())
        if not good and self.reading == "all":
            return False
        if self.key is None:
            items.append(value)
        else:
            items[getattr(value, attribute(self.key)) if isinstance(self.key, str) and self.key else key] = value
        return good

    def write(self, w: Writer, of: Any) -> None:
        items = getattr(of, self.attribute)
        if not self.counted:
            INT.write(w, len(items))
        for key, value in self.entries(items):
            if isinstance(self.key, Type):
                self.key.write(w, key)
            self.type.write(w, value)

    def entries(self, items: Any) -> list[tuple[Any, Any]]:
        """Keys and values; a map is sent by ascending keys."""
        return [(i, each) for i, each in enumerate(items)] if self.key is None else sorted(items.items(), key=by_units)

    def show(self, of: Any, out: dict[str, Any]) -> None:
        entries = self.entries(getattr(of, self.attribute))
        if self.key is None or (isinstance(self.key, str) and self.key):
            out[self.name] = [self.type.show(value) for _, value in entries]
        else:
            show = self.key.show if isinstance(self.key, Type) else int
            out[self.name] = [[show(key), self.type.show(value)] for key, value in entries]


def by_units(entry: tuple[Any, Any]) -> Any:
    """Keys ascend: texts by their units, ids by their bytes, nodes by units of two bytes, low byte first."""
    key = entry[0]
    if isinstance(key, str):
        return key.encode("utf-16-be", "surrogatepass")
    return struct.unpack("<3H", key) if isinstance(key, bytes) and len(key) == 6 else key


class ThroughOneLocal(Step):
    """Lists read by one variable: what a failed read leaves out keeps the value of the element before."""

    def __init__(self, *lists: Items):
        self.lists = lists

    def read(self, r: Reader, of: Any, counts: Counts) -> Optional[bool]:
        local = self.lists[0].type.default()
        for each in self.lists:
            count, _ = INT.read(r, 0)
            for _ in range(bounded(count, r.left, each.type.smallest)):
                local, _ = each.type.read(r, local)
                getattr(of, each.attribute).append(copy.deepcopy(local))
        return True

    def write(self, w: Writer, of: Any) -> None:
        for each in self.lists:
            each.write(w, of)

    def show(self, of: Any, out: dict[str, Any]) -> None:
        for each in self.lists:
            each.show(of, out)


class SizedBytes(Step):
    """Bytes of which a member says how many are sent; missing ones are 0, and those beyond most are dropped."""

    always = True

    def __init__(self, name: str, length_of: str, most: int):
        self.name = name
        self.length_of = length_of
        self.most = most

    def read(self, r: Reader, of: Any, counts: Counts) -> Optional[bool]:
        size = getattr(of, self.length_of)
        data = r.take(min(max(size, 0), r.left)) or b""
        setattr(of, self.name, data[:self.most])
        setattr(of, self.name, self.sent(of))
        return True

    def sent(self, of: Any) -> bytes:
        size = min(max(getattr(of, self.length_of), 0), self.most)
        return getattr(of, self.name)[:size].ljust(size, b"\0")

    def write(self, w: Writer, of: Any) -> None:
        w.put(self.sent(of))

    def show(self, of: Any, out: dict[str, Any]) -> None:
        out[self.name] = self.sent(of).hex()


class SizedArray(Step):
    """Elements of which a member says how many are sent; those beyond most are read and dropped."""

    def __init__(self, name: str, of: Type, length_of: str, most: int):
        self.name = name
        self.type = of
        self.length_of = length_of
        self.most = most

    def read(self, r: Reader, of: Any, counts: Counts) -> Optional[bool]:
        r.path.append(self.name)
        setattr(of, self.name, [])
        items = self.sent(of)
        setattr(of, self.name, items)
        good = True
        i = 0
        while good and i < getattr(of, self.length_of):
            r.path.append(f"[{i}]")
            value, good = self.type.read(r, items[i] if i < self.most else self.type.default())
            if i < self.most:
                items[i] = value
            r.path.pop()
            i += 1
        r.path.pop()
        return good

    def sent(self, of: Any) -> list[Any]:
        size = min(max(getattr(of, self.length_of), 0), self.most)
        items = list(getattr(of, self.name)[:size])
        return items + [self.type.default() for _ in range(size - len(items))]

    def write(self, w: Writer, of: Any) -> None:
        for item in self.sent(of):
            self.type.write(w, item)

    def show(self, of: Any, out: dict[str, Any]) -> None:
        out[self.name] = [self.type.show(item) for item in self.sent(of)]


class Column:
    """A column of a table. length and across: those of an array; without a length it is a list."""

    def __init__(self, name: str, of: Type, length: int = 0, across: int = 1):
        self.name = name
        self.type = of
        self.length = length
        self.across = across

    def cell(self, of: Any, row: int, at: int, grid: bool) -> Optional[tuple[list[Any], int]]:
        """The line that has a cell, and the place in it; None beyond the array."""
        lines = getattr(of, self.name)
        if row >= len(lines):
            return None
        if not grid:
            return lines, row
        return (lines[row], at) if at < self.across else None

    def show(self, value: Any) -> Any:
        return [self.show(each) for each in value] if isinstance(value, list) else self.type.show(value)


class Table(Step):
    """Rows of one cell of each column. No cell decides.

    rows: "counted" (by the count of the first column), "said" (a number before the table, and one across) or "own"
    (a number that readers ignore).
    """

    def __init__(self, rows: str, *columns: Column, number: int = 0, across: int = 0):
        self.rows = rows
        self.columns = columns
        self.number = number
        self.across = across
        self.grid = any(column.across > 1 for column in columns) or across > 0

    def read(self, r: Reader, of: Any, counts: Counts) -> Optional[bool]:
        across = self.across or self.columns[0].across
        if self.rows == "counted":
            cells = counts.get(self.columns[0].name, 0)
        else:
            cells, _ = INT.read(r, 0 if self.across else self.number)
            if self.rows == "own":
                cells = self.number
        if self.across:
            across, _ = INT.read(r, 0)
            if cells <= 0 or across <= 0:
                return True
            cells *= across
        if self.rows != "own":
            smallest = sum(each.type.smallest for each in self.columns if each.across >= self.across)
            cells = bounded(cells, r.left, smallest)
        for column in self.columns:
            if not column.length:
                setattr(of, column.name, [column.type.default() for _ in range(cells)])
        for i in range(cells):
            for column in self.columns:
                # A table narrower than the others has no cell on the wire beyond its own width.
                if column.across < self.across and i % across >= column.across:
                    continue
                kept = column.cell(of, i // across, i % across, self.grid)
                if kept:
                    kept[0][kept[1]] = column.type.read_untested(r, kept[0][kept[1]])
                else:
                    column.type.read_untested(r, column.type.default())
        return True

    def write(self, w: Writer, of: Any) -> None:
        rows = self.number
        if self.rows == "counted":
            rows = len(getattr(of, self.columns[0].name))
        else:
            INT.write(w, rows)
            if self.across:
                INT.write(w, self.across)
        across = self.across or self.columns[0].across
        for i in range(rows * max(self.across, 1)):
            for column in self.columns:
                kept = column.cell(of, i // across, i % across, self.grid)
                if kept:
                    column.type.write(w, kept[0][kept[1]])
                elif not column.length:
                    column.type.write(w, column.type.default())

    def show(self, of: Any, out: dict[str, Any]) -> None:
        for column in self.columns:
            out[column.name] = column.show(getattr(of, column.name))
