⟦export interface MessageClass<T extends Message = Message> {
  new (): T;
  readonly name: string;
  readonly FORMS: readonly Form[];
  readonly SMALLEST: number;
  readonly ORDER: readonly Step[];
}

⟧// The base of all classes: a record, a message or a command.
export class Message {
  // The forms that it has: "cmd" as a command or within one, "data" as a stored record.
  static FORMS⟦: readonly Form[]⟧ = ["cmd"];
  // Bytes of the smallest object.
  static SMALLEST = 0;
  // The order on the wire.
  static ORDER⟦: readonly Step[]⟧ = [];

  // The class with its order.
  get type()⟦: MessageClass⟧ {
    return this.constructor⟦ as unknown as MessageClass⟧;
  }

  // Reads the fields that are there; whether the class takes the bytes as whole.
  read(r⟦: Reader⟧)⟦: boolean⟧ {
    const counts⟦: Counts⟧ = new Map();
    let good = true;
    for (const step of this.type.ORDER) {
      if (step.always) {
        step.read(r, this, counts);
      } else if (good) {
        const result = step.read(r, this, counts);
        if (result === null) return true;
        good = result;
      }
    }
    return good;
  }

  write(w⟦: Writer⟧)⟦: void⟧ {
    for (const step of this.type.ORDER) step.write(w, this);
  }

  // The bytes on the wire, of a command without its frame.
  encode({ form = this.type.FORMS[0]⟦!⟧, width = 16 }⟦: { form?: Form; width?: Width }⟧ = {})⟦: Uint8Array⟧ {
    const w = new Writer(form, width);
    this.write(w);
    return w.bytes();
  }

  copy()⟦: this⟧ {
    const copy = new this.type()⟦ as this⟧;
    for (const [name, value] of Object.entries(this)) (copy⟦ as Members⟧)[name] = copyOf(value);
    return copy;
  }

  // The fields in the form of wirelens read.
  asJson()⟦: Record<string, unknown>⟧ {
    const out⟦: Members⟧ = {};
    for (const step of this.type.ORDER) step.show(this, out);
    return out;
  }
}

function copyOf(value⟦: any⟧)⟦: any⟧ {
  if (value instanceof Message) return value.copy();
  if (value instanceof Uint8Array) return value.slice();
  if (Array.isArray(value)) return value.map(copyOf);
  if (value instanceof Map) return new Map([...value].map(([key, each]) => [key, copyOf(each)]));
  return value;
}

// An object of a class with some members set.
export function make⟦<T extends Message>⟧(type⟦: MessageClass<T>⟧, members⟦: Partial<T>⟧)⟦: T⟧ {
  return Object.assign(new type(), members);
}

// An object of a class; DecodeError if the bytes are not one.
export function decode⟦<T extends Message>⟧(
  type⟦: MessageClass<T>⟧,
  data⟦: Uint8Array⟧,
  form⟦: Form⟧ = type.FORMS[0]⟦!⟧,
)⟦: T⟧ {
  const value = new type();
  const r = new Reader(data, form);
  if (!value.read(r)) throw new DecodeError(`${type.name}: ${r.failure}`, value);
  if (r.left > 0 && value instanceof Command)
    throw new DecodeError(`${type.name}: ${r.left} bytes after the last field`, value);
  return value;
}

// The base of all commands.
export class Command extends Message {
  static ID = 0;
}

⟦export interface CommandClass<T extends Command = Command> extends MessageClass<T> {
  readonly ID: number;
}

⟧function little(value⟦: number⟧, size⟦: number⟧)⟦: number[]⟧ {
  return Array.from({ length: size }, (_, i) => Math.floor(value / 256 ** i) % 256);
}

function ofLittle(data⟦: Uint8Array⟧, at⟦: number⟧, size⟦: number⟧)⟦: number⟧ {
  return data.slice(at, at + size).reduceRight((value, byte) => value * 256 + byte, 0);
}

// A command's payload with its id and the addresses, 16 bytes each, of the frame.
export class Frame {
  id⟦: number⟧;
  payload⟦: Uint8Array⟧;
  fromAddress⟦: Uint8Array⟧;
  targetAddress⟦: Uint8Array⟧;

  constructor(
    id⟦: number⟧,
    payload⟦: Uint8Array⟧ = NONE,
    fromAddress⟦: Uint8Array⟧ = new Uint8Array(16),
    targetAddress⟦: Uint8Array⟧ = new Uint8Array(16),
  ) {
    this.id = id;
    this.payload = payload;
    this.fromAddress = fromAddress;
    this.targetAddress = targetAddress;
  }

