"""olmkit check: messages without errors, files with one changed byte, and files that are not messages."""

import json
import os
import unittest

from program import SAMPLE, ProgramTest

HEADER_SIZE = 512
BYTE_ORDER_OFFSET = 28  # in the header, MS-CFB 2.2
KINDS = ("error", "warning")


class CheckTest(ProgramTest):
    def setUp(self):
        super().setUp()
        self.run_program("extract", SAMPLE, "-o", self.path("out"))
        self.messages = sorted(os.path.join(where, name)
                               for where, _, names in os.walk(self.path("out"))
                               for name in names if name.endswith(".msg"))

    def changed(self, name, offset, *values):
        """A copy of the first message with other bytes at an offset."""
        data = bytearray(self.bytes_of(self.messages[0]))
        data[offset:offset + len(values)] = bytes(values)
        return self.write(name, bytes(data))

    def test_every_message_of_the_sample_has_no_errors(self):
        done = self.run_program("check", *self.messages)

        self.assertEqual((done.returncode, done.stdout, done.stderr),
                         (0, "no errors in 13 of 13 files\n", ""))

    def test_error_names_its_file_place_and_rule(self):
        changed = self.changed("order.msg", BYTE_ORDER_OFFSET, 0xFF, 0xFE)

        done = self.run_program("check", changed, self.messages[1])

        lines = done.stdout.splitlines()
        self.assertEqual((done.returncode, done.stderr), (1, ""))
        self.assertTrue(lines[0].startswith(f"{changed}: error: header: "), lines)
        self.assertTrue(lines[0].endswith("(header-byte-order, MS-CFB 2.2)"), lines)
        self.assertEqual(lines[-1], "no errors in 1 of 2 files")

    def test_json_has_one_object_for_each_file(self):
        changed = self.changed("order.msg", BYTE_ORDER_OFFSET, 0xFF, 0xFE)

        done = self.run_program("check", "--json", changed, self.messages[1])

        wrong, good = [json.loads(line) for line in done.stdout.splitlines()]
        self.assertEqual(done.returncode, 1)
        self.assertEqual((wrong["file"], wrong["good"]), (changed, False))
        self.assertEqual([wrong["errors"], wrong["warnings"], wrong["advice"]],
                         [sum(finding["severity"] == kind for finding in wrong["findings"])
                          for kind in (*KINDS, "advice")])
        self.assertIn("header-byte-order", [finding["code"] for finding in wrong["findings"]])
        self.assertEqual((good["file"], good["good"], good["findings"]),
                         (self.messages[1], True, []))
        self.assertEqual(good["size"], os.path.getsize(self.messages[1]))

    def test_file_that_is_not_a_message_is_an_error(self):
        for name, contents in (("text.msg", b"not a compound file\n" * 40), ("empty.msg", b"")):
            with self.subTest(name):
                done = self.run_program("check", self.write(name, contents))
                self.assertEqual(done.returncode, 1)
                self.assertIn(f"{name}: error: ", done.stdout)
                self.assertIn("no errors in 0 of 1 file", done.stdout)

    def test_cut_message_is_an_error(self):
        data = self.bytes_of(self.messages[0])
        for size in (HEADER_SIZE - 1, HEADER_SIZE, len(data) - HEADER_SIZE, len(data) - 1):
            with self.subTest(size=size):
                done = self.run_program("check", self.write("cut.msg", data[:size]))
                self.assertEqual(done.returncode, 1, done.stdout)

    def test_unreadable_file_is_reported_and_the_others_are_checked(self):
        done = self.run_program("check", "missing.msg", self.folder, self.messages[0])

        self.assertEqual(done.returncode, 3)
        self.assertIn("missing.msg: can't be read: No such file or directory", done.stderr)
        self.assertIn(f"{self.folder}: can't be read: Is a directory", done.stderr)
        self.assertEqual(done.stdout, "no errors in 1 of 3 files\n")

    def test_container_alone_needs_no_message(self):
        # Without its class name and the storage of names, a message is still a compound file.
        name = "__nameid_version1.0".encode("utf-16-le")
        data = self.bytes_of(self.messages[0])
        changed = self.write("other.msg", data.replace(name, name[:-2] + b"1\0"))

        self.assertEqual(self.run_program("check", changed).returncode, 1)
        self.assertEqual(self.run_program("check", "--container", changed).returncode, 0)

    def test_quiet_prints_findings_only(self):
        done = self.run_program("check", "--quiet", *self.messages)

        self.assertEqual((done.returncode, done.stdout), (0, ""))


if __name__ == "__main__":
    unittest.main()
