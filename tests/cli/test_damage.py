"""A changed byte of an archive changes nothing, or is reported."""

import os
import subprocess
import unittest
import zipfile
from concurrent.futures import ThreadPoolExecutor

from program import PROGRAM, ProgramTest, notes

SAMPLE = os.path.join(os.environ["OLMKIT_SOURCE_DIR"], "examples", "sample.olm")

# Every so many bytes of a document's data one bit is flipped.
STEP = 7 * 16 if os.environ.get("OLMKIT_SANITIZED") else 16
LOCAL_HEADER = 30  # bytes before the name (APPNOTE 4.3.7)


def data_place(archive, info):
    """Returns the offset and the end of an entry's data in the archive's bytes."""
    names = archive[info.header_offset + 26:info.header_offset + LOCAL_HEADER]
    begin = (info.header_offset + LOCAL_HEADER + int.from_bytes(names[:2], "little") +
             int.from_bytes(names[2:], "little"))
    return begin, begin + info.compress_size


def flipped(data, offset):
    """Returns the bytes with one bit changed, another bit for each offset."""
    changed = bytearray(data)
    changed[offset] ^= 1 << (offset % 8)
    return bytes(changed)


class DamageTest(ProgramTest):
    def assert_reported(self, path, entry, *command):
        done = self.run_program(*command, path)
        self.assertEqual(done.returncode, 1, done.stdout + done.stderr)
        lines = (done.stdout + done.stderr).splitlines()  # info has them in its survey
        self.assertTrue(any(entry in line and "its checksum is wrong" in line for line in lines),
                        lines)

    def test_changed_root_element_is_reported(self):
        items = "<appointments><appointment/><appointment/></appointments>"
        path = self.archive(("Accounts/me/Calendar.xml", items), ("n.xml", notes("kept")),
                            method=zipfile.ZIP_STORED)
        whole = self.bytes_of(path)
        self.write("mail.olm", whole.replace(b"<appointments", b"<appointmemts"))

        self.assert_reported(path, "Accounts/me/Calendar.xml", "list")
        self.assert_reported(path, "Accounts/me/Calendar.xml", "info")
        self.assert_reported(path, "Accounts/me/Calendar.xml", "extract", "-o", "out")

    def test_change_after_the_last_item_is_reported(self):
        padding = "<!-- " + "x" * 300000 + " -->"
        path = self.archive(("n.xml", notes("one") + padding), method=zipfile.ZIP_STORED)
        whole = self.bytes_of(path)
        self.write("mail.olm", flipped(whole, whole.rindex(b"x -->")))

        self.assert_reported(path, "n.xml", "list")

    def sweep(self, method):
        """Lists the sample once for each flipped bit of its documents' data."""
        path = self.path("sample.olm")
        with zipfile.ZipFile(SAMPLE) as sample, zipfile.ZipFile(path, "w", method) as packed:
            for info in (one for one in sample.infolist() if not one.is_dir()):
                packed.writestr(info.filename, sample.read(info), method)
        whole = self.bytes_of(path)
        expected = self.run_program("list", "--format", "jsonl", path).stdout
        runs = []
        with zipfile.ZipFile(path) as packed:
            for info in packed.infolist():
                if not info.filename.endswith(".xml"):
                    continue
                begin, end = data_place(whole, info)
                root = range(begin, min(begin + 64, end)) if STEP == 16 else ()
                runs += [(info.filename, offset)
                         for offset in sorted({*root, *range(begin, end, STEP)})]

        def silent(run):
            entry, offset = run
            changed = self.write(f"{offset}.olm", flipped(whole, offset))
            done = subprocess.run([PROGRAM, "list", "--format", "jsonl", changed],
                                  capture_output=True, timeout=60, check=False)
            os.remove(changed)
            if done.returncode == 0:
                return done.stdout.decode() != expected
            return done.returncode < 0 or entry not in done.stderr.decode()

        self.assertGreater(len(runs), 20)
        with ThreadPoolExecutor(2) as pool:
            wrong = [run for run, isSilent in zip(runs, pool.map(silent, runs)) if isSilent]
        self.assertEqual(wrong, [])

    def test_every_change_of_a_stored_document_is_reported_or_changes_nothing(self):
        self.sweep(zipfile.ZIP_STORED)

    def test_every_change_of_a_deflated_document_is_reported_or_changes_nothing(self):
        self.sweep(zipfile.ZIP_DEFLATED)


if __name__ == "__main__":
    unittest.main()
