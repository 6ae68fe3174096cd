"""A virtual display, and the updater on it as a user sees it.

The window is found and read through the desktop's accessibility interface, as a screen reader does, so nothing here
depends on where anything is on the screen.
"""

import atexit
import os
import pathlib
import shutil
import signal
import subprocess
import sys
import tempfile
import time

import gi
from Xlib import Xatom
from Xlib.display import Display as XConnection

gi.require_version("Atspi", "2.0")
from gi.repository import Atspi, GLib  # noqa: E402  (only after the version has been named)

# An emulated computer needs more patience, and every look at it slows it down.
PATIENCE_SECONDS = int(os.environ.get("PATIENCE_SECONDS", "120"))
SECONDS_BETWEEN_LOOKS = float(os.environ.get("SECONDS_BETWEEN_LOOKS", "0.05"))
DRIVER = pathlib.Path("/tmp/VUpdater.kext")

WINDOW_MANAGERS = {
    "openbox": ["openbox"],
    "xfwm4": ["xfwm4", "--compositor=off"],
}


class Failure(Exception):
    """Something did not happen as expected. The text is for the person who started the script."""


def check(holds, what, seen=""):
    """Fails with the text, and with what was seen instead, unless it holds."""
    if not holds:
        raise Failure(f"{what}\n{seen}" if seen else what)


def say(text):
    print(text, flush=True)


def wait_until(condition, what, patience=PATIENCE_SECONDS):
    """Returns the condition's first true result. Fails with the text if that takes too long."""
    end = time.monotonic() + patience
    while not (result := condition()):
        if time.monotonic() > end:
            raise Failure(what)
        time.sleep(SECONDS_BETWEEN_LOOKS)
    return result


def take_own_session():
    """Restarts the script in its own session, so that the accessibility service there ends with it.

    The session has its own folder for sockets, too: the services of two sessions would remove each other's. Nothing of the
    desktop on which the script was started reaches the updater.
    """
    if (folder := os.environ.get("VUPDATER_SESSION")) is not None:
        atexit.register(shutil.rmtree, folder, ignore_errors=True)
        return
    folder = tempfile.mkdtemp(prefix="vupdater-session-")
    for name in list(os.environ):
        if name.startswith("QT_") or name in ("DISPLAY", "WAYLAND_DISPLAY", "SESSION_MANAGER", "XDG_SESSION_TYPE"):
            del os.environ[name]
    os.environ.update(VUPDATER_SESSION=folder, XDG_RUNTIME_DIR=folder)
    os.execvp("dbus-run-session", ["dbus-run-session", "--", sys.executable, *sys.argv])


def run_cardsim(build, *arguments):
    return subprocess.run([build / "cardsim", *arguments], check=True, capture_output=True, text=True).stdout


class Display:
    """A virtual screen with a window manager, and its mouse and keyboard."""

    SERVER = ("Xvfb",)

    def __init__(self, folder, manager="openbox", screen="1024x768"):
        self.folder = folder
        self.log = open(folder / "display.log", "a")
        reader, writer = os.pipe()
        self.server = subprocess.Popen(
            [*self.SERVER, "-displayfd", str(writer), "-screen", "0", f"{screen}x24", "-nolisten", "tcp", "-noreset"],
            pass_fds=[writer], stdout=self.log, stderr=self.log)
        os.close(writer)
        with os.fdopen(reader) as answer:
            number = answer.readline().strip()
        if not number:
            raise Failure(f"The virtual display did not start; see {folder}/display.log.")
        self.name = f":{number}"
        os.environ["DISPLAY"] = self.name
        subprocess.run(["xsetroot", "-solid", "#5b6b7c"], stderr=subprocess.DEVNULL, check=False)
        self.manager = subprocess.Popen(WINDOW_MANAGERS[manager], stdout=self.log, stderr=self.log)
        self._wait_for_manager()
        self.pictures = 0
        self.last = self._grab()

    def __enter__(self):
        return self

    def __exit__(self, *exception):
        self.close()

    def close(self):
        for process in (self.manager, self.server):
            process.terminate()
            process.wait()

    def _wait_for_manager(self):
        connection = XConnection(self.name)
        check = connection.intern_atom("_NET_SUPPORTING_WM_CHECK")
        root = connection.screen().root
        wait_until(lambda: root.get_full_property(check, Xatom.WINDOW), "The window manager did not start.")
        connection.close()

    def click(self, x, y):
        subprocess.run(["xdotool", "mousemove", str(x), str(y), "click", "1"], check=True)

    def press(self, *keys):
        subprocess.run(["xdotool", "key", *keys], check=True)

    def type(self, text):
        subprocess.run(["xdotool", "type", text], check=True)

    def _grab(self):
        return subprocess.run(["import", "-window", "root", "ppm:-"], check=True, capture_output=True).stdout

    def picture(self, stage, moving=False, changed=True):
        """Saves a picture of the screen, once it has changed (if it must) and come to rest (unless it is moving)."""
        end = time.monotonic() + PATIENCE_SECONDS
        before = None
        seen = self._grab()
        while (changed and seen == self.last) or (seen != before and not moving):
            if time.monotonic() > end:
                raise Failure(f"The screen did not show: {stage}")
            time.sleep(0.2)
            before, seen = seen, self._grab()
        self.last = seen
        self.pictures += 1
        return self._save(f"{self.pictures:02}-{stage}", seen)

    def _save(self, name, seen):
        subprocess.run(["convert", "ppm:-", str(self.folder / f"{name}.png")], input=seen, check=True)
        return f"{name}.png"


