"""Archives that come through a pipe."""

import os
import resource
import signal
import subprocess
import threading
import time
import unittest

from program import PROGRAM, ProgramTest, notes
from pseudoterminal import PseudoTerminal


class PipeTest(ProgramTest):
    def setUp(self):
        super().setUp()
        os.mkdir(self.path("tmp"))
        self.environment = {**os.environ, "TMPDIR": self.path("tmp")}

    def piped(self, contents, *arguments, **options):
        """Returns the finished process, which read `contents` from a pipe at its standard input."""
        reader, writer = os.pipe()

        def feed():
            with os.fdopen(writer, "wb") as pipe:
                try:
                    pipe.write(contents)
                except BrokenPipeError:
                    pass

        feeder = threading.Thread(target=feed)
        feeder.start()
        options.setdefault("env", self.environment)
        try:
            return self.run_program(*arguments, stdin=reader, **options)
        finally:
            os.close(reader)
            feeder.join()

    def assert_nothing_left(self):
        self.assertEqual(os.listdir(self.path("tmp")), [])

    def large_archive(self):
        return self.archive(("a.xml", notes(*[f"note {n}" for n in range(300)])),
                            ("b.txt", os.urandom(3_000_000)))

    def test_archive_from_a_pipe_is_listed_like_a_file(self):
        archive = self.large_archive()

        done = self.piped(self.bytes_of(archive), "list", "-", "--format", "jsonl")

        self.assertEqual((done.returncode, done.stderr), (0, ""))
        self.assertEqual(done.stdout, self.run_program("list", archive, "--format", "jsonl").stdout)
        self.assert_nothing_left()

    def test_archive_from_a_pipe_is_extracted_like_a_file(self):
        archive = self.large_archive()

        done = self.piped(self.bytes_of(archive), "extract", "-", "-o", "piped")
        self.run_program("extract", archive, "-o", "direct")

        self.assertEqual(done.returncode, 0)
        self.assertEqual(len(self.files("direct")), 301)
        self.assertEqual(self.files("piped"), self.files("direct"))
        for name in self.files("direct"):
            self.assertEqual(self.bytes_of(self.path("piped", name)),
                             self.bytes_of(self.path("direct", name)), name)
        self.assert_nothing_left()

    def test_paths_of_pipes_can_be_read(self):
        archive = self.archive(("a.xml", notes("one")))
        contents = self.bytes_of(archive)
        expected = self.run_program("list", archive).stdout

        self.assertEqual(self.piped(contents, "list", "/dev/stdin").stdout, expected)

        os.mkfifo(self.path("fifo.olm"))
        feeder = threading.Thread(target=self.write, args=("fifo.olm", contents))
        feeder.start()
        done = self.run_program("list", "fifo.olm", env=self.environment)
        feeder.join()
        self.assertEqual((done.returncode, done.stdout), (0, expected))
        self.assert_nothing_left()

    def test_file_at_standard_input_is_read_without_a_copy(self):
        archive = self.archive(("a.xml", notes("one")))
        environment = {**os.environ, "TMPDIR": self.path("nowhere")}

        with open(archive, "rb") as file:
            done = self.run_program("list", "-", stdin=file, env=environment)

        self.assertEqual(done.returncode, 0)
        self.assertEqual(done.stdout, self.run_program("list", archive).stdout)

    def test_archive_begins_at_the_position_of_standard_input(self):
        archive = self.archive(("a.xml", notes("one")))
        self.write("prefixed.bin", b"\0" * 100_000 + self.bytes_of(archive))

        with open(self.path("prefixed.bin"), "rb", buffering=0) as file:
            file.seek(100_000)
            done = self.run_program("list", "-", stdin=file, env=self.environment)

        self.assertEqual(done.returncode, 0)
        self.assertEqual(done.stdout, self.run_program("list", archive).stdout)
        self.assert_nothing_left()

    def test_file_named_like_standard_input_can_be_given_by_a_path(self):
        os.rename(self.archive(("a.xml", notes("one"))), self.path("-"))

        self.assertIn("one", self.run_program("list", "./-").stdout)

    def test_messages_about_what_is_not_an_archive_name_standard_input(self):
        good = self.bytes_of(self.archive(("a.xml", notes("one", "two"))))
        cases = [
            ("nothing", b"", "empty"),
            ("text", b"not a ZIP\n", "ZIP"),
            ("a cut archive", good[:len(good) // 2], "again"),
            ("another ZIP", self.bytes_of(self.archive(("a.txt", "x"), name="other.zip")),
             "not an OLM archive"),
        ]
        for name, contents, word in cases:
            with self.subTest(name):
                done = self.piped(contents, "list", "-")
                self.assertEqual((done.returncode, done.stdout), (4, ""))
                self.assertTrue(done.stderr.startswith("olmkit: standard input: "), done.stderr)
                self.assertIn(word, done.stderr)
                self.assert_nothing_left()

    def test_messages_about_items_name_standard_input(self):
        done = self.piped(self.bytes_of(self.archive(("a.xml", notes("one")))), "extract", "-",
                          "-o", "out", "--item", "5")

        self.assertEqual(done.returncode, 1)
        self.assertIn("olmkit: standard input: item 5: ", done.stderr)

    def test_terminal_at_standard_input_is_wrong_usage(self):
        terminal = PseudoTerminal([PROGRAM, "list", "-"], with_input=True)
        text = terminal.finish()

        self.assertEqual(terminal.process.returncode, 2)
        self.assertIn("standard input is a terminal", text)

    def test_closed_standard_input_can_not_be_read(self):
        done = subprocess.run(["sh", "-c", '"$0" list - <&-', PROGRAM], capture_output=True,
                              check=False)

        self.assertEqual(done.returncode, 3)
        self.assertIn(b"standard input", done.stderr)

    def test_folder_at_standard_input_can_not_be_read(self):
        folder = os.open(self.folder, os.O_RDONLY)
        self.addCleanup(os.close, folder)

        done = self.run_program("list", "-", stdin=folder, env=self.environment)

        self.assertEqual(done.returncode, 3)
        self.assertIn("standard input", done.stderr)

    def test_missing_folder_for_the_copy_is_reported(self):
        environment = {**os.environ, "TMPDIR": self.path("nowhere")}

        done = self.piped(self.bytes_of(self.large_archive()), "list", "-", env=environment)

        self.assertEqual((done.returncode, done.stdout), (5, ""))
        self.assertIn(self.path("nowhere"), done.stderr)
        self.assertIn("set TMPDIR", done.stderr)

    def test_copy_without_room_is_reported(self):
        self.small_disk()
        environment = {**os.environ, "TMPDIR": self.path("disk")}

        done = self.piped(self.bytes_of(self.large_archive()), "list", "-", env=environment)

        self.assertEqual((done.returncode, done.stdout), (5, ""))
        self.assertIn("No space left", done.stderr)
        self.assertIn("set TMPDIR", done.stderr)
        self.assertEqual(os.listdir(self.path("disk")), [])

    def test_copy_over_the_largest_file_size_is_reported(self):
        done = self.piped(
            self.bytes_of(self.large_archive()), "list", "-", preexec_fn=lambda: resource.setrlimit(
                resource.RLIMIT_FSIZE, (100_000, 100_000)))

        self.assertEqual(done.returncode, 5)
        self.assertIn("too large", done.stderr)
        self.assert_nothing_left()

    def half_fed(self, *arguments):
        """Returns a process that waits for the rest of its archive."""
        half = self.bytes_of(self.large_archive())[:1_000_000]
        process = subprocess.Popen([PROGRAM, *arguments], cwd=self.folder, env=self.environment,
                                   stdin=subprocess.PIPE, stdout=subprocess.PIPE,
                                   stderr=subprocess.PIPE)
        process.stdin.write(half)
        process.stdin.flush()
        return process

    def test_copy_disappears_even_when_the_process_is_killed(self):
        with self.half_fed("list", "-") as process:
            # It never has a name, so nothing is left whenever the process ends.
            self.assert_nothing_left()
            process.send_signal(signal.SIGKILL)
            process.wait(timeout=30)
        self.assert_nothing_left()

    def test_interrupt_while_the_archive_is_read_ends_within_a_second(self):
        for command in (["list", "-"], ["extract", "-", "-o", "out"]):
            with self.subTest(command[0]), self.half_fed(*command) as process:
                process.send_signal(signal.SIGINT)
                started = time.monotonic()
                process.wait(timeout=30)
                self.assertLess(time.monotonic() - started, 1)
                self.assertEqual(process.returncode, 130)
                self.assertIn(b"olmkit: interrupted", process.stderr.read())
            self.assert_nothing_left()
        self.assertFalse(os.path.exists(self.path("out")))


if __name__ == "__main__":
    unittest.main()
