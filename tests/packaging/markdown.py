#!/usr/bin/env python3
"""The indented blocks of a Markdown text.

    markdown.py FILE [HEADING]    writes the blocks of the file, or those below that heading, each followed by a NUL
"""

import re
import sys
import textwrap


def blocks(text):
    """The indented blocks in their order, without their indentation and without blank lines. A block begins
    after a blank line (an indented line after text continues that text) and ends before a line of text."""
    found, block, previous = [], [], ""
    for line in [*text.replace("\t", "    ").splitlines(), "end"]:
        if line.startswith("    ") and (block or not previous.strip()):
            block.append(line)
        elif line.strip() and block:
            found.append(textwrap.dedent("\n".join(line for line in block if line.strip())))
            block = []
        previous = line
    return [text for text in found if text]


def section(text, heading):
    found = re.search(rf"^## {re.escape(heading)}\n(.*?)(?=^## |\Z)", text, re.MULTILINE | re.DOTALL)
    if not found:
        raise SystemExit(f"error: there is no heading: {heading}")
    return found[1]


if __name__ == "__main__":
    with open(sys.argv[1], encoding="utf-8") as file:
        text = file.read()
    for block in blocks(section(text, sys.argv[2]) if len(sys.argv) > 2 else text):
        sys.stdout.write(block + "\0")
