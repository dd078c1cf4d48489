"""olmkit extract."""

import hashlib
import json
import os
import resource
import signal
import subprocess
import tempfile
import time
import unittest
import zipfile

from program import (PROGRAM, REAL_ARCHIVE, ProgramTest, needs_real_archive, note, notes,
                     wrong_archives)

KEYS = ["index", "entry", "item", "path", "size", "sha256", "result", "status", "error",
        "warnings", "attachments"]
SIGNATURE = bytes.fromhex("D0CF11E0A1B11AE1")


def mail(subject, *urls):
    """Returns a mail with an attachment for each URL."""
    attachments = "".join(f'<messageAttachment OPFAttachmentURL="{url}"/>' for url in urls)
    return (f"<email><OPFMessageCopySubject>{subject}</OPFMessageCopySubject>"
            f"<OPFMessageCopyAttachmentList>{attachments}</OPFMessageCopyAttachmentList></email>")


class ExtractTest(ProgramTest):
    def manifest(self, name="out"):
        with open(self.path(name, "manifest.jsonl"), encoding="utf-8") as file:
            rows = [json.loads(line) for line in file]
        for row in rows:
            self.assertEqual(list(row), KEYS)
            if row["path"] is not None:
                contents = self.bytes_of(self.path(name, row["path"]))
                self.assertEqual(contents[:8], SIGNATURE)
                self.assertEqual(row["size"], len(contents))
                self.assertEqual(row["sha256"], hashlib.sha256(contents).hexdigest())
                self.assertIsNone(row["error"])
            else:
                self.assertEqual((row["size"], row["sha256"]), (None, None))
                self.assertTrue(row["error"])
        return rows

    def extract(self, archive, *arguments, code=0, out="out", **options):
        done = self.run_program("extract", archive, "-o", self.path(out), *arguments, **options)
        self.assertEqual(done.returncode, code, done.stderr)
        return done

    def paths(self, *titles):
        """Returns the paths of the messages of notes with these titles."""
        archive = self.archive(("N/a.xml", notes(*titles)), name="names.olm")
        self.extract(archive, out="names")
        rows = self.manifest("names")
        self.assertEqual(self.files("names"),
                         sorted([row["path"] for row in rows] + ["manifest.jsonl"]))
        return [row["path"] for row in rows]

    def test_every_item_becomes_a_file_in_its_folder(self):
        archive = self.archive(("Local/Notes/a.xml", notes("one", "two")), ("b.xml", notes("three")))

        done = self.extract(archive)

        self.assertEqual(done.stderr, "")
        self.assertIn("3 of 3 messages", done.stdout)
        rows = self.manifest()
        self.assertEqual([(row["index"], row["entry"], row["item"], row["path"], row["result"],
                           row["status"]) for row in rows],
                         [(0, 0, 1, "Local/Notes/one.msg", 0, 0),
                          (1, 0, 2, "Local/Notes/two.msg", 0, 0), (2, 1, 1, "three.msg", 0, 0)])
        self.assertEqual(self.files("out"), ["Local/Notes/one.msg", "Local/Notes/two.msg",
                                             "manifest.jsonl", "three.msg"])

    def test_same_archive_has_the_same_output_again_and_over_an_earlier_one(self):
        archive = self.archive(("a.xml", notes("1", "1", "2")))

        self.extract(archive, out="first")
        self.extract(archive, out="second")
        self.extract(archive, out="second")

        self.assertEqual(self.files("first"), self.files("second"))
        for file in self.files("first"):
            self.assertEqual(self.bytes_of(self.path("first", file)),
                             self.bytes_of(self.path("second", file)), file)

    def test_chosen_items_are_written_once_in_index_order(self):
        archive = self.archive(("a.xml", notes("0", "1", "2")), ("b.xml", notes("3", "4")))

        self.extract(archive, "--item", "3", "--item", "1", "--item", "3")

        self.assertEqual([(row["index"], row["path"]) for row in self.manifest()],
                         [(1, "1.msg"), (3, "3.msg")])

    def test_item_option_takes_one_value_and_leaves_the_archive(self):
        archive = self.archive(("a.xml", notes("0", "1")))

        done = self.run_program("extract", "--item", "1", archive, "--at", "0:1", "-o", "out")

        self.assertEqual(done.returncode, 0)
        self.assertEqual(len(self.manifest()), 2)

    def test_chosen_places_follow_the_chosen_items(self):
        archive = self.archive(("a.xml", notes("0", "1", "2")), ("b.xml", notes("3", "4")))

        self.extract(archive, "--at", "1:2", "--at", "0:1", "--at", "1:2", "--item", "4")

        rows = self.manifest()
        self.assertEqual([(row["index"], row["entry"], row["item"], row["path"]) for row in rows],
                         [(4, 1, 2, "4.msg"), (None, 1, 2, "4.msg"), (None, 0, 1, "0.msg")])

    def test_item_has_the_same_name_and_bytes_whatever_else_is_extracted(self):
        archive = self.archive(("a.xml", notes("x", "x", "x")), ("b.xml", notes("X")))
        self.extract(archive, out="all")
        everything = self.manifest("all")
        self.assertEqual([row["path"] for row in everything],
                         ["x.msg", "x (2).msg", "x (3).msg", "X (4).msg"])

        for index in range(4):
            self.extract(archive, "--item", str(index), out=f"one{index}")
            self.assertEqual(self.manifest(f"one{index}"), [everything[index]])

    def test_index_without_an_item_is_a_failed_item(self):
        archive = self.archive(("a.xml", notes("0")))

        done = self.extract(archive, "--item", "7", "--item", "0", "--item", "18446744073709551615",
                            code=1)

        self.assertIn("item 7", done.stderr)
        rows = self.manifest()
        self.assertEqual([(row["index"], row["entry"], row["item"], row["path"], row["result"],
                           row["status"]) for row in rows],
                         [(0, 0, 1, "0.msg", 0, 0), (7, None, None, None, 18, 2),
                          (18446744073709551615, None, None, None, 18, 2)])

    def test_places_without_an_item_are_failed_items(self):
        archive = self.archive(("a.xml", notes("0")), ("Categories.xml", "<categories/>"),
                               ("b.xml", "<tasks><task/></tasks>"))

        done = self.extract(archive, "--at", "0:0", "--at", "9:1", "--at", "1:1", code=1)

        rows = self.manifest()
        self.assertEqual([(row["index"], row["entry"], row["item"], row["path"], row["result"],
                           row["status"]) for row in rows],
                         [(None, 0, 0, None, 15, 2), (None, 9, 1, None, 18, 2),
                          (None, 1, 1, None, 0, 0)])
        self.assertIn("the entry is not a document of", rows[2]["error"])
        for word in ("entry 0 (a.xml)", "there is no entry 9", "entry 1 (Categories.xml)"):
            self.assertIn(word, done.stderr)
        self.assertEqual(self.files("out"), ["manifest.jsonl"])

    def test_place_past_the_last_item_has_an_empty_message_and_a_warning(self):
        archive = self.archive(("a.xml", notes("0")))

        done = self.extract(archive, "--at", "0:2")

        rows = self.manifest()
        self.assertEqual([(row["entry"], row["item"], row["result"]) for row in rows], [(0, 2, 0)])
        self.assertIn("empty", done.stderr)
        self.assertEqual(rows[0]["warnings"],
                         ["the entry has no item of that number, so the message is empty"])
        self.assertIn("1 with warnings", done.stdout)

    def test_attachment_that_is_not_in_the_archive_is_a_warning(self):
        archive = self.archive(
            ("a.xml", "<emails>" + mail("one", "there.txt", "gone.txt") + mail("two", "gone.txt")
             + mail("three", "there.txt") + "</emails>"), ("there.txt", "here I am"))

        done = self.extract(archive, code=1)

        missing = 'an attachment is missing: there is no file named "gone.txt"'
        self.assertEqual([row["warnings"] for row in self.manifest()], [[missing], [missing], []])
        self.assertEqual(
            done.stderr.splitlines(),
            [f"olmkit: {archive}: item 0, an email, number 1 in entry 0 (a.xml): {missing}",
             f"olmkit: {archive}: item 1, an email, number 2 in entry 0 (a.xml): {missing}"])
        self.assertIn("3 of 3 messages", done.stdout)
        self.assertIn("2 with warnings", done.stdout)

    def test_attachment_that_is_damaged_is_a_warning_each_time(self):
        for method in (zipfile.ZIP_STORED, zipfile.ZIP_DEFLATED):
            with self.subTest(method):
                archive = self.archive(
                    ("a.xml", "<emails>" + mail("one", "x/bad.txt") + mail("two", "x/bad.txt")
                     + "</emails>"), ("x/bad.txt", "wrong"), method=method)
                contents = bytearray(self.bytes_of(archive))
                contents[contents.rfind(b"PK\x03\x04") + 14] ^= 1  # the checksum
                contents[contents.rfind(b"PK\x01\x02") + 16] ^= 1  # and in the directory
                self.write("mail.olm", contents)

                done = self.extract(archive, code=1)

                bad = 'the attachment "x/bad.txt" is damaged: its checksum is wrong'
                self.assertEqual([row["warnings"] for row in self.manifest()], [[bad], [bad]])
                self.assertEqual(len(done.stderr.splitlines()), 2)

    def test_attachment_that_is_encrypted_is_a_warning(self):
        archive = self.archive(("a.xml", "<emails>" + mail("one", "secret.txt") + "</emails>"),
                               ("secret.txt", "hush"))
        contents = bytearray(self.bytes_of(archive))
        contents[contents.rfind(b"PK\x01\x02") + 8] |= 1
        contents[contents.rfind(b"PK\x03\x04") + 6] |= 1
        self.write("mail.olm", contents)

        done = self.extract(archive, code=1)

        self.assertEqual([row["warnings"] for row in self.manifest()],
                         [['the attachment "secret.txt" is missing: it is encrypted']])
        self.assertEqual(len(done.stderr.splitlines()), 1)

    def test_attachment_is_found_by_a_name_in_another_normal_form(self):
        composed, decomposed = "\u304c\u00e9.txt", "\u304b\u3099e\u0301.txt"
        payload = b"which form has my name? " * 200
        for asked, stored in ((composed, decomposed), (decomposed, composed)):
            with self.subTest(asked):
                archive = self.archive(
                    ("a.xml", "<emails>" + mail("one", "Attachments/" + asked) + "</emails>"),
                    ("Attachments/" + stored, payload))

                self.extract(archive)

                row, = self.manifest()
                self.assertEqual(row["warnings"], [])
                self.assertIn(payload, self.bytes_of(self.path("out", row["path"])))

    def test_item_cut_off_with_its_document_has_a_warning(self):
        archive = self.archive(("a.xml", "<notes>" + note("1") + "<note><OPFNoteCopyTitle>tw"))

        self.extract(archive, code=1)

        first, second = self.manifest()
        self.assertEqual(first["warnings"], [])
        self.assertEqual(len(second["warnings"]), 1)
        self.assertTrue(second["warnings"][0].startswith("its document: line 1, column "))

    def test_entry_that_is_not_a_document_is_reported(self):
        archive = self.archive(("a.xml", notes("0")), ("picture.png", b"\x89PNG\r\n\x1a\n" * 20))

        done = self.extract(archive, "--at", "1:1", code=1)

        self.assertIn("entry 1 (picture.png)", done.stderr)

    def test_names_are_safe_on_every_file_system(self):
        self.assertEqual(
            self.paths('a/b\\c:d*e?f"g&lt;h&gt;i|j', "..", ".", "...", ".hidden", "dots...",
                       "space  ", "con", "COM1.txt", "nul .x", "lpt\u00b9", "tab&#9;nel\u0085end",
                       "\u202egpj", "auxiliary", "caf\u00e9"),
            ["N/" + name + ".msg" for name in
             ("a_b_c_d_e_f_g_h_i_j", "_", "_ (2)", "_ (3)", "_hidden", "dots", "space", "_con",
              "_COM1.txt", "_nul .x", "_lpt\u00b9", "tab_nel_end", "_gpj", "auxiliary",
              "caf\u00e9")])

    def test_names_that_are_the_same_on_some_file_system_get_numbers(self):
        self.assertEqual(
            self.paths("a", "A", "a (2)", "a", "caf\u00e9", "cafe\u0301", "stra\u00dfe", "STRASSE"),
            ["N/" + name + ".msg" for name in
             ("a", "A (2)", "a (2) (2)", "a (3)", "caf\u00e9", "cafe\u0301 (2)", "stra\u00dfe",
              "STRASSE (2)")])

    def test_item_without_a_name_is_called_none(self):
        archive = self.archive(("a.xml", "<notes><note/><note/></notes>"))

        self.extract(archive)

        self.assertEqual([row["path"] for row in self.manifest()], ["NONE.msg", "NONE (2).msg"])

    def test_paths_that_nothing_could_open_are_refused(self):
        deep = "/".join([letter * 250 for letter in "abcdefghijklmnopqrst"])
        archive = self.archive((deep + "/a.xml", notes("deep")), ("N/b.xml", notes("flat")))

        done = self.extract(archive, code=5)

        self.assertEqual([row["path"] for row in self.manifest() if not row.get("error")],
                         ["N/flat.msg"])
        error, = [row["error"] for row in self.manifest() if row.get("error")]
        self.assertIn("the path is too long", error)
        self.assertIn("deep.msg can't be written: the path is too long", done.stderr)
        self.assertEqual([name for name in os.listdir(self.path("out")) if name.startswith("a")], [])
        self.extract(archive, "--layout", "flat", out="flat")

    def test_long_names_fit_255_bytes_and_cut_no_character(self):
        paths = self.paths("x" * 1000, "x" * 1000, "\u6f6e" * 300, "\U0001F30A" * 300,
                           "y" * 227 + "e\u0301\u0301" * 9)

        for path in paths:
            name = path.removeprefix("N/").encode("utf-8")
            self.assertLessEqual(len(name), 255)
            self.assertGreater(len(name), 230)
        self.assertEqual(paths[2].removeprefix("N/").strip("\u6f6e"), ".msg")
        self.assertEqual(paths[3].removeprefix("N/").strip("\U0001F30A"), ".msg")
        self.assertEqual(paths[4], "N/" + "y" * 227 + ".msg", "an accent stays with its letter")

    def test_folders_never_lead_out_nor_take_the_name_of_a_file(self):
        archive = self.archive(("../../up/a.xml", notes("1")), ("/root/a.xml", notes("2")),
                               ("x/./y/a.xml", notes("3")), ("manifest.jsonl/a.xml", notes("4")),
                               ("x.msg/a.xml", notes("5")), ("a.xml", notes("x")))

        self.extract(archive)

        self.assertEqual([row["path"] for row in self.manifest()],
                         ["_/_/up/1.msg", "root/2.msg", "x/_/y/3.msg", "manifest.jsonl_/4.msg",
                          "x.msg_/5.msg", "x.msg"])
        self.assertEqual(os.listdir(self.folder).sort(), ["mail.olm", "out"].sort())

    def test_link_in_the_place_of_a_folder_is_not_followed(self):
        archive = self.archive(("Local/Notes/a.xml", notes("1")), ("b.xml", notes("2")))
        os.mkdir(self.path("elsewhere"))
        os.makedirs(self.path("out", "Local"))
        os.symlink(self.path("elsewhere"), self.path("out", "Local", "Notes"))

        done = self.extract(archive, code=5)

        self.assertEqual(self.files("elsewhere"), [])
        self.assertIn("symbolic link", done.stderr)
        rows = self.manifest()
        self.assertEqual([row["path"] for row in rows], [None, "2.msg"])
        self.assertIn("symbolic link", rows[0]["error"])

    def test_link_in_the_place_of_a_file_is_replaced(self):
        archive = self.archive(("b.xml", notes("2")))
        self.write("victim", b"precious")
        os.mkdir(self.path("out"))
        for name in ("2.msg", "manifest.jsonl"):
            os.symlink(self.path("victim"), self.path("out", name))

        self.extract(archive)

        self.assertEqual(self.bytes_of(self.path("victim")), b"precious")
        self.assertFalse(os.path.islink(self.path("out", "2.msg")))
        self.manifest()

    def test_folder_in_the_place_of_a_file_fails_that_item_alone(self):
        archive = self.archive(("b.xml", notes("1", "2")))
        os.makedirs(self.path("out", "1.msg"))

        self.extract(archive, code=5)

        self.assertEqual([row["path"] for row in self.manifest()], [None, "2.msg"])
        self.assertEqual(self.files("out"), ["2.msg", "manifest.jsonl"])

    def test_output_folder_is_created_with_its_parents(self):
        archive = self.archive(("b.xml", notes("1")))

        self.extract(archive, out=os.path.join("new", "deep", "out"))

        self.assertEqual(self.files("new/deep/out"), ["1.msg", "manifest.jsonl"])

    def test_output_that_is_a_file_is_an_error(self):
        archive = self.archive(("b.xml", notes("1")))
        self.write("out", b"a file")

        done = self.extract(archive, code=5)

        self.assertIn(self.path("out"), done.stderr)
        self.assertEqual(self.bytes_of(self.path("out")), b"a file")

    def test_folder_without_write_permission_is_an_error(self):
        archive = self.archive(("b.xml", notes("1")))
        # Not even root can create a folder there.
        out = "/proc/olmkit-out"

        done = self.run_program("extract", archive, "-o", out)

        self.assertEqual(done.returncode, 5)
        self.assertIn(out, done.stderr)

        if os.geteuid() != 0:
            os.mkdir(self.path("out"), 0o555)
            self.extract(archive, code=5)
            self.assertEqual(self.files("out"), [])

    def test_read_only_files_of_an_earlier_run_are_replaced(self):
        archive = self.archive(("b.xml", notes("1")))
        self.extract(archive)
        good = self.bytes_of(self.path("out", "1.msg"))
        for name in ("1.msg", "manifest.jsonl", "summary.json"):
            self.write(os.path.join("out", name), b"old")
            os.chmod(self.path("out", name), 0o444)
        os.chmod(archive, 0o444)

        self.extract(archive)

        self.assertEqual(self.bytes_of(self.path("out", "1.msg")), good)
        self.assertEqual([row["path"] for row in self.manifest()], ["1.msg"])
        self.assertNotEqual(self.bytes_of(self.path("out", "summary.json")), b"old")

    def test_read_only_file_system_is_an_error(self):
        self.small_disk()
        archive = self.archive(("b.xml", notes("1")))
        self.extract(archive, out="disk/out")
        before = {name: self.bytes_of(self.path("disk/out", name))
                  for name in self.files("disk/out", with_summary=True)}
        subprocess.run(["mount", "-o", "remount,ro", self.path("disk")], check=True)

        for out in "disk/out", "disk/new":
            with self.subTest(out):
                done = self.extract(archive, code=5, out=out)
                self.assertIn(self.path(out), done.stderr)
                self.assertIn("Read-only file system", done.stderr)
        self.assertEqual({name: self.bytes_of(self.path("disk/out", name))
                          for name in self.files("disk/out", with_summary=True)}, before)
        self.assertEqual(os.listdir(self.path("disk")), ["out"])

    def test_full_disk_stops_the_run_and_leaves_only_whole_messages(self):
        self.small_disk()
        archive = self.archive(("b.xml", notes(*["x" * 1000 + str(n) for n in range(60)])))

        done = self.extract(archive, code=5, out="disk/out")

        self.assertIn("No space left", done.stderr)
        files = self.files("disk/out")
        self.assertEqual([file for file in files if not file.endswith((".msg", ".jsonl"))],
                         ["unfinished.json"])
        self.assertGreater(len(files), 1)
        for file in files:
            if file.endswith(".msg"):
                self.assertEqual(self.bytes_of(self.path("disk/out", file))[:8], SIGNATURE)

    def test_message_beyond_the_file_size_limit_leaves_no_part(self):
        archive = self.archive(("b.xml", notes("a", "x" * 40000)))

        done = self.extract(archive, code=5, preexec_fn=lambda: resource.setrlimit(
            resource.RLIMIT_FSIZE, (20000, 20000)))

        self.assertIn("File too large", done.stderr)
        self.assertEqual([row["path"] for row in self.manifest()], ["a.msg", None])
        self.assertEqual(self.files("out"), ["a.msg", "manifest.jsonl"])

    def test_full_standard_output_is_an_error(self):
        archive = self.archive(("b.xml", notes("1")))

        with open("/dev/full", "wb") as full:
            self.extract(archive, code=5, stdout=full)

        self.assertEqual(self.files("out"), ["1.msg", "manifest.jsonl"])

    def test_wrong_archives_leave_no_output_folder(self):
        for what, path, code, word in wrong_archives(self):
            with self.subTest(what):
                done = self.extract(path, code=code)
                self.assertEqual(done.stdout, "")
                self.assertIn(path, done.stderr)
                self.assertIn(word, done.stderr)
                self.assertFalse(os.path.exists(self.path("out")))

    def test_items_before_the_cut_of_a_document_are_extracted(self):
        archive = self.archive(("Local/a.xml", "<notes>" + note("1") +
                                "<note><OPFNoteCopyTitle>tw"))

        done = self.extract(archive, code=1)

        self.assertIn("Local/a.xml", done.stderr)
        # The second item is written with the text that is there, or it has failed: never both.
        rows = self.manifest()
        self.assertEqual([row["index"] for row in rows], [0, 1])
        self.assertEqual(rows[0]["path"], "Local/1.msg")

    def test_archive_without_items_has_an_empty_manifest(self):
        archive = self.archive(("Categories.xml", "<categories/>"))

        done = self.extract(archive)

        self.assertIn("0 of 0 messages", done.stdout)
        self.assertEqual(self.manifest(), [])

    def wait_for_handler(self, process):
        """Waits until the process handles SIGINT itself."""
        deadline = time.monotonic() + 30
        caught = 0
        while not caught & (1 << (signal.SIGINT - 1)):
            self.assertLess(time.monotonic(), deadline)
            with open(f"/proc/{process.pid}/status", encoding="ascii") as status:
                caught = int(next(line for line in status if line.startswith("SigCgt")).split()[1],
                             16)

    def long_run(self):
        """Starts an extraction of many items and waits until some are written."""
        archive = self.archive(("b.xml", notes(*[f"note {n}" for n in range(30000)])))
        process = subprocess.Popen([PROGRAM, "extract", archive, "-o", self.path("out")],
                                   stdout=subprocess.PIPE, stderr=subprocess.PIPE)
        deadline = time.monotonic() + 60
        while not os.path.exists(self.path("out", "note 100.msg")):
            self.assertLess(time.monotonic(), deadline)
            time.sleep(0.001)
        return process

    def test_interrupted_run_stops_soon_and_leaves_no_partial_file(self):
        with self.long_run() as process:
            process.send_signal(signal.SIGINT)
            started = time.monotonic()
            process.wait(timeout=30)
            self.assertLess(time.monotonic() - started, 1)
            self.assertIn(b"olmkit: interrupted", process.stderr.read())
        self.assertEqual(process.returncode, 130)
        rows = self.manifest()
        self.assertGreater(len(rows), 100)
        self.assertLess(len(rows), 30000)
        self.assertEqual(self.files("out"),
                         sorted([row["path"] for row in rows] + ["manifest.jsonl", "unfinished.json"]))

    def test_repeated_interrupt_leaves_no_partial_file(self):
        with self.long_run() as process:
            process.send_signal(signal.SIGTERM)
            process.send_signal(signal.SIGTERM)
            process.send_signal(signal.SIGINT)
            process.wait(timeout=30)
        self.assertEqual(process.returncode, 130)
        self.assertEqual([file for file in self.files("out") if file.startswith(".")], [])

    def test_interrupt_during_a_long_step_ends_the_run_within_a_second(self):
        # One item with a very long text, so that no step of it ends soon.
        archive = self.archive(("b.xml", "<notes><note><unknown>" + "x" * 400_000_000),
                               name="huge.olm")
        with subprocess.Popen([PROGRAM, "extract", archive, "-o", self.path("out"), "--at", "0:1"],
                              stdout=subprocess.PIPE, stderr=subprocess.PIPE) as process:
            self.wait_for_handler(process)
            process.send_signal(signal.SIGINT)
            started = time.monotonic()
            process.wait(timeout=30)
            self.assertLess(time.monotonic() - started, 1)
        self.assertEqual(process.returncode, 130)
        if os.path.exists(self.path("out")):
            self.assertEqual([file for file in self.files("out") if file.endswith(".part")], [])

    @needs_real_archive
    def test_every_item_of_the_real_archive_has_the_same_message_twice(self):
        for out in ("first", "second"):
            done = self.extract(REAL_ARCHIVE, out=out)
            self.assertEqual(done.stderr, "")

        rows = self.manifest("first")
        self.assertEqual([row["index"] for row in rows], list(range(28)))
        self.assertEqual({(row["result"], row["status"], row["error"]) for row in rows},
                         {(0, 0, None)})
        self.assertEqual([row["warnings"] for row in rows], [[]] * 28)
        self.assertEqual(len(self.files("first")), 29)
        self.assertEqual(self.files("first"), self.files("second"))
        for file in self.files("first"):
            self.assertEqual(self.bytes_of(self.path("first", file)),
                             self.bytes_of(self.path("second", file)), file)


if __name__ == "__main__":
    unittest.main()
