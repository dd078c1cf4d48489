"""Extracts random archives several times and compares: two runs with each other, file by file;
messages extracted by index with those extracted by place; and every stream of every message with
the model.

OLMKIT_SEED: seed of the first archive. OLMKIT_ROUNDS: number of archives, with successive seeds.
OLMKIT_KINDS: the kinds of items, separated by commas; all kinds by default."""

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
MAX_FAILURES_SHOWN = 5
MAX_SOURCE_SHOWN = 20000  # characters


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
        """Checks that items named by place have the same messages as items named by index."""
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
            refused = (None, FAILED_RESULT, FAILED_STATUS)
            return [] if outcome == refused else ["a message that must be refused: %s" % (row,)]
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
                failures = []
                for item, row in zip(items, rows):
                    found = self.failures_of(item, row, one)
                    if found:
                        place = "%s, entry %d, item %d" % (item.kind, item.entry, item.number)
                        failures.append("\n".join([place, item.source()[:MAX_SOURCE_SHOWN], *found]))
                self.assertEqual(len(failures), 0, "\n\n".join(failures[:MAX_FAILURES_SHOWN]))

    def test_messages_match_random_documents(self):
        for seed in range(SEED, SEED + ROUNDS):
            with self.subTest(seed=seed):
                self.check_archive(seed)


if __name__ == "__main__":
    unittest.main()
