"""Ardour, driven without a user: scanned, rendered offline, reloaded, automated, photographed."""
import os
import pathlib
import shutil
import struct
import subprocess
import time
import xml.etree.ElementTree as ET

import display

LIBRARY = pathlib.Path("/usr/lib/ardour7")
RATE = 48000
SUPERCLOCK = 282240000 // RATE  # Ardour's units of time in one sample

# What Ardour calls each format, and where it looks for it.
FORMATS = {"VST2": ("LXVST", "vst", "lxvst"), "VST3": ("VST3", "vst3", "vst3")}

# Opens a new session with one track and the plug-in on it. Arguments: folder, type, name.
NEW_SESSION = """
local dir, kind, name = arg[1], arg[2], arg[3]
local backend = AudioEngine:set_backend("None (Dummy)", "", "")
backend:set_device_name("Sine Wave 1K, 1/3 Oct")
backend:set_buffer_size(1024)
local session = create_session(dir, "s", 48000)
assert(session)
local track
for t in session:new_audio_track(2, 2, nil, 1, "T1", ARDOUR.PresentationInfo.max_order,
                                 ARDOUR.TrackMode.Normal, true):iter() do track = t end
local insert, plugin, processor
if kind ~= "NONE" then
  processor = ARDOUR.LuaAPI.new_plugin(session, name, ARDOUR.PluginType[kind], "")
  assert(not processor:isnil(), "Ardour does not find the plug-in")
  assert(track:add_processor_by_index(processor, 0, nil, true) == 0)
  insert = processor:to_insert()
  plugin = insert:plugin(0)
end
"""
OLD_SESSION = """
local dir = arg[1]
local backend = AudioEngine:set_backend("None (Dummy)", "", "")
backend:set_buffer_size(1024)
local session = load_session(dir, "s")
assert(session)
local insert = session:route_by_name("T1"):nth_plugin(0):to_insert()
local plugin = insert:plugin(0)
"""
PARAMETERS = """
local index = {}
for i = 0, plugin and plugin:parameter_count() - 1 or -1 do
  if plugin:parameter_is_control(i) then
    index[plugin:parameter_label(i)] = i
    print("PARAMETER|" .. plugin:parameter_label(i))
  end
end
"""
# A session saved too early lacks connections, and plays silence for ever after.
END = """
sleep(1)
session:save_state("")
close_session()
quit()
"""


