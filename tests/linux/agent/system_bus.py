"""A system bus of a test's own, with made-up cards, stand-ins for what it calls, the real agent, and its clients."""

import os
import pathlib
import re
import shutil
import signal
import subprocess
import sys
import time

import dbus

ROOT = pathlib.Path(__file__).resolve().parents[3]
AGENT = "com.vornlabs.VUpdater.Agent"
OBJECT = "/com/vornlabs/VUpdater/Agent"
MOCK = "org.freedesktop.DBus.Mock"
POLKIT = ("org.freedesktop.PolicyKit1", "/org/freedesktop/PolicyKit1/Authority")
SESSION = ("org.gnome.SessionManager", "/org/gnome/SessionManager")
SYSTEMD = ("org.freedesktop.systemd1", "/org/freedesktop/systemd1", "org.freedesktop.systemd1.Manager")
LOGIND = ("org.freedesktop.login1", "/org/freedesktop/login1")
PATIENCE_SECONDS = 60

# As strict as a computer's, but a test may own the stand-ins' names, and the agent's without being root.
BUS = """<busconfig>
  <type>system</type>
  <listen>unix:path={folder}/bus</listen>
  <auth>EXTERNAL</auth>
  <servicedir>{folder}/services</servicedir>
  <policy context="default">
    <allow user="*"/>
    <deny own="*"/>
    <deny send_type="method_call"/>
    <allow send_type="signal"/>
    <allow send_requested_reply="true" send_type="method_return"/>
    <allow send_requested_reply="true" send_type="error"/>
    <allow receive_type="method_call"/>
    <allow receive_type="method_return"/>
    <allow receive_type="error"/>
    <allow receive_type="signal"/>
    <allow send_destination="org.freedesktop.DBus"/>
    <allow own="org.freedesktop.PolicyKit1" /><allow send_destination="org.freedesktop.PolicyKit1"/>
    <allow own="org.freedesktop.login1" /><allow send_destination="org.freedesktop.login1"/>
    <allow own="org.freedesktop.systemd1" /><allow send_destination="org.freedesktop.systemd1"/>
    <allow own="org.gnome.SessionManager" /><allow send_destination="org.gnome.SessionManager"/>
  </policy>
  <include>{root}/share/agent/{agent}.conf</include>
  <policy user="{user}"><allow own="{agent}"/></policy>
</busconfig>
"""


def check(holds, what):
    if not holds:
        raise AssertionError(what)


def wait_until(condition, what):
    """Returns the condition's first true result."""
    end = time.monotonic() + PATIENCE_SECONDS
    while not (result := condition()):
        check(time.monotonic() < end, what)
        time.sleep(0.02)
    return result


def make_card(sys_folder, address, first, content=b"CARD", device="0001"):
    """A device with its registers at an address in memory, described as the kernel does it. Memory decoding is off."""
    folder = sys_folder / "bus/pci/devices" / address
    (folder / "power").mkdir(parents=True)
    ranges = [f"{first:#x} {first + 0x1ff:#x} 0x40200", *["0x0 0x0 0x0"] * 12]
    for name, text in {"vendor": "0x1234\n", "device": f"0x{device}\n", "subsystem_vendor": "0x0000\n",
                       "subsystem_device": "0x0000\n", "enable": "0\n", "power/control": "auto\n",
                       "power/runtime_status": "suspended\n",
                       "driver_override": "(null)\n", "resource": "\n".join(ranges) + "\n"}.items():
        (folder / name).write_text(text)
    (folder / "config").write_bytes(bytes(64))
    page = bytearray(4096)
    page[first % 4096:first % 4096 + len(content)] = content
    (folder / "resource0").write_bytes(page)
    return folder


def is_decoding(card):
    return (card / "config").read_bytes()[4] & 2 != 0


def connection_of(user):
    """A connection to the bus as a user, which only root can make for others."""
    own = os.geteuid()
    os.seteuid(user)
    try:
        return dbus.bus.BusConnection(os.environ["DBUS_SYSTEM_BUS_ADDRESS"])
    finally:
        os.seteuid(own)


