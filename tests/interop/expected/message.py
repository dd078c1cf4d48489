"""What every message holds: required properties, strings, entries, headers, named properties."""

import struct
import uuid

from .reader import UNKNOWN, Tag
from .texts import file_time, to_long, unsigned32

CLASS_ID = "00020D0B-0000-0000-C000-000000000046"
READABLE_AND_WRITABLE = 6
PROPERTIES = "__properties_version1.0"
NAMES = "__nameid_version1.0/"


class Failure(Exception):
    """The item can't be turned into a message."""


def property_set(text):
    return uuid.UUID(text).bytes_le


COMMON = property_set("{00062008-0000-0000-C000-000000000046}")
ADDRESS = property_set("{00062004-0000-0000-C000-000000000046}")
APPOINTMENT = property_set("{00062002-0000-0000-C000-000000000046}")
TASK = property_set("{00062003-0000-0000-C000-000000000046}")
NOTE = property_set("{0006200E-0000-0000-C000-000000000046}")

# Every numeric name that messages have, by its set.
NAMED_PROPERTIES = {
    key: owner
    for owner, keys in (
        (COMMON, (0x85020040, 0x85010003, 0x8503000B)),
        (ADDRESS, (0x8062001F, 0x8045001F, 0x8047001F, 0x8046001F, 0x8048001F, 0x80DB001F)),
        (ADDRESS, (0x801B001F, 0x801A001F, 0x8083001F, 0x8093001F, 0x80A3001F)),
        (ADDRESS, (0x804F001F, 0x8050001F, 0x8051001F, 0x8052001F)),
        (ADDRESS, (0x8053001F, 0x80541102, 0x80551102)),
        (TASK, (0x81040040, 0x81050040, 0x810F0040, 0x811C000B, 0x81010003, 0x81020005)),
        (TASK, (0x81160102,)),
        (NOTE, (0x8B000003, 0x8B030003, 0x8B020003, 0x8B040003, 0x8B050003)),
        (APPOINTMENT, (0x8208001F, 0x820D0040, 0x820E0040, 0x82050003, 0x8215000B, 0x82160102)),
        (APPOINTMENT, (0x8234001F,)),
    )
    for key in keys
}

KEYWORDS = "Keywords".encode("utf-16-le")
STRING_KIND = 5  # a string name in PS_PUBLIC_STRINGS, which is not listed
FIRST_SET = 3
BUCKETS = 31


def crc_of(data):
    """CRC-32, reflected, begun with 0 and not inverted at the end."""
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
    """Numbers names by order of use."""

    def __init__(self):
        self.mapped = []  # keys; None for the string name

    def add(self, key, kind):
        self.mapped.append(key)
        return 0x80000000 | (len(self.mapped) - 1) << 16 | kind

    def number(self, key):
        """The tag of the name in this message; a name asked for twice has two."""
        if key not in NAMED_PROPERTIES:
            raise Failure
        return self.add(key, key & 0xFFFF)

    def keywords(self):
        return self.add(None, 0x101F)

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
            path = value_stream((0x1000 + (kind ^ name_id) % BUCKETS) << 16 | 0x0102)
            buckets.setdefault(path, []).append(struct.pack("<IHH", name_id, kind, position))
        texts = struct.pack("<I", len(KEYWORDS)) + KEYWORDS if None in self.mapped else b""
        return {
            value_stream(0x00020102): b"".join(sets),
            value_stream(0x00030102): b"".join(entries),
            value_stream(0x00040102): texts,
            **{path: b"".join(records) for path, records in buckets.items()},
        }


class SubStorage:
    """A recipient's or an attachment's storage."""

    def __init__(self, streams, name, number):
        self.streams = streams
        self.folder = "%s%08X/" % (name, number)
        self.streams[self.folder + PROPERTIES] = bytes(8)

    def add_entry(self, tag, value):
        self.streams[self.folder + PROPERTIES] += entry(tag, value)

    def add_number(self, property_id, value):
        self.add_entry(property_id << 16 | 0x0003, value % (1 << 64))

    def add_string(self, property_id, data):
        tag = property_id << 16 | 0x001F
        self.streams[self.folder + value_stream(tag)] = data
        self.add_entry(tag, len(data) + 2)

    def add_binary(self, property_id, data):
        tag = property_id << 16 | 0x0102
        self.streams[self.folder + value_stream(tag)] = data
        self.add_entry(tag, len(data))


class Message:
    """Reads one item; what it must give stands in `streams`, path to bytes."""

    message_class = ""
    table = {}  # element to number
    expected_count = 1  # elements after which the item is over

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
        """The finished streams. Raises Failure for an item that gives no message."""
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
        """Properties that every item of the kind gets."""

    def finish(self):
        """Properties that wait for the item's end."""

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
        """True when the element was consumed."""
        handler = self.handlers.get(tag.id)
        if handler is not None and handler(tag):
            return True
        return self.take_by_type(tag)

    def take_by_type(self, tag):
        kind = tag.id & 0xFFFF
        if kind == 0x001F:
            self.add_string(tag.id, units(self.reader.content()))
        elif kind == 0x0040:
            self.add(tag.id, self.read_time())
        elif kind == 0x0003:
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
        self.add(tag, len(data) + 2)

    def add_required(self):
        self.streams[value_stream(0x10090102)] = b""
        self.add(0x10090102, 0)
        self.add_string(0x001A001F, units(self.message_class))
        for tag, value in (
            (0x0E1F000B, 0),
            (0x0FF70003, 0),
            (0x0FF40003, 2),
            (0x340D0003, 0x40E79),
            (0x3FDE0003, 1200),
        ):
            self.add(tag, value)

    def add_strings(self, tag, texts):
        """A multi-valued string. Values of an earlier one that was longer stay."""
        values = [units(text) + b"\0\0" for text in texts]
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
        recipient.add_number(0x3000, self.recipient_count)
        self.recipient_count += 1
        return recipient
