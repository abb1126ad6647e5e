#!/usr/bin/env python3
"""The dashboard, the alerts and the live page of arena, against what its roles serve.

  check_monitoring.py page ARENA [--udp] [--screenshots FOLDER]    exits with 77 where there is no Chromium
  check_monitoring.py names ARENA
  check_monitoring.py rules ARENA                                  exits with 77 where there is no promtool
"""
import base64
import http.client
import json
import os
import re
import shutil
import subprocess
import sys

import stage

sys.path.insert(0, os.path.join(os.path.dirname(os.path.abspath(__file__)), "..", "docs"))
from browser import Browser, path_of_browser  # noqa: E402

ROOT = os.path.join(os.path.dirname(os.path.abspath(__file__)), "..", "..", "examples", "arena")
# Those of Prometheus itself.
NOT_OURS = {"up"}
FAULTS = []
SCREENSHOTS = []


def text_of(*path):
    with open(os.path.join(ROOT, *path), encoding="utf-8") as file:
        return file.read()


def expect(what, actual, wanted):
    if actual != wanted:
        FAULTS.append(f"{what}: {actual!r}, expected {wanted!r}")


def end():
    if FAULTS:
        raise AssertionError("\n".join(FAULTS))


def server(play, role, *words):
    """A role with HTTP: the process, its address and its HTTP port."""
    process = play.start(role, "--port", "0", "--http-port", "0", *words)
    http_port = process.expect(r"HTTP on 127\.0\.0\.1:(\d+)").group(1)
    address = "127.0.0.1:" + process.expect(r"^listening on port (\d+)$").group(1)
    return process, address, int(http_port)


def fetch(port, path):
    connection = http.client.HTTPConnection("127.0.0.1", port, timeout=stage.systems.PATIENCE)
    connection.request("GET", path)
    answer = connection.getresponse()
    body = answer.read().decode()
    connection.close()
    return answer, body


def names_of(text):
    """The names of all samples that these figures can have, by the types of their families."""
    names = set()
    for name, kind in re.findall(r"^# TYPE (\S+) (\w+)$", text, re.MULTILINE):
        ends = {"counter": ["_total"], "histogram": ["_bucket", "_count", "_sum"]}.get(kind, [""])
        names.update(name + end for end in ends)
    return names


def names_of_expression(expression):
    """Words that are names of figures: those outside of braces and texts, with a known start."""
    plain = re.sub(r'"[^"]*"|\{[^}]*\}', "", expression)
    return set(re.findall(r"\b(?:commonground|process|arena)_\w+|\bup\b", plain))


def used_names():
    dashboard = json.loads(text_of("monitoring", "dashboard.json"))
    expressions = [target["expr"] for panel in dashboard["panels"] for target in panel["targets"]]
    expressions += [each["query"]["query"] for each in dashboard["templating"]["list"] if isinstance(each["query"], dict)]
    used = {"dashboard.json": set().union(*map(names_of_expression, expressions))}
    used["alerts.yml"] = names_of_expression(text_of("monitoring", "alerts.yml"))
    # The script adds the last part of two kinds of names.
    script = text_of("page", "page.js")
    kinds = re.search(r'\["received", "sent", "refused"\]', script)
    expect("the kinds of commands in the script", bool(kinds), True)
    written = set(re.findall(r"\b(?:commonground|process|arena)_\w+", script)) - {"commonground_commands_"}
    buckets = set(re.findall(r'percentile\(now, before, "(\w+)"\)', script))
    expect("the histograms of the script", len(buckets), 2)
    used["page.js"] = (written - buckets) | {name + "_bucket" for name in buckets} | {
        f"commonground_commands_{kind}_total" for kind in ("received", "sent", "refused")}
    return used


