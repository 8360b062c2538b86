#!/usr/bin/env python3
"""attack_table.py [--write] CTEST BUILD_DIRECTORY HOSTILE_TESTS DOCUMENT

The document is the introduction below and what the test program prints, and each group of the table is a test of
ctest. With --write the document is brought up to date instead.
"""
import json
import re
import subprocess
import sys

INTRODUCTION = """# The table of attacks

What a server, a text or a system may do to the program, and what the program does about it. Each row is played
against the built executable, and the server must have seen exactly the commands that the row expects. Afterwards the
program, unless the row kills it, must

- answer the next requests, a call to an honest server among them;
- end with status 0 at the end of its input;
- have written nothing to its standard error.

The HTTP endpoint is attacked in a small program of the tests, which runs it with a token.

The tests print this table (`tests/documents/attack_table.py --write`). A test fails when it is out of date.

"""


def output(*command):
    return subprocess.run(command, check=True, capture_output=True, text=True).stdout


def existing_tests(ctest, directory):
    listing = output(ctest, "--test-dir", directory, "--show-only=json-v1")
    return {test["name"] for test in json.loads(listing)["tests"]}


def main():
    ctest, directory, program, document = (argument for argument in sys.argv[1:] if argument != "--write")
    table = output(program, "--table")
    if "--write" in sys.argv:
        with open(document, "w", encoding="utf-8") as file:
            file.write(INTRODUCTION + table)
        return
    with open(document, encoding="utf-8") as file:
        is_current = file.read() == INTRODUCTION + table
    groups = re.findall(r"^Shown by `([\w.]+)`", table, re.MULTILINE)
    missing = set(groups) - existing_tests(ctest, directory)
    for group in sorted(missing):
        print(f"the group {group} is no test of ctest")
    if not is_current:
        print(f"{document} is not the table of the tests; bring it up to date with --write")
    sys.exit(1 if missing or not is_current or not groups else 0)


main()
