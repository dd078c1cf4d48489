"""Extracts random archives more than once and compares: two runs with each other, file by file;
messages by the item's index with those by its place; and every stream of every message with what
the item's document tells.

OLMKIT_SEED: of the first archive. OLMKIT_ROUNDS: how many archives, each with the next seed.
OLMKIT_KINDS: the kinds of items, separated by commas; all of them when it isn't there."""

import filecmp
import os
import tempfile
import unittest

from expected.archive import KINDS, Archive
from extraction import FAILED_RESULT, FAILED_STATUS, differences
from olmkit import extract
from random_items import make_archive

SEED = int(os.environ.get("OLMKIT_SEED", "1"))
ROUNDS = int(os.environ.get("OLMKIT_ROUNDS", "5"))
ALL_KINDS = ",".join(kind for kind, _ in KINDS.values())
CHOSEN_KINDS = os.environ.get("OLMKIT_KINDS", ALL_KINDS).split(",")
ITEMS_OF_EACH_KIND = 24
MOST_REPORTED = 5
LONGEST_SOURCE = 20000


def files_below(folder):
    return sorted(
        os.path.relpath(os.path.join(where, name), folder)
        for where, _, names in os.walk(folder)
        for name in names
    )


class RandomItemsTest(unittest.TestCase):
    def check_same_files(self, one, other):
        names = files_below(one)
        self.assertEqual(names, files_below(other))
        _, differing, unreadable = filecmp.cmpfiles(one, other, names, shallow=False)
        self.assertEqual((differing, unreadable), ([], []))

    def check_by_place(self, path, rows, folder):
        """Items named by their place give what the same items give by their index."""
        places = ["--at=%d:%d" % (row["entry"], row["item"]) for row in rows]
        keys = ("entry", "item", "result", "status", "sha256")
        self.assertEqual(
            [[row[key] for key in keys] for row in extract(path, folder, *places)],
            [[row[key] for key in keys] for row in rows],
        )

    def failures_of(self, item, row, folder):
        expected = item.streams()
        if expected is None:
            outcome = (row["path"], row["result"], row["status"])
            wanted = (None, FAILED_RESULT, FAILED_STATUS)
            return [] if outcome == wanted else ["an item that gives no message: %s" % (row,)]
        if row["path"] is None or row["result"] != 0:
            return ["no message: %s" % (row,)]
        return differences(expected, os.path.join(folder, row["path"]))

    def check_archive(self, seed):
        with tempfile.TemporaryDirectory() as folder:
            path = os.path.join(folder, "random.olm")
            one, other = os.path.join(folder, "one"), os.path.join(folder, "other")
            make_archive(path, seed, CHOSEN_KINDS, ITEMS_OF_EACH_KIND)
            rows = extract(path, one)
            extract(path, other)
            self.check_same_files(one, other)
            self.check_by_place(path, rows, os.path.join(folder, "by place"))
            with Archive(path) as archive:
                items = list(archive.items())
                self.assertEqual(
                    [(row["entry"], row["item"]) for row in rows],
                    [(item.entry, item.number) for item in items],
                )
                reports = []
                for item, row in zip(items, rows):
                    found = self.failures_of(item, row, one)
                    if found:
                        place = "%s, entry %d, item %d" % (item.kind, item.entry, item.number)
                        reports.append("\n".join([place, item.source()[:LONGEST_SOURCE], *found]))
                self.assertEqual(len(reports), 0, "\n\n".join(reports[:MOST_REPORTED]))

    def test_messages_hold_what_random_documents_tell(self):
        for seed in range(SEED, SEED + ROUNDS):
            with self.subTest(seed=seed):
                self.check_archive(seed)


if __name__ == "__main__":
    unittest.main()
