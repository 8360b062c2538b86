#!/usr/bin/env python3
"""Makes the MCP bundle and the registry's description of it.

    pack.py BUILD_DIRECTORY OUTPUT_DIRECTORY [DOWNLOAD_URL]

A bundle is a zip file with manifest.json at its top and the server beside it. The files have fixed times and
modes and stand in a fixed order, so that the same source gives the same bytes; the times are those of
SOURCE_DATE_EPOCH, or the first that a zip file can express. Without a DOWNLOAD_URL the description names no
package, for a package needs an address and the checksum of what lies there.
"""

import hashlib
import json
import os
import pathlib
import platform
import subprocess
import sys
import tempfile
import time
import zipfile

EARLIEST = 315532800  # 1980-01-01, the first moment of a zip file


def stripped(program):
    with tempfile.TemporaryDirectory() as directory:
        copy = pathlib.Path(directory) / "tarnwell"
        subprocess.run(["strip", "--strip-all", "-o", copy, program], check=True)
        return copy.read_bytes()


def write_bundle(path, files):
    moment = time.gmtime(max(EARLIEST, int(os.environ.get("SOURCE_DATE_EPOCH", EARLIEST))))[:6]
    with zipfile.ZipFile(path, "w") as bundle:
        for name, mode, data in files:
            entry = zipfile.ZipInfo(name, moment)
            entry.create_system = 3  # Unix, so that the mode counts
            entry.external_attr = (0o100000 | mode) << 16
            bundle.writestr(entry, data, zipfile.ZIP_DEFLATED, 9)


def main():
    build, output, *url = sys.argv[1:]
    build, output = pathlib.Path(build), pathlib.Path(output)
    source = pathlib.Path(__file__).resolve().parents[2]
    output.mkdir(parents=True, exist_ok=True)
    templates = build / "packaging/mcpb"
    description = json.loads((templates / "server.json").read_text(encoding="utf-8"))

    version = description["version"]
    bundle = output / f"tarnwell-{version}-linux-{platform.machine()}.mcpb"
    write_bundle(bundle, [
        ("manifest.json", 0o644, (templates / "manifest.json").read_bytes()),
        ("server/tarnwell", 0o755, stripped(build / "tarnwell")),
        ("README.md", 0o644, (source / "README.md").read_bytes()),
        ("LICENSE", 0o644, (source / "LICENSE").read_bytes()),
    ])

    if url:
        description["packages"] = [{
            "registryType": "mcpb",
            "identifier": url[0],
            "version": version,
            "fileSha256": hashlib.sha256(bundle.read_bytes()).hexdigest(),
            "transport": {"type": "stdio"},
        }]
    (output / "server.json").write_text(json.dumps(description, indent=2) + "\n", encoding="utf-8")


main()
