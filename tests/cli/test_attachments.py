"""The attachments in a manifest, and olmkit extract --attachments."""

import hashlib
import json
import os
import random
import resource
import struct
import subprocess
import sys
import unittest
import zipfile
from xml.sax.saxutils import quoteattr

from program import PROGRAM, REAL_ARCHIVE, ProgramTest, needs_real_archive, note

KEYS = ["name", "url", "declared_size", "path", "size", "sha256", "error"]


def attachment(url=None, name=None):
    """Returns the element of one attachment."""
    attributes = ""
    if name is not None:
        attributes += f" OPFAttachmentName={quoteattr(name)}"
    if url is not None:
        attributes += f" OPFAttachmentURL={quoteattr(url)}"
    return f"<messageAttachment{attributes}/>"


def mail(subject, *attachments):
    return (f"<email><OPFMessageCopySubject>{subject}</OPFMessageCopySubject>"
            f"<OPFMessageCopyAttachmentList>{''.join(attachments)}</OPFMessageCopyAttachmentList></email>")


def mails(*texts):
    return "<emails>" + "".join(texts) + "</emails>"


def sha256(contents):
    return hashlib.sha256(contents).hexdigest()


def whole(name, url, contents, path=None):
    """Returns the manifest's object for an attachment without a fault."""
    return {"name": name, "url": url, "declared_size": len(contents), "path": path,
            "size": len(contents), "sha256": sha256(contents), "error": None}


