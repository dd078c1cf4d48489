"""olmkit show, compared with what an independent reader finds in extracted messages."""

import datetime
import hashlib
import json
import os
import struct
import sys
import unittest
import zipfile

from program import (REAL_ARCHIVE, SAMPLE, ProgramTest, needs_real_archive, note, notes,
                     wrong_archives)

SOURCE = os.environ["OLMKIT_SOURCE_DIR"]
sys.path.insert(0, os.path.join(SOURCE, "tests", "interop"))

import named_properties  # noqa: E402
import programs  # noqa: E402
import recurrence  # noqa: E402


KEYS = ["index", "entry", "item", "class", "properties", "recipients", "attachments", "recurrence"]
TYPES = {0x0003: "PtypInteger32", 0x0005: "PtypFloating64", 0x000B: "PtypBoolean",
         0x001F: "PtypString", 0x0040: "PtypTime", 0x0102: "PtypBinary",
         0x101F: "PtypMultipleString", 0x1102: "PtypMultipleBinary"}
SETS = {"PSETID_Common": "00062008", "PSETID_Address": "00062004", "PSETID_Appointment": "00062002",
        "PSETID_Task": "00062003", "PSETID_Note": "0006200e", "PS_PUBLIC_STRINGS": "00020329"}
SHOWN_BYTES = 32


