"""Measures the program from outside and prints the tables. Compares it with its alternatives and with floors that no
program can go below. scripts/bench starts the services and then this script.

    python3 measure.py SETTINGS_DIRECTORY BUILD DIRECTORY DOVECOT_PORT RECORDER_PORT [DOCUMENTS]

BUILD is the build folder. DIRECTORY has ca.pem, certificates/, wire, and in micro/ the tables of the parts. The
contenders take turns within each measurement, so a disturbance affects all of them. The tables become
DOCUMENTS/measurements.md. The values that a user notices become the picture DOCUMENTS/performance.svg, and the
searches near and far the table in DOCUMENTS/performance.md and the picture DOCUMENTS/distance.svg.
"""
import itertools
import json
import os
import random
import statistics
import sys

import distance
import machine
from picture import picture
from sample_mailbox import BODY_BYTES, LARGE_8BIT, LARGE_BASE64
from processes import FLOOR, LOOP, REPLAY, SDK, Comparator, MCPServer, in_any_order, run_timer
from report import MILLISECONDS, Targets, comparison, figure, ratio, table

HITS, MOST_HITS = 20, 100
USER, PASSWORD = "user@example.org", "app-pass-word"

PEERS = os.path.join(os.path.dirname(os.path.abspath(__file__)), "..", "peers")
HEADING = """# Measurements

Written by `scripts/bench --write`. [performance.md](performance.md) tells how each number is taken.
"""


def median(samples):
    return statistics.median(samples)


class Bench:
    def __init__(self, settings, build, directory, dovecot_port, recorder_port):
        self.settings, self.directory = settings, directory
        self.dovecot_port, self.recorder_port = int(dovecot_port), int(recorder_port)
        self.program = f"{build}/tarnwell"
        self.ends = f"{build}/bench/ends"
        self.sections, self.targets, self.panels = [], Targets(), []
        self.servers = {FLOOR: [f"{self.ends}/CannedServer"], "tarnwell": [self.program, "serve"],
                        SDK: ["node", f"{PEERS}/sdk_server.mjs"]}

    def add(self, title, *texts):
        section = f"## {title}\n\n" + "\n".join(texts)
        print(section, flush=True)
        self.sections.append(section)

    def show(self, title, unit, values):
        """Adds a panel to the picture, with the values of the programs that a user may choose between."""
        self.panels.append((title, unit, [(name, values[name]) for name in ("tarnwell", SDK, LOOP) if name in values]))

    # The contenders of the mailbox measurements.

    def use_port(self, port):
        """Writes the settings. The program reads them again for every call."""
        with open(f"{self.settings}/config.json", "w") as file:
            json.dump({"email": USER, "imapHost": "localhost", "imapPort": port,
                       "safety": {"maxFetch": MOST_HITS, "maxMessagesPerCall": MOST_HITS}}, file)

    def tarnwell(self):
        return MCPServer(self.servers["tarnwell"])

    def sdk(self, port):
        return MCPServer(self.servers[SDK], {"MAIL_PORT": str(port), "MAIL_USER": USER, "MAIL_PASSWORD": PASSWORD,
                                             "MAIL_CA": f"{self.directory}/ca.pem"})

    def replay(self, port, commands):
        return Comparator([f"{self.ends}/TLSReplay", str(port), f"{self.directory}/certificates", commands])

    def loop(self, port, hits=HITS):
        return Comparator([sys.executable, f"{PEERS}/imap_loop.py", str(port), f"{self.directory}/ca.pem", USER,
                          PASSWORD, str(hits)])

    def record(self, name, tool, **arguments):
        """Writes the commands that the program sends for one call to a file, with an empty line after those that it
        sends together. Returns its path."""
        self.use_port(self.recorder_port)
        with self.tarnwell() as server:
            server.call(tool, **arguments)
        with open(f"{self.directory}/wire") as file:
            pieces = [json.loads(line) for line in file]
        own = [piece for piece in pieces if piece["connection"] == pieces[-1]["connection"]]
        path = f"{self.directory}/{name}.commands"
        with open(path, "w", encoding="latin1") as file:
            for _, together in itertools.groupby(own, lambda piece: piece["burst"]):
                file.writelines(f"{piece['text']}\n" for piece in together)
                file.write("\n")
        self.use_port(self.dovecot_port)
        return path

    # The measurements.

    def start(self):
        samples, processor = {name: [] for name in self.servers}, {name: [] for name in self.servers}
        counts = {FLOOR: 30, "tarnwell": 30, SDK: 2}
        for _ in range(10):
            for name, command in self.servers.items():
                result = run_timer(f"{self.ends}/ServeTimer", counts[name], command)
                samples[name] += result["wall"]
                processor[name].append(result["processor"] / counts[name])
        self.add("Start to the answer of initialize", comparison(samples, MILLISECONDS),
                 "Processor time of the whole process: " + ", ".join(
                     f"{name} {figure(median(times) / 1e6)} ms" for name, times in processor.items()) + ".\n")
        self.show("Start", "ms", {name: median(times) / 1e6 for name, times in samples.items()})
        own = median(samples["tarnwell"])
        self.targets.at_most("start, above the C floor", (own - median(samples[FLOOR])) / 1e6, 4, "ms")
        self.targets.at_least("start, faster than the SDK server", ratio(samples[SDK], samples["tarnwell"]), 30, "x")

    def memory(self):
        rows, resident = [], {}
        for name, command in self.servers.items():
            server = self.sdk(self.dovecot_port) if name == SDK else MCPServer(command)
            with server:
                server.request("tools/list")
                listed, searched = server.memory(), None
                if name != FLOOR:
                    server.call("search_inbox", limit=HITS)
                    searched = server.memory()
            rows.append([name, *(figure(each[key] / 1e6) if each else "" for each in (listed, searched)
                                 for key in ("resident", "peak"))])
            resident[name] = [each["resident"] / 1e6 for each in (listed, searched) if each]
        self.add("Resident memory", table(["", "after tools/list, MB", "peak, MB", f"after a search of {HITS}, MB",
                                           "peak, MB"], rows))
        self.show("Memory after a search", "MB", {name: sizes[-1] for name, sizes in resident.items()})
        self.targets.at_most("memory after tools/list", resident["tarnwell"][0], 9, "MB")
        self.targets.at_most("memory after a search", resident["tarnwell"][1], 16, "MB")

    def search(self):
        commands = self.record("search", "search_inbox", limit=HITS)
        contenders = (REPLAY, "tarnwell", SDK, LOOP)
        wall, processor = {name: [] for name in contenders}, {name: [] for name in contenders}
        secrets = []
        with self.tarnwell() as own, self.sdk(self.dovecot_port) as sdk, self.loop(self.dovecot_port) as loop, \
                self.replay(self.dovecot_port, commands) as replay:
            rounds = {REPLAY: replay.round, "tarnwell": lambda: own.call("search_inbox", limit=HITS),
                      SDK: lambda: sdk.call("search_inbox", limit=HITS), LOOP: loop.round}
            for number in range(62):
                for name, take in in_any_order(rounds):
                    result = take()
                    if result["result"].get("count", HITS) != HITS:
                        raise RuntimeError(f"{name} found {result['result']['count']} messages, not {HITS}")
                    if number >= 2:  # before that, everything is cold
                        wall[name].append(result["wall"])
                        processor[name].append(result["processor"])
                secrets.append(own.call("get_status")["wall"])
        self.add(f"search_inbox, {HITS} hits, on loopback", comparison(wall, MILLISECONDS),
                 "Processor time of the process alone:\n", comparison(processor, MILLISECONDS),
                 "Of tarnwell's time the password takes about "
                 f"{figure(median(secrets) / 1e6)} ms (get_status, which looks for it too); the others are given "
                 "theirs.\n")
        self.show("Processor time of a search", "ms", {name: median(times) / 1e6 for name, times in processor.items()})
        self.targets.at_most("search, processor time", median(processor["tarnwell"]) / 1e6, 10, "ms")

    def large_body(self, title, uid):
        commands = self.record(f"body-{uid}", "get_message_body", uid=uid)
        with self.tarnwell() as fresh:
            fresh.call("get_message_body", uid=uid)
            peak = fresh.memory()["peak"]
        wall = {REPLAY: [], "tarnwell": []}
        with self.tarnwell() as server, self.replay(self.dovecot_port, commands) as replay:
            for _ in range(9):
                wall[REPLAY].append(replay.round()["wall"])
                wall["tarnwell"].append(server.call("get_message_body", uid=uid)["wall"])
        self.add(f"get_message_body, a text of {BODY_BYTES / 1e6:g} MB, {title}", comparison(wall, MILLISECONDS),
                 f"Peak memory of a fresh process: {figure(peak / 1e6)} MB.\n")
        self.targets.at_most(f"large body, {title}: peak memory", peak / BODY_BYTES, 4, "x the body")
        self.targets.at_most(f"large body, {title}: of the raw transfer's time",
                             ratio(wall["tarnwell"], wall[REPLAY]), 1.5, "x")


