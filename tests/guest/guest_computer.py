"""A guest computer with a simulated machine's cards on its bus, and what its people do there."""

import contextlib
import json
import pathlib
import queue
import re
import shutil
import socket
import subprocess
import sys
import tempfile
import threading
import time

from guest_image import PEOPLE, debian, first_file_system
from guest_kernel import ROOT, kernel

sys.path.insert(0, str(ROOT / "scripts"))
from virtual_desktop import Failure, say  # noqa: E402

INSIDE = pathlib.Path(__file__).with_name("inside")
PROGRAMS = ROOT / "build/release/bin"
SITTER = next(iter(PEOPLE))  # sits at the computer
PORTS = ("root", SITTER)
CARD_RULE = '1af4:1110 range0=2 simulated "Simulated card"\n'
PATIENCE_SECONDS = 300
SWITCHED_OFF = "off"  # the code of a command that the end of the guest has ended

BEGINNING = time.monotonic()


def tell(text):
    """Prints what happens, with the seconds since the start."""
    say(f"[{time.monotonic() - BEGINNING:5.0f} s] {text}")


class Command:
    """A command that runs in the guest."""

    def __init__(self, port, number):
        self.port, self.number = port, number
        self.events = queue.Queue()
        self.said = []
        self.code = None

    def lines(self, patience=PATIENCE_SECONDS):
        """What the command prints, line by line, to its end."""
        while self.code is None:
            try:
                event = self.events.get(timeout=patience)
            except queue.Empty:
                raise Failure(f"The command in the guest said nothing for {patience} seconds. Before:\n"
                              + "\n".join(self.said)) from None
            if "line" in event:
                self.said.append(event["line"])
                yield event["line"]
            else:
                self.code = event["code"]

    def wait(self, expected=0, patience=PATIENCE_SECONDS):
        """Waits for the command's end and returns what it printed. Fails if it exits otherwise, unless that is None, or
        SWITCHED_OFF, before which it may still exit with 0."""
        for _ in self.lines(patience):
            pass
        output = "\n".join(self.said)
        if expected is not None and self.code != expected and (expected, self.code) != (SWITCHED_OFF, 0):
            raise Failure(f"A command in the guest exited with {self.code} instead of {expected}:\n{output}")
        return output

    def input(self, text):
        self.port.send(number=self.number, input=text)

    def end(self):
        self.port.send(number=self.number, end=True)


class Port:
    """The way to a person's session in the guest."""

    def __init__(self, path):
        self.connection = socket.socket(socket.AF_UNIX)
        self.path = path
        self.commands = {0: Command(self, 0)}

    def open(self):
        self.connection.connect(str(self.path))
        threading.Thread(target=self._read, daemon=True).start()

    def _read(self):
        with contextlib.suppress(ConnectionError), self.connection.makefile("r", errors="replace") as lines:
            for line in lines:
                event = json.loads(line)
                self.commands[event["number"]].events.put(event)
        for command in self.commands.values():
            command.events.put({"code": SWITCHED_OFF})

    def wait_for_session(self, patience):
        try:
            self.commands[0].events.get(timeout=patience)
        except queue.Empty:
            raise Failure(f"The guest did not start within {patience} seconds.") from None

    def send(self, **order):
        self.connection.sendall((json.dumps(order) + "\n").encode())

    def start(self, *command):
        number = len(self.commands)
        self.commands[number] = Command(self, number)
        self.send(number=number, command=[str(word) for word in command])
        return self.commands[number]


