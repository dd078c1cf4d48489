"""Extracts mails and compares what independent programs read with the documents. msgconvert and POI
read messages; olefile and olecfexport read only the container."""

import email.utils
import hashlib
import os
import unittest

import archive_items
import message_tests
import olmkit
import programs
from archive_items import addresses_of, text_of, time_of
from expected.mail import BCC, CC, HAS_ATTACHMENTS, IMPORTANCE, NORMAL, READ, TO, UNSENT, UTF16_MARK
from made_archives import address, categories, leaf, tag, write_archive

GROUPS = {"OPFMessageCopyToAddresses": TO, "OPFMessageCopyCCAddresses": CC,
          "OPFMessageCopyBCCAddresses": BCC}


def is_true(text):
    """Returns whether a number in any form isn't zero; None for None."""
    return None if text is None else float(text) != 0


def sha256(data):
    return hashlib.sha256(data).hexdigest()


class ExpectedMail:
    """The contents of a mail according to its document."""

    def __init__(self, archive, mail):
        self.subject = text_of(mail, "OPFMessageCopySubject")
        self.topic = text_of(mail, "OPFMessageCopyThreadTopic")
        self.message_id = text_of(mail, "OPFMessageCopyMessageID")
        self.body = text_of(mail, "OPFMessageCopyBody")
        self.html = text_of(mail, "OPFMessageCopyHTMLBody")
        self.sent = time_of(mail, "OPFMessageCopySentTime")
        self.received = time_of(mail, "OPFMessageCopyReceivedTime")
        self.modified = time_of(mail, "OPFMessageCopyModDate")
        priority = text_of(mail, "OPFMessageGetPriority")
        self.importance = None if priority is None else IMPORTANCE.get(int(priority), NORMAL)
        # (recipient type, display name, address)
        self.people = [(GROUPS[group.tag], *person) for group in mail if group.tag in GROUPS
                       for person in addresses_of(mail, group.tag)]
        self.sender = next(iter(addresses_of(mail, "OPFMessageCopyFromAddresses")), None)
        self.answered = text_of(mail, "OPFMessageCopyInReplyTo")
        self.references = text_of(mail, "OPFMessageCopyReferences")
        self.is_read = is_true(text_of(mail, "OPFMessageGetIsRead"))
        self.is_sent = is_true(text_of(mail, "OPFMessageGetWasSent"))
        self.has_categories = mail.find("OPFMessageCopyCategoryList") is not None
        # (name, type, content id, bytes)
        self.attachments = [
            (each.get("OPFAttachmentName"), each.get("OPFAttachmentContentType"),
             each.get("OPFAttachmentContentID"),
             archive_items.attachment_bytes(archive, each.get("OPFAttachmentURL")))
            for each in mail.iterfind("OPFMessageCopyAttachmentList/*")]

    def flags(self):
        unsent = UNSENT if self.is_sent is False else 0
        return (READ if self.is_read else 0) | unsent | (HAS_ATTACHMENTS if self.attachments else 0)

    def html_bytes(self):
        return None if self.html is None else UTF16_MARK + self.html.encode("utf-16-le")

    def names(self, group):
        """Returns the display names of a group; the address without a name."""
        return [name or mail_address for kind, name, mail_address in self.people if kind == group]

    def display_list(self, group):
        return "; ".join(self.names(group)) or None


