#!/usr/bin/env python3
"""Runs the example service as an operator does, and checks what it prints, what it serves and how it ends.

Usage: check_service.py PROGRAM

The service is scraped, reloaded by SIGHUP and ended by SIGTERM. promtool, of the package prometheus, reads
the figures, and curl asks for them; where they are not installed, their parts are left out outside of continuous
integration (the variable CI).
"""
import http.client
import os
import re
import shutil
import signal
import socket
import subprocess
import sys
import tempfile

OPENMETRICS = "application/openmetrics-text; version=1.0.0; charset=utf-8"
PLAIN = "text/plain; version=0.0.4; charset=utf-8"


def expect(is_good, what):
    if not is_good:
        sys.exit(f"check_service: {what}")


def has_tool(name):
    if shutil.which(name):
        return True
    expect("CI" not in os.environ, f"{name} is not installed")
    print(f"{name} is not installed: left out")
    return False


def get(port, path, **headers):
    connection = http.client.HTTPConnection("127.0.0.1", port, timeout=60)
    connection.request("GET", path, headers=headers)
    response = connection.getresponse()
    body = response.read().decode()
    connection.close()
    return response.status, response.getheader("Content-Type"), body


def wait_for(service, lines, pattern):
    """The match of the first line that has the pattern."""
    for line in lines:
        found = re.search(pattern, line)
        if found:
            return found
    while True:
        line = service.stderr.readline()
        expect(line, f"no line '{pattern}' but\n{''.join(lines)}")
        lines.append(line)
        found = re.search(pattern, line)
        if found:
            return found


def check_metrics(port):
    status, kind, text = get(port, "/metrics")
    expect(status == 200 and kind == OPENMETRICS, f"/metrics gives {status} {kind}")
    expect(text.endswith("# EOF\n"), "no end of the figures")
    expect("\nexample_odd_echoes_total 0\n" in text, "no figure of the host")
    expect('\ncommonground_listener_connections{listener="echoes"} ' in text, "no figure of the port")
    expect(re.search(r"\ncommonground_tick_work_seconds_count [1-9]", text), "no tick was measured")
    status, kind, plain = get(port, "/metrics", Accept="text/plain")
    expect(status == 200 and kind == PLAIN, f"/metrics as plain text gives {status} {kind}")
    if has_tool("promtool"):
        run = subprocess.run(["promtool", "check", "metrics"], input=plain, capture_output=True, text=True)
        expect(run.returncode == 0 and not run.stdout and not run.stderr, f"promtool: {run.stdout}{run.stderr}\n{plain}")


def check_curl(port):
    if not has_tool("curl"):
        return
    url = f"http://127.0.0.1:{port}"
    run = subprocess.run(["curl", "--silent", "--show-error", "--max-time", "60", f"{url}/healthz", f"{url}/readyz",
                          f"{url}/readyz?a=b", "--next", "--silent", "--head", f"{url}/healthz"],
                         capture_output=True, text=True)
    expect(run.returncode == 0 and run.stdout.startswith("ok\nready\nready\nHTTP/1.1 200 OK\n"), f"curl: {run}")


def main():
    program = sys.argv[1]
    usage = subprocess.run([program, "--help"], capture_output=True, text=True)
    expect(usage.returncode == 0 and usage.stdout.startswith("usage: service [OPTION...]\nAnswers echoes.\n"), usage)
    expect("  --port NUMBER          the port to listen on (8000)\n" in usage.stdout, usage.stdout)
    expect(subprocess.run([program, "--none"], capture_output=True).returncode == 2, "no usage error")
    with tempfile.TemporaryDirectory() as folder:
        service = subprocess.Popen([program, "--port", "0", "--http-port", "0", "--log-folder", folder + "/"],
                                   stderr=subprocess.PIPE, text=True)
        lines = []
        try:
            http_port = int(wait_for(service, lines, r"HTTP on 127\.0\.0\.1:(\d+)$")[1])
            port = int(wait_for(service, lines, r"Listening on port (\d+)$")[1])
            socket.create_connection(("127.0.0.1", port), timeout=60).close()
            check_metrics(http_port)
            check_curl(http_port)
            expect(get(http_port, "/none")[0] == 404, "a page that does not exist")
            service.send_signal(signal.SIGHUP)
            wait_for(service, lines, "Reloaded$")
            service.send_signal(signal.SIGTERM)
            rest = service.communicate(timeout=60)[1]
        finally:
            service.kill()
            service.wait()
        expect(service.returncode == 0, f"the service ends with {service.returncode}")
        texts = [re.sub(r"^\d{4}-\d\d-\d\d \d\d:\d\d:\d\d\.\d{3} ", "", line)
                 for line in "".join(lines + [rest]).splitlines()]
        # The end of the connection above is logged, when the service sees it.
        texts = [text for text in texts if not text.startswith("[M] Connection with ")]
        expected = ["[M] Service On...", f"[M] HTTP on 127.0.0.1:{http_port}", f"[M] Listening on port {port}",
                    "[M] Reloaded", "[M] Draining for at most 10000 ms"]
        expect(texts == expected, f"the lines are {texts}")
        files = [open(os.path.join(folder, name), encoding="utf-8").read() for name in os.listdir(folder)]
        expect(all(line[4:] in "".join(files) for line in expected), f"the log files have {files}")
    print("the example service does what it says")


main()
