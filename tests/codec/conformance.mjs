// Answers lines "CLASS cmd|data HEX" as wirelens read does, by a generated codec: node conformance.mjs MODULE 16|32.
import { createInterface } from "node:readline";
import { pathToFileURL } from "node:url";

const codec = await import(pathToFileURL(process.argv[2]).href);
const width = Number(process.argv[3]);

function answer(line) {
  const [name, form, digits] = line.split(" ");
  const value = new codec.CLASSES[name]();
  const reader = new codec.Reader(codec.bytesOf(digits === "-" ? "" : digits), form);
  const read = value.read(reader);
  const out = { class: name, form, read, consumed: reader.at, fields: value.asJson() };
  try {
    out.rewrite = codec.hexOf(value.encode({ form, width }));
    out.write = true;
  } catch (error) {
    if (!(error instanceof codec.EncodeError)) throw error;
    out.write = false;
    out.error = error.message;
  }
  return out;
}

for await (const line of createInterface({ input: process.stdin })) console.log(JSON.stringify(answer(line)));
