"""What protects a write from the end of the computer, of the session and of the agent's patience."""

import multiprocessing
import os
import pwd
import shutil
import signal
import time

import dbus
import dbus.lowlevel
from agent_bench import SECOND, check_equal
from system_bus import AGENT, OBJECT, check, connection_of, make_card, wait_until

LOCK = ("shutdown:sleep:idle:handle-power-key:handle-suspend-key:handle-hibernate-key:handle-lid-switch",
        "VUpdater", "Firmware is being written into a card", "block")
FLOOD_SECONDS = 3  # by then, an agent that looks for the cards at every call is far behind
CANCELLED = "A scheduled shutdown was cancelled for the write."


def a_write_is_protected(bench):
    session = bench.bus.start_session_manager()
    owner, other = bench.owner(), bench.client()
    connections = set(bench.bus.connection.list_names())
    # Locks do not stop a shutdown that was scheduled before them.
    bench.schedule_shut_down()
    owner.ask("begin")
    check(not bench.logind.IsScheduled(), "The computer goes off during the write.")
    check("was scheduled to shut down" in owner.said(), f"Cancelled without a word: {owner.said()}")
    check_equal([tuple(lock)[:4] for lock in bench.bus.locks()], [LOCK])
    check(f'"com.vornlabs.vupdater" 0 "{LOCK[2]}" 1' in bench.bus.said("session-manager"), "The session can be ended.")
    (lock,) = set(bench.bus.connection.list_names()) - connections
    # Root schedules them although the lock is held: during the write, and after one that failed.
    bench.logind.ScheduleShutdownAsRoot()
    wait_until(lambda: not bench.logind.IsScheduled(), "The computer goes off in the middle of the write.")
    told = bench.bus.said().count(CANCELLED)
    config = (bench.cards[1] / "config").read_bytes()
    (bench.cards[1] / "config").write_bytes(b"\xff" * 64)
    bench.logind.ScheduleShutdownAsRoot()
    owner.ask("begin")
    check(f"{SECOND}: The card could not be read" in bench.bus.said(), "A card that is not ready, without a word.")
    (bench.cards[1] / "config").write_bytes(config)
    check(not bench.logind.IsScheduled(), "The computer goes off during the second attempt.")
    check_equal(owner.said().count("was scheduled to shut down"), 2)
    check_equal(bench.bus.said().count(CANCELLED), told + 1)
    check_equal(set(bench.bus.connection.list_names()) - connections, {lock})
    wait_until(lambda: len(bench.bus.locks()) == 1, "The first attempt's lock was not ended.")
    # The lock stays, but whether root has scheduled another one is not known.
    for times, refused in enumerate(("CancelScheduledShutdown", "Inhibit"), 1):
        bench.logind.SetRefused(refused)
        owner.ask("begin")
        check_equal(owner.said().count("It is unknown whether the computer is scheduled to shut down"), times)
    bench.logind.SetRefused("")
    bench.logind.ScheduleShutdownAsRoot()
    wait_until(lambda: not bench.logind.IsScheduled(), "A refused lock leaves it to the computer to go off.")
    check("Nothing prevents" not in owner.said(), owner.said())
    check_equal(other.ask("power-off"), ["not begun"])
    check("prevented by VUpdater (Firmware is being written into a card)" in other.said(), other.said())
    owner.ask("end")
    wait_until(lambda: not bench.bus.locks(), "The lock outlived the write.")
    wait_until(lambda: lock not in bench.bus.connection.list_names(), "The session cannot be ended.")
    session.kill()
    # No lock stops a computer that is on its way to sleep, so the write waits until it is awake again.
    bench.logind.SetGoingToSleep(True)
    owner.send("begin")
    wait_until(lambda: "begins when it is awake" in owner.said(), "The write did not wait.")
    bench.logind.SetGoingToSleep(False)
    check_equal(owner.answer(), [])
    check_equal(len(bench.bus.locks()), 1)
    check_equal(owner.ask("power-off"), ["begun"])
    owner.kill()
    bench.wait_until_all_is_undone(has_written=True)
    bench.logind.UpdateProperties("org.freedesktop.login1.Manager", {"PreparingForShutdown": True})
    bench.logind.AddMethod("org.freedesktop.login1.Manager", "PowerOff", "b", "", "raise Exception('under way')")
    check_equal(other.ask("power-off"), ["begun"])
    other.kill()


