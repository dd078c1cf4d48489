"""A changed byte of an archive changes nothing, or is reported."""

import io
import os
import struct
import subprocess
import unittest
import zipfile
import zlib
from concurrent.futures import ThreadPoolExecutor

from program import PROGRAM, SAMPLE, ProgramTest, notes

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

    def packed_sample(self, method):
        path = self.path("sample.olm")
        with zipfile.ZipFile(SAMPLE) as sample, zipfile.ZipFile(path, "w", method) as packed:
            for info in (one for one in sample.infolist() if not one.is_dir()):
                packed.writestr(info.filename, sample.read(info), method)
        return path

    def sweep(self, path, places):
        """Lists the archive once for each place, an entry and an offset, with a bit flipped."""
        whole = self.bytes_of(path)
        expected = self.run_program("list", "--format", "jsonl", path).stdout

        def is_silent(place):
            entry, offset = place
            changed = self.write(f"{offset}.olm", flipped(whole, offset))
            done = subprocess.run([PROGRAM, "list", "--format", "jsonl", changed],
                                  capture_output=True, timeout=60, check=False)
            os.remove(changed)
            if done.returncode == 0:
                return done.stdout.decode() != expected
            return done.returncode < 0 or entry not in done.stderr.decode()

        self.assertGreater(len(places), 20)
        with ThreadPoolExecutor(2) as pool:
            results = list(pool.map(is_silent, places))
        self.assertEqual([place for place, wrong in zip(places, results) if wrong], [])

    def sweep_documents(self, method):
        path = self.packed_sample(method)
        places = []
        with zipfile.ZipFile(path) as packed:
            for info in packed.infolist():
                if info.filename.endswith(".xml"):
                    begin, end = data_place(self.bytes_of(path), info)
                    root = range(begin, min(begin + 64, end)) if STEP == 16 else ()
                    places += [(info.filename, offset)
                               for offset in sorted({*root, *range(begin, end, STEP)})]
        self.sweep(path, places)

    def test_every_change_of_a_stored_document_is_reported_or_changes_nothing(self):
        self.sweep_documents(zipfile.ZIP_STORED)

    def test_every_change_of_a_deflated_document_is_reported_or_changes_nothing(self):
        self.sweep_documents(zipfile.ZIP_DEFLATED)

    def test_every_change_outside_of_the_data_is_reported_or_changes_nothing(self):
        path = self.packed_sample(zipfile.ZIP_DEFLATED)
        whole = self.bytes_of(path)
        with zipfile.ZipFile(path) as packed:
            data = [range(*data_place(whole, info)) for info in packed.infolist()]
        self.sweep(path, [("olmkit: ", offset) for offset in range(0, len(whole), STEP // 16)
                          if not any(offset in part for part in data)])

    def changed_archive(self, signature, offset, value):
        """Returns the path of an archive of which one header has other bytes at an offset."""
        path = self.archive(("Accounts/me/Calendar.xml", "<appointments><appointment/>"
                                                         "</appointments>"),
                            ("n.xml", notes("kept")), method=zipfile.ZIP_STORED)
        changed = bytearray(self.bytes_of(path))
        begin = changed.index(signature) + offset
        changed[begin:begin + len(value)] = value
        return self.write("mail.olm", bytes(changed))

    def assert_differs(self, path, text, rows):
        done = self.run_program("list", "--format", "csv", path)
        self.assertEqual(done.returncode, 1, done.stdout + done.stderr)
        self.assertIn("its local header " + text, done.stderr)
        self.assertEqual(len(done.stdout.splitlines()), 1 + rows, done.stdout)

    def test_changed_name_in_the_directory_is_reported(self):
        path = self.changed_archive(b"PK\1\2", 46 + len("Accounts/me/Calendar.xm"), b"m")

        self.assert_differs(path, 'differs from the directory: name "Accounts/me/Calendar.xml"', 1)
        self.assertIn("entry 0 (Accounts/me/Calendar.xmm)",
                      self.run_program("list", path).stderr)
        self.assertEqual(self.run_program("extract", path, "-o", "out").returncode, 1)

    def test_changed_local_header_is_reported_and_its_entry_is_read(self):
        for offset, value, text in [
                (0, b"XK", "has no signature"),
                (8, b"\x08", "differs from the directory: compression method 8"),
                (14, b"none", "differs from the directory: checksum"),
                (18, b"\x02\0\0\0", "differs from the directory: compressed size 2"),
                (22, b"\x03\0\0\0", "differs from the directory: size 3"),
                (30, b"a", 'differs from the directory: name "accounts/me/Calendar.xml"')]:
            with self.subTest(text):
                self.assert_differs(self.changed_archive(b"PK\3\4", offset, value), text, 2)

    def assert_accepted(self, path):
        done = self.run_program("info", "--check", path)
        self.assertEqual(done.returncode, 0, done.stdout + done.stderr)

    def test_sizes_after_the_data_are_accepted(self):
        class Pipe(io.BytesIO):
            def seekable(self):
                return False

            def seek(self, *_):
                raise io.UnsupportedOperation

            def tell(self):
                raise io.UnsupportedOperation

        pipe = Pipe()
        with zipfile.ZipFile(pipe, "w", zipfile.ZIP_DEFLATED) as packed:
            packed.writestr("n.xml", notes("one"))
        self.assertEqual(pipe.getvalue()[14:26], bytes(12), "the header has the sizes")
        self.assert_accepted(self.write("mail.olm", pipe.getvalue()))

    def test_sizes_of_64_bits_are_accepted(self):
        path = self.archive(("n.xml", notes("one")), method=zipfile.ZIP_STORED)
        contents = bytearray(self.bytes_of(path))
        size = len(notes("one"))
        contents[18:30] = struct.pack("<IIHH", 0xFFFFFFFF, 0xFFFFFFFF, len("n.xml"), 20)
        end = contents.rindex(b"PK\5\6") + 16
        contents[end:end + 4] = struct.pack("<I", contents.index(b"PK\1\2") + 20)
        contents[35:35] = struct.pack("<HHQQ", 1, 16, size, size)
        self.assert_accepted(self.write("mail.olm", contents))

    def test_name_in_an_extra_field_is_accepted(self):
        name = b"cafe.xml"
        better = "caf\u00e9.xml".encode()
        info = zipfile.ZipInfo(name.decode())
        info.extra = (struct.pack("<HHBI", 0x7075, 5 + len(better), 1, zlib.crc32(name)) + better)
        path = self.path("mail.olm")
        with zipfile.ZipFile(path, "w") as packed:
            packed.writestr(info, notes("one"))
        self.assert_accepted(path)


if __name__ == "__main__":
    unittest.main()
