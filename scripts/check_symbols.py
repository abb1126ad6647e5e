#!/usr/bin/env python3
"""Checks the symbols of the built library, or of its module zet_Secure: it exports its own names only, and every import
comes from a known library.

Usage: check_symbols.py LIBRARY [ROOT]
"""
import os
import re
import subprocess
import sys

NAMESPACES = {"zet", "Quillo", "wire", "host"}
MODULE = "zet_Secure"
MODULE_ENTRY = "zet_getSecureModule"
# What the library may load, and what only its module may.
NEEDED = re.compile(r"^(libnettle|libstdc\+\+|libm|libgcc_s|libc|libpthread|libdl|ld-linux[-\w]*)\.so")
NEEDED_BY_MODULE = re.compile(r"^(libcommonground|libgnutls|libngtcp2|libngtcp2_crypto_gnutls)\.so")
NEEDED_ON_WINDOWS = re.compile(r"^(bcrypt|kernel32|msvcrt|ws2_32|libstdc\+\+-6|libgcc_s_seh-1|"
                               r"libwinpthread-1)\.dll$", re.IGNORECASE)
# Names of other libraries that are compiled into this one and must neither leave it nor be asked for.
INLINE = re.compile(r"\b(fmt|nlohmann)::")
WORDS_BEFORE = re.compile(r"^(vtable|VTT|typeinfo name|typeinfo|guard variable|construction vtable|"
                          r"(non-)?virtual thunk|covariant return thunk|reference temporary #\d+) (for|to) ")


def run(*command):
    return subprocess.run(command, capture_output=True, text=True, check=True).stdout


def exported_names(root):
    """The name after every COMMONGROUND_API in a header: of a class, a function or a constant."""
    names = set()
    for folder, _, files in os.walk(root):
        if os.path.relpath(folder, root).split(os.sep)[0] not in (
                "framework", "packaging", "dispatch", "net", "transport", "runtime", "playerdata", "commands", "packs",
                "host"):
            continue
        for name in files:
            if name.endswith(".h"):
                with open(os.path.join(folder, name), encoding="utf-8") as file:
                    for declaration in re.findall(r"COMMONGROUND_API\b([^;{(=\[]*)", file.read()):
                        declaration = re.split(r"(?<!:):(?!:)", declaration)[0]
                        words = [word for word in re.findall(r"\w+", declaration) if word != "final"]
                        names.update(words[-1:])
    return names


def root_of(symbol):
    """The outermost name of a demangled symbol, without return type and template arguments."""
    symbol = WORDS_BEFORE.sub("", symbol)
    depth = 0
    plain = ""
    for char in symbol:
        if char == "<":
            depth += 1
        elif char == ">":
            depth -= 1
        elif depth == 0:
            if char == "(":
                break
            plain += char
    return plain.split(" ")[-1].split("::")[0].split("[")[0].split("-in-")[0]


def check_windows(library, own):
    """Exports and imported libraries of a DLL, which has no other undefined symbols."""
    tables = run("x86_64-w64-mingw32-objdump", "-p", library)
    mangled = re.findall(r"^\t\[ *\d+\] (\S+)$", tables.split("[Ordinal/Name Pointer] Table")[-1], re.MULTILINE)
    exported = subprocess.run(["c++filt"], input="\n".join(mangled), capture_output=True, text=True,
                              check=True).stdout.splitlines()
    faults = [] if exported else ["exports nothing"]
    faults += [f"exports {symbol}" for symbol in exported
               if INLINE.search(symbol.split("(")[0]) or root_of(symbol) not in own]
    faults += [f"needs {name}" for name in re.findall(r"DLL Name: (.*)", tables) if not NEEDED_ON_WINDOWS.match(name)]
    return exported, faults


def check_elf(library, own):
    faults = []
    is_module = os.path.basename(library).startswith(MODULE)
    own = {MODULE_ENTRY} if is_module else own
    exported = run("nm", "-D", "-C", "--defined-only", library).splitlines()
    if not exported:
        faults.append("exports nothing")
    for line in exported:
        symbol = line.split(" ", 2)[2]
        if INLINE.search(symbol.split("(")[0]) or root_of(symbol) not in own:
            faults.append(f"exports {symbol}")
    for line in run("nm", "-D", "-C", "--undefined-only", library).splitlines():
        symbol = line.strip().split(" ", 1)[1]
        if INLINE.search(symbol):
            faults.append(f"imports {symbol}")
    # The loader reports symbols that no loaded library defines.
    loaded = subprocess.run(["ldd", "-r", library], capture_output=True, text=True, check=False)
    for symbol in re.findall(r"undefined symbol: (\S+)", loaded.stdout + loaded.stderr):
        faults.append(f"leaves undefined {run('c++filt', symbol).strip()}")
    for name in re.findall(r"\(NEEDED\).*\[(.*)\]", run("readelf", "-d", library)):
        if not NEEDED.match(name) and not (is_module and NEEDED_BY_MODULE.match(name)):
            faults.append(f"needs {name}")
    return exported, faults


def main():
    library = sys.argv[1]
    root = sys.argv[2] if len(sys.argv) > 2 else os.path.join(os.path.dirname(os.path.abspath(__file__)), "..")
    own = exported_names(root) | NAMESPACES
    exported, faults = (check_windows if library.endswith(".dll") else check_elf)(library, own)
    for fault in faults[:40]:
        print(f"{os.path.basename(library)} {fault}")
    print(f"{len(exported)} exported symbols, {len(faults)} faults")
    return 1 if faults else 0


if __name__ == "__main__":
    sys.exit(main())
