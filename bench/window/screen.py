# SPDX-License-Identifier: GPL-3.0-or-later
"""A screen to measure on: an X server of our own whose picture is a file in memory, and a program that runs on it.

Looking at the picture costs neither the server nor the program anything, so what is timed is what a person would see.
"""
import ctypes
import mmap
import os
import re
import shutil
import signal
import struct
import subprocess
import tempfile
import time

import numpy
from Xlib import X, XK, display, error
from Xlib.ext import xtest

now = time.monotonic
SIZE = (1600, 1000)
A_CARET = 120  # pixels: less than this changing is a caret that blinks

# What a program leaves behind when it dies stays ours to count and to end.
ctypes.CDLL(None).prctl(36, 1, 0, 0, 0)  # PR_SET_CHILD_SUBREAPER


class Screen:
    """An X server with a window manager and a session bus, gone at the end of the `with`."""

    def __enter__(self):
        self.folder = tempfile.mkdtemp(prefix="plovik-bench.", dir="/dev/shm" if os.access("/dev/shm", os.W_OK) else None)
        ready, told = os.pipe()
        self.helpers = [subprocess.Popen(
            ["Xvfb", "-displayfd", str(told), "-screen", "0", f"{SIZE[0]}x{SIZE[1]}x24", "-fbdir", self.folder,
             "-nolisten", "tcp", "-dpi", "96", "-noreset"],
            pass_fds=[told], stderr=subprocess.DEVNULL)]
        os.close(told)
        with os.fdopen(ready) as pipe:
            number = pipe.readline().strip()
        if not number:
            raise SystemExit("Xvfb did not start")
        self.pixels = self._framebuffer()
        self.environment = self._environment(f":{number}")
        self.display = display.Display(f":{number}")
        self.root = self.display.screen().root
        self._start_bus()
        self._start_window_manager()
        return self

    def __exit__(self, *_):
        self.display.close()
        for helper in reversed(self.helpers):
            helper.terminate()
            helper.wait()
        self.pixels = None
        shutil.rmtree(self.folder, ignore_errors=True)

    def _framebuffer(self):
        with open(f"{self.folder}/Xvfb_screen0", "rb") as file:
            memory = mmap.mmap(file.fileno(), 0, prot=mmap.PROT_READ)
        header = struct.unpack(">25I", memory[:100])  # XWDFileHeader
        offset, width, height, row = header[0] + header[19] * 12, header[4], header[5], header[12] // 4
        return numpy.frombuffer(memory, numpy.uint32, row * height, offset).reshape(height, row)[:, :width]

    def _environment(self, name):
        """No setting of the person at this machine may help or hinder."""
        home = f"{self.folder}/home"
        os.makedirs(f"{home}/run", mode=0o700)
        keep = {key: value for key, value in os.environ.items()
                if not key.startswith(("GIT_", "XDG_", "QT_", "DBUS_", "WAYLAND_"))}
        return keep | {"DISPLAY": name, "HOME": home, "XDG_RUNTIME_DIR": f"{home}/run", "QT_QPA_PLATFORM": "xcb",
                       "GIT_CONFIG_GLOBAL": "/dev/null", "GIT_CONFIG_NOSYSTEM": "1"}

    def _start_bus(self):
        bus = subprocess.Popen(["dbus-daemon", "--session", "--nofork", "--print-address"], env=self.environment,
                               stdout=subprocess.PIPE, stderr=subprocess.DEVNULL)
        self.helpers.append(bus)
        self.environment["DBUS_SESSION_BUS_ADDRESS"] = bus.stdout.readline().decode().strip()

    def _start_window_manager(self):
        self.helpers.append(subprocess.Popen(["openbox", "--sm-disable"], env=self.environment,
                                             stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL))
        check, deadline = self.display.intern_atom("_NET_SUPPORTING_WM_CHECK"), now() + 10
        while not self.root.get_full_property(check, X.AnyPropertyType):
            if now() > deadline:
                raise SystemExit("openbox did not start")
            time.sleep(0.02)

    def window(self):
        """The rectangle of the largest window that the window manager manages, as slices of the picture, or None."""
        while True:
            try:
                return self._window()
            except error.BadWindow:  # one went away while it was asked
                continue

    def _window(self):
        state, largest = self.display.intern_atom("WM_STATE"), None
        def managed(window, depth=0):
            if window.get_full_property(state, X.AnyPropertyType):
                yield window
            elif depth < 3:
                for child in window.query_tree().children:
                    yield from managed(child, depth + 1)
        for window in managed(self.root):
            size, corner = window.get_geometry(), window.translate_coords(self.root, 0, 0)
            left, top = max(0, -corner.x), max(0, -corner.y)
            if not largest or size.width * size.height > largest[0]:
                largest = (size.width * size.height, (slice(top, top + size.height), slice(left, left + size.width)))
        return largest and largest[1]

    def click(self, x, y):
        for kind, detail in ((X.MotionNotify, 0), (X.ButtonPress, 1), (X.ButtonRelease, 1)):
            xtest.fake_input(self.display, kind, detail, x=x, y=y)
        self.display.sync()

    def press(self, key):
        code = self.display.keysym_to_keycode(XK.string_to_keysym(key))
        xtest.fake_input(self.display, X.KeyPress, code)
        xtest.fake_input(self.display, X.KeyRelease, code)
        self.display.sync()

    def watch(self, program, still_for=1.5, at_most=60.0, since=None):
        """The pictures from now on, until nothing has changed and the program has been idle for a while.

        A list of (seconds since `since`, picture), one for each time that more than a caret changed.
        """
        since = since or now()
        last, frames, changed_at = self.pixels.copy(), [], since
        busy_at, spent = since, program.processor_seconds()
        while now() - since < at_most:
            at = now()
            differing = numpy.count_nonzero(self.pixels != last)
            if differing:
                last = self.pixels.copy()
                frames.append((at - since, last))
                if differing > A_CARET:
                    changed_at = at
            if at - busy_at > 0.2:
                before, spent = spent, program.processor_seconds()
                if spent - before > 0.1 * (at - busy_at):
                    changed_at = max(changed_at, busy_at)
                busy_at = at
            if frames and at - changed_at > still_for:
                return frames
            if not program.running():
                raise SystemExit(f"{program.name} ended by itself; see {program.log}")
            time.sleep(0.003)
        raise SystemExit(f"{program.name} did not come to rest within {at_most:.0f} s")


