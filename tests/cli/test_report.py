"""olmkit report."""

import datetime
import html.parser
import json
import os
import re
import resource
import signal
import stat
import subprocess
import sys
import time
import unittest

import counting
from documents import APPOINTMENT, CONTACT, GROUP, TASK, mail
from program import (PROGRAM, REAL_ARCHIVE, SAMPLE, ProgramTest, needs_real_archive, notes,
                     wrong_archives)

SOURCE = os.environ["OLMKIT_SOURCE_DIR"]
sys.path.insert(0, os.path.join(SOURCE, "tests", "interop"))
from random_items import make_archive  # noqa: E402

KINDS = ["email", "appointment", "contact", "group", "task", "note", "unknown"]
VOID = {"meta", "input", "br", "hr", "img", "link"}
POLICY = ("default-src 'none'; style-src 'unsafe-inline'; script-src 'unsafe-inline'; "
          "base-uri 'none'; form-action 'none'")
# Texts that would end an element, a comment, an attribute or a string.
HOSTILE = ["</script><script>alert(1)</script>", "<!--<script>", "-->", "<img src=x onerror=alert(1)>",
           "\"' onmouseover='alert(1)", "&lt;b&gt; &amp;amp; &#60;i&#62;", "</title></style></table>",
           "]]>", "{{rows}} {{name}}", "\\u003c \\", "a\u202eb\u2066c\u2069", "x\u2028y\u2029z",
           "\x85\x9b31m\x7f", "\u200f\ufeff\U0001f30a"]


def printable(text):
    """Returns a text with control characters and direction marks replaced."""
    text = re.sub("[\t-\r\x85\u2028\u2029]", " ", text)
    return re.sub("[\0-\x1f\x7f-\x9f\u202a-\u202e\u2066-\u2069]", "\ufffd", text)


def seconds(text):
    """Returns a date in the usual form as seconds since 1970, any other as None."""
    if not re.fullmatch(r"\d{4}-\d\d-\d\dT\d\d:\d\d:\d\d", text):
        return None
    try:
        moment = datetime.datetime.fromisoformat(text).replace(tzinfo=datetime.timezone.utc)
    except ValueError:
        return None
    return round((moment - datetime.datetime(1970, 1, 1, tzinfo=datetime.timezone.utc))
                 .total_seconds())


class Page(html.parser.HTMLParser):
    """A page as a browser parses it: balanced elements, script elements up to their end tag."""

    def __init__(self, text):
        super().__init__()
        self.open = []
        self.elements = []  # (tag, attributes)
        self.texts = {}  # of elements with an id, with the text of all elements in them
        self.blocks = []  # the JSON text of each block of rows
        self.feed(text)
        self.close()
        assert not self.open, self.open
        self.tables = json.loads(self.texts["tables"])
        self.rows = [row for block in self.blocks for row in json.loads(block)]

    def handle_starttag(self, tag, attrs):
        attributes = dict(attrs)
        self.elements.append((tag, attributes))
        if tag in VOID:
            return
        name = "rows" if attributes.get("class") == "rows" else attributes.get("id")
        self.open.append((tag, name))
        if name == "rows":
            self.blocks.append("")
        elif name:
            self.texts[name] = ""
        if tag in ("th", "td", "summary"):
            self.handle_data(" ")  # separates cells

    def handle_endtag(self, tag):
        assert self.open and self.open[-1][0] == tag, (tag, self.open)
        self.open.pop()

    def handle_data(self, data):
        if self.open and self.open[-1] == ("script", "rows"):
            self.blocks[-1] += data
        for _, name in self.open:
            if name in self.texts:
                self.texts[name] += data

    def handle_comment(self, data):
        raise AssertionError(f"unexpected comment: {data}")

    def cells(self, name):
        """Returns the words of a section, separated by single blanks."""
        return " ".join(self.texts[name].split())


