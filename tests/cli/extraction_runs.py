"""Shared by the tests of whole extractions: archives with items and damage of many kinds, and the
comparison of two output folders."""

import os
import random

from program import ProgramTest, note


def mail(subject, *urls, sent="2019-03-04T09:00:00"):
    """Returns a mail with an attachment for each URL."""
    attachments = "".join(f'<messageAttachment OPFAttachmentURL="{url}"/>' for url in urls)
    return (f"<email><OPFMessageCopySubject>{subject}</OPFMessageCopySubject>"
            f"<OPFMessageCopySentTime>{sent}</OPFMessageCopySentTime>"
            f"<OPFMessageCopyAttachmentList>{attachments}</OPFMessageCopyAttachmentList></email>")


def mails(*texts):
    return "<emails>" + "".join(texts) + "</emails>"


class RunTest(ProgramTest):
    def extract(self, archive, *arguments, out="out", code=0, **options):
        done = self.run_program("extract", archive, "-o", self.path(out), *arguments, **options)
        self.assertEqual(done.returncode, code, done.stderr)
        return done

    def mixed_archive(self, seed=1, count=120, name="mixed.olm"):
        """Makes an archive of documents with one mail or several notes, good and damaged attachments,
        documents that break off, one with a wrong checksum, and many equal names."""
        dice = random.Random(seed)
        entries = []
        for number in range(count):
            if dice.random() < 0.7:
                urls = dice.sample(["a.bin", "gone.bin", "bad.bin", "cut.bin"], dice.randrange(3))
                text = mails(mail(f"mail {dice.randrange(9)}", *urls))
            else:
                text = "<notes>" + "".join(note(f"note {dice.randrange(9)}")
                                           for _ in range(dice.randrange(1, 9))) + "</notes>"
            if dice.random() < 0.05:
                text = text[:-dice.randrange(8, 60)]
            entries.append((f"Local/{dice.choice('abc')}/{number:05}.xml", text))
        entries += [("a.bin", bytes(dice.randbytes(20_000))), ("bad.bin", b"x" * 9000),
                    ("cut.bin", "".join(f"{dice.random()} " for _ in range(3000))), ("wrong.xml", mails(mail("wrong")))]
        path = self.archive(*entries, name=name)
        contents = bytearray(self.bytes_of(path))
        for damaged in (b"bad.bin", b"wrong.xml"):
            row = contents.rfind(damaged) - 46  # its row in the directory
            assert contents[row:row + 4] == b"PK\x01\x02"
            contents[row + 16] ^= 1  # the checksum
        data = contents.find(b"cut.bin") + 7
        contents[data + 9_000:data + 9_100] = b"\xff" * 100  # in the middle of the deflated bytes
        return self.write(name, contents)

    def tree(self, name):
        """Returns every file below a folder, with its contents."""
        return {file: self.bytes_of(self.path(name, file)) for file in self.files(name, with_summary=True)}

    def assert_same_tree(self, one, other):
        first, second = self.tree(one), self.tree(other)
        self.assertEqual(sorted(first), sorted(second))
        for file, contents in first.items():
            self.assertEqual(contents, second[file], file)

    def copy_of_tree(self, source, target):
        for file, contents in self.tree(source).items():
            os.makedirs(os.path.dirname(self.path(target, file)), exist_ok=True)
            self.write(os.path.join(target, file), contents)
