"""Extracts contacts and groups of contacts and reads them with programs that are not ours, with
named properties resolved by MS-OXMSG's rules: all must be what the documents tell."""

import os
import struct
import unittest
import uuid

import archive_items
import message_tests
import olmkit
import programs
from archive_items import text_of, time_of
from made_archives import address, categories, leaf, tag, write_archive
from named_properties import PSETID_ADDRESS, NamedProperties
from programs import MANY_BINARIES, MANY_STRINGS, STRING

# MS-OXPROPS: what an address book shows of a contact, each under an id of its own.
PLAIN_TEXTS = {
    "OPFContactCopyAssistantPhone": 0x3A2E,
    "OPFContactCopyBusinessCity": 0x3A27,
    "OPFContactCopyBusinessCompany": 0x3A16,
    "OPFContactCopyBusinessCountry": 0x3A26,
    "OPFContactCopyBusinessDepartment": 0x3A18,
    "OPFContactCopyBusinessFax": 0x3A24,
    "OPFContactCopyBusinessHomePage": 0x3A51,
    "OPFContactCopyBusinessOffice": 0x3A19,
    "OPFContactCopyBusinessPhone": 0x3A08,
    "OPFContactCopyBusinessPhone2": 0x3A1B,
    "OPFContactCopyBusinessState": 0x3A28,
    "OPFContactCopyBusinessStreetAddress": 0x3A29,
    "OPFContactCopyBusinessTitle": 0x3A17,
    "OPFContactCopyBusinessZip": 0x3A2A,
    "OPFContactCopyCellPhone": 0x3A1C,
    "OPFContactCopyDisplayName": 0x3001,
    "OPFContactCopyFirstName": 0x3A06,
    "OPFContactCopyHomeCity": 0x3A59,
    "OPFContactCopyHomeCountry": 0x3A5A,
    "OPFContactCopyHomeFax": 0x3A25,
    "OPFContactCopyHomePhone": 0x3A09,
    "OPFContactCopyHomePhone2": 0x3A2F,
    "OPFContactCopyHomeState": 0x3A5C,
    "OPFContactCopyHomeStreetAddress": 0x3A5D,
    "OPFContactCopyHomeWebPage": 0x3A50,
    "OPFContactCopyHomeZip": 0x3A5B,
    "OPFContactCopyInterests": 0x3A43,
    "OPFContactCopyLastName": 0x3A11,
    "OPFContactCopyMiddleName": 0x3A44,
    "OPFContactCopyNickName": 0x3A4F,
    "OPFContactCopyNotesPlain": 0x1000,
    "OPFContactCopyPager": 0x3A21,
    "OPFContactCopySetNameSuffix": 0x3A05,
    "OPFContactCopySpousesName": 0x3A48,
    "OPFContactCopyTitle": 0x3A45,
    "OPFContactMainPhone": 0x3A1A,
}
TIMES = {
    "OPFContactCopyAnniversary": 0x3A41,
    "OPFContactCopyBirthday": 0x3A42,
    "OPFContactCopyModDate": 0x3008,
}
NAMED_TEXTS = {
    "OPFContactCopyBusinessStreetAddress": 0x8045,
    "OPFContactCopyBusinessCity": 0x8046,
    "OPFContactCopyBusinessState": 0x8047,
    "OPFContactCopyBusinessZip": 0x8048,
    "OPFContactCopyCustom1Data": 0x804F,
    "OPFContactCopyCustom2Data": 0x8050,
    "OPFContactCopyCustom3Data": 0x8051,
    "OPFContactCopyCustom4Data": 0x8052,
}
EMAIL_LIST_1, EMAIL_LIST_2 = "OPFContactCopyEmailAddressList1", "OPFContactCopyEmailAddressList2"
NAMED_ADDRESSES = {
    "OPFContactCopyDefaultEmailAddress": 0x8083,
    EMAIL_LIST_1: 0x8093,
    EMAIL_LIST_2: 0x80A3,
    "OPFContactCopyDefaultIMAddress": 0x8062,
}
WHOLE_ADDRESSES = {
    "OPFContactCopyBusiness": 0x801B,
    "OPFContactCopyHome": 0x801A,
}
ADDRESS_PARTS = ("StreetAddress", "City", "State", "Zip")

