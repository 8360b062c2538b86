#!/usr/bin/env python3
"""Runs text dialogues with the built program.

    run.py [--valgrind] PROGRAM FILE...

With --valgrind each case runs under valgrind's memory checker, whose every finding is a failure.

A file holds cases; each begins with "== claimAboutTheProgram". The lines of a case:

    $ WORDS           the arguments (split as a shell does)
    settings JSON     the settings file of the case (there is none otherwise)
    input KIND        how standard input reaches the program: pipe (the default: each line when its turn
                      comes), oneWrite (all at once, then the end), byteByByte, file, null, terminal, closed
    output KIND       where standard output goes: pipe (the default), brokenPipe, closed, full
    > TEXT            sent, followed by a line feed
    >> TEXT           sent as it is; \\r \\n \\\\ and \\xNN stand for bytes here, and
                      (repeat N TEXT) for N times TEXT
    < JSON            the next line of output, compared as JSON values; "<any>" matches every value
    exit N            the exit status (0 when not given)
    | TEXT            a line of standard output, exactly
    ! TEXT            a line of standard error, exactly
    |< FILE           the lines of a file beside the dialogue, as if each followed "| "
    = JSON            the whole of standard output, compared as one JSON value
    {program}         in an expected text: the path of the program

Whatever the program writes beyond what is expected is a failure, and so is every frame that does not
leave in one write: under "traced" the system calls are looked at (strace is required).
Nothing is skipped: a missing component is a failure.
"""

import fcntl
import json
import os
import pathlib
import pty
import re
import select
import shlex
import shutil
import signal
import subprocess
import sys
import tempfile
import termios
import time

PATIENCE = 60  # seconds that one case may take, on a busy machine too

# What the threads of GLib hold when the process ends counts as possibly lost, and is not looked at.
VALGRIND = ["valgrind", "--quiet", "--leak-check=full", "--show-leak-kinds=definite"]


class Failure(Exception):
    pass


class Case:
    def __init__(self, name, where):
        self.name, self.where = name, where
        self.arguments, self.settings = [], None
        self.input, self.output, self.traced = "pipe", "pipe", False
        self.steps = []  # ("send", bytes) and ("expect", text), in order
        self.status, self.stdout, self.stderr, self.json = 0, "", "", None


def unescape(text):
    text = re.sub(r"\(repeat (\d+) ([^()]*)\)", lambda m: m[2] * int(m[1]), text)
    names = {"r": b"\r", "n": b"\n", "\\": b"\\"}
    out = bytearray()
    for plain, name, code in re.findall(r"([^\\]+)|\\(?:([rn\\])|x([0-9a-fA-F]{2}))", text):
        out += plain.encode() if plain else names[name] if name else bytes([int(code, 16)])
    return bytes(out)


def read_cases(path):
    cases = []
    for number, line in enumerate(path.read_text(encoding="utf-8").splitlines(), 1):
        word, _, rest = line.partition(" ")
        if not line or line.startswith("#"):
            continue
        if word == "==":
            cases.append(Case(rest.strip(), f"{path.name}:{number}"))
            continue
        case = cases[-1]
        if word == "$":
            case.arguments = shlex.split(rest)
        elif word in ("input", "output", "settings"):
            setattr(case, word, rest)
        elif word == "traced":
            case.traced = True
        elif word == "exit":
            case.status = int(rest)
        elif word == ">":
            case.steps.append(("send", rest.encode() + b"\n"))
        elif word == ">>":
            case.steps.append(("send", unescape(rest)))
        elif word == "<":
            case.steps.append(("expect", rest))
        elif word == "|":
            case.stdout += rest + "\n"
        elif word == "=":
            case.json = rest
        elif word == "!":
            case.stderr += rest + "\n"
        elif word == "|<":
            case.stdout += (path.parent / rest).read_text(encoding="utf-8")
        else:
            raise SystemExit(f"{path.name}:{number}: not a line of a dialogue: {line}")
    if not cases:
        raise SystemExit(f"{path}: holds no case")
    return cases


def matches(expected, actual):
    if expected == "<any>":
        return True
    if isinstance(expected, dict) and isinstance(actual, dict):
        return expected.keys() == actual.keys() and all(matches(v, actual[k]) for k, v in expected.items())
    if isinstance(expected, list) and isinstance(actual, list):
        return len(expected) == len(actual) and all(map(matches, expected, actual))
    return type(expected) is type(actual) and expected == actual