def a_write_outlives_the_session(bench):
    owner, not_moved = bench.owner(), "systemd did not move the program"
    before = bench.bus.said().count(not_moved)

    def write():
        owner.ask("begin")
        check_equal(len(bench.bus.locks()), 1)
        owner.ask("end")
        wait_until(lambda: not bench.bus.locks(), "The lock outlived the write.")

    write()
    wait_until(lambda: bench.bus.said().count(not_moved) == before + 1, "There is no systemd, and not a word about it.")
    systemd = bench.bus.start_systemd()
    scope = f"vupdater-write-{owner.process.pid}.scope in user-{os.geteuid()}.slice with [{owner.process.pid}]"
    for times in (1, 2):  # the second time it is there already
        write()
        wait_until(lambda: bench.bus.said("systemd").count(scope) == times, "The program was not moved.")
    systemd.send_signal(signal.SIGSTOP)
    write()
    systemd.kill()
    wait_until(lambda: bench.bus.said().count(not_moved) == before + 2, "systemd ended, and not a word about it.")
    check("Nothing prevents" not in owner.said(), owner.said())
    owner.kill()
    bench.wait_until_all_is_undone(has_written=True)

    # A process of another user's is left where it is: it may have the number of one that passed its connection on.
    bench.bus.start_systemd()
    bench.bus.folder.chmod(0o711)
    user = pwd.getpwnam("nobody").pw_uid if os.geteuid() == 0 else os.geteuid()
    connection = connection_of(user)
    agent = dbus.Interface(connection.get_object(AGENT, OBJECT), AGENT)
    check_equal(str(agent.Claim(False)), "granted")
    bench.logind.SetUserOfProcesses(user + 1)
    agent.BeginWrite()
    wait_until(lambda: bench.bus.said().count(not_moved) == before + 3, "A stranger was moved, or nobody was.")
    bench.logind.SetUserOfProcesses(user)
    agent.BeginWrite()
    own_scope = f"vupdater-write-{os.getpid()}.scope in user-{user}.slice with [{os.getpid()}]"
    wait_until(lambda: own_scope in bench.bus.said("systemd"), "The user's own program was not moved.")
    check_equal(bench.bus.said("systemd").count(own_scope), 1)
    connection.close()
    bench.wait_until_all_is_undone(has_written=True)


def ask(connection, times):
    for number in range(times):
        call = dbus.lowlevel.MethodCallMessage(AGENT, OBJECT, AGENT, "Cards")
        call.set_no_reply(number % 2 == 0)  # the bus does not limit these
        connection.send_message(call)


def ask_and_leave():
    while True:
        connection = dbus.bus.BusConnection(os.environ["DBUS_SYSTEM_BUS_ADDRESS"])
        ask(connection, 20)
        connection.flush()
        connection.close()


def others_ask_without_end(bench):
    devices = [make_card(bench.bus.folder / "sys", f"0000:00:{number:02x}.0", 0xF0000000 + number * 0x10000, device="0002")
               for number in range(40)]
    owner = bench.owner()
    coming_and_going = [multiprocessing.Process(target=ask_and_leave, daemon=True) for _ in range(2)]
    for process in coming_and_going:
        process.start()
    others = [dbus.bus.BusConnection(os.environ["DBUS_SYSTEM_BUS_ADDRESS"]) for _ in range(12)]
    time.sleep(FLOOD_SECONDS)
    for other in others:
        ask(other, 100)
    owner.ask("begin")
    check("Nothing prevents" not in owner.said(), "The agent let its client wait too long.")
    check_equal(len(bench.bus.locks()), 1)
    check(all(process.is_alive() for process in coming_and_going), "The others have stopped asking.")
    for process in coming_and_going:
        process.kill()
        process.join()
    for other in others:
        other.close()
    owner.kill()
    bench.wait_until_all_is_undone(has_written=True)
    for device in devices:
        shutil.rmtree(device)
