"""olmkit info."""

import json
import os
import unittest
import zipfile

import counting
from program import (REAL_ARCHIVE, SAMPLE, ProgramTest, needs_real_archive, note, notes,
                     with_encryption_flag, wrong_archives)

KEYS = ["archive", "size", "unpacked_size", "entries", "directories", "checked", "damaged",
        "kinds", "accounts", "folders", "attachments", "encrypted", "noted_entries", "faults"]


def mail(date="", attachments=()):
    """Returns a mail sent on a date; attachments are pairs of URL and name."""
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

    def survey(self, archive, *arguments, code=0):
        survey = json.loads(self.info(archive, "--json", *arguments, code=code))
        self.assertEqual(list(survey), KEYS)
        self.assertEqual(survey["damaged"], code == 1)
        return survey

    def kind(self, survey, name):
        return next(kind for kind in survey["kinds"] if kind["kind"] == name)

    def folders(self, survey):
        return {folder["path"]: (folder["items"], folder["total"]) for folder in survey["folders"]}

    def test_sample_is_described_as_text(self):
        self.write("sample.olm", self.bytes_of(SAMPLE))

        self.assertEqual(self.info("sample.olm").splitlines(), [
            "sample.olm: 23,895 bytes",
            "25 entries (13 directories), 18,925 bytes uncompressed",
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

    def check_sizes(self, archive):
        survey = self.survey(archive)
        with zipfile.ZipFile(archive) as contents:
            infos = contents.infolist()
        self.assertEqual(survey["archive"], archive)
        self.assertEqual(survey["size"], os.path.getsize(archive))
        self.assertEqual(survey["unpacked_size"], sum(info.file_size for info in infos))
        self.assertEqual(survey["entries"], len(infos))
        self.assertEqual(survey["directories"], sum(info.is_dir() for info in infos))

    def test_sizes_are_those_of_the_directory(self):
        self.check_sizes(SAMPLE)

    @needs_real_archive
    def test_sizes_of_the_real_archive_are_those_of_its_directory(self):
        self.check_sizes(REAL_ARCHIVE)

    @needs_real_archive
    def test_real_archive_is_as_independent_readers_find_it(self):
        survey = self.survey(REAL_ARCHIVE)

        counts = counting.count_items(REAL_ARCHIVE)
        self.assertEqual({kind["kind"]: [kind["documents"], kind["items"]]
                          for kind in survey["kinds"]}, counts)
        for kind in survey["kinds"]:
            self.assertEqual(kind["listed"], kind["items"])
        urls = counting.attachment_urls(REAL_ARCHIVE)
        self.assertEqual(survey["attachments"]["count"], len(urls))
        self.assertEqual(survey["attachments"]["missing"], 0)
        with zipfile.ZipFile(REAL_ARCHIVE) as contents:
            sizes = sorted((contents.getinfo(url).file_size for url in urls), reverse=True)
        self.assertEqual([one["size"] for one in survey["attachments"]["largest"]], sizes[:10])
        self.assertEqual(survey["accounts"], [{"folder": "Local", "items": 28}])
        folders = self.folders(survey)
        self.assertEqual(folders["Local"], (0, 28))
        self.assertEqual(folders["Local/com.microsoft.__Messages/Outlook PST/Drafts"], (3, 3))
        self.assertEqual(folders["Local/com.microsoft.__Messages/Outlook PST"], (0, 5))
        self.assertFalse([path for path in folders if "Attachments" in path])

    def test_dates_are_compared_as_moments(self):
        archive = self.archive(("m.xml", mails(
            mail("2018-06-21T00:39:08"), mail("2018-06-21T01:00:00+05:00"), mail("soon"), mail(),
            mail("2018-06-20T23:00:00-02:30"))))

        kind = self.kind(self.survey(archive), "email")

        self.assertEqual((kind["items"], kind["earliest"], kind["latest"]),
                         (5, "2018-06-20T20:00:00Z", "2018-06-21T01:30:00Z"))

    def test_kind_without_dates_has_null_dates(self):
        kind = self.kind(self.survey(self.archive(("n.xml", notes("1")))), "note")

        self.assertEqual((kind["earliest"], kind["latest"]), (None, None))

    def test_no_output_depends_on_zone_or_locale(self):
        plain = self.info(SAMPLE)
        for changed in ({"TZ": "Asia/Kathmandu"}, {"LC_ALL": "de_DE.UTF-8", "LANG": "de_DE.UTF-8"}):
            done = self.run_program("info", SAMPLE, env={**os.environ, **changed})
            self.assertEqual(done.stdout, plain)

    def test_accounts_are_the_top_level_folders(self):
        archive = self.archive(
            ("Accounts/", ""), ("Accounts/a@x/", ""), ("Accounts/b@x/In/m.xml", mails(mail())),
            ("Accounts/a@x/In/m.xml", mails(mail(), mail())), ("Local/Notes/n.xml", notes("1")),
            ("Accounts/", ""), ("top.xml", notes("1")))

        survey = self.survey(archive)

        self.assertEqual(survey["accounts"], [
            {"folder": "Accounts/a@x", "items": 2}, {"folder": "Accounts/b@x", "items": 1},
            {"folder": "Local", "items": 1}])
        self.assertEqual(self.folders(survey), {
            "": (1, 1), "Accounts": (0, 3), "Accounts/a@x": (0, 2), "Accounts/a@x/In": (2, 2),
            "Accounts/b@x": (0, 1), "Accounts/b@x/In": (1, 1), "Local": (0, 1),
            "Local/Notes": (1, 1)})
        self.assertIn("          1            1  (in no folder)\n", self.info(archive))

    def test_depth_of_folders_is_limited(self):
        deep = "/".join(["d"] * 30000)
        archive = self.archive((deep + "/n.xml", notes("1")), ("d/d/n.xml", notes("2")))

        folders = self.folders(self.survey(archive))

        self.assertEqual(len(folders), 64)
        self.assertEqual(folders["d"], (0, 2))
        self.assertEqual(folders["d/d"], (1, 2))
        self.assertEqual(folders["/".join(["d"] * 64)], (1, 1))
        self.assertLess(len(self.info(archive)), 20000)

    def test_folders_lose_empty_levels_and_keep_dots(self):
        archive = self.archive(("/a//b/n.xml", notes("1")), ("../c/n.xml", notes("2")))

        self.assertEqual(self.folders(self.survey(archive)),
                         {"..": (0, 1), "../c": (1, 1), "a": (0, 1), "a/b": (1, 1)})

    def test_texts_of_the_archive_are_printed_without_control_characters(self):
        archive = self.archive(("a\x1b[2J/n.xml", notes("1")), ("\u202eb.xml", "<\u0085/>"),
                               ("m.xml", mails(mail("", [("f", "one&#9;two&#10;\u202e")]))),
                               ("f", "x"))

        done = self.run_program("info", archive)

        for control in ("\x1b", "\u202e", "\u0085", "\t"):
            self.assertNotIn(control, done.stdout)
        self.assertIn("one two", done.stdout)

    def test_ten_largest_attachments_are_listed_once_each(self):
        files = [(f"f/{size}", b"x" * size) for size in range(100, 115)]
        archive = self.archive(
            *files, ("orphan", b"x" * 500),
            ("m.xml", mails(mail("", [(name, "n" + name[2:]) for name, _ in files]),
                            mail("", [("f/114", "again"), ("f/104", ""), ("f/113", "thrice")]))),
            ("c.xml", "<tasks><task><OPFTaskCopyAttachmentList>"
             '<x OPFAttachmentURL="orphan"/></OPFTaskCopyAttachmentList></task></tasks>'))

        survey = self.survey(archive)

        self.assertEqual(survey["attachments"]["count"], 19)
        self.assertEqual([(one["name"], one["size"], one["entry"])
                          for one in survey["attachments"]["largest"]],
                         [("orphan", 500, 15)] +
                         [(f"n{size}", size, size - 100) for size in range(114, 105, -1)])

    def test_attachments_of_equal_size_are_in_the_order_of_entries(self):
        files = [(f"f{n:02}", b"same") for n in range(12)]
        archive = self.archive(*files, ("m.xml", mails(mail("", [
            (name, name) for name, _ in reversed(files)]))))

        largest = self.survey(archive)["attachments"]["largest"]

        self.assertEqual([one["entry"] for one in largest], list(range(10)))

    def test_attachments_that_are_missing_or_unnamed_are_counted(self):
        archive = self.archive(
            ("m.xml", mails(mail("", [("none", "n"), ("there", "t")]),
                            "<email><OPFMessageCopyAttachmentList><a/>"
                            "</OPFMessageCopyAttachmentList></email>")), ("there", "x"))

        survey = self.survey(archive, code=1)

        self.assertEqual({key: survey["attachments"][key] for key in
                          ("count", "missing", "unnamed")}, {"count": 3, "missing": 1, "unnamed": 1})
        self.assertIn("3 attachments, 1 missing from the archive, 1 without a file name\n",
                      self.info(archive, code=1))

    def test_entries_without_items_are_listed_with_the_reason(self):
        archive = self.archive(("Categories.xml", "<categories/>"), ("html.xml", "<html/>"),
                               ("none.xml", "<notes/>"), ("n.xml", notes("1")))

        survey = self.survey(archive)

        self.assertEqual([(row["entry"], row["entry_name"], row["items"], row["listed"],
                           row["reason"]) for row in survey["noted_entries"]], [
            (0, "Categories.xml", 0, 0, "it has categories and no items"),
            (1, "html.xml", 0, 0, 'its root element "html" is not of a known kind'),
            (2, "none.xml", 0, 0, "there is no note in it")])
        text = self.info(archive)
        self.assertIn("documents without items, or with items that are not listed:\n"
                      f"  entry 1 (html.xml): {survey['noted_entries'][1]['reason']}\n", text)
        self.assertNotIn("Categories", text)

    def test_items_that_are_not_listed_are_damage(self):
        archive = self.archive(("a.xml", "<notes>" + note("1") + "<odd/>" + note("2") + "</notes>"))

        survey = self.survey(archive, code=1)

        self.assertEqual((survey["noted_entries"][0]["items"],
                          survey["noted_entries"][0]["listed"]), (2, 1))
        self.assertEqual(self.kind(survey, "note")["items"], 2)
        self.assertEqual(self.kind(survey, "note")["listed"], 1)

    def test_damaged_documents_are_listed(self):
        archive = self.archive(("a.xml", "<notes>" + note("1") + "<note>"), ("b.xml", notes("2")))

        survey = self.survey(archive, code=1)

        self.assertEqual([(fault["entry"], fault["entry_name"]) for fault in survey["faults"]],
                         [(0, "a.xml")])
        self.assertIn("line 1", survey["faults"][0]["reason"])
        self.assertIn("damaged or unreadable:\n  entry 0 (a.xml): line 1",
                      self.info(archive, code=1))

    def test_encrypted_entries_are_counted_and_the_first_ones_listed(self):
        secret = self.archive(*[(f"f{n}", "hush") for n in range(12)], name="secret.zip")
        entries = with_encryption_flag(self.bytes_of(secret))
        self.write("mail.olm", entries)
        with zipfile.ZipFile(self.path("mail.olm"), "a") as archive:
            archive.writestr("n.xml", notes("1"))

        survey = self.survey(self.path("mail.olm"), code=1)

        self.assertEqual(survey["encrypted"]["count"], 12)
        self.assertEqual([one["entry"] for one in survey["encrypted"]["first"]], list(range(10)))
        self.assertIn("12 entries are encrypted; the first 10:\n  entry 0 (f0)\n",
                      self.info(self.path("mail.olm"), code=1))

    def test_check_reads_entries_that_are_not_documents(self):
        archive = self.archive(("n.xml", notes("1")), ("good", b"g" * 300000),
                               ("bad", b"b" * 300000), ("folder/", ""), method=zipfile.ZIP_STORED)
        contents = bytearray(self.bytes_of(archive))
        contents[contents.find(b"b" * 1000) + 200000] ^= 1
        self.write("mail.olm", contents)

        self.assertFalse(self.survey(archive)["checked"])
        survey = self.survey(archive, "--check", code=1)

        self.assertTrue(survey["checked"])
        self.assertEqual([(fault["entry"], fault["entry_name"]) for fault in survey["faults"]],
                         [(2, "bad")])
        self.assertTrue(survey["faults"][0]["reason"])

    def test_check_of_an_intact_archive_finds_nothing(self):
        self.assertEqual(self.survey(SAMPLE, "--check")["faults"], [])
        self.assertIn("every entry was read; none is damaged\n", self.info(SAMPLE, "--check"))

    def test_archive_without_items_is_reported_as_such(self):
        archive = self.archive(("Categories.xml", "<categories/>"))

        self.assertIn("\nno items\n", self.info(archive))
        self.assertEqual(sum(kind["items"] for kind in self.survey(archive)["kinds"]), 0)

    def test_wrong_archives_are_refused(self):
        for what, path, code, word in wrong_archives(self):
            with self.subTest(what):
                done = self.run_program("info", path, "--json")
                self.assertEqual(done.returncode, code)
                self.assertEqual(done.stdout, "")
                self.assertIn(path, done.stderr)
                self.assertIn(word, done.stderr)

    def test_full_and_closed_standard_output_are_distinguished(self):
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

                survey = json.loads(done.stdout)
                self.assertEqual({kind["kind"]: [kind["documents"], kind["items"]]
                                  for kind in survey["kinds"]}, counting.count_items(archive))
                urls = counting.attachment_urls(archive)
                with zipfile.ZipFile(archive) as contents:
                    names = set(contents.namelist())
                missing = sum(url is not None and url not in names for url in urls)
                self.assertEqual((survey["attachments"]["count"],
                                  survey["attachments"]["unnamed"],
                                  survey["attachments"]["missing"]),
                                 (len(urls), urls.count(None), missing))
                with_items = {entry for entry, _, root in counting.documents(archive)
                              if root.tag in counting.ROOTS and
                              root.find(counting.ROOTS[root.tag]) is not None}
                for row in survey["noted_entries"]:
                    self.assertEqual(row["entry"] in with_items, row["items"] > 0)
                is_listed = all(kind["items"] == kind["listed"] for kind in survey["kinds"])
                self.assertEqual(done.returncode, 0 if is_listed and missing == 0 else 1)


if __name__ == "__main__":
    unittest.main()