def names(play, _):
    """Each name in the dashboard, the alerts and the page is one that a role serves; no role is without its page."""
    served = set()
    roles = ["zone", "game", "sport", "lesson", "device"]
    if "platform" in subprocess.run([play.arena, "--help"], capture_output=True, text=True).stdout:
        roles.append("platform")
    for role in roles:
        words = ["--db", "sqlite://" + os.path.join(play.folder, "names.db")] if role == "platform" else []
        process, _, port = server(play, role, *words)
        _, figures = fetch(port, "/metrics")
        served |= names_of(figures)
        expect(role + " names itself", f'arena_role{{role="{role}"}} 1' in figures, True)
        for path, kind, start in (("/", "text/html; charset=utf-8", "<!doctype html>"),
                                  ("/page.css", "text/css; charset=utf-8", ":root"),
                                  ("/page.js", "text/javascript; charset=utf-8", '"use strict"')):
            answer, body = fetch(port, path)
            expect(f"{role}{path}", (answer.status, answer.getheader("Content-Type"), body.startswith(start)),
                   (200, kind, True))
        play.stop(process)
    total = 0
    for file, used in used_names().items():
        missing = used - served - NOT_OURS
        if "platform" not in roles:
            missing = {name for name in missing if not name.startswith("arena_database_")}
        expect(file + " names figures that no role serves", sorted(missing), [])
        expect(file + " names figures", len(used) > 5, True)
        total += len(used)
    print(f"{total} names used, {len(served)} served")
    end()


def rules(play, _):
    """Prometheus can read the alerts, and each fires when it should."""
    if not shutil.which("promtool"):
        raise stage.Skipped("no promtool")
    folder = os.path.join(ROOT, "monitoring")
    for words in (["check", "rules", "alerts.yml"], ["test", "rules", "alerts_test.yml"]):
        run = subprocess.run(["promtool", *words], cwd=folder, stdout=subprocess.PIPE, stderr=subprocess.STDOUT,
                             text=True)
        expect("promtool " + " ".join(words), (run.returncode, run.stdout if run.returncode else ""), (0, ""))
    alerts = set(re.findall(r"- alert: (\w+)", text_of("monitoring", "alerts.yml")))
    tested = set(re.findall(r"alertname: (\w+)\n +exp_alerts:", text_of("monitoring", "alerts_test.yml")))
    expect("alerts that no test lets fire", sorted(alerts - tested), [])
    expressions = [target["expr"].replace("$__rate_interval", "1m").replace("$instance", ".*")
                   for panel in json.loads(text_of("monitoring", "dashboard.json"))["panels"]
                   for target in panel["targets"]]
    document = json.dumps({"groups": [{"name": "dashboard", "rules": [
        {"record": f"panel:{number}", "expr": expression} for number, expression in enumerate(expressions)]}]})
    path = os.path.join(play.folder, "dashboard.yml")
    with open(path, "w", encoding="utf-8") as file:
        file.write(document)
    run = subprocess.run(["promtool", "check", "rules", path], stdout=subprocess.PIPE, stderr=subprocess.STDOUT, text=True)
    expect("the expressions of the dashboard", (run.returncode, run.stdout if run.returncode else ""), (0, ""))
    end()


def open_page(browser, port, width=1280, scheme="light"):
    browser.call("Emulation.setDeviceMetricsOverride", width=width, height=900, deviceScaleFactor=1,
                 mobile=width < 600)
    browser.call("Emulation.setEmulatedMedia", features=[{"name": "prefers-color-scheme", "value": scheme}])
    browser.call("Page.navigate", url="about:blank")
    browser.call("Page.navigate", url=f"http://127.0.0.1:{port}/")
    wait(browser, "document.readyState === 'complete' && document.querySelectorAll('#figures dd').length > 4")


def wait(browser, expression, turns=600):
    """Asks until it is true, with a time of the page's own between two questions."""
    for _ in range(turns):
        if browser.run(f"new Promise(done => setTimeout(() => done(Boolean({expression})), 50))"):
            return
    raise AssertionError("never true: " + expression)


def keep(browser, name):
    if SCREENSHOTS:
        shot = browser.call("Page.captureScreenshot", captureBeyondViewport=True)["data"]
        with open(os.path.join(SCREENSHOTS[0], name + ".png"), "wb") as file:
            file.write(base64.b64decode(shot))


