"""The scope's table, and where its periods begin, counted in whole numbers."""
import os
import struct
from decimal import Decimal, getcontext
from fractions import Fraction
from math import ceil, floor

import numpy as np

from detection import transients
from page import Section
from program import BLOCK, drums, noise

getcontext().prec = 60
STEPS = 4096  # a left sample counts to this, a right one counts how often


# ---- the table


def compare_table(program, rng, short):
    section = Section("Scope table", TABLE_TEXT)
    wave = section.row("Lowest and highest sample of a column", "noise, drums; all channel modes; "
                       "1 and 16 samples a column", "", 0, "picked, not computed")
    marks = section.row("Columns with a transient or an over", "the same", "", 0, "the same")
    rate = 48000
    found = [("noise", *noise(rng, 2, rate, -3))]
    for seed in range(1 if short else 4):
        (left, right), _ = drums(rng, rate, 4)
        found.append((f"drums {seed}", 1.2 * left, 1.2 * right))
    for name, left, right in found:
        path = program.write(rate, left, right)
        louder = np.where(np.abs(left) > np.abs(right), left, right)
        mono = (left + right) * np.float32(0.5)
        lanes = [(left, right), (left, left), (right, right), (mono, mono), (louder, louder)]
        for mode, (first, second) in enumerate(lanes):
            flags = np.zeros(len(left))
            flags[transients(first, second, rate)] = 1
            overs = (np.abs(louder) > 1).astype(float)
            for each, columns in ((1, 480), (16, 3000)):
                report = program.measure(path, columns=columns, ScopeChannelMode=mode,
                                         ScopeVisibleTime_ms=each * columns / 48)
                layers = np.array(report["scope"]["layers"])
                both = (np.minimum(first, second), np.maximum(first, second))
                where = f"{name}, mode {mode}, {each} samples a column"
                for layer, (low, high) in ((0, both), (1, (first, first)), (2, (second, second)),
                                           (3, (flags, flags)), (5, (overs, overs))):
                    low = low[-each * columns :].reshape(columns, each).min(axis=1)
                    high = high[-each * columns :].reshape(columns, each).max(axis=1)
                    wrong = (layers[layer] != np.stack([low, high], axis=1)).sum()
                    (wave if layer < 3 else marks).add(wrong, f"{where}, layer {layer}")
            if short:
                break
    return [section]


# ---- the periods


def note_period(note, times):
    """Seconds: whole periods of a note, `times` of them, or what it takes to last 1 ms."""
    hz = Decimal("13.75") * Decimal(2) ** (Decimal(note - 9) / 12)
    one = 1 / Fraction(hz)
    return one * max(times, ceil(Fraction(1, 1000) / one))


def cases(short):
    """Name, sync settings, tempo, period in seconds, exactly."""
    beats = [(120, 3, 1), (130, 3, 1), (66, 3, 1), (97.3, 2, 1)]
    notes = [(60, 4), (60, 1), (57, 1), (96, 4)]
    tones = [(50, 1), (37, 4), (17, 1), (33.3, 1)]
    times = [19, 100, 333.3]
    if short:
        beats, notes, tones, times = beats[1:3], notes[:1], tones[2:], times[:1]
    # The program keeps tempo and parameters as 32-bit numbers.
    def exact(value):
        return Fraction(float(np.float32(value)))

    for tempo, index, many in beats:
        whole = 4 * 60 / exact(tempo)
        yield (f"beat, {tempo} BPM, 1/{2 ** (5 - index)}",
               dict(tempo=tempo, ScopeSyncMode=2, ScopeSyncDuration_BeatTime=index,
                    ScopeVisibleTime_Multiplier=many), whole / 2 ** (5 - index) * many)
    for note, many in notes:
        yield (f"pitch, note {note} x{many}",
               dict(ScopeSyncMode=3, ScopeSyncDuration_Pitch=note,
                    ScopeVisibleTime_Multiplier=many), note_period(note, many))
    for hz, many in tones:
        yield (f"frequency, {hz} Hz x{many}",
               dict(ScopeSyncMode=4, ScopeSyncDuration_Frequency=hz,
                    ScopeVisibleTime_Multiplier=many), many / exact(hz))
    for milliseconds in times:
        yield (f"time, {milliseconds} ms", dict(ScopeSyncMode=5, ScopeVisibleTime_ms=milliseconds),
               exact(milliseconds) / 1000)


