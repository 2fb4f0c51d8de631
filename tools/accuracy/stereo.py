"""Correlation and its ballistics from their definitions, beside the program's."""
import numpy as np

from page import Section
from program import music, noise, sine, slices, speech


def block_correlation(left, right):
    """Pearson's, of one window; samples below -80 dB count as silence."""
    left, right = (np.where(np.abs(x) < 0.0001, 0, x).astype(float) for x in (left, right))
    if left.std() == 0 or right.std() == 0:
        return 0.0
    return float(np.clip(np.corrcoef(left, right)[0, 1], -1, 1))


def correlation(left, right, rate):
    """What the meter shows at the end: 0.7 % of the way to the last window's, a slice."""
    window = int(max(1, rate) / 44100 * 2048)
    blocks = [
        block_correlation(left[i : i + window], right[i : i + window])
        for i in range(0, len(left) - window + 1, window)
    ]
    edges = slices(len(left), rate)
    value, last, done = 0.0, 0.0, 0
    for begin, end in zip(edges[:-1], edges[1:]):
        if end - begin < 2:
            continue
        finished = blocks[done : end // window]
        done = end // window
        if finished:
            last = float(np.mean(finished))
        value += (last - value) * 0.007
    return value


def compare_correlation(program, rng, short):
    section = Section("Correlation", TEXT)
    because = "the needle is a 32-bit number that takes many small steps"
    fixed = section.row("Correlation after seconds of the same", "mono, antiphase, one side silent, "
                        "noise of known correlation, sines 60 degrees apart", "", 2e-5, because)
    steps = section.row("On its way there, after 50 to 400 ms", "mono and antiphase", "", 1e-4,
                        because)
    real = section.row("Correlation at the end", "music, speech", "", 2e-5, because)
    theory = section.row("Against theory, after 5 s", "mono +1, antiphase -1, silent side 0, sines "
                         "60 degrees apart 0.5", "", 0.001, "windows hold no whole number of "
                         "periods")

    def check(row, where, rate, left, right):
        got = program.play(rate, left, right, page="stereo")["correlation"]
        row.add(got - correlation(left, right, rate), f"{where}, {rate} Hz")
        return got

    for rate in (48000,) if short else (44100, 48000, 96000):
        a, b = noise(rng, 5, rate)
        theory.add(check(fixed, "mono", rate, a, a) - 1, "mono")
        theory.add(check(fixed, "antiphase", rate, a, -a) + 1, "antiphase")
        theory.add(check(fixed, "silent side", rate, a, 0 * a), "silent side")
        for share in (-0.5, 0.0, 0.3, 0.8):
            mixed = (share * a + np.sqrt(1 - share**2) * b).astype(np.float32)
            check(fixed, f"noise {share}", rate, a, mixed)
        wave = [sine(rate, 997, 5, 0.5, phase) for phase in (0, np.pi / 3)]
        theory.add(check(fixed, "sines", rate, *wave) - 0.5, "sines")
        for milliseconds in (50, 100, 200, 400):
            n = int(rate * 0.001 * milliseconds) // 512 * 512
            for sign in (1, -1):
                check(steps, f"{sign:+d}, {milliseconds} ms", rate, a[:n], sign * a[:n])
    for name, (rate, left, right) in (("music", music(20)), ("speech", speech())):
        for end in (len(left), len(left) // 2, len(left) // 3):
            end = end // 512 * 512
            check(real, name, rate, left[:end], right[:end])
    return [section]


TEXT = """
Pearson's correlation of windows of 46 ms, one after the other; samples below -80 dB count as
silence, and a silent side gives 0. The needle goes 0.7 % of the way in each slice of a millisecond:
63 % of a step in about 140 ms, 99 % in about 660 ms. Small host blocks cut slices short, which
makes it a little faster.
"""
