"""The bench on which the agent and its clients are tried: a system bus of their own with two cards, and stand-ins for polkit
and logind."""

import argparse
import multiprocessing
import pathlib
import resource
import shutil
import tempfile
import traceback

from system_bus import LOGIND, POLKIT, Client, SystemBus, check, is_decoding, make_card, wait_until

NOT_PREVENTED = "Nothing prevents you from switching the computer off during the write"
FIRST, SECOND = "0000:05:01.0", "0000:05:02.0"
# As logind does for a user who may not override a lock.
POWER_OFF = """
from dbusmock import mockobject
if getattr(mockobject, "inhibitors", []):
    raise dbus.exceptions.DBusException("Access denied", name="org.freedesktop.DBus.Error.AccessDenied")
"""


class Bench:
    def __init__(self, folder, programs, **options):
        self.bus = SystemBus(folder, programs, **options)
        self.cards = [make_card(folder / "sys", FIRST, 0xFEBF1200), make_card(folder / "sys", SECOND, 0xFEBF2000)]
        self.bus.start_polkit()
        self.bus.start_logind()
        self.polkit = self.bus.mock(POLKIT)
        self.logind = self.bus.mock(LOGIND)
        self.logind.AddMethod("org.freedesktop.login1.Manager", "PowerOff", "b", "", POWER_OFF)
        self.clients = 0

    def client(self):
        self.clients += 1
        return Client(self.bus, f"client-{self.clients}")

    def owner(self):
        """A client that has the cards, with the first one's registers mapped."""
        self.polkit.SetAnswer("granted")
        client = self.client()
        check_equal(client.ask("claim"), ["granted"])
        check_equal(client.ask(f"open {FIRST} 0"), ["512 CARD"])
        return client

    def check_that_mapping_is_tried(self, owner):
        """An agent that cannot map the registers does not open them for its client."""
        if b"__asan_init" in (self.bus.programs / "vupdater-agent").read_bytes():
            return  # the address sanitizer needs memory itself, and ends the agent if there is none
        limit = (self.bus.agent_process(), resource.RLIMIT_AS)
        before = resource.prlimit(*limit)
        resource.prlimit(*limit, (0, before[1]))
        check_equal(owner.ask(f"open {FIRST} 0"), ["not opened"])
        resource.prlimit(*limit, before)
        check("registers cannot be reached: Cannot allocate memory" in owner.said(), owner.said())

    def schedule_shut_down(self):
        self.bus.mock(LOGIND, "org.freedesktop.login1.Manager").ScheduleShutdown("poweroff", 0)

    def wait_until_cards_are_back(self):
        wait_until(lambda: not any(map(is_decoding, self.cards)), "The cards were not taken back.")

    def wait_until_all_is_undone(self, has_written=False):
        self.wait_until_cards_are_back()
        wait_until(lambda: not self.bus.locks(), "The lock was not ended.")
        # The firmware may be incomplete, and then the card must not lose its power.
        undone = ["0", "on" if has_written else "auto"]
        for card in self.cards:
            wait_until(lambda: (card / "driver_override").read_text() in ("(null)\n", "\n"), "Drivers are still kept away.")
            check_equal([(card / name).read_text().strip() for name in ("enable", "power/control")], undone)
            self.reset(card)

    def reset(self, card):
        for name, text in (("driver_override", "(null)\n"), ("enable", "0\n"), ("power/control", "auto\n")):
            (card / name).write_text(text)
        (card / "config").write_bytes(bytes(64))


def check_equal(is_so, should_be):
    check(is_so == should_be, f"{is_so!r} instead of {should_be!r}")


def refusals(client):
    return [line.rsplit("|", 1)[1] for line in client.ask("cards")]


def run_bench(programs, cases, options):
    folder = pathlib.Path(tempfile.mkdtemp(prefix="vupdater-bus-"))
    bench = Bench(folder, programs, **options)
    try:
        for case in cases:
            print(case.__name__.replace("_", " "), flush=True)
            case(bench)
    except Exception:
        traceback.print_exc()
        print(*(f"--- {log.name}\n{log.read_text()}" for log in folder.glob("*.log")), sep="\n")
        raise SystemExit(1) from None
    finally:
        bench.bus.stop()
        shutil.rmtree(folder)


def run_benches(benches):
    """Runs the groups of cases at the same time, each with a bus of its own and the options of its agent."""
    parser = argparse.ArgumentParser()
    parser.add_argument("--programs", type=pathlib.Path, default=pathlib.Path(__file__).resolve().parents[3] / "build/release/bin")
    programs = parser.parse_args().programs.resolve()
    # They mostly wait for time limits.
    groups = [multiprocessing.Process(target=run_bench, args=(programs, *bench)) for bench in benches]
    for group in groups:
        group.start()
    for group in groups:
        group.join()
    if any(group.exitcode != 0 for group in groups):
        raise SystemExit(1)
