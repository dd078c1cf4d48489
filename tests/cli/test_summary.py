"""The reconciliation that ends every extraction."""

import hashlib
import json
import os
import signal
import subprocess
import time
import unittest
import zipfile

import counting
from program import PROGRAM, REAL_ARCHIVE, SAMPLE, ProgramTest, needs_real_archive, note, notes

KINDS = ["email", "appointment", "contact", "task", "note"]
NUMBERS = ["documents", "items", "listed", "requested", "written", "failed"]


def mails(*lists):
    """Returns a document with a mail for each list of URLs; None is an attachment without a URL."""
    def attachment(url):
        return "<a/>" if url is None else f'<a OPFAttachmentURL="{url}"/>'
    return ("<emails>" + "".join(
        "<email><OPFMessageCopyAttachmentList>" + "".join(map(attachment, urls)) +
        "</OPFMessageCopyAttachmentList></email>" for urls in lists) + "</emails>")


class SummaryTest(ProgramTest):
    def extract(self, archive, *arguments, code=0):
        done = self.run_program("extract", archive, "-o", self.path("out"), *arguments)
        self.assertEqual(done.returncode, code, done.stderr)
        return done

    def summary(self):
        with open(self.path("out", "summary.json"), encoding="utf-8") as file:
            summary = json.load(file)
        self.assertEqual(list(summary), ["extent", "adds_up", "kinds", "attachments", "findings",
                                         "noted_entries", "manifest"])
        manifest = self.bytes_of(self.path("out", "manifest.jsonl"))
        self.assertEqual(summary.pop("manifest"), {"lines": manifest.count(b"\n"),
                                                   "sha256": hashlib.sha256(manifest).hexdigest()})
        self.assertEqual([kind for kind in summary["kinds"] if kind != "unknown"], KINDS)
        for numbers in summary["kinds"].values():
            self.assertEqual(list(numbers), NUMBERS)
        self.assertEqual(list(summary["attachments"]), ["named", "of_other_items", "written", "lost"])
        return summary

    def numbers(self, kind):
        return list(self.summary()["kinds"][kind].values())

    def test_whole_extraction_adds_up(self):
        done = self.extract(SAMPLE)

        self.assertEqual(done.stderr, "")
        self.assertEqual(done.stdout.splitlines()[1:], [
            "             in documents  listed  written  failed",
            "email                   4       4        4       0",
            "appointment             2       2        2       0",
            "contact                 3       3        3       0",
            "task                    2       2        2       0",
            "note                    2       2        2       0",
            "attachments: 2 named, 2 written, 0 lost"])
        self.assertEqual(self.summary(), {
            "extent": "whole", "adds_up": True,
            "kinds": {kind: dict(zip(NUMBERS, numbers)) for kind, numbers in zip(KINDS, [
                [4, 4, 4, 4, 4, 0], [1, 2, 2, 2, 2, 0], [2, 3, 3, 3, 3, 0], [1, 2, 2, 2, 2, 0],
                [1, 2, 2, 2, 2, 0]])},
            "attachments": {"named": 2, "of_other_items": 0, "written": 2, "lost": 0},
            "findings": [],
            "noted_entries": [{"entry": 0, "entry_name": "Categories.xml", "items": 0,
                               "listed": 0, "mismatch": False, "reason": "it has categories and no items"}]})

    def test_same_archive_has_the_same_summary_wherever_it_is(self):
        self.extract(SAMPLE)
        first = self.bytes_of(self.path("out", "summary.json"))
        os.rename(self.path("out"), self.path("other"))
        self.write("copy.olm", self.bytes_of(SAMPLE))

        self.extract(self.path("copy.olm"))

        self.assertEqual(self.bytes_of(self.path("out", "summary.json")), first)
        self.assertNotIn(self.folder.encode(), first)

    @needs_real_archive
    def test_real_archive_adds_up_to_what_an_independent_reader_counts(self):
        self.extract(REAL_ARCHIVE)

        summary = self.summary()
        expected = {kind: 0 for kind in KINDS}
        for kind, (_, items) in counting.count_items(REAL_ARCHIVE).items():
            expected[counting.ROW_KINDS[kind]] += items
        self.assertEqual({kind: numbers["items"] for kind, numbers in summary["kinds"].items()},
                         expected)
        self.assertTrue(summary["adds_up"])
        named = len(counting.attachment_urls(REAL_ARCHIVE))
        self.assertEqual(summary["attachments"], {"named": named, "of_other_items": 0,
                                                  "written": named, "lost": 0})

    def test_items_that_are_not_listed_are_reported(self):
        archive = self.archive(("a.xml", "<notes>" + note("1") + "<odd/>" + note("2") + "</notes>"))

        done = self.extract(archive, code=1)

        summary = self.summary()
        self.assertFalse(summary["adds_up"])
        self.assertEqual(self.numbers("note"), [1, 2, 1, 1, 1, 0])
        self.assertEqual(len(summary["findings"]), 2)
        self.assertIn("entry 0 (a.xml): it has 2 items, of which 1 is listed", done.stderr)
        self.assertIn("note do not add up: 2 in the documents, 1 listed, 1 to be written, 1 "
                      "written, 0 failed", done.stderr)
        self.assertEqual(summary["noted_entries"][0]["items"], 2)
        self.assertEqual(summary["noted_entries"][0]["listed"], 1)

    def test_document_that_is_not_listed_is_reported(self):
        archive = self.archive(("my.xml files/a.xml", notes("1", "2")), ("b.xml", notes("3")))

        done = self.extract(archive, code=1)

        self.assertEqual(self.numbers("note"), [2, 3, 1, 1, 1, 0])
        self.assertIn("entry 0 (my.xml files/a.xml): it has 2 items, of which none is listed",
                      done.stderr)

    def test_failed_items_are_part_of_the_sum(self):
        archive = self.archive(("a.xml", notes("1", "2")))
        os.makedirs(self.path("out", "1.msg"))

        self.extract(archive, code=5)

        self.assertTrue(self.summary()["adds_up"])
        self.assertEqual(self.numbers("note"), [1, 2, 2, 2, 1, 1])

    def test_selection_adds_up_by_itself(self):
        archive = self.archive(("a.xml", notes("1", "2", "3")), ("b.xml", notes("4")))

        done = self.extract(archive, "--item", "1")

        self.assertEqual(len(done.stdout.splitlines()), 1)
        summary = self.summary()
        self.assertEqual((summary["extent"], summary["adds_up"]), ("selection", True))
        self.assertEqual(self.numbers("note"), [1, 3, 3, 1, 1, 0])

    def test_places_and_indexes_without_a_row_are_of_unknown_kind(self):
        archive = self.archive(("a.xml", notes("1")))

        self.extract(archive, "--item", "9", "--at", "0:1", "--at", "0:5", code=1)

        self.assertTrue(self.summary()["adds_up"])
        self.assertEqual(self.numbers("note"), [1, 1, 1, 1, 1, 0])
        self.assertEqual(self.numbers("unknown"), [0, 0, 0, 2, 1, 1])

    def test_attachments_are_named_written_or_lost(self):
        archive = self.archive(("m.xml", mails(["a", "none"], ["a", None], [])), ("a", "payload"))

        done = self.extract(archive, code=1)

        summary = self.summary()
        self.assertTrue(summary["adds_up"])
        self.assertEqual(summary["attachments"], {"named": 4, "of_other_items": 0,
                                                  "written": 2, "lost": 2})
        self.assertIn("attachments: 4 named, 2 written, 2 lost", done.stdout)
        self.assertIn("an attachment is missing: it names no file", done.stderr)

    def test_attachments_of_a_mail_that_failed_are_lost(self):
        archive = self.archive(("m.xml", mails(["a", "a"])), ("a", "payload"))
        os.makedirs(self.path("out", "NONE.msg"))

        self.extract(archive, code=5)

        self.assertTrue(self.summary()["adds_up"])
        self.assertEqual(self.summary()["attachments"], {"named": 2, "of_other_items": 0,
                                                         "written": 0, "lost": 2})

    def test_attachments_of_other_items_are_reported(self):
        archive = self.archive(
            ("c.xml", "<appointments><appointment><OPFCalendarEventCopyAttachmentList>"
             '<x OPFAttachmentURL="a"/></OPFCalendarEventCopyAttachmentList></appointment>'
             "</appointments>"), ("a", "payload"))

        done = self.extract(archive, code=1)

        self.assertEqual(self.summary()["attachments"], {"named": 1, "of_other_items": 1,
                                                         "written": 0, "lost": 1})
        self.assertIn("attachments of items other than mails: 1 left out", done.stderr)

    def test_archive_without_items_adds_up(self):
        archive = self.archive(("Categories.xml", "<categories/>"), ("n.xml", "<notes/>"))

        done = self.extract(archive)

        self.assertEqual(len(done.stdout.splitlines()), 1)
        self.assertTrue(self.summary()["adds_up"])
        self.assertEqual([(row["entry"], row["reason"]) for row in self.summary()["noted_entries"]],
                         [(0, "it has categories and no items"),
                          (1, "there is no note in it")])

    def test_entries_that_can_not_be_read_are_noted(self):
        archive = self.archive(("a.xml", notes("1")), ("b.xml", notes("2")), ("c.xml", "<notes>"),
                               ("d.xml", "<\x01>"), method=zipfile.ZIP_STORED)
        contents = bytearray(self.bytes_of(archive))
        directory = contents.find(b"PK\x01\x02")
        contents[contents.find(b"PK\x01\x02", directory + 4) + 8] |= 1  # b.xml is encrypted
        self.write("mail.olm", contents)

        self.extract(archive, code=1)

        summary = self.summary()
        self.assertTrue(summary["adds_up"])
        self.assertEqual([row["entry_name"] for row in summary["noted_entries"]],
                         ["b.xml", "c.xml", "d.xml"])
        self.assertEqual(summary["noted_entries"][0]["reason"], "it is encrypted")
        self.assertIn("line 1", summary["noted_entries"][2]["reason"])

    def test_control_characters_of_names_are_in_the_file_alone(self):
        names = ["a\x1b[31m.xml", "a\u202e.xml.xml"]
        archive = self.archive(*[(name, notes("1") + "<!---->") for name in names],
                               ("\x1b.xml", "<odd/>"))

        done = self.extract(archive, code=1)

        self.assertNotIn("\x1b", done.stdout + done.stderr)
        self.assertNotIn("\u202e", done.stdout + done.stderr)
        self.assertEqual([row["entry_name"] for row in self.summary()["noted_entries"]],
                         [names[1], "\x1b.xml"])

    def test_only_a_finished_run_has_a_summary(self):
        self.extract(SAMPLE)
        archive = self.archive(("b.xml", notes(*[f"note {n}" for n in range(30000)])))

        with subprocess.Popen([PROGRAM, "extract", archive, "-o", self.path("out")],
                              stdout=subprocess.DEVNULL, stderr=subprocess.PIPE) as process:
            deadline = time.monotonic() + 60
            while not os.path.exists(self.path("out", "note 100.msg")):
                self.assertLess(time.monotonic(), deadline)
                time.sleep(0.001)
            self.assertFalse(os.path.exists(self.path("out", "summary.json")))
            process.send_signal(signal.SIGINT)
            process.wait(timeout=30)

        self.assertEqual(process.returncode, 130)
        self.assertFalse(os.path.exists(self.path("out", "summary.json")))

    def test_summary_that_can_not_be_written_is_an_error(self):
        archive = self.archive(("a.xml", notes("1")))
        os.makedirs(self.path("out", "summary.json"))

        done = self.extract(archive, code=5)

        self.assertIn("summary.json can't be written", done.stderr)
        self.assertEqual([name for name in self.files("out") if name.endswith(".part")], [])

    def test_numbers_of_random_archives_are_those_of_an_independent_reader(self):
        for seed in range(40):
            with self.subTest(seed=seed):
                archive = counting.random_archive(self, seed)
                done = self.run_program("extract", archive, "-o", self.path("out"))

                summary = self.summary()
                items = {kind: 0 for kind in KINDS}
                for kind, (_, count) in counting.count_items(archive).items():
                    items[counting.ROW_KINDS[kind]] += count
                with open(self.path("out", "manifest.jsonl"), encoding="utf-8") as file:
                    written = [row for row in map(json.loads, file) if row["path"]]
                numbers = summary["kinds"]
                self.assertEqual({kind: numbers[kind]["items"] for kind in KINDS}, items)
                self.assertEqual(sum(numbers[kind]["written"] for kind in KINDS), len(written))
                self.assertEqual(summary["attachments"]["named"],
                                 len(counting.attachment_urls(archive)))
                items_add_up = all(numbers[kind]["items"] == numbers[kind]["listed"] ==
                                   numbers[kind]["written"] + numbers[kind]["failed"]
                                   for kind in KINDS)
                attachments = summary["attachments"]
                attachments_add_up = (attachments["named"] ==
                                      attachments["written"] + attachments["lost"])
                self.assertEqual(summary["adds_up"], items_add_up and attachments_add_up)
                is_lossless = summary["adds_up"] and attachments["lost"] == 0
                self.assertEqual(done.returncode, 0 if is_lossless else 1, done.stderr)


if __name__ == "__main__":
    unittest.main()
