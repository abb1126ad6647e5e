const INT = new Num(4, true);

// The elements to read for a count: no more than the bytes can hold and one more, if it is large.
function bounded(count⟦: number⟧, left⟦: number⟧, smallest⟦: number⟧)⟦: number⟧ {
  if (count <= LIMITS.trusted_count) return Math.max(count, 0);
  return Math.min(count, Math.floor(left / Math.max(smallest, 1)) + 1);
}

// m_Address[1] is the member m_Address_1.
function memberOf(name⟦: string⟧)⟦: string⟧ {
  return name.replaceAll("[", "_").replaceAll("]", "");
}

// A step of an order. read() gives whether the walk goes on; null ends it with success.
export class Step {
  // Taken whatever failed before it, and never decides.
  get always()⟦: boolean⟧ {
    return false;
  }
  read(r⟦: Reader⟧, of⟦: Members⟧, counts⟦: Counts⟧)⟦: boolean | null⟧ {
    return true;
  }
  write(w⟦: Writer⟧, of⟦: Members⟧)⟦: void⟧ {}
  show(of⟦: Members⟧, out⟦: Members⟧)⟦: void⟧ {}
}

export class Version extends Step {
  value⟦: number⟧;

  constructor(value⟦: number⟧) {
    super();
    this.value = value;
  }
  read(r⟦: Reader⟧)⟦: boolean⟧ {
    r.path.push("(version)");
    const [value, good] = new Num(2, false).read(r, 0);
    if (good && value !== this.value) r.fail(`version ${value} instead of ${this.value}`);
    r.path.pop();
    return good && value === this.value;
  }
  write(w⟦: Writer⟧)⟦: void⟧ {
    new Num(2, false).write(w, this.value);
  }
}

export class Field extends Step {
  name⟦: string⟧;
  member⟦: string⟧;
  type⟦: Type⟧;
  untested⟦: boolean⟧;
  fromZero⟦: boolean⟧;

  constructor(
    name⟦: string⟧,
    type⟦: Type⟧,
    { untested = false, fromZero = false }⟦: { untested?: boolean; fromZero?: boolean }⟧ = {},
  ) {
    super();
    this.name = name;
    this.member = memberOf(name);
    this.type = type;
    this.untested = untested;
    this.fromZero = fromZero;
  }
  read(r⟦: Reader⟧, of⟦: Members⟧)⟦: boolean⟧ {
    r.path.push(this.name);
    const old = this.fromZero ? this.type.initial() : of[this.member];
    const [value, good] = this.untested ? [this.type.readUntested(r, old), true] : this.type.read(r, old);
    of[this.member] = value;
    r.path.pop();
    return good;
  }
  write(w⟦: Writer⟧, of⟦: Members⟧)⟦: void⟧ {
    this.type.write(w, of[this.member]);
  }
  show(of⟦: Members⟧, out⟦: Members⟧)⟦: void⟧ {
    out[this.name] = this.type.show(of[this.member]);
  }
}

// The first step that fails ends these, and the walk goes on.
export class EitherWay extends Step {
  steps⟦: Step[]⟧;

  constructor(...steps⟦: Step[]⟧) {
    super();
    this.steps = steps;
  }
  get goesOn()⟦: boolean | null⟧ {
    return true;
  }
  read(r⟦: Reader⟧, of⟦: Members⟧, counts⟦: Counts⟧)⟦: boolean | null⟧ {
    return this.steps.every((step) => step.read(r, of, counts)) || this.goesOn;
  }
  write(w⟦: Writer⟧, of⟦: Members⟧)⟦: void⟧ {
    for (const step of this.steps) step.write(w, of);
  }
  show(of⟦: Members⟧, out⟦: Members⟧)⟦: void⟧ {
    for (const step of this.steps) step.show(of, out);
  }
}

// The first step that fails ends the walk, with success.
export class EndsWell extends EitherWay {
  get goesOn()⟦: boolean | null⟧ {
    return null;
  }
}

// The count of a list whose elements follow later.
export class Count extends Step {
  of⟦: string⟧;

  constructor(of⟦: string⟧) {
    super();
    this.of = of;
  }
  read(r⟦: Reader⟧, of⟦: Members⟧, counts⟦: Counts⟧)⟦: boolean⟧ {
    const [count, good] = INT.read(r, 0);
    counts.set(this.of, count);
    return good;
  }
  write(w⟦: Writer⟧, of⟦: Members⟧)⟦: void⟧ {
    const items = of[memberOf(this.of)];
    INT.write(w, items instanceof Map ? items.size : items.length);
  }
}

