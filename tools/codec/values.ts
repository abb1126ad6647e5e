// Bytes that do not read. partial is the object with what was read before.
export class DecodeError extends Error {
  partial⟦: unknown⟧;

  constructor(text⟦: string⟧, partial⟦?: unknown⟧) {
    super(text);
    this.name = "DecodeError";
    this.partial = partial;
  }
}

// A value that its form on the wire has no space for.
export class EncodeError extends Error {
  constructor(text⟦: string⟧) {
    super(text);
    this.name = "EncodeError";
  }
}

⟦export type Form = "cmd" | "data";
export type Width = 16 | 32;
// The members of an object, by name.
type Members = Record<string, any>;
type Counts = Map<string, number>;
⟧const NONE = new Uint8Array(0);

export function hexOf(data⟦: Uint8Array⟧)⟦: string⟧ {
  return Array.from(data, (byte) => byte.toString(16).padStart(2, "0")).join("");
}

export function bytesOf(hex⟦: string⟧)⟦: Uint8Array⟧ {
  return Uint8Array.from(hex.match(/../g) ?? [], (byte) => parseInt(byte, 16));
}

// Bytes with a position. The limits of the two forms differ.
export class Reader {
  data⟦: Uint8Array⟧;
  form⟦: Form⟧;
  at = 0;
  path⟦: string[]⟧ = [];
  // Of the first value that was missing.
  failure = "";

  constructor(data⟦: Uint8Array⟧, form⟦: Form⟧ = "cmd") {
    this.data = data;
    this.form = form;
  }

  get left()⟦: number⟧ {
    return this.data.length - this.at;
  }

  // The next bytes, or null if they are not there.
  take(size⟦: number⟧)⟦: Uint8Array | null⟧ {
    if (size < 0 || size > this.left) {
      this.fail(`needed ${size} bytes, had ${this.left}`);
      return null;
    }
    this.at += size;
    return this.data.slice(this.at - size, this.at);
  }

  fail(what⟦: string⟧)⟦: void⟧ {
    if (this.failure) return;
    const path = this.path.map((part) => (part.startsWith("[") ? part : "." + part)).join("");
    this.failure = `${what} at offset ${this.at}, ${path.slice(1)}`;
  }
}

// Bytes in the making. width is that of the wide characters of the host that it stands for.
export class Writer {
  form⟦: Form⟧;
  width⟦: Width⟧;
  size = 0;
  data = new Uint8Array(256);

  constructor(form⟦: Form⟧ = "cmd", width⟦: Width⟧ = 16) {
    this.form = form;
    this.width = width;
  }

  put(bytes⟦: ArrayLike<number>⟧)⟦: void⟧ {
    const end = this.size + bytes.length;
    if (end > LIMITS[this.form].bytes) throw new EncodeError(`more than ${LIMITS[this.form].bytes} bytes`);
    if (end > this.data.length) {
      const grown = new Uint8Array(Math.max(end, 2 * this.data.length));
      grown.set(this.data.subarray(0, this.size));
      this.data = grown;
    }
    this.data.set(bytes, this.size);
    this.size = end;
  }

  bytes()⟦: Uint8Array⟧ {
    return this.data.slice(0, this.size);
  }
}

// What a reading gives: the value, or the old one, and whether it was read.
⟦type Result = [value: any, good: boolean];
⟧
// The form of a value.
export class Type {
  get smallest()⟦: number⟧ {
    return 0;
  }
  initial()⟦: any⟧ {
    throw new Error("no value");
  }
  read(r⟦: Reader⟧, old⟦: any⟧)⟦: Result⟧ {
    return [old, true];
  }
  readUntested(r⟦: Reader⟧, old⟦: any⟧)⟦: any⟧ {
    return this.read(r, old)[0];
  }
  write(w⟦: Writer⟧, value⟦: any⟧)⟦: void⟧ {}
  // The value in the JSON of wirelens read.
  show(value⟦: any⟧)⟦: unknown⟧ {
    return value;
  }
}

export class Num extends Type {
  size⟦: number⟧;
  signed⟦: boolean⟧;

