"""What the packaging tests share: where things lie, how commands are run, how claims are checked.

Each test is a program: test.py BUILD_DIRECTORY. It ends with status 0 when every claim held, and says which did
not. A missing tool is a failure.
"""

import json
import os
import pathlib
import re
import shutil
import subprocess
import sys
import tempfile

source = pathlib.Path(__file__).resolve().parents[2]
build = pathlib.Path(sys.argv[1]).resolve() if len(sys.argv) > 1 else None

_failures = []


def check(claim, holds, details=""):
    print(f"{'ok    ' if holds else 'FAILED'} {claim}" + (f"\n         {details}" if details and not holds else ""))
    if not holds:
        _failures.append(claim)


def check_equal(claim, actual, expected):
    check(claim, actual == expected, f"expected {expected!r}\n         but got {actual!r}")


def finish():
    sys.exit(1 if _failures else 0)


def need(tool, package):
    if not shutil.which(tool):
        sys.exit(f"error: {tool} is missing: install the package {package}")


def run(*words, **options):
    """Gives the finished process; its texts are captured, its input is empty."""
    return subprocess.run([str(word) for word in words], stdin=subprocess.DEVNULL, capture_output=True, text=True,
                          timeout=280, **options)


def output(*words, **options):
    """The standard output of a command that must succeed."""
    done = run(*words, **options)
    if done.returncode != 0:
        sys.exit(f"error: {' '.join(map(str, words))}: status {done.returncode}\n{done.stdout}{done.stderr}")
    return done.stdout


def documents():
    """What docs/ holds: the texts and their pictures. All of it is installed."""
    return sorted(str(path.relative_to(source)) for path in (source / "docs").rglob("*")
                  if path.suffix in (".md", ".svg", ".png"))


def temporary_directory():
    return tempfile.TemporaryDirectory(prefix="tw.", dir="/tmp")


def install(root, prefix, tree=build):
    """cmake --install of the build tree below `root`, as a packager does it."""
    output(os.environ.get("CMAKE_COMMAND", "cmake"), "--install", tree, "--prefix", prefix,
           env={**os.environ, "DESTDIR": str(root)})
    return pathlib.Path(root)


def program():
    path = build / "tarnwell"
    if not os.access(path, os.X_OK):
        sys.exit(f"error: the program is missing: {path}")
    return path


def version():
    """The one place in which the number stands."""
    return re.search(r"project\(tarnwell VERSION ([\d.]+)",
                     (source / "CMakeLists.txt").read_text(encoding="utf-8"))[1]


def command_words():
    """The commands that the program itself names in its usage."""
    usage = output(program(), "help")
    return re.findall(r"^  ([a-z-]+)  ", usage.partition("COMMANDS:")[2], re.MULTILINE)


def few_variables(home):
    """What an MCP client hands to a server, and the sanitizers' options. No keyring is asked: the bus is none."""
    kept = {name: value for name, value in os.environ.items() if name.endswith("SAN_OPTIONS")}
    return {"HOME": str(home), "PATH": os.environ["PATH"], "DBUS_SESSION_BUS_ADDRESS": f"unix:path={home}/none", **kept}


def initialize(command, home):
    """Starts a server as a client does and introduces itself; gives the results of initialize and tools/list."""
    messages = [
        {"jsonrpc": "2.0", "id": 0, "method": "initialize",
         "params": {"protocolVersion": "2025-06-18", "capabilities": {},
                    "clientInfo": {"name": "packaging", "version": "1"}}},
        {"jsonrpc": "2.0", "method": "notifications/initialized"},
        {"jsonrpc": "2.0", "id": 1, "method": "tools/list"},
    ]
    done = subprocess.run(command, input="".join(json.dumps(message) + "\n" for message in messages),
                          capture_output=True, text=True, timeout=60, env=few_variables(home))
    if done.returncode != 0:
        raise ValueError(f"{command} ended with status {done.returncode}: {done.stderr}")
    first, second = (json.loads(line) for line in done.stdout.splitlines())
    return first["result"], second["result"]
