"""Arguments, help and version."""

import re
import subprocess
import unittest

from program import PROGRAM, ProgramTest, notes


class UsageTest(ProgramTest):
    def test_version_names_program_and_number(self):
        done = self.run_program("--version")

        self.assertEqual(done.returncode, 0)
        self.assertRegex(done.stdout, r"^olmkit \d+\.\d+\.\d+\n")
        self.assertEqual(done.stderr, "")

    def test_help_has_examples_and_the_table_of_exit_codes(self):
        done = self.run_program("--help")

        self.assertEqual(done.returncode, 0)
        self.assertIn("olmkit list mail.olm", done.stdout)
        codes = re.findall(r"^  (\d+) +\S", done.stdout, re.MULTILINE)
        self.assertEqual(codes, ["0", "1", "2", "3", "4", "5", "6", "130"])

    def test_each_command_has_a_help_of_its_own(self):
        for command, option in (("list", "--format"), ("extract", "--at")):
            done = self.run_program(command, "--help")
            self.assertEqual(done.returncode, 0)
            self.assertIn(option, done.stdout)
            self.assertIn("Examples:", done.stdout)

    def test_wrong_arguments_are_told_in_one_line_and_do_nothing(self):
        archive = self.archive(("a.xml", notes("a")))
        wrong = [
            ([], "subcommand"),
            (["lisst", archive], "lisst"),
            (["list"], "ARCHIVE"),
            (["list", archive, archive], ""),
            (["list", archive, "--format", "xml"], "xml"),
            (["list", archive, "--wrong"], "--wrong"),
            (["extract", archive], "--output"),
            (["extract", "-o", "out"], "ARCHIVE"),
            (["extract", archive, "-o", "out", "--item", "one"], "one"),
            (["extract", archive, "-o", "out", "--item", "-1"], ""),
            (["extract", archive, "-o", "out", "--item", "0x1"], "0x1"),
            (["extract", archive, "-o", "out", "--item", "99999999999999999999"], "9999"),
            (["extract", archive, "-o", "out", "--at", "1"], "ENTRY:ITEM"),
            (["extract", archive, "-o", "out", "--at", "1:"], "ENTRY:ITEM"),
            (["extract", archive, "-o", "out", "--at", ":1"], "ENTRY:ITEM"),
            (["extract", archive, "-o", "out", "--at", "1:2:3"], "ENTRY:ITEM"),
            (["extract", archive, "-o", "out", "--at", "1: 2"], "ENTRY:ITEM"),
            (["extract", archive, "-o", "out", "--at", "4294967296:1"], "ENTRY:ITEM"),
        ]
        for arguments, word in wrong:
            with self.subTest(arguments=arguments):
                done = self.run_program(*arguments)
                self.assertEqual(done.returncode, 2)
                self.assertEqual(done.stdout, "")
                self.assertEqual(len(done.stderr.splitlines()), 1)
                self.assertIn(word, done.stderr)
        self.assertEqual(self.files("."), ["mail.olm"])

    def test_help_that_can_not_be_written_is_an_error(self):
        with open("/dev/full", "wb") as full:
            done = self.run_program("--help", stdout=full)

        self.assertEqual(done.returncode, 5)
        self.assertIn("No space left", done.stderr)


if __name__ == "__main__":
    unittest.main()
