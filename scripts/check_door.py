#!/usr/bin/env python3
"""Looks at what the library's objects ask for: only the door's own call the operating system's network.

Usage: check_door.py OBJECT...
       check_door.py --self-test  looks whether a call outside the door is found
"""
import re
import subprocess
import sys

# The last two call what has one name on all systems: the resolver, and the text forms of addresses.
DOOR = re.compile(r"/net/door/([a-z_]+_(posix|win32)|names|addresses)\.cpp\.o(bj)?$")
CALLS = {
    "socket", "socketpair", "bind", "listen", "accept", "accept4", "connect", "shutdown",
    "recv", "recvfrom", "recvmsg", "recvmmsg", "send", "sendto", "sendmsg", "sendmmsg", "readv", "writev", "sendfile",
    "getsockopt", "setsockopt", "getsockname", "getpeername", "ioctl", "fcntl",
    "poll", "ppoll", "select", "pselect", "epoll_create", "epoll_create1", "epoll_ctl", "epoll_wait", "epoll_pwait",
    "eventfd", "eventfd_write", "eventfd_read", "timerfd_create", "timerfd_settime",
    "getaddrinfo", "freeaddrinfo", "getnameinfo", "gethostbyname", "gethostbyaddr", "gethostname",
    "inet_addr", "inet_aton", "inet_ntoa", "inet_pton", "inet_ntop",
}
# Of files, not of sockets: opening files so that no program inherits them, and what is written to a console.
OTHERWISE = {
    "framework/platform/platform_posix.cpp": {"fcntl", "poll"},
}


def calls_of(listing):
    """The calls of the network among the undefined names that nm lists. A hardened call has a checked form."""
    names = re.findall(r"^\s+[UwW] (\S+?)(?:@\S+)?$", listing, re.MULTILINE)
    return {name for name in (re.sub(r"^__(imp_)?(\w+?)(_chk|_2)?$", r"\2", name) for name in names)
            if name in CALLS or name.startswith("WSA")}


def check(place, listing):
    if DOOR.search(place):
        return []
    allowed = {name for path, names in OTHERWISE.items() if path in place for name in names}
    return [f"{place}: calls {name}, which belongs to net/door/"
            for name in sorted(calls_of(listing) - allowed)]


def self_test():
    listing = "                 U recv@GLIBC_2.2.5\n                 U __poll_chk\n                 U memcpy\n0 T send\n"
    tree = "x.dir/net/"
    good = [len(check(tree + "tcp_link.cpp.o", listing)) == 2,
            not check(tree + "door/real_door_posix.cpp.o", listing),
            len(check(tree + "door/door.cpp.o", "   U __imp_WSASend\n")) == 1,
            not check("x.dir/framework/platform/platform_posix.cpp.o", "   U fcntl\n")]
    print(f"{sum(good)} of {len(good)} trials as expected")
    return all(good)


def main():
    if sys.argv[1:] == ["--self-test"]:
        return 0 if self_test() else 1
    faults = []
    found = set()
    # A precompiled header counts as an object to the build.
    objects = [place for place in sys.argv[1:] if not place.endswith((".gch", ".pch"))]
    listings = dict.fromkeys(objects, "")
    for line in subprocess.run(["nm", "-u", "-A", *objects], capture_output=True, text=True, check=True).stdout.splitlines():
        place, _, rest = line.partition(":")
        listings[place] += rest + "\n"
    for place, listing in listings.items():
        if DOOR.search(place):
            found |= calls_of(listing)
        faults += check(place, listing)
    # A list of objects without the door, or a reading that finds nothing, would prove nothing.
    faults += [f"the door does not call {name}" for name in ("recv", "send", "epoll_wait") if name not in found]
    print("\n".join(faults) if faults else f"one door in {len(objects)} objects")
    return 1 if faults else 0


if __name__ == "__main__":
    sys.exit(main())
