"""Drives for optical discs that exist in files only, for programs that a test runs.

    drives = EmulatedDrives(directory, library)       # library: the target emulated_drive
    drive = drives.add()                              # /dev/sr0, a burner without a disc
    drive.insert("cd-r", capacity=2000)
    drive.faults("write = 500 3/0C/00")
    subprocess.run([...], env=drives.environment())
    drive.disc()["state"], drive.contents(), drive.log(), drive.is_idle()

Pauses (usleep; sleep and nanosleep of a second and more) are shortened, and time() counts them as
if they had been waited for, unless EMULATED_DRIVES_TAKE_TIME is set.
The files that stand behind it are described in drive/drive.h, disc.h and faults.h.
"""
import fcntl
import os
import uuid
from pathlib import Path

SECTOR = 2048


class EmulatedDrives:
    def __init__(self, directory, library):
        self.directory = Path(directory)
        self.directory.mkdir(parents=True, exist_ok=True)
        self.library = library
        self.drives = []

    def add(self, **settings):
        """One more drive; settings are lines of drive.txt (kind="reader", simulates="no", ...)."""
        number = len(self.drives)
        self.drives.append(EmulatedDrive(self.directory / f"sr{number}", number, settings))
        return self.drives[-1]

    def environment(self, surroundings=None):
        """What a program's environment must be to see the drives and no others."""
        environment = dict(os.environ if surroundings is None else surroundings)
        # The address sanitizer wants to be the first of all libraries.
        sanitizer = os.environ.get("QUILLON_ASAN_LIB")
        libraries = ([sanitizer] if sanitizer else []) + [str(self.library)]
        environment["LD_PRELOAD"] = ":".join(libraries)
        environment["EMULATED_DRIVES"] = str(self.directory)
        return environment

    def mount(self, drive, path):
        """Lets the disc be mounted there: the drive cannot be had alone until it is unmounted."""
        with (self.directory / "mounts").open("a") as mounts:
            mounts.write(f"{drive.device} {path} iso9660 ro,relatime 0 0\n")


class EmulatedDrive:
    def __init__(self, directory, number, settings):
        self.directory = directory
        self.device = f"/dev/sr{number}"
        directory.mkdir()
        self._write("drive.txt", settings)

    def insert(self, media, state=None, contents=None, **lines):
        """Another disc, in a closed tray. Of one that holds data, contents are its sectors; more
        lines of disc.txt (capacity=2000, used=500) as they are given."""
        self.take_out()
        if contents is not None:
            (self.directory / "disc.bin").write_bytes(contents)
            lines.setdefault("used", (len(contents) + SECTOR - 1) // SECTOR)
        if state is not None:
            lines["state"] = state
        self._write("disc.txt", {"media": media, "serial": uuid.uuid4().hex, **lines})
        self._set_state("tray", "closed")

    def take_out(self):
        for name in ("disc.txt", "disc.bin", "simulated.txt"):
            (self.directory / name).unlink(missing_ok=True)

    def open_tray(self):
        self._set_state("tray", "open")

    def faults(self, *lines):
        """What goes wrong from now on, in place of what did (drive/faults.h); none: nothing."""
        (self.directory / "faults.txt").write_text("".join(line + "\n" for line in lines))
        state = {name: value for name, value in self.state().items() if not name.startswith("met ")}
        for memory in ("polls", "busy polls", "unmounted", "unplugged"):
            state.pop(memory, None)
        self._write("state.txt", state)

    def disc(self):
        """The lines of disc.txt, the tracks as a list of their words."""
        lines = self._read("disc.txt")
        lines["tracks"] = [value.split() for name, value in self._lines("disc.txt")
                           if name == "track"]
        return lines

    def contents(self, sectors=None):
        """What has been written to the disc, or its first sectors filled up with zeros."""
        path = self.directory / "disc.bin"
        content = path.read_bytes() if path.exists() else b""
        if sectors is None:
            return content
        return content[:sectors * SECTOR].ljust(sectors * SECTOR, b"\0")

    def state(self):
        """What the drive remembers: tray, locked, writing, write parameters ..."""
        return self._read("state.txt")

    def is_tray_open(self):
        return self.state().get("tray", self._read("drive.txt").get("tray")) == "open"

    def log(self, *names):
        """The commands as (name with parameters, result), only those that begin with a name."""
        path = self.directory / "commands.log"
        lines = path.read_text().splitlines() if path.exists() else []
        commands = []
        for line in lines:
            command, _, result = line.partition(" ")[2].partition(" -> ")
            if not names or command.startswith(names):
                commands.append((command, result))
        return commands

    def clear_log(self):
        (self.directory / "commands.log").unlink(missing_ok=True)

    def opened(self):
        """How often the device has been opened for one user alone."""
        return self.log("OPEN excl").count(("OPEN excl", "ok"))

    def is_held(self):
        """Whether a program has the device open for itself alone. (One that opens it in just this
        moment finds it busy.)"""
        with (self.directory / "device").open("ab") as device:
            try:
                fcntl.flock(device, fcntl.LOCK_EX | fcntl.LOCK_NB)
            except BlockingIOError:
                return True
        return False

    def is_idle(self):
        """Whether the drive was left as it should be: held by nobody, not locked, nothing begun."""
        state = self.state()
        begun = ("writing", "simulating", "reservation", "cue sheet")
        return (not self.is_held() and state.get("locked") != "yes" and
                not any(name in state for name in begun))

    def is_synchronized(self):
        """Whether the drive has been told to bring to the disc all that it was given."""
        return "unsynchronized" not in self.state()

    def _lines(self, name):
        path = self.directory / name
        text = path.read_text() if path.exists() else ""
        pairs = (line.partition("=") for line in text.splitlines() if "=" in line)
        return [(pair[0].strip(), pair[2].strip()) for pair in pairs]

    def _read(self, name):
        return dict(self._lines(name))

    def _write(self, name, lines):
        (self.directory / name).write_text("".join(f"{n} = {v}\n" for n, v in lines.items()))

    def _set_state(self, name, value):
        self._write("state.txt", {**self.state(), name: value})
