#!/usr/bin/env python3
"""Checks that wirelens encode gives back the bytes of each golden vector from what wirelens read prints for them.

Usage: round_trip.py VECTORS WIRELENS

The JSON is that of the object, so it says as much as the object does. Of some vectors the object does not have all that
was in the bytes: they are cut, have counts below 0 or other rows than the class's table, name a key twice or out of
order, or have a number, a text or a flag in a form that no writer uses. The class's own Write gives other bytes for
these, and encode has to give the same bytes as Write. So there are three checks:
  1. The bytes of a whole vector come back in its width, unless Write gives other bytes for it, too.
  2. For all vectors, also after a failed Read, encode gives what Write gives in this build's width, and what the vector
     says of Write in the other one.
  3. What does not pass one of these is listed below, and nothing else is.
"""
import json
import subprocess
import sys

# Class, packager and name of a vector, and what its JSON does not say.
EXCEPTIONS = {
}
# The width of this build's Write.
NATIVE = 32


def run(wirelens, arguments, lines):
    """The lines that a command prints."""
    done = subprocess.run([wirelens, *arguments], input="".join(line + "\n" for line in lines), stdout=subprocess.PIPE,
                          text=True)
    return done.stdout.splitlines()


def name_of(vector):
    return (vector["class"], vector["form"], vector["name"])


def main():
    if len(sys.argv) != 3:
        print(__doc__)
        return 2
    with open(sys.argv[1], encoding="utf-8") as file:
        vectors = [json.loads(line) for line in file]
    wirelens = sys.argv[2]
    read = run(wirelens, ["read"], [f"{each['class']} {each['form']} {each['bytes'] or '-'}" for each in vectors])
    encoded = {width: run(wirelens, ["encode", "--payload", "--width", str(width)], read) for width in (16, 32)}
    if any(len(lines) != len(vectors) for lines in (read, *encoded.values())):
        print(f"{len(vectors)} vectors, {len(read)} objects, {[len(lines) for lines in encoded.values()]} encoded")
        return 1
    # Vectors whose bytes Write does not give back, whichever width they are in.
    normalised = {name_of(vector) for vector, line in zip(vectors, read)
                  if vector["width"] == NATIVE and json.loads(line)["rewrite"] != vector["bytes"]}
    faults = []
    back = 0
    met = set()
    for number, vector in enumerate(vectors):
        name = name_of(vector)
        answer = json.loads(read[number])
        wanted = {NATIVE: answer["rewrite"]} if answer["write"] else {}
        for width in (16, 32):
            if vector[f"rewrite{width}"] is not None:
                wanted[width] = vector[f"rewrite{width}"]
        is_whole = vector["read"] and 2 * vector["consumed"] == len(vector["bytes"])
        if is_whole and name not in normalised:
            wanted[vector["width"]] = vector["bytes"]
            back += 1
        for width, bytes_ in wanted.items():
            if encoded[width][number] == bytes_:
                continue
            if name in EXCEPTIONS:
                met.add(name)
            else:
                faults.append(f"{' '.join(name)}, {width}-bit text: {encoded[width][number]}, not {bytes_}")
    faults += [f"{' '.join(name)} is listed, but its bytes come back" for name in EXCEPTIONS if name not in met]
    for fault in faults:
        print(fault[:2000])
    print(f"the bytes of {back} of {len(vectors)} vectors come back; {len(faults)} faults, {len(met)} exceptions")
    return 1 if faults or back < 2000 else 0


if __name__ == "__main__":
    sys.exit(main())
