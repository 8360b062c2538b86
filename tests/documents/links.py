#!/usr/bin/env python3
"""links.py ROOT

Every link of the documents that leads to a file or a heading of the project arrives there.
"""
import pathlib
import re
import sys


def documents(root):
    return sorted([*root.glob("*.md"), *root.glob("docs/*.md")])


def prose(document):
    """The text without its blocks of code."""
    text = re.sub(r"^```.*?^```", "", document.read_text(encoding="utf-8"), flags=re.M | re.S)
    return re.sub(r"^ {4}.*$", "", text, flags=re.M)


def anchors(document):
    """The headings as links name them: lower case, blanks as hyphens, no punctuation."""
    headings = re.findall(r"^#+ (.*)$", prose(document), flags=re.M)
    return {re.sub(r"[^\w\- ]", "", heading.lower()).replace(" ", "-") for heading in headings}


def links(document):
    return re.findall(r"\[[^\]]+\]\(([^)\s]+)\)", prose(document))


def problem(document, link):
    path, _, anchor = link.partition("#")
    target = (document.parent / path).resolve() if path else document
    if not target.exists():
        return f"{document}: {link} leads to no file"
    if anchor and anchor not in anchors(target):
        return f"{document}: {link} leads to no heading"
    return None


def main():
    root = pathlib.Path(sys.argv[1])
    local = [(document, link) for document in documents(root) for link in links(document)
             if not re.match(r"\w+:", link)]
    problems = [text for text in (problem(*pair) for pair in local) if text]
    if len(local) < 5:
        problems.append("there is next to nothing to follow")
    print("\n".join(problems))
    sys.exit(1 if problems else 0)


main()
