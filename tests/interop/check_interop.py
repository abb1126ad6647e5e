#!/usr/bin/env python3
"""Lets the program interop of one system serve that of another: check_interop.py HOST VISITOR GOLDEN ..."""

import sys

import systems


def main():
    arguments, both = systems.parse(__doc__, "host", "visitor", "golden")
    host_command = both.command(arguments.host, "interop", "host", both.width(arguments.visitor),
                                both.path(arguments.host, arguments.golden))
    visitor_command = both.command(arguments.visitor, "interop", "visitor", both.width(arguments.host),
                                   both.path(arguments.visitor, arguments.golden))
    host = systems.Process("host on " + arguments.host, host_command)
    visitor = None
    try:
        port = host.expect(r"listening on port (\d+)").group(1)
        visitor = systems.Process("visitor on " + arguments.visitor, visitor_command + [port])
        visitor.wait()
        host.wait()
    except AssertionError as fault:
        print(fault)
        for process in filter(None, (host, visitor)):
            print(f"--- {process.name}", *process.lines, sep="\n")
        return 1
    finally:
        for process in filter(None, (host, visitor)):
            process.end()
    for process in (host, visitor):
        good = sum(": good: " in line for line in process.lines)
        print(f"{process.name}: {good} facts hold")
        if good < 40 or any("FAULT" in line for line in process.lines):
            print(*process.lines, sep="\n")
            return 1
    return 0


if __name__ == "__main__":
    sys.exit(main())
