"""When olmkit extract and olmkit merge wait for the disk."""

import os
import unittest

from extraction_runs import RunTest
from program import notes

LIBRARY = os.path.join(os.environ["OLMKIT_BINARY_DIR"], "lib", "librecorded_calls.so")


class SyncTest(RunTest):
    def recorded(self, *arguments, code=0, **environment):
        """Runs the program and returns its messages and its calls, in order."""
        record = self.path("calls")
        if os.path.exists(record):
            os.remove(record)
        done = self.run_program(*arguments, env={
            **os.environ, "LD_PRELOAD": LIBRARY, "RECORDED_CALLS": record,
            # A sanitizer that is not the first library is of no concern here.
            "ASAN_OPTIONS": "verify_asan_link_order=0:detect_leaks=0", **environment})
        self.assertEqual(done.returncode, code, done.stderr)
        calls = self.bytes_of(record).decode().splitlines()
        return done.stderr, [call.strip() for call in calls]

    def assert_order(self, calls, *wanted):
        places = [calls.index(call) for call in wanted]
        self.assertEqual(places, sorted(places), calls)

    def small_archive(self):
        return self.archive(("a.xml", notes("1", "2")))

    def test_files_are_on_the_disk_before_the_manifest_has_its_name(self):
        _, calls = self.recorded("extract", self.small_archive(), "-o", "out")

        self.assert_order(calls, "rename unfinished.json", "syncfs", "rename 1.msg", "rename 2.msg",
                          "rename summary.json", "rename manifest.jsonl")
        self.assertEqual(calls[calls.index("rename manifest.jsonl") - 1], "syncfs")
        rest = calls[calls.index("rename manifest.jsonl"):]
        self.assert_order(rest, "rename manifest.jsonl", "syncfs", "remove unfinished.json", "fsync")
        self.assertEqual(rest[-1], "fsync")

    def test_record_of_a_shard_is_on_the_disk_before_the_run_is_complete(self):
        _, calls = self.recorded("extract", self.small_archive(), "-o", "out", "--shard", "1/1")

        rest = calls[calls.index("rename shard.json"):]
        self.assert_order(rest, "rename shard.json", "syncfs", "remove unfinished.json", "fsync")

    def test_joined_files_are_on_the_disk_before_the_manifest_has_its_name(self):
        self.extract(self.small_archive(), "--shard", "1/1", out="part")

        _, calls = self.recorded("merge", "part", "-o", "joined")

        self.assert_order(calls, "rename 1.msg", "rename 2.msg", "syncfs", "rename manifest.jsonl")
        rest = calls[calls.index("rename summary.json"):]
        self.assertIn("syncfs", rest)

    def test_stopped_run_is_on_the_disk_before_the_manifest_has_its_name(self):
        _, calls = self.recorded("extract", self.small_archive(), "-o", "out", "--item=0", "--item=9",
                                 "--item=10", "--fail-fast", code=1)

        self.assert_order(calls, "rename 1.msg", "rename manifest.jsonl")
        self.assertEqual(calls[calls.index("rename manifest.jsonl") - 1], "syncfs")

    def test_nothing_waits_for_the_disk_without_sync(self):
        _, calls = self.recorded("extract", self.small_archive(), "-o", "out", "--shard", "1/1",
                                 "--no-sync")
        _, joined = self.recorded("merge", "out", "-o", "joined", "--no-sync")

        self.assertIn("rename manifest.jsonl", calls)
        self.assertEqual([call for call in calls + joined if call in ("syncfs", "fsync")], [])

    def test_sync_that_fails_ends_with_5_and_leaves_no_complete_run(self):
        archive = self.small_archive()
        self.extract(archive, out="whole")
        for number, left in (("1", ["manifest.jsonl.part", "unfinished.json"]),
                             ("2", ["manifest.jsonl.part", "unfinished.json"]),
                             ("3", ["manifest.jsonl", "unfinished.json"]), ("4", ["manifest.jsonl"])):
            with self.subTest(number):
                out = "out" + number
                errors, _ = self.recorded("extract", archive, "-o", out, code=5, FAILING_SYNC=number)

                self.assertIn("can't be written: Input/output error", errors)
                self.assertEqual([name for name in self.files(out, with_summary=True) if ".json" in name], left)
                self.extract(archive, "--resume", out=out)
                self.assert_same_tree(out, "whole")

    def test_joining_whose_sync_fails_ends_with_5(self):
        self.extract(self.small_archive(), "--shard", "1/1", out="part")
        for number in ("1", "2"):
            errors, _ = self.recorded("merge", "part", "-o", "joined" + number, code=5, FAILING_SYNC=number)
            self.assertIn("can't be written: Input/output error", errors)
        self.assertFalse(os.path.exists(self.path("joined1", "manifest.jsonl")))


if __name__ == "__main__":
    unittest.main()