  // The frame of a stream.
  stream()⟦: Uint8Array⟧ {
    const hasFrom = this.fromAddress.some((byte) => byte !== 0);
    const hasTarget = this.targetAddress.some((byte) => byte !== 0);
    const word = this.payload.length * 4 + (hasFrom ? 1 : 0) + (hasTarget ? 2 : 0);
    return Uint8Array.from([
      ...little(this.id, 2),
      ...little(word, 4),
      ...(hasFrom ? this.fromAddress : NONE),
      ...(hasTarget ? this.targetAddress : NONE),
      ...this.payload,
    ]);
  }

  // The frame with the length that precedes it over TCP.
  packet()⟦: Uint8Array⟧ {
    const frame = this.stream();
    return Uint8Array.from([...little(frame.length, 4), ...frame]);
  }

  // The frame of a datagram. Its receivers do not read addresses as they are sent, so it has none.
  datagram()⟦: Uint8Array⟧ {
    if ([...this.fromAddress, ...this.targetAddress].some((byte) => byte !== 0))
      throw new EncodeError("a datagram frame is sent without addresses");
    return Uint8Array.from([...little(this.id, 2), ...count30(this.payload.length * 4), ...this.payload]);
  }

  // The datagram frame with the length that precedes it over UDP.
  udpPacket()⟦: Uint8Array⟧ {
    const frame = this.datagram();
    if (frame.length > 0x7fff) throw new EncodeError(`a frame of ${frame.length} bytes`);
    return Uint8Array.from([...little(frame.length, 2), ...frame]);
  }

  static of(id⟦: number⟧, word⟦: number⟧, data⟦: Uint8Array⟧, head⟦: number⟧)⟦: Frame⟧ {
    const frame = new Frame(id);
    const size = Math.floor(word / 4);
    let at = head;
    if (word & 1) frame.fromAddress = data.slice(at, (at += 16));
    if (word & 2) frame.targetAddress = data.slice(at, (at += 16));
    if (data.length < at + size) throw new DecodeError(`the frame of 0x${id.toString(16)} is cut`, frame);
    frame.payload = data.slice(at, at + size);
    return frame;
  }

  static fromStream(data⟦: Uint8Array⟧)⟦: Frame⟧ {
    if (data.length < 6) throw new DecodeError("the head of a frame is cut");
    return Frame.of(ofLittle(data, 0, 2), ofLittle(data, 2, 4), data, 6);
  }

  static fromDatagram(data⟦: Uint8Array⟧)⟦: Frame⟧ {
    const more = data.length > 2 ? data[2]⟦!⟧ >> 6 : 0;
    if (data.length < 3 + more) throw new DecodeError("the head of a frame is cut");
    const word = data.slice(2, 3 + more).reduce((value, byte, i) => value * 256 + (i === 0 ? byte & 0x3f : byte), 0);
    return Frame.of(ofLittle(data, 0, 2), word, data, 3 + more);
  }

  // The command in the frame; of the classes that share an id, the first that reads.
  command()⟦: Command⟧ {
    let fault⟦: unknown⟧ = new DecodeError(`no class has the id 0x${this.id.toString(16)}`);
    for (const each of COMMANDS.get(this.id) ?? []) {
      try {
        return decode(each, this.payload);
      } catch (error) {
        if (!(error instanceof DecodeError)) throw error;
        fault = error;
      }
    }
    throw fault;
  }
}

// The frame of a command, without addresses.
export function frameOf(command⟦: Command⟧, width⟦: Width⟧ = 16)⟦: Frame⟧ {
  return new Frame((command.type⟦ as CommandClass⟧).ID, command.encode({ width }));
}

// Frames from the bytes of a TCP connection, in any pieces.
export class PacketReader {
  pending⟦: Uint8Array⟧ = NONE;
  most⟦: number⟧;

  constructor(most = 2 ** 28) {
    this.most = most;
  }

  // Adds bytes and gives the frames that are whole. An empty packet means nothing.
  *feed(data⟦: Uint8Array⟧)⟦: Generator<Frame>⟧ {
    const all = new Uint8Array(this.pending.length + data.length);
    all.set(this.pending);
    all.set(data, this.pending.length);
    this.pending = all;
    while (this.pending.length >= 4) {
      const size = ofLittle(this.pending, 0, 4);
      if (size > this.most) throw new DecodeError(`a packet of ${size} bytes`);
      if (this.pending.length < 4 + size) return;
      const frame = this.pending.slice(4, 4 + size);
      this.pending = this.pending.slice(4 + size);
      if (frame.length > 0) yield Frame.fromStream(frame);
    }
  }
}