def shortened(text, limit=300):
    return text if len(text) <= limit else f"{text[:limit]}... ({len(text)} in all)"


class Run:
    """One start of the program: its descriptors, what it wrote, how it ended."""

    def __init__(self, command, patience, case, home):
        self.case, self.home, self.patience = case, home, patience
        self.deadline = time.monotonic() + patience
        self.read, self.errors = bytearray(), home / "stderr"
        self.trace = home / "trace"
        self.terminal = None
        child_in, self.to_child = self.make_input()
        self.from_child, child_out = self.make_output()
        command = [word.replace("{home}", str(home)) for word in command] + case.arguments
        if case.traced:
            if not shutil.which("strace"):
                raise Failure("strace is missing: install the package strace")
            command = ["strace", "-f", "-qq", "-s", "0", "-e", "trace=write,writev,sendto,sendmsg",
                       "-o", str(self.trace), *command]
        closed = [fd for fd, child in ((0, child_in), (1, child_out)) if child is None]
        with open(self.errors, "wb") as errors:
            self.process = subprocess.Popen(
                command, stdin=child_in, stdout=child_out, stderr=errors, start_new_session=True,
                env=self.environment(), cwd=home, preexec_fn=lambda: [os.close(fd) for fd in closed])
        for fd in (child_in, child_out):
            if fd is not None and fd != self.terminal:
                os.close(fd)

    def environment(self):
        kept = {k: v for k, v in os.environ.items() if k.startswith(("ASAN_", "UBSAN_", "TSAN_", "LSAN_"))}
        # Leak detection and strace both want to be the one tracer of the process.
        if self.case.traced:
            kept["ASAN_OPTIONS"] = "detect_leaks=0"
        # No keyring in these dialogues: the bus address names a socket that does not exist.
        return {"PATH": os.environ["PATH"], "LANG": "C.UTF-8", "HOME": str(self.home),
                "DBUS_SESSION_BUS_ADDRESS": f"unix:path={self.home}/no-bus", **kept}

    def make_input(self):
        """The child's end and ours; what is known in advance is sent at once."""
        everything = b"".join(data for kind, data in self.case.steps if kind == "send")
        if self.case.input == "closed":
            return None, None
        if self.case.input == "null":
            return os.open(os.devnull, os.O_RDONLY), None
        if self.case.input == "file":
            path = self.home / "input"
            path.write_bytes(everything)
            return os.open(path, os.O_RDONLY), None
        if self.case.input == "terminal":
            ours, self.terminal = pty.openpty()
            attributes = termios.tcgetattr(self.terminal)
            attributes[3] &= ~termios.ECHO
            termios.tcsetattr(self.terminal, termios.TCSANOW, attributes)
            self.attributes = termios.tcgetattr(self.terminal)
            self.flags = self.descriptor_flags()
            return self.terminal, ours
        child, ours = os.pipe()
        return child, ours

    def make_output(self):
        """Our end and the child's."""
        if self.case.output == "closed":
            return None, None
        if self.case.output == "full":
            return None, os.open("/dev/full", os.O_WRONLY)
        ours, child = os.pipe()
        if self.case.output == "brokenPipe":
            os.close(ours)
            return None, child
        return ours, child

    def descriptor_flags(self):
        return fcntl.fcntl(self.terminal, fcntl.F_GETFL)

    def remaining(self):
        left = self.deadline - time.monotonic()
        if left <= 0:
            raise Failure(f"the program did not answer or end within {self.patience} seconds")
        return left

    def send(self, data):
        if self.case.input in ("file", "null", "closed"):
            return
        pieces = [data[i:i + 1] for i in range(len(data))] if self.case.input == "byteByByte" else [data]
        for piece in pieces:
            while piece:
                _, writable, _ = select.select([], [self.to_child], [], self.remaining())
                if writable:
                    piece = piece[os.write(self.to_child, piece[:4096]):]

    def fill(self):
        """Reads what comes next; False at the end of the output."""
        if self.from_child is None:
            return False
        readable, _, _ = select.select([self.from_child], [], [], self.remaining())
        data = os.read(self.from_child, 65536) if readable else b""
        self.read += data
        return bool(data)

    def next_line(self):
        while b"\n" not in self.read:
            if not self.fill():
                raise Failure(f"the output ended; left over: {bytes(self.read)!r}")
        line, _, rest = bytes(self.read).partition(b"\n")
        self.read = bytearray(rest)
        return line.decode("utf-8")

    def end_input(self):
        if self.case.input == "terminal":
            self.send(b"\x04")  # the terminal's end-of-file character
        elif self.to_child is not None:
            os.close(self.to_child)
            self.to_child = None

    def close(self):
        if self.process.poll() is None:
            os.killpg(self.process.pid, signal.SIGKILL)
        self.process.wait()
        for fd in {self.to_child, self.from_child, self.terminal} - {None}:
            os.close(fd)


