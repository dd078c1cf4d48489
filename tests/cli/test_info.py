"""olmkit info."""

import json
import os
import unittest
import zipfile

import counting
from program import (REAL_ARCHIVE, ProgramTest, note, notes, with_encryption_flag,
                     wrong_archives)

SAMPLE = os.path.join(os.environ["OLMKIT_SOURCE_DIR"], "examples", "sample.olm")
KEYS = ["archive", "size", "unpacked_size", "entries", "directories", "checked", "damaged",
        "kinds", "accounts", "folders", "attachments", "encrypted", "noted_entries", "faults"]


def mail(date="", attachments=()):
    """A mail that was sent then, with (URL, name) for each attachment."""
    listed = "".join(f'<a OPFAttachmentURL="{url}" OPFAttachmentName="{name}"/>'
                     for url, name in attachments)
    return (f"<email><OPFMessageCopySentTime>{date}</OPFMessageCopySentTime>"
            f"<OPFMessageCopyAttachmentList>{listed}</OPFMessageCopyAttachmentList></email>")


def mails(*items):
    return "<emails>" + "".join(items) + "</emails>"


class InfoTest(ProgramTest):
    def info(self, archive, *arguments, code=0):
        done = self.run_program("info", archive, *arguments)
        self.assertEqual(done.returncode, code, done.stderr)
        self.assertEqual(done.stderr, "")
        return done.stdout

    def report(self, archive, *arguments, code=0):
        report = json.loads(self.info(archive, "--json", *arguments, code=code))
        self.assertEqual(list(report), KEYS)
        self.assertEqual(report["damaged"], code == 1)
        return report

    def kind(self, report, name):
        return next(kind for kind in report["kinds"] if kind["kind"] == name)

    def folders(self, report):
        return {folder["path"]: (folder["items"], folder["total"]) for folder in report["folders"]}

    def test_sample_is_told_to_people(self):
        self.write("sample.olm", self.bytes_of(SAMPLE))

        self.assertEqual(self.info("sample.olm").splitlines(), [
            "sample.olm: 23,895 bytes",
            "25 entries, 13 directories among them; 18,925 bytes unpacked",
            "",
            "KIND           DOCUMENTS        ITEMS  EARLIEST              LATEST",
            "email                  4            4  2019-03-04T09:00:00Z  2019-03-07T19:20:21Z",
            "appointment            1            2  2019-03-01T12:00:00Z  2019-03-07T15:30:00Z",
            "contact                1            2  2019-03-04T08:15:00Z  2019-03-05T21:40:11Z",
            "group                  1            1  2019-03-06T10:00:00Z  2019-03-06T10:00:00Z",
            "task                   1            2  2019-03-08T09:09:09Z  2019-03-09T17:00:01Z",
            "note                   1            2  2019-03-02T07:45:30Z  2019-03-03T22:00:00Z",
            "",
            "      ITEMS  ACCOUNT",
            "         13  Local",
            "",
            "      ITEMS   WITH BELOW  FOLDER",
            "          0            0  Accounts",
            "          0           13  Local",
            "          3            3    Address Book",
            "          2            2    Calendar",
            "          2            2    Notes",
            "          2            2    Tasks",
            "          0            4    com.microsoft.__Messages",
            "          1            1      Entwu\u0308rfe",
            "          2            2      Inbox",
            "          1            1      Sent Items",
            "",
            "2 attachments",
            "      BYTES        ENTRY  LARGEST",
            "        167           18  buoy.svg",
            "         65           17  tide-table.csv"])

    def test_sizes_are_those_of_the_directory(self):
        for archive in (SAMPLE, REAL_ARCHIVE):
            if not os.path.exists(archive):
                continue
            report = self.report(archive)
            with zipfile.ZipFile(archive) as contents:
                infos = contents.infolist()
            self.assertEqual(report["archive"], archive)
            self.assertEqual(report["size"], os.path.getsize(archive))
            self.assertEqual(report["unpacked_size"], sum(info.file_size for info in infos))
            self.assertEqual(report["entries"], len(infos))
            self.assertEqual(report["directories"], sum(info.is_dir() for info in infos))

    @unittest.skipUnless(os.path.exists(REAL_ARCHIVE), "the real archive is not here")
    def test_real_archive_is_what_independent_readers_tell(self):
        report = self.report(REAL_ARCHIVE)

        counts = counting.count_items(REAL_ARCHIVE)
        self.assertEqual({kind["kind"]: [kind["documents"], kind["items"]]
                          for kind in report["kinds"]}, counts)
        for kind in report["kinds"]:
            self.assertEqual(kind["listed"], kind["items"])
        urls = counting.attachment_urls(REAL_ARCHIVE)
        self.assertEqual(report["attachments"]["count"], len(urls))
        self.assertEqual(report["attachments"]["missing"], 0)
        with zipfile.ZipFile(REAL_ARCHIVE) as contents:
            sizes = sorted((contents.getinfo(url).file_size for url in urls), reverse=True)
        self.assertEqual([one["size"] for one in report["attachments"]["largest"]], sizes[:10])
        self.assertEqual(report["accounts"], [{"folder": "Local", "items": 28}])
        folders = self.folders(report)
        self.assertEqual(folders["Local"], (0, 28))
        self.assertEqual(folders["Local/com.microsoft.__Messages/Outlook PST/Drafts"], (3, 3))
        self.assertEqual(folders["Local/com.microsoft.__Messages/Outlook PST"], (0, 5))
        self.assertFalse([path for path in folders if "Attachments" in path])

    def test_dates_are_compared_as_moments(self):
        archive = self.archive(("m.xml", mails(
            mail("2018-06-21T00:39:08"), mail("2018-06-21T01:00:00+05:00"), mail("soon"), mail(),
            mail("2018-06-20T23:00:00-02:30"))))

        kind = self.kind(self.report(archive), "email")

        self.assertEqual((kind["items"], kind["earliest"], kind["latest"]),
                         (5, "2018-06-20T20:00:00Z", "2018-06-21T01:30:00Z"))

    def test_kind_without_dates_has_none(self):
        kind = self.kind(self.report(self.archive(("n.xml", notes("1")))), "note")

        self.assertEqual((kind["earliest"], kind["latest"]), (None, None))

    def test_no_output_depends_on_zone_or_locale(self):
        plain = self.info(SAMPLE)
        for changed in ({"TZ": "Asia/Kathmandu"}, {"LC_ALL": "de_DE.UTF-8", "LANG": "de_DE.UTF-8"}):
            done = self.run_program("info", SAMPLE, env={**os.environ, **changed})
            self.assertEqual(done.stdout, plain)

    def test_accounts_are_the_folders_at_the_top(self):
        archive = self.archive(
            ("Accounts/", ""), ("Accounts/a@x/", ""), ("Accounts/b@x/In/m.xml", mails(mail())),
            ("Accounts/a@x/In/m.xml", mails(mail(), mail())), ("Local/Notes/n.xml", notes("1")),
            ("Accounts/", ""), ("top.xml", notes("1")))

        report = self.report(archive)

        self.assertEqual(report["accounts"], [
            {"folder": "Accounts/a@x", "items": 2}, {"folder": "Accounts/b@x", "items": 1},
            {"folder": "Local", "items": 1}])
        self.assertEqual(self.folders(report), {
            "": (1, 1), "Accounts": (0, 3), "Accounts/a@x": (0, 2), "Accounts/a@x/In": (2, 2),
            "Accounts/b@x": (0, 1), "Accounts/b@x/In": (1, 1), "Local": (0, 1),
            "Local/Notes": (1, 1)})
        self.assertIn("          1            1  (in no folder)\n", self.info(archive))

    def test_folders_as_deep_as_a_name_allows_end_at_a_bound(self):
        deep = "/".join(["d"] * 30000)
        archive = self.archive((deep + "/n.xml", notes("1")), ("d/d/n.xml", notes("2")))

        folders = self.folders(self.report(archive))

        self.assertEqual(len(folders), 64)
        self.assertEqual(folders["d"], (0, 2))
        self.assertEqual(folders["d/d"], (1, 2))
        self.assertEqual(folders["/".join(["d"] * 64)], (1, 1))
        self.assertLess(len(self.info(archive)), 20000)

    def test_folders_with_empty_levels_and_dots_are_told_as_they_are(self):
        archive = self.archive(("/a//b/n.xml", notes("1")), ("../c/n.xml", notes("2")))

        self.assertEqual(self.folders(self.report(archive)),
                         {"..": (0, 1), "../c": (1, 1), "a": (0, 1), "a/b": (1, 1)})

    def test_texts_of_the_archive_are_printed_without_controls(self):
        archive = self.archive(("a\x1b[2J/n.xml", notes("1")), ("\u202eb.xml", "<\u0085/>"),
                               ("m.xml", mails(mail("", [("f", "one&#9;two&#10;\u202e")]))),
                               ("f", "x"))

        done = self.run_program("info", archive)

        for control in ("\x1b", "\u202e", "\u0085", "\t"):
            self.assertNotIn(control, done.stdout)
        self.assertIn("one two", done.stdout)

    def test_ten_largest_attachments_are_told_once_each(self):
        files = [(f"f/{size}", b"x" * size) for size in range(100, 115)]
        archive = self.archive(
            *files, ("orphan", b"x" * 500),
            ("m.xml", mails(mail("", [(name, "n" + name[2:]) for name, _ in files]),
                            mail("", [("f/114", "again"), ("f/104", ""), ("f/113", "thrice")]))),
            ("c.xml", "<tasks><task><OPFTaskCopyAttachmentList>"
             '<x OPFAttachmentURL="orphan"/></OPFTaskCopyAttachmentList></task></tasks>'))

        report = self.report(archive)

        self.assertEqual(report["attachments"]["count"], 19)
        self.assertEqual([(one["name"], one["size"], one["entry"])
                          for one in report["attachments"]["largest"]],
                         [("orphan", 500, 15)] +
                         [(f"n{size}", size, size - 100) for size in range(114, 105, -1)])

    def test_attachments_of_one_size_come_in_the_order_of_the_entries(self):
        files = [(f"f{n:02}", b"same") for n in range(12)]
        archive = self.archive(*files, ("m.xml", mails(mail("", [
            (name, name) for name, _ in reversed(files)]))))

        largest = self.report(archive)["attachments"]["largest"]

        self.assertEqual([one["entry"] for one in largest], list(range(10)))

    def test_attachments_that_are_missing_or_unnamed_are_counted(self):
        archive = self.archive(
            ("m.xml", mails(mail("", [("none", "n"), ("there", "t")]),
                            "<email><OPFMessageCopyAttachmentList><a/>"
                            "</OPFMessageCopyAttachmentList></email>")), ("there", "x"))

        report = self.report(archive, code=1)

        self.assertEqual({key: report["attachments"][key] for key in
                          ("count", "missing", "unnamed")}, {"count": 3, "missing": 1, "unnamed": 1})
        self.assertIn("3 attachments, 1 of them missing, 1 without the name of a file\n",
                      self.info(archive, code=1))

    def test_entries_without_items_are_told_with_the_reason(self):
        archive = self.archive(("Categories.xml", "<categories/>"), ("html.xml", "<html/>"),
                               ("none.xml", "<notes/>"), ("n.xml", notes("1")))

        report = self.report(archive)

        self.assertEqual([(row["entry"], row["entry_name"], row["items"], row["listed"],
                           row["reason"]) for row in report["noted_entries"]], [
            (0, "Categories.xml", 0, 0, "it has categories and no items"),
            (1, "html.xml", 0, 0, 'its root element "html" is not of a known kind'),
            (2, "none.xml", 0, 0, "there is no note in it")])
        text = self.info(archive)
        self.assertIn('\n  entry 1 (html.xml): its root element "html" is not of', text)
        self.assertNotIn("Categories", text)

    def test_items_that_are_not_listed_are_damage(self):
        archive = self.archive(("a.xml", "<notes>" + note("1") + "<odd/>" + note("2") + "</notes>"))

        report = self.report(archive, code=1)

        self.assertEqual((report["noted_entries"][0]["items"],
                          report["noted_entries"][0]["listed"]), (2, 1))
        self.assertEqual(self.kind(report, "note")["items"], 2)
        self.assertEqual(self.kind(report, "note")["listed"], 1)

    def test_damaged_documents_are_told(self):
        archive = self.archive(("a.xml", "<notes>" + note("1") + "<note>"), ("b.xml", notes("2")))

        report = self.report(archive, code=1)

        self.assertEqual([(fault["entry"], fault["entry_name"]) for fault in report["faults"]],
                         [(0, "a.xml")])
        self.assertIn("line 1", report["faults"][0]["reason"])
        self.assertIn("damaged or not readable:\n  entry 0 (a.xml): line 1",
                      self.info(archive, code=1))

    def test_encrypted_entries_are_counted_and_the_first_ones_told(self):
        secret = self.archive(*[(f"f{n}", "hush") for n in range(12)], name="secret.zip")
        entries = with_encryption_flag(self.bytes_of(secret))
        self.write("mail.olm", entries)
        with zipfile.ZipFile(self.path("mail.olm"), "a") as archive:
            archive.writestr("n.xml", notes("1"))

        report = self.report(self.path("mail.olm"), code=1)

        self.assertEqual(report["encrypted"]["count"], 12)
        self.assertEqual([one["entry"] for one in report["encrypted"]["first"]], list(range(10)))
        self.assertIn("12 entries are encrypted, the first ones:\n  entry 0 (f0)\n",
                      self.info(self.path("mail.olm"), code=1))

    def test_check_reads_what_no_list_reads(self):
        archive = self.archive(("n.xml", notes("1")), ("good", b"g" * 300000),
                               ("bad", b"b" * 300000), ("folder/", ""), method=zipfile.ZIP_STORED)
        contents = bytearray(self.bytes_of(archive))
        contents[contents.find(b"b" * 1000) + 200000] ^= 1
        self.write("mail.olm", contents)

        self.assertFalse(self.report(archive)["checked"])
        report = self.report(archive, "--check", code=1)

        self.assertTrue(report["checked"])
        self.assertEqual([(fault["entry"], fault["entry_name"]) for fault in report["faults"]],
                         [(2, "bad")])
        self.assertTrue(report["faults"][0]["reason"])

    def test_check_of_a_whole_archive_finds_nothing(self):
        self.assertEqual(self.report(SAMPLE, "--check")["faults"], [])
        self.assertIn("every entry was read, and is whole\n", self.info(SAMPLE, "--check"))

    def test_archive_without_items_has_none(self):
        archive = self.archive(("Categories.xml", "<categories/>"))

        self.assertIn("\nno items\n", self.info(archive))
        self.assertEqual(sum(kind["items"] for kind in self.report(archive)["kinds"]), 0)

    def test_wrong_archives_are_refused(self):
        for what, path, code, word in wrong_archives(self):
            with self.subTest(what):
                done = self.run_program("info", path, "--json")
                self.assertEqual(done.returncode, code)
                self.assertEqual(done.stdout, "")
                self.assertIn(path, done.stderr)
                self.assertIn(word, done.stderr)

    def test_standard_output_that_is_full_or_closed_is_told_apart(self):
        with open("/dev/full", "wb") as full:
            done = self.run_program("info", SAMPLE, stdout=full)
        self.assertEqual(done.returncode, 5)
        self.assertIn("standard output", done.stderr)

        read_end, write_end = os.pipe()
        os.close(read_end)
        done = self.run_program("info", SAMPLE, stdout=write_end)
        os.close(write_end)
        self.assertEqual((done.returncode, done.stderr), (0, ""))

    def test_random_archives_are_counted_as_an_independent_reader_counts_them(self):
        for seed in range(100, 140):
            with self.subTest(seed=seed):
                archive = counting.random_archive(self, seed)
                done = self.run_program("info", archive, "--json")

                report = json.loads(done.stdout)
                self.assertEqual({kind["kind"]: [kind["documents"], kind["items"]]
                                  for kind in report["kinds"]}, counting.count_items(archive))
                urls = counting.attachment_urls(archive)
                with zipfile.ZipFile(archive) as contents:
                    names = set(contents.namelist())
                missing = sum(url is not None and url not in names for url in urls)
                self.assertEqual((report["attachments"]["count"],
                                  report["attachments"]["unnamed"],
                                  report["attachments"]["missing"]),
                                 (len(urls), urls.count(None), missing))
                with_items = {entry for entry, _, root in counting.documents(archive)
                              if root.tag in counting.ROOTS and
                              root.find(counting.ROOTS[root.tag]) is not None}
                for row in report["noted_entries"]:
                    self.assertEqual(row["entry"] in with_items, row["items"] > 0)
                is_listed = all(kind["items"] == kind["listed"] for kind in report["kinds"])
                self.assertEqual(done.returncode, 0 if is_listed and missing == 0 else 1)


if __name__ == "__main__":
    unittest.main()
