"""A screen of its own (Xvfb) for a host, and a user in front of it (xdotool)."""
import os
import subprocess
import time


class Screen:
    def __enter__(self):
        reading, writing = os.pipe()
        self._server = subprocess.Popen(
            ["Xvfb", "-displayfd", str(writing), "-screen", "0", "1600x1000x24", "-nolisten",
             "tcp"], pass_fds=[writing], stderr=subprocess.DEVNULL)
        os.close(writing)
        with os.fdopen(reading) as answer:
            self.name = ":" + answer.readline().strip()
        return self

    def __exit__(self, *_):
        self._server.kill()  # a polite request is lost on it now and then
        self._server.wait()

    def _call(self, *command):
        done = subprocess.run(command, env=dict(os.environ, DISPLAY=self.name), text=True,
                              stdout=subprocess.PIPE, stderr=subprocess.DEVNULL, check=False)
        return done.stdout.strip()

    def wait_for_window(self, title, seconds):
        """The window whose title matches, or None when it does not come."""
        for _ in range(2 * seconds):
            found = self._call("xdotool", "search", "--name", title).split()
            if found:
                return found[0]
            time.sleep(0.5)
        return None

    def click(self, window, x, y, times=1):
        self._call("xdotool", "mousemove", "--window", window, str(x), str(y))
        time.sleep(0.2)
        self._call("xdotool", "click", "--repeat", str(times), "--delay", "80", "1")

    def picture(self, window, path):
        self._call("import", "-window", window, str(path))


def colour(path, x, y):
    """Red, green and blue of a pixel in a picture, 0 to 255."""
    place = f"p{{{x},{y}}}"
    form = " ".join(f"%[fx:int(255*{place}.{channel})]" for channel in "rgb")
    done = subprocess.run(["convert", str(path), "-depth", "8", "-format", form, "info:"],
                          text=True, stdout=subprocess.PIPE, check=True)
    return tuple(int(part) for part in done.stdout.split())
