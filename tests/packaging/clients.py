#!/usr/bin/env python3
"""Every configuration block that README.md and the manual show for an MCP client is read as that client would
read it; its server is started in the place of /usr/local/bin/tarnwell and answers. Both show the same blocks.
The settings file that the manual and docs/without-a-desktop.md show makes an account."""

import json
import re
import shlex
import tomllib

from markdown import blocks
from support import (build, check, check_equal, finish, few_variables, initialize, need, output, program, source,
                     temporary_directory, version)

SHOWN = "/usr/local/bin/tarnwell"
EVERY_KIND = {"mcpServers", "servers", "context_servers", "mcp_servers", "claude", "codex", "gemini", "code"}
# The words between the name of a client's command and the name of the server.
ADDING = {"claude": ["mcp", "add", "--scope", "user"], "codex": ["mcp", "add"],
          "gemini": ["mcp", "add", "--scope", "user"]}


def added(line):
    """The kind and the command of the server in a line that a person types to add it."""
    client, *words = shlex.split(line)
    if client == "code":
        option, text = words
        server = json.loads(text)
        return client, server["name"], [server["command"], *server["args"]], option == "--add-mcp"
    expected = ADDING[client]
    name, *command = words[len(expected):]
    # Options end at "--"; gemini takes the command without it.
    separated = command[:1] == ["--"]
    return client, name, command[separated:], words[:len(expected)] == expected and separated == (client != "gemini")


def servers(block):
    """(kind, name, command, is its form right) for each server that a block configures."""
    if block.startswith("{"):
        return [(kind, name, [server["command"], *server["args"]],
                 set(server) <= {"command", "args", "type"} and server.get("type", "stdio") == "stdio")
                for kind, named in json.loads(block).items() if isinstance(named, dict)
                for name, server in named.items()]
    if block.startswith("["):
        return [(kind, name, [server["command"], *server["args"]], set(server) == {"command", "args"})
                for kind, named in tomllib.loads(block).items() for name, server in named.items()]
    return [added(line) for line in block.splitlines() if re.match(r"(\w+ mcp add|code --add-mcp) ", line)]


def check_document(title, markdown):
    shown = blocks(markdown)
    found = [server for block in shown for server in servers(block)]
    check_equal(f"{title} shows a block for each kind of client, once", sorted(kind for kind, *_ in found),
                sorted(EVERY_KIND))
    for kind, name, command, well_formed in found:
        check(f"{title}, {kind}: the form is the client's", well_formed)
        check_equal(f"{title}, {kind}: the server and its command", (name, command), ("tarnwell", [SHOWN, "serve"]))
        with temporary_directory() as home:
            answer, listing = initialize([str(program()) if word == SHOWN else word for word in command], home)
        check_equal(f"{title}, {kind}: the server started says who it is", answer["serverInfo"],
                    {"name": "Tarnwell", "version": version()})
        check_equal(f"{title}, {kind}: its tools", len(listing["tools"]), 9)

    printed = output(program(), "print-config").replace(str(program()), SHOWN)
    check(f"{title} shows what print-config prints",
          json.loads(printed) in [json.loads(block) for block in shown if block.startswith("{")])

    return found


def check_set_up(title, text):
    """A document that tells how to set the program up by hand: the settings and the password."""
    shown = blocks(text)
    settings = [block for block in shown if block.startswith("{") and "email" in json.loads(block)]
    check_equal(f"{title} shows one settings file", len(settings), 1)
    with temporary_directory() as home:
        directory = f"{home}/.local/share/app.tarnwell.Tarnwell"
        output("mkdir", "-p", directory)
        with open(f"{directory}/config.json", "w", encoding="utf-8") as file:
            file.write(settings[0])
        status = json.loads(output(program(), "status", env=few_variables(home)))
        # The status does not tell of strictWithholding.
        check_equal(f"{title}: the settings file is read as it stands",
                    {key: status[key] for key in ("email", "imapHost")} | {"strictWithholding": True},
                    json.loads(settings[0]))
    check(f"{title}: the password is stored where the program looks",
          any(block == "secret-tool store --label=Tarnwell service app.tarnwell.Tarnwell account "
              + json.loads(settings[0])["email"] for block in shown))


need("mandoc", "mandoc")
readme = (source / "README.md").read_text(encoding="utf-8")
manual = output("mandoc", "-T", "markdown", build / "packaging/tarnwell.1")
check_equal("README.md and the manual show the same servers",
            check_document("README.md", readme), check_document("the manual", manual))
check_set_up("docs/without-a-desktop.md", (source / "docs/without-a-desktop.md").read_text(encoding="utf-8"))
check_set_up("the manual", manual)

installs = [block for block in blocks(readme) if "apt-get install" in block]
check_equal("README.md takes the names of the packages from scripts/setup",
            re.findall(r"recommends (.*)", "\n".join(installs)),
            ["$(scripts/setup --list app)", "$(scripts/setup --list package)"])
for purpose, needed in (("build", {"cmake"}), ("app", {"cmake", "qt6-base-dev"}),
                        ("package", {"cmake", "qt6-base-dev", "dpkg-dev"})):
    names = set(output(source / "scripts/setup", "--list", purpose).split())
    check(f"scripts/setup --list {purpose} names packages", needed <= names, str(names))
check("scripts/setup --list build needs no Qt",
      not any(name.startswith("qt6") for name in output(source / "scripts/setup", "--list", "build").split()))
finish()