  constructor(size⟦: number⟧, signed⟦: boolean⟧) {
    super();
    this.size = size;
    this.signed = signed;
  }
  get smallest()⟦: number⟧ {
    return this.size;
  }
  initial()⟦: number⟧ {
    return 0;
  }
  read(r⟦: Reader⟧, old⟦: any⟧)⟦: Result⟧ {
    const data = r.take(this.size);
    if (!data) return [old, false];
    const bits = data.reduce((value, byte) => value * 256 + byte, 0);
    return [this.signed && data[0]⟦!⟧ > 127 ? bits - 256 ** this.size : bits, true];
  }
  write(w⟦: Writer⟧, value⟦: number⟧)⟦: void⟧ {
    const all = 256 ** this.size;
    const most = this.signed ? all / 2 : all;
    if (!Number.isInteger(value) || value >= most || value < most - all)
      throw new EncodeError(`${value} does not fit in ${this.size} bytes`);
    const bits = value < 0 ? value + all : value;
    const bytes = [];
    for (let i = this.size - 1; i >= 0; --i) bytes.push(Math.floor(bits / 256 ** i) % 256);
    w.put(bytes);
  }
}

export class Bool extends Type {
  get smallest()⟦: number⟧ {
    return 1;
  }
  initial()⟦: boolean⟧ {
    return false;
  }
  read(r⟦: Reader⟧, old⟦: any⟧)⟦: Result⟧ {
    const data = r.take(1);
    return data ? [data[0] !== 0, true] : [old, false];
  }
  write(w⟦: Writer⟧, value⟦: boolean⟧)⟦: void⟧ {
    w.put([value ? 1 : 0]);
  }
}

// The number as text with six decimals, half rounded to even, as printf writes it.
export function floatText(value⟦: number⟧)⟦: string⟧ {
  const single = Math.fround(value);
  if (Number.isNaN(single)) return "nan";
  const sign = single < 0 || Object.is(single, -0) ? "-" : "";
  const size = Math.abs(single);
  if (size === Infinity) return sign + "inf";
  // A float from here on has no fraction; below, its millionths are exact.
  if (size >= 2 ** 32) return `${sign}${BigInt(size)}.000000`;
  const exact = size * 1e6;
  let millionths = Math.floor(exact);
  const rest = exact - millionths;
  if (rest > 0.5 || (rest === 0.5 && millionths % 2 === 1)) ++millionths;
  const digits = String(millionths).padStart(7, "0");
  return `${sign}${digits.slice(0, -6)}.${digits.slice(-6)}`;
}

const FLOAT_TEXT = /^[ \t-\r]*([+-]?)(?:(inf(?:inity)?)|(nan)|((?:\d+\.?\d*|\.\d+)(?:e[+-]?\d+)?))/i;

// A length byte and the number as text.
export class Float extends Type {
  get smallest()⟦: number⟧ {
    return 1;
  }
  initial()⟦: number⟧ {
    return 0;
  }
  read(r⟦: Reader⟧, old⟦: any⟧)⟦: Result⟧ {
    const length = r.take(1);
    const text = length && r.take(length[0]⟦!⟧);
    if (!text) return [old, false];
    // Text that is not a number leaves the value as it was.
    const found = FLOAT_TEXT.exec(String.fromCharCode(...text));
    if (!found) return [old, true];
    const size = found[2] ? Infinity : found[3] ? NaN : Number(found[4]);
    return [Math.fround(found[1] === "-" ? -size : size), true];
  }
  write(w⟦: Writer⟧, value⟦: number⟧)⟦: void⟧ {
    const text = floatText(value);
    w.put([text.length]);
    w.put(Array.from(text, (digit) => digit.charCodeAt(0)));
  }
}

// A number in one to four bytes; the two highest bits say how many follow.
export function count30(value⟦: number⟧)⟦: number[]⟧ {
  const more = value <= 0x3f ? 0 : value <= 0x3fff ? 1 : value <= 0x3fffff ? 2 : 3;
  const bytes = [];
  for (let i = more; i >= 0; --i) bytes.push(Math.floor(value / 256 ** i) % 256);
  bytes[0]⟦!⟧ |= more << 6;
  return bytes;
}

