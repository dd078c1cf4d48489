"""The contents that all messages share: required properties, strings, headers, named properties."""

import struct
import uuid

from . import mapi
from .reader import UNKNOWN, Tag
from .texts import file_time, to_long, unsigned32

CLASS_ID = "00020D0B-0000-0000-C000-000000000046"
READABLE_AND_WRITABLE = 6
PROPERTIES = "__properties_version1.0"
NAMES = "__nameid_version1.0/"


class Failure(Exception):
    """The item must be refused."""


def property_set(text):
    return uuid.UUID(text).bytes_le


COMMON = property_set("{00062008-0000-0000-C000-000000000046}")
ADDRESS = property_set("{00062004-0000-0000-C000-000000000046}")
APPOINTMENT = property_set("{00062002-0000-0000-C000-000000000046}")
TASK = property_set("{00062003-0000-0000-C000-000000000046}")
NOTE = property_set("{0006200E-0000-0000-C000-000000000046}")

# Every numeric name that messages have, and its set.
NAMED_PROPERTIES = {
    key: owner
    for owner, keys in (
        (COMMON, (
            mapi.PidLidReminderTime,
            mapi.PidLidReminderDelta,
            mapi.PidLidReminderSet,
        )),
        (ADDRESS, (
            mapi.PidLidInstantMessagingAddress,
            mapi.PidLidWorkAddressStreet,
            mapi.PidLidWorkAddressState,
            mapi.PidLidWorkAddressCity,
            mapi.PidLidWorkAddressPostalCode,
            mapi.PidLidWorkAddressCountryCode,
            mapi.PidLidWorkAddress,
            mapi.PidLidHomeAddress,
            mapi.PidLidEmail1EmailAddress,
            mapi.PidLidEmail2EmailAddress,
            mapi.PidLidEmail3EmailAddress,
            mapi.PidLidContactUserField1,
            mapi.PidLidContactUserField2,
            mapi.PidLidContactUserField3,
            mapi.PidLidContactUserField4,
            mapi.PidLidDistributionListName,
            mapi.PidLidDistributionListOneOffMembers,
            mapi.PidLidDistributionListMembers,
        )),
        (TASK, (
            mapi.PidLidTaskStartDate,
            mapi.PidLidTaskDueDate,
            mapi.PidLidTaskDateCompleted,
            mapi.PidLidTaskComplete,
            mapi.PidLidTaskStatus,
            mapi.PidLidPercentComplete,
            mapi.PidLidTaskRecurrence,
        )),
        (NOTE, (
            mapi.PidLidNoteColor,
            mapi.PidLidNoteHeight,
            mapi.PidLidNoteWidth,
            mapi.PidLidNoteX,
            mapi.PidLidNoteY,
        )),
        (APPOINTMENT, (
            mapi.PidLidLocation,
            mapi.PidLidAppointmentStartWhole,
            mapi.PidLidAppointmentEndWhole,
            mapi.PidLidBusyStatus,
            mapi.PidLidAppointmentSubType,
            mapi.PidLidAppointmentRecur,
            mapi.PidLidTimeZoneDescription,
        )),
    )
    for key in keys
}

STRING, NUMBER, TIME, MANY_STRINGS = 0x001F, 0x0003, 0x0040, 0x101F  # types of properties
TERMINATOR = b"\0\0"

KEYWORDS = "Keywords".encode("utf-16-le")
STRING_KIND = 5  # a string name in PS_PUBLIC_STRINGS, which is not listed
FIRST_SET = 3
FIRST_BUCKET, BUCKETS = 0x1000, 31

READ_ACCESS, READ_ONLY = 2, 0
STORE_SUPPORT_MASK = 0x40E79
CODEPAGE_UTF16 = 1200


def crc_of(data):
    """Returns a reflected CRC-32 that starts at 0 and is not inverted at the end."""
    checksum = 0
    for byte in data:
        checksum ^= byte
        for _ in range(8):
            checksum = checksum >> 1 ^ (0xEDB88320 if checksum & 1 else 0)
    return checksum


def units(text):
    return text.encode("utf-16-le")


def entry(tag, value):
    return struct.pack("<IIQ", tag, READABLE_AND_WRITABLE, value)


def value_stream(tag):
    return "__substg1.0_%08X" % tag


class NamedProperties:
    """Numbers names in order of use."""

    def __init__(self):
        self.mapped = []  # keys; None for the string name

    def add(self, key, kind):
        self.mapped.append(key)
        return 0x80000000 | (len(self.mapped) - 1) << 16 | kind

    def number(self, key):
        """Returns the tag of a name in this message; a name used twice has two tags."""
        if key not in NAMED_PROPERTIES:
            raise Failure
        return self.add(key, key & 0xFFFF)

    def keywords(self):
        return self.add(None, MANY_STRINGS)

    def streams(self):
        sets = []
        entries = []
        buckets = {}
        for position, key in enumerate(self.mapped):
            if key is None:
                first, kind, name_id = 0, STRING_KIND, crc_of(KEYWORDS)
            else:
                owner = NAMED_PROPERTIES[key]
                if owner not in sets:
                    sets.append(owner)
                first = name_id = key >> 16
                kind = (sets.index(owner) + FIRST_SET) * 2
            entries.append(struct.pack("<IHH", first, kind, position))
            path = value_stream((FIRST_BUCKET + (kind ^ name_id) % BUCKETS) << 16 | 0x0102)
            buckets.setdefault(path, []).append(struct.pack("<IHH", name_id, kind, position))
        texts = struct.pack("<I", len(KEYWORDS)) + KEYWORDS if None in self.mapped else b""
        return {
            value_stream(0x00020102): b"".join(sets),
            value_stream(0x00030102): b"".join(entries),
            value_stream(0x00040102): texts,
            **{path: b"".join(records) for path, records in buckets.items()},
        }


