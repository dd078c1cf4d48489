"""Extracts notes and compares every byte of every stream, as olefile reads them, with what the
documents tell: worked out here from the XML alone. The files also pass the container checker, and
olecfinfo and gsf read them."""

import datetime
import json
import os
import struct
import subprocess
import sys
import tempfile
import unittest
import uuid
import xml.etree.ElementTree as ElementTree
import zipfile

import olefile

SOURCE = os.environ["OLMKIT_SOURCE_DIR"]
PROGRAM = os.path.join(os.environ["OLMKIT_BINARY_DIR"], "bin", "olmkit")
SAMPLE = os.path.join(SOURCE, "examples", "sample.olm")
REAL_ARCHIVE = os.path.join(SOURCE, "..", "shared", "archives", "real-2018.olm")
CHECKER = os.path.join(SOURCE, "tests", "interop", "check_compound.py")

CLASS_ID = "00020D0B-0000-0000-C000-000000000046"
NOTE_SET = uuid.UUID("{0006200E-0000-0000-C000-000000000046}").bytes_le
READABLE_AND_WRITABLE = 6
KEYWORDS_CRC = 0x2EDA4D3B
NUMERIC_KIND = 6  # a numeric name in the first listed set
STRING_KIND = 5  # a string name in PS_PUBLIC_STRINGS
NOTE_DEFAULTS = [(0x8B00, 3), (0x8B03, 166), (0x8B02, 200), (0x8B04, 80), (0x8B05, 80)]


def entry(tag, value):
    return struct.pack("<IIQ", tag, READABLE_AND_WRITABLE, value)


def file_time(text):
    """One second short, as messages of this kind are."""
    since = datetime.datetime.fromisoformat(text) - datetime.datetime(1601, 1, 1)
    return (since // datetime.timedelta(microseconds=1)) * 10 - 10_000_000


def value_stream(tag):
    return "__substg1.0_%08X" % tag


class ExpectedNote:
    """What a note's message holds: path to bytes."""

    def __init__(self, note):
        self.streams = {}
        self.entries = []
        self.names = [(name_id, NUMERIC_KIND, name_id) for name_id, _ in NOTE_DEFAULTS]
        self.add_defaults()
        for element in note:
            self.add_element(element)
        self.streams["__properties_version1.0"] = bytes(32) + b"".join(self.entries)
        self.add_names()

    def add_string(self, tag, text):
        data = text.encode("utf-16-le")
        self.streams[value_stream(tag)] = data
        self.entries.append(entry(tag, len(data) + 2))

    def add_defaults(self):
        self.streams[value_stream(0x10090102)] = b""
        self.entries.append(entry(0x10090102, 0))
        self.add_string(0x001A001F, "IPM.StickyNote")
        for tag, value in [(0x0E1F000B, 0), (0x0FF70003, 0), (0x0FF40003, 2), (0x340D0003, 0x40E79),
                           (0x3FDE0003, 1200)]:
            self.entries.append(entry(tag, value))
        for number, (_, value) in enumerate(NOTE_DEFAULTS):
            self.entries.append(entry(0x80000003 | number << 16, value))

    def add_element(self, element):
        text = element.text or ""
        if element.tag == "OPFNoteCopyTitle":
            self.add_string(0x0037001F, text)
        elif element.tag == "OPFNoteCopyNonHTMLText":
            self.add_string(0x1000001F, text)
        elif element.tag == "OPFNoteCopyCreationDate":
            self.entries.append(entry(0x30070040, file_time(text)))
        elif element.tag == "OPFNoteCopyModDate":
            self.entries.append(entry(0x30080040, file_time(text)))
        elif element.tag == "OPFNoteCopyCategoryList":
            self.add_categories([category.get("OPFCategoryCopyName") for category in element])

    def add_categories(self, names):
        tag = 0x8000101F | len(self.names) << 16
        values = [name.encode("utf-16-le") + b"\0\0" for name in names]
        self.streams[value_stream(tag)] = b"".join(struct.pack("<I", len(value)) for value in values)
        for index, value in enumerate(values):
            self.streams["%s-%08X" % (value_stream(tag), index)] = value
        self.entries.append(entry(tag, 4 * len(values)))
        self.names.append((0, STRING_KIND, KEYWORDS_CRC))

    def add_names(self):
        folder = "__nameid_version1.0/"
        self.streams[folder + value_stream(0x00020102)] = NOTE_SET
        self.streams[folder + value_stream(0x00030102)] = b"".join(
            struct.pack("<IHH", first, kind, number) for number, (first, kind, _) in enumerate(self.names))
        has_keywords = any(kind == STRING_KIND for _, kind, _ in self.names)
        keywords = "Keywords".encode("utf-16-le")
        self.streams[folder + value_stream(0x00040102)] = (
            struct.pack("<I", len(keywords)) + keywords if has_keywords else b"")
        for number, (_, kind, name_id) in enumerate(self.names):
            path = folder + value_stream((0x1000 + (kind ^ name_id) % 31) << 16 | 0x0102)
            self.streams[path] = self.streams.get(path, b"") + struct.pack("<IHH", name_id, kind, number)


def streams_of(path):
    """Every stream as olefile reads it, and the root's class id."""
    with olefile.OleFileIO(path, raise_defects=olefile.DEFECT_INCORRECT) as container:
        streams = {"/".join(names): container.openstream(names).read() for names in container.listdir()}
        return streams, container.root.clsid


class NotesTest(unittest.TestCase):
    def extract(self, archive):
        """(note element, path of its message) of every note of the archive."""
        folder = tempfile.TemporaryDirectory()
        self.addCleanup(folder.cleanup)
        subprocess.run([PROGRAM, "extract", archive, "-o", folder.name], stdout=subprocess.DEVNULL,
                       stderr=subprocess.DEVNULL, check=False)
        with open(os.path.join(folder.name, "manifest.jsonl"), encoding="utf-8") as manifest:
            written = {(row["entry"], row["item"]): row["path"] for row in map(json.loads, manifest)}
        with zipfile.ZipFile(archive) as contents:
            for index, info in enumerate(contents.infolist()):
                if info.filename.endswith("/Notes.xml"):
                    root = ElementTree.fromstring(contents.read(info))
                    for number, note in enumerate(root, 1):
                        yield note, os.path.join(folder.name, written[index, number])

    def check_container(self, path):
        for command in [sys.executable, CHECKER, path], ["olecfinfo", path], ["gsf", "list", path]:
            done = subprocess.run(command, stdout=subprocess.PIPE, stderr=subprocess.STDOUT, text=True,
                                  check=False)
            self.assertEqual(done.returncode, 0, done.stdout)

    def check_notes(self, archive, count):
        checked = 0
        for note, path in self.extract(archive):
            streams, class_id = streams_of(path)
            expected = ExpectedNote(note).streams
            self.assertEqual(sorted(streams), sorted(expected))
            for name, data in expected.items():
                self.assertEqual(streams[name], data, name)
            self.assertEqual(class_id, CLASS_ID)
            self.check_container(path)
            checked += 1
        self.assertEqual(checked, count)

    def test_notes_of_the_sample_hold_what_their_documents_tell(self):
        self.check_notes(SAMPLE, 2)

    @unittest.skipUnless(os.path.exists(REAL_ARCHIVE), "the real archive is not here")
    def test_note_of_the_real_archive_holds_what_its_document_tells(self):
        self.check_notes(REAL_ARCHIVE, 1)


if __name__ == "__main__":
    unittest.main()
