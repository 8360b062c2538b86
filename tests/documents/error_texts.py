#!/usr/bin/env python3
"""error_texts.py SOURCES DOCUMENT

Every error text of the sources stands in the tables of the document, and every text of the tables in the
sources. In the tables a text is the first cell, in backticks, with "…" for what varies.
"""
import pathlib
import re
import sys

# Files in which every text that begins like a sentence is an error text.
ALL_TEXTS = ("IMAPError.cpp", "SecretServiceStatusLinux.cpp", "KeychainStore.cpp", "SafetyPolicy.cpp")
# Elsewhere it is the first text within one of these calls.
MAKERS = ("ToolCallResult::error", "printError", "refusal", "fail", "unexpectedResponse", "invalidArgument",
          "connectionFailed", "AppLogger::error", "JSONRPC::failure", "failure", "invalid", "noBody")
# Made by such a call without being an error; or only the frame of another text.
OTHERS = ("# Add the block", "# (This output", "No error.", "failed:", "keychain error", "error:",
          "cannot ", "an object", "true or false", "an integer", "a text", "a date", "a known language", "port")
LITERALS = r'((?:"(?:[^"\\\n]|\\.)*"\s*)+)'


def spoken(literals):
    text = "".join(re.findall(r'"((?:[^"\\]|\\.)*)"', literals))
    return re.sub(r"\\(.)", lambda match: {"n": "\n"}.get(match[1], match[1]), text).strip("\n")


def code_of(path):
    return re.sub(r"^\s*//.*$|^#include.*$", "", path.read_text(encoding="utf-8"), flags=re.M)


def error_texts(files):
    for path, code in files.items():
        if path.name in ALL_TEXTS:
            yield from (text for text in map(spoken, re.findall(LITERALS, code)) if re.match(r"[A-Z].* ", text))
        for maker in MAKERS:
            for call in re.finditer(rf"\b{maker}\(([^;{{}}]*)", code):
                first = re.search(LITERALS, call[1])
                if first and spoken(first[1]).strip(" :"):
                    yield spoken(first[1])


def main():
    sources, document = map(pathlib.Path, sys.argv[1:])
    files = {path: code_of(path) for path in sorted(sources.rglob("*")) if path.suffix in (".h", ".cpp")}
    everything = " ".join(spoken(text) for code in files.values() for text in re.findall(LITERALS, code))
    cells = re.findall(r"^\| `([^`]+)` \|", document.read_text(encoding="utf-8"), flags=re.M)
    told = [cell.split("…") for cell in cells]
    wanted = {text.strip() for text in error_texts(files)}
    wanted = {text for text in wanted if not text.startswith(OTHERS)}

    problems = [f"the page tells of \"{part.strip()}\", which the program does not say"
                for parts in told for part in parts if len(part) > 3 and part.strip() not in everything]
    problems += [f"the page does not tell of \"{text}\"" for text in sorted(wanted)
                 if not any(parts[0].strip(" ") and text.strip().startswith(parts[0].strip()) for parts in told)]
    if len(wanted) < 30 or len(told) < 30:
        problems.append("there is next to nothing to compare")
    print("\n".join(problems))
    sys.exit(1 if problems else 0)


main()
