#!/usr/bin/env python3
"""Checks the manual page, the completion scripts and the colours of wirelens: check_pages.py WIRELENS PAGES"""
import os
import pty
import re
import shutil
import subprocess
import sys
import unittest

WIRELENS, PAGES = sys.argv[1:3]
ENVIRONMENT = {**os.environ, "PATH": os.path.dirname(WIRELENS) + os.pathsep + os.environ["PATH"], "TERM": "xterm"}
ENVIRONMENT.pop("NO_COLOR", None)


def wirelens(*arguments):
    return subprocess.run([WIRELENS, *arguments], stdout=subprocess.PIPE, stderr=subprocess.STDOUT, text=True,
                          stdin=subprocess.DEVNULL, env=ENVIRONMENT).stdout


def commands():
    return re.findall(r"^  wirelens ([a-z]+)", wirelens("help"), re.MULTILINE)


def options(command):
    return re.findall(r"^  (--[a-z-]+)", wirelens(command, "--help"), re.MULTILINE)


def completed(*words):
    """What bash suggests for the last word."""
    line = " ".join(f"'{word}'" for word in words)
    script = f"source '{PAGES}/wirelens'; COMP_WORDS=({line}); COMP_CWORD={len(words) - 1}; _wirelens; " \
             'printf "%s\\n" "${COMPREPLY[@]}"'
    run = subprocess.run(["bash", "--norc", "-c", script], stdout=subprocess.PIPE, stderr=subprocess.PIPE, text=True,
                         env=ENVIRONMENT)
    assert run.stderr == "", run.stderr
    return run.stdout.split()


def on_a_terminal(*arguments, environment=None):
    """What a command prints where its output and its errors are a terminal."""
    leader, follower = pty.openpty()
    process = subprocess.Popen([WIRELENS, *arguments], stdin=subprocess.DEVNULL, stdout=follower, stderr=follower,
                               env=environment or ENVIRONMENT)
    os.close(follower)
    text = b""
    while True:
        try:
            piece = os.read(leader, 65536)
        except OSError:
            break
        if not piece:
            break
        text += piece
    os.close(leader)
    process.wait()
    return text.decode()


class Manual(unittest.TestCase):
    def test_has_every_command_and_option(self):
        with open(os.path.join(PAGES, "wirelens.1"), encoding="utf-8") as file:
            page = file.read().replace("\\-", "-")
        self.assertGreater(len(commands()), 5)
        for command in commands():
            self.assertIn(f'.SS "wirelens {command}', page)
            for option in options(command):
                self.assertIn(f"\\fB{option}\\fR", page)

    @unittest.skipUnless(shutil.which("groff"), "no groff")
    def test_is_a_page_without_a_warning(self):
        run = subprocess.run(["groff", "-man", "-ww", "-Tutf8", "-z", os.path.join(PAGES, "wirelens.1")],
                             stderr=subprocess.PIPE, text=True)
        self.assertEqual((run.returncode, run.stderr), (0, ""))


class Completion(unittest.TestCase):
    def test_commands(self):
        self.assertEqual(completed("wirelens", "sch"), ["schema"])
        self.assertEqual(set(completed("wirelens", "")), {*commands(), "--help", "--version"})
        self.assertEqual(completed("wirelens", "help", "sch"), ["schema"])

    def test_options_are_those_of_the_help(self):
        for command in commands():
            self.assertEqual(set(completed("wirelens", command, "--")), {*options(command), "--help"}, command)

    def test_values(self):
        self.assertEqual(completed("wirelens", "schema", "CCmdServerInfoR"),
                         ["CCmdServerInfoResponse", "CCmdServerInfoRequest"])
        self.assertEqual(completed("wirelens", "decode", "--class", "CCmdServerEchoR"), ["CCmdServerEchoReply"])
        self.assertEqual(completed("wirelens", "generate", "ty"), ["typescript"])
        self.assertEqual(completed("wirelens", "help", "--completion", ""), ["bash", "zsh"])
        self.assertEqual(completed("wirelens", "decode", "--id", ""), [])

    def test_files(self):
        page = os.path.join(PAGES, "wirelens.1")
        for words in (["decode"], ["decode", "--packets"], ["decode", "--id", "0x1000"], ["decode", "-", "x"], ["diff"],
                      ["diff", "x"], ["generate", "python"]):
            self.assertIn(page, completed("wirelens", *words, page[:-1]), words)

    @unittest.skipUnless(shutil.which("zsh"), "no zsh")
    def test_zsh_takes_the_script(self):
        run = subprocess.run(["zsh", "-n", os.path.join(PAGES, "_wirelens")], stderr=subprocess.PIPE, text=True)
        self.assertEqual((run.returncode, run.stderr), (0, ""))


class Colours(unittest.TestCase):
    def test_are_on_a_terminal_only(self):
        for arguments in (["--help"], ["decode", "--help"], ["decode", "--wrong"], ["schema", "Unknown"],
                          ["explain", "CCmdServerEcho", "0002"]):
            self.assertNotIn("\x1b", wirelens(*arguments), arguments)
            self.assertIn("\x1b", on_a_terminal(*arguments), arguments)

    def test_can_be_turned_off(self):
        for name, value in (("NO_COLOR", "1"), ("TERM", "dumb")):
            self.assertNotIn("\x1b", on_a_terminal("--help", environment={**ENVIRONMENT, name: value}), name)


if __name__ == "__main__":
    unittest.main(argv=sys.argv[:1])
