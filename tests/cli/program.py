"""Runs the program in a fresh folder, on archives that the test makes."""

import os
import pty
import shutil
import struct
import subprocess
import tempfile
import unittest
import zipfile

SAMPLE = os.path.join(os.environ["OLMKIT_SOURCE_DIR"], "examples", "sample.olm")
PROGRAM = os.path.join(os.environ["OLMKIT_BINARY_DIR"], "bin", "olmkit")

# The path of an archive that the mail program exported; empty where there is none. A path that is
# given and wrong fails the tests that need it.
REAL_ARCHIVE = os.environ.get("OLMKIT_REAL_ARCHIVE", "")
needs_real_archive = unittest.skipUnless(REAL_ARCHIVE, "OLMKIT_REAL_ARCHIVE is not set")


def note(title):
    return f"<note><OPFNoteCopyTitle>{title}</OPFNoteCopyTitle></note>"


def notes(*titles):
    return "<notes>" + "".join(note(title) for title in titles) + "</notes>"


class ProgramTest(unittest.TestCase):
    """A test with a folder of its own, which is removed afterwards."""

    def setUp(self):
        self.folder = tempfile.mkdtemp(prefix="olmkit-test-")
        self.addCleanup(shutil.rmtree, self.folder, ignore_errors=True)
        self.maxDiff = None

    def path(self, *names):
        return os.path.join(self.folder, *names)

    def write(self, name, contents):
        with open(self.path(name), "wb") as file:
            file.write(contents)
        return self.path(name)

    def archive(self, *entries, name="mail.olm", method=zipfile.ZIP_DEFLATED):
        """Writes a ZIP of (name, text or bytes), in this order, and returns its path."""
        path = self.path(name)
        with zipfile.ZipFile(path, "w", method) as archive:
            for entry, contents in entries:
                archive.writestr(entry, contents)
        return path

    def bytes_of(self, path):
        with open(path, "rb") as file:
            return file.read()

    def run_program(self, *arguments, **options):
        """Returns the finished process, with stdout and stderr as text."""
        options.setdefault("stdout", subprocess.PIPE)
        done = subprocess.run([PROGRAM, *arguments], stderr=subprocess.PIPE, timeout=120,
                              cwd=self.folder, **options)
        done.stderr = done.stderr.decode("utf-8")
        if done.stdout is not None:
            done.stdout = done.stdout.decode("utf-8")
        for line in done.stderr.splitlines():
            self.assertTrue(line.startswith("olmkit: "), line)
        return done

    def on_terminal(self, columns, *arguments, **environment):
        """Returns what the program writes to a terminal of this width."""
        main, side = pty.openpty()
        subprocess.run(["stty", "cols", str(columns), "rows", "24", "-opost"], stdin=side,
                       check=True)
        variables = {name: value for name, value in os.environ.items() if name != "NO_COLOR"}
        with subprocess.Popen([PROGRAM, *arguments], stdout=side,
                              env={**variables, **environment}) as process:
            os.close(side)
            output = b""
            while True:
                try:
                    part = os.read(main, 65536)
                except OSError:
                    break
                if not part:
                    break
                output += part
        os.close(main)
        self.assertEqual(process.returncode, 0)
        return output.decode("utf-8")

    def small_disk(self):
        """Mounts a file system of 64 KiB at the folder "disk", or skips the test."""
        os.mkdir(self.path("disk"))
        mount = subprocess.run(["mount", "-t", "tmpfs", "-o", "size=64k", "tmpfs",
                                self.path("disk")], stderr=subprocess.DEVNULL, check=False)
        if mount.returncode != 0:
            self.skipTest("file systems can't be mounted here")
        self.addCleanup(subprocess.run, ["umount", self.path("disk")], check=False)

    def files(self, name, with_summary=False):
        """Returns the paths of files and links below a folder, sorted, with "/". The summary, which
        every finished run writes, is left out unless asked for."""
        found = []
        for folder, _, files in os.walk(self.path(name)):
            for file in files:
                found.append(os.path.relpath(os.path.join(folder, file), self.path(name)))
        return sorted(file for file in found if with_summary or file != "summary.json")


def with_encryption_flag(contents):
    """Returns a ZIP with every entry marked as encrypted, in its local and its central header."""
    changed = bytearray(contents)
    for signature, offset in ((b"PK\x03\x04", 6), (b"PK\x01\x02", 8)):
        place = changed.find(signature)
        while place >= 0:
            flags, = struct.unpack_from("<H", changed, place + offset)
            struct.pack_into("<H", changed, place + offset, flags | 1)
            place = changed.find(signature, place + 4)
    return bytes(changed)


def wrong_archives(test):
    """Returns archives that don't open: (description, path, exit code, a word of the message)."""
    good = test.archive(("Local/Notes.xml", notes("a" * 50, "b" * 50)), name="good.olm")
    whole = test.bytes_of(good)
    os.mkdir(test.path("folder.olm"))
    return [
        ("a text file", test.write("text.olm", b"Dear diary, nothing was zipped today.\n"), 4, "ZIP"),
        ("an empty file", test.write("empty.olm", b""), 4, "empty"),
        ("a truncated ZIP", test.write("cut.olm", whole[:len(whole) * 2 // 3]), 4, "again"),
        ("a directory", test.path("folder.olm"), 4, "directory"),
        ("a missing file", test.path("missing.olm"), 3, "exist"),
        ("an encrypted ZIP", test.write("secret.olm", with_encryption_flag(whole)), 4, "password"),
        ("a ZIP without documents", test.archive(("a.txt", "text"), name="other.zip"), 4,
         "not an OLM archive"),
        ("a ZIP of other documents", test.archive(("a.xml", "<html/>"), name="html.zip"), 4,
         "not an OLM archive"),
    ]
