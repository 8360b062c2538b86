"""The measurements of the parts, as the programs of bench/micro left them: NAME.json from Google Benchmark, any
other file as it is."""
import json
import os
import statistics

from report import figure, percentile, table

NANOSECONDS = {"ns": 1, "us": 1e3, "ms": 1e6, "s": 1e9}


def benchmark_table(path):
    with open(path) as file:
        runs = json.load(file)["benchmarks"]
    samples = {}
    for run in runs:
        if run.get("run_type") != "aggregate" and not run.get("error_occurred"):
            samples.setdefault(run["run_name"], []).append(run)
    rows = []
    for name, repetitions in samples.items():
        times = [run["cpu_time"] * NANOSECONDS[run["time_unit"]] / 1e3 for run in repetitions]
        speeds = [run["bytes_per_second"] / 1e6 for run in repetitions if "bytes_per_second" in run]
        rows.append([f"`{name}`", figure(statistics.median(times)),
                     f"{figure(percentile(times, .1))} to {figure(percentile(times, .9))}",
                     figure(statistics.median(speeds)) if speeds else "", str(len(times))])
    return table(["", "median, µs", "10 % to 90 %", "MB/s", "samples"], rows)


def tables(directory):
    texts = []
    for name in sorted(os.listdir(directory)) if os.path.isdir(directory) else []:
        path = f"{directory}/{name}"
        if name.endswith(".json"):
            texts.append(benchmark_table(path))
        else:
            with open(path) as file:
                texts.append(file.read())
    return "### The parts\n\n" + "\n".join(texts) if texts else ""
