#!/usr/bin/python3
"""Proves the plug-ins in real hosts: found, bit-exact, restored, automated, seen.

Usage: prove.py [--plugins FOLDER] [--out FOLDER]
  --plugins  where the build put vst2/ and vst3/ (build/plugins)
  --out      where pictures and the table go (build/hosts)
"""
import argparse
import os
import pathlib
import random
import shutil
import struct
import sys
import tempfile
import traceback

sys.path.insert(0, str(pathlib.Path(__file__).parent))
import ardour
import display
import qtractor

NAME = "Orvel Scope"
PARAMETERS = 9  # that a host sees
SET = """
for name, value in pairs({["Input Gain"] = 0.25, ["Rotate"] = 0.75, ["Peak Reset"] = 0.125}) do
  assert(ARDOUR.LuaAPI.set_plugin_insert_param(insert, index[name], value))
end
sleep(1)
"""
SHOW = """
sleep(1)
for name, i in pairs(index) do
  print("VALUE|" .. name .. "|" .. ARDOUR.LuaAPI.get_plugin_insert_param(insert, i, true))
end
"""
AUTOMATE = """
local list, curve = ARDOUR.LuaAPI.plugin_automation(processor, index["Input Gain"])
curve:add(Temporal.timepos_t(0), 1.0, false, true)
curve:add(Temporal.timepos_t(96000), 0.0, false, true)
local parameter = Evoral.Parameter(ARDOUR.AutomationType.PluginAutomation, 0, index["Input Gain"])
processor:to_automatable():automation_control(parameter, true):set_automation_state(
    ARDOUR.AutoState.Play)
sleep(1)
session:request_locate(0, false, ARDOUR.LocateTransportDisposition.MustRoll,
                       ARDOUR.TransportRequestSource.TRS_UI)
for i = 1, 12 do
  sleep(0.25)
  print("VALUE|" .. session:transport_sample() .. "|" ..
        ARDOUR.LuaAPI.get_plugin_insert_param(insert, index["Input Gain"], true))
end
"""


def noise(path, seconds=2):
    """Stereo, 48 kHz, 32-bit floating point."""
    dice = random.Random(1)
    samples = struct.pack(f"<{2 * 48000 * seconds}f",
                          *(dice.uniform(-0.9, 0.9) for _ in range(2 * 48000 * seconds)))
    form = struct.pack("<HHIIHH", 3, 2, 48000, 48000 * 8, 8, 32)
    body = b"WAVEfmt " + struct.pack("<I", len(form)) + form + b"data" + struct.pack(
        "<I", len(samples)) + samples
    path.write_bytes(b"RIFF" + struct.pack("<I", len(body)) + body)


class Proofs:
    """What was tried, and what came of it."""

    def __init__(self):
        self.lines = []

    def attempt(self, host, what, proof):
        try:
            seen = proof()
            passed = True
        except Exception as problem:  # whatever it is, the others are still worth trying
            if not isinstance(problem, AssertionError):
                traceback.print_exc()
            seen, passed = (str(problem) or type(problem).__name__).splitlines()[0], False
        self.lines.append((host, what, "passed" if passed else "FAILED", seen))
        print(f"{'passed' if passed else 'FAILED'}  {host}: {what}: {seen}", flush=True)

    def all_passed(self):
        return all(line[2] == "passed" for line in self.lines)

    def table(self):
        rows = ["| Host | What | Result | Seen |", "|---|---|---|---|"]
        rows += [f"| {' | '.join(line)} |" for line in self.lines]
        return "\n".join(rows) + "\n"


def check(condition, words):
    if not condition:
        raise AssertionError(words)


def values(lines):
    return [line[1:] for line in lines if line[0] == "VALUE"]


