"""What the tests on guest computers share: their frame, and a machine whose cards are on a guest's bus."""

import pathlib
import re
import shutil
import subprocess
import sys
import traceback

from guest_computer import CARD_RULE, INSIDE, PROGRAMS, SITTER, tell
from guest_kernel import CACHE
from virtual_desktop import check, take_own_session

FOLDERS = CACHE / "runs"
# So that the first person need not be asked for the administrator's password.
POLKIT_RULE = """polkit.addRule(function(action, subject) {
    if (action.id == "com.vornlabs.vupdater.use-cards" && subject.user == "anna") return polkit.Result.YES;
});
"""


def run_test(test):
    """Runs test(folder) in a new folder, which remains. Exits with 0 only if nothing failed."""
    take_own_session()
    name = pathlib.Path(sys.argv[0]).name
    folder = FOLDERS / name
    shutil.rmtree(folder, ignore_errors=True)
    folder.mkdir(parents=True)
    try:
        test(folder)
    except Exception:  # pylint: disable=broad-except
        traceback.print_exc()
        sys.exit(f"{name} failed. Its machine, pictures and logs are in {folder}.")
    tell(f"{name} passed. Its pictures and logs are in {folder}.")


def cardsim(*arguments):
    return subprocess.run([PROGRAMS / "cardsim", *arguments], check=True, capture_output=True, text=True).stdout


def make_layer(folder, asks_nobody):
    """What lies over the guest's Debian: a rule that names its cards, images for them in the bundle of the updater for a
    computer's own cards, and what the tests need."""
    bundle = folder / "usr/lib/x86_64-linux-gnu/vupdater/vupdater.app/Contents/Resources"
    bundle.mkdir(parents=True)
    for image in PROGRAMS.glob("vupdater-simulated.app/Contents/Resources/*.xsv"):
        shutil.copy(image, bundle)
    cards = folder / "etc/vupdater/cards.d/guest.conf"
    cards.parent.mkdir(parents=True, exist_ok=True)
    cards.write_text(CARD_RULE)
    if asks_nobody:
        rules = folder / "etc/polkit-1/rules.d/10-guest.rules"
        rules.parent.mkdir(parents=True)
        rules.write_text(POLKIT_RULE)
    put_commands(folder)


def put_commands(layer):
    """Puts what takes the host's commands into the layer."""
    home = layer / "usr/lib/vupdater-guest"
    home.mkdir(parents=True)
    for script in INSIDE.iterdir():
        if script.suffix not in (".service", ".conf") and script.is_file():
            shutil.copy2(script, home)
    shutil.copy2(INSIDE.parents[2] / "scripts/virtual_desktop.py", home)
    units = layer / "etc/systemd/system"
    (units / "multi-user.target.wants").mkdir(parents=True)
    (layer / "etc/machine-id").write_text("5" * 32 + "\n")  # or systemd would set the computer up for the first time
    shutil.copy(INSIDE / "commands@.service", units)
    for person in ("root", SITTER):
        (units / f"multi-user.target.wants/commands@{person}.service").symlink_to("../commands@.service")
    (units / f"commands@{SITTER}.service.d").mkdir()
    shutil.copy(INSIDE / "session.conf", units / f"commands@{SITTER}.service.d")


def in_window(guest, steps, *answer, expected=0):
    """Does the steps in the guest's window, and tells how it goes. Yields the name of each stage, and last the result,
    if there is one. Fails if the steps do."""
    command = guest.start(SITTER, "/usr/lib/vupdater-guest/window", steps, *answer)
    for line in command.lines(900):
        if line.startswith("Result: "):
            yield line.removeprefix("Result: ")
        elif picture := re.match(r"\d+-(\S+)\.png: ", line):
            tell(line)
            yield picture[1]
    command.wait(expected)
