#!/usr/bin/env python3
"""The memory of wirelens decode does not grow with the capture.

Usage: check_memory.py WIRELENS VECTORS

Compares the most memory that decoding 32 MiB and 96 MiB took, to lines of JSON and to a summary.
"""
import json
import os
import sys
import tempfile

from big_capture import MEBIBYTE, frames_of, write

SMALL, LARGE = 32, 96
# Buffers of the C library and of connections do not have the same size in each run.
TOLERANCE = 4 * MEBIBYTE
MOST = 100 * MEBIBYTE


def peak(words, output):
    """The exit code, and the most memory in bytes."""
    child = os.posix_spawn(words[0], words, os.environ, file_actions=[
        (os.POSIX_SPAWN_OPEN, 1, output, os.O_WRONLY | os.O_CREAT | os.O_TRUNC, 0o600),
        (os.POSIX_SPAWN_OPEN, 2, os.devnull, os.O_WRONLY, 0)])
    _, status, usage = os.wait4(child, 0)
    return os.waitstatus_to_exitcode(status), usage.ru_maxrss * 1024


def main():
    if len(sys.argv) != 3:
        print(__doc__)
        return 2
    faults = []
    frames = list(frames_of(sys.argv[1], sys.argv[2]))
    with tempfile.TemporaryDirectory() as folder:
        paths = {}
        for size in (SMALL, LARGE):
            paths[size] = os.path.join(folder, f"{size}.pcap")
            write(paths[size], size * MEBIBYTE, frames)
        for option in ([], ["--summary"]):
            found = {}
            for size, path in paths.items():
                output = os.path.join(folder, "output") if option else os.devnull
                code, found[size] = peak([sys.argv[1], "decode", *option, path], output)
                # Vectors of damaged payloads are among them.
                if code not in (0, 1):
                    faults.append(f"decode {option} of {size} MiB exits with {code}")
                if option:
                    with open(output, encoding="utf-8") as file:
                        counted = json.loads(file.readlines()[-1])["all"]
                    if counted["bytes"] < 0.8 * size * MEBIBYTE:
                        faults.append(f"only {counted['bytes']} bytes of {size} MiB were counted")
            print("decode", *option, {size: f"{bytes / MEBIBYTE:.1f} MiB" for size, bytes in found.items()})
            if found[LARGE] > found[SMALL] + TOLERANCE:
                faults.append(f"decode {option}: {found[LARGE]} bytes for {LARGE} MiB, {found[SMALL]} for {SMALL}")
            if found[LARGE] > MOST:
                faults.append(f"decode {option}: {found[LARGE]} bytes, more than {MOST}")
    print("\n".join(faults) if faults else "as expected")
    return 1 if faults else 0


if __name__ == "__main__":
    sys.exit(main())
