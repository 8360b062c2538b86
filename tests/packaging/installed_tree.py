#!/usr/bin/env python3
"""cmake --install puts each file into its place, and what it puts there works. The companion app's files come with
the app, and only then."""

import os
import pathlib
import shutil
import sys

from support import (build, check, check_equal, documents, finish, install, output, run, source,
                     temporary_directory)

EXPECTED = {
    "bin/tarnwell": 0o755,
    "share/bash-completion/completions/tarnwell": 0o644,
    "share/doc/tarnwell/CHANGELOG.md": 0o644,
    "share/doc/tarnwell/CONTRIBUTING.md": 0o644,
    "share/doc/tarnwell/LICENSE": 0o644,
    "share/doc/tarnwell/README.md": 0o644,
    **{f"share/doc/tarnwell/{name}": 0o644 for name in documents()},
    "share/fish/vendor_completions.d/tarnwell.fish": 0o644,
    "share/man/man1/tarnwell.1": 0o644,
    "share/zsh/site-functions/_tarnwell": 0o644,
}
ID = "app.tarnwell.Tarnwell"
EXPECTED_OF_APP = {
    "bin/tarnwell-app": 0o755,
    f"share/applications/{ID}.desktop": 0o644,
    **{f"share/icons/hicolor/{size}x{size}/apps/{ID}.png": 0o644 for size in (16, 24, 32, 48, 64, 128, 256, 512)},
    f"share/icons/hicolor/scalable/apps/{ID}.svg": 0o644,
    "share/man/man1/tarnwell-app.1": 0o644,
    f"share/metainfo/{ID}.metainfo.xml": 0o644,
}


def modes(top):
    return {str(path.relative_to(top)): path.stat().st_mode & 0o777
            for path in pathlib.Path(top).rglob("*") if path.is_file()}


for prefix in ("/usr/local", "/opt/a place"):
    with temporary_directory() as directory:
        top = install(directory, prefix) / prefix.lstrip("/")
        check_equal(f"the files below {prefix}, with their modes", modes(top), EXPECTED | EXPECTED_OF_APP)
        check_equal(f"there is nothing but {prefix}", len(modes(directory)), len(modes(top)))
        for name in modes(top):
            if not name.startswith("bin/"):
                data = (top / name).read_bytes()
                check(f"{prefix}/{name} names no path of the build",
                      os.fsencode(source) not in data and os.fsencode(build) not in data)
        links = run(sys.executable, source / "tests/documents/links.py", top / "share/doc/tarnwell")
        check("every link of the installed documents arrives", links.returncode == 0, links.stdout)
        check("the installed program runs",
              output(top / "bin/tarnwell", "help") == output(build / "tarnwell", "help"))
        check("print-config names the installed program",
              str((top / "bin/tarnwell").resolve()) in output(top / "bin/tarnwell", "print-config"))

for title, option in (("without the app", "OFF"), ("with an app that was not built yet", "ON")):
    with temporary_directory() as directory:
        other, root = f"{directory}/build", f"{directory}/root"
        output(os.environ.get("CMAKE_COMMAND", "cmake"), "-S", source, "-B", other, "-G", "Ninja",
               "-D", f"TARNWELL_APP={option}", "-D", "TARNWELL_TESTS=OFF")
        shutil.copy2(build / "tarnwell", other)
        install(root, "/usr/local", other)
        check_equal(f"the files of a build {title}", modes(f"{root}/usr/local"), EXPECTED)
finish()