def prove_ardour(proofs, plugins, work, out, format_name):
    host = ardour.Ardour(plugins, work / f"ardour-{format_name}")
    title = f"{host.version()}, {format_name}"
    picture = out / f"ardour-{format_name.lower()}.png"

    def found():
        check(NAME in host.scan(format_name), "the scanner does not list it")
        _, lines = host.new_session(format_name, NAME)
        names = [line[1] for line in lines if line[0] == "PARAMETER"]
        wanted = [name for name in names if name != "Bypass"]
        check(len(wanted) == PARAMETERS, f"{len(wanted)} parameters: {wanted}")
        return f"{len(names)} parameters, {', '.join(names)}"

    def bit_exact():
        recording = work / "noise.wav"
        noise(recording)
        original = ardour.wav_data(recording)[0]
        tries = []
        for kind, words in ((None, "without"), (format_name, "with")):
            # On a busy machine some sessions play silence, with a plug-in or without.
            for attempt in range(1, 6):
                folder, _ = host.new_session(kind, NAME)
                samples = host.render(folder, recording, folder / "out.wav")
                if samples[:len(original)] == original:
                    break
            check(samples[:len(original)] == original, f"changed {words} the plug-in")
            tries.append(attempt)
        again = "" if max(tries) == 1 else f" (exports tried without and with it: {tries})"
        return f"{len(original) // 8} frames of noise, every bit the same{again}"

    def restored():
        folder, _ = host.new_session(format_name, NAME, SET)
        after = {name: float(value) for name, value in values(host.old_session(folder, SHOW))}
        wanted = {"Input Gain": 0.25, "Rotate": 0.75, "Peak Reset": 0.125, "Freeze Scope": 0.0}
        for name, value in wanted.items():
            check(abs(after[name] - value) < 1e-4, f"{name} came back as {after[name]}")
        return "values set, session saved, closed and loaded: the same"

    def automated():
        _, lines = host.new_session(format_name, NAME, AUTOMATE)
        seen = [(int(at), float(value)) for at, value in values(lines)]
        moving = [(at, value) for at, value in seen if 4096 < at < 90000]
        check(len(moving) >= 3, f"the transport did not roll: {seen}")
        for at, value in moving:
            # Ardour asks between its blocks of 1024, and our read-out is a moment later.
            check(abs(value - (1 - at / 96000)) < 0.06, f"{value} at sample {at}")
        return f"a ramp over two seconds followed at {len(moving)} moments"

    def seen_in_its_window():
        check(host.photograph(format_name, NAME, picture), "no editor, or Ardour ended")
        red, _, blue = display.colour(picture, 20, 425)
        check(blue > red + 10, "the picture is not the instrument's")
        return picture.name

    proofs.attempt(title, "scanned and loaded", found)
    proofs.attempt(title, "offline export", bit_exact)
    proofs.attempt(title, "state in the session", restored)
    proofs.attempt(title, "automation", automated)
    proofs.attempt(title, "editor", seen_in_its_window)


def prove_qtractor(proofs, plugins, work, out):
    picture = out / "qtractor-vst2.png"

    def seen_in_its_window():
        plugin = next((plugins / "vst").iterdir())
        check(qtractor.photograph(plugin, NAME, work / "qtractor", picture), "no editor")
        return picture.name

    proofs.attempt(f"{qtractor.version()}, VST2", "editor", seen_in_its_window)


def main():
    top = pathlib.Path(__file__).resolve().parents[3]
    parser = argparse.ArgumentParser(description=__doc__.splitlines()[0])
    parser.add_argument("--plugins", type=pathlib.Path, default=top / "build/plugins")
    parser.add_argument("--out", type=pathlib.Path, default=top / "build/hosts")
    parser.add_argument("--formats", nargs="*", default=list(ardour.FORMATS))
    options = parser.parse_args()
    options.out.mkdir(parents=True, exist_ok=True)
    proofs = Proofs()
    with tempfile.TemporaryDirectory(prefix="orvel-hosts-") as folder:
        work = pathlib.Path(folder)
        plugins = work / "plugins"
        (plugins / "vst").mkdir(parents=True)
        (plugins / "vst3").mkdir()
        shutil.copy(options.plugins / "vst2/OrvelScope.so", plugins / "vst")
        shutil.copytree(options.plugins / "vst3/OrvelScope.vst3",
                        plugins / "vst3/OrvelScope.vst3")
        # Ardour's cache is dated in whole seconds: what was made in the same one counts as newer.
        for file in plugins.rglob("*"):
            os.utime(file, (0, file.stat().st_mtime - 60))
        if ardour.is_installed():
            for format_name in options.formats:
                prove_ardour(proofs, plugins, work, options.out, format_name)
        if qtractor.is_installed():
            prove_qtractor(proofs, plugins, work, options.out)
    if not proofs.lines:
        sys.exit("No host is installed here: scripts/packages.sh hosts")
    (options.out / "hosts.md").write_text(proofs.table())
    print(f"Pictures and the table are in {options.out}")
    sys.exit(0 if proofs.all_passed() else 1)


if __name__ == "__main__":
    main()
