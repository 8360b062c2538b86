"""Measures searches of few and many messages, near and far, and counts the round trips of the tools that read."""
import json
from statistics import median

from processes import LOOP, REPLAY, SDK, Answering, in_any_order
from report import figure, ratio, table
from sample_mailbox import LARGE_BASE64

# Messages found, and milliseconds to the server in each direction.
COUNTS, DISTANCES = (1, 20, 100), (0, 20, 75)
# TCP, TLS, greeting; LOGIN; CAPABILITY with EXAMINE; SEARCH; FETCH; all bodies; LOGOUT
ROUND_TRIPS = 9


def search_from(bench, one_way, hits, rounds):
    """The times and the round trips of each contender, {name: samples}. There are none on this machine."""
    commands = bench.record(f"search-{hits}", "search_inbox", limit=hits)
    wall, trips = {}, {}
    proxy = [f"{bench.ends}/DelayProxy", str(one_way), str(bench.dovecot_port)]
    with Answering(proxy) as far:
        port = int(far.read()) if one_way else bench.dovecot_port
        bench.use_port(port)
        with bench.tarnwell() as own, bench.sdk(port) as sdk, bench.loop(port, hits) as loop, \
                bench.replay(port, commands) as replay:
            takes = {"tarnwell": lambda: own.call("search_inbox", limit=hits), REPLAY: replay.round,
                     SDK: lambda: sdk.call("search_inbox", limit=hits), LOOP: loop.round}
            for number in range(rounds + 1):
                for name, take in in_any_order(takes):
                    result = take()
                    if result["result"].get("count", hits) != hits:
                        raise RuntimeError(f"{name} found {result['result']['count']} messages, not {hits}")
                    counted = json.loads(far.read())["roundTrips"] if one_way else None
                    if number >= 1:  # before that, the comparators load their libraries
                        wall.setdefault(name, []).append(result["wall"])
                        trips.setdefault(name, []).append(counted)
    bench.use_port(bench.dovecot_port)
    return wall, trips


def measure(bench):
    """Searches of few and many messages, near and far."""
    contenders = ("tarnwell", REPLAY, SDK, LOOP)
    rows, panels = [], []
    for one_way in DISTANCES:
        for hits in COUNTS:
            wall, trips = search_from(bench, one_way, hits, 5 if one_way else 30)
            place = f"{one_way} ms" if one_way else "same machine"
            row = [place, str(hits)]
            for name in contenders:
                steps = f" ({median(trips[name]):g})" if one_way else ""
                row.append(figure(median(wall[name]) / 1e6) + steps)
            best = min((SDK, LOOP), key=lambda name: median(wall[name]))
            gain, above = ratio(wall[best], wall["tarnwell"]), ratio(wall["tarnwell"], wall[REPLAY])
            rows.append([*row, f"{figure(gain)} x", f"{figure(above)} x"])
            panels.append((f"{hits} message{'s' if hits > 1 else ''}, "
                           + (f"{one_way} ms away" if one_way else "same machine"), "ms",
                           [(name, median(wall[name]) / 1e6) for name in ("tarnwell", SDK, LOOP)]))
            case = f"search of {hits}, {place}"
            if one_way:
                bench.targets.at_most(f"{case}: round trips", median(trips["tarnwell"]), ROUND_TRIPS, "")
                if hits > 1:  # one message takes imaplib nine round trips too
                    bench.targets.at_least(f"{case}: faster than the best comparator", gain, 1.4, "x")
            else:
                bench.targets.at_least(f"{case}: faster than imapflow", ratio(wall[SDK], wall["tarnwell"]), 3, "x")
            bench.targets.at_most(f"{case}: of the raw replay's time", above, 1.25, "x")
    text = table(["each way", "messages", *(f"{name}, ms" for name in contenders), "best other to tarnwell",
                  "tarnwell to replay"], rows)
    bench.add("search_inbox near and far", text, "In brackets: the round trips, that of TCP included.\n")
    return text, panels


def count_round_trips(bench):
    """The round trips of each tool that reads."""
    uid = LARGE_BASE64 + 1  # an ordinary message
    calls = [("list_folders", {}, 7), ("get_message_summary", {"uid": uid}, 8), ("get_message_body", {"uid": uid}, 8)]
    for hits in (20, 100):
        calls += [("search_inbox", {"limit": hits}, 9), ("search_inbox", {"limit": hits, "from": "colleague"}, 10),
                  ("search_inbox", {"limit": hits, "from": "colleague", "subject": "week"}, 11),
                  ("propose_inbox_cleanup", {"limit": hits}, 9)]
    rows = []
    with Answering([f"{bench.ends}/DelayProxy", "20", str(bench.dovecot_port)]) as far:
        bench.use_port(int(far.read()))
        with bench.tarnwell() as own:
            for tool, arguments, wanted in calls:
                own.call(tool, **arguments)
                counted = json.loads(far.read())["roundTrips"]
                words = " ".join(f"{name} {value}" for name, value in arguments.items())
                rows.append([tool, words, str(counted)])
                bench.targets.at_most(f"{tool} {words}".strip() + ": round trips", counted, wanted, "")
    bench.use_port(bench.dovecot_port)
    bench.add("Round trips of the tools that read", table(["tool", "arguments", "round trips"], rows))


def replace_table(path, text):
    """Puts the table between the two marks of the document."""
    begin, end = "<!-- distances -->\n", "<!-- end -->\n"
    with open(path, encoding="utf-8") as file:
        before, rest = file.read().split(begin)
    with open(path, "w", encoding="utf-8") as file:
        file.write(before + begin + text + end + rest.split(end)[1])
