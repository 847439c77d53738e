#!/usr/bin/python3
"""Start-up of Velunta against mtPaint, measured the same way in one run.

Run it under a display of its own:

    xvfb-run -a -s "-screen 0 1600x1000x24" bench/startup_vs_mtpaint.py [build/src/shell/velunta]

Rounds alternate the two programs, each started afresh with an empty home folder:
  * "mapped": from the start of the process to the X server's MapNotify of its main
    window (the first top-level window at least 600 pixels wide: Velunta's splash is
    440 wide and must not count);
  * "ready": from the start to the moment the process last used the processor before
    300 ms of rest, i.e. the main window is up and, with a file, the picture is read
    and shown; with the processor time (user + system) the process took until then,
    which on a machine shared with other work says more than the wall clock.
Both are timed without and with a 12 MP (4000 x 3000) JPEG on the command line. Velunta
runs with VELUNTA_NO_SPLASH_WAIT=1, which drops the splash's designed waits. The best
of the rounds is kept for each, and the ratio Velunta / mtPaint is printed.
"""

import ctypes
import ctypes.util
import os
import select
import shutil
import signal
import subprocess
import sys
import tempfile
import time

ROUNDS = 7
QUIET_SECONDS = 0.3
MIN_MAIN_WIDTH = 600

x11 = ctypes.cdll.LoadLibrary(ctypes.util.find_library("X11"))
x11.XOpenDisplay.restype = ctypes.c_void_p
x11.XOpenDisplay.argtypes = [ctypes.c_char_p]
x11.XDefaultRootWindow.restype = ctypes.c_ulong
x11.XDefaultRootWindow.argtypes = [ctypes.c_void_p]
x11.XSelectInput.argtypes = [ctypes.c_void_p, ctypes.c_ulong, ctypes.c_long]
x11.XPending.argtypes = [ctypes.c_void_p]
x11.XNextEvent.argtypes = [ctypes.c_void_p, ctypes.c_void_p]
x11.XConnectionNumber.argtypes = [ctypes.c_void_p]
x11.XFlush.argtypes = [ctypes.c_void_p]

MAP_NOTIFY = 19
CONFIGURE_NOTIFY = 22
SUBSTRUCTURE_NOTIFY_MASK = 1 << 19


class MapEvent(ctypes.Structure):
    _fields_ = [("type", ctypes.c_int), ("serial", ctypes.c_ulong), ("send_event", ctypes.c_int),
                ("display", ctypes.c_void_p), ("event", ctypes.c_ulong), ("window", ctypes.c_ulong),
                ("override_redirect", ctypes.c_int)]


class ConfigureEvent(ctypes.Structure):
    _fields_ = [("type", ctypes.c_int), ("serial", ctypes.c_ulong), ("send_event", ctypes.c_int),
                ("display", ctypes.c_void_p), ("event", ctypes.c_ulong), ("window", ctypes.c_ulong),
                ("x", ctypes.c_int), ("y", ctypes.c_int), ("width", ctypes.c_int), ("height", ctypes.c_int)]


class XEvent(ctypes.Union):
    _fields_ = [("type", ctypes.c_int), ("map", MapEvent), ("configure", ConfigureEvent),
                ("pad", ctypes.c_long * 24)]


class Attributes(ctypes.Structure):
    _fields_ = [("x", ctypes.c_int), ("y", ctypes.c_int), ("width", ctypes.c_int), ("height", ctypes.c_int),
                ("rest", ctypes.c_char * 256)]


x11.XGetWindowAttributes.argtypes = [ctypes.c_void_p, ctypes.c_ulong, ctypes.POINTER(Attributes)]


class Display:
    def __init__(self):
        self.display = x11.XOpenDisplay(None)
        if not self.display:
            sys.exit("no X display: run this under xvfb-run")
        x11.XSelectInput(self.display, x11.XDefaultRootWindow(self.display), SUBSTRUCTURE_NOTIFY_MASK)
        x11.XFlush(self.display)
        self.fd = x11.XConnectionNumber(self.display)

    def drain(self):
        event = XEvent()
        while x11.XPending(self.display):
            x11.XNextEvent(self.display, ctypes.byref(event))

    def wait_for_main_window(self, deadline):
        """Seconds (perf_counter) at which a wide top-level window was mapped."""
        event = XEvent()
        while time.perf_counter() < deadline:
            while x11.XPending(self.display):
                x11.XNextEvent(self.display, ctypes.byref(event))
                if event.type != MAP_NOTIFY:
                    continue
                now = time.perf_counter()
                attributes = Attributes()
                x11.XGetWindowAttributes(self.display, event.map.window, ctypes.byref(attributes))
                if attributes.width >= MIN_MAIN_WIDTH:
                    return now
            select.select([self.fd], [], [], 0.005)
        return None


