"""Transients and sibilance from their definitions, beside the program's."""
import numpy as np
from numpy.lib.stride_tricks import sliding_window_view
from scipy import signal

from levels import coefficient
from page import Section
from program import BLOCK, drums, music, noise, sine, speech

FLOOR = 10 ** (-70 / 20)
DEAD_MS = 75
BANDS = {"male": (5000, 8000), "female": (7000, 10000)}
GATE = 10 ** (-18 / 20)  # of twice the level in the band


# ---- transients


def envelope(left, right, rate):
    """Highest magnitude of either side in the last 10 ms."""
    window = int(rate * 0.001 * 10)
    m = np.maximum(np.maximum(np.abs(left), np.abs(right)), np.float32(FLOOR)).astype(float)
    padded = np.concatenate([np.zeros(window - 1), m])
    return np.concatenate(
        [sliding_window_view(padded[i : i + 65536 + window - 1], window).max(axis=1)
         for i in range(0, len(m), 65536)]
    )


def follow(x, rate, attack_ms, release_ms, hold_ms):
    """Towards the input in the attack or release time; stands on a peak for the hold time."""
    attack, release = coefficient(attack_ms, rate), coefficient(release_ms, rate)
    hold = int(rate * 0.001 * hold_ms)
    value, held, count = 0.0, 0.0, 0
    result = np.empty(len(x))
    for i, sample in enumerate(x.tolist()):
        if sample > held:
            held, count = sample, 0
        if count >= hold:
            held, count = value, hold
        else:
            count += 1
            sample = held
        value = sample + (held - sample) * (attack if sample > held else release)
        result[i] = value
    return result


def transients(left, right, rate):
    """Marks, and how close to the threshold a decision came."""
    peaks = envelope(left, right, rate)
    # 0.1 ms is the shortest time that still counts as one.
    fast, slow = follow(peaks, rate, 0.1, 50, 3), follow(peaks, rate, 100, 60, 0)
    rise = np.where(fast > FLOOR * (1 + 1e-7), np.maximum(0, fast - slow) / fast, 0)
    dead = int(rate * 0.001 * DEAD_MS)
    marks, last = [], -1  # the dead time also runs at the start
    for i in np.flatnonzero(rise > 1 - 0.4875):
        if i - last > dead:
            marks.append(int(i))
            last = i
    return marks


def compare_transients(program, rng, short):
    section = Section("Transients", TRANSIENT_TEXT)
    because = "a mark stands on a sample or it does not"
    rows = {
        kind: section.row("Marks that stand elsewhere, or on one side only", text, "", 0, because)
        for kind, text in (("drums", "drums: kick, snare, hats, random dynamics and timing"),
                           ("music", "music"), ("speech", "speech"), ("steps", "clicks and steps"))
    }
    distances = []
    seconds = 8 if short else 30
    found = [("drums", rate, *drums(rng, rate, seconds))
             for rate in ((48000,) if short else (44100, 48000, 96000))]
    found += [("music", *music(5 if short else 40)), ("speech", *speech())]
    clicks = np.zeros(96256, np.float32)
    clicks[[2000, 5000, 5599, 12000, 12001, 30000, 33599, 33601]] = 0.5
    clicks[60000:] = 0.01
    found.append(("steps", 48000, clicks, 0 * clicks))
    total = 0
    for kind, rate, left, right in found:
        hits = []
        if kind == "drums":
            (left, right), hits = left, right
        got = program.play(rate, left, right)["transients"]
        true = transients(left, right, rate)
        rows[kind].add(len(set(got) ^ set(true)), f"{kind}, {rate} Hz: {len(true)} marks")
        total += len(true)
        marks = np.array(true, int)
        for hit in hits:
            after = marks[(marks >= hit) & (marks < hit + 0.02 * rate)]
            if len(after):
                distances.append((after[0] - hit) / rate * 1000)
            else:
                distances.append(np.inf)
    heard = np.array([d for d in distances if np.isfinite(d)])
    at_once = np.count_nonzero(heard == 0)
    section.extra = (
        f"{total} marks were compared. Of {len(distances)} kicks and snares {at_once} were marked on "
        f"their very first sample, {len(heard) - at_once} more within {heard.max():.1f} ms, and "
        f"{len(distances) - len(heard)} not: too soon after a mark (75 ms), or they did not rise "
        "enough above what still sounded."
    )
    return [section]


# ---- sibilance


def band(x, rate, voice):
    low, high = BANDS[voice]
    for kind, hz in (("highpass", low), ("lowpass", high)):
        sections = signal.butter(1, hz, kind, fs=rate, output="sos")
        x = signal.sosfilt(sections, signal.sosfilt(sections, x))
    return x


