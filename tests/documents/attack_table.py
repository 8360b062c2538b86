#!/usr/bin/env python3
"""attack_table.py [--write] CTEST BUILD_DIRECTORY HOSTILE_TESTS DOCUMENT

The section "The table of attacks" of a document is what the test program prints, and each group of the table is a
test of ctest. With --write the section is brought up to date instead.
"""
import json
import re
import subprocess
import sys

HEADING = "## The table of attacks\n"
INTRODUCTION = """
What a server, a text or a system may do to the program, and what the program does about it. Each row is played against
the built executable. Unless the row kills it, the program must afterwards answer the next requests, a call to an honest
server among them, end with status 0 at the end of its input, and have written nothing to its standard error; and the
server must have seen exactly the commands that the row expects. The table is printed by the tests themselves
(`tests/documents/attack_table.py --write`), and a test fails when it is out of date.

"""


def output(*command):
    return subprocess.run(command, check=True, capture_output=True, text=True).stdout


def existing_tests(ctest, directory):
    listing = output(ctest, "--test-dir", directory, "--show-only=json-v1")
    return {test["name"] for test in json.loads(listing)["tests"]}


def split_at_section(text):
    """What stands before the section, the section, and what stands behind it."""
    begin = text.find(HEADING)
    if begin < 0:
        return text.rstrip("\n") + "\n\n", "", ""
    end = text.find("\n## ", begin + len(HEADING))
    return (text[:begin], text[begin:], "") if end < 0 else (text[:begin], text[begin:end + 1], text[end + 1:])


def main():
    arguments = [argument for argument in sys.argv[1:] if argument != "--write"]
    ctest, directory, program, document = arguments
    table = output(program, "--table")
    with open(document, encoding="utf-8") as file:
        before, present, behind = split_at_section(file.read())
    section = HEADING + INTRODUCTION + table + ("\n" if behind else "")
    if "--write" in sys.argv:
        with open(document, "w", encoding="utf-8") as file:
            file.write(before + section + behind)
        return
    groups = re.findall(r"^Shown by `([\w.]+)`", table, re.MULTILINE)
    existing = existing_tests(ctest, directory)
    missing = [group for group in groups if group not in existing]
    for group in missing:
        print(f"the group {group} is no test of ctest")
    if present != section:
        print(f"the table in {document} is not that of the tests; bring it up to date with --write")
    sys.exit(1 if missing or present != section or not groups else 0)


main()