def cpu_ticks(pid):
    try:
        with open("/proc/%d/stat" % pid) as stat:
            fields = stat.read().rsplit(")", 1)[1].split()
        return int(fields[11]) + int(fields[12])
    except OSError:
        return None


def wait_until_quiet(pid, start):
    """Seconds from start to the last processor use before a rest of QUIET_SECONDS,
    and the processor milliseconds used by then."""
    last_ticks = cpu_ticks(pid)
    last_change = time.perf_counter()
    while time.perf_counter() - last_change < QUIET_SECONDS:
        time.sleep(0.002)
        ticks = cpu_ticks(pid)
        if ticks is None:
            return None
        if ticks != last_ticks:
            last_ticks = ticks
            last_change = time.perf_counter()
    return last_change - start, last_ticks * 1000.0 / os.sysconf("SC_CLK_TCK")


def run_once(display, command, environment):
    home = tempfile.mkdtemp(prefix="startup-home-")
    env = dict(os.environ, HOME=home, XDG_CONFIG_HOME=home + "/.config", **environment)
    display.drain()
    start = time.perf_counter()
    process = subprocess.Popen(command, env=env, stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL)
    mapped = display.wait_for_main_window(start + 30)
    quiet = wait_until_quiet(process.pid, start) if mapped else None
    process.send_signal(signal.SIGTERM)
    try:
        process.wait(5)
    except subprocess.TimeoutExpired:
        process.kill()
        process.wait()
    shutil.rmtree(home, ignore_errors=True)
    if mapped is None or quiet is None:
        return None
    ready, cpu = quiet
    return (mapped - start) * 1000, max(ready * 1000, (mapped - start) * 1000), cpu


def photo(path):
    # A 12 MP photo-like picture: gradients with grain.
    from PIL import Image

    size = (4000, 3000)
    r = Image.linear_gradient("L").resize(size)
    g = Image.effect_noise(size, 64)
    b = Image.linear_gradient("L").rotate(90).resize(size)
    Image.merge("RGB", (r, g, b)).save(path, "JPEG", quality=90)


def main():
    velunta = os.path.abspath(sys.argv[1] if len(sys.argv) > 1 else "build/src/shell/velunta")
    mtpaint = shutil.which("mtpaint")
    if not os.path.exists(velunta):
        sys.exit("no program at " + velunta)
    if not mtpaint:
        sys.exit("mtpaint is not installed (scripts/deps --bench)")
    display = Display()
    folder = tempfile.mkdtemp(prefix="startup-", dir="/dev/shm")
    picture = os.path.join(folder, "photo.jpg")
    photo(picture)
    programs = {
        "velunta": ([velunta], {"VELUNTA_NO_SPLASH_WAIT": "1"}),
        "mtpaint": ([mtpaint], {}),
    }
    cases = {"empty": [], "12 MP file": [picture]}
    best = {}
    for _ in range(ROUNDS):
        for case, arguments in cases.items():
            for name, (command, environment) in programs.items():
                result = run_once(display, command + arguments, environment)
                if result is None:
                    print("%s (%s) did not start" % (name, case), file=sys.stderr)
                    continue
                key = (case, name)
                old = best.get(key, (float("inf"),) * 3)
                best[key] = tuple(min(a, b) for a, b in zip(old, result))
    shutil.rmtree(folder, ignore_errors=True)

    print("%-12s %-7s %12s %12s %8s" % ("case", "moment", "velunta ms", "mtpaint ms", "ratio"))
    for case in cases:
        for index, moment in enumerate(("mapped", "ready", "cpu")):
            ours = best.get((case, "velunta"), (None,) * 3)[index]
            theirs = best.get((case, "mtpaint"), (None,) * 3)[index]
            if ours is None or theirs is None:
                print("%-12s %-7s %12s %12s %8s" % (case, moment, ours, theirs, "-"))
                continue
            print("%-12s %-7s %12.1f %12.1f %8.2f" % (case, moment, ours, theirs, ours / theirs))


if __name__ == "__main__":
    main()
