"""Peaks, overs, RMS, histogram and dynamic range from their definitions, beside the program."""
import numpy as np
from scipy.signal import lfilter

from page import Section
from program import music, noise, sine, slices, speech

UNITS_OF_FULL_SCALE = 20_000_000  # the RMS adds squares as whole numbers of this many units


def decibels(value):
    return 20 * np.log10(value) if value > 0 else -np.inf


def channels_of(left, right):
    """The five channels that every measure knows."""
    left, right = np.float32(left), np.float32(right)
    half = np.float32(0.5)
    return {
        "left": left,
        "right": right,
        "mid": (left + right) * half,
        "side": (left - right) * half,
        "max": np.where(np.abs(left) > np.abs(right), left, right),
    }


def slice_peaks(x, edges):
    return np.maximum.reduceat(np.abs(x), edges[:-1])


def sliding_rms(x, rate, milliseconds, ends, doubled=False):
    """Of the window that ends at each of `ends`; squares in whole units, as the meter adds them."""
    squares = np.trunc((x * np.float32(UNITS_OF_FULL_SCALE)) * x).astype(np.int64)
    total = np.concatenate([[0], np.cumsum(squares)])
    window = int(milliseconds * rate * 0.001)
    sums = total[ends] - total[np.maximum(0, np.asarray(ends) - window)]
    return np.sqrt(sums / UNITS_OF_FULL_SCALE / window * (2 if doubled else 1))


def coefficient(milliseconds, rate):
    """Of a follower that covers 99 % of a step in this time."""
    return float(np.exp(-np.log(100) / (milliseconds * rate * 0.001)))


def peak_hold(peaks, counts, rate, release_ms=5000, hold_ms=2000):
    """Jumps up, stands for the hold time, then falls; one step a sample; read after each slice."""
    release = coefficient(release_ms, rate)
    hold = int(rate * 0.001 * hold_ms)
    output, held, age = 0.0, 0.0, 0
    result = np.zeros(len(peaks))
    for i, (x, n) in enumerate(zip(peaks.astype(float), counts)):
        for _ in range(n):
            target = held
            if target < x:
                held, age, target = x, 0, x
            after, origin = age + 1, target
            if age >= hold:
                held, after = output, hold
                origin, target = output, x
            output = target + (origin - target) * (release if target <= origin else 0.0)
            age = after
        result[i] = output
    return result


def one_pole(values, counts, rate, milliseconds):
    """A follower without hold, stepped once a sample over values that last `counts` samples."""
    c = coefficient(milliseconds, rate)
    return lfilter([1 - c], [1, -c], np.repeat(values, counts))[np.cumsum(counts) - 1]


def dynamic_range(x, rate, edges, rms_ms, doubled):
    counts = np.diff(edges)
    loud = peak_hold(slice_peaks(x, edges), counts, rate)
    # The meter shows the RMS as a 32-bit number.
    rms = sliding_rms(x, rate, rms_ms, edges[1:], doubled).astype(np.float32).astype(float)
    soft = one_pole(rms, counts, rate, 1500)
    sounding = (loud > 0) & (soft > 0)
    if not sounding[-1]:
        return -96.0
    difference = np.maximum(-96, 20 * np.log10(loud[sounding])) - np.maximum(
        -96, 20 * np.log10(soft[sounding])
    )
    return one_pole(np.abs(difference), counts[sounding], rate, 1000)[-1]


def histogram(x, rate):
    """Counts of the last second, in steps of 1 dB from -96 dB, the last from +12 dB up."""
    x = np.abs(x[-int(rate) :].astype(float))
    db = 20 * np.log10(x[x > 0])
    bins = np.clip(np.floor(db[db >= -96] + 96).astype(int), 0, 108)
    return np.bincount(bins, minlength=109)


def materials(rng, short):
    seconds = 3.5 if short else 12
    rates = [48000] if short else [44100, 48000, 96000]
    found = [("noise", rate, *noise(rng, seconds, rate)) for rate in rates]
    # A rest that is no whole block, and half the noise beyond full scale.
    found.append(("hot noise", 48000, *noise(rng, 3, 48000, 0.0)[:, :-99]))
    found.append(("music", *music(4 if short else 20)))
    found.append(("speech", *speech()))
    return found


