"""A Debian system with nothing but what every one has, to install packages into."""
import os
import shutil
import subprocess
import tempfile
from pathlib import Path

TREE = Path(os.environ.get("QUILLON_BARE_TREE", "/var/cache/quillon-bare"))
# What apt has fetched serves the next run, too.
ARCHIVES = TREE.with_name(TREE.name + "-archives")
# Packages that are only recommended are others' to remove again.
OPTIONS = ('APT::Get::Assume-Yes "true";\nAPT::Keep-Downloaded-Packages "true";\n'
           'APT::Install-Recommends "false";\n')


class NoSystem(Exception):
    """Why such a system cannot be had here."""


def release():
    for line in Path("/etc/os-release").read_text().splitlines():
        if line.startswith("VERSION_CODENAME="):
            return line.split("=")[1].strip('"')
    raise NoSystem("this system does not say which release of Debian it is")


def make_tree():
    """Once; what an interrupted run left is removed, unless something is mounted below it."""
    if (TREE / ".complete").exists():
        return
    if os.geteuid() != 0:
        raise NoSystem("only root can make one")
    begun = TREE.with_name(TREE.name + ".begun")
    if begun.exists():
        subprocess.run(["rm", "-rf", "--one-file-system", begun], check=True)
    # In a namespace of its own, so that its mounts end with it.
    made = subprocess.run(["unshare", "--mount", "debootstrap", "--variant=minbase", release(), begun],
                          capture_output=True, text=True)
    if made.returncode != 0:
        raise NoSystem("debootstrap: " + (made.stdout + made.stderr).strip().splitlines()[-1])
    (begun / ".complete").touch()
    begun.rename(TREE)


class BareSystem:
    """A copy that goes away at the end of a with. Commands run in its directory /media/job."""

    def __init__(self):
        make_tree()
        ARCHIVES.mkdir(exist_ok=True)
        self.place = Path(tempfile.mkdtemp(prefix="quillon-bare-"))
        self.root = self.place / "root"
        subprocess.run(["cp", "-a", "--reflink=auto", TREE, self.root], check=True)
        (self.root / "etc/apt/apt.conf.d/90quillon-test").write_text(OPTIONS)
        shutil.copy("/etc/resolv.conf", self.root / "etc/resolv.conf")
        self.job = self.root / "media/job"
        self.job.mkdir(parents=True)
        self.succeed("apt-get update -qq")

    def __enter__(self):
        return self

    def __exit__(self, *_):
        subprocess.run(["rm", "-rf", "--one-file-system", self.place], check=False)

    def run(self, command, **variables):
        """As root, in a shell of the system."""
        environment = {name: value for name, value in os.environ.items() if name.endswith("_proxy")}
        environment.update(PATH="/usr/sbin:/usr/bin:/sbin:/bin", HOME="/root", LANG="C.UTF-8",
                           DEBIAN_FRONTEND="noninteractive", **variables)
        mounts = (f"mount --bind {ARCHIVES} {self.root}/var/cache/apt/archives && "
                  f"mount -t proc proc {self.root}/proc && "
                  f"exec chroot {self.root} sh -c 'cd /media/job && eval \"$0\"' \"$0\"")
        return subprocess.run(["unshare", "--mount", "sh", "-c", mounts, command], text=True,
                              env=environment, capture_output=True, timeout=900)

    def succeed(self, command, **variables):
        run = self.run(command, **variables)
        if run.returncode != 0:
            raise AssertionError(f"{command}\n{run.returncode}\n{run.stdout}{run.stderr}")
        return run.stdout

    def files(self):
        """All of them, but for what keeping packages leaves behind."""
        kept = ("proc", "var/lib/apt", "var/lib/dpkg", "var/cache", "var/log", "media", "tmp",
                "etc/ld.so.cache")
        found = set()
        for above, directories, names in os.walk(self.root):
            at = Path(above).relative_to(self.root)
            directories[:] = [name for name in directories if str(at / name) not in kept]
            found.update(str(at / name) for name in [*directories, *names]
                         if str(at / name) not in kept)
        return found
