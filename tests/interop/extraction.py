"""Extracts archives and compares the messages with the model in `expected`."""

import os
import struct
import tempfile
import unittest

import programs
from check_compound import Checker
from olmkit import extract
from expected.archive import Archive
from expected.message import CLASS_ID, PROPERTIES
from read_compound import read_message

FAILED_RESULT, FAILED_STATUS = 18, 2
MAX_SHOWN = 400  # bytes of a stream in a failure message


def shown(name, data):
    if name.endswith(PROPERTIES):
        header = len(data) % 16 or 32
        entries = [struct.unpack_from("<IIQ", data, at) for at in range(header, len(data) - 15, 16)]
        lines = ["%08X %d %016X" % entry for entry in entries]
        return "\n".join([data[:header].hex(" ")] + lines)
    more = " ..." if len(data) > MAX_SHOWN else ""
    return "%d bytes: %s%s" % (len(data), data[:MAX_SHOWN].hex(" "), more)


def differences(expected, path):
    """Returns a text for each difference; none for a valid file with exactly those streams."""
    with open(path, "rb") as file:
        checker = Checker(file.read())
        checker.check()
    if checker.faults:
        return ["fault: " + text for text in checker.faults]
    streams, storages = read_message(path)
    found = ["missing: " + name for name in sorted(expected.keys() - streams.keys())]
    found += ["unexpected: " + name for name in sorted(streams.keys() - expected.keys())]
    for name in sorted(expected.keys() & streams.keys()):
        if expected[name] != streams[name]:
            texts = (name, shown(name, expected[name]), shown(name, streams[name]))
            found.append("%s\nexpected %s\nactual %s" % texts)
    expected_storages = {"/": CLASS_ID}
    expected_storages.update((name[: name.rindex("/") + 1], "") for name in expected if "/" in name)
    if storages != expected_storages:
        found.append("storages: expected %s, actual %s" % (expected_storages, storages))
    return found


class ItemsTest(unittest.TestCase):
    """Compares every message of an archive; subclasses name the kinds and their counts."""

    def extract(self, archive):
        """Extracts an archive. Returns the folder and the paths of messages by (entry, number)."""
        folder = tempfile.TemporaryDirectory()
        self.addCleanup(folder.cleanup)
        rows = extract(archive, folder.name)
        return folder.name, {(row["entry"], row["item"]): row["path"] for row in rows}

    def check_container(self, path):
        for command in ["olecfinfo", path], ["gsf", "list", path]:
            programs.run(*command)

    def check_items(self, path, kind, count):
        folder, written = self.extract(path)
        checked = 0
        with Archive(path) as archive:
            for item in archive.items():
                if item.kind != kind:
                    continue
                message = written[item.entry, item.number]
                self.assertIsNotNone(message, "%s: no message\n%s" % (kind, item.source()))
                message = os.path.join(folder, message)
                self.assertEqual(differences(item.streams(), message), [], item.source()[:2000])
                self.check_container(message)
                checked += 1
        self.assertEqual(checked, count)