GROUP_NAME, GROUP_MEMBERS, GROUP_ONE_OFF_MEMBERS = 0x8053, 0x8054, 0x8055
GROUP_WITHIN_A_GROUP = "3"

ONE_OFF = uuid.UUID("{A41F2B81-A3BE-1910-9D6E-00DD010F5402}").bytes_le
UNICODE_NO_RICH_TEXT = 0x8001

CHILDREN = 0x3A58


def file_time(milliseconds):
    """In units of 100 ns since 1601, of a time since 1970."""
    return (milliseconds + 11_644_473_600_000) * 10_000


def read_one_off(data):
    """(display name, type, address) of a one-off entry identifier: MS-OXCDATA, 2.2.5.1."""
    flags, provider, version, kind = struct.unpack_from("<I16sHH", data)
    if (flags, provider, version, kind) != (0, ONE_OFF, 0, UNICODE_NO_RICH_TEXT):
        raise AssertionError("no one-off entry identifier: " + data[:24].hex())
    texts = data[24:].decode("utf-16-le").split("\0")
    if len(texts) != 4 or texts[3]:
        raise AssertionError("not three terminated texts: %r" % texts)
    return tuple(texts[:3])


def whole_address(contact, prefix):
    parts = [text_of(contact, prefix + part) for part in ADDRESS_PARTS]
    return "\r\n".join(part for part in parts if part is not None)


def first_address(contact, name):
    """Of the first address in this element; None when there is none."""
    first = next(contact.iterfind(name + "/*"), None)
    return None if first is None else first.get("OPFContactEmailAddressAddress")


class AddressBookTests(message_tests.MessageTests):
    """What contacts and groups have in common."""

    def named(self, streams, property_id, kind):
        """The tag that this message has for a property of an address book; None without one."""
        found = NamedProperties(streams).property_id(PSETID_ADDRESS, property_id)
        return None if found is None else found << 16 | kind

    def named_text(self, streams, property_id):
        tag = self.named(streams, property_id, STRING)
        return None if tag is None else programs.text_stream(streams, tag)

    def messages(self):
        """(element, streams by olefile, what POI found) of each item."""
        return zip((item.element for item in self.items), self.found_by_olefile(),
                   self.found_by_poi())