class SubStorage:
    """The storage of a recipient or an attachment."""

    def __init__(self, streams, name, number):
        self.streams = streams
        self.folder = "%s%08X/" % (name, number)
        self.streams[self.folder + PROPERTIES] = bytes(8)

    def add_entry(self, tag, value):
        self.streams[self.folder + PROPERTIES] += entry(tag, value)

    def add_number(self, tag, value):
        self.add_entry(tag, value % (1 << 64))

    def add_string(self, tag, data):
        self.streams[self.folder + value_stream(tag)] = data
        self.add_entry(tag, len(data) + len(TERMINATOR))

    def add_binary(self, tag, data):
        self.streams[self.folder + value_stream(tag)] = data
        self.add_entry(tag, len(data))


class Message:
    """Reads one item into `streams`, path to bytes."""

    message_class = ""
    table = {}  # element to number
    expected_count = 1  # elements after which the item ends

    def __init__(self, reader, archive=None):
        self.reader = reader
        self.archive = archive
        self.streams = {}
        self.entries = []
        self.names = NamedProperties()
        self.recipient_count = 0
        self.attachment_count = 0
        self.handlers = {}

    def write(self):
        """Returns the complete streams. Raises Failure for an item that must be refused."""
        self.reader.add_tags(self.table)
        first = Tag()
        if not self.reader.next_tag(first) or first.id == UNKNOWN:
            raise Failure
        self.add_required()
        self.add_defaults()
        self.walk(first.id)
        self.finish()
        header = (self.recipient_count, self.attachment_count)
        self.streams[PROPERTIES] = (
            struct.pack("<8I", 0, 0, *header, *header, 0, 0) + b"".join(self.entries)
        )
        self.streams.update((NAMES + path, data) for path, data in self.names.streams().items())
        return self.streams

    def add_defaults(self):
        """Adds the properties that every item of the kind has."""

    def finish(self):
        """Adds the properties that are known at the item's end."""

    def walk(self, root):
        handled = 0
        while True:
            tag = Tag()
            if not self.reader.next_tag(tag) or tag.id == root:
                return
            if not tag.closing:
                handled += self.take(tag)
            if handled == self.expected_count:
                return

    def take(self, tag):
        """Returns whether the element was consumed."""
        handler = self.handlers.get(tag.id)
        if handler is not None and handler(tag):
            return True
        return self.take_by_type(tag)

    def take_by_type(self, tag):
        kind = tag.id & 0xFFFF
        if kind == STRING:
            self.add_string(tag.id, units(self.reader.content()))
        elif kind == TIME:
            self.add(tag.id, self.read_time())
        elif kind == NUMBER:
            self.add(tag.id, unsigned32(to_long(self.reader.content())))
        else:
            return False
        return True

    def read_time(self):
        text = self.reader.content()
        return file_time(text) if text else 0

    def add(self, tag, value):
        self.entries.append(entry(tag, value))

    def add_string(self, tag, data):
        self.streams[value_stream(tag)] = data
        self.add(tag, len(data) + len(TERMINATOR))

    def add_required(self):
        self.streams[value_stream(mapi.PidTagRtfCompressed)] = b""
        self.add(mapi.PidTagRtfCompressed, 0)
        self.add_string(mapi.PidTagMessageClass, units(self.message_class))
        for tag, value in (
            (mapi.PidTagRtfInSync, 0),
            (mapi.PidTagAccessLevel, READ_ONLY),
            (mapi.PidTagAccess, READ_ACCESS),
            (mapi.PidTagStoreSupportMask, STORE_SUPPORT_MASK),
            (mapi.PidTagInternetCodepage, CODEPAGE_UTF16),
        ):
            self.add(tag, value)

    def add_strings(self, tag, texts):
        """Adds a multi-valued string. Further values of an earlier, longer one stay."""
        values = [units(text) + TERMINATOR for text in texts]
        lengths = b"".join(struct.pack("<I", len(value)) for value in values)
        self.streams[value_stream(tag)] = lengths
        for index, value in enumerate(values):
            self.streams["%s-%08X" % (value_stream(tag), index)] = value
        self.add(tag, 4 * len(values))

    def read_categories(self, group):
        mapped = self.names.keywords()
        texts = []
        tag = Tag()
        more = True
        while more:
            more = self.reader.next_tag(tag)
            name = tag.value("OPFCategoryCopyName")
            if not tag.closing and name is not None:
                texts.append(name)
            more = more and tag.id != group.id
        self.add_strings(mapped, texts)
        return True

    def add_recipient(self):
        recipient = SubStorage(self.streams, "__recip_version1.0_#", self.recipient_count)
        recipient.add_number(mapi.PidTagRowid, self.recipient_count)
        self.recipient_count += 1
        return recipient
