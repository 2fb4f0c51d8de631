"""Qtractor with one track, fed by a sine over a JACK server that needs no sound card."""
import os
import pathlib
import shutil
import subprocess
import time

import display

SESSION = """<!DOCTYPE qtractorSession>
<session name="proof" version="0.9.31">
 <properties><directory>{work}</directory><description></description>
  <sample-rate>48000</sample-rate><tempo>120</tempo></properties>
 <tracks><track name="T1" type="audio">
   <properties><input-bus>Master</input-bus><output-bus>Master</output-bus></properties>
   <state><mute>0</mute><record>0</record><solo>0</solo><monitor>1</monitor><gain>1</gain>
    <panning>0</panning></state>
   <view><height>96</height></view>
   <plugins><plugin type="VST2"><filename>{plugin}</filename><index>0</index><label>{name}</label>
    <activated>1</activated></plugin></plugins>
 </track></tracks>
</session>
"""
PLUGIN_IN_TRACK_LIST = (183, 181)  # pixels, in Qtractor's main window


def is_installed():
    return all(shutil.which(program) for program in ("qtractor", "jackd", "ecasound", "openbox"))


def version():
    text = subprocess.run(["qtractor", "--version"], text=True, stdout=subprocess.PIPE,
                          stderr=subprocess.DEVNULL, check=False,
                          env=dict(os.environ, QT_QPA_PLATFORM="offscreen")).stdout
    for line in text.splitlines():
        if line.startswith("Qtractor"):
            return line.strip()
    return "Qtractor"


def photograph(plugin, name, work, picture):
    """Opens the plug-in's editor and takes its picture; false when it does not open."""
    work = pathlib.Path(work)
    work.mkdir(parents=True)
    work.chmod(0o700)
    session = work / "proof.qtr"
    session.write_text(SESSION.format(work=work, plugin=plugin, name=name))
    stub = work / "stub.so"
    source = pathlib.Path(__file__).with_name("alsa_sequencer_stub.c")
    subprocess.run(["gcc", "-w", "-shared", "-fPIC", "-o", stub, source], check=True)
    server = f"proof{os.getpid()}"
    environment = dict(os.environ, HOME=str(work), XDG_RUNTIME_DIR=str(work),
                       JACK_DEFAULT_SERVER=server)
    started = []

    def start(*command, **more):
        with open(work / f"{pathlib.Path(command[0]).name}.log", "w", encoding="utf-8") as log:
            started.append(subprocess.Popen([str(part) for part in command], stdout=log, stderr=log,
                                            env=dict(environment, **more)))

    with display.Screen() as screen:
        environment["DISPLAY"] = screen.name
        try:
            start("jackd", "-r", "-n", server, "-d", "dummy", "-r", "48000", "-p", "1024")
            start("openbox")
            time.sleep(1)
            start("qtractor", session, LD_PRELOAD=str(stub))
            main = screen.wait_for_window("proof.qtr", 30)
            if main is None:
                return False
            time.sleep(1)
            start("ecasound", "-q", "-f:f32_le,2,48000", "-i:tone,sine,1000,60", "-ea:25",
                  "-chcopy:1,2", "-o:jack_multi,Qtractor:Master/in_1,Qtractor:Master/in_2")
            time.sleep(2)
            screen.click(main, *PLUGIN_IN_TRACK_LIST, times=2)
            editor = screen.wait_for_window(" - T1", 15)
            if editor is None:
                return False
            time.sleep(3)
            screen.picture(editor, picture)
            return started[2].poll() is None
        finally:
            for program in reversed(started):
                # A sound server that is killed leaves its name taken for good.
                program.terminate()
                try:
                    program.wait(5)
                except subprocess.TimeoutExpired:
                    program.kill()
                    program.wait()