class AttachmentsTest(ProgramTest):
    def extract(self, archive, *arguments, code=0, out="out", **options):
        done = self.run_program("extract", archive, "-o", self.path(out), *arguments, **options)
        self.assertEqual(done.returncode, code, done.stderr)
        return done

    def rows(self, out="out"):
        with open(self.path(out, "manifest.jsonl"), encoding="utf-8") as file:
            rows = [json.loads(line) for line in file]
        for row in rows:
            for account in row["attachments"]:
                self.assertEqual(list(account), KEYS)
        return rows

    def attachments(self, out="out"):
        return [row["attachments"] for row in self.rows(out)]

    def file_names(self, *pairs):
        """Returns the file names of attachments with these names, in order."""
        payload = b"payload"
        archive = self.archive(
            ("a.xml", mails(mail("one", *[attachment("x/" + url, name) for url, name in pairs]))),
            *{("x/" + url, payload) for url, _ in pairs}, name="names.olm")
        self.extract(archive, "--attachments", out="names")
        paths = [account["path"] for account in self.attachments("names")[0]]
        self.assertEqual(len(set(paths)), len(paths))
        names = []
        for path in paths:
            folder, name = os.path.split(path)
            self.assertEqual(folder, "one (attachments)")
            self.assertEqual(self.bytes_of(self.path("names", path)), payload)
            names.append(name)
        return names

    def test_manifest_lists_each_attachment_in_the_order_of_the_mail(self):
        csv, picture = b"time,height\n12:00,3.1\n", random.Random(1).randbytes(700_000)
        archive = self.archive(
            ("m/a.xml", mails(mail("one", attachment("x/2", "buoy.png"), attachment("x/1", "潮.csv")),
                              mail("two"))),
            ("n.xml", "<notes>" + note("three") + "</notes>"), ("x/1", csv), ("x/2", picture))

        self.extract(archive)

        self.assertEqual(self.attachments(), [
            [whole("buoy.png", "x/2", picture), whole("潮.csv", "x/1", csv)], [], []])
        self.assertEqual(self.files("out"),
                         ["m/one.msg", "m/two.msg", "manifest.jsonl", "three.msg"])

    def test_lost_attachments_say_why_and_shift_no_other(self):
        good, bad, secret = b"good", b"payload that is long enough" * 9, b"keep out" * 9
        archive = self.archive(
            ("a.xml", mails(mail("one", attachment(None, "unnamed.txt"), attachment("x/good", "a"),
                                 attachment("gone.txt"), attachment(), attachment("bad.txt"),
                                 attachment("secret.txt", "s.txt"), attachment("x/good")))),
            ("x/good", good), ("bad.txt", bad), ("secret.txt", secret), method=zipfile.ZIP_STORED)
        contents = bytearray(self.bytes_of(archive))
        contents[contents.find(bad) + 5] ^= 1
        for signature, offset, name_offset in ((b"PK\x03\x04", 6, 30), (b"PK\x01\x02", 8, 46)):
            place = contents.find(signature)
            while place >= 0:
                if contents[place + name_offset:].startswith(b"secret.txt"):
                    flags, = struct.unpack_from("<H", contents, place + offset)
                    struct.pack_into("<H", contents, place + offset, flags | 1)
                place = contents.find(signature, place + 4)
        self.write("mail.olm", contents)
        damaged = bytearray(bad)
        damaged[5] ^= 1

        done = self.extract(archive, "--attachments", code=1)

        nameless = dict.fromkeys(KEYS) | {"error": "names no file"}
        folder = "one (attachments)/"
        self.assertEqual(self.attachments(), [[
            nameless,
            whole("a", "x/good", good, folder + "a"),
            dict.fromkeys(KEYS) | {"url": "gone.txt", "error": 'there is no file named "gone.txt"'},
            nameless,
            whole(None, "bad.txt", bytes(damaged), folder + "bad.txt") | {"error": "its checksum is wrong"},
            dict.fromkeys(KEYS) | {"name": "s.txt", "url": "secret.txt", "declared_size": len(secret),
                                   "error": "it is encrypted"},
            whole(None, "x/good", good, folder + "good")]])
        row, = self.rows()
        self.assertEqual(row["warnings"].count("an attachment is missing: it names no file"), 2)
        self.assertEqual(len(row["warnings"]), 5)
        self.assertIn("an attachment is missing: it names no file", done.stderr)
        self.assertEqual(self.files("out"), sorted(
            ["one.msg", "manifest.jsonl"] + [folder + name for name in ("a", "bad.txt", "good")]))

    def test_size_and_hash_of_a_cut_entry_are_those_in_the_message(self):
        payload = random.Random(2).randbytes(300_000)
        archive = self.archive(("a.xml", mails(mail("one", attachment("big.bin", "big.bin")))),
                               ("big.bin", payload))
        contents = bytearray(self.bytes_of(archive))
        place = contents.find(b"big.bin", contents.find(b"</emails>") + 1)
        middle = contents.rfind(b"PK\x01\x02") // 2
        contents[middle:middle + 2000] = b"\xff" * 2000
        self.assertGreater(place, 0)
        self.write("mail.olm", contents)

        self.extract(archive, "--attachments", code=1)

        account = self.attachments()[0][0]
        written = self.bytes_of(self.path("out", "one (attachments)", "big.bin"))
        self.assertLess(0, len(written))
        self.assertEqual(account["declared_size"], len(payload))
        self.assertEqual((account["size"], account["sha256"]), (len(written), sha256(written)))
        self.assertTrue(account["error"])

    def test_sizes_around_the_blocks_that_are_hashed(self):
        block, source = 256 << 10, random.Random(3)
        sizes = [0, 1, 1024, block - 1, block, block + 1, 3 * block, 9 * block + 7, 0, 5]
        contents = [source.randbytes(size) for size in sizes]
        archive = self.archive(
            ("a.xml", mails(mail("one", *[attachment(f"x/{n}", f"{n}") for n in range(len(sizes))]))),
            *[(f"x/{n}", content) for n, content in enumerate(contents)], method=zipfile.ZIP_STORED)

        self.extract(archive, "--attachments")

        folder = "one (attachments)/"
        self.assertEqual(self.attachments(), [[whole(f"{n}", f"x/{n}", content, folder + f"{n}")
                                               for n, content in enumerate(contents)]])
        for n, content in enumerate(contents):
            self.assertEqual(self.bytes_of(self.path("out", folder + f"{n}")), content)

    def test_files_are_written_only_when_asked_for_and_change_no_message(self):
        archive = self.archive(
            ("m/a.xml", mails(mail("one", attachment("x/1", "a.txt"), attachment("x/2", "b.txt")))),
            ("x/1", b"first"), ("x/2", b"second"))

        self.extract(archive, out="without")
        self.extract(archive, "--attachments", out="with")

        self.assertEqual(self.files("without"), ["m/one.msg", "manifest.jsonl"])
        self.assertEqual(self.files("with"), ["m/one (attachments)/a.txt", "m/one (attachments)/b.txt",
                                              "m/one.msg", "manifest.jsonl"])
        self.assertEqual(self.bytes_of(self.path("with", "m/one.msg")),
                         self.bytes_of(self.path("without", "m/one.msg")))
        plain, both = self.rows("without"), self.rows("with")
        for account in both[0]["attachments"]:
            self.assertEqual(account["path"], "m/one (attachments)/" + account["name"])
            account["path"] = None
        self.assertEqual(plain, both)

    def test_names_are_unique_on_every_file_system(self):
        self.assertEqual(
            self.file_names(("1", "tide.csv"), ("1", "TIDE.csv"), ("1", "tide (2).csv"),
                            ("2", "tide.csv"), ("1", "tide"), ("1", "tide"), ("1", "a.tar.gz"),
                            ("1", "a.tar.gz"), ("1", "caf\u00e9"), ("1", "cafe\u0301")),
            ["tide.csv", "TIDE (2).csv", "tide (2) (2).csv", "tide (3).csv", "tide", "tide (2)",
             "a.tar.gz", "a.tar (2).gz", "caf\u00e9", "cafe\u0301 (2)"])

    def test_names_are_safe_and_never_lead_out(self):
        self.assertEqual(
            self.file_names(("1", "../../etc/passwd"), ("2", "/root/.profile"), ("3", "C:\\a.exe"),
                            ("4", "."), ("5", ".."), ("6", ".hidden"), ("7", "con.txt"),
                            ("8", "dots. . ."), ("9", "bell\u202egpj.exe"), ("10", "x" * 300 + ".jpeg"),
                            ("11", "y." + "z" * 300), ("12", " ")),
            ["_._.._etc_passwd", "_root_.profile", "C__a.exe", "_", "_ (2)",
             "_hidden", "_con.txt", "dots", "bell_gpj.exe", "x" * 237 + ".jpeg",
             "y." + "z" * 240, "_ (3)"])

    def test_attachment_without_a_name_is_named_after_its_entry(self):
        self.assertEqual(
            self.file_names(("deep/er/map.png", None), ("deep/map.png", None), ("chart", ""),
                            ("back\\slash.txt", None)),
            ["map.png", "map (2).png", "chart", "slash.txt"])

    def test_folder_of_attachments_belongs_to_one_message(self):
        archive = self.archive(
            ("one (attachments)/b.xml", "<notes>" + note("a") + "</notes>"),
            ("ONE (Attachments)/c.xml", "<notes>" + note("a") + "</notes>"),
            ("a.xml", mails(mail("one", attachment("x", "a.msg")), mail("one", attachment("x", "a.msg")))),
            ("x", b"mine"))

        self.extract(archive, "--attachments")

        self.assertEqual(self.files("out"), sorted([
            "ONE (Attachments)_/a (2).msg", "one (attachments)_/a.msg", "one.msg", "one (2).msg",
            "one (attachments)/a.msg", "one (2) (attachments)/a.msg", "manifest.jsonl"]))
        self.assertEqual(self.bytes_of(self.path("out", "one (attachments)", "a.msg")), b"mine")

    def test_longest_names_leave_room_for_the_folder(self):
        archive = self.archive(
            ("a.xml", mails(*[mail("s" * 400, attachment("x", "n" * 400 + ".txt"))] * 2)), ("x", b"mine"))

        self.extract(archive, "--attachments")

        for path in self.files("out"):
            for level in path.split("/"):
                self.assertLessEqual(len(level.encode()), 255)
        self.assertEqual(len(self.files("out")), 5)

    def test_existing_file_is_replaced_and_no_link_is_followed(self):
        archive = self.archive(("a.xml", mails(mail("one", attachment("x", "a.txt")))), ("x", b"new"))
        os.makedirs(self.path("out", "one (attachments)"))
        self.write("elsewhere.txt", b"old")
        os.symlink(self.path("elsewhere.txt"), self.path("out", "one (attachments)", "a.txt"))

        self.extract(archive, "--attachments")

        self.assertEqual(self.bytes_of(self.path("elsewhere.txt")), b"old")
        self.assertFalse(os.path.islink(self.path("out", "one (attachments)", "a.txt")))
        self.assertEqual(self.bytes_of(self.path("out", "one (attachments)", "a.txt")), b"new")

    def test_link_in_the_place_of_a_folder_fails_that_mail_alone(self):
        archive = self.archive(
            ("a.xml", mails(mail("one", attachment("x", "a.txt")), mail("two", attachment("x", "a.txt")))),
            ("x", b"new"))
        os.makedirs(self.path("elsewhere"))
        os.makedirs(self.path("out"))
        os.symlink(self.path("elsewhere"), self.path("out", "one (attachments)"))

        done = self.extract(archive, "--attachments", code=5)

        first, second = self.rows()
        self.assertIsNone(first["path"])
        self.assertIn("symbolic link", first["error"])
        self.assertEqual(first["attachments"], [])
        self.assertEqual(second["attachments"],
                         [whole("a.txt", "x", b"new", "two (attachments)/a.txt")])
        self.assertEqual(os.listdir(self.path("elsewhere")), [])
        self.assertFalse(os.path.exists(self.path("out", "one.msg")))
        self.assertIn("symbolic link", done.stderr)

    def test_full_output_leaves_no_part(self):
        payload = random.Random(4).randbytes(3 << 20)
        archive = self.archive(("a.xml", mails(mail("one", attachment("x", "a.bin")))), ("x", payload))

        def limit():
            resource.setrlimit(resource.RLIMIT_FSIZE, (1 << 20, 1 << 20))

        done = self.extract(archive, "--attachments", code=5, preexec_fn=limit)

        self.assertIn("can't be written", done.stderr)
        self.assertEqual(self.files("out"), ["manifest.jsonl"])
        self.assertEqual(self.attachments(), [[]])

    def test_many_large_attachments_take_little_memory_and_leave_no_temporary_file(self):
        payload = random.Random(5).randbytes(8 << 20)
        archive = self.archive(
            ("a.xml", mails(mail("one", *[attachment("x", f"{n}.bin") for n in range(12)]))),
            ("x", payload), method=zipfile.ZIP_STORED)

        script = ("import resource, subprocess, sys; subprocess.run(sys.argv[1:], check=True);"
                  "print(resource.getrusage(resource.RUSAGE_CHILDREN).ru_maxrss)")
        done = subprocess.run(
            [sys.executable, "-c", script, PROGRAM, "extract", archive, "-o", self.path("out"), "--attachments"],
            stdout=subprocess.PIPE, check=True, text=True)

        self.assertEqual(self.attachments(), [[
            whole(f"{n}.bin", "x", payload, f"one (attachments)/{n}.bin") for n in range(12)]])
        self.assertEqual(len(self.files("out")), 14)
        if not sanitized():
            self.assertLess(int(done.stdout.split()[-1]), 24 << 10)

    def test_hashes_are_those_of_the_files_whatever_their_sizes(self):
        """Small messages are hashed at once, long ones while the next messages are made."""
        block, held = 256 << 10, 4 << 20
        sizes = [0, 1, block - 1, block, block + 1, 3 * block, held - 1, held, held + block + 1]
        payload = random.Random(6).randbytes(max(sizes))
        archive = self.archive(
            *[(f"{n}.xml", mails(mail(f"{n}", attachment(f"x{n}", "a.bin"), attachment("x1", "b.bin"))))
              for n in range(len(sizes))],
            *[(f"x{n}", payload[:size]) for n, size in enumerate(sizes)], method=zipfile.ZIP_STORED)
        for jobs in "1", "2":
            with self.subTest(jobs=jobs):
                self.extract(archive, "--jobs", jobs, out="out" + jobs)
                rows = self.rows("out" + jobs)
                self.assertEqual(len(rows), len(sizes))
                for n, row in enumerate(rows):
                    written = self.bytes_of(self.path("out" + jobs, row["path"]))
                    self.assertEqual((row["size"], row["sha256"]), (len(written), sha256(written)))
                    self.assertEqual(row["attachments"], [whole("a.bin", f"x{n}", payload[:sizes[n]]),
                                                          whole("b.bin", "x1", payload[:1])])

    @needs_real_archive
    def test_attachments_of_the_real_archive_equal_its_entries(self):
        self.extract(REAL_ARCHIVE, "--attachments")

        count = 0
        with zipfile.ZipFile(REAL_ARCHIVE) as archive:
            for account in sum(self.attachments(), []):
                contents = archive.read(account["url"])
                self.assertEqual(account, whole(account["name"], account["url"], contents, account["path"]))
                self.assertEqual(self.bytes_of(self.path("out", account["path"])), contents)
                count += 1
        self.assertEqual(count, 9)


def sanitized():
    """Returns whether the program was built with AddressSanitizer."""
    with open(PROGRAM, "rb") as file:
        return b"__asan_init" in file.read()


if __name__ == "__main__":
    unittest.main()