class ReportTest(ProgramTest):
    def report(self, archive, *arguments, code=0, name="page.html", **options):
        done = self.run_program("report", archive, "-o", name, *arguments, **options)
        self.assertEqual(done.returncode, code, done.stderr)
        return done

    def page(self, archive, *arguments, **options):
        self.report(archive, *arguments, **options)
        return Page(self.bytes_of(self.path("page.html")).decode("utf-8"))

    def listed(self, archive, *arguments):
        done = self.run_program("list", archive, "--format", "jsonl", "--columns",
                                "index,kind,folder,date,sender,organizer,label,to,cc", *arguments)
        return [json.loads(line) for line in done.stdout.split("\n")[:-1]]

    def assert_rows_are_listed(self, page, archive, *arguments):
        rows = self.listed(archive, *arguments)
        self.assertEqual(len(page.rows), len(rows))
        self.assertEqual(page.tables["items"], len(rows))
        for got, row in zip(page.rows, rows):
            index, kind, folder, date, sender, label, to, cc = got
            self.assertEqual(index, row["index"])
            self.assertEqual("contact" if KINDS[kind] == "group" else KINDS[kind], row["kind"])
            self.assertEqual(page.tables["folders"][folder][1], printable(row["folder"]))
            self.assertEqual([sender, label, to, cc],
                             [printable(row["sender"] or row["organizer"]), printable(row["label"]),
                              printable(row["to"]), printable(row["cc"])])
            if seconds(row["date"]) is not None:
                self.assertEqual(date, seconds(row["date"]))
            elif not isinstance(date, int):
                self.assertEqual(date, printable(row["date"]))

    def assert_nothing_is_written(self, *names):
        self.assertEqual([name for name in sorted(os.listdir(self.folder))
                          if name.startswith(".olmkit") or name.endswith(".html")], list(names))

    def test_rows_are_those_of_the_list(self):
        self.assert_rows_are_listed(self.page(SAMPLE), SAMPLE)

    @needs_real_archive
    def test_rows_of_the_real_archive_are_those_of_the_list(self):
        self.assert_rows_are_listed(self.page(REAL_ARCHIVE), REAL_ARCHIVE)

    def test_random_archives_are_shown_as_they_are_listed(self):
        for seed in range(6):
            with self.subTest(seed=seed):
                archive = self.path(f"random-{seed}.olm")
                make_archive(archive, seed, list(counting.ROOTS.values()), 12)
                done = self.run_program("report", archive, "-o", "page.html")
                page = Page(self.bytes_of(self.path("page.html")).decode("utf-8"))
                self.assert_rows_are_listed(page, archive)
                info = json.loads(self.run_program("info", archive, "--json").stdout)
                self.assertEqual(done.returncode, 1 if info["damaged"] else 0)
                for place, kind in enumerate(info["kinds"]):
                    self.assertEqual(kind["kind"], KINDS[place])
                    self.assertEqual(sum(row[1] == place for row in page.rows), kind["listed"])

    def test_random_trees_of_folders_are_shown(self):
        for seed in range(200, 220):
            with self.subTest(seed=seed):
                archive = counting.random_archive(self, seed)
                info = json.loads(self.run_program("info", archive, "--json").stdout)
                done = self.run_program("report", archive, "-o", "page.html")
                self.assertEqual(done.returncode, 1 if info["damaged"] else 0)
                page = Page(self.bytes_of(self.path("page.html")).decode("utf-8"))
                self.assert_rows_are_listed(page, archive)
                if not info["damaged"]:
                    counts = counting.count_items(archive)
                    self.assertEqual([sum(row[1] == place for row in page.rows)
                                      for place in range(6)],
                                     [counts[kind][1] for kind in KINDS[:6]])
                folders = [(folder["path"] or "(in no folder)").split("/")[-1] +
                           f" {folder['total']}" for folder in info["folders"]]
                self.assertEqual(page.cells("folders"), " ".join(["Folders", *folders]))
                paths = [folder["path"] for folder in info["folders"]]
                for place, path in page.tables["folders"]:
                    self.assertEqual(paths[place], path)

    def test_every_block_of_rows_is_complete(self):
        archive = self.archive(("n.xml", notes(*[f"note {n}" for n in range(8001)])))

        page = self.page(archive)

        self.assertEqual([len(json.loads(block)) for block in page.blocks], [4000, 4000, 1])
        self.assert_rows_are_listed(page, archive)

    def test_page_describes_the_sample_without_a_script(self):
        page = self.page(SAMPLE)

        self.assertEqual(page.cells("kinds"), "Kinds Kind Items Earliest Latest "
                         "email 4 2019-03-04 2019-03-07 appointment 2 2019-03-01 2019-03-07 "
                         "contact 2 2019-03-04 2019-03-05 group 1 2019-03-06 2019-03-06 "
                         "task 2 2019-03-08 2019-03-09 note 2 2019-03-02 2019-03-03")
        self.assertEqual(page.cells("folders"), "Folders Accounts 0 Local 13 Address Book 3 "
                         "Calendar 2 Notes 2 Tasks 2 com.microsoft.__Messages 4 Entwu\u0308rfe 1 "
                         "Inbox 2 Sent Items 1")
        self.assertIn("2019-03 13", page.cells("months"))
        text = self.bytes_of(self.path("page.html")).decode("utf-8")
        facts = re.search(r'<ul class="facts">(.*?)</ul>', text, re.DOTALL)[1]
        self.assertEqual(re.findall("<li>(.*?)</li>", facts),
                         ["13 items", "2019-03-01 to 2019-03-09", "2 attachments", "23,895 bytes",
                          "25 entries"])
        self.assertIn("All documents are complete, and no attachment is missing", text)

    @needs_real_archive
    def test_real_archive_has_the_counts_of_independent_readers(self):
        page = self.page(REAL_ARCHIVE)

        self.assertEqual(page.cells("kinds"), "Kinds Kind Items Earliest Latest "
                         "email 7 2006-01-11 2018-06-21 appointment 8 2018-06-21 2018-06-21 "
                         "contact 5 2018-06-16 2018-06-21 group 2 2018-06-21 2018-06-22 "
                         "task 5 2018-06-21 2018-06-21 note 1 2018-06-21 2018-06-21")
        self.assertIn("Local 28", page.cells("folders"))
        self.assertEqual([bar[0] for bar in page.tables["bars"]], ["2006-01", "", "2018-06"])
        self.assertIn("2006-01 1 2018-06 27", page.cells("months"))
        self.assertIn("tom@khubla.com 0 2", page.cells("people"))

    def test_page_needs_nothing_but_itself(self):
        page = self.page(SAMPLE)

        for tag, attributes in page.elements:
            self.assertNotIn(tag, {"img", "link", "iframe", "object", "embed", "base", "form", "a"})
            for name in attributes:
                self.assertNotIn(name, {"src", "href", "srcset", "action", "style"})
                self.assertFalse(name.startswith("on"), name)
        self.assertIn(("meta", {"http-equiv": "Content-Security-Policy", "content": POLICY}),
                      page.elements)
        self.assertIn(("meta", {"charset": "utf-8"}), page.elements)
        self.assertIn(("html", {"lang": "en"}), page.elements)
        text = self.bytes_of(self.path("page.html")).decode("utf-8")
        self.assertTrue(text.startswith("<!DOCTYPE html>\n"))
        self.assertEqual(re.findall(r"https?:[^\"']*", text), ["http://www.w3.org/2000/svg"])
        self.assertNotRegex(text, r"url\(|@import|innerHTML|outerHTML|insertAdjacentHTML|eval\(")

    def test_hostile_texts_stay_texts(self):
        plain = self.page(self.archive(("Local/In/m.xml", mail("s", "a@x", "2019-03-04")),
                                       ("Local/Notes/n.xml", notes("n")), name="plain.olm"))
        for number, text in enumerate(HOSTILE):
            with self.subTest(text):
                # A "/" in an entry's name would begin another folder.
                folder = text.replace("/", "|").replace("\\", "|")
                # In a sender, ";" would separate two of them.
                attribute = mail("s", "SENDER", "2019-03-04").replace(
                    "SENDER", text.replace(";", ",").replace("&", "&amp;").replace("<", "&lt;").replace('"', "&quot;"))
                shown = attribute.replace(">s<", ">" + text.replace("&", "&amp;").replace("<", "&lt;")
                                          .replace(">", "&gt;") + "<")
                archive = self.archive((f"Local/{folder}/m.xml", shown),
                                       ("Local/Notes/n.xml", notes("n")), name=f"{number} {folder}.olm")

                page = self.page(archive)

                self.assert_rows_are_listed(page, archive)
                self.assertIn(printable(text), [page.rows[0][5], page.rows[1][5]])
                # The same elements as for a harmless archive, including the script elements.
                self.assertEqual([(tag, sorted(attributes)) for tag, attributes in page.elements],
                                 [(tag, sorted(attributes)) for tag, attributes in plain.elements])
                contents = self.bytes_of(self.path("page.html")).decode("utf-8")
                self.assertIn("".join(printable(folder).split()), "".join(page.cells("folders").split()))
                self.assertIsNone(re.search("[\0-\x09\x0b-\x1f\x7f-\x9f\u2028-\u202e\u2066-\u2069]",
                                            contents))
                for block in page.blocks + [page.texts["tables"]]:
                    self.assertNotIn("<", block)

    def test_lone_surrogates_and_broken_names_become_replacement_characters(self):
        document = mail("half", "a@x").encode("utf-8").decode().replace("half", "\ud83c half")
        contents = b"\xff\xfe" + document.encode("utf-16-le", "surrogatepass")
        archive = self.archive(("Local/m.xml", contents), ("n.xml", notes("n")))

        done = self.run_program("report", archive, "-o", "page.html")

        self.assertIn(done.returncode, (0, 1))
        text = self.bytes_of(self.path("page.html")).decode("utf-8")  # strict
        self.assert_rows_are_listed(Page(text), archive)

    def test_same_archive_always_has_the_same_bytes(self):
        self.report(SAMPLE)
        expected = self.bytes_of(self.path("page.html"))
        os.mkdir(self.path("sub"))
        copy = self.write("sub/sample.olm", self.bytes_of(SAMPLE))
        for changed in ({}, {"TZ": "Asia/Kathmandu"}, {"LC_ALL": "de_DE.UTF-8", "LANG": "de_DE.UTF-8"}):
            with self.subTest(changed):
                self.report(copy, name="sub/other.html", env={**os.environ, **changed})
                self.assertEqual(self.bytes_of(self.path("sub/other.html")), expected)

    def test_archive_may_come_through_standard_input(self):
        archive = self.archive(("n.xml", notes("one")))
        self.report(archive)
        expected = self.bytes_of(self.path("page.html")).decode()

        with open(archive, "rb") as file:
            self.report("-", stdin=file)

        self.assertEqual(self.bytes_of(self.path("page.html")).decode(),
                         expected.replace("mail.olm", "standard input"))

    def test_filters_apply_to_rows_and_counts(self):
        page = self.page(SAMPLE, "--kind", "email", "--since", "2019-03-05")

        self.assert_rows_are_listed(page, SAMPLE, "--kind", "email", "--since", "2019-03-05")
        self.assertEqual(len(page.rows), 3)
        self.assertIn("email 3 2019-03-05", page.cells("kinds"))
        self.assertIn("note 0", page.cells("kinds"))
        self.assertIn("Local 3", page.cells("folders"))
        self.assertIn("3 items of the 13 in the archive", self.bytes_of(self.path("page.html")).decode())

    def test_groups_and_organizers_are_shown(self):
        page = self.page(self.archive(("c.xml", CONTACT), ("g.xml", GROUP), ("a.xml", APPOINTMENT),
                                      ("t.xml", TASK)))

        self.assertEqual([(KINDS[row[1]], row[4], row[5]) for row in page.rows],
                         [("contact", "", "Ann"), ("group", "", "Crew"),
                          ("appointment", "Bo@quay", "Ebb"), ("task", "", "Row")])

    def test_correspondents_are_counted_once_per_item_regardless_of_case(self):
        def addressed(sender, to, cc=""):
            def addresses(tag, names):
                return f"<{tag}>" + "".join(
                    f'<emailAddress OPFContactEmailAddressAddress="{name}"/>'
                    for name in names.split()) + f"</{tag}>"
            return ("<email>" + addresses("OPFMessageCopyFromAddresses", sender) +
                    addresses("OPFMessageCopyToAddresses", to) +
                    addresses("OPFMessageCopyCCAddresses", cc) + "</email>")
        archive = self.archive(("m.xml", "<emails>" + addressed("a@x", "b@x c@x", "B@X") +
                                addressed("A@x", "b@x") + addressed("b@x", "b@x") + "</emails>"))

        page = self.page(archive)

        self.assertEqual(page.cells("people"), "Correspondents Address or name Sent Received "
                         "b@x 1 3 a@x 2 0 c@x 0 1")
        self.assertEqual(page.tables["people"], ["b@x", "a@x", "c@x"])

    def test_time_line_is_by_month_or_year_and_shortens_long_gaps(self):
        def bars(*dates):
            documents = [(f"{n}.xml", mail(sent=date)) for n, date in enumerate(dates)]
            return self.page(self.archive(*documents)).tables["bars"]

        self.assertEqual(bars("", "soon"), [])
        self.assertEqual(bars("2018-12-31T23:59:59", "2019-01-01", "2019-03-31T12:00:00"), [
            ["2018-12", 1543622400, 1546300800, 1], ["2019-01", 1546300800, 1548979200, 1],
            ["2019-02", 1548979200, 1551398400, 0], ["2019-03", 1551398400, 1554076800, 1]])
        self.assertEqual([bar[::3] for bar in bars("1601-01-01", "2019-03-01", "2019-05-01")],
                         [["1601-01", 1], ["", 0], ["2019-03", 1], ["2019-04", 0], ["2019-05", 1]])
        years = bars("0001-01-01", *[f"{year}-{month:02}-01" for year in range(2000, 2012)
                                     for month in (1, 7)])
        self.assertEqual([bar[::3] for bar in years],
                         [["0001", 1], ["", 0], *[[str(year), 2] for year in range(2000, 2012)]])
        self.assertEqual(years[-1][1:3], [1293840000, 1325376000])

    def test_empty_archive_has_a_page(self):
        page = self.page(self.archive(("Categories.xml", "<categories/>")))

        self.assertEqual((page.rows, page.blocks, page.tables["folders"], page.tables["bars"]),
                         ([], [], [], []))
        self.assertIn("0 items", self.bytes_of(self.path("page.html")).decode())

    def test_damage_is_in_the_page_and_in_the_exit_code(self):
        archive = self.archive(("a.xml", notes("whole")), ("b.xml", notes("one", "two")[:-12]))

        done = self.report(archive, code=1)

        self.assertIn("entry 1 (b.xml)", done.stderr)
        text = self.bytes_of(self.path("page.html")).decode()
        self.assertRegex(text, r"damaged or unreadable:</bdi>\n<bdi>  entry 1 \(b.xml\): ")
        self.assertNotIn("All documents are complete", text)
        self.assert_rows_are_listed(Page(text), archive)

    def test_missing_attachment_is_in_the_page_and_in_the_exit_code(self):
        archive = self.archive(("m.xml", "<emails><email><OPFMessageCopyAttachmentList>"
                                '<a OPFAttachmentURL="gone.bin" OPFAttachmentName="n"/>'
                                "</OPFMessageCopyAttachmentList></email></emails>"))

        done = self.report(archive, code=1)

        self.assertIn("page.html says what is missing", done.stderr)
        self.assertIn("1 attachment is missing from the archive.",
                      self.bytes_of(self.path("page.html")).decode())

    def test_wrong_archives_leave_no_page(self):
        for title, archive, code, word in wrong_archives(self):
            with self.subTest(title):
                done = self.report(archive, code=code)
                self.assertIn(word, done.stderr)
                self.assert_nothing_is_written()

    def test_existing_page_is_replaced(self):
        archive = self.archive(("n.xml", notes("new")))
        self.write("page.html", b"old" * 100000)

        self.report(archive)

        self.assertTrue(self.bytes_of(self.path("page.html")).startswith(b"<!DOCTYPE"))
        self.assert_nothing_is_written("page.html")

    def test_existing_page_stays_when_the_new_one_fails(self):
        self.write("page.html", b"old")

        self.report(self.write("text.olm", b"no archive"), code=4)

        self.assertEqual(self.bytes_of(self.path("page.html")), b"old")
        self.assert_nothing_is_written("page.html")

    def test_output_that_can_not_be_written_is_reported(self):
        archive = self.archive(("n.xml", notes("one")))
        os.mkdir(self.path("folder"))
        os.mkfifo(self.path("pipe"))
        for name, code, word in (("folder", 5, "directory"), ("gone/page.html", 5, "No such file"),
                                 ("mail.olm/page.html", 5, "Not a directory"), ("pipe", 5, "Invalid"),
                                 ("mail.olm", 2, "archive itself"),
                                 ("-", 2, "name of a file"), ("", 2, "name of a file"),
                                 ("folder/", 2, "name of a file")):
            with self.subTest(name):
                before = self.bytes_of(archive)
                self.assertIn(word, self.report(archive, code=code, name=name).stderr)
                self.assertEqual(self.bytes_of(archive), before)
                self.assert_nothing_is_written()
        self.assertTrue(stat.S_ISFIFO(os.stat(self.path("pipe")).st_mode))
        self.assertIn("--output", self.run_program("report", archive).stderr)

    def test_full_disk_leaves_nothing(self):
        self.small_disk()
        archive = self.archive(("n.xml", notes(*["x" * 500 + str(n) for n in range(2000)])))

        done = self.report(archive, code=5, name="disk/page.html")

        self.assertIn("disk/page.html can't be written: No space left", done.stderr)
        self.assertEqual(os.listdir(self.path("disk")), [])

    def test_limit_on_file_sizes_leaves_nothing(self):
        archive = self.archive(("n.xml", notes("one")))

        done = self.report(archive, code=5, preexec_fn=lambda: resource.setrlimit(
            resource.RLIMIT_FSIZE, (20000, 20000)))

        self.assertIn("File too large", done.stderr)
        self.assert_nothing_is_written()

    def test_interrupted_run_leaves_nothing(self):
        archive = self.archive(*[(f"{part}.xml", notes(*[f"note {n}" for n in range(20000)]))
                                 for part in range(10)])
        with subprocess.Popen([PROGRAM, "report", archive, "-o", self.path("page.html")],
                              stdout=subprocess.PIPE, stderr=subprocess.PIPE) as process:
            deadline = time.monotonic() + 60
            while not any(name.startswith(".olmkit") and os.path.getsize(self.path(name)) > 0
                          for name in os.listdir(self.folder)):
                self.assertLess(time.monotonic(), deadline)
                self.assertIsNone(process.poll())
            process.send_signal(signal.SIGINT)
            self.assertEqual(process.wait(timeout=30), 130)
            self.assertEqual(process.stderr.read(), b"olmkit: interrupted\n")
        self.assert_nothing_is_written()

    def test_summary_is_printed_unless_quiet(self):
        archive = self.archive(("n.xml", notes("one", "two")))

        self.assertEqual(self.report(archive).stdout, "2 items shown in page.html\n")
        self.assertEqual(self.report(archive, "--quiet").stdout, "")

    def test_full_standard_output_is_reported(self):
        with open("/dev/full", "wb") as full:
            self.report(self.archive(("n.xml", notes("one"))), code=5, stdout=full)

        self.assert_nothing_is_written("page.html")


if __name__ == "__main__":
    unittest.main()
