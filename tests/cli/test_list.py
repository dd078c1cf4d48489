"""olmkit list."""

import csv
import io
import json
import os
import signal
import subprocess
import time
import unittest
import xml.etree.ElementTree
import zipfile

from program import (PROGRAM, REAL_ARCHIVE, ProgramTest, needs_real_archive, note, notes,
                     wrong_archives)

KEYS = ["index", "entry", "item", "entry_name", "kind", "name", "sender", "to", "cc", "subject",
        "sent", "received", "modified", "organizer", "display_name", "title", "special6",
        "special7"]

MAIL = ('<emails><email>'
        '<OPFMessageCopyCCAddresses><emailAddress OPFContactEmailAddressAddress="c@x"/>'
        '</OPFMessageCopyCCAddresses>'
        '<OPFMessageCopyFromAddresses><emailAddress OPFContactEmailAddressAddress="f@x" '
        'OPFContactEmailAddressName="F"/></OPFMessageCopyFromAddresses>'
        '<OPFMessageCopyModDate>2018-06-21T00:00:03</OPFMessageCopyModDate>'
        '<OPFMessageCopyReceivedTime>2018-06-21T00:00:02</OPFMessageCopyReceivedTime>'
        '<OPFMessageCopySentTime>2018-06-21T00:00:01</OPFMessageCopySentTime>'
        '<OPFMessageCopySubject>Say "tide",\nplease \\ \U0001F30A</OPFMessageCopySubject>'
        '<OPFMessageCopyToAddresses><emailAddress OPFContactEmailAddressAddress="a@x"/>'
        '<emailAddress OPFContactEmailAddressAddress="b@x"/></OPFMessageCopyToAddresses>'
        '</email></emails>')

KINDS = [
    ("Contacts.xml", "<contacts><contact><OPFContactCopyDisplayName>Ann</OPFContactCopyDisplayName>"
     "<OPFContactCopyBusinessTitle>Pilot</OPFContactCopyBusinessTitle></contact></contacts>"),
    ("Groups.xml", "<groups><group><OPFGroupCopyDisplayName>Crew</OPFGroupCopyDisplayName></group>"
     "</groups>"),
    ("Calendar.xml", "<appointments><appointment>"
     "<OPFCalendarEventCopyOrganizer>o@x</OPFCalendarEventCopyOrganizer>"
     "<OPFCalendarEventCopySummary>Ebb</OPFCalendarEventCopySummary></appointment></appointments>"),
    ("Tasks.xml", "<tasks><task><OPFTaskCopyName>Row</OPFTaskCopyName></task></tasks>"),
    ("Notes.xml", notes("Sea")),
]


