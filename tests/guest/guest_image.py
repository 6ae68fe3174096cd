"""What guest computers boot beside the kernel: a small first file system, and a Debian with a desktop's services.

The Debian is kept in build/guest and made again only if what it is made from changes.
"""

import hashlib
import os
import pathlib
import re
import shutil
import subprocess
import tempfile

from guest_kernel import CACHE, ROOT

INIT = pathlib.Path(__file__).with_name("init")

MODULES = ("virtio_pci", "virtio_blk", "virtio_console", "9pnet_virtio", "9p", "crc32c_generic", "ext4",
           "overlay")
PACKAGES = (
    "systemd", "systemd-sysv", "udev", "dbus", "libpam-systemd", "polkitd", "procps",
    "libqt6widgets6", "libxcb1", "libwayland-client0", "libsm6", "pax",
    "xvfb", "xauth", "openbox", "xdotool", "x11-xserver-utils", "imagemagick", "fonts-dejavu-core",
    "at-spi2-core", "python3", "python3-gi", "python3-xlib", "gir1.2-atspi-2.0",
)
# The people at the computer, with their passwords. The first one's windows are shown.
PEOPLE = {"anna": "Anna's word", "bernd": "Bernd's word"}
ROOTS_PASSWORD = "the administrator's word"

# A guest's clock is the host's, nobody updates it, and nobody sits at its terminals.
IDLE_UNITS = ("systemd-timesyncd.service", "apt-daily.timer", "apt-daily-upgrade.timer", "dpkg-db-backup.timer",
              "e2scrub_all.timer", "e2scrub_reap.service", "fstrim.timer", "getty@tty1.service", "getty.target",
              "systemd-networkd.service", "systemd-networkd.socket", "systemd-firstboot.service")


def in_loading_order(files):
    """The files of MODULES and of all that they need, each behind what it needs."""
    order = []

    def add(name):
        file = files.get(name.replace("-", "_"))
        if file is None or file in order:  # a part of the kernel itself, or there already
            return
        needed = re.search(rb"\0depends=([^\0]*)\0", file.read_bytes())
        for other in filter(None, needed[1].decode().split(",") if needed else ()):
            add(other)
        order.append(file)

    for module in MODULES:
        add(module)
    return order


def first_file_system(modules):
    """The archive that the kernel unpacks into memory and starts from."""
    archive = CACHE / "first-files.cpio"
    with tempfile.TemporaryDirectory(dir=CACHE) as name:
        work = pathlib.Path(name)
        for folder in ("bin", "modules", "proc", "sys", "dev", "debian", "programs", "written", "root"):
            (work / folder).mkdir()
        shutil.copy("/usr/bin/busybox", work / "bin")
        shutil.copy(INIT, work)
        order = in_loading_order({file.stem.replace("-", "_"): file for file in modules.rglob("*.ko")})
        for module in order:
            shutil.copy(module, work / "modules")
        (work / "modules/order").write_text("".join(f"{module.name}\n" for module in order))
        with open(archive, "wb") as output:
            listed = "\n".join(str(path.relative_to(work)) for path in sorted(work.rglob("*")))
            subprocess.run(["cpio", "--quiet", "--create", "--format=newc", "--owner=0:0"], input=listed.encode(),
                           cwd=work, stdout=output, check=True)
    return archive


def debian():
    """The disk with the Debian that the guest computers run."""
    users = "".join(f"useradd --create-home --shell /bin/bash {name}\n" for name in PEOPLE)
    passwords = "".join(f"{name}:{word}\n" for name, word in {**PEOPLE, "root": ROOTS_PASSWORD}.items())
    setup = users + f"chpasswd <<'END'\n{passwords}END\necho guest >/etc/hostname\n" + "".join(
        f"ln -sf /dev/null /etc/systemd/system/{unit}\n" for unit in IDLE_UNITS)
    key = hashlib.sha256(repr((PACKAGES, setup)).encode()).hexdigest()[:16]
    disk = CACHE / f"debian-{key}.img"
    if not disk.exists():
        with tempfile.TemporaryDirectory(dir=CACHE) as name:
            work = pathlib.Path(name)
            work.chmod(0o755)
            (work / "setup").write_text(setup)
            # What is mounted in the tree is seen by this process alone and ends with it, so that nothing is removed
            # through it.
            subprocess.run(
                ["unshare", "--mount", "mmdebstrap", "--quiet", "--variant=minbase", f"--include={','.join(PACKAGES)}",
                 *(f"--dpkgopt=path-exclude=/usr/share/{folder}/*" for folder in ("man", "doc", "locale")),
                 f"--customize-hook=chroot \"$1\" sh -e <{work}/setup", "bookworm", work / "tree"], check=True)
            subprocess.run(["mke2fs", "-q", "-t", "ext4", "-O", "^has_journal", "-d", work / "tree", work / "disk", "1G"],
                           check=True)
            (work / "disk").rename(disk)
        for other in set(CACHE.glob("debian-*.img")) - {disk}:
            other.unlink()
    return disk


def installed_programs():
    """The folder with the built programs as an installed system has them."""
    folder = CACHE / "programs"
    shutil.rmtree(folder, ignore_errors=True)
    subprocess.run(["cmake", "--install", ROOT / "build/release", "--prefix", "/usr"], check=True,
                   stdout=subprocess.DEVNULL, env={**os.environ, "DESTDIR": str(folder)})
    # These were made for the prefix with which the build was configured.
    for service in folder.rglob("*.service"):
        service.write_text(service.read_text().replace("/usr/local/", "/usr/"))
    return folder
