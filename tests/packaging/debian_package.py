#!/usr/bin/env python3
"""CPack makes a Debian package without a fault that lintian knows."""

import os
import pathlib
import re

from support import build, check, check_equal, finish, need, output, run, source, temporary_directory, version

for tool, package in (("lintian", "lintian"), ("dpkg-shlibdeps", "dpkg-dev"), ("file", "file"), ("strip", "binutils")):
    need(tool, package)

FILES = """
./usr/bin/tarnwell
./usr/share/bash-completion/completions/tarnwell
./usr/share/doc/tarnwell/CONTRIBUTING.md
./usr/share/doc/tarnwell/README.md
./usr/share/doc/tarnwell/changelog.Debian.gz
./usr/share/doc/tarnwell/changelog.gz
./usr/share/doc/tarnwell/copyright
./usr/share/doc/tarnwell/docs/architecture.md
./usr/share/doc/tarnwell/docs/attacks.md
./usr/share/doc/tarnwell/docs/decisions.md
./usr/share/doc/tarnwell/docs/distance.svg
./usr/share/doc/tarnwell/docs/fuzzing.md
./usr/share/doc/tarnwell/docs/logs.md
./usr/share/doc/tarnwell/docs/macos.md
./usr/share/doc/tarnwell/docs/measurements.md
./usr/share/doc/tarnwell/docs/performance.md
./usr/share/doc/tarnwell/docs/performance.svg
./usr/share/doc/tarnwell/docs/safety.md
./usr/share/doc/tarnwell/docs/settings.md
./usr/share/doc/tarnwell/docs/troubleshooting.md
./usr/share/doc/tarnwell/docs/withholding.md
./usr/share/fish/vendor_completions.d/tarnwell.fish
./usr/share/lintian/overrides/tarnwell
./usr/share/man/man1/tarnwell.1.gz
./usr/share/zsh/vendor-completions/_tarnwell
""".split()
ICU = output("pkg-config", "--modversion", "icu-i18n").partition(".")[0]
LIBRARIES = {"libc6", "libgcc-s1", f"libicu{ICU}", "libssl3", "libstdc++6", "libsystemd0"}
# A build with a sanitizer needs its library too, and only a release is hardened.
NEVER_IN_A_RELEASE = re.compile(r"lib[a-z]+san\d*$")



def debian_revision():
    """Says for which release of Debian it was built, as the next release's package must count as newer."""
    system = dict(line.strip().split("=", 1) for line in open("/etc/os-release", encoding="utf-8") if "=" in line)
    return f"1~deb{system['VERSION_ID'].strip(chr(34))}u1" if system.get("ID") == "debian" else "1"


with temporary_directory() as directory:
    output(os.environ.get("CPACK_COMMAND", "cpack"), "-G", "DEB", "-B", directory,
           "--config", build / "CPackConfig.cmake", cwd=build, env={**os.environ, "SOURCE_DATE_EPOCH": "1700000000"})
    package, = pathlib.Path(directory).glob("*.deb")
    fields = dict(line.split(": ", 1) for line in output("dpkg-deb", "--field", package).splitlines()
                  if re.match(r"\w[\w-]*: ", line))
    revision = debian_revision()
    check_equal("the file's name", package.name, f"tarnwell_{version()}-{revision}_{fields['Architecture']}.deb")
    check_equal("the version", fields["Version"], f"{version()}-{revision}")
    # Debian 13 adds to the name of a library whose times became longer on 32-bit machines.
    needed = {name.removesuffix("t64") for name in re.findall(r"(?:^|, )([\w.+-]+)", fields["Depends"])
              if not NEVER_IN_A_RELEASE.match(name)}
    check_equal("the libraries it depends on", needed, LIBRARIES)
    check("a version is asked of each library",
          all("(>=" in entry for entry in fields["Depends"].split(", ")), fields["Depends"])

    listing = [line.split(None, 5) for line in output("dpkg-deb", "--contents", package,
                                                      env={**os.environ, "TZ": "UTC"}).splitlines()]
    check_equal("its files", sorted(line[5] for line in listing if line[0].startswith("-")), sorted(FILES))
    check_equal("everything belongs to root", {line[1] for line in listing}, {"root/root"})
    check_equal("every time is that of SOURCE_DATE_EPOCH", {(line[3], line[4]) for line in listing},
                {("2023-11-14", "22:13")})

    release = "CMAKE_BUILD_TYPE:STRING=Release" in (build / "CMakeCache.txt").read_text(encoding="utf-8")
    complaints = [line for line in run("lintian", "--tag-display-limit", "0", package).stdout.splitlines()
                  if line[:2] in ("E:", "W:") and (release or "hardening-no-" not in line)]
    check_equal("lintian has nothing to say", complaints, [])

    output("dpkg-deb", "--extract", package, f"{directory}/tree")
    check("the program in it runs",
          output(f"{directory}/tree/usr/bin/tarnwell", "help") == output(build / "tarnwell", "help"))
    check("the program in it is stripped",
          "no symbols" in run("nm", f"{directory}/tree/usr/bin/tarnwell").stderr)
    check("its copyright file carries the licence",
          " ".join((source / "LICENSE").read_text(encoding="utf-8").split()[8:])
          in " ".join(pathlib.Path(f"{directory}/tree/usr/share/doc/tarnwell/copyright").read_text(
              encoding="utf-8").replace("\n .\n", "\n").split()))
finish()
