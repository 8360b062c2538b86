#!/usr/bin/env python3
"""CPack makes two Debian packages, of the program and of its companion app, without a fault that lintian knows."""

import os
import pathlib
import re

from support import (build, check, check_equal, documents, finish, need, output, run, source, temporary_directory,
                     version)

for tool, package in (("lintian", "lintian"), ("dpkg-shlibdeps", "dpkg-dev"), ("file", "file"), ("strip", "binutils")):
    need(tool, package)

HELPER_FILES = """
./usr/bin/tarnwell
./usr/share/bash-completion/completions/tarnwell
./usr/share/doc/tarnwell/CONTRIBUTING.md
./usr/share/doc/tarnwell/README.md
./usr/share/doc/tarnwell/changelog.Debian.gz
./usr/share/doc/tarnwell/changelog.gz
./usr/share/doc/tarnwell/copyright
./usr/share/fish/vendor_completions.d/tarnwell.fish
./usr/share/lintian/overrides/tarnwell
./usr/share/man/man1/tarnwell.1.gz
./usr/share/zsh/vendor-completions/_tarnwell
""".split() + [f"./usr/share/doc/tarnwell/{name}" for name in documents()]
APP_FILES = """
./usr/bin/tarnwell-app
./usr/share/applications/app.tarnwell.Tarnwell.desktop
./usr/share/doc/tarnwell-app/changelog.Debian.gz
./usr/share/doc/tarnwell-app/changelog.gz
./usr/share/doc/tarnwell-app/copyright
./usr/share/icons/hicolor/128x128/apps/app.tarnwell.Tarnwell.png
./usr/share/icons/hicolor/16x16/apps/app.tarnwell.Tarnwell.png
./usr/share/icons/hicolor/24x24/apps/app.tarnwell.Tarnwell.png
./usr/share/icons/hicolor/256x256/apps/app.tarnwell.Tarnwell.png
./usr/share/icons/hicolor/32x32/apps/app.tarnwell.Tarnwell.png
./usr/share/icons/hicolor/48x48/apps/app.tarnwell.Tarnwell.png
./usr/share/icons/hicolor/512x512/apps/app.tarnwell.Tarnwell.png
./usr/share/icons/hicolor/64x64/apps/app.tarnwell.Tarnwell.png
./usr/share/icons/hicolor/scalable/apps/app.tarnwell.Tarnwell.svg
./usr/share/lintian/overrides/tarnwell-app
./usr/share/man/man1/tarnwell-app.1.gz
./usr/share/metainfo/app.tarnwell.Tarnwell.metainfo.xml
""".split()
ICU = output("pkg-config", "--modversion", "icu-i18n").partition(".")[0]
COMMON = {"libc6", "libgcc-s1", f"libicu{ICU}", "libstdc++6"}
CONNECTING = {"libssl3", "libsystemd0"}
HELPER_NEEDS = COMMON | CONNECTING
APP_NEEDS = COMMON | {"tarnwell", "libqt6core6", "libqt6dbus6", "libqt6gui6", "libqt6widgets6"}
# A build with a sanitizer needs its library too, and only a release is hardened.
NEVER_IN_A_RELEASE = re.compile(r"lib[a-z]+san\d*$")
RELEASE = "CMAKE_BUILD_TYPE:STRING=Release" in (build / "CMakeCache.txt").read_text(encoding="utf-8")


def debian_revision():
    """Says for which release of Debian it was built, as the next release's package must count as newer."""
    system = dict(line.strip().split("=", 1) for line in open("/etc/os-release", encoding="utf-8") if "=" in line)
    return f"1~deb{system['VERSION_ID'].strip(chr(34))}u1" if system.get("ID") == "debian" else "1"