class MailTests(message_tests.MessageTests):
    """Tests the mails of one archive; a subclass names it."""

    kinds = ("email",)
    category_element = "OPFMessageCopyCategoryList"
    attachment_count = 0

    @classmethod
    def setUpClass(cls):
        super().setUpClass()
        cls.expected = [ExpectedMail(cls.archive_path, item.element) for item in cls.items]

    def test_every_attachment_is_in_the_archive(self):
        attachments = [each for expected in self.expected for each in expected.attachments]
        self.assertEqual(len(attachments), self.attachment_count)
        self.assertTrue(all(data for _, _, _, data in attachments))

    def test_olefile_finds_every_byte_of_the_attachments(self):
        for expected, streams in zip(self.expected, self.found_by_olefile()):
            found = [sha256(data) for name, data in sorted(streams.items())
                     if name.startswith("__attach_") and name.endswith("/__substg1.0_37010102")]
            self.assertEqual(found, [sha256(data) for _, _, _, data in expected.attachments])

    def test_msgconvert_finds_what_is_in_the_documents(self):
        for number, (item, expected) in enumerate(zip(self.items, self.expected)):
            with self.subTest(path=item.path):
                target = os.path.join(self.folder, "%d.eml" % number)
                self.compare_converted(programs.mail_by_msgconvert(item.path, target), expected)

    def compare_converted(self, found, expected):
        self.assertEqual(found.headers.get("subject"), expected.subject)
        # It uses the time of sending, otherwise the time of creation.
        date = expected.modified if expected.sent is None else expected.sent
        found_date = email.utils.parsedate_to_datetime(found.headers["date"])
        self.assertEqual(found_date.timestamp() * 1000, date)
        for header, group in ("to", TO), ("cc", CC):
            # It looks up recipients by display name and prints only addresses of type "SMTP". These
            # messages have no type, so the brackets are empty.
            names = ["%s <>" % name for name in expected.names(group)]
            self.assertEqual(found.headers.get(header), ", ".join(names) or None)
        self.assertEqual(found.headers.get("message-id"), expected.message_id)
        self.assertEqual(found.headers.get("in-reply-to"), expected.answered)
        self.assertEqual(found.headers.get("references"), expected.references)
        bodies = {}
        if expected.body:
            bodies["text/plain"] = expected.body.encode()
        if expected.html is not None:
            bodies["text/html"] = expected.html_bytes()
        self.assertEqual(found.bodies, bodies)
        self.assertEqual(
            [(name, kind, sha256(data)) for name, kind, data in found.attachments],
            [(name, kind, sha256(data)) for name, kind, _, data in expected.attachments])

    def test_poi_finds_what_is_in_the_documents(self):
        for item, expected, found in zip(self.items, self.expected, self.found_by_poi()):
            with self.subTest(path=item.path):
                self.compare_with_poi(found, expected)

    def compare_with_poi(self, found, expected):
        self.assertEqual((found["messageClass"], found["kind"]), ("IPM.Note", "NOTE"))
        self.assertEqual(found["subject"], expected.subject)
        self.assertEqual(found["topic"], expected.topic)
        self.assertEqual(found["messageId"], expected.message_id)
        self.assertEqual(found["to"], expected.display_list(TO))
        self.assertEqual(found["cc"], expected.display_list(CC))
        self.assertEqual(found["bcc"], expected.display_list(BCC))
        self.assertEqual(found["body"], expected.body)
        html = None if expected.html is None else expected.html_bytes().hex()
        self.assertEqual(found["html"], html)
        if expected.sender:
            self.assertEqual((found["streams"].get("0042001F", ""),
                              found["streams"].get("0065001F", "")), expected.sender)
        self.assertEqual(
            [(person["values"]["0C15"], person["name"], person["address"], person["number"])
             for person in found["recipients"]],
            [(kind, name or mail_address, mail_address or None, number)
             for number, (kind, name, mail_address) in enumerate(expected.people)])
        self.assertEqual(
            [(each["name"], each["type"], each["contentId"], sha256(bytes.fromhex(each["data"])))
             for each in found["attachments"]],
            [(name, kind, content_id, sha256(data))
             for name, kind, content_id, data in expected.attachments])
        # POI reads property entries up to the first multi-valued one, here the categories.
        if not expected.has_categories:
            self.compare_values(found["values"], expected)

    def compare_values(self, values, expected):
        self.assertEqual(values.get("0017"), expected.importance)
        self.assertEqual(values.get("0039"), expected.sent)
        self.assertEqual(values.get("002A"), expected.received)
        self.assertEqual(values.get("3007"), expected.modified)
        self.assertEqual(values.get("3008"), expected.modified)
        self.assertEqual(values["0E07"], expected.flags())

    def subjects(self):
        """Returns the subjects that POI reads."""
        return [found["subject"] for found in self.found_by_poi()]


class SampleMailsTest(MailTests, unittest.TestCase):
    item_count, attachment_count, category_count = 4, 2, 1

    @classmethod
    def archive(cls, folder):
        return olmkit.SAMPLE

    def test_japanese_and_emoji_of_a_subject_survive(self):
        self.assertIn("測量のお知らせ 🗺️", self.subjects())
        self.assertIn("RE: 測量のお知らせ 🗺️", self.subjects())


