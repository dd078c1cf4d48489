"""docs/files.md lists the files of an extraction and every key in them, and no other."""

import json
import os
import re
import signal
import subprocess
import time
import unittest

from program import PROGRAM, SAMPLE, ProgramTest, note, notes

SOURCE = os.environ["OLMKIT_SOURCE_DIR"]


class Page:
    """The headings of the page, each with the keys of its table and its examples."""

    def __init__(self, path):
        self.keys = {}
        self.examples = {}
        heading, example = "", None
        with open(path, encoding="utf-8") as file:
            for line in file:
                if example is not None:
                    if line == "```\n":
                        self.examples.setdefault(heading, []).append(json.loads(example))
                        example = None
                    else:
                        example += line
                elif line == "```json\n":
                    example = ""
                elif match := re.fullmatch(r"##* (.*)\n", line):
                    title = match[1]
                    heading = f"{heading.split('/')[0]}/{title}" if line.startswith("### ") else title
                elif match := re.match(r"\| `([^`]*)` \|", line):
                    self.keys.setdefault(heading, []).append(match[1])


class FilesPageTest(ProgramTest):
    def setUp(self):
        super().setUp()
        self.page = Page(os.path.join(SOURCE, "docs", "files.md"))

    def extract(self, archive, out, *arguments, code=0):
        done = self.run_program("extract", archive, "-o", self.path(out), *arguments)
        self.assertEqual(done.returncode, code, done.stderr)

    def read(self, *names):
        with open(self.path(*names), encoding="utf-8") as file:
            return json.load(file)

    def rows(self, out):
        with open(self.path(out, "manifest.jsonl"), encoding="utf-8") as file:
            return [json.loads(line) for line in file]

    def assert_keys(self, heading, written):
        self.assertEqual(self.page.keys.pop(heading), list(written), heading)

    def kill_when_it_writes(self, archive, *arguments):
        """Starts a run and kills it after it has begun a manifest of its own."""
        def manifest():
            try:
                status = os.stat(self.path("killed", "manifest.jsonl.part"))
            except FileNotFoundError:
                return None
            return status.st_ino if status.st_size > 0 else None

        earlier = manifest()
        with subprocess.Popen([PROGRAM, "extract", archive, "-o", self.path("killed"), *arguments],
                              stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL) as process:
            deadline = time.monotonic() + 60
            while manifest() in (None, earlier):
                self.assertIsNone(process.poll())
                self.assertLess(time.monotonic(), deadline)
                time.sleep(0.001)
            process.send_signal(signal.SIGKILL)
        self.assertEqual(process.returncode, -signal.SIGKILL)

    def run_files(self, out):
        """The names in an output folder that are no message, folder or temporary file."""
        return {entry.name for entry in os.scandir(self.path(out))
                if entry.is_file() and not entry.name.endswith(".msg") and not entry.name.startswith(".olmkit-")}

    def test_every_key_is_on_the_page_in_the_order_of_the_file(self):
        archive = self.archive(("a.xml", "<notes>" + note("1") + "<odd/>" + note("2") + "</notes>"))
        self.extract(SAMPLE, "whole", "--attachments")
        self.extract(archive, "selection", "--item=0", "--item=9", code=1)
        self.extract(SAMPLE, "shard", "--shard=1/2")
        row = next(row for row in self.rows("whole") if row["attachments"])
        summary = self.read("selection", "summary.json")
        record = self.read("shard", "shard.json")

        self.page.keys.pop("The files of an extraction")  # compared in the next test
        self.assert_keys("manifest.jsonl", row)
        self.assert_keys("manifest.jsonl/attachments", row["attachments"][0])
        self.assert_keys("summary.json", summary)
        self.assert_keys("summary.json/kinds", summary["kinds"])
        self.assert_keys("summary.json/numbers of a kind", summary["kinds"]["note"])
        self.assert_keys("summary.json/numbers of attachments", summary["attachments"])
        self.assert_keys("summary.json/noted_entries", summary["noted_entries"][0])
        self.assert_keys("summary.json/manifest", summary["manifest"])
        self.assert_keys("unfinished.json and shard.json", record)
        for part in ("archive", "options", "shard", "manifest"):
            self.assert_keys(f"unfinished.json and shard.json/{part}", record[part])
        self.assertEqual(self.page.keys, {}, "tables without a file")

    def test_every_file_is_on_the_page(self):
        archive = self.archive(("a.xml", notes(*[f"note {n}" for n in range(20000)])))
        self.extract(SAMPLE, "shard", "--shard=1/2")
        self.kill_when_it_writes(archive)
        found = self.run_files("killed")
        self.assertEqual(found, {"manifest.jsonl.part", "unfinished.json"})
        self.kill_when_it_writes(archive, "--resume")
        found |= self.run_files("killed") | self.run_files("shard")
        self.assertEqual(len(self.run_files("killed") - self.run_files("shard")), 3)

        self.assertEqual(sorted(self.page.keys["The files of an extraction"]), sorted(found))

    def test_unfinished_run_has_the_keys_of_a_shard(self):
        archive = self.archive(("a.xml", notes("1")))
        self.extract(archive, "stopped", "--item=5", "--item=6", "--fail-fast", code=1)
        self.extract(archive, "shard", "--shard=1/1")

        unfinished = self.read("stopped", "unfinished.json")
        shard = self.read("shard", "shard.json")

        self.assertEqual(list(unfinished), list(shard))
        self.assertEqual(list(unfinished["options"]), list(shard["options"]))
        self.assertIsNone(unfinished["shard"])

    def test_examples_are_those_of_the_sample(self):
        self.extract(SAMPLE, "whole", "--attachments")
        self.extract(SAMPLE, "shard", "--shard=1/2")
        record = self.read("shard", "shard.json")

        line, = self.page.examples.pop("manifest.jsonl/attachments")
        self.assertIn(line, self.rows("whole"))
        summary, = self.page.examples.pop("summary.json/manifest")
        self.assertEqual(summary, self.read("whole", "summary.json"))
        example, = self.page.examples.pop("unfinished.json and shard.json/manifest")
        self.assertEqual(example | {"program": record["program"]}, record)
        self.assertEqual(self.page.examples, {})


if __name__ == "__main__":
    unittest.main()
