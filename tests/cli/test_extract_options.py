"""The options of olmkit extract that are not about jobs, resuming and shards."""

import json
import os
import unittest

from extraction_runs import RunTest, mail, mails
from program import notes


class OptionTest(RunTest):
    def indexes(self, name="out"):
        with open(self.path(name, "manifest.jsonl"), encoding="utf-8") as file:
            return [json.loads(line)["index"] for line in file]

    def small_archive(self):
        return self.archive(("A/m.xml", mails(mail("one"), mail("two", sent="2020-05-06T07:08:09Z"))),
                            ("B/n.xml", notes("one", "x")), ("C/m.xml", mails(mail("one"))))

    def test_filters_choose_items_as_list_does(self):
        archive = self.small_archive()
        for options, expected in ((("--kind=note",), [2, 3]), (("--folder=A",), [0, 1]),
                                  (("--subject=TWO",), [1]), (("--since=2020",), [1]),
                                  (("--kind=email", "--until=2019"), [0, 4]),
                                  (("--kind=task",), [])):
            with self.subTest(options):
                self.extract(archive, *options)
                self.assertEqual(self.indexes(), expected)
                listed = self.run_program("list", archive, "--format", "jsonl", *options).stdout
                self.assertEqual([json.loads(line)["index"] for line in listed.splitlines()],
                                 expected)

    def test_names_do_not_depend_on_filters(self):
        archive = self.small_archive()

        self.extract(archive, "--layout=flat", "--kind=note", "--subject=one")

        self.assertEqual(self.files("out"), ["manifest.jsonl", "one (2).msg"])

    def test_filters_beside_chosen_items_are_refused(self):
        archive = self.small_archive()
        for chosen in ("--item=0", "--at=0:1"):
            done = self.extract(archive, chosen, "--kind=note", code=2)
            self.assertIn("can't be used together with filters", done.stderr)

    def test_flat_layout_has_no_folders_and_keeps_names_apart(self):
        self.extract(self.small_archive(), "--layout", "flat")

        self.assertEqual(self.files("out"), ["manifest.jsonl", "one (2).msg", "one (3).msg",
                                             "one.msg", "two.msg", "x.msg"])

    def test_tree_layout_is_the_default(self):
        archive = self.small_archive()
        self.extract(archive, out="default")
        self.extract(archive, "--layout=tree", out="tree")
        self.assert_same_tree("default", "tree")
        self.extract(archive, "--layout=round", code=2)

    def test_dry_run_writes_nothing_and_prints_every_path(self):
        archive = self.small_archive()

        done = self.extract(archive, "--dry-run")

        self.assertEqual(done.stdout, "0 A/one.msg\n1 A/two.msg\n2 B/one.msg\n3 B/x.msg\n"
                                      "4 C/one.msg\n")
        self.assertFalse(os.path.exists(self.path("out")))
        done = self.extract(archive, "--dry-run", "--item=3", "--at=2:1", "--item=77", code=1)
        self.assertEqual(done.stdout, "3 B/x.msg\n2:1 C/one.msg\n")
        self.assertIn("item 77", done.stderr)

    def test_dry_run_prints_the_paths_of_the_manifest(self):
        archive = self.mixed_archive()
        self.extract(archive, "--shard=2/3", "--layout=flat", code=1)
        with open(self.path("out", "manifest.jsonl"), encoding="utf-8") as file:
            rows = [json.loads(line) for line in file]

        done = self.run_program("extract", archive, "-o", "dry", "--dry-run", "--shard=2/3",
                                "--layout=flat")

        self.assertEqual(done.stdout.splitlines(), [f"{row['index']} {row['path']}" for row in rows])

    def test_dry_run_into_a_full_output_is_an_error(self):
        with open("/dev/full", "wb") as full:
            done = self.extract(self.small_archive(), "--dry-run", code=5, stdout=full)
        self.assertIn("standard output", done.stderr)

    def test_fail_fast_stops_at_the_first_failed_item(self):
        archive = self.small_archive()

        done = self.extract(archive, "--fail-fast", "--item=1", "--item=50", "--item=51", code=1)

        self.assertEqual(self.indexes(), [1, 50])
        self.assertNotIn("item 51", done.stderr)
        self.assertIn("the others were not tried", done.stdout)
        self.assertIn("--resume", done.stderr)

    def test_max_errors_stops_when_so_many_items_have_failed(self):
        archive = self.small_archive()
        failing = [f"--item={number}" for number in range(50, 60)]

        self.extract(archive, "--max-errors", "3", "--item=1", *failing, code=6)
        self.assertEqual(self.indexes(), [1, 50, 51, 52])
        self.extract(archive, "--max-errors=11", *failing, code=1)
        self.assertEqual(len(self.indexes()), 10)
        for number in ("0", "-1", "x"):
            self.extract(archive, "--max-errors=" + number, code=2)

    def test_timestamps_are_those_of_the_items_in_universal_time(self):
        archive = self.archive(("m.xml", mails(
            mail("plain"), mail("zone", sent="2020-05-06T07:08:09.250+02:00"),
            mail("none", sent=""), mail("old", sent="1965-01-01T00:00:00"))))
        for zone in ("UTC", "Asia/Tokyo"):
            self.extract(archive, "--timestamps", env={**os.environ, "TZ": zone})
            times = {file: os.stat(self.path("out", file)).st_mtime for file in self.files("out")}
            self.assertEqual(times["plain.msg"], 1551690000)
            self.assertEqual(times["zone.msg"], 1588741689.25)
            self.assertEqual(times["old.msg"], -157766400)
            now = times["manifest.jsonl"]
            self.assertLess(abs(times["none.msg"] - now), 60)
        self.extract(archive)
        self.assertLess(abs(os.stat(self.path("out", "plain.msg")).st_mtime - now), 60)


if __name__ == "__main__":
    unittest.main()
