#!/usr/bin/env python3
"""The manual pages have no fault that mandoc knows. They tell of every command, variable and version."""

import re

from support import build, check, check_equal, command_words, finish, need, output, run, source, version

need("mandoc", "mandoc")


def read_page(page):
    """Checks what holds for every page, and gives its text without the overstriking of bold and underlined letters."""
    # Whether another manual is in mandoc's index says something about the machine, not about the page.
    faults = [line for line in run("mandoc", "-T", "lint", "-W", "style", page).stdout.splitlines()
              if "mandoc.db" not in line and "referenced manual not found: Xr tarnwell" not in line]
    check_equal(f"{page.name}: mandoc finds no fault", faults, [])
    plain = re.sub(".\b", "", output("mandoc", "-T", "utf8", page))
    check(f"{page.name}: it tells its version", f"version {version()}." in re.sub(r"\s+", " ", plain))
    for section in ("ENVIRONMENT", "FILES", "EXIT STATUS"):
        check(f"{page.name}: there is a section {section}", f"\n{section}\n" in plain)
    check(f"{page.name}: it names the settings file", "~/.local/share/app.tarnwell.Tarnwell/config.json" in plain)
    return plain


plain = read_page(build / "packaging/tarnwell.1")
words = command_words()
check("the usage names commands", len(words) >= 4, str(words))
for word in [*words, "help", "-h", "--help"]:
    check(f"the manual tells of {word}", re.search(rf"^ +(?:help, )?(?:-h, )?{re.escape(word)}\b", plain, re.MULTILINE))

variables, app_variables = {"SSL_CERT_FILE", "SSL_CERT_DIR"}, {"LC_ALL", "LC_MESSAGES", "LANG"}  # OpenSSL's; locale(7)
for path in (source / "src").rglob("*.cpp"):
    asked = app_variables if path.parts[len(source.parts) + 1] in ("App", "Assistants") else variables
    asked |= set(re.findall(r'(?:getenv|environment)\("([A-Z_]+)"\)', path.read_text(encoding="utf-8")))
# Which language the system speaks is asked below the app, and for it.
variables.remove("LANGUAGE")
app_variables.add("LANGUAGE")
# Where clients keep their settings: the names stand in a table.
table = (source / "src/Assistants/AssistantTable.cpp").read_text(encoding="utf-8")
folders = set(re.findall(r'"([A-Z]+_(?:HOME|DIR|CONFIG_DIR|CLI_HOME))"', table))
check("clients have variables for their folders", len(folders) >= 3, str(folders))
app_variables |= folders
check("the program asks for variables", "XDG_DATA_HOME" in variables, str(variables))
for variable in variables:
    check(f"the manual tells of {variable}", variable in plain)

settings = (source / "docs/settings.md").read_text(encoding="utf-8")
for key in ("email", "imapHost", "imapPort", "readOnly", "allowMove", "allowMarkRead", "allowTrash"):
    check(f"the key {key} is a setting and in the manual", f"`{key}`" in settings and key in plain)
for section in ("SETTING UP ON LINUX", "EXAMPLES"):
    check(f"there is a section {section}", f"\n{section}\n" in plain)
for status in (0, 1, 2):
    check(f"the exit status {status} is explained", re.search(rf"^ +{status} +\w", plain, re.MULTILINE))

app = read_page(build / "packaging/app/tarnwell-app.1")
for variable in app_variables - variables:  # it refers to those
    check(f"the app's manual tells of {variable}", re.search(rf"\b{variable}\b", app))
finish()
