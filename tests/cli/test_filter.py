"""The filters of olmkit list: kinds, folders, texts and dates."""

import json
import random
import re
import time
import unicodedata
import unittest

from documents import APPOINTMENT, CONTACT, GROUP, TASK, mail
from program import ProgramTest, note, notes


def expression_of(pattern):
    """Returns the regular expression for a folder pattern, built part by part."""
    text = ""
    place = 0
    while place < len(pattern):
        rest = pattern[place:]
        if rest.startswith("**/") and (place == 0 or pattern[place - 1] == "/"):
            text, place = text + "(?:[^/]*/)*", place + 3
        elif rest.startswith("**"):
            text, place = text + ".*", place + 2
        elif rest[0] == "*":
            text, place = text + "[^/]*", place + 1
        elif rest[0] == "?":
            text, place = text + "[^/]", place + 1
        elif rest[0] == "[":
            end = pattern.index("]", place)
            inner = pattern[place + 1:end]
            inner = "^/" + inner[1:] if inner[0] == "!" else inner
            text, place = text + "[" + inner + "]", end + 1
        else:
            text, place = text + re.escape(rest[0]), place + 1
    return re.compile("(?:" + text + ")(?:/.*)?", re.DOTALL)


class FilterTest(ProgramTest):
    def taken(self, archive, *arguments, column="label"):
        done = self.run_program("list", archive, "--format", "jsonl", *arguments)
        self.assertEqual((done.returncode, done.stderr), (0, ""))
        return [json.loads(line)[column] for line in done.stdout.split("\n")[:-1]]

    def subjects(self, archive, *arguments):
        return self.taken(archive, *arguments, "--columns", "label")

    def refusal(self, *arguments):
        archive = self.archive(("a.xml", notes("a")), name="refused.olm")
        done = self.run_program("list", archive, *arguments)
        self.assertEqual((done.returncode, done.stdout), (2, ""))
        self.assertEqual(len(done.stderr.splitlines()), 1)
        return done.stderr

    def test_kinds_may_be_single_repeated_or_separated_by_commas(self):
        archive = self.archive(("m.xml", mail("Mail")), ("c.xml", CONTACT), ("g.xml", GROUP),
                               ("a.xml", APPOINTMENT), ("t.xml", TASK), ("n.xml", notes("Note")))

        for arguments, expected in (
                (["--kind", "email"], ["Mail"]), (["--kind", "contact"], ["Ann", "Crew"]),
                (["--kind", "appointment"], ["Ebb"]), (["--kind", "task"], ["Row"]),
                (["--kind", "note"], ["Note"]),
                (["--kind", "task", "--kind", "email"], ["Mail", "Row"]),
                (["--kind", "note,email", "--kind", "task"], ["Mail", "Row", "Note"])):
            with self.subTest(arguments=arguments):
                self.assertEqual(self.subjects(archive, *arguments), expected)

    def test_unknown_kind_is_reported_with_the_known_kinds(self):
        message = self.refusal("--kind", "emial")

        self.assertIn("'emial'", message)
        for kind in ("email", "appointment", "contact", "task", "note"):
            self.assertIn(kind, message)
        self.assertIn("''", self.refusal("--kind", ""))
        self.assertIn("'Email'", self.refusal("--kind", "note,Email"))

    def test_group_is_not_a_kind_of_its_own(self):
        self.assertIn("use contact", self.refusal("--kind", "group"))
        self.assertIn("A group counts as a contact",
                      self.run_program("list", "--help").stdout)

    def folders(self, archive, *patterns):
        arguments = [word for pattern in patterns for word in ("--folder", pattern)]
        return self.taken(archive, *arguments, "--columns", "folder", column="folder")

    def archive_of_folders(self, *names):
        return self.archive(*(((name + "/" if name else "") + "n.xml", notes("x"))
                              for name in names))

    def test_folder_patterns_match_like_those_of_a_shell(self):
        names = ["", "In", "In/Old", "In/Old/2018", "Inbox", "Sent/In", "in", "a*b", "a[b", "axb",
                 "a-b", "a]b", "a\\b"]
        archive = self.archive_of_folders(*names)
        cases = {
            "In": ["In", "In/Old", "In/Old/2018"],
            "/In/": ["In", "In/Old", "In/Old/2018"],
            "In/**": ["In", "In/Old", "In/Old/2018"],
            "In/*": ["In/Old", "In/Old/2018"],
            "In/*/": ["In/Old", "In/Old/2018"],
            "In/Old": ["In/Old", "In/Old/2018"],
            "Old": [],
            "**/Old": ["In/Old", "In/Old/2018"],
            "**/In": ["In", "In/Old", "In/Old/2018", "Sent/In"],
            "**/2018": ["In/Old/2018"],
            "In/**/2018": ["In/Old/2018"],
            "In/**/Old/**/2018": ["In/Old/2018"],
            "In**18": ["In/Old/2018"],
            "In*18": [],
            "In*": ["In", "In/Old", "In/Old/2018", "Inbox"],
            "I?": ["In", "In/Old", "In/Old/2018"],
            "In?Old": [],
            "In[!x]Old": [],
            "[Ii]n": ["In", "In/Old", "In/Old/2018", "in"],
            "[!I]n": ["in"],
            "[^a-z]n": ["In", "In/Old", "In/Old/2018"],
            "a\\*b": ["a*b"],
            "a[*]b": ["a*b"],
            "a\\[b": ["a[b"],
            "a[]]b": ["a]b"],
            "a[!]]b": ["a*b", "a[b", "axb", "a-b", "a\\b"],
            "a[x-]b": ["axb", "a-b"],
            "a[\\]\\-]b": ["a-b", "a]b"],
            "a\\\\b": ["a\\b"],
            "a[[]b": ["a[b"],
            "*": names,
            "**": names,
            "***": names,
            "**/*": names,
            "?**": names[1:],
            "*/*": ["In/Old", "In/Old/2018", "Sent/In"],
            "n.xml": [],
        }
        for pattern, expected in cases.items():
            with self.subTest(pattern=pattern):
                self.assertEqual(self.folders(archive, pattern), expected)
        self.assertEqual(self.folders(archive, "Inbox", "Sent"), ["Inbox", "Sent/In"])

    def test_random_folder_patterns_match_like_regular_expressions(self):
        source = random.Random(11)
        names = sorted({"/".join("".join(source.choices("ab", k=source.randint(1, 3)))
                                 for _ in range(source.randint(1, 4))) for _ in range(300)})
        archive = self.archive_of_folders(*names)
        pieces = ["a", "b", "?", "*", "**", "**/", "/", "[ab]", "[!a]", "a", "b", "/"]
        counts = set()
        for _ in range(60):
            pattern = "".join(source.choices(pieces, k=source.randint(1, 7)))
            pattern = re.sub(r"\*{3,}", "**", re.sub("/+", "/", pattern)).strip("/") + "a"
            expected = [name for name in names if expression_of(pattern).fullmatch(name)]
            counts.add(len(expected))
            with self.subTest(pattern=pattern):
                self.assertEqual(self.folders(archive, pattern), expected)
        self.assertGreater(len(counts), 10)

    def test_encoding_of_accents_makes_no_difference_in_folders(self):
        composed = "Entw\u00fcrfe"
        split = unicodedata.normalize("NFD", composed)
        self.assertNotEqual(composed, split)
        archive = self.archive_of_folders(composed, split, "Entwurfe", "ENTW\u00dcRFE")

        for pattern in (composed, split, "Entw?rfe", "Entw[\u00fcx]rfe"):
            with self.subTest(pattern=pattern):
                found = [unicodedata.normalize("NFC", name)
                         for name in self.folders(archive, pattern)]
                also = ["Entwurfe"] if pattern == "Entw?rfe" else []
                self.assertEqual(found, [composed, composed] + also)

    def test_hostile_folder_patterns_match_in_bounded_time(self):
        archive = self.archive_of_folders("a" * 5000, "/".join("a" * 500))

        for pattern in ("*a" * 300 + "*b", "**a" * 300 + "**b", "**/a/" * 100 + "b",
                        "**/*" * 100 + "b", "?*" * 300 + "b", "[a-z]*" * 300 + "b"):
            with self.subTest(pattern=pattern[:12]):
                started = time.monotonic()
                self.assertEqual(self.folders(archive, pattern), [])
                self.assertLess(time.monotonic() - started, 20)

    def test_invalid_folder_pattern_is_refused(self):
        unclosed = "a [ has no matching ]"
        for pattern, word in (("", "no folder"), ("/", "no folder"), ("a[b", unclosed),
                              ("[", unclosed), ("[]", unclosed), ("[!]", unclosed),
                              ("[a\\]", unclosed), ("[z-a]", "ends before it starts"),
                              ("[[:alpha:]]", "such as [:alpha:]")):
            with self.subTest(pattern=pattern):
                self.assertIn(word, self.refusal("--folder", pattern))

    def test_subject_is_found_in_any_case_and_normal_form(self):
        archive = self.archive(("a.xml", notes(
            "Tide Table", "stra\u00dfe", "\u03a3\u03af\u03c3\u03c5\u03c6\u03bf\u03c2", "caf\u00e9",
            "cafe\u0301 two", "cafe", "\u212bngstr\u00f6m", "\U00010400", "[x] *?")))
        cases = {
            "tide": ["Tide Table"],
            "E TAB": ["Tide Table"],
            "tables": [],
            "STRASSE": ["stra\u00dfe"],
            "\u03c3\u03ca\u03c3": [],
            "\u03c3\u03cd": [],
            "\u03c5\u03a6\u039f\u03a3": ["\u03a3\u03af\u03c3\u03c5\u03c6\u03bf\u03c2"],
            "CAF\u00c9": ["caf\u00e9", "cafe\u0301 two"],
            "CAFE\u0301": ["caf\u00e9", "cafe\u0301 two"],
            "cafe": ["cafe"],
            "\u00e5NGSTR": ["\u212bngstr\u00f6m"],
            "\U00010428": ["\U00010400"],
            "[x]": ["[x] *?"],
            "*?": ["[x] *?"],
        }
        for text, expected in cases.items():
            with self.subTest(text=text):
                self.assertEqual(self.subjects(archive, "--subject", text), expected)
        self.assertEqual(len(self.subjects(archive, "--subject", "")), 9)

    def test_subject_of_a_contact_is_its_display_name(self):
        archive = self.archive(("c.xml", CONTACT), ("g.xml", GROUP), ("n.xml", notes("Annex")))

        self.assertEqual(self.subjects(archive, "--subject", "ANN"), ["Ann", "Annex"])

    def test_invalid_utf8_matches_a_replacement_character(self):
        archive = self.archive(("a.xml", notes("a", "b\ufffdc")))

        self.assertEqual(self.subjects(archive, "--subject", b"\xff"), ["b\ufffdc"])

    def test_long_runs_of_marks_match_in_bounded_time(self):
        titles = ["a" + "\u0301\u0316" * 5000 + "b"] * 150
        archive = self.archive(("a.xml", notes(*titles)))

        started = time.monotonic()
        self.assertEqual(len(self.subjects(archive, "--subject", "\u0301b")), 150)
        self.assertLess(time.monotonic() - started, 10)

    def test_from_matches_senders_and_organizers(self):
        archive = self.archive(("m.xml", mail("1", "bo@pier")), ("o.xml", mail("2", "ann@pier")),
                               ("a.xml", APPOINTMENT), ("n.xml", notes("bo")))

        self.assertEqual(self.subjects(archive, "--from", "BO@"), ["1", "Ebb"])
        self.assertEqual(self.subjects(archive, "--from", "pier"), ["1", "2"])
        self.assertEqual(self.subjects(archive, "--from", "nobody"), [])

    def archive_of_dates(self, *dates):
        return self.archive(*((f"{place}.xml", mail(date, sent=date))
                              for place, date in enumerate(dates)))

    def test_period_includes_all_of_it_and_nothing_else(self):
        dates = ["2018-12-31T23:59:59", "2019-01-01T00:00:00", "2019-01-31T23:59:59.999",
                 "2019-02-28T10:20:29", "2019-02-28T10:20:30.5", "2019-02-28T10:21:00",
                 "2019-03-01T00:00:00", "2019-12-31T23:59:59", "2020-01-01T00:00:00"]
        archive = self.archive_of_dates(*dates)
        for arguments, first, last in (
                (["--since", "2019"], 1, 8), (["--until", "2019"], 0, 7),
                (["--since", "2019", "--until", "2019"], 1, 7),
                (["--until", "2019", "--since", "2019"], 1, 7),
                (["--since", "2019-02"], 3, 8), (["--until", "2019-01"], 0, 2),
                (["--until", "2019-12"], 0, 7), (["--since", "2019-12"], 7, 8),
                (["--since", "2019-02-28"], 3, 8), (["--until", "2019-02-28"], 0, 5),
                (["--since", "2019-02-28T10:20"], 3, 8), (["--until", "2019-02-28T10:20"], 0, 4),
                (["--since", "2019-02-28T10:20:30"], 4, 8),
                (["--until", "2019-02-28T10:20:30"], 0, 4),
                (["--until", "2019-02-28T10:20:29Z"], 0, 3)):
            with self.subTest(arguments=arguments):
                self.assertEqual(self.subjects(archive, *arguments), dates[first:last + 1])

    def test_dates_of_every_form_are_compared_in_utc(self):
        inside = ["2019-06-01", "2019-06-01T00:00", "2019-06-01 12:00:00", "20190601",
                  "20190601T120000", "20190601T120000.5Z", "2019-06-01T12:00:00,25",
                  "2019-06-02T01:00:00+02:00", "2019-05-31T23:30:00-0100", "2019-06-02T00:00+01",
                  "2019-05-31T24:00:00", "2019-05-31T23:59:60", " 2019-06-01T01:02:03Z\n",
                  "2019-06-02+01:00"]
        outside = ["2019-06-02", "2019-06-01T01:00:00+02:00", "2019-06-01T23:30:00-01:00",
                   "2019-06-01T24:00:00"]
        archive = self.archive_of_dates(*inside, *outside)

        found = self.subjects(archive, "--since", "2019-06-01", "--until", "2019-06-01")

        self.assertEqual([text.strip() for text in found], [text.strip() for text in inside])

    def test_items_without_a_readable_date_never_match(self):
        wrong = ["", "soon", "2019", "2019-06", "2019-02-29", "2019-13-01", "2019-06-31",
                 "2019-06-01T", "2019-06-01T25:00", "2019-06-01T24:00:01", "2019-06-01T12:60",
                 "2019-06-01T12:00:61", "2019-06-01T12:00:00.", "2019-06-01T12:00:00+24:00",
                 "2019-06-01T12:00:00+01:", "2019-06-01t12:00", "2019-06-01T12:00z",
                 "20190601T12:00:00", "2019-06-01T120000", "20190601T1200", "20190601Z",
                 "20190601 120000", "2019-06-01T12:00:00ZZ", "2019-06-01T12:00:00 x",
                 "0000-01-01", "\u0662\u0660\u0661\u0669-06-01"]
        archive = self.archive_of_dates(*wrong)

        self.assertEqual(self.subjects(archive, "--since", "0001"), [])
        self.assertEqual(self.subjects(archive, "--until", "9999"), [])
        self.assertEqual(len(self.subjects(archive)), len(wrong))

    def test_date_is_the_one_that_the_table_shows(self):
        archive = self.archive(
            ("1.xml", mail("sent", sent="2019-01-01", received="2020-01-01", modified="2021-01-01")),
            ("2.xml", mail("received", received="2019-01-02", modified="2021-01-01")),
            ("3.xml", mail("modified", modified="2019-01-03")),
            ("4.xml", mail("no date", sent="?", received="2019-01-03")))

        self.assertEqual(self.subjects(archive, "--since", "2019", "--until", "2019"),
                         ["sent", "received", "modified"])

    def test_wrong_dates_are_reported_with_the_right_form(self):
        for date in ("", "19", "2019-", "2019-1", "2019-13", "2019-00", "2019-02-29", "2019-06-31",
                     "2019-06-01T", "2019-06-01T10", "2019-06-01T24:00", "2019-06-01T10:60",
                     "2019-06-01T10:20:60", "2019-06-01T10:20:30+01:00", "2019-06-01 10:20",
                     "yesterday", "0000", "20190601", "2019Z", " 2019"):
            for option in ("--since", "--until"):
                with self.subTest(option=option, date=date):
                    message = self.refusal(option, date)
                    self.assertIn("YYYY-MM-DD", message)
                    self.assertIn(option, message)
        self.assertEqual(len(self.subjects(self.archive_of_dates("2020-02-29"), "--since",
                                           "2020-02-29")), 1)

    def test_dates_in_the_wrong_order_are_refused(self):
        self.assertIn("later than --until", self.refusal("--since", "2020", "--until", "2019"))
        self.assertIn("later than --until", self.refusal("--until", "2019", "--since", "2020"))

    def test_every_rule_must_match_and_the_index_stays(self):
        archive = self.archive(("In/1.xml", mail("Tide", "bo@x", "2019-01-01")),
                               ("In/2.xml", mail("Tide", "bo@x", "2020-01-01")),
                               ("In/3.xml", mail("Tide", "ann@x", "2019-01-01")),
                               ("In/4.xml", mail("Ebb", "bo@x", "2019-01-01")),
                               ("Out/5.xml", mail("Tide", "bo@x", "2019-01-01")),
                               ("In/6.xml", notes("Tide")),
                               ("In/7.xml", mail("a tide", "BO@y", "2019-12-31T23:59:59")))
        rules = ["--kind", "email", "--folder", "In", "--from", "bo", "--subject", "tide",
                 "--since", "2019", "--until", "2019"]

        self.assertEqual(self.taken(archive, *rules, column="index"), [0, 6])
        done = self.run_program("list", archive, *rules, "--format", "csv")
        self.assertEqual([line.split(",")[0] for line in done.stdout.split("\r\n")],
                         ["index", "0", "6", ""])

    def test_filter_without_matches_prints_an_empty_list(self):
        archive = self.archive(("a.xml", notes("a")))

        for form, lines in (("jsonl", 0), ("csv", 1), ("table", 1)):
            done = self.run_program("list", archive, "--kind", "task", "--format", form)
            self.assertEqual((done.returncode, done.stderr), (0, ""))
            self.assertEqual(len(done.stdout.splitlines()), lines)

    def test_options_for_one_value_are_refused_when_repeated(self):
        for option, value in (("--from", "a"), ("--subject", "a"), ("--since", "2019"),
                              ("--until", "2019"), ("--sort", "index"), ("--format", "csv")):
            with self.subTest(option=option):
                self.assertIn(option, self.refusal(option, value, option, value))

    def test_faults_of_entries_are_reported_whatever_the_filter(self):
        archive = self.archive(("Local/a.xml", "<notes>" + note("1") + "<note><OPFNoteCopyTitle>t"))

        done = self.run_program("list", archive, "--kind", "task", "--format", "jsonl")

        self.assertEqual((done.returncode, done.stdout), (1, ""))
        self.assertIn("Local/a.xml", done.stderr)


if __name__ == "__main__":
    unittest.main()
