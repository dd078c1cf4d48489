"""Resolves the named properties of a message by the rules of MS-OXMSG, 2.2.3: it knows the streams
of `__nameid_version1.0` and nothing of the program that wrote them."""

import struct
import uuid
import zlib

STORAGE = "__nameid_version1.0/"
SETS_STREAM, ENTRIES_STREAM, STRINGS_STREAM = (
    STORAGE + "__substg1.0_%s0102" % number for number in ("0002", "0003", "0004"))

PS_MAPI = uuid.UUID("{00020328-0000-0000-C000-000000000046}")
PS_PUBLIC_STRINGS = uuid.UUID("{00020329-0000-0000-C000-000000000046}")
PSETID_ADDRESS = uuid.UUID("{00062004-0000-0000-C000-000000000046}")

FIRST_ID = 0x8000
FIRST_LISTED_SET = 3  # 1 and 2 stand for the two sets that are never listed
STRING_NAME = 1
BUCKETS = 0x1F


def checksum(name):
    """CRC-32 that starts at 0 and is not inverted in the end."""
    return zlib.crc32(name.encode("utf-16-le"), 0xFFFFFFFF) ^ 0xFFFFFFFF


class NamedProperties:
    """The names of one message: a name is a set with a number or a text."""

    def __init__(self, streams):
        """`streams` has every stream of the message by its path."""
        self.streams = streams
        self.sets = [uuid.UUID(bytes_le=data) for data, in
                     struct.iter_unpack("16s", streams[SETS_STREAM])]
        self.names = [self.read_name(*record) for record in
                      struct.iter_unpack("<IHH", streams[ENTRIES_STREAM])]
        for number, (_, _, index) in enumerate(struct.iter_unpack("<IHH", streams[ENTRIES_STREAM])):
            if index != number:
                raise AssertionError("entry %d tells of property %d" % (number, index))

    def read_name(self, identifier, kind_word, _):
        number, kind = kind_word >> 1, kind_word & 1
        if number >= FIRST_LISTED_SET:
            property_set = self.sets[number - FIRST_LISTED_SET]
        else:
            property_set = {1: PS_MAPI, 2: PS_PUBLIC_STRINGS}[number]
        return property_set, self.text_at(identifier) if kind == STRING_NAME else identifier

    def text_at(self, offset):
        texts = self.streams[STRINGS_STREAM]
        length, = struct.unpack_from("<I", texts, offset)
        text = texts[offset + 4:offset + 4 + length]
        if len(text) != length:
            raise AssertionError("a name runs past the end of its stream")
        return text.decode("utf-16-le")

    def number_of_set(self, property_set):
        if property_set == PS_MAPI:
            return 1
        if property_set == PS_PUBLIC_STRINGS:
            return 2
        return self.sets.index(property_set) + FIRST_LISTED_SET

    def property_id(self, property_set, name):
        """Looks a name up as a reader does, in its bucket; None when the message hasn't got it."""
        if property_set not in (PS_MAPI, PS_PUBLIC_STRINGS) and property_set not in self.sets:
            return None
        is_text = isinstance(name, str)
        kind_word = self.number_of_set(property_set) << 1 | is_text
        identifier = checksum(name) if is_text else name
        bucket = 0x1000 + (identifier ^ kind_word) % BUCKETS
        stream = self.streams.get(STORAGE + "__substg1.0_%04X0102" % bucket, b"")
        for record in struct.iter_unpack("<IHH", stream):
            index = record[2]
            if record[:2] == (identifier, kind_word) and self.names[index] == (property_set, name):
                return FIRST_ID + index
        return None

    def bucket_entries(self):
        """How many entries all buckets have together."""
        return sum(len(self.streams.get(STORAGE + "__substg1.0_%04X0102" % (0x1000 + bucket), b""))
                   for bucket in range(BUCKETS)) // 8