// A key in a Map: raw bytes are their hexadecimal digits there.
function keyOf(key⟦: any⟧)⟦: any⟧ {
  return key instanceof Uint8Array ? hexOf(key) : key;
}

// Keys ascend: texts by their units, ids by their bytes, nodes by units of two bytes, low byte first.
function byKey(type⟦: Type | undefined⟧)⟦: (a: [any, any], b: [any, any]) => number⟧ {
  const order = (key⟦: any⟧) =>
    type instanceof Raw && type.size === 6 ? key.replace(/(..)(..)/g, "$2$1") : key;
  return ([a], [b]) => (order(a) < order(b) ? -1 : order(a) > order(b) ? 1 : 0);
}

⟦interface ItemsOptions {
  reading?: "all" | "count" | "nothing" | "last" | "above_zero";
  into?: "cleared" | "cleared_first" | "appended" | "sized" | "slots";
  counted?: boolean;
  key?: Type | string | null;
}

⟧// A list, or a map by its keys.
// reading: what decides: "all", "count", "nothing", "last" (the count and the last element), "above_zero" (nothing, and
// a count below 1 leaves the list as it was). into: where elements go. counted: the count was sent earlier.
// key: of a map, a type that is sent before the element, or the name of a member of it, or "" for its place.
export class Items extends Step {
  name⟦: string⟧;
  member⟦: string⟧;
  type⟦: Type⟧;
  reading⟦: string⟧;
  into⟦: string⟧;
  counted⟦: boolean⟧;
  key⟦: Type | string | null⟧;

  constructor(
    name⟦: string⟧,
    type⟦: Type⟧,
    { reading = "all", into = "cleared", counted = false, key = null }⟦: ItemsOptions⟧ = {},
  ) {
    super();
    this.name = name;
    this.member = memberOf(name);
    this.type = type;
    this.reading = reading;
    this.into = into;
    this.counted = counted;
    this.key = key;
  }
  get smallest()⟦: number⟧ {
    return this.type.smallest + (this.key instanceof Type ? this.key.smallest : 0);
  }
  read(r⟦: Reader⟧, of⟦: Members⟧, counts⟦: Counts⟧)⟦: boolean⟧ {
    r.path.push(this.name);
    const good = this.readList(r, of, counts);
    r.path.pop();
    return good;
  }
  readList(r⟦: Reader⟧, of⟦: Members⟧, counts⟦: Counts⟧)⟦: boolean⟧ {
    const empty = () => (this.key === null ? [] : new Map());
    if (this.into === "cleared_first") of[this.member] = empty();
    let count = counts.get(this.name) ?? 0;
    if (!this.counted) {
      const [said, good] = INT.read(r, 0);
      if (!good && this.reading !== "nothing" && this.reading !== "above_zero") return false;
      count = said;
    }
    if (this.reading === "above_zero" && count < 1) return true;
    const bound = bounded(count, r.left, this.smallest);
    if (this.into === "cleared") of[this.member] = empty();
    const items = of[this.member];
    if (this.into === "sized") {
      items.length = Math.min(items.length, bound);
      while (items.length < bound) items.push(this.type.initial());
    }
    let good = true;
    for (let i = 0; i < bound; ++i) {
      r.path.push(`[${i}]`);
      good = this.readElement(r, items, i);
      r.path.pop();
      if (!good && this.reading === "all") return false;
    }
    return good || this.reading !== "last";
  }
  readElement(r⟦: Reader⟧, items⟦: any⟧, i⟦: number⟧)⟦: boolean⟧ {
    if (this.into === "sized" || this.into === "slots") {
      const [value, good] = this.type.read(r, i < items.length ? items[i] : this.type.initial());
      if (i < items.length) items[i] = value;
      return good;
    }
    let key⟦: any⟧ = i;
    if (this.key instanceof Type) {
      const [sent, good] = this.key.read(r, this.key.initial());
      if (!good && this.reading === "all") return false;
      key = sent;
    }
    const [value, good] = this.type.read(r, this.type.initial());
    if (!good && this.reading === "all") return false;
    if (this.key === null) items.push(value);
    else items.set(keyOf(typeof this.key === "string" && this.key ? value[memberOf(this.key)] : key), value);
    return good;
  }
  // Keys and values; a map is sent by ascending keys.
  entries(items⟦: any⟧)⟦: [any, any][]⟧ {
    return items instanceof Map ? [...items].sort(byKey(this.keyType())) : [...items.entries()];
  }
  keyType()⟦: Type | undefined⟧ {
    if (this.key instanceof Type) return this.key;
    const order = this.type instanceof Rec ? this.type.of().ORDER : [];
    for (const step of order) if (step instanceof Field && step.name === this.key) return step.type;
    return undefined;
  }
  // The key as its type has it.
  typed(key⟦: any⟧)⟦: any⟧ {
    return this.key instanceof Raw ? bytesOf(key) : key;
  }
  write(w⟦: Writer⟧, of⟦: Members⟧)⟦: void⟧ {
    const entries = this.entries(of[this.member]);
    if (!this.counted) INT.write(w, entries.length);
    for (const [key, value] of entries) {
      if (this.key instanceof Type) this.key.write(w, this.typed(key));
      this.type.write(w, value);
    }
  }
  show(of⟦: Members⟧, out⟦: Members⟧)⟦: void⟧ {
    const hasKey = this.key instanceof Type || this.key === "";
    out[this.name] = this.entries(of[this.member]).map(([key, value]) =>
      hasKey ? [key, this.type.show(value)] : this.type.show(value),
    );
  }
}

