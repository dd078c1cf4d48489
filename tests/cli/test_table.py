"""The table of olmkit list, on a terminal and without one."""

import unicodedata
import unittest

from documents import mail
from program import ProgramTest, notes

FAMILY = "\U0001f469\u200d\U0001f469\u200d\U0001f467"
TEXTS = {
    "plain": "Tide table for the harbour " * 20,
    "wide": "\u6f6e\u6c50\u8868" * 100,
    "half wide": "a\u6f6e" * 100,
    "combining": "e\u0301\u0323" * 300,
    "enclosing": "a\u20dd" * 300,
    "spacing marks": "\u0915\u093e" * 200,
    "joined Korean": unicodedata.normalize("NFD", "\ud55c\uae00") * 100,
    "families": FAMILY * 60,
    "flags": "\U0001f1f3\U0001f1f4" * 100,
    "skin": "\U0001f44d\U0001f3fd" * 100,
    "pictures of signs": "\u263a\ufe0f" * 100,
    "newer pictures": "\U0001fadf" * 100,
    "Hebrew": "\u05d2\u05d0\u05d5\u05ea " * 50,
    "Arabic": "\u0627\u0644\u0645\u062f " * 50,
    "zero width": "a\u200bb\u200c\ufeff" * 200,
    "nothing but zero width": "\u200b" * 300,
    "marks first": "\u0301\u0301abc" * 100,
    "short wide": "\u6f6e",
    "short family": FAMILY,
    "empty": "",
}


def cells_of(text):
    """Returns the largest number of cells that a terminal may use for a text."""
    cells = 0
    for place, character in enumerate(text):
        code = ord(character)
        if character == "\ufe0f":
            cells += 1 if place > 0 and unicodedata.east_asian_width(text[place - 1]) == "N" else 0
        elif 0x1160 <= code < 0x1200 or unicodedata.category(character) in ("Mn", "Me", "Cf"):
            continue
        elif unicodedata.east_asian_width(character) in "WF" or code >= 0x1f300:
            cells += 2
        else:
            cells += 1
    return cells


