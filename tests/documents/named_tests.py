#!/usr/bin/env python3
"""named_tests.py CTEST BUILD_DIRECTORY DOCUMENT

Every test that the tables of a document name in their last column exists. A star stands for anything; a table
of tests (Table/Group.test/row) is named by Group.test.
"""
import fnmatch
import json
import re
import subprocess
import sys


def existing_tests(ctest, directory):
    listing = subprocess.run([ctest, "--test-dir", directory, "--show-only=json-v1"], check=True,
                             capture_output=True, text=True).stdout
    return [test["name"] for test in json.loads(listing)["tests"]]


def named_tests(document):
    with open(document, encoding="utf-8") as file:
        rows = [line.split("|") for line in file if line.startswith("|")]
    names = [name for row in rows if len(row) > 4 for name in re.findall(r"`([\w.*]+)`", row[-2])]
    return [name for name in names if "." in name or "*" in name]


def main():
    ctest, directory, document = sys.argv[1:]
    tests = existing_tests(ctest, directory)
    names = named_tests(document)
    missing = [name for name in names
               if not any(fnmatch.fnmatchcase(test, pattern) for test in tests
                          for pattern in (name, name + "/*", "*/" + name, "*/" + name + "/*"))]
    if not tests or not names:
        sys.exit("there is nothing to compare")
    for name in missing:
        print(f"{document} names {name}, which is no test")
    sys.exit(1 if missing else 0)


main()
