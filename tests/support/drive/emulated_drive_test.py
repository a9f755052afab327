"""The emulated drive refuses what a drive refuses: sequences of MMC commands, sent as programs do.

The tests run in a process of their own on which the library is preloaded.
"""
import ctypes
import errno
import fcntl
import os
import shutil
import signal
import stat
import struct
import subprocess
import sys
import tempfile
import time
import unittest
from pathlib import Path

sys.path.insert(0, str(Path(__file__).resolve().parent.parent))
from emulated_drive import SECTOR, EmulatedDrives  # noqa: E402

LIBRARY = None  # set by main
SG_IO = 0x2285
CDROM_DRIVE_STATUS, CDROMEJECT, BLKGETSIZE64 = 0x5326, 0x5309, 0x80081272
TO_DRIVE, FROM_DRIVE, NO_DATA = -2, -3, -1

OK, GONE = "ok", os.strerror(errno.ENODEV)
NO_MEDIUM, UNKNOWN, BAD_ADDRESS, NOT_NEXT = "2/3A/00", "5/20/00", "5/21/00", "5/21/02"
BAD_FIELD, BAD_PARAMETER, SEQUENCE, MEDIUM = "5/24/00", "5/26/00", "5/2C/00", "5/30/00"
UNWRITABLE, UNFORMATTABLE, LOCKED = "5/30/05", "5/30/06", "5/53/02"
WRONG_MODE, INCOMPLETE = "5/64/00", "5/72/03"


class Request(ctypes.Structure):
    _fields_ = [("interface", ctypes.c_int), ("direction", ctypes.c_int),
                ("command_bytes", ctypes.c_ubyte), ("most_sense_bytes", ctypes.c_ubyte),
                ("vectors", ctypes.c_ushort), ("data_bytes", ctypes.c_uint),
                ("data", ctypes.c_void_p), ("command", ctypes.c_void_p),
                ("sense", ctypes.c_void_p), ("timeout", ctypes.c_uint), ("flags", ctypes.c_uint),
                ("pack_id", ctypes.c_int), ("user", ctypes.c_void_p), ("status", ctypes.c_ubyte),
                ("masked_status", ctypes.c_ubyte), ("message_status", ctypes.c_ubyte),
                ("sense_bytes", ctypes.c_ubyte), ("host_status", ctypes.c_ushort),
                ("driver_status", ctypes.c_ushort), ("residual", ctypes.c_int),
                ("duration", ctypes.c_uint), ("info", ctypes.c_uint)]


