"""Groups of contacts and their members."""

import struct

from . import mapi
from .message import Message, units, value_stream
from .reader import Tag
from .texts import to_long

ONE_OFF = bytes.fromhex("812B1FA4BEA310199D6E00DD010F5402")  # provider UID (MS-OXCDATA 2.2.5.1)
UNICODE_NO_RICH_TEXT = 0x8001
DISTRIBUTION_LIST = 3  # type of a member that is a group
MEMBER_LISTS = (mapi.PidLidDistributionListOneOffMembers, mapi.PidLidDistributionListMembers)


def one_off_identifier(tag):
    address, name, kind = (
        tag.value("OPFContactEmailAddress" + which) or "" for which in ("Address", "Name", "Type")
    )
    address_type = "MAPIPDL" if to_long(kind) == DISTRIBUTION_LIST else "SMTP"
    texts = b"".join(units(text) + b"\0\0" for text in (name, address_type, address))
    return struct.pack("<I16sHH", 0, ONE_OFF, 0, UNICODE_NO_RICH_TEXT) + texts


class Group(Message):
    message_class = "IPM.DistList"
    expected_count = 7
    table = {
        "OPFGroupCopyCategoryList": 2,
        "OPFGroupCopyDisplayName": 0x0037001F,
        "OPFGroupCopyMemberList": 1,
        "OPFGroupCopyModDate": 0x30080040,
        "OPFGroupCopyNotes": 0x10130102,
        "OPFGroupCopyNotesPlain": 0x1000001F,
        "group": 0,
    }

    def __init__(self, reader, archive=None):
        super().__init__(reader, archive)
        self.handlers = {
            2: self.read_categories,
            mapi.PidTagSubject: self.read_display_name,
            1: self.read_members,
        }

    def read_display_name(self, tag):
        name = units(self.reader.content())
        self.add_string(tag.id, name)
        self.add_string(self.names.number(mapi.PidLidDistributionListName), name)
        return True

    def read_members(self, group):
        mapped = [self.names.number(key) for key in MEMBER_LISTS]
        members = []
        more = True
        tag = Tag()
        while more:
            more = self.reader.next_tag(tag)
            if not tag.closing:
                members.append(one_off_identifier(tag))
            more = more and tag.id != group.id
        lengths = b"".join(struct.pack("<Q", len(member)) for member in members)
        for key in mapped:
            self.streams[value_stream(key)] = lengths
            for index, member in enumerate(members):
                self.streams["%s-%08X" % (value_stream(key), index)] = member
            self.add(key, 8 * len(members))
        return True
