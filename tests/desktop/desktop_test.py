"""What the tests of the real program on a virtual display share: their frame, their machines, a slow write.

A test is a script that calls run_test with its one function. The script is given the folder of the built programs, has
its own session bus and temporary folder, and exits with 0 only if nothing failed.
"""

import argparse
import contextlib
import fcntl
import json
import os
import pathlib
import random
import re
import shutil
import subprocess
import sys
import tempfile
import time
import traceback

sys.path.insert(0, str(pathlib.Path(__file__).resolve().parents[2] / "scripts"))
from virtual_desktop import check, run_cardsim, say, take_own_session, wait_until  # noqa: E402

IMAGE = "VMBM12A.xsv"
IDENTITY = "2103070021"

# Each of these is in an image's listing once per page.
PROGRAMMING_WAIT = "XRUNTEST 14000\n"
READING = "XSIR 13 0x1DFF\n"


def run_test(test, **options):
    """Runs test(programs, folder, arguments). Each option adds a command-line argument with that name and default."""
    parser = argparse.ArgumentParser()
    parser.add_argument("--programs", type=pathlib.Path,
                        default=pathlib.Path(__file__).resolve().parents[2] / "build/release/bin")
    parser.add_argument("--manager", default="openbox", help="the window manager: openbox or xfwm4")
    for name, default in options.items():
        parser.add_argument(f"--{name}", type=type(default), default=default)
    arguments = parser.parse_args()
    take_own_session()
    folder = pathlib.Path(tempfile.mkdtemp(prefix="vupdater-desktop-"))
    try:
        test(arguments.programs.resolve(), folder, arguments)
    except Exception:
        for log in folder.rglob("*.log"):
            say(f"--- {log.name}\n{log.read_text()}")
        traceback.print_exc()
        sys.exit(f"Failed. Machines and logs are in {folder}.")
    shutil.rmtree(folder)


def class_in_menu(application):
    """The class of the windows that the desktop takes for the menu entry's."""
    entry = pathlib.Path(__file__).resolve().parents[2] / f"share/{application}.desktop"
    return re.search(r"^StartupWMClass=(.+)$", entry.read_text(), re.MULTILINE)[1]


class Machine:
    """The simulated machine in a folder; it is created if the folder does not exist.

    While the updater runs, only cells() and holds() show the current state.
    """

    def __init__(self, programs, folder, *options):
        self.programs = programs
        self.folder = folder
        if not folder.exists():
            run_cardsim(programs, "make", *options, folder)

    def copy(self, folder):
        """Copies the machine to another folder."""
        shutil.copytree(self.folder, folder)
        return Machine(self.programs, folder)

    def state(self):
        """The content of machine.json, which is saved when a run starts and ends."""
        return json.loads((self.folder / "machine.json").read_text())

    def accesses(self):
        return self.state()["accesses"]

    def show(self):
        return run_cardsim(self.programs, "show", self.folder)

    def cells(self, card=1):
        """The current content of the card's PROM, even during a write."""
        return (self.folder / f"card-{card}.prom").read_bytes()

    def holds(self, image, card=1):
        """Returns whether the card's PROM holds what the image writes."""
        code = subprocess.run([self.programs / "cardsim", "prom", "compare", self.folder, str(card), image],
                              stdout=subprocess.DEVNULL, check=False).returncode
        check(code in (0, 3), f"The PROM of card {card} could not be compared.")
        return code == 0

    def power_cycle(self):
        run_cardsim(self.programs, "power-cycle", self.folder)

    def check_updated(self, image, card=1, identity=IDENTITY):
        """Checks that the card holds and loads the image's firmware, kept its identity and was not misused."""
        check(self.holds(image, card), f"Card {card} does not hold the new firmware.")
        self.power_cycle()
        shown = self.show()
        described = shown[shown.index(f"Card {card}:"):].split("\n\n")[0]
        check(f"Identity    {identity}" in described, f"Card {card} lost its identity:\n{shown}")
        check(re.search("Running .*firmware M12 ", described), f"Card {card} did not load the new firmware:\n{shown}")
        check(self.state()["ledger"] == [], f"The ledger is not empty:\n{shown}")


def image_of(programs):
    return programs / "vupdater-simulated.app/Contents/Resources" / IMAGE


def slow_programs(programs, folder, programming=1_000_000, reading=0):
    """Copies the updater to the folder, with an image that waits the given microseconds for each of its 512 pages.

    The image programs all pages, then reads them all back. A million microseconds per page take about five seconds of
    real time on an idle computer; reading back without a wait takes less than one.
    """
    slow = folder / "slow"
    shutil.copytree(programs / "vupdater-simulated.app", slow / "vupdater-simulated.app")
    for program in ("vupdater-simulated", "cardsim"):
        shutil.copy2(programs / program, slow)
    listing = subprocess.run([programs / "xsvf", "list", image_of(programs)], check=True, capture_output=True,
                             text=True).stdout
    check(listing.count(PROGRAMMING_WAIT) == listing.count(READING) == 512, "The image does not have 512 pages.")
    listing = listing.replace(PROGRAMMING_WAIT, f"XRUNTEST {programming}\n")
    listing = listing.replace(READING, f"XRUNTEST {reading}\n{READING}XRUNTEST 0\n")
    (folder / "slow.txt").write_text(listing)
    image_of(slow).unlink()
    subprocess.run([programs / "xsvf", "assemble", folder / "slow.txt", "--output", image_of(slow)], check=True)
    return slow


def begin_write(updater, machine, seconds=0):
    """Begins an update, waits for a random moment after the PROM's cells have begun to change, and returns the cells then."""
    before = machine.cells()
    updater.wait_for("push button", "Update").do_action(0)
    updater.wait_for("push button", "OK").do_action(0)
    wait_until(lambda: machine.cells() != before, "The write did not begin.")
    time.sleep(random.uniform(0, seconds))
    return machine.cells()


@contextlib.contextmanager
def system_tmp():
    """Reserves the private driver's fixed names in /tmp; other tests, of any build, wait."""
    descriptor = os.open("/tmp", os.O_RDONLY | os.O_DIRECTORY)
    try:
        fcntl.flock(descriptor, fcntl.LOCK_EX)
        yield
    finally:
        os.close(descriptor)


@contextlib.contextmanager
def wayland(folder):
    """Runs a Wayland compositor without a screen; yields it and the environment that makes a program use it."""
    name = folder.name  # a killed compositor leaves its socket
    with open(folder / "weston.log", "w") as log, \
            subprocess.Popen(["weston", "--backend=headless-backend.so", f"--socket={name}"],
                             stdout=log, stderr=log) as process:
        socket = pathlib.Path(os.environ["XDG_RUNTIME_DIR"]) / name
        wait_until(socket.exists, "The compositor did not start.")
        try:
            yield process, {"QT_QPA_PLATFORM": "wayland", "WAYLAND_DISPLAY": name}
        finally:
            process.kill()