def check(condition, message):
    if not condition:
        raise Failure(message)


def check_line(expected, line):
    try:
        actual = json.loads(line)
    except ValueError:
        raise Failure(f"not JSON on standard output: {shortened(line)}") from None
    check(matches(json.loads(expected), actual),
          f"expected {shortened(expected)}\n         but got {shortened(line)}")


def check_output(case, program, output):
    if case.json is not None:
        return check_line(case.json.replace("{program}", program), output.decode("utf-8"))
    expected = case.stdout.replace("{program}", program)
    check(output == expected.encode(), f"expected on standard output {expected!r}\n         but got {output!r}")


def check_traced_frames(run, frames):
    """Each frame left in one write to standard output, and nothing else was written there."""
    writes = [line for line in run.trace.read_text().splitlines()
              if re.search(r"\b(write|writev|sendto|sendmsg)\(1,", line)]
    check(len(writes) == frames, f"{frames} frames left in {len(writes)} writes: {writes}")


def check_findings(home):
    """The memory checker writes nothing when all is well. Where standard output is closed its file takes that
    place, and holds the answers too; findings begin with "==" and the process id."""
    for log in sorted(home.glob("valgrind.*")):
        text = log.read_text()
        check(not re.search(r"^==\d+==", text, flags=re.M), shortened(text, 5000))


def play(program, checked, case, home):
    if case.settings is not None:
        directory = home / ".local/share/app.tarnwell.Tarnwell"
        directory.mkdir(parents=True)
        (directory / "config.json").write_text(case.settings, encoding="utf-8")
    if checked:
        run = Run([*VALGRIND, "--log-file={home}/valgrind.%p", program], PATIENCE * 10, case, home)
    else:
        run = Run([program], PATIENCE, case, home)
    try:
        frames = 0
        sends = [data for kind, data in case.steps if kind == "send"]
        if case.input == "oneWrite":
            run.send(b"".join(sends))
            run.end_input()
        for kind, value in case.steps:
            if kind == "expect":
                check_line(value, run.next_line())
                frames += 1
            elif case.input != "oneWrite":
                run.send(value)
        run.end_input()
        while run.fill():
            pass
        status = run.process.wait(timeout=run.remaining())
        check(status == case.status, f"expected exit status {case.status} but got {status}")
        check_output(case, program, bytes(run.read))
        errors = run.errors.read_bytes()
        check(errors == case.stderr.encode(),
              f"expected on standard error {case.stderr!r}\n         but got {shortened(repr(errors), 3000)}")
        check_findings(home)
        if case.traced:
            check_traced_frames(run, frames)
        if run.terminal is not None:
            check(termios.tcgetattr(run.terminal) == run.attributes, "the terminal's settings were changed")
            check(run.descriptor_flags() == run.flags, "the terminal's descriptor flags were changed")
    finally:
        run.close()


def main():
    checked = sys.argv[1:2] == ["--valgrind"]
    words = sys.argv[2:] if checked else sys.argv[1:]
    if len(words) < 2:
        raise SystemExit("usage: run.py [--valgrind] PROGRAM FILE...")
    if checked and not shutil.which("valgrind"):
        raise SystemExit("error: valgrind is missing: install the package valgrind")
    program = os.path.realpath(words[0])
    if not os.access(program, os.X_OK):
        raise SystemExit(f"error: the program is missing: {program}")
    failed = count = 0
    for path in map(pathlib.Path, words[1:]):
        for case in read_cases(path):
            count += 1
            with tempfile.TemporaryDirectory(prefix="tw.", dir="/tmp") as home:
                try:
                    play(program, checked, case, pathlib.Path(home))
                    print(f"ok     {case.name}")
                except (Failure, OSError, UnicodeDecodeError, subprocess.TimeoutExpired) as error:
                    failed += 1
                    print(f"FAILED {case.name} ({case.where})\n         {error}")
    print(f"{count - failed} of {count} dialogues passed")
    raise SystemExit(1 if failed else 0)


if __name__ == "__main__":
    main()