def iso(units):
    when = datetime.datetime(1601, 1, 1) + datetime.timedelta(seconds=units // 10**7)
    fraction = units % 10**7
    return when.isoformat() + (("%.7f" % (fraction / 10**7))[1:].rstrip("0") if fraction else "") + "Z"


def text_of(data):
    return data.decode("utf-16-le", "replace").rstrip("\0")


def binary_of(data):
    """Describes a binary value, without decoding a one-off entry id."""
    return {"size": len(data), "start": data[:SHOWN_BYTES].hex()}


def one_off_of(data):
    name, kind, address = data[24:].decode("utf-16-le").split("\0")[:3]
    return {"display_name": name, "address_type": kind, "address": address}


def values(streams, folder, tag):
    name = "%s__substg1.0_%08X" % (folder, tag)
    size = 4 if tag & 0xFFFF == 0x101F else 8
    return [streams["%s-%08X" % (name, index)] for index in range(len(streams[name]) // size)]


def value_of(streams, folder, tag, field):
    kind = tag & 0xFFFF
    if kind == 0x0003:
        return struct.unpack_from("<i", field)[0]
    if kind == 0x0005:
        return struct.unpack("<d", field)[0]
    if kind == 0x000B:
        return field[0] != 0
    if kind == 0x0040:
        return iso(struct.unpack("<Q", field)[0])
    if kind == 0x101F:
        return [text_of(value) for value in values(streams, folder, tag)]
    if kind == 0x1102:
        return [dict(binary_of(value), one_off=one_off_of(value))
                for value in values(streams, folder, tag)]
    data = streams["%s__substg1.0_%08X" % (folder, tag)]
    return text_of(data) if kind == 0x001F else binary_of(data)


class ShowTest(ProgramTest):
    def show(self, archive, *arguments, code=0):
        done = self.run_program("show", archive, *arguments)
        self.assertEqual(done.returncode, code, done.stderr)
        return done.stdout

    def described(self, archive, *arguments, code=0):
        return json.loads(self.show(archive, *arguments, "--json", code=code))

    def compare_properties(self, shown, streams, folder):
        header = 8 if folder else 32
        expected = [(tag, value_of(streams, folder, tag, field)) for tag, _, field in
                    struct.iter_unpack("<II8s", streams[folder + "__properties_version1.0"][header:])]
        self.assertEqual([(int(row["tag"], 16), row["value"]) for row in shown], expected)
        for row in shown:
            self.assertEqual(list(row), ["tag", "type", "name", "set", "id", "value"])
            self.assertEqual(row["type"], TYPES[int(row["tag"], 16) & 0xFFFF])
            self.assertRegex(row["name"], "^Pid(Tag|Lid|Name)[A-Z]")

    def compare_names(self, shown, streams):
        names = named_properties.NamedProperties(streams)
        for row in shown:
            number = int(row["tag"], 16) >> 16
            if number < 0x8000:
                self.assertEqual((row["set"], row["id"]), (None, None))
                continue
            property_set, name = names.names[number - 0x8000]
            self.assertEqual(SETS[row["set"]], str(property_set)[:8])
            self.assertEqual(row["id"], name if isinstance(name, str) else "0x%04X" % name)

    def compare_recurrence(self, shown, item, streams):
        found = [row for row in item["properties"]
                 if row["name"] in ("PidLidAppointmentRecur", "PidLidTaskRecurrence")]
        if not found:
            self.assertIsNone(shown)
            return 0
        value = recurrence.decode(streams["__substg1.0_" + found[0]["tag"][2:]])
        self.assertEqual(shown, {
            "frequency": value.frequency, "pattern": value.pattern, "interval": value.interval,
            "days": None if value.day_mask is None else value.days,
            "day_of_month": value.day_of_month, "week": value.week,
            "first_day_of_week": recurrence.DAYS[value.first_day_of_week],
            "start_date": value.first_day.date().isoformat(), "end": value.end,
            "end_date": None if value.last_day is None else value.last_day.date().isoformat(),
            "occurrences": value.count,
            "first_start": value.start_time.isoformat(timespec="minutes"),
            "first_end": value.end_time.isoformat(timespec="minutes"),
            "after_completion": value.sliding, "calendar_type": value.calendar_type,
            "first_date_time": value.first_date_time,
            "deleted": [recurrence.moment(day).date().isoformat() for day in value.deleted],
            "modified": [recurrence.moment(day).date().isoformat() for day in value.modified],
            "exceptions": []})
        return 1

    def compare_archive(self, archive, count, classes, recurrences):
        """Compares every item; `classes` counts items by class, `recurrences` recurring ones."""
        done = self.run_program("extract", archive, "-o", self.path("out"))
        self.assertEqual(done.returncode, 0, done.stderr)
        with open(self.path("out", "manifest.jsonl"), encoding="utf-8") as file:
            rows = [json.loads(line) for line in file]
        self.assertEqual(len(rows), count)
        seen, recurring = {}, 0
        for row in rows:
            with self.subTest(row["path"]):
                item = self.described(archive, str(row["index"]))
                streams = programs.streams_by_olefile(self.path("out", row["path"]))
                self.assertEqual(list(item), KEYS)
                self.assertEqual([item[key] for key in KEYS[:4]],
                                 [row["index"], row["entry"], row["item"],
                                  text_of(streams["__substg1.0_001A001F"])])
                self.compare_properties(item["properties"], streams, "")
                self.compare_names(item["properties"], streams)
                self.compare_parts(item, streams)
                recurring += self.compare_recurrence(item["recurrence"], item, streams)
                seen[item["class"]] = seen.get(item["class"], 0) + 1
                # Named by its place it is the same, except for the index.
                placed = self.described(archive, "--at", "%d:%d" % (row["entry"], row["item"]))
                self.assertEqual(placed, dict(item, index=None))
        self.assertEqual(seen, classes)
        self.assertEqual(recurring, recurrences)

    def compare_parts(self, item, streams):
        for key, start, facts in (("recipients", "__recip_version1.0_#", self.recipient_facts),
                                  ("attachments", "__attach_version1.0_#", self.attachment_facts)):
            folders = sorted({name.split("/")[0] for name in streams if name.startswith(start)})
            self.assertEqual(len(item[key]), len(folders))
            for part, folder in zip(item[key], folders):
                self.compare_properties(part["properties"], streams, folder + "/")
                facts(part, streams, folder)

    def recipient_facts(self, part, streams, folder):
        self.assertEqual(list(part), ["type", "name", "address", "properties"])
        self.assertIn(part["type"], ("to", "cc", "bcc", "required", "optional", "resource"))
        self.assertEqual(part["name"], text_of(streams[folder + "/__substg1.0_3001001F"]))
        self.assertEqual(part["address"], text_of(streams[folder + "/__substg1.0_3003001F"]))

    def attachment_facts(self, part, streams, folder):
        data = streams[folder + "/__substg1.0_37010102"]
        self.assertEqual(list(part), ["name", "mime_type", "content_id", "size", "sha256",
                                      "properties"])
        self.assertEqual((part["size"], part["sha256"]),
                         (len(data), hashlib.sha256(data).hexdigest()))
        self.assertEqual(part["name"], text_of(streams[folder + "/__substg1.0_3704001F"]))

    def test_sample_is_shown_as_an_independent_reader_finds_it(self):
        self.compare_archive(SAMPLE, 13, {"IPM.Contact": 2, "IPM.DistList": 1, "IPM.Appointment": 2,
                                          "IPM.Task": 2, "IPM.StickyNote": 2, "IPM.Note": 4}, 1)

    @needs_real_archive
    def test_real_archive_is_shown_as_an_independent_reader_finds_it(self):
        self.compare_archive(REAL_ARCHIVE, 28,
                             {"IPM.Contact": 5, "IPM.DistList": 2, "IPM.Appointment": 8,
                              "IPM.Task": 5, "IPM.StickyNote": 1, "IPM.Note": 7}, 6)

    def test_members_of_a_group_are_named(self):
        output = self.show(SAMPLE, "2")

        self.assertIn("Mara Lindqvist <mara.lindqvist@harbour.example> (SMTP)", output)

    def test_text_has_a_line_for_each_value_of_all_parts(self):
        lines = self.show(SAMPLE, "9").splitlines()

        self.assertEqual(lines[0], "Item 9: IPM.Note, item 1 of entry 19 "
                         "(Local/com.microsoft.__Messages/Inbox/message_00000.xml)")
        rows = [line.split(None, 3) for line in lines]
        self.assertIn(["0x0037001F", "PidTagSubject", "String", "Tide table for March"], rows)
        self.assertIn(["0x0E070003", "PidTagMessageFlags", "Integer32", "25 (0x19)"], rows)
        self.assertIn(["0x00390040", "PidTagClientSubmitTime", "Time", "2019-03-04T08:59:59Z"], rows)
        self.assertIn(["0x0E1F000B", "PidTagRtfInSync", "Boolean", "false"], rows)
        self.assertIn('Recipient 2, to: Tug "Ellery" <tug@harbour.example>', lines)
        with zipfile.ZipFile(SAMPLE) as archive:
            table, = [archive.read(name) for name in archive.namelist()
                      if len(archive.read(name)) == 65 and b"high water" in archive.read(name)]
        self.assertIn("Attachment 0: tide-table.csv, 65 bytes, SHA-256 " +
                      hashlib.sha256(table).hexdigest(), lines)

    def test_named_properties_and_recurrence_have_tables_of_their_own(self):
        output = self.show(SAMPLE, "3")

        self.assertRegex(output, r"\nNamed properties\n(.*\n)*"
                         r"  0x8002001F +PidLidLocation +PSETID_Appointment +0x8208 +String +Pilot station\n")
        self.assertRegex(output, r"\nRecurrence\n(.*\n)*  days +monday\n(.*\n)*"
                         r"  end date +2019-09-09\n  occurrences +27\n  first start +2019-03-11T10:00\n")

    def test_control_characters_are_replaced_in_texts(self):
        archive = self.archive(("a.xml", notes("a&#9;b\u009b31mc\u202ed")))

        self.assertIn("a b\ufffd31mc\ufffdd\n", self.show(archive, "0"))
        subjects = [row["value"] for row in self.described(archive, "0")["properties"]
                    if row["name"] == "PidTagSubject"]
        self.assertEqual(subjects, ["a\tb\u009b31mc\u202ed"])

    def test_values_wrap_on_a_terminal_and_are_whole_elsewhere(self):
        wide = "\u6f6e" * 150  # a letter of two cells
        words = "the tide tables of March " * 20
        archive = self.archive(("a.xml", notes(wide, words)))

        for columns in (30, 80, 120, 200):
            for index, text in (("0", wide), ("1", words)):
                output = self.on_terminal(columns, "show", archive, index)
                for line in output.splitlines():
                    cells = len(line) + line.count("\u6f6e")
                    self.assertLessEqual(cells, columns, line)
                shown = "".join(output.split())
                self.assertIn("".join(text.split()), shown)
                self.assertNotIn("tab\n", output)
        for index, text in (("0", wide), ("1", words.rstrip())):
            self.assertIn("  " + text, self.show(archive, index))

    def body(self, *elements, code=0):
        archive = self.archive(("m.xml", "<emails><email>" + "".join(elements) + "</email></emails>"))
        return self.show(archive, "0", "--body", code=code)

    def test_body_is_the_plain_text_in_lines(self):
        archive = self.archive(
            ("n.xml", "<notes><note><OPFNoteCopyNonHTMLText>one&#13;\ntwo\n\n&#9;three &lt;b&gt;"
             "\u009b\u65e5</OPFNoteCopyNonHTMLText></note></notes>"))

        self.assertEqual(self.show(archive, "0", "--body"),
                         "one\ntwo\n\n\tthree <b>\ufffd\u65e5\n")

    def test_body_of_html_only_is_its_text(self):
        html = ("&lt;html>&lt;head>&lt;title>T&lt;/title>&lt;style>p {}&lt;/style>&lt;/head>&lt;body>"
                "&lt;!-- no > -->&lt;h1>High&amp;nbsp;water&lt;/h1>&lt;p class=\"a>b\">It  is\n"
                "&lt;b>4.2&lt;/b> m &amp;amp; more:&lt;br>&lt;br/>&lt;ul>&lt;li>one&lt;/li>&lt;li>two&lt;/li>&lt;/ul>"
                "&lt;table>&lt;tr>&lt;td>a&lt;/td>&lt;td>b&lt;/td>&lt;/tr>&lt;tr>&lt;td>c&lt;/td>&lt;/tr>&lt;/table>"
                "&lt;pre>x\n  y&lt;/pre>&amp;#8364; &amp;#x26; &amp;bogus; 1 &lt; 2&lt;script>if (a &lt; b) {}&lt;/script>")
        expected = ("High water\n\nIt is 4.2 m & more:\n\n- one\n- two\na b\nc\n\nx\n  y\n\n"
                    "\u20ac & &bogus; 1 < 2\n")

        self.assertEqual(self.body("<OPFMessageCopyHTMLBody>", html, "</OPFMessageCopyHTMLBody>"),
                         expected)
        # Some archives hold the HTML source in the plain body too.
        self.assertEqual(self.body("<OPFMessageCopyBody>", html, "</OPFMessageCopyBody>"), expected)

    def test_plain_body_is_preferred_to_html(self):
        self.assertEqual(self.body("<OPFMessageCopyBody>plain</OPFMessageCopyBody>",
                                   "<OPFMessageCopyHTMLBody>&lt;p>rich</OPFMessageCopyHTMLBody>"),
                         "plain\n")

    def test_plain_body_that_repeats_the_html_is_treated_as_html(self):
        html = "&lt;meta content='x'>&lt;p>a&lt;/p>"

        self.assertEqual(self.body("<OPFMessageCopyBody>", html, "</OPFMessageCopyBody>",
                                   "<OPFMessageCopyHTMLBody>", html, "</OPFMessageCopyHTMLBody>"),
                         "a\n")
        self.assertEqual(self.body("<OPFMessageCopyBody>", html, "</OPFMessageCopyBody>",
                                   "<OPFMessageCopyHTMLBody>b</OPFMessageCopyHTMLBody>"),
                         "<meta content='x'><p>a</p>\n")

    def test_broken_html_is_shown_as_its_text(self):
        for html, expected in (("&lt;p>a&lt;b", "a\n"), ("a &lt;!-- b", "a\n"), ("a &lt;style>b", "a\n"),
                               ("a &lt;a href=\"b", "a\n"), ("&lt;/p>a &lt;", "a <\n"), ("&amp;#0;&amp;#xD800;&amp;#;&amp;", "\ufffd\ufffd&#;&\n")):
            with self.subTest(html):
                self.assertEqual(
                    self.body("<OPFMessageCopyHTMLBody>", html, "</OPFMessageCopyHTMLBody>"), expected)

    def test_hostile_html_is_read_in_linear_time(self):
        for part in ("&lt;", "&lt;!--", "&lt;style>", "&lt;a b=\"", "&amp;", "&lt;p>", "&lt;/", "&lt;pre>"):
            html = "x" + part * 300000
            archive = self.archive(("m.xml", "<emails><email><OPFMessageCopyHTMLBody>" + html +
                                    "</OPFMessageCopyHTMLBody></email></emails>"))
            done = self.run_program("show", archive, "0", "--body")  # within its time limit
            self.assertEqual(done.returncode, 0)
            self.assertTrue(done.stdout.startswith("x"))

    def test_item_without_text_is_reported(self):
        archive = self.archive(("a.xml", notes("a")))

        done = self.run_program("show", archive, "0", "--body")

        self.assertEqual((done.returncode, done.stdout), (1, ""))
        self.assertIn("no text", done.stderr)

    def test_index_past_the_end_is_reported_with_the_count(self):
        archive = self.archive(("a.xml", notes("a", "b")), ("b.xml", notes("c")))

        for index in ("3", "18446744073709551615"):
            done = self.run_program("show", archive, index)
            self.assertEqual((done.returncode, done.stdout), (1, ""))
            self.assertIn("no item %s: the archive has 3, numbered from 0" % index, done.stderr)

    def test_wrong_place_is_reported(self):
        archive = self.archive(("a.xml", notes("a", "b")), ("b.txt", "text"),
                               ("Categories.xml", "<categories><category/></categories>"))

        for place, word in (("0:3", "no item at that place"), ("0:0", "number 0"), ("7:1", "no item at that place"),
                            ("1:1", "entry 1 (b.txt)"), ("2:1", "not a document of")):
            with self.subTest(place):
                done = self.run_program("show", archive, "--at", place)
                self.assertEqual((done.returncode, done.stdout), (1, ""))
                self.assertIn(word, done.stderr)

    def test_empty_item_is_shown(self):
        archive = self.archive(("a.xml", "<notes><note></note></notes>"))

        self.assertEqual(self.described(archive, "--at", "0:1")["class"], "IPM.StickyNote")
        self.assertEqual(self.described(archive, "0")["class"], "IPM.StickyNote")

    def test_missing_attachment_is_reported_and_the_rest_is_shown(self):
        archive = self.archive(
            ("m.xml", "<emails><email><OPFMessageCopyAttachmentList><messageAttachment "
             "OPFAttachmentName='a.txt' OPFAttachmentURL='gone'/></OPFMessageCopyAttachmentList>"
             "</email></emails>"))

        done = self.run_program("show", archive, "0")

        self.assertEqual(done.returncode, 1)
        self.assertIn("Attachment 0: a.txt, no contents\n", done.stdout)
        self.assertIn("gone", done.stderr)
        attachment, = self.described(archive, "0", code=1)["attachments"]
        self.assertEqual((attachment["name"], attachment["size"], attachment["sha256"]),
                         ("a.txt", None, None))

    def test_truncated_document_is_reported_and_shown_up_to_its_end(self):
        archive = self.archive(("a.xml", "<notes>" + note("1") + "<note><OPFNoteCopyTitle>th"))

        done = self.run_program("show", archive, "1")

        self.assertEqual(done.returncode, 1)
        self.assertIn("PidTagSubject", done.stdout)
        self.assertIn("entry 0 (a.xml)", done.stderr)

    def test_long_attachment_leaves_no_temporary_file(self):
        data = bytes(range(256)) * (400 << 10)  # 100 MiB
        archive = self.archive(
            ("m.xml", "<emails><email><OPFMessageCopyAttachmentList><messageAttachment "
             "OPFAttachmentURL='a.bin'/></OPFMessageCopyAttachmentList></email></emails>"),
            ("a.bin", data))
        folder = self.path("tmp")
        os.mkdir(folder)

        done = self.run_program("show", archive, "0", "--json", env=dict(os.environ, TMPDIR=folder))

        attachment, = json.loads(done.stdout)["attachments"]
        self.assertEqual((attachment["size"], attachment["sha256"]),
                         (len(data), hashlib.sha256(data).hexdigest()))
        self.assertEqual(os.listdir(folder), [])
        done = self.run_program("show", archive, "0", env=dict(os.environ, TMPDIR="/nowhere/at/all"))
        self.assertEqual((done.returncode, done.stdout), (5, ""))
        self.assertIn("temporary file", done.stderr)

    def test_wrong_archives_are_reported_with_their_exit_codes(self):
        for what, path, code, word in wrong_archives(self):
            for arguments in (["0"], ["--at", "0:1"]):
                with self.subTest(what, arguments=arguments):
                    done = self.run_program("show", path, *arguments)
                    self.assertEqual((done.returncode, done.stdout), (code, ""))
                    self.assertIn(path, done.stderr)
                    self.assertIn(word, done.stderr)

    def test_wrong_arguments_are_reported_in_one_line(self):
        archive = self.archive(("a.xml", notes("a")))
        for arguments, word in (([], "--at"), (["one"], "one"), (["-1"], ""), (["0", "1"], ""),
                                (["--at", "1"], "ENTRY:ITEM"), (["0", "--at", "0:1"], "--at"),
                                (["0", "--json", "--body"], "--json")):
            with self.subTest(arguments=arguments):
                done = self.run_program("show", archive, *arguments)
                self.assertEqual((done.returncode, done.stdout), (2, ""))
                self.assertEqual(len(done.stderr.splitlines()), 1)
                self.assertIn(word, done.stderr)

    def test_help_has_the_options_and_examples(self):
        done = self.run_program("show", "--help")

        self.assertEqual(done.returncode, 0)
        for word in ("ARCHIVE", "N", "--at", "--json", "--body", "Examples:"):
            self.assertIn(word, done.stdout)

    def test_full_disk_is_reported(self):
        archive = self.archive(("a.xml", notes("a")))

        for arguments in ([], ["--json"]):
            with open("/dev/full", "wb") as full:
                done = self.run_program("show", archive, "0", *arguments, stdout=full)
            self.assertEqual(done.returncode, 5)
            self.assertIn("No space left", done.stderr)


if __name__ == "__main__":
    unittest.main()