class ListTest(ProgramTest):
    def rows(self, archive):
        done = self.run_program("list", archive, "--format", "jsonl")
        self.assertEqual(done.stderr, "")
        self.assertEqual(done.returncode, 0)
        return [json.loads(line) for line in done.stdout.split("\n")[:-1]]

    def test_json_line_of_a_mail_is_exact(self):
        archive = self.archive(("Accounts/", ""), ("Accounts/In/m.xml", MAIL))

        done = self.run_program("list", archive, "--format", "jsonl")

        self.assertEqual(
            done.stdout,
            '{"index":0,"entry":1,"item":1,"entry_name":"Accounts/In/m.xml","kind":"email",'
            '"name":"Accounts/In/Say \\"tide\\",\\nplease \\\\ \U0001F30A.msg","sender":"f@x",'
            '"to":"a@x;b@x","cc":"c@x","subject":"Say \\"tide\\",\\nplease \\\\ \U0001F30A",'
            '"sent":"2018-06-21T00:00:01","received":"2018-06-21T00:00:02",'
            '"modified":"2018-06-21T00:00:03","organizer":"","display_name":"","title":"",'
            '"special6":196608,"special7":4}\n')
        self.assertEqual(done.returncode, 0)

    def test_every_kind_has_its_name_and_columns(self):
        rows = self.rows(self.archive(*KINDS))

        self.assertEqual([list(row) for row in rows], [KEYS] * 5)
        seen = [(row["kind"], row["name"], row["subject"], row["display_name"], row["title"],
                 row["organizer"], row["special6"], row["special7"]) for row in rows]
        self.assertEqual(seen, [
            ("contact", "Ann.msg", "", "Ann", "Pilot", "", 0x40000, 5),
            ("contact", "Crew.msg", "Crew", "", "", "", 0x40000, 5),
            ("appointment", "Ebb.msg", "Ebb", "", "", "o@x", 0x50000, 6),
            ("task", "Row.msg", "Row", "", "", "", 0x70000, 8),
            ("note", "Sea.msg", "Sea", "", "", "", 0x60000, 7),
        ])

    def test_items_are_numbered_in_the_archive_and_in_their_entry(self):
        rows = self.rows(self.archive(("a.xml", notes("1", "2")), ("x.png", "picture"),
                                      ("b/b.xml", notes("3"))))

        self.assertEqual([(row["index"], row["entry"], row["item"], row["entry_name"], row["name"])
                          for row in rows],
                         [(0, 0, 1, "a.xml", "1.msg"), (1, 0, 2, "a.xml", "2.msg"),
                          (2, 2, 1, "b/b.xml", "b/3.msg")])

    def test_control_characters_are_escaped_in_json(self):
        rows = self.rows(self.archive(("a.xml", notes("a&#9;b&#13;c\u007f\u2028d"))))

        self.assertEqual(rows[0]["subject"], "a\tb\rc\u007f\u2028d")

    def test_what_acts_on_a_terminal_is_escaped_in_json(self):
        acting = ["\x7f", *map(chr, range(0x80, 0xa0)), "\u061c", "\u200e", "\u200f", "\u2028",
                  "\u2029", *map(chr, range(0x202a, 0x202f)), *map(chr, range(0x2066, 0x206a))]
        subject = "a" + "z".join(acting) + "\u00e9\u6f6e\U0001F30A\u00a0\u200d\u2030"
        archive = self.archive(("a.xml", notes(subject)))

        for arguments in (("list", archive, "--format", "jsonl"), ("show", archive, "0", "--json")):
            with self.subTest(arguments[0]):
                text = self.run_program(*arguments).stdout
                for character in acting:
                    self.assertNotIn(character, text)
                    self.assertIn(f"\\u{ord(character):04x}", text)
                self.assertIn("\u00e9\u6f6e\U0001F30A\u00a0\u200d\u2030", text)
                self.assertEqual(json.loads(text).get("subject", subject), subject)
        self.assertEqual(self.rows(archive)[0]["subject"], subject)

    def test_csv_in_a_file_has_control_characters_as_they_are(self):
        subject = "a\tb\u009b31mc\u202ed\u200ee\nf"
        archive = self.archive(("a.xml", notes(subject.replace("\n", "&#10;").replace("\t", "&#9;"))))

        done = self.run_program("list", archive, "--format", "csv", "--columns", "subject")

        self.assertEqual(done.stdout, f'subject\r\n"{subject}"\r\n')

    def test_csv_is_read_back_by_another_reader(self):
        archive = self.archive(("In/m.xml", MAIL), *KINDS)
        expected = [[str(value) for value in row.values()] for row in self.rows(archive)]

        done = self.run_program("list", archive, "--format", "csv")

        table = list(csv.reader(io.StringIO(done.stdout, newline=""), strict=True))
        self.assertEqual(table[0], KEYS)
        self.assertEqual(table[1:], expected)
        self.assertTrue(done.stdout.endswith("\r\n"))
        self.assertIn('"Say ""tide"",\nplease \\ \U0001F30A"', done.stdout)

    def test_table_shows_index_kind_date_sender_name_and_folder(self):
        archive = self.archive(("Accounts/In/m.xml", MAIL), ("Contacts.xml", KINDS[0][1]))

        done = self.run_program("list", archive)

        lines = done.stdout.splitlines()
        self.assertEqual(lines[0].split(), ["INDEX", "KIND", "DATE", "FROM", "NAME", "FOLDER"])
        self.assertEqual(
            lines[1],
            "      0  email        2018-06-21T00:00:01  f@x                           "
            'Say "tide", please \\ \U0001F30A                       Accounts/In')
        self.assertEqual(lines[2].split(), ["1", "contact", "Ann"])
        self.assertEqual(len(lines), 3)

    def test_table_without_a_terminal_cuts_nothing(self):
        archive = self.archive(("a.xml", notes("long " * 100 + "end")))

        done = self.run_program("list", archive)

        self.assertIn("long " * 100 + "end", done.stdout)

    def test_table_replaces_control_characters(self):
        archive = self.archive(("a.xml", notes("a&#9;b\u009b31mc\u202ed")))

        done = self.run_program("list", archive)

        self.assertIn("a b\ufffd31mc\ufffdd", done.stdout)

    def test_truncated_document_lists_its_items_and_reports_an_error(self):
        archive = self.archive(("Local/a.xml", "<notes>" + note("1") + note("2") +
                                "<note><OPFNoteCopyTitle>th"))

        done = self.run_program("list", archive, "--format", "jsonl")

        self.assertEqual([json.loads(line)["subject"] for line in done.stdout.split("\n")[:-1]],
                         ["1", "2", "th"])
        self.assertEqual(done.returncode, 1)
        self.assertEqual(len(done.stderr.splitlines()), 1)
        for word in (archive, "entry 0", "Local/a.xml", "again"):
            self.assertIn(word, done.stderr)

    def test_unreadable_entry_loses_only_its_own_items(self):
        archive = self.archive(("a.xml", notes("1")), ("b.xml", notes("x" * 100)),
                               ("c.xml", notes("3")), method=zipfile.ZIP_STORED)
        contents = self.bytes_of(archive)
        self.write("mail.olm", contents.replace(b"x" * 100, b"y" * 100, 1))

        done = self.run_program("list", archive, "--format", "jsonl")

        subjects = [json.loads(line)["subject"] for line in done.stdout.split("\n")[:-1]]
        self.assertEqual(subjects, ["1", "y" * 100, "3"])
        self.assertEqual(done.returncode, 1)
        self.assertEqual(len(done.stderr.splitlines()), 1)
        self.assertIn("entry 1 (b.xml)", done.stderr)

    def test_wrong_archives_are_reported_with_their_exit_codes(self):
        for what, path, code, word in wrong_archives(self):
            with self.subTest(what):
                done = self.run_program("list", path)
                self.assertEqual(done.returncode, code)
                self.assertEqual(done.stdout, "")
                self.assertIn(path, done.stderr)
                self.assertIn(word, done.stderr)

    def test_file_without_read_permission_exits_with_3(self):
        if os.geteuid() == 0:
            self.skipTest("root may read everything")
        archive = self.archive(("a.xml", notes("1")))
        os.chmod(archive, 0)

        self.assertEqual(self.run_program("list", archive).returncode, 3)

    def test_archive_without_items_is_an_empty_list(self):
        archive = self.archive(("Categories.xml", "<categories><category/></categories>"))

        for form, expected in (("jsonl", ""), ("csv", ",".join(KEYS) + "\r\n")):
            done = self.run_program("list", archive, "--format", form)
            self.assertEqual((done.returncode, done.stdout, done.stderr), (0, expected, ""))

    def test_full_disk_is_reported(self):
        archive = self.archive(("a.xml", notes("1")))

        with open("/dev/full", "wb") as full:
            done = self.run_program("list", archive, stdout=full)

        self.assertEqual(done.returncode, 5)
        self.assertIn("No space left", done.stderr)

    def test_reader_that_stops_early_ends_the_program_quietly(self):
        archive = self.archive(("a.xml", notes(*map(str, range(50000)))))

        with subprocess.Popen([PROGRAM, "list", archive, "--format", "jsonl"],
                              stdout=subprocess.PIPE, stderr=subprocess.PIPE) as process:
            self.assertEqual(json.loads(process.stdout.readline())["index"], 0)
            process.stdout.close()
            started = time.monotonic()
            process.wait(timeout=30)
            self.assertLess(time.monotonic() - started, 5)
            self.assertEqual(process.stderr.read(), b"")
        self.assertEqual(process.returncode, 0)

    def test_interrupt_ends_the_program_at_once_after_a_whole_line(self):
        archive = self.archive(("a.xml", notes(*["x" * 500] * 200000)))

        with subprocess.Popen([PROGRAM, "list", archive, "--format", "jsonl"],
                              stdout=subprocess.PIPE, stderr=subprocess.PIPE) as process:
            json.loads(process.stdout.readline())
            process.send_signal(signal.SIGINT)
            started = time.monotonic()
            process.wait(timeout=30)
            self.assertLess(time.monotonic() - started, 1)
            process.stdout.read()
            self.assertEqual(process.stderr.read(), b"olmkit: interrupted\n")
        self.assertEqual(process.returncode, 130)

    @needs_real_archive
    def test_real_archive_has_the_items_that_another_reader_finds(self):
        names = {"appointments": "appointment", "contacts": "contact", "emails": "email",
                 "groups": "contact", "notes": "note", "tasks": "task"}
        expected = []
        with zipfile.ZipFile(REAL_ARCHIVE) as archive:
            for entry, info in enumerate(archive.infolist()):
                if not info.filename.endswith(".xml"):
                    continue
                root = xml.etree.ElementTree.fromstring(archive.read(info))
                for number, item in enumerate(root if root.tag in names else (), 1):
                    subject = item.findtext(
                        {"email": "OPFMessageCopySubject",
                         "appointment": "OPFCalendarEventCopySummary", "task": "OPFTaskCopyName",
                         "note": "OPFNoteCopyTitle",
                         "group": "OPFGroupCopyDisplayName"}.get(item.tag, "none"), "")
                    expected.append((entry, number, info.filename, names[root.tag], subject))

        rows = self.rows(REAL_ARCHIVE)

        self.assertEqual(len(rows), 28)
        self.assertEqual([row["index"] for row in rows], list(range(28)))
        self.assertEqual([(row["entry"], row["item"], row["entry_name"], row["kind"],
                           row["subject"]) for row in rows], expected)


if __name__ == "__main__":
    unittest.main()
