"""Checks the files of examples/arena/deploy by the programs that read them.

  check_deploy.py haproxy|systemd ARENA FOLDER

Also checks that a damaged copy is refused, so that the check can fail, that each server has a unit with a port of its
own, and that `arena` has each option that a unit uses. Returns 77 where the program is missing.
"""
import glob
import os
import re
import shutil
import subprocess
import sys
import tempfile

SKIPPED = 77
ROLES = {"registry", "platform", "zone", "game", "sport", "lesson", "device"}


def run(words):
    return subprocess.run(words, stdout=subprocess.PIPE, stderr=subprocess.STDOUT, text=True, timeout=60)


def check_haproxy(program, _arena, folder, scratch):
    original = os.path.join(folder, "haproxy.cfg")
    damaged = os.path.join(scratch, "haproxy.cfg")
    with open(original, encoding="utf-8") as source, open(damaged, "w", encoding="utf-8") as target:
        target.write(source.read().replace("send-proxy-v2", "send-proxy-v9"))
    result = run([program, "-c", "-f", original])
    if result.returncode != 0 or "WARNING" in result.stdout:
        return [result.stdout]
    return [] if run([program, "-c", "-f", damaged]).returncode != 0 else ["a damaged haproxy.cfg is accepted"]


def verify(program, text, scratch, name):
    """What systemd finds in a unit, whose template has an instance of this name."""
    for file in (name, name.replace("@.", "@8001.")):
        with open(os.path.join(scratch, file), "w", encoding="utf-8") as target:
            target.write(text)
    result = run([program, "verify", "--man=no", os.path.join(scratch, name.replace("@.", "@8001."))])
    # It returns 0 after warnings; those about other units of the machine do not count.
    lines = [line for line in result.stdout.splitlines() if name.split("@")[0] in line]
    return lines or ([result.stdout] if result.returncode != 0 else [])


def check_systemd(program, arena, folder, scratch):
    faults = []
    roles = set()
    ports = []
    units = sorted(glob.glob(os.path.join(folder, "*.service")))
    for unit in units:
        with open(unit, encoding="utf-8") as source:
            text = source.read()
        name = os.path.basename(unit)
        command = re.search(r"^ExecStart=/srv/arena/arena (\S+)(.*)$", text, re.M)
        if not command:
            faults.append(name + " does not start arena")
            continue
        text = text.replace("/srv/arena/arena", arena)
        faults += verify(program, text, scratch, name)
        roles.add(command.group(1))
        ports += re.findall(r" --port (\d+)", command.group(2))
        if not verify(program, text.replace("Restart=on-failure", "Restart=often"), scratch, name):
            faults.append("a damaged %s is accepted" % name)
        options = run([arena, command.group(1), "--help"]).stdout
        # Those of its comment too.
        faults += ["%s uses %s" % (name, option) for option in re.findall(r"(?<!\S)--[a-z-]+", text)
                   if option + " " not in options]
    faults += ["no unit for " + role for role in sorted(ROLES - roles)]
    # One machine can have them all.
    faults += ["two units have port " + port for port in sorted(set(ports)) if ports.count(port) > 1]
    return faults


def main():
    kind, arena, folder = sys.argv[1:4]
    program = {"haproxy": shutil.which("haproxy") or shutil.which("/usr/sbin/haproxy"),
               "systemd": shutil.which("systemd-analyze")}[kind]
    if not program:
        print("the program is missing")
        return SKIPPED
    with tempfile.TemporaryDirectory() as scratch:
        faults = {"haproxy": check_haproxy, "systemd": check_systemd}[kind](program, arena, folder, scratch)
    print("\n".join(faults) or "%s: no faults" % kind)
    return 1 if faults else 0


if __name__ == "__main__":
    sys.exit(main())