class ContactTests(AddressBookTests):
    kinds = ("contact",)
    category_element = "OPFContactCopyCategoryList"

    def test_poi_and_olefile_find_a_contact(self):
        for _, streams, found in self.messages():
            self.assertEqual((found["messageClass"], found["kind"]), ("IPM.Contact", "CONTACT"))
            self.assertEqual(programs.text_stream(streams, 0x001A001F), "IPM.Contact")
            self.assertEqual((found["recipients"], found["attachments"]), ([], []))

    def test_plain_texts_are_those_of_the_document(self):
        for element, streams, found in self.messages():
            for name, property_id in PLAIN_TEXTS.items():
                expected = text_of(element, name)
                tag = property_id << 16 | STRING
                self.assertEqual(programs.text_stream(streams, tag), expected, name)
                self.assertEqual(found["streams"].get("%08X" % tag), expected, name)

    def test_times_are_those_of_the_document(self):
        for element, streams, found in self.messages():
            entries = dict(programs.entries(streams))
            for name, property_id in TIMES.items():
                expected = time_of(element, name)
                data = entries.get(property_id << 16 | 0x0040)
                if expected is None:
                    self.assertIsNone(data, name)
                    continue
                self.assertEqual(struct.unpack("<Q", data), (file_time(expected),), name)
                # POI reads property entries up to the first multi-valued one.
                if not any(tag & 0x1000 for tag in entries):
                    self.assertEqual(found["values"]["%04X" % property_id], expected)

    def check_named(self, names, told):
        seen = 0
        for element, streams, found in self.messages():
            for name, property_id in names.items():
                expected = told(element, name)
                self.assertEqual(self.named_text(streams, property_id), expected, name)
                tag = self.named(streams, property_id, STRING)
                if tag is not None:
                    self.assertEqual(found["streams"]["%08X" % tag], expected, name)
                    seen += 1
        self.assertGreater(seen, 0)

    def test_named_texts_are_those_of_the_document(self):
        self.check_named(NAMED_TEXTS, text_of)

    def test_addresses_of_mail_and_messaging_are_those_of_the_document(self):
        self.check_named(NAMED_ADDRESSES, first_address)

    def test_whole_addresses_are_made_of_their_parts(self):
        self.check_named(WHOLE_ADDRESSES, whole_address)

    def test_children_are_those_of_the_document(self):
        seen = 0
        for element, streams, _ in self.messages():
            values = programs.multiple_values(streams, CHILDREN << 16 | MANY_STRINGS)
            if element.find("OPFContactCopyChildren") is None:
                self.assertIsNone(values)
                continue
            expected = [child.text for child in element.iterfind("OPFContactCopyChildren/*")
                        if child.text]
            self.assertEqual([value.decode("utf-16-le") for value in values],
                             [name + "\0" for name in expected])
            seen += len(expected)
        self.assertGreater(seen, 0)


class GroupTests(AddressBookTests):
    kinds = ("group",)
    category_element = "OPFGroupCopyCategoryList"

    def test_poi_and_olefile_find_a_group_by_its_name(self):
        for element, streams, found in self.messages():
            name = text_of(element, "OPFGroupCopyDisplayName")
            # POI has no name of its own for this class.
            self.assertEqual((found["messageClass"], found["kind"]), ("IPM.DistList", "UNKNOWN"))
            self.assertEqual(found["subject"], name)
            self.assertEqual(programs.text_stream(streams, 0x0037001F), name)
            self.assertEqual(self.named_text(streams, GROUP_NAME), name)
            tag = self.named(streams, GROUP_NAME, STRING)
            self.assertEqual(found["streams"]["%08X" % tag], name)

    def test_members_are_those_of_the_document(self):
        seen = 0
        for element, streams, _ in self.messages():
            expected = [(member.get("OPFContactEmailAddressName", ""), self.type_of(member),
                         member.get("OPFContactEmailAddressAddress", ""))
                        for member in element.iterfind("OPFGroupCopyMemberList/*")]
            for property_id in GROUP_MEMBERS, GROUP_ONE_OFF_MEMBERS:
                tag = self.named(streams, property_id, MANY_BINARIES)
                members = programs.multiple_values(streams, tag)
                self.assertEqual([read_one_off(member) for member in members], expected)
            seen += len(expected)
        self.assertGreater(seen, 0)

    def type_of(self, member):
        is_group = member.get("OPFContactEmailAddressType") == GROUP_WITHIN_A_GROUP
        return "MAPIPDL" if is_group else "SMTP"


class SampleContactsTest(ContactTests, unittest.TestCase):
    item_count, category_count = 2, 1

    @classmethod
    def archive(cls, folder):
        return olmkit.SAMPLE


class SampleGroupsTest(GroupTests, unittest.TestCase):
    item_count, category_count = 1, 0

    @classmethod
    def archive(cls, folder):
        return olmkit.SAMPLE


@olmkit.needs_real_archive
class RealContactsTest(ContactTests, unittest.TestCase):
    item_count, category_count = 5, 1

    @classmethod
    def archive(cls, folder):
        return olmkit.REAL_ARCHIVE


