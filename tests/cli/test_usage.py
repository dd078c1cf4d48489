"""Arguments, help and version."""

import os
import re
import unittest

from program import ProgramTest, notes


class UsageTest(ProgramTest):
    def test_version_names_program_and_number(self):
        done = self.run_program("--version")

        self.assertEqual(done.returncode, 0)
        self.assertRegex(done.stdout, r"^olmkit \d+\.\d+\.\d+\n")
        self.assertEqual(done.stderr, "")

    def test_help_has_examples_and_the_exit_codes(self):
        done = self.run_program("--help")

        self.assertEqual(done.returncode, 0)
        self.assertIn("olmkit list mail.olm", done.stdout)
        codes = re.findall(r"^  (\d+) +\S", done.stdout, re.MULTILINE)
        self.assertEqual(codes, ["0", "1", "2", "3", "4", "5", "6", "130"])

    def test_each_command_has_its_own_help(self):
        for command, option in (("list", "--format"), ("extract", "--at")):
            done = self.run_program(command, "--help")
            self.assertEqual(done.returncode, 0)
            self.assertIn(option, done.stdout)
            self.assertIn("Examples:", done.stdout)

    def test_wrong_arguments_get_one_line_that_names_them_and_do_nothing(self):
        archive = self.archive(("a.xml", notes("a")))
        extract = ["extract", archive, "-o", "out"]
        no_index = "is not the index of an item; use 0, 1, 2, ..."
        no_place = "is not a place; use ENTRY:ITEM, such as 12:1"
        wrong = [
            ([], "no command was given; the commands are info, list, extract, show, report, merge, "
             "verify, check, completion and man; see olmkit --help"),
            (["lisst", archive], "unknown command 'lisst'; did you mean 'list'? See olmkit --help"),
            (["list"], "ARCHIVE is missing; see olmkit list --help"),
            (["list", ""], "ARCHIVE: the path is empty; see olmkit list --help"),
            (["list", archive, "b.olm"], "unexpected argument 'b.olm'; see olmkit list --help"),
            (["list", archive, "--format"],
             "--format requires a value: --format table|csv|jsonl; see olmkit list --help"),
            (["list", archive, "--format", "xml"],
             "--format: 'xml' is not a valid value; use table, csv or jsonl; "
             "see olmkit list --help"),
            (["list", archive, "--format", "csv", "--format", "csv"],
             "--format may be given only once; see olmkit list --help"),
            (["list", archive, "--wrong=1"], "unknown option '--wrong'; see olmkit list --help"),
            (["info", archive, "--json=maybe"], "--json takes no value; see olmkit info --help"),
            (["completion"], "SHELL bash|zsh|fish is missing; see olmkit completion --help"),
            (["show", archive], "N or --at ENTRY:ITEM is missing; see olmkit show --help"),
            (["show", archive, "1", "--at", "1:1"],
             "N and --at can't be used together; see olmkit show --help"),
            (["verify"], "DIR is missing; see olmkit verify --help"),
            (["extract", archive], "--output DIR is missing; see olmkit extract --help"),
            (["extract", archive, "out"], "--output DIR is missing; see olmkit extract --help"),
            (["extract", "-o", "out"], "ARCHIVE is missing; see olmkit extract --help"),
            (["extract", archive, "-o", ""],
             "--output: the path is empty; see olmkit extract --help"),
            ([*extract, "--at"],
             "--at requires a value: --at ENTRY:ITEM; see olmkit extract --help"),
            ([*extract, "--attachments=maybe"],
             "--attachments takes no value; see olmkit extract --help"),
            *[([*extract, "--item", index],
               f"--item: '{index}' {no_index}; see olmkit extract --help")
              for index in ("one", "-1", "0x1", "99999999999999999999")],
            *[([*extract, "--at", place], f"--at: '{place}' {no_place}; see olmkit extract --help")
              for place in ("1", "1:", ":1", "1:2:3", "1: 2", "4294967296:1")],
        ]
        for arguments, message in wrong:
            with self.subTest(arguments=arguments):
                done = self.run_program(*arguments)
                self.assertEqual((done.returncode, done.stdout), (2, ""))
                self.assertEqual(done.stderr, f"olmkit: {message}\n")
        self.assertEqual(self.files("."), ["mail.olm"])

    def test_help_that_can_not_be_written_is_an_error(self):
        with open("/dev/full", "wb") as full:
            done = self.run_program("--help", stdout=full)

        self.assertEqual(done.returncode, 5)
        self.assertIn("standard output can't be written: No space left", done.stderr)

    def test_help_for_a_closed_pipe_is_not_an_error(self):
        reader, writer = os.pipe()
        os.close(reader)
        self.addCleanup(os.close, writer)

        done = self.run_program("--help", stdout=writer)

        self.assertEqual((done.returncode, done.stderr), (0, ""))


if __name__ == "__main__":
    unittest.main()
