"""olmkit extract --jobs: the output is the same whatever the number of threads."""

import os
import resource
import signal
import subprocess
import tempfile
import time
import unittest

from extraction_runs import RunTest, mail, mails
from program import PROGRAM, REAL_ARCHIVE, needs_real_archive, notes


class JobsTest(RunTest):
    def assert_same_for_all_jobs(self, archive, *arguments, code):
        alone = self.extract(archive, "--jobs", "1", *arguments, out="alone", code=code)
        for jobs in ("2", "8", "256"):
            many = self.extract(archive, "--jobs", jobs, *arguments, out="many" + jobs, code=code)
            self.assertEqual(many.stderr, alone.stderr)
            self.assertEqual(many.stdout.replace("many" + jobs, "alone"), alone.stdout)
            self.assert_same_tree("alone", "many" + jobs)

    def test_trees_manifests_and_messages_are_the_same_for_all_jobs(self):
        for seed in range(6):
            with self.subTest(seed), tempfile.TemporaryDirectory() as self.folder:
                self.assert_same_for_all_jobs(self.mixed_archive(seed), code=1)

    def test_choices_are_the_same_for_all_jobs(self):
        archive = self.mixed_archive()

        self.assert_same_for_all_jobs(archive, "--item", "3", "--item", "90", "--item", "999999",
                                      "--at", "5:1", "--at", "0:1", code=1)

    def test_run_that_stops_at_an_error_is_the_same_for_all_jobs(self):
        archive = self.archive(*[(f"{n:03}.xml", mails(mail(f"m{n}"))) for n in range(200)])
        trees = []
        for jobs in ("1", "8"):
            for choice, code in (("--fail-fast", 5), ("--max-errors=2", 5)):
                out = "out" + jobs + choice
                for blocked in ("m50.msg", "m70.msg"):
                    os.makedirs(self.path(out, blocked))
                self.extract(archive, choice, "--jobs", jobs, out=out, code=code)
                trees.append((choice, self.tree(out)))
        self.assertEqual(trees[0], trees[2])
        self.assertEqual(trees[1], trees[3])
        self.assertNotEqual(len(trees[0][1]), len(trees[1][1]))

    def waiting_archive(self, size):
        """Makes an archive whose first mail takes long, so that the others wait for it."""
        large = ("large.bin", bytes(100_000_000))
        return self.archive(("000.xml", mails(mail("first", "large.bin"))),
                            *[(f"{n:03}.xml", mails(mail(f"m{n}", "small.bin"))) for n in range(1, 300)],
                            large, ("small.bin", bytes(size)))

    def test_items_that_wait_hold_no_descriptor_and_little_memory(self):
        def few_descriptors():
            resource.setrlimit(resource.RLIMIT_NOFILE, (64, 64))

        # Attachments that are held in memory, and those that are spooled to a file.
        for size in (900_000, 1_100_000):
            archive = self.waiting_archive(size)
            for jobs in ("2", "8"):
                with self.subTest(size=size, jobs=jobs), tempfile.TemporaryDirectory() as out, \
                        subprocess.Popen([PROGRAM, "extract", archive, "-o", out, "--attachments",
                                          "--jobs", jobs], stdout=subprocess.DEVNULL,
                                         stderr=subprocess.PIPE, preexec_fn=few_descriptors,
                                         # Freed memory that a sanitizer keeps isn't the program's.
                                         env={**os.environ, "ASAN_OPTIONS": "quarantine_size_mb=1"},
                                         ) as process:
                    errors = process.stderr.read().decode()
                    _, status, usage = os.wait4(process.pid, 0)
                    process.returncode = os.waitstatus_to_exitcode(status)
                    self.assertEqual((process.returncode, errors), (0, ""))
                    # ThreadSanitizer keeps several bytes about each byte of memory.
                    if os.environ.get("OLMKIT_SANITIZED") != "thread":
                        self.assertLess(usage.ru_maxrss, 256 << 10)
                    self.assertEqual(len(self.files(out)), 601)
                    self.assertEqual([name for name in os.listdir(out) if name.startswith(".")], [])

    @needs_real_archive
    def test_real_archive_is_the_same_for_all_jobs(self):
        self.assert_same_for_all_jobs(REAL_ARCHIVE, code=0)

    def test_wrong_numbers_of_jobs_are_refused(self):
        archive = self.archive(("a.xml", notes("1")))
        for jobs in ("0", "257", "-1", "two", "1.5"):
            with self.subTest(jobs):
                done = self.extract(archive, "--jobs=" + jobs, code=2)
                self.assertIn("1 to 256", done.stderr)

    def test_interrupt_ends_many_threads_within_a_second_and_leaves_no_partial_file(self):
        archive = self.archive(*[(f"{n:05}.xml", mails(mail(f"m{n}"))) for n in range(20000)])
        for signals in (1, 3):
            with self.subTest(signals):
                out = f"out{signals}"
                with subprocess.Popen([PROGRAM, "extract", archive, "-o", self.path(out),
                                       "--jobs", "8"], stdout=subprocess.PIPE,
                                      stderr=subprocess.PIPE) as process:
                    while not os.path.exists(self.path(out, "m100.msg")):
                        self.assertIsNone(process.poll())
                        time.sleep(0.001)
                    started = time.monotonic()
                    for _ in range(signals):
                        process.send_signal(signal.SIGINT)
                    process.wait(timeout=30)
                    self.assertLess(time.monotonic() - started, 1)
                    errors = process.stderr.read().decode()
                self.assertEqual(process.returncode, 130)
                self.assertIn("interrupted", errors)
                self.assertEqual([name for name in os.listdir(self.path(out))
                                  if name.startswith(".")], [])
                if signals == 1:
                    self.assertIn("--resume", errors)


if __name__ == "__main__":
    unittest.main()
