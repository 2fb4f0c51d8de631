"""Butterworth sections by scipy.signal, beside those that the program designs."""
import os
import subprocess

import numpy as np
from scipy import signal

from page import Section

KINDS = {1: "lowpass", 2: "highpass", 3: "bandpass", 4: "bandstop"}


def read_designs(path):
    """One design a line: kind, order, rate, edges, then five coefficients a section."""
    for line in subprocess.run([path], capture_output=True, check=True).stdout.split(b"\n"):
        values = [float(value) for value in line.split()]
        if values:
            kind, order, rate, low, high = values[:5]
            b0, b1, b2, a1, a2 = np.array(values[5:]).reshape(-1, 5).T
            yield int(kind), int(order), rate, low, high, np.stack(
                [b0, b1, b2, np.ones(len(b0)), a1, a2], axis=1)


def poles_of(sections):
    """Poles at 0 only fill up sections of the first order."""
    return np.concatenate([np.roots(np.trim_zeros(section[3:], "b")) for section in sections])


def compare_filters(program, rng, short):
    path = os.path.join(os.path.dirname(program.path), "..", "tests", "bin", "filter_designs")
    section = Section("Filter design", TEXT)
    poles = section.row("Poles", "Butterworth low pass, high pass, band pass, band stop; orders 1 "
                        "to 12, 20 Hz to 20 kHz, three sample rates", "", 1e-9, "16 digits; "
                        "roots of a section at low frequencies nearly coincide, which costs half of "
                        "them")
    response = section.row("Response where it is above -120 dB", "the same", "dB", 1e-6,
                           "16 digits, of which a high order at 20 Hz loses half")
    if not os.path.exists(path):
        raise RuntimeError(f"there is no {path}; build the target filter_designs")
    for kind, order, rate, low, high, sections in list(read_designs(path))[:: 9 if short else 1]:
        edges = [low, high] if kind > 2 else low
        true = signal.butter(order, edges, KINDS[kind], fs=rate, output="sos")
        where = f"{KINDS[kind]}, order {order}, {low:.1f} to {high:.1f} Hz at {rate:.0f} Hz"
        ours, theirs = poles_of(sections), poles_of(true)
        distance = np.abs(ours[:, None] - theirs[None, :])
        poles.add(max(distance.min(axis=0).max(), distance.min(axis=1).max()), where)
        hz = np.geomspace(10, rate * 0.499, 400)
        got, expected = (np.abs(signal.sosfreqz(s, hz, fs=rate)[1]) for s in (sections, true))
        heard = expected > 1e-6
        response.add(np.abs(20 * np.log10(got[heard] / expected[heard])).max(), where)
    return [section]


TEXT = """
The sections that the sibilance band is made of, and their relatives, beside `scipy.signal.butter`.
Compared are the poles and the response, as sections may be paired in any order.
"""
