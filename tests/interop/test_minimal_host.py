"""Compares the example host, which shares no code with the reference host, with olmkit: the same
rows and, stream by stream, the same messages."""

import json
import os
import struct
import subprocess
import tempfile
import unittest
import uuid
import zipfile

from made_archives import leaf, tag, write_archive
from olmkit import PROGRAM, REAL_ARCHIVE, SAMPLE, SOURCE, extract, needs_real_archive
from read_compound import read_message

BUILD = os.environ["OLMKIT_BINARY_DIR"]
HOST = os.path.join(BUILD, "bin", "minimal_host")
MODULE = os.path.join(BUILD, "lib", "olmfilter.so")

DONE, SOMETHING_FAILED, WRONG_USAGE = 0, 1, 2
NOTES = "Local/Notes/Notes.xml"


def run_host(*arguments, module=MODULE, stdout=subprocess.PIPE):
    done = subprocess.run([HOST, module, *arguments], stdout=stdout, stderr=subprocess.PIPE,
                          check=False, timeout=120)
    done.stderr = done.stderr.decode("utf-8")
    if done.stdout is not None:
        done.stdout = done.stdout.decode("utf-8")
    return done


def on_one_line(text):
    return "".join(" " if unit < " " else unit for unit in text)


def rows_of_olmkit(archive):
    done = subprocess.run([PROGRAM, "list", archive, "--format", "jsonl"], stdout=subprocess.PIPE,
                          stderr=subprocess.DEVNULL, check=False)
    return [json.loads(line) for line in done.stdout.decode("utf-8").split("\n")[:-1]]


def lines_of_olmkit(archive):
    """Returns olmkit's rows in the form that the example prints."""
    return ["\t".join([str(row["index"]), on_one_line(row["name"]), on_one_line(row["subject"]),
                       row["sent"] or row["received"] or row["modified"], row["kind"]])
            for row in rows_of_olmkit(archive)]


def read_folder(top):
    """Returns the streams and storages in a folder in the form of read_message()."""
    streams, storages = {}, {}
    for place, folders, files in os.walk(top):
        prefix = "" if place == top else os.path.relpath(place, top) + "/"
        storages[prefix or "/"] = ""
        for name in files:
            with open(os.path.join(place, name), "rb") as file:
                streams[prefix + name] = file.read()
    storages["/"] = str(uuid.UUID(bytes_le=streams.pop("class-id"))).upper()
    return streams, storages


def notes(*titles):
    return tag("notes", inner="".join(
        tag("note", inner=leaf("OPFNoteCopyTitle", title)) for title in titles))


class HostTest(unittest.TestCase):
    def setUp(self):
        folder = tempfile.TemporaryDirectory()
        self.addCleanup(folder.cleanup)
        self.folder = folder.name
        self.maxDiff = 2000

    def path(self, *names):
        return os.path.join(self.folder, *names)

    def archive(self, entries):
        return write_archive(self.path("made.olm"), entries)

    def check_rows(self, archive, count, status=DONE):
        done = run_host(archive)
        self.assertEqual(done.returncode, status, done.stderr)
        lines = done.stdout.split("\n")[:-1]
        self.assertEqual(len(lines), count)
        self.assertEqual(lines, lines_of_olmkit(archive))
        return done

    def check_messages(self, archive, count, status=DONE):
        """Compares the message of every item of the archive."""
        checked = 0
        for row in extract(archive, self.path("by-olmkit")):
            out = self.path(str(row["index"]))
            done = run_host(archive, "--extract", str(row["index"]), out)
            self.assertEqual(done.returncode, status, done.stderr)
            self.assertEqual(done.stdout, "")
            self.assertNotEqual(os.path.exists(out + ".part"), os.path.exists(out))
            streams, storages = read_message(self.path("by-olmkit", row["path"]))
            found_streams, found_storages = read_folder(out if status == DONE else out + ".part")
            self.assertEqual(sorted(found_streams), sorted(streams))
            for name, data in streams.items():
                self.assertEqual(found_streams[name], data, name)
            self.assertEqual(found_storages, storages)
            checked += 1
        self.assertEqual(checked, count)


