"""olmkit verify."""

import hashlib
import json
import os
import shutil
import unittest

from program import REAL_ARCHIVE, SAMPLE, ProgramTest, needs_real_archive, notes
from test_attachments import attachment, mail, mails


class VerifyTest(ProgramTest):
    def setUp(self):
        super().setUp()
        self.mail = self.archive(
            ("m/a.xml", mails(mail("one", attachment("x/1", "a.txt"), attachment("x/2", "b.txt")),
                              mail("two"))),
            ("n.xml", notes("three")), ("x/1", b"first"), ("x/2", b"second"))
        done = self.run_program("extract", self.mail, "-o", self.path("out"), "--attachments")
        self.assertEqual(done.returncode, 0, done.stderr)

    def out(self, *names):
        return self.path("out", *names)

    def verify(self, *arguments, code=0, **options):
        done = self.run_program("verify", self.out(), *arguments, **options)
        self.assertEqual(done.returncode, code, done.stdout + done.stderr)
        return done

    def differences(self, *arguments, code=1):
        """Returns (path, problem) of each difference, read with --json."""
        done = self.verify("--json", *arguments, code=code)
        found = json.loads(done.stdout)["differences"]
        for difference in found:
            self.assertEqual(list(difference), ["path", "problem", "expected", "found", "reason"])
        return [(difference["path"], difference["problem"]) for difference in found]

    def rows(self):
        with open(self.out("manifest.jsonl"), encoding="utf-8") as file:
            return [json.loads(line) for line in file]

    def put_rows(self, *rows):
        self.put_lines(*[json.dumps(row) for row in rows])

    def put_lines(self, *lines):
        with open(self.out("manifest.jsonl"), "w", encoding="utf-8") as file:
            file.write("".join(line + "\n" for line in lines))
        self.seal()

    def seal(self):
        """Makes the summary describe the manifest as it is now."""
        manifest = self.bytes_of(self.out("manifest.jsonl"))
        with open(self.out("summary.json"), encoding="utf-8") as file:
            summary = json.load(file)
        summary["manifest"] = {"lines": manifest.count(b"\n"), "sha256": hashlib.sha256(manifest).hexdigest()}
        self.write("out/summary.json", json.dumps(summary).encode())

    def test_untouched_extraction_matches_its_manifest(self):
        for arguments in ([], ["--strict"]):
            done = self.verify(*arguments)
            self.assertEqual(done.stdout, "5 of 5 files match the manifest\n")
            self.assertEqual(done.stderr, "")

    def test_json_is_one_object(self):
        sizes = [os.path.getsize(self.out(path)) for path in self.files("out") if path != "manifest.jsonl"]

        done = self.verify("--json")

        self.assertEqual(done.stdout.count("\n"), 1)
        self.assertEqual(json.loads(done.stdout), {
            "messages": 3, "attachments": 2, "without_message": 0, "good_files": 5,
            "good_bytes": sum(sizes), "differences": []})
        self.assertEqual(list(json.loads(done.stdout)), [
            "messages", "attachments", "without_message", "good_files", "good_bytes", "differences"])

    def test_each_kind_of_difference_is_a_line(self):
        os.remove(self.out("three.msg"))
        with open(self.out("m", "one.msg"), "ab") as file:
            file.write(b"!")
        with open(self.out("m", "one (attachments)", "a.txt"), "wb") as file:
            file.write(b"First")
        os.remove(self.out("m", "two.msg"))
        os.mkdir(self.out("m", "two.msg"))
        size = os.path.getsize(self.out("m", "one.msg"))

        done = self.verify(code=1)

        self.assertEqual(done.stdout.splitlines(), [
            f"m/one.msg: has {size} bytes, not {size - 1}",
            "m/one (attachments)/a.txt: has other contents: its SHA-256 is "
            f"{hashlib.sha256(b'First').hexdigest()}, not {hashlib.sha256(b'first').hexdigest()}",
            "m/two.msg: can't be read: Is a directory",
            "three.msg: is missing",
            "1 of 5 files match the manifest"])
        self.assertEqual(self.differences(), [
            ("m/one.msg", "size"), ("m/one (attachments)/a.txt", "sha256"),
            ("m/two.msg", "unreadable"), ("three.msg", "missing")])

    def test_json_has_what_was_expected_and_found(self):
        with open(self.out("m", "one (attachments)", "b.txt"), "wb") as file:
            file.write(b"seventh")

        report = json.loads(self.verify("--json", code=1).stdout)

        self.assertEqual(report["differences"], [
            {"path": "m/one (attachments)/b.txt", "problem": "size", "expected": 6, "found": 7,
             "reason": None}])
        self.assertEqual(report["good_files"], 4)

    def test_other_files_are_differences_with_strict_alone(self):
        self.write("out/extra.txt", b"extra")
        self.write("out/m/.hidden", b"extra")
        os.symlink("m", self.out("link"))
        os.mkdir(self.out("empty"))

        self.assertEqual(self.verify().stdout, "5 of 5 files match the manifest\n")
        done = self.verify("--strict", code=1)

        self.assertEqual(done.stdout.splitlines(), [
            "extra.txt: is not in the manifest", "link: is not in the manifest",
            "m/.hidden: is not in the manifest",
            "5 of 5 files match the manifest; 3 other differences"])
        self.assertEqual(self.differences("--strict"), [
            ("extra.txt", "unexpected"), ("link", "unexpected"), ("m/.hidden", "unexpected")])

    def test_files_of_a_run_are_not_differences_with_strict(self):
        for name in ("manifest.jsonl.part", "manifest.jsonl.kept", "unfinished.json", "shard.json"):
            self.write("out/" + name, b"")

        self.verify("--strict")

    def test_folder_may_be_given_in_any_way(self):
        for name in ("out", "out/", "./out", "out/.", "out/m/..", self.out() + "//"):
            done = self.run_program("verify", name, "--strict")
            self.assertEqual(done.returncode, 0, (name, done.stdout))

    def test_paths_that_lead_out_are_refused_and_reported(self):
        row = self.rows()[2]
        self.write("three.msg", self.bytes_of(self.out("three.msg")))
        os.symlink(self.path("three.msg"), self.out("linked.msg"))
        os.symlink(self.folder, self.out("above"))
        paths = ["../three.msg", self.path("three.msg"), "m/../../three.msg", "./three.msg",
                 "m//three.msg", "three.msg/", "a\0b", "linked.msg", "above/three.msg"]
        self.put_rows(*[row | {"path": path} for path in paths])

        self.assertEqual(self.differences(), [(path, "refused") for path in paths])
        done = self.verify(code=1)
        self.assertIn("../three.msg: was not opened: its path leads out of the folder\n", done.stdout)
        self.assertIn("linked.msg: was not opened: a symbolic link is in its path", done.stdout)

    def test_attachments_path_that_leads_out_is_refused(self):
        row = self.rows()[0]
        row["attachments"][0]["path"] = "../out/m/one (attachments)/a.txt"
        self.put_rows(row)

        self.assertEqual(self.differences(), [("../out/m/one (attachments)/a.txt", "refused")])

    def test_pipe_in_the_place_of_a_file_is_not_waited_for(self):
        os.remove(self.out("three.msg"))
        os.mkfifo(self.out("three.msg"))

        self.assertEqual(self.differences(), [("three.msg", "unreadable")])

    def test_file_in_the_place_of_a_folder_is_a_missing_message(self):
        shutil.rmtree(self.out("m"))
        self.write("out/m", b"")

        self.assertEqual([problem for _, problem in self.differences()], ["missing"] * 4)

    def test_items_without_a_message_are_counted(self):
        row = self.rows()[2]
        os.remove(self.out("three.msg"))
        self.put_rows(*self.rows()[:2], row | {"path": None, "size": None, "sha256": None, "error": "why"})

        self.assertEqual(self.verify().stdout,
                         "4 of 4 files match the manifest; 1 item has no message\n")

    def test_texts_are_printed_without_controls(self):
        row = self.rows()[2]
        self.put_rows(row | {"path": "a\x1b[31m\u202eb"})

        self.assertEqual(self.verify(code=1).stdout.splitlines()[0], "a\ufffd[31m\ufffdb: is missing")

    def test_manifest_without_lines_is_valid(self):
        self.put_lines()

        self.assertEqual(self.verify().stdout, "0 of 0 files match the manifest\n")

    def test_manifest_that_lost_lines_is_a_difference(self):
        whole = self.bytes_of(self.out("manifest.jsonl"))
        lines = whole.splitlines(keepends=True)
        for left in ([], lines[:1], lines[1:], lines + lines[:1]):
            self.write("out/manifest.jsonl", b"".join(left))
            done = self.verify(code=1)
            self.assertEqual(done.stdout.splitlines()[0],
                             f"manifest.jsonl: has {len(left)} lines, not 3")
            difference, = json.loads(self.verify("--json", code=1).stdout)["differences"]
            self.assertEqual(difference, {"path": "manifest.jsonl", "problem": "lines", "expected": 3,
                                          "found": len(left), "reason": None})

    def test_manifest_with_other_lines_is_a_difference(self):
        manifest = self.bytes_of(self.out("manifest.jsonl"))
        self.write("out/manifest.jsonl", manifest.replace(b'"status":0', b'"status":7', 1))

        self.assertIn("manifest.jsonl: has other contents: its SHA-256 is ", self.verify(code=1).stdout)
        self.assertEqual(self.differences(), [("manifest.jsonl", "sha256")])

    def test_missing_summary_is_said_and_a_damaged_one_is_a_difference(self):
        for contents in (b"", b"{}", b'{"manifest": null}', b'{"manifest": {"lines": "3"}}'):
            self.write("out/summary.json", contents)
            self.assertEqual(self.differences(), [("summary.json", "unreadable")])
        os.remove(self.out("summary.json"))

        done = self.verify()

        self.assertEqual(done.stdout, "5 of 5 files match the manifest\n")
        self.assertIn("summary.json does not exist, so lines that the manifest lost can't be noticed",
                      done.stderr)

    def test_unknown_keys_are_ignored(self):
        self.put_rows(*[row | {"later": [1, {"x": None}]} for row in self.rows()])

        self.verify("--strict")

    def test_invalid_manifest_ends_with_4_and_names_the_line(self):
        good = self.rows()[2]
        hash_text = good["sha256"]
        written = self.rows()[0]["attachments"][0]
        broken = {
            "not JSON": "index: 0",
            "an empty line": "",
            "a cut line": json.dumps(good)[:-9],
            "not an object": "[1, 2]",
            "not UTF-8": json.dumps(good | {"error": None})[:-1] + ', "x": "\udcff"}',
            "a key too few": json.dumps({key: value for key, value in good.items() if key != "sha256"}),
            "no attachments": json.dumps({key: value for key, value in good.items() if key != "attachments"}),
        }
        for key, value in [("index", -1), ("index", "1"), ("index", 1.0), ("index", 2 ** 64),
                           ("entry", 2 ** 32), ("path", 7), ("path", ""), ("path", None),
                           ("size", None), ("size", -1), ("size", True), ("sha256", None),
                           ("sha256", hash_text[1:]), ("sha256", hash_text.upper()),
                           ("sha256", "g" + hash_text[1:]), ("result", None), ("result", 2 ** 31),
                           ("status", -1), ("status", 65536), ("error", "why"), ("error", 0),
                           ("warnings", None), ("warnings", [1]), ("attachments", {}),
                           ("attachments", [1])]:
            broken[f"{key} {value!r}"] = json.dumps(good | {key: value})
        for key, value in [("name", ""), ("url", 1), ("declared_size", "1"), ("path", ""), ("size", None),
                           ("sha256", None), ("error", False)]:
            broken[f"attachment {key} {value!r}"] = json.dumps(good | {"attachments": [written | {key: value}]})
        self.assertNotIn(json.dumps(good), broken.values())
        for what, line in broken.items():
            with self.subTest(what):
                with open(self.out("manifest.jsonl"), "wb") as file:
                    file.write(b"\n".join([json.dumps(good).encode(), json.dumps(good).encode(),
                                           line.encode("utf-8", "surrogateescape"), b""]))
                done = self.verify(code=4)
                self.assertEqual(done.stderr, f"olmkit: {self.out('manifest.jsonl')}: line 3 is not a line "
                                              "of a manifest; extract again\n")
                self.assertEqual(self.verify("--json", code=4).stdout, "")

    def test_last_line_without_an_end_is_cut_off(self):
        contents = self.bytes_of(self.out("manifest.jsonl"))
        for left in (1, 20):
            self.write("out/manifest.jsonl", contents[:-left])
            self.assertIn("line 3 is cut off", self.verify(code=4).stderr)

    def test_archive_in_the_place_of_the_manifest_is_invalid(self):
        shutil.copy(self.mail, self.out("manifest.jsonl"))

        self.assertIn("line 1 is", self.verify(code=4).stderr)

    def test_folder_or_manifest_that_can_not_be_read_ends_with_3(self):
        os.mkdir(self.path("bare"))
        for name, word in (("missing", "No such file"), ("mail.olm", "Not a directory"),
                           ("bare", "does not exist")):
            done = self.run_program("verify", self.path(name))
            self.assertEqual((done.returncode, done.stdout), (3, ""), name)
            self.assertIn(word, done.stderr)
            self.assertIn("olmkit extract", done.stderr)
        os.symlink(self.out("manifest.jsonl"), self.path("bare", "manifest.jsonl"))
        done = self.run_program("verify", self.path("bare"))
        self.assertEqual(done.returncode, 3)
        self.assertIn("symbolic link", done.stderr)

    def test_wrong_usage_ends_with_2(self):
        for arguments in ([], ["a", "b"], ["--fast", "a"]):
            self.assertEqual(self.run_program("verify", *arguments).returncode, 2, arguments)

    def test_full_output_ends_with_5(self):
        with open("/dev/full", "wb") as full:
            done = self.run_program("verify", self.out(), stdout=full)
        self.assertEqual(done.returncode, 5)
        self.assertIn("can't be written", done.stderr)

    def test_verifying_changes_nothing(self):
        before = {path: (self.bytes_of(self.out(path)), os.stat(self.out(path)).st_mtime_ns)
                  for path in self.files("out")}

        self.verify("--strict")

        self.assertEqual({path: (self.bytes_of(self.out(path)), os.stat(self.out(path)).st_mtime_ns)
                          for path in self.files("out")}, before)

    def check_archive(self, archive, count):
        self.run_program("extract", archive, "-o", self.path("whole"), "--attachments")
        done = self.run_program("verify", self.path("whole"), "--strict")
        self.assertEqual((done.returncode, done.stdout),
                         (0, f"{count} of {count} files match the manifest\n"))

    def test_sample(self):
        self.check_archive(SAMPLE, 15)

    @needs_real_archive
    def test_real_archive(self):
        self.check_archive(REAL_ARCHIVE, 37)


if __name__ == "__main__":
    unittest.main()