class CountingRecording:
    """A WAV whose samples tell their own number; made once, then cut shorter and shorter."""

    def __init__(self, program, rate, seconds):
        self.path = program.file(f"counting-{rate}.wav")
        n = np.arange(rate * seconds)
        left, right = (n % STEPS) / STEPS, (n // STEPS) / (4 * STEPS)
        assert n[-1] // STEPS < 4 * STEPS
        program.write(rate, left, right, os.path.basename(self.path))
        self.header = os.path.getsize(self.path) - 8 * len(n)

    def cut(self, frames):
        os.truncate(self.path, self.header + 8 * frames)
        with open(self.path, "r+b") as file:
            file.seek(4)
            file.write(struct.pack("<I", self.header - 8 + 8 * frames))
            file.seek(self.header - 4)
            file.write(struct.pack("<I", 8 * frames))


def number_of(layers, column):
    """Which sample stands first in a column."""
    left, right = layers[1][column][0], layers[2][column][0]
    return round(left * STEPS) + round(right * 4 * STEPS) * STEPS


def ends_near(period, frames, short):
    """Where to stop, so that the last boundary before is a telling one.

    Boundaries that fall on a whole sample show arithmetic that is a hair too low, others such that
    is too high.
    """
    def end_after(m):
        begin, following = floor(m * period), floor((m + 1) * period)
        return begin + max(2, (following - begin) // 2)

    last = int(frames / period) - 2
    cycle = period.denominator
    telling = [last // cycle * cycle or last] + ([] if short else [last])
    return {end_after(m): m for m in telling}


def compare_sync(program, rng, short):
    section = Section("Synchronisation", SYNC_TEXT)
    rows = {}
    for kind in ("beat", "pitch", "frequency", "time"):
        rows[kind] = section.row("First sample of the picture", f"{kind}, after up to ten minutes",
                                 "samples", 0, "exact to the sample is asked for; periods in whole "
                                 "numbers and fractions, pitches to 60 digits")
    for rate in (8000,) if short else (44100, 48000):
        jobs = []
        for name, settings, seconds in cases(short):
            period = seconds * rate
            # In the short form only the pitch, whose periods are the most, plays for ten minutes.
            minutes = 1 if short and not name.startswith("pitch") else 10
            for end, m in ends_near(period, 60 * minutes * rate, short).items():
                jobs.append((end, m, name, settings, period))
        recording = CountingRecording(program, rate, 600)
        for end, m, name, settings, period in sorted(jobs, key=lambda job: -job[0]):
            if end % BLOCK in range(1, 10):  # so that no block is shorter than the shortest
                end += 10
            recording.cut(end)
            layers = program.measure(recording.path, columns=floor(period), **settings)["scope"]["layers"]
            # At the end the picture holds the period under way.
            error = number_of(layers, 0) - floor(m * period)
            rows[name.split(",")[0]].add(error, f"{name}, {rate} Hz, boundary {m} at "
                                         f"{float(m * period):.6f}: {error:+d}")
        os.remove(recording.path)
    return [section]


TABLE_TEXT = """
Each column of the scope holds the lowest and the highest sample that fell into it. Compared where a
column is a whole number of samples and blocks are a whole number of columns. Columns longer than
a slice of the analysis (a millisecond) begin half a column before their nominal place, at the end of
the slice that reaches it, except the first, which begins at the sync point; no sample is lost.
"""
SYNC_TEXT = """
The samples of these recordings tell their own number (left counts from 0 to 4095, right counts how
often). The scope, set to one sample a column, then shows which sample it takes for the first of the
period. That is compared with the exact one, the last whole sample at or before each multiple of the
period, counted from the start in fractions. Among the ends are those where the boundary falls on a
whole sample exactly, where rounding shows first.
"""