def check_package(directory, name, files, needs, may_need=frozenset()):
    """What holds for both packages. Leaves the files of the package in directory/name, and gives its fields."""
    package, = pathlib.Path(directory).glob(f"{name}_*.deb")
    fields = dict(line.split(": ", 1) for line in output("dpkg-deb", "--field", package).splitlines()
                  if re.match(r"\w[\w-]*: ", line))
    revision = debian_revision()
    check_equal(f"{name}: the file's name", package.name, f"{name}_{version()}-{revision}_{fields['Architecture']}.deb")
    check_equal(f"{name}: the version", fields["Version"], f"{version()}-{revision}")
    # Debian 13 adds to the name of a library whose times became longer on 32-bit machines.
    needed = {need.removesuffix("t64") for need in re.findall(r"(?:^|, )([\w.+-]+)", fields["Depends"])
              if not NEVER_IN_A_RELEASE.match(need)}
    check_equal(f"{name}: what it depends on", needed - may_need, needs)
    check(f"{name}: a version is asked of each library",
          all("(>=" in entry or entry.startswith("tarnwell ") for entry in fields["Depends"].split(", ")),
          fields["Depends"])

    listing = [line.split(None, 5) for line in output("dpkg-deb", "--contents", package,
                                                      env={**os.environ, "TZ": "UTC"}).splitlines()]
    check_equal(f"{name}: its files", sorted(line[5] for line in listing if line[0].startswith("-")), sorted(files))
    check_equal(f"{name}: everything belongs to root", {line[1] for line in listing}, {"root/root"})
    check_equal(f"{name}: every time is that of SOURCE_DATE_EPOCH", {(line[3], line[4]) for line in listing},
                {("2023-11-14", "22:13")})

    complaints = [line for line in run("lintian", "--tag-display-limit", "0", package).stdout.splitlines()
                  if line[:2] in ("E:", "W:") and (RELEASE or "hardening-no-" not in line)]
    check_equal(f"{name}: lintian has nothing to say", complaints, [])

    tree = pathlib.Path(directory, name)
    output("dpkg-deb", "--extract", package, tree)
    program = tree / "usr/bin" / name
    check(f"{name}: the program in it is stripped", "no symbols" in run("nm", program).stderr)
    if RELEASE:
        check_hardening(name, program)
    check(f"{name}: its copyright file carries the licence",
          " ".join((source / "LICENSE").read_text(encoding="utf-8").split()[8:])
          in " ".join((tree / f"usr/share/doc/{name}/copyright").read_text(
              encoding="utf-8").replace("\n .\n", "\n").split()))
    return fields


def check_hardening(name, program):
    """lintian looks for the first two only. The rest it leaves to the one who compiles."""
    check(f"{name}: it may lie anywhere in the memory, and all its links are made at the start",
          "Flags: NOW PIE" in output("readelf", "--dynamic", "--wide", program))
    check(f"{name}: its links are read-only", "GNU_RELRO" in output("readelf", "--program-headers", "--wide", program))
    calls = output("readelf", "--dyn-syms", "--wide", program)
    check(f"{name}: the stack is guarded", "__stack_chk_fail" in calls)
    check(f"{name}: calls of the C library are checked", re.search(r"__(?!stack)\w+_chk\b", calls), calls)


with temporary_directory() as directory:
    output(os.environ.get("CPACK_COMMAND", "cpack"), "-G", "DEB", "-B", directory,
           "--config", build / "CPackConfig.cmake", cwd=build, env={**os.environ, "SOURCE_DATE_EPOCH": "1700000000"})
    check_equal("there are two packages", len(list(pathlib.Path(directory).glob("*.deb"))), 2)
    check_package(directory, "tarnwell", HELPER_FILES, HELPER_NEEDS)
    check("tarnwell: the program in it runs",
          output(f"{directory}/tarnwell/usr/bin/tarnwell", "help") == output(build / "tarnwell", "help"))

    fields = check_package(directory, "tarnwell-app", APP_FILES, APP_NEEDS, CONNECTING)
    check("tarnwell-app: it needs the program of its own version",
          fields["Depends"].startswith(f"tarnwell (= {fields['Version']}), "), fields["Depends"])
    check("tarnwell-app: it recommends a secret service", "gnome-keyring" in fields["Recommends"])
finish()