def sibilance(left, right, rate, voice):
    """Envelope of the gate: 1 while twice the level in the band exceeds -18 dB."""
    level = 2 * np.maximum(*(np.abs(band(x.astype(float), rate, voice)) for x in (left, right)))
    c = coefficient(100, rate)
    return signal.lfilter([1 - c], [1, -c], (level > GATE).astype(float))


def measure_sibilance(program, path, voice, **options):
    key = "ScopeDeEsserMale" if voice == "male" else "ScopeDeEsserFemale"
    report = program.measure(path, **{key: 1}, **options)
    return report["sibilance"][voice], report


def rising(rate, hz, voice, decibels_a_second):
    """A sine that crosses the level at which the gate is open half of the time after 4 s."""
    response = abs(band_response(rate, hz, voice))
    crossing = GATE / 2 * np.sqrt(2) / response
    frames = 8 * rate // BLOCK * BLOCK
    t = np.arange(frames) / rate
    gain = crossing * 10 ** ((t - 4) * decibels_a_second / 20)
    return (gain * np.sin(2 * np.pi * hz * t)).astype(np.float32)


def band_response(rate, hz, voice):
    low, high = BANDS[voice]
    response = 1
    for kind, edge in (("highpass", low), ("lowpass", high)):
        response *= signal.sosfreqz(signal.butter(1, edge, kind, fs=rate, output="sos"), [hz],
                                    fs=rate)[1][0] ** 2
    return response


def compare_sibilance(program, rng, short):
    section = Section("Sibilance", SIBILANCE_TEXT)
    # A cut glides to its target, and frequencies close to each other share the design made first:
    # 15 Hz at 5 kHz, 39 Hz at 10 kHz. There, at 44.1 kHz, 0.4 % of the cut are up to 0.1 dB.
    response = section.row("Response of the band", "sines rising by 1 dB/s, 2 to 14 kHz, both "
                           "voices", "dB", 0.1, "close frequencies share a design: up to 39 Hz "
                           "at a cut of 10 kHz")
    seconds = section.row("Seconds with the envelope above 0.5", "speech at three levels, noise "
                          "bursts", "s", 0.01, "the glide at the start, and the same near the "
                          "threshold")
    shape = section.row("Envelope, column by column", "speech and noise bursts, last second", "",
                        0.02, "the same: a gate that opens or shuts some samples earlier or later")
    rate_list = (48000,) if short else (44100, 48000, 96000)
    for rate in rate_list:
        for voice in BANDS:
            for hz in (6012.3,) if short else (2003.7, 4001.9, 5003.3, 6325.1, 8002.9, 10007.7, 14005.1):
                x = rising(rate, hz, voice, 1)
                got, _ = measure_sibilance(program, program.write(rate, x), voice)
                true = np.count_nonzero(sibilance(x, x, rate, voice) > 0.5) / rate
                response.add(got - true, f"{voice}, {hz} Hz at {rate} Hz")

    found = [(f"speech {gain} dB", speech()[0],
              *(np.float32(10 ** (gain / 20)) * x for x in speech()[1:])) for gain in (0, 6, 12)]
    for rate in rate_list:
        burst = noise(rng, 4.2, rate, -14)
        gate = (np.arange(burst.shape[1]) // (rate // 5)) % 3 == 0
        found.append(("noise bursts", rate, *(burst * gate.astype(np.float32))))
    for name, rate, left, right in found:
        frames = len(left) // BLOCK * BLOCK
        left, right = left[:frames], right[:frames]
        path = program.write(rate, left, right)
        for voice in BANDS:
            true = sibilance(left, right, rate, voice)
            got, report = measure_sibilance(program, path, voice, columns=rate // 100,
                                            ScopeVisibleTime_ms=10)
            where = f"{name}, {voice}, {rate} Hz"
            seconds.add(got - np.count_nonzero(true > 0.5) / rate, where)
            layer = np.array(report["scope"]["layers"][4])[:, 1]
            shape.add(np.abs(layer - true[-len(layer) :]).max(), where)
    return [section]


TRANSIENT_TEXT = """
Positions are sample numbers in the recording. A mark stands where the loudest sample of the last
10 ms has risen by more than half above what the slow follower (100 ms) knows; the next one at least
75 ms later, and none in the first 75 ms. Slow swells and hits under louder sound have no mark.
"""
SIBILANCE_TEXT = """
The band is a first-order Butterworth low cut and high cut, each run twice: 6 dB down at its edges
(male 5 to 8 kHz, female 7 to 10 kHz), so it is a gentle band and a loud cymbal counts as an s. The
response was measured from outside: the level at which the gate is open half of the time, for sines
of known frequency. Compared in steady state; for some milliseconds after it is switched on, the
filter glides into place.
"""