// A count of UTF-16 units and the units; it ends at its first zero unit.
export class Text extends Type {
  get smallest()⟦: number⟧ {
    return 1;
  }
  initial()⟦: string⟧ {
    return "";
  }
  read(r⟦: Reader⟧, old⟦: any⟧)⟦: Result⟧ {
    const first = r.take(1);
    if (!first) return [old, false];
    let count = first[0]⟦!⟧ & 0x3f;
    for (let i = first[0]⟦!⟧ >> 6; i > 0; --i) {
      const more = r.take(1);
      if (!more) return [old, false];
      count = count * 256 + more[0]⟦!⟧;
    }
    const most = LIMITS[r.form].text_units ?? count;
    if (count > most) {
      r.fail(`a text of ${count} units, more than ${most}`);
      return ["", false];
    }
    const data = r.take(2 * count);
    if (!data) return [old, false];
    let text = "";
    for (let i = 0; i < data.length; i += 2) {
      const unit = data[i]⟦!⟧ | (data[i + 1]⟦!⟧ << 8);
      if (unit === 0) break;
      text += String.fromCharCode(unit);
    }
    return [text, true];
  }
  write(w⟦: Writer⟧, value⟦: string⟧)⟦: void⟧ {
    const units⟦: number[]⟧ = [];
    if (w.width === 32) {
      const characters = Array.from(value);
      if (characters.length > (LIMITS[w.form].text_units ?? characters.length))
        throw new EncodeError(`a text of ${characters.length} characters`);
      for (const each of characters)
        if (each.length > 1) units.push(0xd840, 0xdc00);
        else units.push(each.charCodeAt(0));
      const size = characters.length === 0 ? 0 : 2 * characters.length + 2;
      while (units.length < size) units.push(0);
    } else {
      for (let i = 0; i < value.length; ++i) units.push(value.charCodeAt(i));
    }
    w.put(count30(units.length));
    w.put(units.flatMap((unit) => [unit & 0xff, unit >> 8]));
  }
}

export class Raw extends Type {
  size⟦: number⟧;

  constructor(size⟦: number⟧) {
    super();
    this.size = size;
  }
  get smallest()⟦: number⟧ {
    return this.size;
  }
  initial()⟦: Uint8Array⟧ {
    return new Uint8Array(this.size);
  }
  read(r⟦: Reader⟧, old⟦: any⟧)⟦: Result⟧ {
    const data = r.take(this.size);
    return data ? [data, true] : [old, false];
  }
  write(w⟦: Writer⟧, value⟦: Uint8Array⟧)⟦: void⟧ {
    if (value.length !== this.size) throw new EncodeError(`${value.length} bytes instead of ${this.size}`);
    w.put(value);
  }
  show(value⟦: Uint8Array⟧)⟦: unknown⟧ {
    return hexOf(value);
  }
}

// A size and that many bytes.
export class Buffer extends Type {
  limited⟦: boolean⟧;

  constructor(limited⟦: boolean⟧ = true) {
    super();
    this.limited = limited;
  }
  get smallest()⟦: number⟧ {
    return 4;
  }
  initial()⟦: Uint8Array⟧ {
    return NONE;
  }
  most(form⟦: Form⟧)⟦: number⟧ {
    return (this.limited && LIMITS[form].buffer_bytes) || 0x7fffffff;
  }
  read(r⟦: Reader⟧, old⟦: any⟧)⟦: Result⟧ {
    const [size, good] = INT.read(r, 0);
    if (!good) return [old, false];
    if (size > this.most(r.form)) {
      r.fail(`${size} bytes, more than ${this.most(r.form)}`);
      return [old, false];
    }
    const data = r.take(size);
    // A block of a believable size is made before its bytes are there.
    if (!data) return [size >= 0 && size <= 0x10000 ? new Uint8Array(size) : old, false];
    return [data, true];
  }
  write(w⟦: Writer⟧, value⟦: Uint8Array⟧)⟦: void⟧ {
    if (value.length > this.most(w.form)) throw new EncodeError(`${value.length} bytes, more than ${this.most(w.form)}`);
    INT.write(w, value.length);
    w.put(value);
  }
  show(value⟦: Uint8Array⟧)⟦: unknown⟧ {
    return hexOf(value);
  }
}

// The bytes of another packager: an encoded message.
export class Payload extends Type {
  most⟦: number⟧;
  mayBeNegative⟦: boolean⟧;

