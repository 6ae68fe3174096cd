"""What the tests of the real program on a virtual display share: their frame, their machines, a slow write.

A test is a script that calls run_test with its one function. It is given the folder with the built programs, runs on a
session bus and in a temporary folder of its own, and exits with 0 only if nothing failed.
"""

import argparse
import contextlib
import fcntl
import json
import os
import pathlib
import re
import shutil
import subprocess
import sys
import tempfile
import traceback

sys.path.insert(0, str(pathlib.Path(__file__).resolve().parents[2] / "scripts"))
from virtual_desktop import Failure, run_cardsim, say, take_own_session  # noqa: E402

IMAGE = "VMBM12A.xsv"
IDENTITY = "2103070021"

# In an image's listing, once for each page.
PROGRAMMING_WAIT = "XRUNTEST 14000\n"
READING = "XSIR 13 0x1DFF\n"


def run_test(test, **options):
    """Runs test(programs, folder, arguments). Each option is an argument of the same name, with its default value."""
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


def check(holds, what):
    if not holds:
        raise Failure(what)


class Machine:
    """The simulated machine in a folder, which is made if there is none.

    While the updater runs on it, only cells and holds tell what is going on.
    """

    def __init__(self, programs, folder, *options):
        self.programs = programs
        self.folder = folder
        if not folder.exists():
            run_cardsim(programs, "make", *options, folder)

    def copy(self, folder):
        """The same machine once more, in another folder."""
        shutil.copytree(self.folder, folder)
        return Machine(self.programs, folder)

    def state(self):
        """What machine.json says; it is only stored when a run begins and ends."""
        return json.loads((self.folder / "machine.json").read_text())

    def accesses(self):
        return self.state()["accesses"]

    def show(self):
        return run_cardsim(self.programs, "show", self.folder)

    def cells(self, card=1):
        """All that the card's PROM holds, also while it is being written."""
        return (self.folder / f"card-{card}.prom").read_bytes()

    def holds(self, image, card=1):
        """Whether the card's PROM holds what the image writes."""
        code = subprocess.run([self.programs / "cardsim", "prom", "compare", self.folder, str(card), image],
                              stdout=subprocess.DEVNULL, check=False).returncode
        check(code in (0, 3), f"The PROM of card {card} could not be compared.")
        return code == 0

    def power_cycle(self):
        run_cardsim(self.programs, "power-cycle", self.folder)

    def check_updated(self, image, card=1, identity=IDENTITY):
        """The card has the image's firmware and its identity, loads it, and nothing was misused."""
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
    """A copy of the updater in the folder, whose image waits so many microseconds for each of its 512 pages.

    First it programs them all, then it reads them all back. A million microseconds a page make some five seconds of
    real time on an idle computer; without a wait, reading back takes less than one.
    """
    slow = folder / "slow"
    shutil.copytree(programs / "vupdater-simulated.app", slow / "vupdater-simulated.app")
    for program in ("vupdater-simulated", "cardsim"):
        shutil.copy2(programs / program, slow)
    listing = subprocess.run([programs / "xsvf", "list", image_of(programs)], check=True, capture_output=True,
                             text=True).stdout
    check(listing.count(PROGRAMMING_WAIT) == listing.count(READING) == 512, "The image does not have the usual pages.")
    listing = listing.replace(PROGRAMMING_WAIT, f"XRUNTEST {programming}\n")
    listing = listing.replace(READING, f"XRUNTEST {reading}\n{READING}XRUNTEST 0\n")
    (folder / "slow.txt").write_text(listing)
    image_of(slow).unlink()
    subprocess.run([programs / "xsvf", "assemble", folder / "slow.txt", "--output", image_of(slow)], check=True)
    return slow


@contextlib.contextmanager
def system_tmp():
    """The private driver's fixed names in /tmp, for one program at a time, in whatever build or test it runs."""
    descriptor = os.open("/tmp", os.O_RDONLY | os.O_DIRECTORY)
    try:
        fcntl.flock(descriptor, fcntl.LOCK_EX)
        yield
    finally:
        os.close(descriptor)
