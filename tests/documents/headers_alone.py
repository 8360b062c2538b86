#!/usr/bin/env python3
"""headers_alone.py SOURCES COMPILER [FLAG...]

Every header may be included more than once and compiles by itself. When a source file includes a header before
anything else, the build has shown that it does; the other headers are compiled here, as many at a time as the machine
has processors.
"""
import concurrent.futures
import os
import pathlib
import re
import subprocess
import sys


def first_includes(sources):
    """The first header of each source file that this system builds."""
    for source in sources.rglob("*.cpp"):
        if not source.stem.endswith("Apple"):
            first = re.search(r'^#include ["<](.*)[">]', source.read_text(encoding="utf-8"), re.MULTILINE)
            yield first.group(1) if first else ""


def compiles(compiler, sources, header):
    command = [*compiler, "-std=c++20", "-fsyntax-only", "-Wall", "-Wextra", "-Werror", f"-I{sources}", "-x", "c++", "-"]
    return subprocess.run(command, input=f'#include "{header}"\n', text=True, check=False).returncode == 0


def main():
    sources, compiler = pathlib.Path(sys.argv[1]), sys.argv[2:]
    texts = {str(path.relative_to(sources)): path.read_text(encoding="utf-8") for path in sources.rglob("*.h")}
    mistakes = [f"{header} does not begin with #pragma once" for header, text in texts.items()
                if not text.startswith("#pragma once\n")]
    others = sorted(texts.keys() - set(first_includes(sources)))
    with concurrent.futures.ThreadPoolExecutor(os.cpu_count()) as pool:
        results = pool.map(lambda header: compiles(compiler, sources, header), others)
        mistakes += [f"{header} does not compile alone" for header, good in zip(others, results) if not good]
    print(f"{len(texts)} headers, {len(others)} of them compiled here")
    sys.exit("\n".join(mistakes) if mistakes or not texts else 0)


main()