@olmkit.needs_real_archive
class RealGroupsTest(GroupTests, unittest.TestCase):
    item_count, category_count = 2, 1

    @classmethod
    def archive(cls, folder):
        return olmkit.REAL_ARCHIVE


class UnusualContactsTest(ContactTests, unittest.TestCase):
    """Contacts with what the other archives lack, in an archive of their own."""

    item_count, category_count = 6, 3

    @classmethod
    def archive(cls, folder):
        every_element = [leaf(name, "%s – 日本 🚢 e\u0301" % name)
                         for name in sorted({*PLAIN_TEXTS, *NAMED_TEXTS})]
        contacts = [
            "".join(every_element)
            + "".join(leaf(name, "1970-01-0%dT00:00:00" % day)
                      for day, name in enumerate(TIMES, 1))
            + "".join(tag(name, inner=address("Name", "%s@harbour.example" % name))
                      for name in NAMED_ADDRESSES),

            # The named ones in another order, between others, behind the categories.
            categories("OPFContactCopyCategoryList", "Häfen", "港 ⚓️", "Harbour; pilots")
            + tag(EMAIL_LIST_2, inner=address(None, "third@x.example"))
            + leaf("OPFContactCopyCustom4Data", "4")
            + tag(EMAIL_LIST_1, inner=address("", "") + address("Never", "shown@x.example"))
            + leaf("OPFContactCopyHomeCity", "Port Ellery")
            + leaf("OPFContactCopyCustom1Data", "1" * 5000)
            + leaf("OPFContactCopyBusinessZip", "00100")
            + tag("OPFContactCopyDefaultEmailAddress", inner=address("No address", None)),

            # Parts in any order, one of them empty, and a country that no whole address has.
            leaf("OPFContactCopyBusinessZip", "00100")
            + leaf("OPFContactCopyBusinessCountry", "Nowhere")
            + leaf("OPFContactCopyBusinessCity", "")
            + leaf("OPFContactCopyBusinessStreetAddress", "1 Quay Street\nSecond floor")
            + leaf("OPFContactCopyHomeState", "")
            + leaf("OPFContactCopyHomeStreetAddress", ""),

            tag("OPFContactCopyChildren", inner=leaf("string", "Ines") + leaf("string", "")
                + leaf("string", "Zoë 👧") + leaf("string", "T" * 3000)),

            tag("OPFContactCopyChildren")
            + leaf("OPFContactCopyDisplayName", ""),

            "",
        ]
        document = tag("contacts", inner="".join(tag("contact", inner=contact)
                                                 for contact in contacts))
        return write_archive(os.path.join(folder, "unusual.olm"), {"Local/Contacts.xml": document})


class UnusualGroupsTest(GroupTests, unittest.TestCase):
    """Groups with what the other archives lack, in an archive of their own."""

    item_count, category_count = 3, 2

    @classmethod
    def archive(cls, folder):
        groups = [
            leaf("OPFGroupCopyDisplayName", "港 ⚓️")
            + categories("OPFGroupCopyCategoryList", "Häfen", "港 ⚓️")
            + tag("OPFGroupCopyMemberList", inner=(
                address("Group", "", GROUP_WITHIN_A_GROUP) + address(None, "bare@x.example", "0")
                + address("小川 直子", "naoko@x.example", "1")
                + address("Untyped", "untyped@x.example") + address(None, None))),

            tag("OPFGroupCopyMemberList")
            + leaf("OPFGroupCopyDisplayName", "Nobody"),

            leaf("OPFGroupCopyDisplayName", "Many")
            + tag("OPFGroupCopyMemberList", inner="".join(
                address("Member %d" % number, "%d@harbour.example" % number, "1")
                for number in range(1000))),
        ]
        document = tag("groups", inner="".join(tag("group", inner=group) for group in groups))
        return write_archive(os.path.join(folder, "unusual.olm"), {"Local/Groups.xml": document})


if __name__ == "__main__":
    unittest.main()