@olmkit.needs_real_archive
class RealMailsTest(MailTests, unittest.TestCase):
    item_count, attachment_count, category_count = 7, 9, 1

    @classmethod
    def archive(cls, folder):
        return olmkit.REAL_ARCHIVE

    def test_japanese_hebrew_and_korean_of_a_subject_survive(self):
        for subject in ("パーティーは何時ですか？", "באיזה שעה המסיבה?",
                        "[ubuntu-ko] 우분투 시작 안내서의 10. Tips & Trick 의 번역이 일단락되었습니다."):
            self.assertIn(subject, self.subjects())


def people(element, *addresses):
    return tag(element, inner="".join(address(*each) for each in addresses))


def attachment(url, name):
    return tag("messageAttachment", {
        "OPFAttachmentURL": url, "OPFAttachmentName": name,
        "OPFAttachmentContentType": "application/octet-stream",
        "OPFAttachmentContentID": "part-%d@harbour.example" % len(url)})


class UnusualMailsTest(MailTests, unittest.TestCase):
    """Mails with contents that the other archives lack."""

    item_count, attachment_count, category_count = 3, 4, 3

    # The names of entries and their bytes; the documents write the names in other ways.
    ENTRIES = {
        "Local/Entwu\u0308rfe/attachments/1_0000": bytes(range(256)) * 40,
        "Local/Entw\u00FCrfe/attachments/2_0000": b"one byte less than a sector of 64 bytes, or so",
        "Local/attachments/3_0000": b"From here\nFrom there\n.\n--\n",
        "Local/attachments/4_0000": b"\r\n" * 30000,
    }

    @classmethod
    def archive(cls, folder):
        documents = [
            leaf("OPFMessageCopySubject", "🚢⚓️🌊 – 👩‍👩‍👧‍👦 " + 12 * "日本語の件名 ")
            + leaf("OPFMessageCopyModDate", "2019-12-31T23:59:59")
            + leaf("OPFMessageCopySentTime", "2020-01-01T00:00:00")
            + leaf("OPFMessageCopyBody", "Grüße 🚢\n\nFrom the pier\n.\n--\nend\n\n")
            + people("OPFMessageCopyCCAddresses", ("Ç, comma", "cc@harbour.example"),
                            (None, "bare@harbour.example"))
            + people("OPFMessageCopyBCCAddresses", ("Hidden 🙈", "bcc@harbour.example"))
            + people("OPFMessageCopyToAddresses", ("Name alone", None), ("", "to@x.example"))
            + leaf("OPFMessageGetPriority", "4"),

            leaf("OPFMessageCopySubject", "Attachments by other spellings of their names")
            + leaf("OPFMessageCopyHTMLBody", "<p>\u0A0A\u0D0D\u0A0D &amp; 🚢</p>\n")
            + leaf("OPFMessageCopyModDate", "1999-02-28T12:00:00")
            + leaf("OPFMessageCopyMessageID", "2@harbour.example")
            + leaf("OPFMessageCopyInReplyTo", "1@harbour.example")
            + leaf("OPFMessageCopyReferences", "0@harbour.example 1@harbour.example")
            + leaf("OPFMessageGetIsRead", "0E0")
            + leaf("OPFMessageGetWasSent", "1E0")
            + tag("OPFMessageCopyAttachmentList", inner=(
                attachment("Local/Entw\u00FCrfe/attachments/1_0000", "Anhang 1 – Übersicht.bin")
                + attachment("/Local/Entwu\u0308rfe/attachments/2_0000", "測量.pdf")
                + attachment("Local\\attachments\\3_0000", "no extension")
                + attachment("\\Local\\attachments/4_0000", "🚢.tar.gz"))),

            # Longer than any buffer.
            leaf("OPFMessageCopySubject", "Long")
            + categories("OPFMessageCopyCategoryList", "Häfen", "港 ⚓️", "Harbour; pilots")
            + leaf("OPFMessageCopyBody", "Zeile mit Umlaut ä und 日本\n" * 3000)
            + leaf("OPFMessageCopyHTMLBody", "<p>Absatz mit 🚢 und 日本</p>\n" * 3000)
            + people("OPFMessageCopyToAddresses", *(
                ("Nummer %d" % number, "%d@harbour.example" % number) for number in range(300)))
            + leaf("OPFMessageCopyModDate", "2038-01-19T03:14:08"),
        ]
        mails = {"Local/message_%05d.xml" % number: tag("emails", inner=tag("email", inner=document))
                 for number, document in enumerate(documents)}
        return write_archive(os.path.join(folder, "unusual.olm"), {**cls.ENTRIES, **mails})


if __name__ == "__main__":
    unittest.main()
