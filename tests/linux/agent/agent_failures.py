"""What is left of cards, locks and questions when the agent, the bus, polkit or logind dies, hangs or is missing."""

import os
import signal
import time

import dbus
from agent_bench import FIRST, NOT_PREVENTED, SECOND, check_equal, refusals
from system_bus import AGENT, OBJECT, check, is_decoding, wait_until

POLKITS_SILENCE_SECONDS = 16  # after which it is given up
PROTECTED = "The computer stays on during the write."


def the_agent_dies(bench):
    owner = bench.owner()
    owner.ask("begin")
    for deadly in (signal.SIGKILL, signal.SIGTERM):
        os.kill(agent := bench.bus.agent_process(), deadly)
        wait_until(lambda: bench.bus.agent_process() != agent, "The agent did not end.")
        check_equal(len(bench.bus.locks()), 1)
        other = bench.client()
        check(all("Another program" in refusal for refusal in refusals(other)), "Two programs have a card.")
        check(all(map(is_decoding, bench.cards)), "The card was taken away from a program that writes to it.")
        other.kill()
    bench.logind.ScheduleShutdownAsRoot()
    agents = owner.pipes()
    owner.ask("begin")
    check(not bench.logind.IsScheduled(), "The computer goes off during the second attempt.")
    check(agents <= owner.pipes(), "The agent's lock was given up for one that does not stop the user.")
    wait_until(lambda: len(bench.bus.locks()) == 1, "The user's own lock was kept beside the agent's.")
    check("Nothing prevents" not in owner.said(), owner.said())
    for count in (1, 2):  # first the agent's lock is ended, then the user's own
        owner.ask("end")
        wait_until(lambda: not bench.bus.locks(), "The lock outlived the write.")
        bench.schedule_shut_down()
        owner.ask("begin")
        check(not bench.logind.IsScheduled(), "The computer goes off during the write.")
        check_equal(len(bench.bus.locks()), 1)
        check_equal(owner.said().count(NOT_PREVENTED), count)
    owner.kill()
    bench.wait_until_all_is_undone(has_written=True)

    # No agent is told of a write that begins without one, whether or not the next one meets the program.
    for meets in (True, False):
        owner, other = bench.owner(), bench.client()
        os.kill(agent := bench.bus.agent_process(), signal.SIGKILL)
        wait_until(lambda: bench.bus.agent_process() != agent, "The agent did not end.")
        if meets:
            check(all("Another program" in refusal for refusal in refusals(other)), "Two programs have a card.")
        owner.ask("begin")
        owner.kill()
        check_equal(len(other.ask("cards")), 2)
        bench.wait_until_all_is_undone(has_written=True)
        other.kill()

    # An agent that cannot look whether a card is in use leaves it as it is.
    owner, registers = bench.owner(), bench.cards[0] / "resource0"
    os.kill(bench.bus.agent_process(), signal.SIGKILL)
    registers.rename(bench.bus.folder / "registers")
    registers.mkdir()
    other = bench.client()
    check(all("Another program" in refusal for refusal in refusals(other)), "Two programs have a card.")
    check(is_decoding(bench.cards[0]), "A card was taken away from a program that may use it.")
    # It does not wait for a card that has been taken out.
    bench.cards[0].rename(bench.bus.folder / "taken-out")
    wait_until(lambda: not is_decoding(bench.cards[1]), "The other card was not taken back.")
    (bench.bus.folder / "taken-out").rename(bench.cards[0])
    # Nor without its note does it give the card away. The other one can be had.
    (bench.cards[0] / "driver_override").write_text("(null)\n")
    for reason in ("resource0: is not an ordinary file", "is still using it"):
        check_equal(other.ask("claim-asking"), ["granted"])
        first, second = refusals(other)
        check(reason in first, f"Two programs have a card: {first}")
        check_equal(second, "")
        check_equal(other.ask(f"open {FIRST} 0") + other.ask(f"open {SECOND} 0"), ["not opened", "512 CARD"])
        if registers.is_dir():
            registers.rmdir()
            (bench.bus.folder / "registers").rename(registers)
    for client in (owner, other):
        client.kill()
    wait_until(lambda: (bench.cards[1] / "driver_override").read_text() == "\n", "The other card was not taken back.")
    for card in bench.cards:
        bench.reset(card)

    bench.polkit.SetAnswer("dialog")
    asking = bench.client()
    asking.send("claim-asking")
    wait_until(lambda: bench.polkit.CountOpenQuestions() == 1, "Nobody was asked.")
    for _ in range(3):
        os.kill(asking.process.pid, signal.SIGUSR1)
    os.kill(bench.bus.agent_process(), signal.SIGKILL)
    wait_until(lambda: bench.polkit.CountOpenQuestions() == 2, "The next agent was not asked.")
    bench.polkit.AnswerDialog("granted")
    check_equal(asking.answer(), ["granted"])
    os.kill(agent := bench.bus.agent_process(), signal.SIGTERM)
    wait_until(lambda: bench.bus.agent_process() is None, "The agent did not end.")
    bench.wait_until_all_is_undone()
    asking.kill()