class Host:
    """Sends commands to a drive; each gives "ok" or its sense, and leaves the answer in data."""

    def __init__(self, device, flags=os.O_RDWR | os.O_EXCL):
        self.descriptor = os.open(device, flags | os.O_NONBLOCK)
        self.data = b""

    def close(self):
        os.close(self.descriptor)

    def send(self, command, sent=None, answer_bytes=0):
        command = ctypes.create_string_buffer(bytes(command), len(command))
        size = len(sent) if sent is not None else answer_bytes
        data = ctypes.create_string_buffer(sent if sent is not None else bytes(size), max(size, 1))
        sense = ctypes.create_string_buffer(32)
        direction = TO_DRIVE if sent is not None else FROM_DRIVE if size else NO_DATA
        request = Request(interface=ord("S"), direction=direction, command_bytes=len(command),
                          most_sense_bytes=32, data_bytes=size, data=ctypes.addressof(data),
                          command=ctypes.addressof(command), sense=ctypes.addressof(sense),
                          timeout=10000)
        try:
            fcntl.ioctl(self.descriptor, SG_IO, request)
        except OSError as error:
            return os.strerror(error.errno)
        self.data = data.raw[:size - request.residual]
        if not request.sense_bytes:
            return OK
        return f"{sense.raw[2]:X}/{sense.raw[12]:02X}/{sense.raw[13]:02X}"

    def ready(self):
        return self.send(bytes(6))

    def write(self, sector, count=16, fill=b"w"):
        return self.send(struct.pack(">BBiBHB", 0x2A, 0, sector, 0, count, 0),
                         fill * (count * SECTOR))

    def read(self, sector, count=1):
        return self.send(struct.pack(">BBiBHB", 0x28, 0, sector, 0, count, 0),
                         answer_bytes=count * SECTOR)

    def write_parameters(self, write_type, test=False, multi=False, block_type=8):
        page = bytearray(52)
        page[:5] = 5, 50, write_type | (0x10 if test else 0), 4 | (0xC0 if multi else 0), block_type
        return self.send(struct.pack(">BBBBBBBHB", 0x55, 0x10, 0, 0, 0, 0, 0, 60, 0),
                         bytes(8) + bytes(page))

    def cue_sheet(self, lead_out, first=-150):
        cues = ((0, 0, 0x41, -150), (1, 0, 0x10, first), (1, 1, 0x10, first + 150),
                (0xAA, 1, 0x01, lead_out))
        sheet = b"".join(bytes((0x41, track, index, form, 0, (at + 150) // 4500,
                                (at + 150) // 75 % 60, (at + 150) % 75))
                         for track, index, form, at in cues)
        return self.send(b"\x5d" + bytes(5) + struct.pack(">BHB", 0, len(sheet), 0), sheet)

    def synchronize(self):
        return self.send(bytes((0x35,)) + bytes(9))

    def close_track(self, number=1):
        return self.send(struct.pack(">BBBBHIB", 0x5B, 0, 1, 0, number, 0, 0)[:10])

    def close_session(self, function=2):
        return self.send(bytes((0x5B, 0, function)) + bytes(7))

    def reserve(self, sectors):
        return self.send(struct.pack(">BIIB", 0x53, 0, sectors, 0))

    def blank(self, minimal=True):
        return self.send(bytes((0xA1, 1 if minimal else 0)) + bytes(10))

    def format(self, format_type):
        return self.send(bytes((0x04, 0x11, 0, 0, 0, 0)),
                         bytes((0, 0x82, 0, 8)) + bytes(4) + bytes((format_type << 2, 0, 0, 0)))

    def prevent(self, prevents=True):
        return self.send(bytes((0x1E, 0, 0, 0, prevents, 0)))

    def eject(self):
        return self.send(bytes((0x1B, 0, 0, 0, 2, 0)))

    def load(self):
        return self.send(bytes((0x1B, 0, 0, 0, 3, 0)))

    def disc_information(self):
        """Disc status (0 empty, 1 incomplete, 2 complete) and state of the last session."""
        assert self.send(struct.pack(">B6xHx", 0x51, 34), answer_bytes=34) == OK
        return self.data[2] & 3, self.data[2] >> 2 & 3

    def track_information(self, number):
        """Damaged; next writable sector, where there is one; free sectors."""
        assert self.send(struct.pack(">BBIBHB", 0x52, 1, number, 0, 36, 0), answer_bytes=36) == OK
        next_sector, free = struct.unpack(">iI", self.data[12:20])
        return bool(self.data[5] & 0x20), next_sector if self.data[7] & 1 else None, free

    def capacity(self):
        assert self.send(bytes((0x25,)) + bytes(9), answer_bytes=8) == OK
        return struct.unpack(">I", self.data[:4])[0] + 1

    def table_of_contents(self):
        return self.send(struct.pack(">BBBB3xHB", 0x43, 0, 0, 0, 804, 0), answer_bytes=804)


class DriveTest(unittest.TestCase):
    def setUp(self):
        self.drives = EmulatedDrives(os.environ["EMULATED_DRIVES"], LIBRARY)
        self.addCleanup(shutil.rmtree, self.drives.directory)
        self.drive = self.drives.add()

    def host(self, *insert, flags=os.O_RDWR | os.O_EXCL, faults=(), **lines):
        """A host that has met the new disc."""
        if insert:
            self.drive.insert(*insert, **{"capacity": 2000, **lines})
        self.drive.faults(*faults)
        host = Host(self.drive.device, flags)
        self.addCleanup(self.forget, host)
        host.ready()
        return host

    @staticmethod
    def forget(host):
        try:
            host.close()
        except OSError:
            pass

    def expect(self, host, *steps):
        for name, *arguments, expected in steps:
            with self.subTest(step=f"{name} {arguments}"):
                self.assertEqual(getattr(host, name)(*arguments), expected)


    def test_only_what_the_disc_takes_is_recorded(self):
        cases = (
            ("a track at once goes on where it stopped", ("cd-r",),
             ("write_parameters", 1, OK), ("write", 16, NOT_NEXT), ("write", 0, OK),
             ("write", 0, NOT_NEXT), ("write", 17, NOT_NEXT), ("write", 16, OK)),
            ("a disc has an end", ("cd-r",), ("write_parameters", 1, OK), ("write", 0, 30, OK),
             ("write", 30, 1971, BAD_ADDRESS), ("write", 30, 1970, OK)),
            ("a session at once needs a cue sheet", ("cd-r",), ("cue_sheet", 320, SEQUENCE),
             ("write_parameters", 2, OK), ("write", -150, 150, SEQUENCE), ("cue_sheet", 320, OK),
             ("write", 0, NOT_NEXT), ("write", -150, 150, OK), ("write", 0, 321, BAD_ADDRESS),
             ("write", 0, 320, OK)),
            ("a cue sheet beyond the disc", ("cd-r",), ("write_parameters", 2, OK),
             ("cue_sheet", 2001, BAD_PARAMETER), ("cue_sheet", 320, 0, BAD_PARAMETER)),
            ("write parameters of another disc", ("cd-r",), ("write_parameters", 0, BAD_PARAMETER),
             ("write_parameters", 1, False, False, 0, BAD_PARAMETER)),
            ("a DVD at once needs a reservation", ("dvd-r",),
             ("write_parameters", 1, BAD_PARAMETER), ("write_parameters", 2, OK),
             ("write", 0, SEQUENCE), ("reserve", 2001, BAD_FIELD), ("reserve", 30, OK),
             ("write", 0, 33, BAD_ADDRESS), ("write", 0, 32, OK)),
            ("incremental recording, but not after a quick erasure", ("dvd-rw", "closed"),
             ("blank", OK), ("write_parameters", 0, OK), ("write", 0, WRONG_MODE),
             ("blank", False, OK), ("write", 0, OK)),
            ("a DVD+R takes the next sector only", ("dvd+r",), ("write", 32, NOT_NEXT),
             ("write", 0, OK), ("write", 32, NOT_NEXT)),
            ("a new DVD+RW is not formatted", ("dvd+rw", "unformatted"), ("write", 0, UNWRITABLE),
             ("format", 0x00, BAD_PARAMETER), ("format", 0x26, OK), ("write", 160, OK),
             ("write", 1999, 2, BAD_ADDRESS)),
            ("nor is a BD-RE", ("bd-re", "unformatted"), ("write", 0, UNWRITABLE),
             ("format", 0x30, OK), ("write", 32, OK)),
            ("what is closed stays closed", ("dvd+r", "closed"), ("write", 0, UNWRITABLE),
             ("reserve", 32, UNWRITABLE)),
            ("what is pressed stays as it is", ("dvd-rom",), ("write", 0, UNWRITABLE),
             ("close_session", UNWRITABLE)),
            ("a session is closed after its track, both after the cache", ("dvd+r",),
             ("close_session", SEQUENCE), ("write", 0, OK), ("close_session", SEQUENCE),
             ("synchronize", OK), ("close_session", INCOMPLETE), ("close_track", 2, BAD_FIELD),
             ("close_track", OK), ("close_session", 6, OK), ("write", 16, UNWRITABLE)),
            ("only what can be erased is", ("cd-r", "closed"), ("blank", MEDIUM),
             ("format", 0x00, UNFORMATTABLE)),
            ("a DVD+RW is not erased either", ("dvd+rw", "formatted"), ("blank", MEDIUM)),
            ("a track left in the middle stands in the way", ("cd-r", "damaged"),
             ("write_parameters", 1, OK), ("write", 0, INCOMPLETE)),
        )
        for what, insert, *steps in cases:
            with self.subTest(what):
                host = self.host(*insert)
                self.expect(host, *steps)
                host.close()

    def test_discs_read_as_what_was_done_to_them(self):
        at_once = (("write_parameters", 2, OK), ("cue_sheet", 320, OK),
                   ("write", -150, 150, OK), ("write", 0, 320, OK))
        track = (("write_parameters", 1, OK), ("write", 0, 320, OK), ("synchronize", OK))
        dvd = (("write_parameters", 0, False, True, OK), ("write", 0, 20, OK), ("synchronize", OK),
               ("close_track", OK))
        cases = (
            # state, disc status, last session, readable sectors
            ("blank", ("cd-r",), (), ("blank", 0, 0, 1)),
            ("at once, lead-out not yet written", ("cd-r",), at_once, ("appendable", 1, 1, 1)),
            ("at once", ("cd-r",), at_once + (("synchronize", OK),), ("closed", 2, 3, 320)),
            ("at once, broken off", ("cd-r",),
             at_once[:-1] + (("write", 0, 32, OK), ("synchronize", OK)), ("appendable", 1, 1, 1)),
            # A track at once ends in two sectors that cannot be read.
            ("track at once, session open", ("cd-r",), track, ("appendable", 1, 1, 1)),
            ("track at once", ("cd-r",), track + (("close_session", OK),), ("closed", 2, 3, 322)),
            ("DVD, more to come", ("dvd-r",), dvd + (("close_session", OK),),
             ("appendable", 1, 0, 32)),
            ("DVD at once", ("dvd-r",), (("write_parameters", 2, OK), ("reserve", 30, OK),
                                         ("write", 0, 30, OK), ("synchronize", OK)),
             ("closed", 2, 3, 32)),
            ("formatted", ("dvd+rw", "unformatted"), (("format", 0x26, OK),),
             ("formatted", 2, 3, 2000)),
            ("erased", ("cd-rw", "closed"), (("blank", OK),), ("blank", 0, 0, 1)),
            ("tested only", ("cd-r",), (("write_parameters", 1, True, OK),) + track[1:] +
             (("close_session", OK),), ("blank", 0, 0, 1)),
        )
        for what, insert, steps, expected in cases:
            with self.subTest(what):
                host = self.host(*insert)
                self.expect(host, *steps)
                self.assertEqual((self.drive.disc()["state"], *host.disc_information(),
                                  host.capacity()), expected)
                # Only a session that is closed has a table of contents.
                self.assertEqual(host.table_of_contents(), OK if expected[3] > 1 else BAD_FIELD)
                host.close()

    def test_what_was_written_is_read_and_nothing_else(self):
        host = self.host("cd-r")
        self.expect(host, ("write_parameters", 1, OK), ("write", 0, 20, b"a", OK), ("read", 19, OK),
                    ("read", 20, BAD_ADDRESS), ("synchronize", OK), ("close_session", OK),
                    ("read", 18, 2, OK))
        self.assertEqual(host.data, b"a" * 2 * SECTOR)
        self.expect(host, ("read", 19, 2, WRONG_MODE), ("read", 22, BAD_ADDRESS))
        self.assertEqual(self.drive.contents(), b"a" * 20 * SECTOR)
        self.assertEqual(os.pread(host.descriptor, 2 * SECTOR, 19 * SECTOR)[:SECTOR], b"a" * SECTOR)
        size = bytearray(8)
        fcntl.ioctl(host.descriptor, BLKGETSIZE64, size)
        self.assertEqual(struct.unpack("<Q", size)[0], 22 * SECTOR)

    def test_a_test_run_checks_all_and_writes_nothing(self):
        host = self.host("cd-rw", "appendable", used=300, capacity=100000)
        self.expect(host, ("write_parameters", 1, True, True, OK), ("write", 0, NOT_NEXT),
                    ("write", 11700, OK), ("write", 11700, NOT_NEXT), ("synchronize", OK),
                    ("close_session", OK))
        self.assertEqual((self.drive.contents(), self.drive.disc()["tracks"]),
                         (b"", [["1", "0", "300", "0", "0", "closed"]]))
        self.expect(host, ("write_parameters", 1, OK), ("write", 11700, OK))
        self.drive = self.drives.add(simulates="no")
        self.expect(self.host("cd-r"), ("write_parameters", 1, True, BAD_PARAMETER))

    def test_a_drive_that_reads_only_knows_no_recording(self):
        self.drive = self.drives.add(kind="reader")
        self.expect(self.host("cd-r", "closed"), ("write_parameters", 1, BAD_PARAMETER),
                    ("write", 0, UNKNOWN), ("blank", UNKNOWN), ("synchronize", UNKNOWN),
                    ("read", 0, OK))

    def test_a_locked_tray_stays_closed_and_a_new_disc_is_told(self):
        host = self.host("cd-r", "closed")
        self.expect(host, ("prevent", OK), ("eject", LOCKED), ("prevent", False, OK), ("eject", OK),
                    ("ready", "2/3A/02"), ("write", 0, "2/3A/02"), ("load", OK),
                    ("ready", "6/28/00"), ("ready", OK))
        self.drive.take_out()
        self.expect(host, ("read", 0, "2/3A/01"))
        self.drive.insert("dvd-r")
        self.expect(host, ("ready", "6/28/00"), ("ready", OK))

    def test_faults_strike_where_they_are_planned(self):
        cases = (
            (("write = 20 3/0C/00",), (("write", 0, OK), ("write", 16, "3/0C/00"),
                                       ("write", 20, "3/0C/00"))),
            (("write = 20 3/0C/00 once",), (("write", 0, OK), ("write", 16, "3/0C/00"),
                                            ("write", 20, OK))),
            (("pulled = 20",), (("write", 0, OK), ("write", 16, NO_MEDIUM), ("ready", NO_MEDIUM))),
            (("unplugged = 20",), (("write", 0, OK), ("write", 16, GONE), ("ready", GONE))),
            (("sync = 3/0C/00 once",), (("write", 0, OK), ("synchronize", "3/0C/00"),
                                        ("synchronize", OK))),
            (("WRITE 10 = 4/44/00 after 2",), (("write", 0, OK), ("write", 16, OK),
                                               ("write", 32, "4/44/00"), ("write", 32, "4/44/00"))),
            (("WRITE 10 = 4/44/00 once after 1",), (("write", 0, OK), ("write", 16, "4/44/00"),
                                                    ("write", 16, OK))),
            (("eject = 4/53/00",), (("load", OK), ("eject", "4/53/00"))),
            (("read = 3 3/11/00",), (("write", 0, OK), ("read", 0, 3, OK),
                                     ("read", 2, 2, "3/11/00"))),
            (("becoming_ready = 3",), (("write", 0, "2/04/01"), ("ready", "2/04/01"),
                                       ("ready", "2/04/01"), ("ready", "2/04/01"), ("ready", OK),
                                       ("write", 0, OK))),
        )
        for faults, steps in cases:
            with self.subTest(faults):
                host = self.host("dvd+r", faults=faults)
                self.expect(host, *steps)
                host.close()

    def test_one_user_at_a_time(self):
        host = self.host("cd-r")
        with self.assertRaises(OSError) as refused:
            Host(self.drive.device)
        self.assertEqual(refused.exception.errno, errno.EBUSY)
        opening = "import os, sys\nos.open(sys.argv[1], os.O_RDWR | os.O_EXCL)"
        other = subprocess.run([sys.executable, "-c", opening, self.drive.device],
                               stderr=subprocess.PIPE)
        self.assertIn(b"Errno 16", other.stderr)
        self.assertTrue(self.drive.is_held())
        host.close()
        Host(self.drive.device).close()
        self.assertFalse(self.drive.is_held())
        for fault, expected in (("mounted = yes", errno.EBUSY), ("permission = no", errno.EACCES)):
            self.drive.faults(fault)
            with self.subTest(fault), self.assertRaises(OSError) as refused:
                Host(self.drive.device)
            self.assertEqual(refused.exception.errno, expected)

    def test_a_killed_program_leaves_its_track_in_the_middle(self):
        for media, state, damaged in (("cd-r", "damaged", True), ("dvd-r", "damaged", True),
                                      ("dvd+r", "appendable", False)):
            with self.subTest(media):
                self.host(media).close()
                child = os.fork()
                if child == 0:
                    host = Host(self.drive.device)
                    host.write_parameters(1 if media == "cd-r" else 0)
                    host.write(0)
                    os.kill(os.getpid(), signal.SIGKILL)
                os.waitpid(child, 0)
                self.assertFalse(self.drive.is_idle())
                host = self.host()
                self.assertEqual(self.drive.disc()["state"], state)
                self.assertEqual(host.track_information(1),
                                 (damaged, None if damaged else 16, 0 if damaged else 1984))
                self.assertEqual(host.disc_information(), (1, 1))
                host.close()
                self.assertTrue(self.drive.is_idle())

    def test_the_system_tells_of_the_drive_and_its_mount(self):
        self.drives.mount(self.drive, "/media/disc")
        status = os.stat(self.drive.device)
        self.assertTrue(stat.S_ISBLK(status.st_mode) and os.major(status.st_rdev) == 11)
        self.assertEqual([os.path.exists(f"/dev/sr{n}") for n in (0, 1)], [True, False])
        self.assertIn("sr0", os.listdir("/dev"))
        self.assertEqual(Path("/sys/class/block/sr0/device/model").read_text(), "EMULATED BURNER\n")
        self.assertEqual(Path("/proc/self/mounts").read_text(),
                         "/dev/sr0 /media/disc iso9660 ro,relatime 0 0\n")
        library = ctypes.CDLL(None, use_errno=True)
        self.drive.faults("unmount = no")
        self.assertEqual((library.umount2(b"/media/disc", 0), ctypes.get_errno()),
                         (-1, errno.EBUSY))
        with self.assertRaises(OSError):
            Host(self.drive.device)
        self.drive.faults()
        self.assertEqual(library.umount2(b"/media/disc", 0), 0)
        self.assertEqual(Path("/proc/self/mounts").read_text(), "")
        self.host("cd-r").close()

    def test_what_is_not_waited_for_has_passed(self):
        library = ctypes.CDLL(None)
        before, really_before = library.time(None), time.monotonic()
        library.sleep(600)
        self.assertGreaterEqual(library.time(None) - before, 600)
        self.assertLess(time.monotonic() - really_before, 60)


def main():
    global LIBRARY
    LIBRARY = sys.argv[1]
    if "EMULATED_DRIVES" not in os.environ:
        directory = tempfile.mkdtemp(prefix="emulated-drives-")
        environment = dict(os.environ, LD_PRELOAD=LIBRARY, EMULATED_DRIVES=directory)
        os.execve(sys.executable, [sys.executable, *sys.argv], environment)
    unittest.main(argv=[sys.argv[0], *sys.argv[2:]], verbosity=1)


if __name__ == "__main__":
    main()