class Program:
    """A program on a screen, with everything it starts; ended at the end of the `with`."""

    def __init__(self, screen, *command, cwd="/"):
        self.name = os.path.basename(command[0])
        self.log = f"{tempfile.gettempdir()}/plovik-bench-{self.name}.log"
        self.started = now()
        with open(self.log, "wb") as log:
            self.process = subprocess.Popen(command, cwd=cwd, env=screen.environment, stdin=subprocess.DEVNULL,
                                            stdout=log, stderr=log, start_new_session=True)

    def __enter__(self):
        return self

    def __exit__(self, *_):
        for sign in (signal.SIGTERM, signal.SIGKILL):
            deadline = now() + 3
            for pid in self.pids():
                try:
                    os.kill(pid, sign)
                except ProcessLookupError:
                    pass
            while self.running() and now() < deadline:
                time.sleep(0.01)
        self.process.wait()

    def running(self):
        return self.process.poll() is None

    def pids(self):
        """The program and all that came from it and still runs."""
        found = [self.process.pid] if self.running() else []
        for pid in found:
            try:
                for thread in os.listdir(f"/proc/{pid}/task"):
                    with open(f"/proc/{pid}/task/{thread}/children") as file:
                        found += map(int, file.read().split())
            except OSError:
                pass
        return found

    def processor_seconds(self):
        """What its processes have used so far, in the scheduler's nanoseconds, those of ended threads left out."""
        used = 0
        for pid in self.pids():
            try:
                for thread in os.listdir(f"/proc/{pid}/task"):
                    with open(f"/proc/{pid}/task/{thread}/schedstat") as file:
                        used += int(file.read().split()[0])
            except OSError:
                pass
        return used / 1e9

    def wakeups(self):
        count = 0
        for pid in self.pids():
            for thread in os.listdir(f"/proc/{pid}/task"):
                with open(f"/proc/{pid}/task/{thread}/status") as file:
                    count += sum(map(int, re.findall(r"ctxt_switches:\s+(\d+)", file.read())))
        return count

    def memory_mib(self):
        """Proportional set size: what the machine would have more without this program."""
        kib = 0
        for pid in self.pids():
            with open(f"/proc/{pid}/smaps_rollup") as file:
                kib += int(re.search(r"^Pss:\s+(\d+)", file.read(), re.M).group(1))
        return kib / 1024


def ink(picture):
    """Where text, lines and icons are: pixels of colours that cover less than 3 % of the picture."""
    colours, where, counts = numpy.unique(picture, return_inverse=True, return_counts=True)
    return (counts < 0.03 * picture.size)[where].reshape(picture.shape)


def shown_at(frames, region, mask, share=0.9):
    """When `share` of the masked pixels of the last picture were there, and stayed."""
    final, at = frames[-1][1][region][mask], None
    for when, picture in reversed(frames):
        if numpy.count_nonzero(picture[region][mask] == final) < share * final.size:
            break
        at = when
    return at