class TableTest(ProgramTest):
    def rows_on_terminal(self, columns, *arguments):
        return self.on_terminal(columns, *arguments).split("\n")[1:-1]

    def archive_of_texts(self):
        return self.archive(*((f"Folder/{place}.xml", mail(text, "bo@pier", "2019-01-02T03:04:05"))
                              for place, text in enumerate(TEXTS.values())))

    def test_no_line_is_longer_than_the_terminal_whatever_the_texts(self):
        archive = self.archive_of_texts()

        for columns in (1, 2, 10, 40, 69, 70, 80, 109, 110, 200, 500):
            lines = self.rows_on_terminal(columns, "list", archive)
            self.assertEqual(len(lines), len(TEXTS))
            for what, line in zip(TEXTS, lines, strict=True):
                with self.subTest(what, columns=columns):
                    self.assertLessEqual(cells_of(line), columns)

    def test_folders_begin_at_the_same_cell_whatever_comes_before(self):
        archive = self.archive_of_texts()

        for columns in (110, 200):
            lines = self.rows_on_terminal(columns, "list", archive)
            starts = {cells_of(line[:line.index("Folder")]) for line in lines}
            self.assertEqual(len(starts), 1, starts)

    def test_long_texts_fill_their_column_and_end_in_an_ellipsis(self):
        archive = self.archive_of_texts()

        for columns in (80, 200):
            lines = dict(zip(TEXTS, self.rows_on_terminal(columns, "list", archive, "--columns",
                                                          "index,label"), strict=True))
            for what, line in lines.items():
                with self.subTest(what, columns=columns):
                    text = line[len("      0  "):]
                    if cells_of(TEXTS[what].strip()) <= columns - 9:
                        self.assertEqual(text, TEXTS[what].rstrip())
                        continue
                    self.assertTrue(text.endswith("\u2026"))
                    self.assertTrue(TEXTS[what].startswith(text[:-1]))
                    self.assertGreater(cells_of(line), columns - 8)

    def test_text_is_cut_after_a_whole_character(self):
        archive = self.archive_of_texts()
        whole = {"combining": "e\u0301\u0323", "families": FAMILY,
                 "flags": "\U0001f1f3\U0001f1f4", "skin": "\U0001f44d\U0001f3fd",
                 "pictures of signs": "\u263a\ufe0f", "enclosing": "a\u20dd",
                 "joined Korean": None, "spacing marks": "\u0915\u093e"}

        for columns in range(60, 70):
            lines = dict(zip(TEXTS, self.rows_on_terminal(columns, "list", archive, "--columns",
                                                          "label"), strict=True))
            for what, character in whole.items():
                with self.subTest(what, columns=columns):
                    text = lines[what][:-1]
                    if character is None:
                        joined = unicodedata.normalize("NFC", text)
                        self.assertEqual(set(joined), {"\ud55c", "\uae00"})
                    else:
                        self.assertEqual(text, character * (len(text) // len(character)))

    def test_controls_never_reach_the_terminal(self):
        archive = self.archive(("a.xml", notes("a&#9;b\u009b31mc\u202ed\u2066e\u2028f\u0085g\u007fh")))

        line, = self.rows_on_terminal(200, "list", archive)

        self.assertIn("a b\ufffd31mc\ufffdd\ufffde f g\ufffdh", line)
        self.assertTrue(all(character.isprintable() for character in line))

    def test_controls_never_reach_the_terminal_in_csv(self):
        subject = "a&#9;b\u009b31mc\u202ed\u2066e\u2028f\u0085g\u007fh\u200ei\u200fj\u061ck&#10;l"
        archive = self.archive(("a.xml", notes(subject)))

        text = self.on_terminal(80, "list", archive, "--format", "csv", "--columns", "subject,index")

        self.assertEqual(text.split(),
                         ["subject,index", "a", "b\ufffd31mc\ufffdd\ufffde", "f", "g\ufffdhijk", "l,0"])

    def test_controls_never_reach_the_terminal_in_json(self):
        archive = self.archive(("Folder\u202e/a.xml", notes("a\u009b31mc\u202ed\u200ee\u007f")))

        for arguments in (("list", archive, "--format", "jsonl"), ("show", archive, "0", "--json"),
                          ("info", archive, "--json")):
            with self.subTest(arguments[0]):
                text = self.on_terminal(80, *arguments)
                self.assertIn("\\u202e", text)
                self.assertTrue(all(character.isprintable() or character in "\r\n"
                                    for character in text))

    def test_headings_are_bold_only_on_a_terminal(self):
        archive = self.archive(("a.xml", notes("a")))
        headings = self.on_terminal(80, "list", archive).split("\n")[0]

        self.assertEqual(headings, f"\x1b[1m{'INDEX':7}  {'KIND':11}  {'DATE':19}  {'FROM':13}  "
                                   "NAME\x1b[0m")
        self.assertNotIn("\x1b", self.on_terminal(80, "list", archive).split("\n", 1)[1])
        self.assertNotIn("\x1b", self.run_program("list", archive).stdout)

    def test_no_color_leaves_the_headings_plain(self):
        archive = self.archive(("a.xml", notes("a")))

        self.assertNotIn("\x1b", self.on_terminal(80, "list", archive, NO_COLOR="1"))
        self.assertIn("\x1b", self.on_terminal(80, "list", archive, NO_COLOR=""))

    def test_headings_fit_the_terminal_too(self):
        archive = self.archive(("a.xml", notes("a")))

        headings = self.on_terminal(12, "list", archive).split("\n")[0]

        self.assertEqual(headings, "\x1b[1mINDEX    KI\u2026\x1b[0m")

    def test_csv_and_jsonl_are_the_same_on_a_terminal(self):
        archive = self.archive_of_texts()

        for form in ("csv", "jsonl"):
            self.assertEqual(self.on_terminal(40, "list", archive, "--format", form),
                             self.run_program("list", archive, "--format", form).stdout)

    def test_narrow_terminals_leave_out_folders_and_senders(self):
        archive = self.archive(("In/m.xml", mail("Tide", "bo@pier", "2019-01-02T03:04:05")))

        for columns, headings in ((69, "INDEX KIND DATE NAME"), (80, "INDEX KIND DATE FROM NAME"),
                                  (109, "INDEX KIND DATE FROM NAME"),
                                  (110, "INDEX KIND DATE FROM NAME FOLDER"),
                                  (200, "INDEX KIND DATE FROM NAME FOLDER")):
            shown = self.on_terminal(columns, "list", archive, NO_COLOR="1").split("\n")[0]
            self.assertEqual(shown.split(), headings.split())

    def test_requested_columns_stay_and_share_the_terminal(self):
        archive = self.archive(("In/m.xml", mail("Tide " * 50, "bo@pier", "2019-01-02T03:04:05")))

        for columns in (60, 80, 200):
            headings, row = self.on_terminal(columns, "list", archive, "--columns",
                                             "folder,index,label", NO_COLOR="1").split("\n")[:-1]
            self.assertEqual(headings.split(), ["FOLDER", "INDEX", "NAME"])
            self.assertEqual(row.split()[:3], ["In", "0", "Tide"])
            self.assertEqual(cells_of(row), columns)
            self.assertEqual(headings.index("NAME"), row.index("Tide"))

    def test_numbers_are_never_cut(self):
        archive = self.archive(("a.xml", notes("a")))

        row, = self.rows_on_terminal(30, "list", archive, "--columns", "special6,special7")
        self.assertEqual(row.split(), [str(0x60000), "7"])

    def test_long_dates_are_shown_in_the_usual_form(self):
        dates = {"2019-01-02T03:04:05.678": "2019-01-02T03:04:05",
                 "2019-01-02T03:04:05Z": "2019-01-02T03:04:05",
                 "2019-12-31T23:04:05-02:00": "2020-01-01T01:04:05",
                 "2019-01-02T03:04:05": "2019-01-02T03:04:05", "2019-01-02": "2019-01-02",
                 "next Wednesday at ten": "next Wednesday at ten"}
        archive = self.archive(*((f"{place}.xml", mail(sent=date))
                                 for place, date in enumerate(dates)))

        text = self.run_program("list", archive, "--columns", "sent").stdout

        self.assertEqual(text.split("\n")[1:-1], list(dates.values()))


if __name__ == "__main__":
    unittest.main()
