"""The kernel that guest computers boot: Debian's own, downloaded and unpacked, but not installed."""

import lzma
import pathlib
import re
import subprocess
import tempfile

ROOT = pathlib.Path(__file__).resolve().parents[2]
CACHE = ROOT / "build/guest"


def kernel():
    """The kernel, not compressed, and the folder of its modules."""
    name = re.search(r"Depends: (linux-image-\S+)", subprocess.run(
        ["apt-cache", "depends", "linux-image-amd64"], check=True, capture_output=True, text=True).stdout)[1]
    folder = CACHE / name
    if not folder.exists():
        CACHE.mkdir(parents=True, exist_ok=True)
        with tempfile.TemporaryDirectory(dir=CACHE) as work:
            subprocess.run(["apt-get", "download", "-qq", name], cwd=work, check=True, stderr=subprocess.DEVNULL)
            (package,) = pathlib.Path(work).glob("*.deb")
            subprocess.run(["dpkg-deb", "--extract", package, f"{work}/unpacked"], check=True)
            pathlib.Path(work, "unpacked").rename(folder)
    image = folder / "boot/vmlinux"
    if not image.exists():
        # A guest without hardware help takes longer to unpack it than to boot it.
        (packed,) = (path.read_bytes() for path in folder.glob("boot/vmlinuz-*"))
        image.write_bytes(lzma.LZMADecompressor(lzma.FORMAT_XZ).decompress(packed[packed.index(b"\xfd7zXZ\0"):]))
    (modules,) = folder.glob("lib/modules/*")
    return image, modules