class Guest:
    """A computer that runs until it is switched off.

    `layer` lies over its Debian. What it leaves in /host is in the folder's "host".
    """

    def __init__(self, machine, layer, folder, access_nanoseconds=0):
        self.folder = folder
        self.shared = folder / "host"
        self.shared.mkdir(exist_ok=True)
        self.shared.chmod(0o777)
        self.memory = pathlib.Path(tempfile.mkdtemp(prefix="vupdater-guest-", dir="/dev/shm"))
        self.log_file = folder / "guest.log"
        self.ports = {person: Port(self.memory / person) for person in PORTS}
        self.started = time.monotonic()
        with open(self.log_file, "a") as log:
            self.process = subprocess.Popen(self._command(machine, layer, access_nanoseconds), stdin=subprocess.DEVNULL,
                                            stdout=log, stderr=subprocess.PIPE, text=True)
        self.said = []
        self.reader = threading.Thread(target=self._listen, daemon=True)
        self.reader.start()

    def _listen(self):
        for line in self.process.stderr:
            self.said.append(line)
            with open(self.log_file, "a") as log:
                log.write(line)

    def _command(self, machine, layer, access_nanoseconds):
        image, modules = kernel()
        count = len(list(machine.glob("*.prom")))
        plugin = f"file={PROGRAMS}/guest_cards.so,machine={machine},memory={self.memory}"
        command = [
            "qemu-system-x86_64", "-machine", "pc", "-accel", "tcg,thread=single", "-cpu", "max", "-smp", "1", "-m", "1G",
            "-nodefaults", "-display", "none", "-no-reboot", "-serial", "stdio",
            "-kernel", image, "-initrd", first_file_system(modules),
            # Under load the kernel may consider the timer broken.
            "-append", "console=ttyS0 no_timer_check panic=1 systemd.show_status=no",
            "-drive", f"file={debian()},format=raw,if=virtio,readonly=on",
            "-virtfs", f"local,path={layer},mount_tag=programs,security_model=none,readonly=on",
            "-virtfs", f"local,path={self.shared},mount_tag=host,security_model=none",
            "-device", "virtio-serial",
            "-plugin", plugin + (f",nanoseconds={access_nanoseconds}" if access_nanoseconds else "")]
        for person, port in self.ports.items():
            command += ["-chardev", f"socket,id={person},path={port.path},server=on,wait=off",
                        "-device", f"virtserialport,chardev={person},name={person}"]
        for number in range(1, count + 1):
            command += ["-object", f"memory-backend-file,id=card{number},mem-path={self.memory}/card-{number},size=4096,"
                        "share=on", "-device", f"ivshmem-plain,memdev=card{number},addr={0x10 + number:#x}"]
        return [str(word) for word in command]

    def __enter__(self):
        return self

    def __exit__(self, *_):
        if self.process.poll() is None:
            self.process.kill()
            self.process.wait()
        for picture in self.shared.rglob("*.xwd"):
            subprocess.run(["convert", picture, picture.with_suffix(".png")], check=False)
            picture.unlink()
        shutil.rmtree(self.memory, ignore_errors=True)

    def wait_for_sessions(self, people=("root", SITTER), patience=PATIENCE_SECONDS):
        """Waits until the guest has started and these people can be asked to do something."""
        end = time.monotonic() + 60
        for port in self.ports.values():
            while not port.path.exists():
                if self.process.poll() is not None or time.monotonic() > end:
                    raise Failure("The guest was not switched on:\n" + "".join(self.said))
                time.sleep(0.1)
            port.open()
        for person in people:
            self.ports[person].wait_for_session(patience)
        tell(f"The guest has started, after {time.monotonic() - self.started:.0f} s")

    def start(self, person, *command):
        return self.ports[person].start(*command)

    def run(self, person, *command, expected=0):
        """Runs a command in the person's session and returns what it prints."""
        return self.start(person, *command).wait(expected)

    def wait_for_end(self, patience=PATIENCE_SECONDS):
        """Waits until the guest has been switched off. Returns each card's accesses."""
        try:
            code = self.process.wait(timeout=patience)
        except subprocess.TimeoutExpired:
            raise Failure("The guest was not switched off.") from None
        self.reader.join()
        said = "".join(self.said)
        if code != 0:
            raise Failure(f"The guest ended with code {code}:\n{said}")
        return re.findall(r"^Card \d+: (.*)$", said, re.MULTILINE)
