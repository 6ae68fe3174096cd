"""A guest computer with Debian's kernel and a few files in memory, and the cards of a simulated machine on its bus."""

import re
import shutil
import subprocess
import sys

from guest_kernel import ROOT, kernel

sys.path.insert(0, str(ROOT / "scripts"))
from virtual_desktop import Failure, check  # noqa: E402

BUILD = ROOT / "build/release"
CARDSIM = BUILD / "bin/cardsim"
TRACED_UPDATE = BUILD / "tests/processors/traced_update"

MODULES = ("drivers/pci/pci-stub.ko", "lib/reed_solomon/reed_solomon.ko", "fs/pstore/ramoops.ko")
PATIENCE_SECONDS = 600

# The first program in the guest. Its last line is how the guest is switched off.
INIT = """#!/bin/busybox sh
/bin/busybox mkdir -p /proc /sys /dev /tmp
/bin/busybox mount -t proc proc /proc
/bin/busybox mount -t sysfs sysfs /sys
/bin/busybox mount -t securityfs securityfs /sys/kernel/security
/bin/busybox mount -t devtmpfs devtmpfs /dev
/bin/busybox --install -s /bin
cards() {
    for device in /sys/bus/pci/devices/*; do
        [ "$(cat $device/vendor)" != 0xfade ] || echo $device
    done
}
decoding() { echo $(($(od -An -tu1 -j4 -N1 $1/config) / 2 % 2)); }
set_config() { printf "$3" | dd of=$1/config bs=4 seek=$(($2 / 4)) conv=notrunc 2>/dev/null; }
probe() { traced_update --rules /rules "$@" 2>&1; echo "exit code $?"; }
. /scenario
poweroff -f
"""


def output_of(*command):
    return subprocess.run([str(word) for word in command], check=True, stdout=subprocess.PIPE, text=True).stdout


def libraries_of(program):
    return re.findall(r"(/\S+) \(0x", output_of("ldd", program))


def write_archive(folder, archive):
    names = "\n".join(str(path.relative_to(folder)) for path in sorted(folder.rglob("*")))
    with open(archive, "wb") as output:
        subprocess.run(["cpio", "--quiet", "--create", "--format=newc", "--owner=0:0", "--dereference"],
                       input=names.encode(), cwd=folder, stdout=output, check=True)


class BareGuest:
    """A guest that has traced_update and, as /image, the image. `folder` is for its files."""

    def __init__(self, folder, image):
        self.folder = folder
        self.kernel, modules = kernel()
        files = folder / "files"
        (files / "bin").mkdir(parents=True)
        for program in ("/bin/busybox", TRACED_UPDATE):
            shutil.copy(program, files / "bin")
        for library in libraries_of(TRACED_UPDATE):
            (files / library[1:]).parent.mkdir(parents=True, exist_ok=True)
            shutil.copy(library, files / library[1:])
        for module in MODULES:
            shutil.copy(modules / "kernel" / module, files)
        shutil.copy(image, files / "image")
        (files / "init").write_text(INIT)
        (files / "init").chmod(0o755)
        write_archive(files, folder / "files.cpio")

    def run(self, machine, scenario, serve=(), kernel_words="", expected=0, rule=""):
        """Switches the guest on with the machine's cards, runs the scenario, a shell script, in it, and returns what it
        printed until it was off. `serve` are options for "cardsim serve", `rule` is what the updater is told of the
        cards' ranges. Fails unless "cardsim serve" exits with the expected code."""
        extra = self.folder / "extra"
        extra.mkdir(exist_ok=True)
        (extra / "scenario").write_text(scenario)
        (extra / "rules").write_text(f'fade:ca4d {rule} simulated "Simulated card"\n')
        write_archive(extra, self.folder / "extra.cpio")
        archive = self.folder / "all.cpio"
        archive.write_bytes((self.folder / "files.cpio").read_bytes() + (self.folder / "extra.cpio").read_bytes())
        command = [
            CARDSIM, "serve", machine, *serve, "--",
            "qemu-system-x86_64", "-machine", "pc", "-accel", "tcg", "-cpu", "max", "-smp", "1", "-m", "256",
            "-nodefaults", "-display", "none", "-no-reboot", "-serial", "stdio",
            "-kernel", self.kernel, "-initrd", archive,
            # Under load the kernel may consider the timer broken.
            "-append", f"console=ttyS0 quiet loglevel=1 no_timer_check panic=1 {kernel_words}"]
        try:
            run = subprocess.run([str(word) for word in command], stdin=subprocess.DEVNULL, stdout=subprocess.PIPE,
                                 stderr=subprocess.STDOUT, text=True, errors="replace", timeout=PATIENCE_SECONDS,
                                 check=False)
        except subprocess.TimeoutExpired as error:
            raise Failure(f"The guest was not switched off.\n{(error.stdout or b'').decode(errors='replace')}") from None
        said = run.stdout.replace("\r", "")
        check(run.returncode == expected, f"The guest ended with {run.returncode} instead of {expected}.", said)
        return said
