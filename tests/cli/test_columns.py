"""The columns of olmkit list and the order of its rows."""

import csv
import io
import json
import random
import subprocess
import time
import unittest

from documents import APPOINTMENT, CONTACT, mail
from program import PROGRAM, ProgramTest, note, notes
from test_list import KEYS

COLUMNS = KEYS + ["date", "label", "folder"]


class ColumnsTest(ProgramTest):
    def listed(self, archive, *arguments):
        done = self.run_program("list", archive, *arguments)
        self.assertEqual((done.returncode, done.stderr), (0, ""))
        return done.stdout

    def column(self, archive, key, *arguments):
        text = self.listed(archive, "--format", "jsonl", "--columns", key, *arguments)
        return [json.loads(line)[key] for line in text.split("\n")[:-1]]

    def refusal(self, *arguments):
        archive = self.archive(("a.xml", notes("a")), name="refused.olm")
        done = self.run_program("list", archive, *arguments)
        self.assertEqual((done.returncode, done.stdout), (2, ""))
        return done.stderr

    def test_columns_appear_in_the_order_requested_in_each_format(self):
        archive = self.archive(("In/m.xml", mail("Tide, \"high\"", "f@x", "2019-01-02")),
                               ("c.xml", CONTACT))
        arguments = ["--columns", "label,index,folder,date"]

        self.assertEqual(self.listed(archive, *arguments, "--format", "jsonl"),
                         '{"label":"Tide, \\"high\\"","index":0,"folder":"In","date":"2019-01-02"}\n'
                         '{"label":"Ann","index":1,"folder":"","date":""}\n')
        self.assertEqual(self.listed(archive, *arguments, "--format", "csv"),
                         'label,index,folder,date\r\n"Tide, ""high""",0,In,2019-01-02\r\n'
                         'Ann,1,,\r\n')
        self.assertEqual(
            self.listed(archive, *arguments),
            f"{'NAME':44}  {'INDEX':7}  {'FOLDER':28}  DATE\n"
            f"{'Tide, ' + chr(34) + 'high' + chr(34):44}  {0:7}  {'In':28}  2019-01-02\n"
            f"{'Ann':44}  {1:7}\n")

    def test_every_column_has_its_value_in_each_format(self):
        archive = self.archive(("In/m.xml", mail("Tide", "f@x", "2019-01-02T03:04:05",
                                                 "2019-01-03T03:04:05", "2019-01-04T03:04:05")),
                               ("c.xml", CONTACT), ("a.xml", APPOINTMENT))
        usual = [json.loads(line) for line in
                 self.listed(archive, "--format", "jsonl").split("\n")[:-1]]
        more = [("2019-01-02T03:04:05", "Tide", "In"), ("", "Ann", ""), ("", "Ebb", "")]
        for row, (date, label, folder) in zip(usual, more, strict=True):
            row.update(date=date, label=label, folder=folder)

        for key in COLUMNS:
            with self.subTest(key=key):
                self.assertEqual(self.column(archive, key), [row[key] for row in usual])
                text = self.listed(archive, "--format", "csv", "--columns", key)
                self.assertEqual(list(csv.reader(io.StringIO(text, newline=""), strict=True)),
                                 [[key]] + [[str(row[key])] for row in usual])
                lines = self.listed(archive, "--columns", key).split("\n")[1:-1]
                self.assertEqual([line.strip() for line in lines], [str(row[key]) for row in usual])

    def test_columns_may_be_given_in_several_options(self):
        archive = self.archive(("a.xml", notes("a")))

        self.assertEqual(self.listed(archive, "--format", "jsonl", "--columns", "kind",
                                     "--columns", "item,entry"),
                         '{"kind":"note","item":1,"entry":0}\n')

    def test_unknown_column_is_reported_with_the_known_columns(self):
        for arguments in (["--columns", "index,sbuject"], ["--sort", "sbuject"],
                          ["--sort", "sbuject:desc"]):
            message = self.refusal(*arguments)
            self.assertIn("'sbuject'", message)
            for key in COLUMNS:
                self.assertIn(key, message)
        self.assertIn("''", self.refusal("--columns", ""))

    def test_column_given_twice_is_refused(self):
        self.assertIn("'index' is given twice", self.refusal("--columns", "index,kind,index"))
        self.assertIn("twice", self.refusal("--columns", "kind", "--columns", "kind"))

    def test_wrong_order_is_refused(self):
        for text in ("index:up", "index:", "index:desc:desc", "index:DESC", ":desc", ""):
            with self.subTest(text=text):
                self.assertIn("--sort", self.refusal("--sort", text))

    def test_rows_are_sorted_by_any_column_in_both_directions(self):
        source = random.Random(5)
        entries = []
        for place in range(60):
            sent = f"2019-0{source.randint(1, 9)}-0{source.randint(1, 3)}"
            entries.append((f"{source.choice('AbC')}/{place}.xml",
                            mail(source.choice(["x", "Y", "z", ""]), source.choice("pQr"), sent)))
        archive = self.archive(*entries, ("N.xml", notes(*map(str, range(12)))))
        rows = [json.loads(line) for line in
                self.listed(archive, "--format", "jsonl", "--columns",
                            ",".join(COLUMNS)).split("\n")[:-1]]

        for key in COLUMNS:
            def rank(row, key=key):
                return row[key].casefold() if isinstance(row[key], str) else row[key]
            for order, isReverse in ((key, False), (key + ":desc", True)):
                with self.subTest(order=order):
                    expected = [row["index"] for row in sorted(rows, key=rank, reverse=isReverse)]
                    self.assertEqual(self.column(archive, "index", "--sort", order), expected)

    def test_numbers_are_sorted_by_value(self):
        archive = self.archive(("a.xml", notes(*map(str, range(120)))))

        self.assertEqual(self.column(archive, "item", "--sort", "item:desc"),
                         list(range(120, 0, -1)))
        self.assertEqual(self.column(archive, "index", "--sort", "index"), list(range(120)))

    def test_dates_are_sorted_by_moment_after_those_that_can_not_be_read(self):
        dates = ["2019-06-02T00:00:00+02:00", "2019-06-01T23:00:00Z", "soon", "20190601T220001",
                 "2019-06-01T22:00:00.5", "", "2019-06-01"]
        archive = self.archive(*((f"{place}.xml", mail(sent=date, modified="2019"))
                                 for place, date in enumerate(dates)))

        self.assertEqual(self.column(archive, "index", "--sort", "sent"), [2, 5, 6, 0, 4, 3, 1])
        self.assertEqual(self.column(archive, "index", "--sort", "sent:desc"),
                         [1, 3, 4, 0, 6, 2, 5])

    def test_texts_are_sorted_without_regard_to_case_and_normal_form(self):
        titles = ["b", "\u00c9", "B", "a", "e\u0301", "e", "\u00e9", "A", "stra\u00dfe", "STRASSE"]
        archive = self.archive(("a.xml", notes(*titles)))

        self.assertEqual(self.column(archive, "subject", "--sort", "subject"),
                         ["a", "A", "b", "B", "e", "stra\u00dfe", "STRASSE", "\u00c9", "e\u0301",
                          "\u00e9"])

    def test_sorting_works_with_filters_columns_and_formats(self):
        archive = self.archive(("a.xml", notes("b 1", "a 2", "c", "a 3", "b 4")))
        arguments = ["--subject", " ", "--sort", "label:desc", "--columns", "label"]

        self.assertEqual(self.listed(archive, *arguments, "--format", "csv"),
                         "label\r\nb 4\r\nb 1\r\na 3\r\na 2\r\n")
        self.assertEqual(self.listed(archive, *arguments), "NAME\nb 4\nb 1\na 3\na 2\n")

    def test_sorted_rows_of_a_damaged_archive_are_complete(self):
        archive = self.archive(("a.xml", "<notes>" + note("b") + note("a") +
                                "<note><OPFNoteCopyTitle>c"))

        done = self.run_program("list", archive, "--sort", "label:desc", "--columns", "label")

        self.assertEqual((done.returncode, done.stdout), (1, "NAME\nc\nb\na\n"))

    def test_sorted_list_ends_quietly_when_its_reader_stops(self):
        archive = self.archive(("a.xml", notes(*map(str, range(50000)))))

        with subprocess.Popen([PROGRAM, "list", archive, "--sort", "index:desc"],
                              stdout=subprocess.PIPE, stderr=subprocess.PIPE) as process:
            process.stdout.readline()
            self.assertEqual(process.stdout.readline().split()[0], b"49999")
            process.stdout.close()
            process.wait(timeout=30)
            self.assertEqual(process.stderr.read(), b"")
        self.assertEqual(process.returncode, 0)

    def test_full_disk_is_reported_for_a_sorted_list(self):
        archive = self.archive(("a.xml", notes("1")))

        with open("/dev/full", "wb") as full:
            done = self.run_program("list", archive, "--sort", "label", stdout=full)

        self.assertEqual(done.returncode, 5)

    def test_matching_row_is_written_while_later_rows_are_skipped(self):
        # The second row is still buffered when only rows follow that don't match.
        slow = notes("take 1", "take 2", *["x" * 40] * 300000)
        archive = self.archive(("a.xml", slow))

        with subprocess.Popen([PROGRAM, "list", archive, "--subject", "take", "--format", "csv",
                               "--columns", "label"], stdout=subprocess.PIPE) as process:
            started = time.monotonic()
            lines = [process.stdout.readline() for _ in range(3)]
            early = time.monotonic() - started
            self.assertEqual(process.stdout.read(), b"")
            process.wait(timeout=60)
            whole = time.monotonic() - started
        self.assertEqual(lines, [b"label\r\n", b"take 1\r\n", b"take 2\r\n"])
        self.assertLess(early, whole / 2)


if __name__ == "__main__":
    unittest.main()