def tables_of_parts(directory):
    """The tables of the programs that measure the parts."""
    tables = []
    for name in sorted(os.listdir(directory)):
        with open(f"{directory}/{name}") as file:
            tables.append(f"## The parts: {name}\n\n{file.read()}")
    return "\n".join(tables)


def main():
    settings, build, directory, dovecot_port, recorder_port, *documents = sys.argv[1:]
    bench = Bench(settings, build, directory, dovecot_port, recorder_port)
    random.seed(1)  # the same orders in every run
    introduction = machine.description(build)
    print(introduction, flush=True)
    bench.use_port(bench.dovecot_port)
    bench.start()
    bench.memory()
    bench.search()
    distances, panels = distance.measure(bench)
    distance.count_round_trips(bench)
    bench.large_body("8bit", LARGE_8BIT)
    bench.large_body("base64", LARGE_BASE64)
    targets = f"## Targets\n\n{bench.targets.table()}"
    print(targets, flush=True)
    parts = tables_of_parts(f"{directory}/micro")
    print(parts, flush=True)
    if documents:
        with open(f"{documents[0]}/measurements.md", "w", encoding="utf-8") as file:
            file.write("\n".join([HEADING, introduction, targets, *bench.sections, parts]))
        with open(f"{documents[0]}/performance.svg", "w", encoding="utf-8") as file:
            file.write(picture("What a user notices", bench.panels))
        with open(f"{documents[0]}/distance.svg", "w", encoding="utf-8") as file:
            file.write(picture("A search near and far", panels, columns=len(distance.DISTANCES)))
        distance.replace_table(f"{documents[0]}/performance.md", distances)


if __name__ == "__main__":
    main()