class SameAsOlmkitTest(HostTest):
    def test_rows_of_the_sample_match_olmkit(self):
        self.assertEqual(self.check_rows(SAMPLE, 13).stderr, "")

    def test_messages_of_the_sample_match_olmkit(self):
        self.check_messages(SAMPLE, 13)

    @needs_real_archive
    def test_rows_of_the_real_archive_match_olmkit(self):
        self.check_rows(REAL_ARCHIVE, 28)

    @needs_real_archive
    def test_messages_of_the_real_archive_match_olmkit(self):
        self.check_messages(REAL_ARCHIVE, 28)

    def test_text_split_by_comments_and_cdata_is_joined(self):
        title = "<OPFNoteCopyTitle>a<!-- b -->c<![CDATA[<d>]]>&#x1F30A;<?e f?>g</OPFNoteCopyTitle>"
        archive = self.archive({NOTES: tag("notes", inner=tag("note", inner=title))})
        self.check_rows(archive, 1)
        self.check_messages(archive, 1)
        streams, _ = read_folder(self.path("0"))
        self.assertEqual(streams["__substg1.0_0037001F"].decode("utf-16-le"), "ac<d>\U0001F30Ag")

    def test_white_space_is_text_only_before_its_own_closing_tag(self):
        spaced = "<notes>\n <note>\n <OPFNoteCopyTitle> \n</OPFNoteCopyTitle>\n</note>\n</notes>"
        archive = self.archive({NOTES: spaced})
        self.check_rows(archive, 1)
        self.check_messages(archive, 1)
        streams, _ = read_folder(self.path("0"))
        self.assertEqual(streams["__substg1.0_0037001F"].decode("utf-16-le"), " \n")

    def test_letters_with_the_low_byte_of_a_space_are_not_white_space(self):
        inner = "\u0120\u0109" + leaf("OPFNoteCopyTitle", "\u0120\u0109\u010a\u010d")
        archive = self.archive({NOTES: tag("notes", inner=tag("note", inner=inner))})
        self.check_rows(archive, 1)
        self.check_messages(archive, 1)

    def test_texts_around_the_size_of_a_chunk_are_complete(self):
        texts = ["a" * 1023, "b" * 1024, "c" * 1025, "d" * 3000, "\U0001F30A" * 1024,
                 "e" + "\U0001F30A" * 1024, "\u6c34" * 70000]
        archive = self.archive({NOTES: notes(*texts)})
        self.check_rows(archive, len(texts))
        self.check_messages(archive, len(texts))

    def test_unknown_elements_with_children_and_mixed_text_are_skipped(self):
        inner = ("before<OPFUnknown a=''>b<OPFNoteCopyTitle>inner</OPFNoteCopyTitle>c</OPFUnknown>"
                 + leaf("OPFNoteCopyTitle", "outer"))
        archive = self.archive({NOTES: "<notes>d" + tag("note", inner=inner) + "e"
                                + tag("note") + "<note/></notes>"})
        self.check_rows(archive, 3)
        self.check_messages(archive, 3)

    def test_each_of_a_hundred_items_in_a_document_can_be_extracted(self):
        archive = self.archive({NOTES: notes(*("note %d" % number for number in range(100)))})
        self.check_rows(archive, 100)
        self.check_messages(archive, 100)

    def test_entries_with_the_same_name_are_distinguished(self):
        with self.assertWarns(UserWarning), zipfile.ZipFile(self.path("made.olm"), "w") as made:
            for title in "first", "second":
                made.writestr("Accounts/", "")
                made.writestr(NOTES, notes(title))
        self.check_rows(self.path("made.olm"), 2)
        self.check_messages(self.path("made.olm"), 2)

    def test_an_archive_without_documents_has_no_rows(self):
        self.check_rows(self.archive({"a.txt": "text", "b.xml": "<html/>"}), 0)