// Lists read by one variable: what a failed read leaves out keeps the value of the element before.
export class ThroughOneLocal extends Step {
  lists⟦: Items[]⟧;

  constructor(...lists⟦: Items[]⟧) {
    super();
    this.lists = lists;
  }
  read(r⟦: Reader⟧, of⟦: Members⟧)⟦: boolean⟧ {
    let local = this.lists[0]⟦!⟧.type.initial();
    for (const each of this.lists) {
      const [count] = INT.read(r, 0);
      for (let i = bounded(count, r.left, each.type.smallest); i > 0; --i) {
        local = each.type.readUntested(r, local);
        of[each.member].push(local instanceof Message ? local.copy() : local);
      }
    }
    return true;
  }
  write(w⟦: Writer⟧, of⟦: Members⟧)⟦: void⟧ {
    for (const each of this.lists) each.write(w, of);
  }
  show(of⟦: Members⟧, out⟦: Members⟧)⟦: void⟧ {
    for (const each of this.lists) each.show(of, out);
  }
}

// How many of most are sent.
function sentOf(said⟦: number⟧, most⟦: number⟧)⟦: number⟧ {
  return Math.min(Math.max(said, 0), most);
}

// Bytes of which a member says how many are sent; missing ones are 0, and those beyond most are dropped.
export class SizedBytes extends Step {
  name⟦: string⟧;
  lengthOf⟦: string⟧;
  most⟦: number⟧;

  constructor(name⟦: string⟧, lengthOf⟦: string⟧, most⟦: number⟧) {
    super();
    this.name = name;
    this.lengthOf = lengthOf;
    this.most = most;
  }
  get always()⟦: boolean⟧ {
    return true;
  }
  read(r⟦: Reader⟧, of⟦: Members⟧)⟦: boolean⟧ {
    of[this.name] = r.take(sentOf(of[this.lengthOf], r.left)) ?? NONE;
    of[this.name] = this.sent(of);
    return true;
  }
  sent(of⟦: Members⟧)⟦: Uint8Array⟧ {
    const bytes = new Uint8Array(sentOf(of[this.lengthOf], this.most));
    bytes.set(of[this.name].subarray(0, bytes.length));
    return bytes;
  }
  write(w⟦: Writer⟧, of⟦: Members⟧)⟦: void⟧ {
    w.put(this.sent(of));
  }
  show(of⟦: Members⟧, out⟦: Members⟧)⟦: void⟧ {
    out[this.name] = hexOf(this.sent(of));
  }
}

// Elements of which a member says how many are sent; those beyond most are read and dropped.
export class SizedArray extends Step {
  name⟦: string⟧;
  type⟦: Type⟧;
  lengthOf⟦: string⟧;
  most⟦: number⟧;

  constructor(name⟦: string⟧, type⟦: Type⟧, lengthOf⟦: string⟧, most⟦: number⟧) {
    super();
    this.name = name;
    this.type = type;
    this.lengthOf = lengthOf;
    this.most = most;
  }
  read(r⟦: Reader⟧, of⟦: Members⟧)⟦: boolean⟧ {
    r.path.push(this.name);
    of[this.name] = [];
    const items = this.sent(of);
    of[this.name] = items;
    let good = true;
    for (let i = 0; good && i < of[this.lengthOf]; ++i) {
      r.path.push(`[${i}]`);
      const [value, read] = this.type.read(r, i < this.most ? items[i] : this.type.initial());
      if (i < this.most) items[i] = value;
      r.path.pop();
      good = read;
    }
    r.path.pop();
    return good;
  }
  sent(of⟦: Members⟧)⟦: any[]⟧ {
    const size = sentOf(of[this.lengthOf], this.most);
    return Array.from({ length: size }, (_, i) => of[this.name][i] ?? this.type.initial());
  }
  write(w⟦: Writer⟧, of⟦: Members⟧)⟦: void⟧ {
    for (const each of this.sent(of)) this.type.write(w, each);
  }
  show(of⟦: Members⟧, out⟦: Members⟧)⟦: void⟧ {
    out[this.name] = this.sent(of).map((each) => this.type.show(each));
  }
}

