#!/usr/bin/env python3
"""cmake --install puts each file into its place, and what it puts there works."""

import os
import pathlib
import sys

from support import (build, check, check_equal, finish, install, output, run, source, temporary_directory)

EXPECTED = {
    "bin/tarnwell": 0o755,
    "share/bash-completion/completions/tarnwell": 0o644,
    "share/doc/tarnwell/CHANGELOG.md": 0o644,
    "share/doc/tarnwell/CONTRIBUTING.md": 0o644,
    "share/doc/tarnwell/LICENSE": 0o644,
    "share/doc/tarnwell/README.md": 0o644,
    "share/doc/tarnwell/docs/architecture.md": 0o644,
    "share/doc/tarnwell/docs/attacks.md": 0o644,
    "share/doc/tarnwell/docs/decisions.md": 0o644,
    "share/doc/tarnwell/docs/distance.svg": 0o644,
    "share/doc/tarnwell/docs/fuzzing.md": 0o644,
    "share/doc/tarnwell/docs/logs.md": 0o644,
    "share/doc/tarnwell/docs/macos.md": 0o644,
    "share/doc/tarnwell/docs/measurements.md": 0o644,
    "share/doc/tarnwell/docs/performance.md": 0o644,
    "share/doc/tarnwell/docs/performance.svg": 0o644,
    "share/doc/tarnwell/docs/safety.md": 0o644,
    "share/doc/tarnwell/docs/settings.md": 0o644,
    "share/doc/tarnwell/docs/troubleshooting.md": 0o644,
    "share/doc/tarnwell/docs/withholding.md": 0o644,
    "share/fish/vendor_completions.d/tarnwell.fish": 0o644,
    "share/man/man1/tarnwell.1": 0o644,
    "share/zsh/site-functions/_tarnwell": 0o644,
}

for prefix in ("/usr/local", "/opt/a place"):
    with temporary_directory() as directory:
        top = install(directory, prefix) / prefix.lstrip("/")
        files = {str(path.relative_to(top)): path.stat().st_mode & 0o777
                 for path in pathlib.Path(directory).rglob("*") if path.is_file()}
        check_equal(f"the files below {prefix}, with their modes", files, EXPECTED)
        for name in EXPECTED:
            if name != "bin/tarnwell":
                data = (top / name).read_bytes()
                check(f"{prefix}/{name} names no path of the build",
                      os.fsencode(source) not in data and os.fsencode(build) not in data)
        links = run(sys.executable, source / "tests/documents/links.py", top / "share/doc/tarnwell")
        check("every link of the installed documents arrives", links.returncode == 0, links.stdout)
        check("the installed program runs",
              output(top / "bin/tarnwell", "help") == output(build / "tarnwell", "help"))
        check("print-config names the installed program",
              str((top / "bin/tarnwell").resolve()) in output(top / "bin/tarnwell", "print-config"))
finish()
