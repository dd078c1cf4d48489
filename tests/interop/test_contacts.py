"""Extracts contacts and groups of contacts and compares what independent programs read, with named
properties resolved as MS-OXMSG describes, with the documents. Which element becomes which property
is taken from the model in `expected`, the values from the documents."""

import os
import struct
import unittest

import message_tests
import olmkit
import programs
from archive_items import text_of, time_of
from expected import contact, group, mapi
from made_archives import address, categories, leaf, tag, write_archive
from named_properties import FIRST_ID, PSETID_ADDRESS, NamedProperties
from programs import MULTIPLE_VALUES, STRING

TIME = 0x0040


def plain_tags(kind):
    """Returns element to tag, for the elements that become a property of that type as they are."""
    return {name: key for name, key in contact.Contact.table.items()
            if key & 0xFFFF == kind and 0 < key >> 16 < FIRST_ID}


# Elements and the properties that they become; named properties by their id in the model.
PLAIN_TEXTS = plain_tags(STRING)
TIMES = plain_tags(TIME)
NAMED_TEXTS = {name: key for name, key in contact.Contact.table.items() if key in contact.CUSTOM}
NAMED_TEXTS.update((name, contact.BUSINESS_PARTS[key][1]) for name, key in PLAIN_TEXTS.items()
                   if key in contact.BUSINESS_PARTS)
NAMED_ADDRESSES = {name: contact.ADDRESS_GROUPS[key] for name, key in contact.Contact.table.items()
                   if key in contact.ADDRESS_GROUPS}
WHOLE_ADDRESSES = {
    "OPFContactCopyBusiness": mapi.PidLidWorkAddress,
    "OPFContactCopyHome": mapi.PidLidHomeAddress,
}
ADDRESS_PARTS = ("StreetAddress", "City", "State", "Zip")

GROUP_WITHIN_A_GROUP = str(group.DISTRIBUTION_LIST)


def file_time(milliseconds):
    """Returns a time in units of 100 ns since 1601, given in milliseconds since 1970."""
    return (milliseconds + 11_644_473_600_000) * 10_000


def read_one_off(data):
    """Returns (display name, type, address) of a one-off entry identifier (MS-OXCDATA 2.2.5.1)."""
    flags, provider, version, kind = struct.unpack_from("<I16sHH", data)
    if (flags, provider, version, kind) != (0, group.ONE_OFF, 0, group.UNICODE_NO_RICH_TEXT):
        raise AssertionError("not a one-off entry identifier: " + data[:24].hex())
    texts = data[24:].decode("utf-16-le").split("\0")
    if len(texts) != 4 or texts[3]:
        raise AssertionError("not three terminated texts: %r" % texts)
    return tuple(texts[:3])


def whole_address(element, prefix):
    parts = [text_of(element, prefix + part) for part in ADDRESS_PARTS]
    return "\r\n".join(part for part in parts if part is not None)


def first_address(element, name):
    """Returns the first address in the element of that name; None without one."""
    first = next(element.iterfind(name + "/*"), None)
    return None if first is None else first.get("OPFContactEmailAddressAddress")


class AddressBookTests(message_tests.MessageTests):
    """Tests that contacts and groups have in common."""

    def named(self, streams, key):
        """Returns the tag in this message of a property of PSETID_Address; None without it. `key`
        is the property's id and type."""
        found = NamedProperties(streams).property_id(PSETID_ADDRESS, key >> 16)
        return None if found is None else found << 16 | key & 0xFFFF

    def named_text(self, streams, key):
        tag = self.named(streams, key)
        return None if tag is None else programs.text_stream(streams, tag)

    def messages(self):
        """Returns (element, streams by olefile, what POI found) of each item."""
        return zip((item.element for item in self.items), self.found_by_olefile(),
                   self.found_by_poi())


