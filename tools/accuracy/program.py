"""Runs `orvelscope measure` and reads what it says; the recordings it is given."""
import ctypes
import glob
import json
import os
import subprocess

import numpy as np
from scipy.io import wavfile

BLOCK = 512  # samples; the blocks the recordings are played in


class Program:
    """The program under test, with a folder for recordings and for settings of its own."""

    def __init__(self, path, folder):
        self.path = os.path.abspath(path)
        self.folder = folder
        self.runs = 0
        self.environment = dict(os.environ, XDG_CONFIG_HOME=folder, HOME=folder)

    def file(self, name):
        return os.path.join(self.folder, name)

    def write(self, rate, left, right=None, name="signal.wav"):
        """A 32-bit float WAV; one channel counts for both."""
        right = left if right is None else right
        samples = np.stack([left, right], axis=1).astype(np.float32)
        wavfile.write(self.file(name), int(rate), samples)
        return self.file(name)

    def measure(self, path, page="scope", columns=None, tempo=None, **settings):
        command = [self.path, "measure", path, "--json", "--page", page, "--block", str(BLOCK)]
        if columns:
            command += ["--columns", str(columns)]
        if tempo:
            command += ["--tempo", repr(tempo)]
        for key, value in settings.items():
            command += ["--set", f"{key}={value!r}"]
        done = subprocess.run(command, capture_output=True, env=self.environment, check=False)
        if done.returncode != 0:
            raise RuntimeError(f"{' '.join(command)}: {done.stderr.decode(errors='replace')}")
        self.runs += 1
        return json.loads(done.stdout)

    def play(self, rate, left, right=None, **options):
        return self.measure(self.write(rate, left, right), **options)


def slices(frames, rate):
    """Starts of the slices in which a recording is analysed without synchronisation, and its end.

    A slice lasts a millisecond, or until the block ends. The recordings here end with a whole
    block or with a rest of at least 10 samples, which is a block of its own.
    """
    assert frames % BLOCK == 0 or frames % BLOCK >= 10
    step = int(rate * 0.001)
    starts = [s for b in range(0, frames, BLOCK) for s in range(b, min(b + BLOCK, frames), step)]
    return np.array(starts + [frames])


# ---- recordings


class _Info(ctypes.Structure):
    _fields_ = [("frames", ctypes.c_int64)] + [
        (name, ctypes.c_int) for name in ("samplerate", "channels", "format", "sections", "seekable")
    ]


def decode(path):
    """Sample rate and first channel of a WAV or OGG file; both sides then measure the same WAV."""
    library = ctypes.CDLL("libsndfile.so.1")
    library.sf_open.restype = ctypes.c_void_p
    library.sf_readf_float.restype = ctypes.c_int64
    library.sf_readf_float.argtypes = [ctypes.c_void_p, ctypes.c_void_p, ctypes.c_int64]
    library.sf_close.argtypes = [ctypes.c_void_p]
    info = _Info()
    file = library.sf_open(os.fsencode(path), 0x10, ctypes.byref(info))
    if not file:
        raise RuntimeError(f"cannot read {path}")
    samples = np.zeros((info.frames, info.channels), np.float32)
    got = library.sf_readf_float(file, samples.ctypes.data, info.frames)
    library.sf_close(file)
    return info.samplerate, samples[:got, 0].copy()


def _pair(first, second, seconds):
    (rate, left), (other_rate, right) = decode(first), decode(second)
    assert rate == other_rate
    frames = min(len(left), len(right), int(seconds * rate)) // BLOCK * BLOCK
    return rate, left[:frames], right[:frames]


def music(seconds):
    """Two pieces of game music, one a side."""
    folder = "/usr/share/games/parsec47/sounds"
    return _pair(f"{folder}/ptn0.ogg", f"{folder}/ptn1.ogg", seconds)


def speech():
    """Two voices, one a side, saying where the loudspeakers stand; all phrases in a row."""
    paths = sorted(glob.glob("/usr/share/sounds/alsa/*_*.wav"))
    rate = decode(paths[0])[0]
    line = np.concatenate([decode(path)[1] for path in paths])
    frames = len(line) // BLOCK * BLOCK
    return rate, line[:frames], np.roll(line, 12345)[:frames]


def noise(rng, seconds, rate, level_db=-12.0, channels=2):
    """Gaussian, independent in each channel; `level_db` is its RMS."""
    frames = int(seconds * rate) // BLOCK * BLOCK
    return rng.normal(0, 10 ** (level_db / 20), (channels, frames)).astype(np.float32)


def sine(rate, hz, seconds, amplitude=1.0, phase=0.0):
    n = np.arange(int(seconds * rate) // BLOCK * BLOCK)
    return (amplitude * np.sin(2 * np.pi * hz / rate * n + phase)).astype(np.float32)


def drums(rng, rate, seconds, tempo=128):
    """Kick, snare and hats at random dynamics; also the first samples of the kicks and snares."""
    frames = int(seconds * rate) // BLOCK * BLOCK
    out = rng.normal(0, 1e-4, (2, frames))
    hits = []
    sixteenth = 60 / tempo / 4 * rate
    for step in range(int(frames / sixteenth)):
        begin = int(step * sixteenth) + int(rng.integers(0, int(0.004 * rate))) + 100
        t = np.arange(min(int(0.25 * rate), frames - begin)) / rate
        if len(t) == 0:
            break
        gain = 10 ** (-rng.uniform(0, 9) / 20)
        if step % 4 == 0:
            sweep = np.cumsum(50 + 200 * np.exp(-t / 0.02)) / rate
            sound = 0.8 * np.cos(2 * np.pi * sweep) * np.exp(-t / 0.09)
            hits.append(begin)
        elif step % 8 == 6:
            sound = 0.5 * rng.normal(0, 0.5, len(t)) * np.exp(-t / 0.05)
            hits.append(begin)
        else:
            sound = 0.12 * rng.normal(0, 0.5, len(t)) * np.exp(-t / 0.012)
        pan = rng.uniform(0.3, 0.7)
        out[0, begin : begin + len(t)] += gain * 2 * (1 - pan) * sound
        out[1, begin : begin + len(t)] += gain * 2 * pan * sound
    return out.astype(np.float32), hits
