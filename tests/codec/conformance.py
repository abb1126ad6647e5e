#!/usr/bin/env python3
"""Answers lines "CLASS cmd|data HEX" as wirelens read does, by a generated codec: conformance.py MODULE 16|32."""
import importlib.util
import json
import sys


def answer(codec, width, line):
    name, form, digits = line.split()
    value = codec.CLASSES[name]()
    reader = codec.Reader(b"" if digits == "-" else bytes.fromhex(digits), form)
    read = value.read(reader)
    out = {"class": name, "form": form, "read": read, "consumed": reader.at, "fields": value.as_json()}
    try:
        out["rewrite"] = value.encode(form, width).hex()
        out["write"] = True
    except codec.EncodeError as error:
        out["write"] = False
        out["error"] = str(error)
    return out


def main():
    spec = importlib.util.spec_from_file_location("codec", sys.argv[1])
    codec = importlib.util.module_from_spec(spec)
    sys.modules["codec"] = codec
    spec.loader.exec_module(codec)
    for line in sys.stdin:
        print(json.dumps(answer(codec, int(sys.argv[2]), line)), flush=True)


if __name__ == "__main__":
    main()