def a_client_outlives_its_connection(bench):
    bench.polkit.SetAnswer("granted")
    connection = dbus.bus.BusConnection(os.environ["DBUS_SYSTEM_BUS_ADDRESS"])
    owner = dbus.Interface(connection.get_object(AGENT, OBJECT), AGENT)
    check_equal(str(owner.Claim(False)), "granted")
    registers = owner.OpenRange(FIRST, dbus.UInt32(0))[0].take()
    connection.close()
    # Whether it writes from now on, no agent is told.
    wait_until(lambda: all((card / "driver_override").read_text().endswith(" on\n") for card in bench.cards),
               "The cards may sleep after what may be an incomplete write.")
    check(all(map(is_decoding, bench.cards)), "A card was taken away from a program that uses it.")
    os.close(registers)
    bench.wait_until_all_is_undone(has_written=True)


def others_hang_or_are_missing(bench):
    os.symlink("somewhere/a_driver", driver := bench.cards[1] / "driver")
    owner, bus, polkit, logind = bench.owner(), *bench.bus.processes[:3]
    driver.unlink()
    bus.send_signal(signal.SIGSTOP)
    patient = bench.client()
    patient.send("cards")
    owner.ask("begin")
    check_equal(patient.answer(), ["nobody answers"])
    since = time.monotonic()
    owner.ask("end")
    check(time.monotonic() < since + 4, "The end of a write was waited for.")
    bus.send_signal(signal.SIGCONT)
    check("during the write: Connection timed out" in owner.said(), owner.said())
    check_equal(patient.ask("claim-asking"), ["denied"])
    check("system bus cannot be reached (Connection timed out" in patient.said(), patient.said())
    # What is slow takes no longer together than what hangs.
    os.kill(agent := bench.bus.agent_process(), signal.SIGSTOP)
    bench.logind.SetSecondsOfACall(4.5)
    begin = time.monotonic()
    owner.ask("begin")
    seconds = time.monotonic() - begin
    check(seconds < 13, f"The write waited {seconds:.1f} seconds for the lock.")
    bench.logind.SetSecondsOfACall(0)
    granted = bench.bus.said().count(PROTECTED)
    os.kill(agent, signal.SIGCONT)
    wait_until(lambda: bench.bus.said().count(PROTECTED) > granted, "The agent's lock did not come too late.")
    owner.ask("end")
    wait_until(lambda: not bench.bus.locks(), "A lock that came too late outlived the write.")
    bench.polkit.SetAnswer("dialog")
    asking = bench.client()
    asking.send("claim-asking")
    wait_until(lambda: bench.polkit.CountOpenQuestions() == 1, "Nobody was asked.")
    bench.logind.SetGoingToSleep(True)
    owner.send("begin")
    wait_until(lambda: "begins when it is awake" in owner.said(), "The write did not wait.")
    logind.send_signal(signal.SIGSTOP)
    bench.logind.SetGoingToSleep(False, ignore_reply=True)  # so that it gives what it is asked for when it goes on
    owner.send("waits")
    (waits,) = owner.answer() + owner.answer()
    check("put to sleep during the write: logind gave no lock" in owner.said(), owner.said())
    check(int(waits) > 20, f"The window was drawn {waits} times while the lock was waited for.")
    owner.ask("end")
    logind.send_signal(signal.SIGCONT)
    wait_until(lambda: not bench.bus.locks(), "The user's lock that came too late outlived the write.")
    # All this time somebody has been typing a password.
    bench.polkit.AnswerDialog("granted")
    check_equal(asking.answer() + asking.ask("let-go"), ["granted"])
    asking.send("claim-asking")
    wait_until(lambda: bench.polkit.CountOpenQuestions() == 1, "Nobody was asked.")
    os.kill(agent := bench.bus.agent_process(), signal.SIGSTOP)
    (patient := bench.client()).send("cards")
    check_equal(asking.answer() + patient.answer(), ["denied", "nobody answers"])
    os.kill(agent, signal.SIGCONT)
    check("does not answer. Run as root: systemctl restart" in asking.said(), asking.said())
    wait_until(lambda: bench.polkit.CountOpenQuestions() == 0, "The dialog was not taken back.")
    check_equal(patient.ask("claim-asking"), ["denied"])
    for process in (polkit, logind):
        process.kill()
        process.wait()
    owner.ask("begin")
    check("during the write: logind gave no lock" in owner.said(), owner.said())
    check_equal(owner.ask("end") + owner.ask("power-off"), ["not begun"])
    owner.kill()
    bench.wait_until_cards_are_back()
    asking = bench.client()
    check_equal(asking.ask("claim-asking"), ["denied"])
    check(all(text in asking.said() for text in ("polkit does not answer (", "systemctl restart polkit")), asking.said())
    asking.kill()


