#!/usr/bin/env python3
"""The MCP bundle passes the official tool, and what is in it starts. Of server.json the rules are checked that
the registry's documentation names; its JSON schema itself is published on the web only and is not fetched here.
"""

import hashlib
import json
import re

from support import (build, check, check_equal, finish, initialize, need, output, run, source, temporary_directory,
                     version)

URL = "https://github.com/example/tarnwell/releases/download/v0/tarnwell.mcpb"


def pack(directory, *url):
    """Packs into a directory; gives the bundle's path and the registry's description."""
    output("python3", source / "packaging/mcpb/pack.py", build, directory, *url)
    bundle, = directory.glob("*.mcpb")
    return bundle, json.loads((directory / "server.json").read_text(encoding="utf-8"))


def check_registry_rules(description):
    """https://github.com/modelcontextprotocol/registry, docs/reference/server-json."""
    check("server.json: only members that the format has",
          set(description) <= {"$schema", "name", "title", "description", "version", "packages"})
    check("server.json: the name is a reversed domain, one slash, a name",
          re.fullmatch(r"[a-zA-Z0-9.-]+/[a-zA-Z0-9._-]+", description["name"]) and len(description["name"]) <= 200)
    for member in ("title", "description"):
        check(f"server.json: the {member} has 1 to 100 characters", 1 <= len(description[member]) <= 100)
    check_equal("server.json: the version", description["version"], version())
    for package in description.get("packages", []):
        check_equal("server.json: the members of a package", set(package),
                    {"registryType", "identifier", "version", "fileSha256", "transport"})
        check("server.json: the checksum is 64 small hexadecimal digits",
              re.fullmatch("[0-9a-f]{64}", package["fileSha256"]))
        check("server.json: the bundle lies where the registry allows it, and its address says mcp",
              re.match(r"https://(github|gitlab)\.com/.*mcp", package["identifier"]))
        check_equal("server.json: version and transport", (package["version"], package["transport"]),
                    (version(), {"type": "stdio"}))


need("node", "nodejs")
need("strip", "binutils")
tool = source / "tests/packaging/node_modules/.bin/mcpb"
if not tool.exists():
    raise SystemExit("error: the MCP bundle tool is missing: run scripts/setup")

with temporary_directory() as name:
    directory = type(source)(name)
    bundle, bare = pack(directory / "bare")
    check_registry_rules(bare)
    check("server.json names no package that nobody can fetch", "packages" not in bare)

    again, described = pack(directory / "described", URL)
    check_equal("the same build gives the same bundle", again.read_bytes() == bundle.read_bytes(), True)
    check_registry_rules(described)
    check_equal("server.json names the bundle and its checksum",
                [(package["identifier"], package["fileSha256"]) for package in described["packages"]],
                [(URL, hashlib.sha256(bundle.read_bytes()).hexdigest())])

    output("node", tool, "unpack", bundle, directory / "unpacked")
    verdict = run("node", tool, "validate", directory / "unpacked/manifest.json")
    check("the official tool accepts the manifest", verdict.returncode == 0, verdict.stdout + verdict.stderr)
    (directory / "broken.json").write_text('{"manifest_version": "0.3", "name": "tarnwell"}')
    check("the official tool would refuse a broken one",
          run("node", tool, "validate", directory / "broken.json").returncode != 0)

    manifest = json.loads((directory / "unpacked/manifest.json").read_text(encoding="utf-8"))
    check_equal("the manifest's version", manifest["version"], version())
    server = manifest["server"]
    command = [word.replace("${__dirname}", str(directory / "unpacked"))
               for word in (server["mcp_config"]["command"], *server["mcp_config"]["args"])]
    check_equal("the command is the entry point", command[0], str(directory / "unpacked" / server["entry_point"]))
    entry = directory / "unpacked" / server["entry_point"]
    check_equal("the program in the bundle may be run by all and written by its owner", entry.stat().st_mode & 0o777,
                0o755)
    answer, listing = initialize(command, directory)
    check_equal("the server in the bundle says who it is", answer["serverInfo"],
                {"name": "Tarnwell", "version": version()})
    check_equal("the manifest names the tools that the server has, in its order",
                [tool["name"] for tool in manifest["tools"]], [tool["name"] for tool in listing["tools"]])
finish()