// A column of a table. length and across: those of an array; without a length it is a list.
export class Column {
  name⟦: string⟧;
  type⟦: Type⟧;
  length⟦: number⟧;
  across⟦: number⟧;

  constructor(name⟦: string⟧, type⟦: Type⟧, length = 0, across = 1) {
    this.name = name;
    this.type = type;
    this.length = length;
    this.across = across;
  }
  // The line that has a cell, and the place in it; null beyond the array.
  cell(of⟦: Members⟧, row⟦: number⟧, at⟦: number⟧, grid⟦: boolean⟧)⟦: [any[], number] | null⟧ {
    const lines = of[this.name];
    if (row >= lines.length) return null;
    if (!grid) return [lines, row];
    return at < this.across ? [lines[row], at] : null;
  }
  show(value⟦: any⟧)⟦: unknown⟧ {
    return Array.isArray(value) ? value.map((each) => this.show(each)) : this.type.show(value);
  }
}

// Rows of one cell of each column. No cell decides.
// rows: "counted" (by the count of the first column), "said" (a number before the table, and one across) or "own" (a
// number that readers ignore).
export class Table extends Step {
  rows⟦: string⟧;
  columns⟦: Column[]⟧;
  number⟦: number⟧;
  across⟦: number⟧;
  grid⟦: boolean⟧;

  constructor(
    rows⟦: "counted" | "said" | "own"⟧,
    columns⟦: Column[]⟧,
    { number = 0, across = 0 }⟦: { number?: number; across?: number }⟧ = {},
  ) {
    super();
    this.rows = rows;
    this.columns = columns;
    this.number = number;
    this.across = across;
    this.grid = across > 0 || columns.some((each) => each.across > 1);
  }
  read(r⟦: Reader⟧, of⟦: Members⟧, counts⟦: Counts⟧)⟦: boolean⟧ {
    const first = this.columns[0]⟦!⟧;
    let across = this.across || first.across;
    let cells = counts.get(first.name) ?? 0;
    if (this.rows !== "counted") {
      [cells] = INT.read(r, this.across ? 0 : this.number);
      if (this.rows === "own") cells = this.number;
    }
    if (this.across) {
      [across] = INT.read(r, 0);
      if (cells <= 0 || across <= 0) return true;
      cells *= across;
    }
    if (this.rows !== "own") {
      const full = this.columns.filter((each) => each.across >= this.across);
      cells = bounded(cells, r.left, full.reduce((sum, each) => sum + each.type.smallest, 0));
    }
    for (const column of this.columns)
      if (!column.length) of[column.name] = Array.from({ length: cells }, () => column.type.initial());
    for (let i = 0; i < cells; ++i)
      for (const column of this.columns) {
        // A table narrower than the others has no cell on the wire beyond its own width.
        if (column.across < this.across && i % across >= column.across) continue;
        const kept = column.cell(of, Math.floor(i / across), i % across, this.grid);
        if (kept) kept[0][kept[1]] = column.type.readUntested(r, kept[0][kept[1]]);
        else column.type.readUntested(r, column.type.initial());
      }
    return true;
  }
  write(w⟦: Writer⟧, of⟦: Members⟧)⟦: void⟧ {
    const first = this.columns[0]⟦!⟧;
    const rows = this.rows === "counted" ? of[first.name].length : this.number;
    if (this.rows !== "counted") INT.write(w, rows);
    if (this.across) INT.write(w, this.across);
    const across = this.across || first.across;
    for (let i = 0; i < rows * Math.max(this.across, 1); ++i)
      for (const column of this.columns) {
        const kept = column.cell(of, Math.floor(i / across), i % across, this.grid);
        if (kept) column.type.write(w, kept[0][kept[1]]);
        else if (!column.length) column.type.write(w, column.type.initial());
      }
  }
  show(of⟦: Members⟧, out⟦: Members⟧)⟦: void⟧ {
    for (const column of this.columns) out[column.name] = column.show(of[column.name]);
  }
}