  constructor(most⟦: number⟧, { mayBeNegative = false }⟦: { mayBeNegative?: boolean }⟧ = {}) {
    super();
    this.most = most;
    this.mayBeNegative = mayBeNegative;
  }
  get smallest()⟦: number⟧ {
    return 4;
  }
  initial()⟦: Uint8Array⟧ {
    return NONE;
  }
  read(r⟦: Reader⟧, old⟦: any⟧)⟦: Result⟧ {
    const [size, good] = INT.read(r, 0);
    if (!good) return [old, false];
    if (size <= 0 && this.mayBeNegative) return [old, true];
    if (this.mayBeNegative && size > this.most) {
      r.fail(`${size} bytes, more than ${this.most}`);
      return [old, false];
    }
    const data = r.take(size);
    if (!data) return [old, false];
    if (old.length + size > this.most) {
      r.fail(`${size} bytes, more than ${this.most}`);
      return [old, false];
    }
    return [Uint8Array.from([...old, ...data]), true];
  }
  write(w⟦: Writer⟧, value⟦: Uint8Array⟧)⟦: void⟧ {
    INT.write(w, value.length);
    w.put(value);
  }
  show(value⟦: Uint8Array⟧)⟦: unknown⟧ {
    return hexOf(value);
  }
}

// Another class of this module, named by a function since it may follow later.
export class Rec extends Type {
  of⟦: () => MessageClass⟧;

  constructor(of⟦: () => MessageClass⟧) {
    super();
    this.of = of;
  }
  get smallest()⟦: number⟧ {
    return this.of().SMALLEST;
  }
  initial()⟦: Message⟧ {
    return new (this.of())();
  }
  read(r⟦: Reader⟧, old⟦: any⟧)⟦: Result⟧ {
    return [old, old.read(r)];
  }
  write(w⟦: Writer⟧, value⟦: Message⟧)⟦: void⟧ {
    value.write(w);
  }
  show(value⟦: Message⟧)⟦: unknown⟧ {
    return value.asJson();
  }
}

export class Arr extends Type {
  of⟦: Type⟧;
  length⟦: number⟧;

  constructor(of⟦: Type⟧, length⟦: number⟧) {
    super();
    this.of = of;
    this.length = length;
  }
  get smallest()⟦: number⟧ {
    return this.of.smallest * this.length;
  }
  initial()⟦: any[]⟧ {
    return Array.from({ length: this.length }, () => this.of.initial());
  }
  read(r⟦: Reader⟧, old⟦: any⟧)⟦: Result⟧ {
    for (let i = 0; i < this.length; ++i) {
      r.path.push(`[${i}]`);
      const [value, good] = this.of.read(r, old[i]);
      r.path.pop();
      old[i] = value;
      if (!good) return [old, false];
    }
    return [old, true];
  }
  readUntested(r⟦: Reader⟧, old⟦: any⟧)⟦: any⟧ {
    for (let i = 0; i < this.length; ++i) old[i] = this.of.readUntested(r, old[i]);
    return old;
  }
  write(w⟦: Writer⟧, value⟦: any[]⟧)⟦: void⟧ {
    if (value.length !== this.length) throw new EncodeError(`${value.length} elements instead of ${this.length}`);
    for (const each of value) this.of.write(w, each);
  }
  show(value⟦: any[]⟧)⟦: unknown⟧ {
    return value.map((each) => this.of.show(each));
  }
}

export class Pair extends Type {
  parts⟦: Type[]⟧;

  constructor(...parts⟦: Type[]⟧) {
    super();
    this.parts = parts;
  }
  get smallest()⟦: number⟧ {
    return this.parts.reduce((sum, part) => sum + part.smallest, 0);
  }
  initial()⟦: any[]⟧ {
    return this.parts.map((part) => part.initial());
  }
  read(r⟦: Reader⟧, old⟦: any⟧)⟦: Result⟧ {
    const values = [...old];
    for (const [i, part] of this.parts.entries()) {
      const [value, good] = part.read(r, values[i]);
      values[i] = value;
      if (!good) return [values, false];
    }
    return [values, true];
  }
  write(w⟦: Writer⟧, value⟦: any[]⟧)⟦: void⟧ {
    this.parts.forEach((part, i) => part.write(w, value[i]));
  }
  show(value⟦: any[]⟧)⟦: unknown⟧ {
    return this.parts.map((part, i) => part.show(value[i]));
  }
}
