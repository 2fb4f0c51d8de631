"""Spectra by scipy.fft in double precision, beside the program's."""
import numpy as np
from scipy import fft

from page import Section
from program import BLOCK, music, noise, sine

SIZES = (2048, 4096, 8192, 16384)  # at 44.1 and 48 kHz
FULL_SCALE_DB = 20 * np.log10(4)  # Hann halves, and a sine is half of its amplitude
SPEED = 16  # frames in the length of one


def size_at(rate, index):
    return 1 << (int(SIZES[index] * (max(1, rate) / 48000)) - 1).bit_length()


def frame_db(x, size, precision=float):
    """The last whole frame, and how many there were. Before the start was silence."""
    hop = size // SPEED
    frames = len(x) // hop
    padded = np.concatenate([np.zeros(size), x[: frames * hop].astype(float)])[-size:]
    window = 0.5 - 0.5 * np.cos(2 * np.pi * np.arange(size) / (size - 1))
    bins = np.abs(fft.rfft((padded * window).astype(precision))).astype(float) / size
    with np.errstate(divide="ignore"):
        db = np.maximum(20 * np.log10(bins) + FULL_SCALE_DB, -192)
    db[0] = -72  # no direct voltage
    return db, frames


def scalloping(distance, size):
    """What a Hann window costs a sine this many bins off a bin, in decibels."""
    n = np.arange(size)
    window = 0.5 - 0.5 * np.cos(2 * np.pi * n / (size - 1))
    return 20 * np.log10(abs(np.sum(window * np.exp(2j * np.pi * distance * n / size))) / size * 2)


class Comparison:
    def __init__(self, program, short):
        self.program = program
        self.section = section = Section("Spectrum", TEXT)
        self.bins = self.off = 0  # compared; more than 0.001 dB off
        self.single = 0.0  # worst error of SciPy's transform in single precision, same bins
        self.rows = {}
        for kind, text in (
            ("noise", "noise, independent left and right"),
            ("music", "music"),
            ("sine", "sines on a bin, between bins and at -70 dB"),
            ("tones", "a full-scale tone and one 60 dB below it"),
        ):
            upper = section.row("Level of each bin within 70 dB of the highest", text, "dB", 0.001,
                                "an error of 1e-4 of the bin's amplitude, invisible anywhere")
            lower = kind != "noise" and section.row(
                "Of each bin 70 to 80 dB below", text, "dB", 0.003,
                "rounding of a single-precision transform, the worst of many bins")
            self.rows[kind] = (upper, lower)
        self.frames = section.row("Frames made, size of the transform", "all of these", "", 0,
                                  "counted")
        self.zero = section.row("A full-scale sine on a bin, against 0 dB", "Mid, all sizes and "
                                "rates", "dB", 0.005, "the window is symmetric: 0.0042 dB low at "
                                "2048 points, 0.0005 at 16384")
        self.between = section.row("A sine halfway between bins, against theory (-1.42 dB)",
                                   "the same", "dB", 0.002, "the sine's mirror image adds up to "
                                   "0.001 dB")
        self.quiet = section.row("A sine of -70 dB on a bin, against -70 dB", "the same", "dB",
                                 0.006, "as at full scale")
        self.where = section.row("Frequency of the highest, distance from the bin nearest to the "
                                 "sine", "sines on a bin", "Hz", 1e-6, "the bin's own frequency")

    def check(self, kind, rate, index, left, right, page="spectrum"):
        size = size_at(rate, index)
        report = self.program.play(rate, left, right, page=page, SpectrumFFTSize=index)["spectrum"]
        where = f"{kind}, {rate} Hz, {size} points, {page}"
        right = left if right is None else right
        for key, x in (("mid", left + right), ("side", left - right)):
            true, frames = frame_db(x * np.float32(0.5), size)
            got = np.array(report[key], float)
            self.frames.add(len(got) - (size // 2 + 1), where)
            below = true[1:].max() - true
            below[0] = np.inf
            if true[1:].max() > -150:
                self.levels(kind, np.abs(got - true), below, f"{where}, {key}")
                plain, _ = frame_db(x * np.float32(0.5), size, np.float32)
                self.single = max(self.single, np.abs(plain - true)[below < 80].max())
            else:
                self.frames.add(max(0, got.max() + 72), f"{where}, {key}: not silent")
        self.frames.add(report["frames"] - frames, where)
        self.frames.add(report["fft_size"] - size, where)
        return report

    def levels(self, kind, error, below, where):
        heard = error[below < 80]
        self.bins += len(heard)
        self.off += np.count_nonzero(heard > 0.001)
        upper, lower = self.rows[kind]
        upper.add(error[below <= 70].max(), where)
        quiet = (below > 70) & (below < 80)
        if quiet.any():  # noise has hardly any
            (lower or upper).add(error[quiet].max(), where)

    def sines(self, rate, index, rng):
        size = size_at(rate, index)
        bin_hz = rate / size
        seconds = 2.2 * size / rate + BLOCK / rate
        for share in (0.05, 0.21, 0.4):
            k = int(size / 2 * share)
            phase = rng.uniform(0, 2 * np.pi)
            where = f"{rate} Hz, {size} points, bin {k}"
            report = self.check("sine", rate, index, sine(rate, k * bin_hz, seconds, 1, phase), None)
            self.zero.add(report["highest_db"], where)
            self.where.add(report["highest_hz"] - k * bin_hz, where)
            off = sine(rate, (k + 0.5) * bin_hz, seconds, 1, phase)
            report = self.check("sine", rate, index, off, None)
            self.between.add(report["highest_db"] - scalloping(0.5, size), where)
            soft = sine(rate, k * bin_hz, seconds, 10 ** (-70 / 20), phase)
            report = self.check("sine", rate, index, soft, None)
            self.quiet.add(report["mid"][k] + 70, where)
        low, high = sine(rate, 1000.3, seconds, 0.9), sine(rate, 3111.7, seconds, 0.0009)
        self.check("tones", rate, index, low + high, low - high)


def compare_spectra(program, rng, short):
    comparison = Comparison(program, short)
    rates = (48000,) if short else (44100, 48000, 96000)
    for rate in rates:
        for index in (0, 3) if short else range(4):
            seconds = 2.2 * size_at(rate, index) / rate + BLOCK / rate
            comparison.sines(rate, index, rng)
            for page in ("spectrum", "stereo"):
                comparison.check("noise", rate, index, *noise(rng, seconds, rate), page)
    rate, left, right = music(6 if short else 20)
    for index in (3,) if short else range(4):
        for ends in (len(left),) if short else (len(left), len(left) // 2, len(left) // 3):
            ends = ends // BLOCK * BLOCK
            comparison.check("music", rate, index, left[:ends], right[:ends])
    comparison.section.extra = (
        f"Of {comparison.bins} bins within 80 dB of the highest, {comparison.off} are off by more than "
        "0.001 dB. SciPy's own transform, asked to work in single precision, is off by up to "
        f"{comparison.single:.4f} dB on the same bins."
    )
    return [comparison.section]


TEXT = """
Hann window, levels of single bins, 0 dB for a full-scale sine on Mid. All four sizes at 44.1, 48 and
96 kHz (where the sizes double), last frame of the recording. What a spectrum by its nature
does not tell: a sine between two bins reads up to 1.42 dB low, noise reads lower the longer the
transform is, and two tones closer than four bins are one hill. More than 80 dB below the highest bin
single precision adds a floor of its own, about -130 dB beside a full-scale tone.
"""
