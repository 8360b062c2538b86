"""Numbers as tables of Markdown."""
import statistics

MILLISECONDS = ("ms", 1e6)


def percentile(samples, share):
    ordered = sorted(samples)
    return ordered[min(len(ordered) - 1, int(len(ordered) * share))]


def figure(value):
    """The value with three significant digits."""
    if value >= 1000:
        return f"{value:,.0f}".replace(",", " ")
    return f"{value:.0f}" if value >= 100 else f"{value:.1f}" if value >= 10 else f"{value:.2f}"


def table(header, rows):
    lines = ["| " + " | ".join(header) + " |", "|" + "---|" * len(header)]
    return "\n".join(lines + ["| " + " | ".join(row) + " |" for row in rows]) + "\n"


def ratio(some, others):
    """How many times as large as the others. With equally many samples this is the median of the ratios of the pairs,
    so a slow minute counts for both. Otherwise it is the ratio of the medians."""
    if len(some) == len(others):
        return statistics.median(one / other for one, other in zip(some, others))
    return statistics.median(some) / statistics.median(others)


def comparison(contenders, unit, own="tarnwell"):
    """A table with one row for each contender ({name: samples}) and its ratio to the program's own samples."""
    name, divisor = unit
    rows = []
    for contender, samples in contenders.items():
        median = statistics.median(samples)
        rows.append([contender, figure(median / divisor), figure(min(samples) / divisor),
                     f"{figure(percentile(samples, .1) / divisor)} to {figure(percentile(samples, .9) / divisor)}",
                     f"{figure(ratio(samples, contenders[own]))} x", str(len(samples))])
    return table(["", f"median, {name}", f"least, {name}", "10 % to 90 %", "to tarnwell", "samples"], rows)


class Targets:
    """The targets and the measured values."""

    def __init__(self):
        self._rows = []

    def at_most(self, what, measured, bound, unit):
        self._add(what, "at most", measured, bound, unit, measured <= bound)

    def at_least(self, what, measured, bound, unit):
        self._add(what, "at least", measured, bound, unit, measured >= bound)

    def exactly(self, what, measured, wanted, unit):
        self._add(what, "", measured, wanted, unit, measured == wanted)

    def _add(self, what, relation, measured, bound, unit, holds):
        self._rows.append([what, f"{relation} {bound:g} {unit}".strip(), f"{figure(measured)} {unit}",
                           "yes" if holds else "**no**"])

    def table(self):
        return table(["target", "wanted", "measured", "holds"], self._rows)