class ContactTests(AddressBookTests):
    kinds = ("contact",)
    category_element = "OPFContactCopyCategoryList"

    def test_poi_and_olefile_find_a_contact(self):
        for _, streams, found in self.messages():
            self.assertEqual((found["messageClass"], found["kind"]), ("IPM.Contact", "CONTACT"))
            self.assertEqual(programs.text_stream(streams, mapi.PidTagMessageClass), "IPM.Contact")
            self.assertEqual((found["recipients"], found["attachments"]), ([], []))

    def test_plain_texts_are_those_of_the_document(self):
        self.assertEqual(len(PLAIN_TEXTS), 36)
        for element, streams, found in self.messages():
            for name, tag in PLAIN_TEXTS.items():
                expected = text_of(element, name)
                self.assertEqual(programs.text_stream(streams, tag), expected, name)
                self.assertEqual(found["streams"].get("%08X" % tag), expected, name)

    def test_times_are_those_of_the_document(self):
        self.assertEqual(len(TIMES), 3)
        for element, streams, found in self.messages():
            entries = dict(programs.entries(streams))
            for name, tag in TIMES.items():
                expected = time_of(element, name)
                data = entries.get(tag)
                if expected is None:
                    self.assertIsNone(data, name)
                    continue
                self.assertEqual(struct.unpack("<Q", data), (file_time(expected),), name)
                # POI reads property entries up to the first multi-valued one.
                if not any(other & MULTIPLE_VALUES for other in entries):
                    self.assertEqual(found["values"]["%04X" % (tag >> 16)], expected)

    def check_named(self, names, text_in_document):
        seen = 0
        for element, streams, found in self.messages():
            for name, key in names.items():
                expected = text_in_document(element, name)
                self.assertEqual(self.named_text(streams, key), expected, name)
                tag = self.named(streams, key)
                if tag is not None:
                    self.assertEqual(found["streams"]["%08X" % tag], expected, name)
                    seen += 1
        self.assertGreater(seen, 0)

    def test_named_texts_are_those_of_the_document(self):
        self.assertEqual(len(NAMED_TEXTS), 8)
        self.check_named(NAMED_TEXTS, text_of)

    def test_electronic_addresses_are_those_of_the_document(self):
        self.assertEqual(len(NAMED_ADDRESSES), 4)
        self.check_named(NAMED_ADDRESSES, first_address)

    def test_whole_addresses_are_made_of_their_parts(self):
        self.check_named(WHOLE_ADDRESSES, whole_address)

    def test_children_are_those_of_the_document(self):
        seen = 0
        for element, streams, _ in self.messages():
            values = programs.multiple_values(streams, mapi.PidTagChildrensNames)
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
            # POI doesn't know this class.
            self.assertEqual((found["messageClass"], found["kind"]), ("IPM.DistList", "UNKNOWN"))
            self.assertEqual(found["subject"], name)
            self.assertEqual(programs.text_stream(streams, mapi.PidTagSubject), name)
            self.assertEqual(self.named_text(streams, mapi.PidLidDistributionListName), name)
            tag = self.named(streams, mapi.PidLidDistributionListName)
            self.assertEqual(found["streams"]["%08X" % tag], name)

    def test_members_are_those_of_the_document(self):
        seen = 0
        for element, streams, _ in self.messages():
            expected = [(member.get("OPFContactEmailAddressName", ""), self.type_of(member),
                         member.get("OPFContactEmailAddressAddress", ""))
                        for member in element.iterfind("OPFGroupCopyMemberList/*")]
            for key in group.MEMBER_LISTS:
                members = programs.multiple_values(streams, self.named(streams, key))
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
    """Contacts with contents that the other archives lack."""

    item_count, category_count = 6, 3

    @classmethod
    def archive(cls, folder):
        every_element = [leaf(name, "%s – 日本 🚢 e\u0301" % name)
                         for name in sorted({*PLAIN_TEXTS, *NAMED_TEXTS})]
        items = [
            "".join(every_element)
            + "".join(leaf(name, "1970-01-0%dT00:00:00" % day)
                      for day, name in enumerate(TIMES, 1))
            + "".join(tag(name, inner=address("Name", "%s@harbour.example" % name))
                      for name in NAMED_ADDRESSES),

            # The named ones in another order, among others, after the categories.
            categories("OPFContactCopyCategoryList", "Häfen", "港 ⚓️", "Harbour; pilots")
            + tag("OPFContactCopyEmailAddressList2", inner=address(None, "third@x.example"))
            + leaf("OPFContactCopyCustom4Data", "4")
            + tag("OPFContactCopyEmailAddressList1",
                  inner=address("", "") + address("Never", "shown@x.example"))
            + leaf("OPFContactCopyHomeCity", "Port Ellery")
            + leaf("OPFContactCopyCustom1Data", "1" * 5000)
            + leaf("OPFContactCopyBusinessZip", "00100")
            + tag("OPFContactCopyDefaultEmailAddress", inner=address("No address", None)),

            # Parts in any order, one of them empty, and a country, which no whole address includes.
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
        document = tag("contacts", inner="".join(tag("contact", inner=item) for item in items))
        return write_archive(os.path.join(folder, "unusual.olm"), {"Local/Contacts.xml": document})


class UnusualGroupsTest(GroupTests, unittest.TestCase):
    """Groups with contents that the other archives lack."""

    item_count, category_count = 3, 2

    @classmethod
    def archive(cls, folder):
        items = [
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
        document = tag("groups", inner="".join(tag("group", inner=item) for item in items))
        return write_archive(os.path.join(folder, "unusual.olm"), {"Local/Groups.xml": document})


if __name__ == "__main__":
    unittest.main()