class SystemBus:
    """The bus. It starts the agent when a client calls it, if the agent is installed."""

    def __init__(self, folder, programs, idle=30):
        self.folder = folder
        self.programs = programs
        self.processes = []
        self.cards = folder / "cards.d"
        for name in ("cards.d", "services", "sys/bus/pci/devices"):
            (folder / name).mkdir(parents=True)
        (self.cards / "test.conf").write_text('1234:0001 "Test card"\n')
        (self.cards / "test.conf").chmod(0o644)
        self.service = folder / f"services/{AGENT}.service"
        self.service.write_text(
            f"[D-BUS Service]\nName={AGENT}\nUser=root\n"
            f"Exec={programs}/vupdater-agent --sys {folder}/sys --cards {self.cards} --idle {idle}\n")
        (folder / "bus.conf").write_text(BUS.format(folder=folder, root=ROOT, agent=AGENT, user=os.geteuid()))
        os.environ["DBUS_SYSTEM_BUS_ADDRESS"] = f"unix:path={folder}/bus"
        self.start("bus", "dbus-daemon", f"--config-file={folder}/bus.conf", "--nofork", "--nopidfile")
        wait_until(self.connect, "The bus did not start.")

    def connect(self):
        """Returns whether the bus listens already."""
        try:
            self.connection = dbus.bus.BusConnection(os.environ["DBUS_SYSTEM_BUS_ADDRESS"])
        except dbus.DBusException:
            return False
        return True

    def reload(self):
        """Has the bus read again which services there are."""
        self.connection.get_object("org.freedesktop.DBus", "/org/freedesktop/DBus").ReloadConfig()

    def start_agent_by(self, script):
        """From now on the bus starts the agent by a shell script, in which "$@" is the agent's command."""
        service = self.service.read_text()
        self.service.write_text(service.replace("Exec=", f"Exec=/bin/sh -c '{script}' sh "))
        self.reload()

    def start(self, name, *command):
        with open(self.folder / f"{name}.log", "ab") as log:
            process = subprocess.Popen(command, stdout=log, stderr=log, start_new_session=True)
        self.processes.append(process)
        return process

    def start_polkit(self):
        return self.start_mock("polkit", POLKIT, "--template", pathlib.Path(__file__).with_name("polkit_template.py"))

    def start_logind(self):
        return self.start_mock("logind", LOGIND, "--template", pathlib.Path(__file__).with_name("logind_template.py"))

    def start_systemd(self):
        return self.start_mock("systemd", SYSTEMD, "--template", pathlib.Path(__file__).with_name("systemd_template.py"))

    def start_session_manager(self):
        # The session of the clients that are started after it has this bus, too.
        os.environ["DBUS_SESSION_BUS_ADDRESS"] = os.environ["DBUS_SYSTEM_BUS_ADDRESS"]
        process = self.start_mock("session-manager", SESSION, *SESSION, SESSION[0])
        self.mock(SESSION).AddMethod(SESSION[0], "Inhibit", "susu", "u", "ret = 1")
        return process

    def start_mock(self, name, where, *what):
        process = self.start(name, sys.executable, "-m", "dbusmock", "--system", *what)
        wait_until(lambda: self.connection.name_has_owner(where[0]), f"The stand-in for {name} did not start.")
        return process

    def mock(self, where, interface=MOCK):
        return dbus.Interface(self.connection.get_object(*where), interface)

    def agent_process(self):
        """The number of the agent's process; nothing if none runs."""
        try:
            return int(self.connection.call_blocking("org.freedesktop.DBus", "/org/freedesktop/DBus",
                                                     "org.freedesktop.DBus", "GetConnectionUnixProcessID", "s", (AGENT,)))
        except dbus.DBusException:
            return None

    def locks(self):
        return self.mock(LOGIND, "org.freedesktop.login1.Manager").ListInhibitors()

    def said(self, name="bus"):
        """What a process said. The agent speaks through the bus, which starts it."""
        return (self.folder / f"{name}.log").read_text()

    def stop(self):
        self.connection.close()
        for process in reversed(self.processes):
            process.kill()
            process.wait()


class Client:
    """agent_client_probe: each call of ask() is one word for it and returns the lines that it answers."""

    def __init__(self, bus, name):
        self.log = bus.folder / f"{name}.log"
        with open(self.log, "ab") as log:
            self.process = subprocess.Popen([bus.programs / "agent_client_probe"], stdin=subprocess.PIPE,
                                            stdout=subprocess.PIPE, stderr=log, text=True, bufsize=1)
        bus.processes.append(self.process)

    def send(self, words):
        self.process.stdin.write(f"{words}\n")

    def answer(self):
        lines = []
        while (line := self.process.stdout.readline().strip()) != "done":
            check(line, f"A client ended: {self.said()}")
            lines.append(line)
        return lines

    def ask(self, words):
        self.send(words)
        return self.answer()

    def said(self):
        return self.log.read_text()

    def pipes(self):
        """The pipes that it holds open; a lock is one."""
        files = map(os.readlink, pathlib.Path(f"/proc/{self.process.pid}/fd").iterdir())
        return {file for file in files if file.startswith("pipe:")}

    def kill(self):
        self.process.kill()
        self.process.wait()
