"""What guest computers boot beside the kernel: a small first file system, and a Debian with the updater's packages.

The Debian is kept in build/guest and made again only if what it is made from changes.
"""

import hashlib
import pathlib
import re
import shutil
import subprocess
import tempfile

from guest_kernel import CACHE, ROOT

INIT = pathlib.Path(__file__).with_name("init")

MODULES = ("virtio_pci", "virtio_blk", "virtio_console", "9pnet_virtio", "9p", "crc32c_generic", "ext4",
           "overlay")
OUR_PACKAGES = ROOT / "build/packages"
# The computer, its display, and what works there. What the updater needs, its own packages must bring.
OTHER_PACKAGES = (
    "systemd", "systemd-sysv", "udev", "procps",
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
    """The files of MODULES and of all that they need, each after what it needs."""
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


def cached(file, make):
    """The file in the cache. If it is not there, make(path) makes it, and older ones like it are removed."""
    if not file.exists():
        with tempfile.TemporaryDirectory(dir=CACHE) as name:
            folder = pathlib.Path(name)
            folder.chmod(0o755)  # the tree in it has its own users
            make(folder / "new")
            (folder / "new").rename(file)
        for other in set(CACHE.glob(f"{file.name.split('-')[0]}-*{file.suffix}")) - {file}:
            other.unlink()
    return file


def bare_debian(needed):
    """The archive of a Debian that has the other packages and what ours need, but not ours."""
    users = "".join(f"useradd --create-home --shell /bin/bash {name}\n" for name in PEOPLE)
    passwords = "".join(f"{name}:{word}\n" for name, word in {**PEOPLE, "root": ROOTS_PASSWORD}.items())
    setup = "".join((f"apt-get satisfy --yes --no-install-recommends '{needed}' >/dev/null\n", users,
                     f"chpasswd <<'END'\n{passwords}END\n", "echo guest >/etc/hostname\n",
                     *(f"ln -sf /dev/null /etc/systemd/system/{unit}\n" for unit in IDLE_UNITS)))

    def make(archive):
        script = archive.with_name("setup")
        script.write_text(setup)
        # What is mounted in the tree is seen by this process alone and ends with it, so that nothing is removed
        # through it.
        subprocess.run(
            ["unshare", "--mount", "mmdebstrap", "--quiet", "--variant=minbase", "--format=tar",
             f"--include={','.join(OTHER_PACKAGES)}",
             *(f"--dpkgopt=path-exclude=/usr/share/{folder}/*" for folder in ("man", "doc", "locale")),
             f"--customize-hook=chroot \"$1\" sh -e <{script}", "bookworm", archive], check=True)

    key = hashlib.sha256(repr((OTHER_PACKAGES, setup)).encode()).hexdigest()[:16]
    return cached(CACHE / f"bare-{key}.tar", make)


def debian():
    """The disk with the Debian that the guest computers run, with the packages that scripts/package made."""
    packages = sorted(OUR_PACKAGES.glob("*.deb"))
    if not packages:
        raise FileNotFoundError(f"There are no packages in {OUR_PACKAGES}. scripts/package makes them.")
    needed = ", ".join(subprocess.run(["dpkg-deb", "--field", package, "Depends"], check=True, capture_output=True,
                                      text=True).stdout.strip() for package in packages)
    archive = bare_debian(needed)

    def make(disk):
        tree = disk.with_name("tree")
        tree.mkdir()
        subprocess.run(["tar", "--extract", "--numeric-owner", "--file", archive, "--directory", tree], check=True)
        inside = tree / "tmp/packages"
        shutil.copytree(OUR_PACKAGES, inside)
        # There is nothing that apt could download: a dependency that is not there is an error.
        subprocess.run(["chroot", tree, "env", "DEBIAN_FRONTEND=noninteractive", "apt-get", "install", "--yes",
                        "--no-install-recommends", "--option=Dpkg::Use-Pty=false",
                        *(f"/tmp/packages/{package.name}" for package in packages)],
                       check=True, stdout=subprocess.DEVNULL)
        shutil.rmtree(inside)
        subprocess.run(["mke2fs", "-q", "-t", "ext4", "-O", "^has_journal", "-d", tree, disk, "1G"], check=True,
                       stdout=subprocess.DEVNULL)

    content = "".join(hashlib.sha256(package.read_bytes()).hexdigest() for package in packages)
    key = hashlib.sha256((archive.name + content).encode()).hexdigest()[:16]
    return cached(CACHE / f"debian-{key}.img", make)