class FailureTest(HostTest):
    def test_items_before_the_fault_in_a_broken_document_are_listed(self):
        archive = self.archive({NOTES: notes("whole", "second")[:-40] + "&", "z/" + NOTES:
                                notes("after")})
        done = self.check_rows(archive, 3, SOMETHING_FAILED)
        self.assertIn("minimal_host: " + NOTES + ": ", done.stderr)

    def test_a_truncated_document_has_the_same_rows(self):
        whole = notes("first", "second")
        for size in range(0, len(whole), 7):
            with self.subTest(size=size):
                archive = self.archive({NOTES: whole[:size]})
                self.assertEqual(run_host(archive).stdout.split("\n")[:-1],
                                 lines_of_olmkit(archive))

    def test_an_external_entity_ends_the_document(self):
        secret = self.path("secret.txt")
        with open(secret, "w", encoding="ascii") as file:
            file.write("harbour keys")
        document = ('<!DOCTYPE notes [<!ENTITY e SYSTEM "file://%s"><!ENTITY i "inside">]>' % secret
                    + tag("notes", inner=tag("note", inner=tag("OPFNoteCopyTitle", inner="&i;"))
                          + tag("note", inner=tag("OPFNoteCopyTitle", inner="&e;"))))
        done = self.check_rows(self.archive({NOTES: document}), 2, SOMETHING_FAILED)
        self.assertIn("inside", done.stdout)
        self.assertNotIn("harbour", done.stdout)

    def test_a_mail_without_its_attachment_keeps_the_name_of_an_incomplete_output(self):
        attachment = tag("messageAttachment", {"OPFAttachmentURL": "not/there",
                                               "OPFAttachmentName": "chart.pdf"})
        mail = tag("emails", inner=tag("email", inner=tag(
            "OPFMessageCopyAttachmentList", inner=attachment)))
        archive = self.archive({"Local/Inbox/m.xml": mail})
        self.check_rows(archive, 1)
        self.check_messages(archive, 1, SOMETHING_FAILED)
        self.assertFalse(os.path.exists(self.path("0")))

    def test_a_wrong_checksum_is_reported(self):
        archive = self.archive({NOTES: notes("a"), "z/" + NOTES: notes("b")})
        with open(archive, "r+b") as file:
            contents = file.read()
            place = contents.index(b"PK\x01\x02") + 16
            file.seek(place)
            file.write(struct.pack("<I", struct.unpack_from("<I", contents, place)[0] ^ 1))
        done = self.check_rows(archive, 2, SOMETHING_FAILED)
        self.assertIn(NOTES + ": is damaged", done.stderr)

    def test_an_unknown_item_is_refused(self):
        archive = self.archive({NOTES: notes("a")})
        for number in "1", "2147483647":
            done = run_host(archive, "--extract", number, self.path("out"))
            self.assertEqual(done.returncode, SOMETHING_FAILED)
            self.assertIn("no such item", done.stderr)
        self.assertEqual(os.listdir(self.folder), ["made.olm"])

    def test_an_existing_output_is_not_touched(self):
        archive = self.archive({NOTES: notes("a")})
        os.mkdir(self.path("out"))
        with open(self.path("out", "mine"), "w", encoding="ascii") as file:
            file.write("kept")
        done = run_host(archive, "--extract", "0", self.path("out"))
        self.assertEqual(done.returncode, SOMETHING_FAILED)
        self.assertEqual(os.listdir(self.path("out")), ["mine"])

    def test_a_folder_that_can_not_be_created_is_reported(self):
        archive = self.archive({NOTES: notes("a")})
        done = run_host(archive, "--extract", "0", self.path("no", "such", "out"))
        self.assertEqual(done.returncode, SOMETHING_FAILED)
        self.assertIn("No such file or directory", done.stderr)

    def test_rows_that_can_not_be_printed_are_reported(self):
        with open("/dev/full", "wb") as full:
            done = run_host(SAMPLE, stdout=full)
        self.assertEqual(done.returncode, SOMETHING_FAILED)
        self.assertIn("standard output", done.stderr)

    def test_a_file_that_is_not_an_archive_is_refused(self):
        for path in self.path("missing.olm"), self.folder, os.path.join(SOURCE, "README.md"):
            done = run_host(path)
            self.assertEqual((done.returncode, done.stdout), (SOMETHING_FAILED, ""))
            self.assertIn("is not a ZIP archive or can't be read", done.stderr)

    def test_a_file_that_is_not_a_module_is_refused(self):
        for path in self.path("missing.so"), os.path.join(SOURCE, "README.md"):
            done = run_host(SAMPLE, module=path)
            self.assertEqual((done.returncode, done.stdout), (SOMETHING_FAILED, ""))
            self.assertIn(os.path.basename(path), done.stderr)

    def test_wrong_usage_is_reported(self):
        for arguments in ([], [SAMPLE, "--extract"], [SAMPLE, "--extract", "0"],
                          [SAMPLE, "--extract", "", "x"], [SAMPLE, "--extract", "1x", "x"],
                          [SAMPLE, "--extract", "-1", "x"], [SAMPLE, "--list", "0", "x"],
                          [SAMPLE, "--extract", "2147483648", "x"]):
            done = run_host(*arguments)
            self.assertEqual((done.returncode, done.stdout), (WRONG_USAGE, ""), arguments)
            self.assertTrue(done.stderr.startswith("usage: "), done.stderr)


class BuildTest(HostTest):
    def test_it_can_be_built_alone_with_plain_flags(self):
        folder = os.path.join(SOURCE, "examples", "minimal-host")
        sources = sorted(os.path.join(folder, name) for name in os.listdir(folder)
                         if name.endswith(".c"))
        built = self.path("host")
        subprocess.run(["cc", "-std=c11", "-I" + SOURCE, "-rdynamic", "-o", built, *sources,
                        "-lzip", "-lexpat", "-ldl"], check=True)
        with open(built, "rb") as file:
            self.assertEqual(file.read(4), b"\x7fELF")


if __name__ == "__main__":
    unittest.main()