class Updater:
    """The running program, read as a screen reader reads it. Only the simulated updater takes a machine."""

    def __init__(self, program, machine, folder, environment=None):
        self.folder = folder
        self.log_file = folder / "updater.log"
        with open(self.log_file, "a") as log:
            self.process = subprocess.Popen([program, *([machine] if machine else [])], stderr=log, env={
                **os.environ, "QT_QPA_PLATFORM": "xcb", "QT_LINUX_ACCESSIBILITY_ALWAYS_ON": "1",
                **(environment or {})})

    def __enter__(self):
        return self

    def __exit__(self, kind, *_):
        if kind is not None:  # a picture of the screen, if it still exists, says most
            subprocess.run(["import", "-window", "root", self.folder / "failure.png"], check=False)
        self.kill()

    def application(self):
        """The program's accessible object, or None while it has none."""
        desktop = Atspi.get_desktop(0)
        for index in range(desktop.get_child_count()):
            application = desktop.get_child_at_index(index)
            if application is not None and application.get_process_id() == self.process.pid:
                return application
        return None

    def elements(self):
        """Every element of the program's windows, including hidden ones."""
        def walk(node):
            yield node
            for index in range(node.get_child_count()):
                child = node.get_child_at_index(index)
                if child is not None:
                    yield from walk(child)

        application = self.application()
        if application is not None:
            yield from walk(application)

    def find(self, role, name, focused=False):
        """The first element with the role, and the text in its name, that is showing (or has the focus), or None.

        A window has the focus when keys go to it.
        """
        states = (Atspi.StateType.FOCUSED, Atspi.StateType.ACTIVE) if focused else (Atspi.StateType.SHOWING,)
        Atspi.get_desktop(0).clear_cache()
        try:
            return next((node for node in self.elements()
                         if node.get_role_name() == role and name in (node.get_name() or "")
                         and any(node.get_state_set().contains(state) for state in states)), None)
        except GLib.Error:  # the window changed while it was being read; the caller looks again
            return None

    def labelled(self, caption):
        """The text that a caption in the window names."""
        for relation in self.find("label", caption).get_relation_set():
            if relation.get_relation_type() == Atspi.RelationType.LABEL_FOR:
                return relation.get_target(0).get_name()
        raise Failure(f"Nothing in the window is labelled: {caption}")

    def wait_for(self, role, name, focused=False):
        """As find, but waits for it."""
        def look():
            if self.process.poll() is not None:
                raise Failure(f"The updater ended (code {self.process.returncode}) before it showed: {name}")
            return self.find(role, name, focused)

        return wait_until(look, f"The updater did not show: {name}")

    def middle_of(self, node):
        place = node.get_extents(Atspi.CoordType.SCREEN)
        return place.x + place.width // 2, place.y + place.height // 2

    def said(self):
        """What the program has written to standard error in all its runs with this folder."""
        return self.log_file.read_text()

    def stop(self):
        """Suspends the process, however busy it is, until go_on."""
        self.process.send_signal(signal.SIGSTOP)

    def go_on(self):
        self.process.send_signal(signal.SIGCONT)

    def kill(self):
        self.process.kill()
        self.process.wait()

    def wait_for_end(self, expected=0):
        try:
            code = self.process.wait(timeout=PATIENCE_SECONDS)
        except subprocess.TimeoutExpired:
            raise Failure("The updater did not end.") from None
        if code != expected:
            raise Failure(f"The updater ended with code {code} instead of {expected}.")