class Ardour:
    def __init__(self, plugins, work):
        """`plugins` holds vst/ and vst3/; everything Ardour writes goes below `work`."""
        self.work = work
        self.plugins = plugins
        home = work / "home"
        home.mkdir(parents=True)
        self.environment = dict(os.environ, HOME=str(home), XDG_RUNTIME_DIR=str(home),
                                LXVST_PATH=str(plugins / "vst"), VST3_PATH=str(plugins / "vst3"),
                                LV2_PATH=str(work / "none"))
        self.environment.pop("DISPLAY", None)
        self.sessions = 0
        self._configure(home)

    def _configure(self, home):
        folder = home / ".config" / "ardour7"
        folder.mkdir(parents=True)
        (folder / ".a7").touch()  # its first questions are answered
        (folder / "config").write_text(f"""<?xml version="1.0" encoding="UTF-8"?>
<Ardour><Config>
<Option name="try-autostart-engine" value="1"/><Option name="hide-dummy-backend" value="0"/>
<Option name="plugin-path-lxvst" value="{self.plugins}/vst"/>
<Option name="plugin-path-vst3" value="{self.plugins}/vst3"/>
<Option name="discover-plugins-on-start" value="0"/></Config><Metadata/>
<Extra><AudioMIDISetup><EngineStates><State backend="None (Dummy)" driver="Normal Speed"
 device="Sine Wave 1K, 1/3 Oct" input-device="" output-device="" sample-rate="48000"
 buffer-size="1024" n-periods="0" input-latency="0" output-latency="0" lm-input="" lm-output=""
 active="1" use-buffered-io="0" midi-option="1 in, 1 out, Silence" lru="1"><MIDIDevices/>
</State></EngineStates></AudioMIDISetup></Extra></Ardour>
""")

    def _run(self, command, seconds=120, **more):
        done = subprocess.run([str(part) for part in command], env=self.environment, text=True,
                              stdout=subprocess.PIPE, stderr=subprocess.STDOUT, timeout=seconds,
                              cwd=self.work, check=False, **more)
        return done.returncode, done.stdout

    def version(self):
        _, text = self._run(["ardour", "--version"])
        for line in text.splitlines():
            if line.startswith("Ardour"):
                return line.split(" (")[0]
        return "Ardour"

    def scan(self, format_name):
        """Fills Ardour's cache of plug-ins; gives what the scanner says."""
        _, folder, _ = FORMATS[format_name]
        scanner = "ardour-vst-scanner" if format_name == "VST2" else "ardour-vst3-scanner"
        self.environment["LD_LIBRARY_PATH"] = str(LIBRARY)
        text = ""
        for file in sorted((self.plugins / folder).iterdir()):
            text += self._run([LIBRARY / scanner, "-f", "-v", file])[1]
        del self.environment["LD_LIBRARY_PATH"]
        return text

    def lua(self, script, *arguments):
        file = self.work / "script.lua"
        file.write_text(script)
        status, text = self._run(["ardour7-lua", file, *arguments])
        if status != 0 or "stack traceback" in text:
            raise RuntimeError("Ardour's script failed:\n" + text)
        return [line.split("|") for line in text.splitlines()]

    def new_session(self, format_name, name, script=""):
        """Gives the session's folder and what the script printed, as lists of words."""
        self.sessions += 1
        folder = self.work / f"session{self.sessions}"
        kind = FORMATS[format_name][0] if format_name else "NONE"
        lines = self.lua(NEW_SESSION + PARAMETERS + script + END, folder, kind, name)
        return folder, lines

    def old_session(self, folder, script):
        return self.lua(OLD_SESSION + PARAMETERS + script + END, folder)

    def render(self, folder, recording, out):
        """Exports the session with a stereo recording on its track, as 32-bit floating point.
        Gives the bytes of the samples."""
        if not out.exists():
            self._add_region(folder / "s.ardour", recording)
        # Ardour now and then aborts on its way out, after a complete file.
        self._run(["ardour7-export", "-b", "float", "-o", out, folder, "s"])
        return wav_data(out)[0]

    @staticmethod
    def _add_region(session, recording):
        length = frames_of(recording) * SUPERCLOCK
        tree = ET.parse(session)
        root = tree.getroot()
        for channel in range(2):
            ET.SubElement(root.find("Sources"), "Source", {
                "name": str(recording), "take-id": "", "type": "audio", "flags": "",
                "id": str(5001 + channel), "channel": str(channel), "origin": str(recording),
                "gain": "1"})
        no = ("muted locked video-locked automatic whole-file import sync-marked left-of-split "
              "right-of-split hidden position-locked valid-transients envelope-active "
              "default-fade-in default-fade-out fade-in-active fade-out-active").split()
        region = {key: "0" for key in no}
        region.update({
            "name": "in", "opaque": "1", "external": "1", "start": "a0", "length": f"a{length}@a0",
            "stretch": "1", "shift": "1", "layering-index": "0", "scale-amplitude": "1",
            "id": "5010", "type": "audio", "first-edit": "nothing", "channels": "2",
            "source-0": "5001", "source-1": "5002", "master-source-0": "5001",
            "master-source-1": "5002"})
        ET.SubElement(root.find("Playlists/Playlist"), "Region", region)
        ET.SubElement(root.find("Locations"), "Location", {
            "id": "9001", "name": "session", "start": "a0", "end": f"a{length}",
            "flags": "IsSessionRange", "locked": "0", "timestamp": "0", "cue": "0"})
        root.set("id-counter", "10000")
        tree.write(session, encoding="UTF-8", xml_declaration=True)

    def photograph(self, format_name, name, picture, work_it=None):
        """Loads a session whose editor is open and takes its picture; `work_it(screen, window)`
        may use it before."""
        monitor = """
track:monitoring_control():set_value(ARDOUR.MonitorChoice.MonitorInput,
                                     PBD.GroupControlDisposition.NoGroup)
sleep(1)
"""
        folder, _ = self.new_session(format_name, name, monitor)
        self._show_editor(folder / "s.ardour", FORMATS[format_name][2])
        with display.Screen() as screen:
            environment = dict(self.environment, DISPLAY=screen.name)
            with open(self.work / "gui.log", "w", encoding="utf-8") as log:
                program = subprocess.Popen(["ardour", "-a", "-n", folder / "s.ardour"],
                                           env=environment, stdout=log, stderr=log)
            try:
                window = screen.wait_for_window("^T1: ", 60)
                if window is None:
                    return False
                time.sleep(3)
                if work_it is not None:
                    work_it(screen, window)
                screen.picture(window, picture)
                return program.poll() is None
            finally:
                program.kill()
                program.wait()

    @staticmethod
    def _show_editor(session, kind):
        tree = ET.parse(session)
        root = tree.getroot()
        extra = root.find("Extra")
        if extra is None:
            extra = ET.SubElement(root, "Extra")
        interface = extra.find("UI")
        if interface is None:
            interface = ET.SubElement(extra, "UI")
        for route in root.find("Routes"):
            for processor in route.findall(f"Processor[@type='{kind}']"):
                ET.SubElement(interface, "Window", {
                    "name": f"P-{route.get('id')}-{processor.get('id')}", "visible": "1",
                    "x-off": "100", "y-off": "100", "x-size": "-1", "y-size": "-1",
                    "custom-ui": "1"})
        tree.write(session, encoding="UTF-8", xml_declaration=True)


def wav_data(path):
    """The bytes of the samples of a WAV file, and bytes in a frame."""
    data = pathlib.Path(path).read_bytes()
    at, frame = 12, 0
    while at + 8 <= len(data):
        kind, size = data[at:at + 4], struct.unpack("<I", data[at + 4:at + 8])[0]
        if kind == b"fmt ":
            frame = struct.unpack("<H", data[at + 20:at + 22])[0]
        if kind == b"data":
            return data[at + 8:at + 8 + size], frame
        at += 8 + size + size % 2
    raise ValueError(f"{path}: no samples")


def frames_of(path):
    samples, frame = wav_data(path)
    return len(samples) // frame


def is_installed():
    return all(shutil.which(program) for program in ("ardour", "ardour7-lua", "ardour7-export"))
