"""olmkit extract --shard and olmkit merge: shards that are joined are one extraction."""

import hashlib
import json
import os
import shutil
import unittest

from extraction_runs import RunTest, mail, mails


class ShardTest(RunTest):
    def merge(self, *arguments, code=0):
        done = self.run_program("merge", *arguments)
        self.assertEqual(done.returncode, code, done.stderr)
        return done

    def shards(self, archive, count, *arguments, code=0):
        folders = [f"part{count}-{number}" for number in range(1, count + 1)]
        for number, folder in enumerate(folders, 1):
            done = self.run_program("extract", archive, "-o", folder, "--shard",
                                    f"{number}/{count}", *arguments)
            self.assertIn(done.returncode, (0, code), done.stderr)
        return folders

    def put_manifest(self, folder, manifest):
        """Replaces the manifest of a shard, and makes its record describe the new one."""
        self.write(os.path.join(folder, "manifest.jsonl"), manifest)
        record = json.loads(self.bytes_of(self.path(folder, "shard.json")))
        record["manifest"] = {"lines": manifest.count(b"\n"), "sha256": hashlib.sha256(manifest).hexdigest()}
        self.write(os.path.join(folder, "shard.json"), json.dumps(record).encode())

    def small_archive(self):
        return self.archive(*[(f"{n}.xml", mails(mail(f"m{n % 3}"))) for n in range(10)])

    def test_shards_joined_are_one_extraction(self):
        for count in (1, 2, 7):
            for options in ((), ("--layout=flat", "--kind=email")):
                with self.subTest(count=count, options=options):
                    archive = self.mixed_archive(count)
                    self.extract(archive, *options, out="whole", code=1)
                    folders = self.shards(archive, count, *options, code=1)

                    self.merge(*reversed(folders), "-o", "joined")
                    self.assert_same_tree("whole", "joined")
                    self.merge(*folders)
                    self.assert_same_tree("whole", folders[0])
                    for folder in [*folders, "whole", "joined"]:
                        shutil.rmtree(self.path(folder))

    def test_shard_takes_each_nth_item(self):
        folders = self.shards(self.small_archive(), 3)

        for number, folder in enumerate(folders):
            with open(self.path(folder, "manifest.jsonl"), encoding="utf-8") as file:
                self.assertEqual([json.loads(line)["index"] for line in file],
                                 list(range(number, 10, 3)))

    def test_messages_are_linked(self):
        folders = self.shards(self.small_archive(), 2)

        self.merge(*folders, "-o", "joined")

        self.assertEqual(os.stat(self.path("joined", "m0.msg")).st_ino,
                         os.stat(self.path(folders[0], "m0.msg")).st_ino)

    def test_missing_shard_is_reported_and_nothing_is_written(self):
        folders = self.shards(self.small_archive(), 4)

        done = self.merge(folders[0], folders[3], "-o", "joined", code=1)

        self.assertIn("2 shards are missing: 2/4, 3/4", done.stderr)
        self.assertFalse(os.path.exists(self.path("joined")))

    def test_shard_given_twice_counts_once(self):
        archive = self.small_archive()
        self.extract(archive, out="whole")
        folders = self.shards(archive, 2)
        shutil.copytree(self.path(folders[1]), self.path("copy"))

        self.merge(*folders, "copy", "-o", "joined")

        self.assert_same_tree("whole", "joined")

    def test_shards_that_contradict_each_other_are_not_joined(self):
        folders = self.shards(self.small_archive(), 2)
        shutil.copytree(self.path(folders[1]), self.path("copy"))
        manifest = self.bytes_of(self.path("copy", "manifest.jsonl"))
        self.put_manifest("copy", manifest.replace(b'"status":0', b'"status":7'))

        done = self.merge(*folders, "copy", "-o", "joined", code=1)

        self.assertIn("two folders have shard 2/2 with different results for item 1;", done.stderr)
        self.assertFalse(os.path.exists(self.path("joined", "manifest.jsonl")))

    def test_shards_of_different_runs_are_not_joined(self):
        one, _ = self.shards(self.small_archive(), 2)
        other = self.archive(("a.xml", mails(mail("other"))), name="other.olm")
        self.run_program("extract", other, "-o", "b", "--shard", "2/2")
        self.run_program("extract", self.path("mail.olm"), "-o", "c", "--shard", "2/2",
                         "--layout", "flat")
        self.run_program("extract", self.path("mail.olm"), "-o", "d", "--shard", "2/3")

        for folder, word in (("b", "another archive"), ("c", "other options"),
                             ("d", "shard 2/3")):
            with self.subTest(folder):
                self.assertIn(word, self.merge(one, folder, "-o", "joined", code=1).stderr)

    def test_folders_without_a_shard_are_reported(self):
        archive = self.small_archive()
        folders = self.shards(archive, 2)
        self.extract(archive, out="whole")

        self.assertIn("no shard", self.merge(folders[0], "whole", "-o", "x", code=1).stderr)
        self.assertIn("nowhere", self.merge(folders[0], "nowhere", "-o", "x", code=3).stderr)
        done = self.merge(*folders, "-o", "whole", code=5)
        self.assertIn("another extraction", done.stderr)

    def test_unfinished_shard_is_reported(self):
        archive = self.small_archive()
        folders = self.shards(archive, 2)
        os.rename(self.path(folders[0], "shard.json"), self.path(folders[0], "unfinished.json"))

        done = self.merge(*folders, "-o", "joined", code=1)

        self.assertIn("--resume", done.stderr)

    def test_message_that_differs_from_the_manifest_is_reported_and_not_joined(self):
        folders = self.shards(self.small_archive(), 2)
        os.remove(self.path(folders[0], "m0.msg"))
        self.write(os.path.join(folders[1], "m1.msg"), b"changed")

        done = self.merge(*folders, "-o", "joined", code=1)

        self.assertEqual(len(done.stderr.splitlines()), 2)
        self.assertIn("8 messages of 10 items", done.stdout)
        with open(self.path("joined", "manifest.jsonl"), encoding="utf-8") as file:
            rows = [json.loads(line) for line in file]
        self.assertEqual([row["index"] for row in rows if row["error"]], [0, 1])
        self.assertFalse(os.path.exists(self.path("joined", "m0.msg")))

    def test_manifest_that_leads_out_of_its_folder_is_not_followed(self):
        folders = self.shards(self.small_archive(), 1)
        victim = self.write("victim", self.bytes_of(self.path(folders[0], "m0.msg")))
        manifest = self.bytes_of(self.path(folders[0], "manifest.jsonl"))
        for path in ("../victim", victim):
            self.put_manifest(folders[0], manifest.replace(b'"m0.msg"', json.dumps(path).encode()))
            done = self.merge(folders[0], "-o", "joined", code=1)
            self.assertIn("missing", done.stderr)
            shutil.rmtree(self.path("joined"))

    def test_shard_without_a_summary_leaves_the_joined_folder_without_one(self):
        archive = self.small_archive()
        for target in ("joined", "part2-1"):
            with self.subTest(target):
                folders = self.shards(archive, 2)
                os.remove(self.path(folders[1], "summary.json"))

                done = self.merge(*folders, "-o", target, code=1)

                self.assertIn(f"{folders[1]}/summary.json can't be read", done.stderr)
                self.assertFalse(os.path.exists(self.path(target, "summary.json")))
                self.assertEqual(len(self.files(target)), 11)
                for folder in {*folders, target}:
                    shutil.rmtree(self.path(folder))

    def test_damaged_manifest_is_reported(self):
        folders = self.shards(self.small_archive(), 2)
        manifest = self.bytes_of(self.path(folders[0], "manifest.jsonl"))
        self.write(os.path.join(folders[0], "manifest.jsonl"), manifest[:-20])

        self.assertIn("damaged", self.merge(*folders, "-o", "joined", code=1).stderr)

    def test_shard_whose_manifest_lost_lines_is_not_joined(self):
        folders = self.shards(self.small_archive(), 2)
        manifest = self.bytes_of(self.path(folders[0], "manifest.jsonl"))
        lines = manifest.splitlines(keepends=True)
        for left in ([], lines[:-1], lines[1:]):
            self.write(os.path.join(folders[0], "manifest.jsonl"), b"".join(left))
            done = self.merge(*folders, "-o", "joined", code=1)
            self.assertIn(f"{folders[0]}/manifest.jsonl has changed since it was written: it has "
                          f"{len(left)} of 5 lines", done.stderr)
            self.assertFalse(os.path.exists(self.path("joined")))

    def test_shard_whose_record_has_no_manifest_is_not_joined(self):
        folders = self.shards(self.small_archive(), 2)
        record = json.loads(self.bytes_of(self.path(folders[0], "shard.json")))
        self.write(os.path.join(folders[0], "shard.json"), json.dumps(record | {"manifest": None}).encode())

        self.assertIn("shard.json does not describe the manifest; extract this shard again",
                      self.merge(*folders, "-o", "joined", code=1).stderr)

    def test_second_shard_in_one_folder_is_refused(self):
        archive = self.small_archive()
        self.extract(archive, "--shard", "1/2")
        self.extract(archive, "--shard", "1/2")
        self.extract(archive, out="whole")
        before = self.tree("out")

        self.assertIn("folder of its own", self.extract(archive, "--shard=2/2", code=5).stderr)
        self.extract(archive, "--shard=1/2", out="whole", code=5)

        self.assertEqual(self.tree("out"), before)

    def test_wrong_shards_are_refused(self):
        archive = self.small_archive()
        for shard in ("0/2", "3/2", "1", "1/0", "a/b", "1/2/3", "-1/2"):
            with self.subTest(shard):
                self.assertIn("shard", self.extract(archive, "--shard=" + shard, code=2).stderr)
        self.extract(archive, "--shard=1/2", "--at=0:1", code=2)


if __name__ == "__main__":
    unittest.main()
