#!/usr/bin/env python3
"""Checks which floor includes which, and other rules that a compiler cannot check.

Usage: check_layers.py [ROOT]      checks a tree and lists the violations
       check_layers.py --self-test violates each rule in a small tree and checks that it is reported
"""
import os
import re
import sys
import tempfile

# Floor -> the floors that it may include, itself among them. A floor's files are those below its folder; the longest
# folder name wins. Folders without a row (tests, tools, examples, bench, fuzz) may include everything, and no floor
# includes them.
FLOORS = {
    "framework":     {"framework"},
    "packaging":     {"framework", "packaging"},
    "dispatch":      {"framework", "packaging", "dispatch"},
    "net":           {"framework", "net"},
    "transport":     {"framework", "packaging", "dispatch", "net", "transport"},
    "playerdata":    {"framework", "packaging", "playerdata"},
    "commands":      {"framework", "packaging", "playerdata", "commands", "packs"},
    "packs":         {"framework", "packaging", "playerdata", "commands", "packs"},
    "runtime":       {"framework", "packaging", "dispatch", "net", "transport", "playerdata", "commands",
                      "packs", "runtime"},
    "host":          {"framework", "packaging", "dispatch", "net", "transport", "playerdata", "commands",
                      "packs", "runtime", "host"},
}
# Single headers that a floor may include in addition, and why.
DOORS = {
    # A command's id and the functions that read it from a frame.
    "dispatch/ids/": {"commands", "packs"},
    "dispatch/command_process.h": {"commands", "packs"},
}
# Headers that the build generates.
GENERATED = {"tools/all_classes.h", "tools/embedded_files.h", "tools/class_headers.h", "arena/page_files.h"}
# Internal headers: not installed, included by .cpp files and by each other only.
INNER = re.compile(r"^packaging/wire/|/inner/|^net/door/|^framework/(modules|platform)/")
# Where headers of the operating system and tests for it are allowed. Exports are marked in each system's own way.
PLATFORM = ("framework/platform/", "framework/export.h", "net/")
# Where calls of the operating system's network are allowed, and its headers. Some other files use its plain addresses.
NETWORK = re.compile(r"^net/door/")
NETWORK_HEADERS = re.compile(r"^(sys/(socket|epoll|eventfd|select|poll|un)\.h|netinet/tcp\.h|netdb\.h|arpa/inet\.h|"
                             r"winsock2?\.h|ws2tcpip\.h|mswsock\.h|mstcpip\.h)$", re.IGNORECASE)
# Third-party libraries and where they may be used.
THIRD_PARTY = {
    "fmt": ("framework/",),
    "nlohmann": ("framework/",),
    "gnutls": ("net/tls/inner/", "net/quic/inner/"),
    "nettle": ("framework/platform/",),
    "ngtcp2": ("net/quic/inner/",),
}
# Files longer than the limit, and why they are not split.
LIMIT = 500
LONG = {
}

CODE = (".h", ".hpp", ".cpp")
SCRIPTS = (".py", ".ts", ".lua", ".js", ".mjs")
INCLUDE = re.compile(r'^[ \t]*#[ \t]*include[ \t]*([<"])([^>"]+)[>"]', re.MULTILINE)
STANDARD = re.compile(r"^[a-z_0-9]+$")


def floor_of(path):
    """The floor of a file, or None if it may include everything."""
    best = [floor for floor in FLOORS if path.startswith(floor + "/")]
    return max(best, key=len) if best else None


def list_files(root):
    for folder, folders, files in os.walk(root):
        relative = os.path.relpath(folder, root)
        folders[:] = sorted(name for name in folders
                            if name not in (".git", "__pycache__", ".cache")
                            and not (relative == "." and name.startswith("build")))
        for name in sorted(files):
            yield os.path.normpath(os.path.join(relative, name))


def read(root, path):
    with open(os.path.join(root, path), encoding="utf-8", errors="replace") as file:
        return file.read()


def includes_of(text):
    return [(kind == '"', name) for kind, name in INCLUDE.findall(text)]


def is_door(name, floor):
    """Whether the floor may include this header although its row does not allow it."""
    return any(floor in floors and (name == door or door.endswith("/") and name.startswith(door))
               for door, floors in DOORS.items())


