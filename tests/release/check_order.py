#!/usr/bin/env python3
"""Swaps two fields of one class in a copy of the released document: the gate has to fail with a sentence that names
class, field and direction. check_order.py WIRELENS DOCUMENT FOLDER"""
import json
import os
import subprocess
import sys

CLASS = "CCmdServerInfoResponse"
FIELDS = ("m_MaxOnlineNum", "m_OnlineCount")


def main():
    wirelens, released, folder = sys.argv[1:]
    with open(released, encoding="utf-8") as file:
        document = json.load(file)
    fields = next(each["fields"] for each in document["classes"] if each["class"] == CLASS)
    places = [next(i for i, field in enumerate(fields) if field.get("name") == name) for name in FIELDS]
    fields[places[0]], fields[places[1]] = fields[places[1]], fields[places[0]]
    os.makedirs(folder, exist_ok=True)
    changed = os.path.join(folder, "another_order.json")
    with open(changed, "w", encoding="utf-8") as file:
        json.dump(document, file)
    run = subprocess.run([wirelens, "diff", released, changed], stdout=subprocess.PIPE, text=True)
    print(run.stdout, end="")
    sentence = next((line for line in run.stdout.splitlines() if line.startswith("breaks")), "")
    missing = [word for word in (CLASS, "m_OnlineCount", "old reads new", "new reads old") if word not in sentence]
    same = subprocess.run([wirelens, "diff", released, released], stdout=subprocess.DEVNULL)
    if run.returncode != 1 or missing or same.returncode != 0:
        print(f"exit code {run.returncode}, and {same.returncode} without a difference; not in the sentence: {missing}")
        return 1
    return 0


if __name__ == "__main__":
    sys.exit(main())