def compare_levels(program, rng, short):
    section = Section("Peaks, overs, RMS", TEXT)
    peak = section.row("Peak, highest and last slice", "noise, music, speech; all five channels",
                       "", 0, "single-precision arithmetic, same order: the same number")
    overs = section.row("Overs", "the same", "", 0, "counted")
    rms = section.row("RMS; windows of 10, 300, 500, 1000 ms; plain and K modes", "the same, and "
                      "full-scale sines", "dB", 2e-6,
                      "read out as a 32-bit number: half a step is 0.5e-6 dB")
    limits = section.row("RMS above the true one, or further below it than one unit a sample",
                         "noise from -10 to -80 dB", "dB", 1e-5, "rounding of the true figure")
    dynamic = Section("Dynamic range", DYNAMIC_TEXT)
    dr = dynamic.row("Dynamic range", "noise, music, speech", "dB", 0.001, "followers in closed "
                     "form per slice against one step per sample; the figure shows 0.1 dB")
    counts = Section("Level histogram", HISTOGRAM_TEXT)
    bins = counts.row("Samples that stand in another bin", "noise, music, speech; all five "
                      "channels, 109 bins", "samples", 2, "logarithm in single precision: one "
                      "sample in 100 000 lies closer to an edge than that resolves")

    for name, rate, left, right in materials(rng, short):
        path = program.write(rate, left, right)
        edges = slices(len(left), rate)
        channels = channels_of(left, right)
        lengths = [500, 10] if short else [500, 10, 300, 1000]
        for mode, length in zip([1, 0, 2, 4], lengths):
            page = "stereo" if mode else "scope"
            report = program.measure(path, page=page, GlobalMeteringMode=mode,
                                     GlobalRMSLength=length)
            for key, x in channels.items():
                levels = report["levels"][key]
                where = f"{name}, {rate} Hz, {key}, {length} ms"
                peaks = slice_peaks(x, edges)
                peak.add(float(peaks.max()) - levels["peak_max"], where)
                peak.add(float(peaks[-1]) - levels["peak_last"], where)
                overs.add(int((peaks > 1).sum()) - levels["overs"], where)
                if levels["rms"] is not None:
                    true = sliding_rms(x, rate, length, [len(x)], mode > 1)[0]
                    rms.add(decibels(levels["rms"]) - decibels(true), where)
                if mode == 1:
                    difference = histogram(x, rate) - np.array(report["histogram"][key])
                    bins.add(np.abs(difference).sum() / 2, where)
            for key in ("left", "right"):
                true = dynamic_range(channels[key], rate, edges, length, mode > 1)
                dr.add(report["dynamic_range"][key] - true, f"{name}, {rate} Hz, {key}, {length} ms")
            if short:
                break

    for mode in (0, 2):
        x = sine(48000, 997, 1.5)
        report = program.play(48000, x, GlobalMeteringMode=mode)
        true = sliding_rms(x, 48000, 500, [len(x)], mode > 1)[0]
        rms.add(decibels(report["levels"]["left"]["rms"]) - decibels(true), f"sine, mode {mode}")
    section.extra = compare_quiet(program, rng, limits, short)
    return [section, dynamic, counts]


def compare_quiet(program, rng, row, short):
    """How far the RMS reads below the true one at low levels."""
    levels = (-40, -63) if short else (-10, -20, -30, -40, -50, -55, -60, -63, -66, -70, -73, -76, -80)
    table = []
    for level in levels:
        x = noise(rng, 1, 48000, level, 1)[0]
        read = program.play(48000, x)["levels"]["left"]["rms"]
        square = float(np.mean(x[-24000:].astype(float) ** 2))
        true = 10 * np.log10(square)
        lowest = 10 * np.log10(max(1e-30, square - 1 / UNITS_OF_FULL_SCALE))
        row.add(max(0, decibels(read) - true) if read > 0 else 0, f"{level} dB")
        row.add(max(0, lowest - decibels(read)) if read > 0 or lowest > -120 else 0, f"{level} dB")
        table.append((true, f"{decibels(read) - true:+.3f} dB" if read > 0 else "reads nothing"))
    lines = ["True RMS of the noise, and what the meter reads beside it:", "", "| True | Reads |",
             "|---:|---:|"]
    return "\n".join(lines + [f"| {true:.2f} dB | {text} |" for true, text in table])


TEXT = """
Peaks are sample peaks, not true peaks: nothing is oversampled. An over is a slice of at most a
millisecond with at least one sample beyond full scale, not one sample. The RMS sums squares as whole
numbers, 20 million to full scale, so that it never drifts and returns to exactly nothing in
silence. The price is at the bottom: what is lost of each square makes quiet programme read low, as
the table below shows. For a constant tone near the bottom it may be more or less than for noise.
"""
DYNAMIC_TEXT = """
The distance of a held peak (2 s hold, 5 s fall) from a slow RMS (1.5 s), in decibels, smoothed over
1 s. It is a figure of the last seconds heard, not of the whole piece. In the K modes the RMS counts 3 dB
more, so the range is 3 dB smaller.
"""
HISTOGRAM_TEXT = """
Of the last second, in steps of 1 dB from -96 dB. A sample of exactly 0 is in no bin.
"""
