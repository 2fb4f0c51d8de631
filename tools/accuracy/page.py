"""What was compared and how it came out; the page made of it."""
import math
from dataclasses import dataclass, field


@dataclass
class Row:
    """One measure on one kind of material; the worst of all its cases."""

    what: str
    material: str
    unit: str
    allowed: float
    because: str
    worst: float = 0.0
    cases: int = 0
    where: str = ""

    def add(self, error, where=""):
        error = abs(float(error))
        self.cases += 1
        if not error <= self.worst:  # NaN counts as the worst
            self.worst, self.where = error, where

    def passed(self):
        return self.cases > 0 and self.worst <= self.allowed

    def number(self, value):
        if value == 0:
            return "none" if self.unit == "" else f"0 {self.unit}"
        if math.isnan(value):
            return "not a number"
        text = f"{value:.0f}" if value == int(value) and value < 1e6 else f"{value:.2g}"
        if "e" in text:
            mantissa, exponent = text.split("e")
            text = f"{mantissa}e{int(exponent)}"
        return f"{text} {self.unit}".strip()


@dataclass
class Section:
    title: str
    text: str
    rows: list = field(default_factory=list)
    extra: str = ""

    def row(self, *arguments):
        self.rows.append(Row(*arguments))
        return self.rows[-1]


def show(sections):
    """One line per row, for the terminal; the number of rows that failed."""
    failed = 0
    for section in sections:
        for row in section.rows:
            failed += not row.passed()
            verdict = "ok  " if row.passed() else "FAIL"
            where = "" if row.passed() or not row.where else f"  at {row.where}"
            print(
                f"{verdict} {section.title}: {row.what}, {row.material}: "
                f"{row.number(row.worst)} (allowed {row.number(row.allowed)}, "
                f"{row.cases} cases){where}"
            )
    return failed


HEAD = """# How right the figures are

Every measure of the analyser beside an independent computation of the same definition: plain NumPy
and SciPy in double precision, written from the formulas, sharing no code with the program. Both
get the same recordings; the program runs as a user runs it (`orvelscope measure --json`). "Worst"
is the largest difference over all cases of a row.

This page is written by one command, which also fails when a limit is exceeded:

    {command}

A shorter form of it runs with the tests. Recordings: seeded noise, sines and drums that the command
makes; music (two tracks of the Debian package parsec47-data, one a side) and speech (alsa-utils).
{runs} recordings were measured for this page.
"""


def markdown(sections, command, runs):
    lines = [HEAD.format(command=command, runs=runs)]
    failed = [row for section in sections for row in section.rows if not row.passed()]
    if failed:
        lines.append(f"**{len(failed)} rows exceed their limit; they are marked.**\n")
    for section in sections:
        lines += [f"## {section.title}\n", section.text.strip() + "\n"]
        lines.append("| Compared | On | Cases | Worst | Allowed | Where the limit comes from |")
        lines.append("|---|---|---:|---:|---:|---|")
        for row in section.rows:
            worst = row.number(row.worst)
            if not row.passed():
                worst = f"**{worst}, too much**"
            lines.append(
                f"| {row.what} | {row.material} | {row.cases} | {worst} | "
                f"{row.number(row.allowed)} | {row.because} |"
            )
        lines.append("")
        if section.extra:
            lines.append(section.extra.strip() + "\n")
    return "\n".join(lines).rstrip() + "\n"