def polkit_hangs(bench):
    bench.polkit.SetAnswer("dialog")
    asking, waiting, polkit = bench.client(), bench.client(), bench.bus.processes[1]
    asking.send("claim-asking")
    wait_until(lambda: bench.polkit.CountOpenQuestions() == 1, "Nobody was asked.")
    # Somebody takes longer to type a password.
    time.sleep(POLKITS_SILENCE_SECONDS + 2)
    bench.polkit.AnswerDialog("granted")
    check_equal(asking.answer() + asking.ask("let-go"), ["granted"])
    asking.send("claim-asking")
    wait_until(lambda: bench.polkit.CountOpenQuestions() == 1, "Nobody was asked.")
    polkit.send_signal(signal.SIGSTOP)
    since = time.monotonic()
    waiting.send("claim")
    check_equal(waiting.answer() + asking.answer(), ["denied", "denied"])
    seconds = time.monotonic() - since
    polkit.send_signal(signal.SIGCONT)
    check(-1 < seconds - POLKITS_SILENCE_SECONDS < 8, f"A silent polkit was waited for {seconds:.1f} seconds.")
    check("polkit does not answer (" in asking.said() and not waiting.said(), asking.said() + waiting.said())
    wait_until(lambda: bench.polkit.CountOpenQuestions() == 0, "The dialog was not taken back.")
    # Without a question, polkit is left alone.
    calls = bench.bus.said("polkit").count(" Get ")
    time.sleep(1.5)
    check_equal(bench.bus.said("polkit").count(" Get "), calls)
    for client in (asking, waiting):
        client.kill()


def nothing_is_there(bench):
    bench.bus.service.unlink()
    bench.bus.reload()
    client = bench.client()
    check_equal(client.ask("cards") + client.ask("claim-asking"), ["nobody answers", "denied"])
    check("is not installed" in client.said(), client.said())
    client.ask("begin")
    client.kill()
    os.environ["DBUS_SYSTEM_BUS_ADDRESS"] = f"unix:path={bench.bus.folder}/no-bus"
    client = bench.client()
    check_equal(client.ask("cards") + client.ask("claim-asking"), ["nobody answers", "denied"])
    check("system bus cannot be reached (No such file" in client.said(), client.said())
    check_equal(client.ask("begin") + client.ask("end") + client.ask("power-off"), ["not begun"])
    client.kill()