def check_include(path, quoted, name, exists):
    """The fault of one include of a file on a floor, or None."""
    floor = floor_of(path)
    header = path.endswith((".h", ".hpp"))
    if quoted:
        if name in GENERATED:
            return None if floor is None else f"includes {name}, which is above all floors"
        if not exists(name):
            return f'includes "{name}", which is not a path from the top of the tree'
        target = floor_of(name)
        if floor is None:
            return None
        if target is None:
            return f"includes {name}, which is above all floors"
        if target not in FLOORS[floor] and not is_door(name, floor):
            return f"includes {name}, but {floor} may not include {target}"
        if header and INNER.search(name) and not INNER.search(path):
            return f"is a public header and includes {name}, which is internal"
        return None
    if floor is None or STANDARD.match(name):
        return None
    if header and not INNER.search(path):
        return f"is a public header and includes <{name}>, which is not a header of the standard library"
    if NETWORK_HEADERS.match(name) and not NETWORK.match(path):
        return f"includes <{name}>; the network is called in net/door/ only"
    library = re.split(r"[/.]", name)[0]
    if library in THIRD_PARTY:
        if not path.startswith(THIRD_PARTY[library]):
            return f"includes <{name}>; {library} is allowed only in {', '.join(THIRD_PARTY[library])}"
    elif not path.startswith(PLATFORM):
        return f"includes <{name}>; headers of the operating system are allowed only in {', '.join(PLATFORM)}"
    return None


def own_headers(path, files):
    """The headers that a source file may belong to: the same name, or its longest part before an underscore."""
    folder, name = os.path.split(path)
    stem = name[:-len(".cpp")]
    while stem:
        header = f"{folder}/{stem}.h"
        if header in files:
            return [header]
        stem = stem.rpartition("_")[0]
    return [file for file in files if os.path.dirname(file) == folder and file.endswith(".h")]


def find_circles(graph):
    """One line for each cycle of headers, found by a depth-first walk."""
    state = {}
    found = []

    def walk(node, road):
        state[node] = "open"
        for target in graph.get(node, ()):
            if state.get(target) == "open":
                circle = road[road.index(target):] + [target]
                found.append(f"{target}: is part of an include cycle: {' -> '.join(circle)}")
            elif target not in state:
                walk(target, road + [target])
        state[node] = "done"

    for node in sorted(graph):
        if node not in state:
            walk(node, [node])
    return found


def check(root):
    """All violations, as lines."""
    files = list(list_files(root))
    present = set(files)
    faults = []
    graph = {}
    for path in files:
        if not path.endswith(CODE + SCRIPTS):
            continue
        text = read(root, path)
        length = text.count("\n")
        if length > LIMIT and path not in LONG:
            faults.append(f"{path}: has {length} lines; the limit is {LIMIT}, and a file has one topic")
        if not path.endswith(CODE):
            continue
        includes = includes_of(text)
        for quoted, name in includes:
            fault = check_include(path, quoted, name, present.__contains__)
            if fault:
                faults.append(f"{path}: {fault}")
        if "_WIN32" in text and floor_of(path) and not path.startswith(PLATFORM):
            faults.append(f"{path}: tests for _WIN32, which is allowed only in {', '.join(PLATFORM)}")
        if path.endswith((".h", ".hpp")):
            graph[path] = [name for quoted, name in includes if quoted and name in present]
            if "#pragma once" not in text:
                faults.append(f"{path}: has no #pragma once")
        elif floor_of(path):
            own = own_headers(path, present)
            if own and (not includes or includes[0][1] not in own):
                expected = own[0] if len(own) == 1 else f"a header of {os.path.dirname(path)}/"
                faults.append(f"{path}: does not include {expected} first")
    faults += [f"{path}: is on the list of long files, but does not exist" for path in LONG if path not in present]
    return faults + find_circles(graph)


