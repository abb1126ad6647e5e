#!/usr/bin/env python3
"""Uses the page that wirelens docs prints in a headless browser: search, keyboard, width of a phone, console.

Usage: check_page.py WIRELENS    exits with 77 where there is no Chromium
"""
import json
import os
import re
import subprocess
import sys
import tempfile

sys.path.insert(0, os.path.dirname(os.path.abspath(__file__)))
from browser import Browser, path_of_browser  # noqa: E402

PHONE = 390
KEYS = {"ArrowDown": 40, "ArrowUp": 38, "ArrowRight": 39, "ArrowLeft": 37, "Enter": 13, "Escape": 27}
FAULTS = []


def expect(what, actual, wanted):
    if actual != wanted:
        FAULTS.append(f"{what}: {actual!r}, expected {wanted!r}")


def check_examples(wirelens, page):
    """The frames of the examples are those of their classes, by wirelens decode."""
    data = json.loads(re.search(r'<script type="application/json" id="data">(.*?)</script>', page, re.DOTALL)[1])
    whole = [entry for entry in data if entry["family"] == "command"
             and all(bytes.fromhex(piece[0]) for piece in entry["example"] if "…" not in piece[0])
             and not any("…" in piece[0] for piece in entry["example"])]
    frames = "".join(piece[0].replace(" ", "") for entry in whole for piece in entry["example"])
    run = subprocess.run([wirelens, "decode"], input=frames, capture_output=True, encoding="utf-8")
    lines = [json.loads(line) for line in run.stdout.splitlines()]
    expect("frames of examples", len(lines), len(whole))
    expect("enough commands have a short example", len(whole) > 150, True)
    for entry, line in zip(whole, lines):
        if "error" in line or line["class"] not in [entry["name"]] + entry.get("shares", []):
            FAULTS.append(f"the example of {entry['name']} decodes as {line.get('class')} {line.get('error')}")
    names = json.loads(subprocess.run([wirelens, "catalogue", "--json"], capture_output=True).stdout)
    expect("classes of the page", [entry["name"] for entry in data], [row["class"] for row in names])


def check_search(browser, url):
    browser.open(url, 1280, 800)
    browser.key("/")
    expect("/ focuses the search", browser.run("document.activeElement.id"), "query")
    options = "[...document.querySelectorAll('#results [role=option]')]"
    chosen = options + ".findIndex(option => option.getAttribute('aria-selected') === 'true')"
    for query, wanted in (("ech", "CCmdServerEcho"), ("mas", "CCmdMaskImage"), ("120", "CCmdServerEcho"),
                          ("0x19b", "CCmdMaskImage"), ("skeletoncount", "CCmdSkeletons")):
        browser.run("document.getElementById('query').value = ''")
        browser.type(query)
        found = browser.run(options + ".map(option => option.innerText.split('\\n')[0])")
        expect(f"{wanted} is found by {query}", wanted in found, True)
    browser.key("Escape", KEYS["Escape"])
    expect("Escape closes", browser.run("document.getElementById('results').hidden"), True)
    browser.type("ser")
    first = browser.run(options + "[0].innerText.split('\\n')[0]")
    third = browser.run(options + "[2].innerText.split('\\n')[0]")
    for key, place in (("ArrowDown", 1), ("ArrowDown", 2), ("ArrowUp", 1), ("ArrowDown", 2)):
        browser.key(key, KEYS[key])
        expect(key, browser.run(chosen), place)
    browser.key("Enter", KEYS["Enter"])
    browser.wait("!document.getElementById('class').hidden")
    expect("Enter opens the third", browser.run("document.querySelector('#class h1').innerText"), third)
    expect("and not the first", first != third, True)
    expect("the title", browser.run("document.title").startswith(third), True)
    browser.run("history.back()")
    browser.wait("document.getElementById('class').hidden")


def check_example(browser, url):
    browser.open(url + "#CCmdServerEcho", 1280, 800)
    explained = "document.querySelector('.explained').innerText"
    bytes_of = "[...document.querySelectorAll('.piece')].map(piece => piece.innerText)"
    expect("the example starts with its id", browser.run(bytes_of)[0], "0d 12")
    browser.run("document.querySelector('.piece').focus()")
    expect("a focused piece is explained", "id = 0x120d" in browser.run(explained), True)
    browser.key("ArrowRight", KEYS["ArrowRight"])
    expect("the arrow explains the next", "size word" in browser.run(explained), True)
    browser.point_at(".pieces li:last-child .piece")
    browser.wait(explained + ".includes('m_Data = ')")


def check_layout(browser, url):
    for width, scheme in ((PHONE, "light"), (1280, "dark")):
        browser.open(url, width, 844, scheme)
        expect(f"the prose overflows at {width}", browser.run("document.documentElement.scrollWidth"),
               browser.run("document.documentElement.clientWidth"))
        wide = browser.run("""
            $("prose").hidden = true, $("class").hidden = false,
            document.body.classList.add("has-class"),
            data.filter(entry => {
                showClass(entry);
                return document.documentElement.scrollWidth > document.documentElement.clientWidth;
            }).map(entry => entry.name)""")
        expect(f"classes that overflow at {width}", wide, [])
    dark = browser.run("getComputedStyle(document.body).backgroundColor")
    browser.open(url, 1280, 844, "light")
    expect("dark is dark", dark != browser.run("getComputedStyle(document.body).backgroundColor"), True)
    expect("words without an explanation", browser.run(
        "[...new Set(data.flatMap(entry => entry.fields.flatMap(field => field.words || [])))]"
        ".filter(word => !WORDS[word])"), [])
    expect("rows of every class", browser.run("""
        data.filter(entry => { showClass(entry); return entry.fields.length
            !== document.querySelectorAll('#class .fields tbody tr:not(.quirk)').length; }).map(entry => entry.name)"""),
        [])
    expect("headings out of order", browser.run("""
        [...document.querySelectorAll('h1, h2, h3')].length > 10
        && document.querySelectorAll('main #prose h1').length === 1"""), True)


def main():
    if len(sys.argv) != 2:
        print(__doc__)
        return 2
    if not path_of_browser():
        print("no Chromium")
        return 77
    page = subprocess.run([sys.argv[1], "docs"], check=True, capture_output=True, encoding="utf-8").stdout
    check_examples(sys.argv[1], page)
    with tempfile.TemporaryDirectory() as folder:
        path = os.path.join(folder, "protocol.html")
        with open(path, "w", encoding="utf-8") as file:
            file.write(page)
        browser = Browser(folder)
        try:
            for check in (check_search, check_example, check_layout):
                check(browser, "file://" + path)
            expect("complaints of the console, and loads", browser.complaints, [])
        finally:
            browser.close()
    for fault in FAULTS:
        print(fault)
    print("the page works" if not FAULTS else f"{len(FAULTS)} faults")
    return 1 if FAULTS else 0


if __name__ == "__main__":
    sys.exit(main())