def page(play, arguments):
    """A race of eight on the page of its game server, and the pages of other roles."""
    if not path_of_browser():
        raise stage.Skipped("no Chromium")
    zone, address, zone_port = server(play, "zone")
    game, _, game_port = server(play, "game", "--zone", address)
    game.expect("Registered at the zone")
    browser = Browser(play.folder)
    try:
        open_page(browser, game_port)
        wait(browser, "document.querySelector('#races p')")
        expect("no race yet", browser.run("document.querySelector('#races').innerText"), "No race now.")
        wait(browser, "document.getElementById('status').textContent === 'ready, live'")
        # Three of them by the zone's tunnel. Ten strides of two seconds, which the checks up to the end need not reach.
        play.play("race", address, "--players", "8", "--race-pause", "2000")
        moved = "[...document.querySelectorAll('.track')].filter(track => track.ariaValueNow > 10).length"
        wait(browser, moved + " === 8")
        expect("lanes", browser.run("document.querySelectorAll('.lane').length"), 8)
        expect("state", browser.run("document.querySelector('.race h3 span').textContent"), "running")
        wait(browser, "document.querySelector('#commands').innerText.includes('CCmdGS_PawnRunning')")
        keep(browser, "game")
        figures = dict(browser.run("[...document.querySelectorAll('#figures > div')].map(box => "
                                   "[box.querySelector('dt').textContent, box.querySelector('dd').textContent])"))
        expect("races", (figures.get("Races"), figures.get("Pawns"), figures.get("Connections")), ("1", "8", "5"))
        expect("memory", bool(re.match(r"\d.* MiB$", figures.get("Memory", ""))), True)
        # Keyboard: one tab to the button, p anywhere.
        browser.key("Tab", 9)
        expect("Tab focuses", browser.run("document.activeElement.id"), "pause")
        expect("the focus is visible", browser.run("getComputedStyle(document.activeElement).outlineStyle"), "solid")
        browser.key("p", 80)
        expect("p pauses", browser.run("[document.getElementById('pause').ariaPressed, "
                                       "document.getElementById('status').textContent]"), ["true", "paused"])
        browser.key("p", 80)
        wait(browser, "document.getElementById('status').textContent === 'ready, live'")
        # A name of a player is text, whatever it is.
        browser.run("""showRaces([{id: "0", name: "<b>", state: "over", length: 100,
            pawns: [{name: "<img src=x onerror=alert(1)>", distance: 50, place: 1, left: true}]}])""")
        expect("names are text", browser.run("[document.querySelectorAll('#races img, #races b').length, "
                                             "document.querySelector('.lane span').textContent]"),
               [0, "<img src=x onerror=alert(1)>"])
        # No script in the text of the page, none of elsewhere.
        expect("inline scripts do not run", browser.run("""(() => { const script = document.createElement("script");
            script.textContent = "window.ran = true"; document.head.append(script); return Boolean(window.ran); })()"""),
               False)
        refused = [each for each in browser.complaints if "Content Security Policy" in each]
        expect("the refused script is the only complaint of this kind", len(refused), 1)
        browser.complaints = [each for each in browser.complaints if each not in refused]
        check_widths(browser, game_port, zone_port)
        check_polling(browser, game_port)
        own = tuple(f"loads http://127.0.0.1:{port}/" for port in (game_port, zone_port))
        expect("complaints of the console, and loads from elsewhere",
               [each for each in browser.complaints if not each.startswith(own)], [])
        play.stop(zone)
        game.end()
        wait(browser, "document.getElementById('status').textContent === 'no answer from the process'")
    finally:
        browser.close()
    end()


def check_widths(browser, game_port, zone_port):
    colours = []
    for port, name, width, scheme in ((game_port, "phone", 390, "dark"), (zone_port, "zone", 1280, "light")):
        open_page(browser, port, width, scheme)
        wait(browser, "document.querySelector('#ends tr') && document.querySelector('#figures svg')")
        expect(f"overflow at {width}", browser.run("document.documentElement.scrollWidth"), width)
        colours.append(browser.run("getComputedStyle(document.body).backgroundColor"))
        keep(browser, name)
    expect("dark is dark", colours[0] != colours[1], True)
    expect("the zone has its name", browser.run("document.title"), "arena zone")
    expect("and no races", browser.run("document.getElementById('racing').hidden"), True)


def check_polling(browser, port):
    """Without the event stream the figures still come."""
    script = browser.call("Page.addScriptToEvaluateOnNewDocument", source="delete window.EventSource;")
    open_page(browser, port)
    wait(browser, "document.getElementById('status').textContent === 'figures every two seconds'")
    expect("races by figures", browser.run("document.querySelector('#races').innerText").startswith("1 races with 8"),
           True)
    browser.call("Page.removeScriptToEvaluateOnNewDocument", identifier=script["identifier"])


if __name__ == "__main__":
    if "--screenshots" in sys.argv:
        place = sys.argv.index("--screenshots")
        SCREENSHOTS.append(sys.argv[place + 1])
        del sys.argv[place:place + 2]
    sys.exit(stage.main({"page": page, "names": names, "rules": rules}))
