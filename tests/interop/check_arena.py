#!/usr/bin/env python3
"""Plays the miniature platform with processes of both systems: check_arena.py REGISTRY OTHER ..., where REGISTRY is the
system of the registry and OTHER the one of the first service and of who asks."""

import sys

import systems


def play(both, registry_system, other):
    started = []

    def start(system, *words):
        process = systems.Process(f"{words[0]} on {system}", both.command(system, "arena", *words))
        started.append(process)
        return process

    def service(system, kind, name, port):
        process = start(system, "service", "--type", kind, "--name", name, "--registry", port)
        listening = process.expect(r"^listening on port (\d+)$").group(1)
        process.expect("^registered under id ")
        registry.expect(f"^registered {name} ")
        return process, listening

    try:
        registry = start(registry_system, "registry", "--port", "0")
        port = registry.expect(r"^listening on port (\d+)$").group(1)
        first, first_port = service(other, "1", "first", port)
        second, second_port = service(registry_system, "2", "second", port)
        first.expect("^new server: second ")
        first.expect("^greeted second ")
        for process in (first, second):
            process.expect("^echo: ")
        for kind, listening in (("1", first_port), ("2", second_port)):
            lookup = start(other, "lookup", "--type", kind, "--registry", port)
            lookup.expect(f"^found at 127.0.0.1:{listening}$")
            lookup.wait()
        start(other, "shutdown", "--service", second_port).wait()
        second.expect("^left the registry")
        second.wait()
        first.expect("^server left: second ")
        start(other, "shutdown", "--registry", port).wait()
        first.expect("^left the registry")
        for process in (first, registry):
            process.expect("^ended$")
            process.wait()
    except AssertionError as fault:
        print(fault)
        for process in started:
            print(f"--- {process.name}", *process.lines, sep="\n")
        return 1
    finally:
        for process in started:
            process.end()
    print(f"registry on {registry_system}, first service on {other}: {len(started)} processes, all done")
    return 0


def main():
    arguments, both = systems.parse(__doc__, "registry", "other")
    return play(both, arguments.registry, arguments.other)


if __name__ == "__main__":
    sys.exit(main())
