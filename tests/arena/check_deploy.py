"""Checks the files of examples/arena/deploy by the programs that read them.

  check_deploy.py haproxy|systemd|kubernetes ARENA FOLDER

Also checks that a damaged copy is refused, so that the check can fail, that each server has a unit with a port of its
own, and that `arena` has each option that a unit or manifest uses. Returns 77 where the program is missing.
"""
import glob
import os
import re
import shutil
import subprocess
import sys
import tempfile

try:
    import yaml
except ImportError:
    yaml = None

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


def check_deployment(arena, deployment, services):
    """The faults of one manifest: options that arena lacks, ports and labels that do not match, missing probes."""
    faults = []
    labels = deployment["spec"]["template"]["metadata"]["labels"]
    pod = deployment["spec"]["template"]["spec"]
    (container,) = pod["containers"]
    role, *words = container["args"]
    options = dict(word.split("=", 1) for word in words)
    known = run([arena, role, "--help"])
    # A list of all roles, if there is no such role.
    if known.returncode != 0 or role not in ROLES:
        return ["there is no role " + role]
    faults += ["%s has no option %s" % (role, option) for option in options if option + " " not in known.stdout]
    variables = {variable["name"] for variable in container.get("env", [])}
    faults += ["%s does not define %s" % (role, name) for name in re.findall(r"\$\((\w+)\)", " ".join(words))
               if name not in variables]
    port = int(options.get("--port", 0))
    if [entry["containerPort"] for entry in container["ports"]] != [port]:
        faults.append("%s listens on another port than its container" % role)
    if deployment["spec"]["selector"]["matchLabels"] != labels:
        faults.append("%s does not select its pods" % role)
    for service in services.values():
        if service["spec"]["selector"] == labels and service["spec"]["ports"][0]["targetPort"] != port:
            faults.append("the service of %s has another port" % role)
    if role == "registry":
        return faults
    for probe, page in (("livenessProbe", "healthz"), ("readinessProbe", "readyz")):
        address = "http://127.0.0.1:%s/%s" % (options.get("--http-port"), page)
        if container[probe]["exec"]["command"][-1] != address:
            faults.append("the %s of %s does not ask %s" % (probe, role, address))
    name, _, port = options["--registry"].partition(":")
    if name not in services or services[name]["spec"]["ports"][0]["port"] != int(port):
        faults.append("%s has no service for --registry" % role)
    pause = int(container["lifecycle"]["preStop"]["exec"]["command"][1])
    drain = re.search(r"--drain-time .*\((\d+)\)", known.stdout)
    if pod["terminationGracePeriodSeconds"] <= pause + int(drain.group(1)) / 1000:
        faults.append("%s has no time to drain" % role)
    return faults


def find_kubernetes_faults(arena, text):
    try:
        documents = list(yaml.safe_load_all(text))
        services = {each["metadata"]["name"]: each for each in documents if each["kind"] == "Service"}
        deployments = [each for each in documents if each["kind"] == "Deployment"]
        faults = [fault for each in deployments for fault in check_deployment(arena, each, services)]
        roles = {each["metadata"]["name"] for each in deployments}
        return faults + ["no deployment of " + role for role in sorted(ROLES) if "arena-" + role not in roles]
    except (yaml.YAMLError, KeyError, TypeError, ValueError) as fault:
        return ["not as expected: %r" % fault]


def check_kubernetes(_program, arena, folder, _scratch):
    with open(os.path.join(folder, "kubernetes.yaml"), encoding="utf-8") as source:
        text = source.read()
    damages = (("--greet-at=", "--greet="), ("containerPort: 8102", "containerPort: 8103"), ("/readyz", "/ready"),
               ("targetPort: 7000", "targetPort: 7001"), ("Seconds: 30", "Seconds: 10"), ("- sport", "- sports"),
               ("--registry=arena-registry", "--registry=registry"), ("name: ARENA_DB", "name: DB"), ("args:", "args"))
    return find_kubernetes_faults(arena, text) + [
        "'%s' is not noticed" % after for before, after in damages
        if before not in text or not find_kubernetes_faults(arena, text.replace(before, after))]


CHECKS = {"haproxy": check_haproxy, "systemd": check_systemd, "kubernetes": check_kubernetes}


def main():
    kind, arena, folder = sys.argv[1:4]
    program = {"haproxy": shutil.which("haproxy") or shutil.which("/usr/sbin/haproxy"),
               "systemd": shutil.which("systemd-analyze"),
               "kubernetes": yaml}[kind]
    if not program:
        print("the program is missing")
        return SKIPPED
    with tempfile.TemporaryDirectory() as scratch:
        faults = CHECKS[kind](program, arena, folder, scratch)
    print("\n".join(faults) or "%s: no faults" % kind)
    return 1 if faults else 0


if __name__ == "__main__":
    sys.exit(main())
