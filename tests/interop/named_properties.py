"""Resolves the named properties of a message (MS-OXMSG 2.2.3) from the streams of
`__nameid_version1.0`, independent of the program that wrote them."""

import struct
import uuid
import zlib

STORAGE = "__nameid_version1.0/"
SETS_STREAM, ENTRIES_STREAM, STRINGS_STREAM = (
    STORAGE + "__substg1.0_%s0102" % number for number in ("0002", "0003", "0004"))

PS_MAPI = uuid.UUID("{00020328-0000-0000-C000-000000000046}")
PS_PUBLIC_STRINGS = uuid.UUID("{00020329-0000-0000-C000-000000000046}")
PSETID_APPOINTMENT = uuid.UUID("{00062002-0000-0000-C000-000000000046}")
PSETID_TASK = uuid.UUID("{00062003-0000-0000-C000-000000000046}")
PSETID_ADDRESS = uuid.UUID("{00062004-0000-0000-C000-000000000046}")

FIRST_ID = 0x8000
UNLISTED_SETS = {1: PS_MAPI, 2: PS_PUBLIC_STRINGS}
FIRST_LISTED_SET = 3
STRING_NAME = 1
FIRST_BUCKET, BUCKETS = 0x1000, 0x1F
RECORD = "<IHH"  # of entries and buckets
RECORD_SIZE = struct.calcsize(RECORD)


def checksum(name):
    """Returns a CRC-32 that starts at 0 and is not inverted at the end."""
    return zlib.crc32(name.encode("utf-16-le"), 0xFFFFFFFF) ^ 0xFFFFFFFF


def bucket_stream(bucket):
    return STORAGE + "__substg1.0_%04X0102" % (FIRST_BUCKET + bucket)


class NamedProperties:
    """The names of one message: a name is a set and a number or a string."""

    def __init__(self, streams):
        """`streams` are all streams of the message by path."""
        self.streams = streams
        self.sets = [uuid.UUID(bytes_le=data) for data, in
                     struct.iter_unpack("16s", streams[SETS_STREAM])]
        self.names = [self.read_name(*record) for record in
                      struct.iter_unpack(RECORD, streams[ENTRIES_STREAM])]
        for number, (_, _, index) in enumerate(struct.iter_unpack(RECORD, streams[ENTRIES_STREAM])):
            if index != number:
                raise AssertionError("entry %d is for property %d" % (number, index))

    def read_name(self, identifier, kind_word, _):
        number, kind = kind_word >> 1, kind_word & 1
        if number >= FIRST_LISTED_SET:
            property_set = self.sets[number - FIRST_LISTED_SET]
        else:
            property_set = UNLISTED_SETS[number]
        return property_set, self.text_at(identifier) if kind == STRING_NAME else identifier

    def text_at(self, offset):
        texts = self.streams[STRINGS_STREAM]
        length, = struct.unpack_from("<I", texts, offset)
        text = texts[offset + 4:offset + 4 + length]
        if len(text) != length:
            raise AssertionError("a name runs past the end of its stream")
        return text.decode("utf-16-le")

    def number_of_set(self, property_set):
        for number, unlisted in UNLISTED_SETS.items():
            if property_set == unlisted:
                return number
        return self.sets.index(property_set) + FIRST_LISTED_SET

    def property_id(self, property_set, name):
        """Looks up a name in its bucket, as readers do. Returns None if the message lacks it."""
        if property_set not in UNLISTED_SETS.values() and property_set not in self.sets:
            return None
        is_text = isinstance(name, str)
        kind_word = self.number_of_set(property_set) << 1 | is_text
        identifier = checksum(name) if is_text else name
        stream = self.streams.get(bucket_stream((identifier ^ kind_word) % BUCKETS), b"")
        for record in struct.iter_unpack(RECORD, stream):
            index = record[2]
            if record[:2] == (identifier, kind_word) and self.names[index] == (property_set, name):
                return FIRST_ID + index
        return None

    def bucket_entries(self):
        """Returns the number of entries in all buckets."""
        return sum(len(self.streams.get(bucket_stream(bucket), b""))
                   for bucket in range(BUCKETS)) // RECORD_SIZE
