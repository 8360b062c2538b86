#!/usr/bin/env python3
"""In bash, zsh and fish the words offered after "tarnwell" are the commands that the usage names, and help."""

import os
import pty
import re
import select
import subprocess
import time

from support import (check_equal, command_words, finish, install, need, output, temporary_directory)

for shell in ("bash", "zsh", "fish"):
    need(shell, shell)

COMMANDS = sorted([*command_words(), "help"])

# What stands on the line, and what may follow. Nothing follows a first word: there are no further arguments.
ROWS = [("everyCommandIsOffered", "", COMMANDS),
        ("theBeginningOfAWordNarrows", "s", [word for word in COMMANDS if word.startswith("s")]),
        ("aWholeWordStays", "test-connection", ["test-connection"]),
        ("anUnknownBeginningOffersNothing", "x", []),
        ("aSecondWordIsNotOffered", "serve ", [])]


def bash(share, line):
    script = """
      source "$1"
      COMP_LINE="tarnwell $2" COMP_WORDS=(tarnwell $2)
      if [[ $COMP_LINE == *" " ]]; then COMP_WORDS+=(""); fi
      COMP_CWORD=$((${#COMP_WORDS[@]} - 1))
      [[ $(complete -p tarnwell) == "complete -F _tarnwell tarnwell" ]] || exit 1
      _tarnwell
      printf '%s\\n' "${COMPREPLY[@]}"
    """
    return output("bash", "--norc", "-c", script, "bash", share / "bash-completion/completions/tarnwell", line).split()


def fish(share, line):
    script = f"source '{share}/fish/vendor_completions.d/tarnwell.fish'; complete -C 'tarnwell {line}'"
    offered = output("fish", "--no-config", "-c", script, env={**os.environ, "HOME": str(share)})
    return [entry.split("\t")[0] for entry in offered.splitlines()]


def zsh(share, line):
    """zsh completes only in its line editor: a terminal is put before it. In place of showing the matches,
    compadd is made to print them."""
    setup = f"""
      PS1= PS2= RPS1=; unsetopt zle_bracketed_paste prompt_cr prompt_sp; stty -echo
      fpath=({share}/zsh/site-functions $fpath); autoload -Uz compinit; compinit -u -D
      zstyle ':completion:*' verbose no
      compadd() {{
        local -a found; builtin compadd -O found "$@"
        for match in $found; do print -r -- "<offered>$match</offered>"; done
        builtin compadd "$@"
      }}
      show() {{ zle complete-word; print -r -- '<end>' }}
      zle -N show; bindkey '^X' show
      print -r -- '<ready>'
    """
    ours, theirs = pty.openpty()
    child = subprocess.Popen(["zsh", "--no-rcs", "--interactive"], stdin=theirs, stdout=theirs, stderr=theirs,
                             cwd=share, start_new_session=True,
                             env={"PATH": os.environ["PATH"], "HOME": str(share), "TERM": "dumb"})
    os.close(theirs)
    heard = ""

    def hear(mark):
        nonlocal heard
        deadline = time.monotonic() + 20
        while not re.search(mark, heard):
            if not select.select([ours], [], [], max(0, deadline - time.monotonic()))[0]:
                raise SystemExit(f"error: zsh did not come to {mark}: {heard!r}")
            heard += os.read(ours, 65536).decode(errors="replace")

    try:
        (share / "setup.zsh").write_text(setup)
        os.write(ours, b"source ./setup.zsh\n")
        hear(r"(?m)^<ready>")
        os.write(ours, f"tarnwell {line}\x18".encode())
        hear("<end>")
    finally:
        child.kill()
        child.wait()
        os.close(ours)
    return re.findall(r"<offered>(.*?)</offered>", heard)


with temporary_directory() as directory:
    share = install(directory, "/usr") / "usr/share"
    for shell in (bash, zsh, fish):
        for name, line, expected in ROWS:
            check_equal(f"{shell.__name__}: {name}", sorted(shell(share, line)), expected)
finish()
