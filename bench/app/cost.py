"""cost.py PROGRAMS [DOCUMENT]: measures the window of the companion app beside an empty window of Qt, both in turns, and
prints the table. With DOCUMENT puts it there, between the marks.

PROGRAMS is the folder with WholeWindow, EmptyWindow and ActivityCost. Runs under a display with a window manager.
"""

import pathlib
import resource
import statistics
import subprocess
import sys
import time

STARTS = 20
REST = 3  # seconds until a window has come to rest
GOALS = {"first frame": 1.5, "memory": 15.0}
BEGIN, END = "<!-- cost -->\n", "<!-- end -->\n"


def start(command):
    """Seconds from the start to the end after the first frame, and seconds of processor time."""
    before = resource.getrusage(resource.RUSAGE_CHILDREN)
    began = time.monotonic()
    subprocess.run(command, check=True, stderr=subprocess.DEVNULL)
    wall = time.monotonic() - began
    after = resource.getrusage(resource.RUSAGE_CHILDREN)
    return wall, after.ru_utime + after.ru_stime - before.ru_utime - before.ru_stime


def memory(command):
    """Resident and proportional size in MB once the window has come to rest."""
    with subprocess.Popen([*command, "stay"], stderr=subprocess.DEVNULL) as process:
        time.sleep(REST)
        rollup = pathlib.Path(f"/proc/{process.pid}/smaps_rollup").read_text(encoding="ascii")
        process.kill()
    sizes = dict(line.split(":") for line in rollup.splitlines()[1:])
    return tuple(int(sizes[key].split()[0]) * 1024 / 1e6 for key in ("Rss", "Pss"))


def measured(programs):
    names = {"an empty window": [programs / "EmptyWindow"], "a window with one word": [programs / "EmptyWindow", "word"],
             "the app": [programs / "WholeWindow"]}
    starts = {name: [] for name in names}
    for turn in range(STARTS + 1):
        for name, command in names.items():
            result = start(command)
            if turn:  # the first fills the caches
                starts[name].append(result)
    sizes = {name: memory(command) for name, command in names.items()}
    return {name: [1000 * statistics.median(wall for wall, _ in starts[name]),
                   1000 * statistics.median(cpu for _, cpu in starts[name]), *sizes[name]] for name in names}


def table(costs):
    lines = ["| | first frame, ms | processor time, ms | resident, MB | proportional, MB |", "|---|---|---|---|---|"]
    lines += [f"| {name} | " + " | ".join(f"{value:.0f}" for value in values) + " |" for name, values in costs.items()]
    empty, _, app = costs.values()
    factor, more = app[0] / empty[0], app[2] - empty[2]
    verdict = (f"First frame {factor:.2f} times the empty window (goal {GOALS['first frame']}), "
               f"memory {more:.1f} MB more (goal {GOALS['memory']:.0f}).")
    return "\n".join([*lines, "", verdict, ""])


def main(programs, document=None):
    text = table(measured(programs))
    text += subprocess.run([programs / "ActivityCost"], check=True, capture_output=True, text=True).stdout
    print(text)
    if document:
        before, rest = document.read_text(encoding="utf-8").split(BEGIN)
        after = rest.split(END)[1]
        document.write_text(before + BEGIN + text + END + after, encoding="utf-8")


main(*map(pathlib.Path, sys.argv[1:]))