# One tree per rule: its files, and a part of the expected line. None: no line is expected.
TRIALS = [
    ({"framework/a.h": "#pragma once\n#include <vector>\n",
      "framework/a.cpp": '#include "framework/a.h"\n#include <fmt/printf.h>\n',
      "packaging/b.h": '#pragma once\n#include "framework/a.h"\n',
      "packaging/b.cpp": '#include "packaging/b.h"\n#include "packaging/wire/w.h"\n',
      "commands/c.h": '#pragma once\n#include "dispatch/ids/c.h"\n',
      "packaging/wire/w.h": "#pragma once\n", "dispatch/ids/c.h": "#pragma once\n",
      "net/s_posix.cpp": '#include "net/s.h"\n#include <unistd.h>\n#ifdef _WIN32\n#endif\n',
      "net/s.h": "#pragma once\n", "tests/t.cpp": '#include "packaging/wire/w.h"\n#include <fmt/printf.h>\n'}, None),
    ({"framework/a.h": '#pragma once\n#include "packaging/b.h"\n', "packaging/b.h": "#pragma once\n"}, "may not include"),
    ({"commands/a.h": '#pragma once\n#include "dispatch/b.h"\n', "dispatch/b.h": "#pragma once\n"}, "may not include"),
    ({"commands/a.h": '#pragma once\n#include "dispatch/command_ids.h"\n',
      "dispatch/command_ids.h": "#pragma once\n"}, "may not include"),
    ({"net/a.h": '#pragma once\n#include "packaging/b.h"\n', "packaging/b.h": "#pragma once\n"}, "may not include"),
    ({"runtime/a.h": '#pragma once\n#include "tests/b.h"\n', "tests/b.h": "#pragma once\n"}, "above all floors"),
    ({"host/a.h": '#pragma once\n#include "packs/b.h"\n', "packs/b.h": "#pragma once\n"}, None),
    ({"runtime/a.h": '#pragma once\n#include "host/b.h"\n', "host/b.h": "#pragma once\n"}, "runtime may not include host"),
    ({"host/a.h": '#pragma once\n#include "host/inner/b.h"\n', "host/inner/b.h": "#pragma once\n"}, "public header"),
    ({"packs/a.h": '#pragma once\n#include "packaging/wire/b.h"\n', "packaging/wire/b.h": "#pragma once\n"}, "public header"),
    ({"packs/a.h": "#pragma once\n#include <fmt/printf.h>\n"}, "not a header of the standard library"),
    ({"packs/a.h": "#pragma once\n#include <unistd.h>\n"}, "not a header of the standard library"),
    ({"packs/a.cpp": "#include <nlohmann/json.hpp>\n"}, "nlohmann is allowed only"),
    ({"packs/a.cpp": "#include <unistd.h>\n"}, "headers of the operating system"),
    ({"net/a_posix.cpp": "#include <sys/socket.h>\n"}, "the network is called"),
    ({"net/door/a_posix.cpp": "#include <sys/socket.h>\n"}, None),
    ({"framework/a.h": '#pragma once\n#include "b.h"\n', "framework/b.h": "#pragma once\n"}, "not a path from the top"),
    ({"framework/a.h": '#pragma once\n#include "framework/b.h"\n',
      "framework/b.h": '#pragma once\n#include "framework/a.h"\n'}, "cycle"),
    ({"framework/a.h": "\n"}, "#pragma once"),
    ({"framework/a.h": "#pragma once\n", "framework/a.cpp": '#include <vector>\n#include "framework/a.h"\n'}, "a.h first"),
    ({"framework/a.h": "#pragma once\n", "framework/a_text.cpp": "#include <vector>\n"}, "a.h first"),
    ({"framework/a.h": "#pragma once\n#ifdef _WIN32\n#endif\n"}, "_WIN32"),
    ({"framework/a.h": "#pragma once\n" + "\n" * LIMIT}, "lines"),
    ({"tools/a.ts": "\n" * (LIMIT + 1)}, "lines"),
]


def self_test():
    failed = 0
    for number, (files, expected) in enumerate(TRIALS):
        with tempfile.TemporaryDirectory() as root:
            for path, text in files.items():
                os.makedirs(os.path.join(root, os.path.dirname(path)), exist_ok=True)
                with open(os.path.join(root, path), "w", encoding="utf-8") as file:
                    file.write(text)
            faults = check(root)
        good = len(faults) == 1 and expected in faults[0] if expected else not faults
        if not good:
            failed += 1
            print(f"trial {number}: expected {expected or 'nothing'}, found {faults}")
    print(f"{len(TRIALS) - failed} of {len(TRIALS)} trials as expected")
    return failed


def main():
    if sys.argv[1:] == ["--self-test"]:
        return 1 if self_test() else 0
    root = sys.argv[1] if len(sys.argv) > 1 else os.path.join(os.path.dirname(os.path.abspath(__file__)), "..")
    faults = check(root)
    print("\n".join(faults) if faults else "no violations")
    return 1 if faults else 0


if __name__ == "__main__":
    sys.exit(main())
