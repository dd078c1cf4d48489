#!/usr/bin/python3
"""Checks compound files against every rule of MS-CFB, version 3, that a reader may rely on.

    check_compound.py FILE...

Prints one line per file ("FILE: valid: ...") or one line per fault ("FILE: fault: ...", at most
MAX_FAULTS). The exit status is 0 if all are valid, 1 if at least one is not, 2 on wrong usage or if
a file can't be read. It needs only Python's own library and shares no code with the writer.
"""

import array
import mmap
import struct
import sys

# Sizes in bytes.
SECTOR = 512
MINI_SECTOR = 64
MINI_LIMIT = 4096
ENTRY = 128
MAX_STREAM = 0x80000000

PER_SECTOR = SECTOR // 4  # numbers in a sector
HEADER_FAT_ENTRIES = 109

# The header (MS-CFB 2.2).
SIGNATURE = bytes.fromhex("D0CF11E0A1B11AE1")
MINOR_VERSION, MAJOR_VERSION = 0x3E, 3
BYTE_ORDER = 0xFFFE
SECTOR_SHIFT, MINI_SECTOR_SHIFT = 9, 6
NO_CLASS_ID = bytes(16)

# Sector numbers with a meaning (MS-CFB 2.1).
DIFAT_SECTOR = 0xFFFFFFFC
FAT_SECTOR = 0xFFFFFFFD
END = 0xFFFFFFFE
FREE = 0xFFFFFFFF
NO_ENTRY = 0xFFFFFFFF

# Types and colours of directory entries (MS-CFB 2.6.1).
UNUSED, STORAGE, STREAM, ROOT = 0, 1, 2, 5
RED, BLACK = 0, 1

MAX_FAULTS = 20  # printed per file


class Hopeless(Exception):
    """A fault after which nothing else can be checked."""


def upper_cased(unit):
    """Returns a UTF-16 unit in upper case by the simple case mapping; surrogates are unchanged."""
    if 0xD800 <= unit <= 0xDFFF:
        return unit
    character = chr(unit)
    capital = character.upper()
    if len(capital) != 1:
        capital = character.title()  # a single letter where upper() returns several
    if len(capital) != 1 or ord(capital) > 0xFFFF:
        return unit
    return ord(capital)


class Entry:
    """A directory entry, as stored (MS-CFB 2.6.1)."""

    def __init__(self, number, record):
        self.number = number
        self.record = record
        self.name_units = struct.unpack_from("<32H", record, 0)
        (self.name_length, self.type, self.colour, self.left, self.right, self.child) = (
            struct.unpack_from("<HBBIII", record, 64))
        self.class_id = record[80:96]
        (self.state, self.created, self.modified, self.start, self.size_low, self.size_high) = (
            struct.unpack_from("<IQQIII", record, 96))
        self.size = self.size_low | self.size_high << 32
        self.units = self.name_units[:max(self.name_length // 2 - 1, 0)]
        self.key = (len(self.units), [upper_cased(unit) for unit in self.units])

    def __str__(self):
        name = struct.pack("<%dH" % len(self.units), *self.units).decode("utf-16-le", "replace")
        return "entry %d (%r)" % (self.number, name)


class Checker:
    def __init__(self, data):
        self.data = data
        self.faults = []

    def check(self):
        """Checks everything. Returns a summary; the faults are in self.faults."""
        try:
            self.check_header()
            self.check_fat()
            self.check_directory()
            self.check_trees()
            self.check_mini_stream()
            self.check_streams()
            self.check_left_over()
        except Hopeless:
            return ""
        count = {kind: sum(entry.type == kind for entry in self.entries)
                 for kind in (UNUSED, STORAGE, STREAM)}
        return "%d streams, %d storages, %d unused entries, %d sectors, %d of them free" % (
            count[STREAM], count[STORAGE], count[UNUSED], self.sector_count,
            self.owner.count(0))

    def fault(self, text, *arguments):
        self.faults.append(text % arguments)

    def expect(self, condition, text, *arguments):
        if not condition:
            self.fault(text, *arguments)

    def require(self, condition, text, *arguments):
        if not condition:
            self.fault(text, *arguments)
            raise Hopeless()

    # Sectors.

    def sector(self, number):
        start = SECTOR * (number + 1)
        return self.data[start:start + SECTOR]

    def claim(self, number, what):
        """Assigns a sector to one owner; a second owner is a fault."""
        self.require(number < self.sector_count, "%s: sector 0x%X is not in the file", what, number)
        self.require(not self.owner[number], "%s: sector %d belongs to something else too", what,
                     number)
        self.owner[number] = 1

    def chain(self, first, what):
        """Returns the sectors of a chain in the FAT, and claims them."""
        sectors = []
        number = first
        while number != END:
            self.claim(number, what)
            sectors.append(number)
            number = self.fat[number]
        return sectors

    def read_chain(self, first, what):
        return b"".join(self.sector(number) for number in self.chain(first, what))

    # Parts of the file.

    def check_header(self):
        data = self.data
        self.require(len(data) >= SECTOR, "shorter than a header")
        self.require(data[:8] == SIGNATURE, "wrong signature")
        self.expect(data[8:24] == NO_CLASS_ID, "the header's class id is not zero")
        (minor, major, order, shift, mini_shift) = struct.unpack_from("<5H", data, 24)
        self.expect(minor == MINOR_VERSION, "minor version is 0x%X", minor)
        self.require(major == MAJOR_VERSION, "major version is %d", major)
        self.require(order == BYTE_ORDER, "byte order is 0x%X", order)
        self.require(shift == SECTOR_SHIFT, "sector shift is %d", shift)
        self.require(mini_shift == MINI_SECTOR_SHIFT, "mini sector shift is %d", mini_shift)
        self.expect(data[34:40] == bytes(6), "reserved bytes of the header are not zero")
        (directory_count, self.fat_count, self.directory_start, transaction, limit,
         self.mini_fat_start, self.mini_fat_count, self.difat_start, self.difat_count) = (
             struct.unpack_from("<9I", data, 40))
        self.expect(directory_count == 0, "number of directory sectors is %d", directory_count)
        self.expect(transaction == 0, "transaction signature is %d", transaction)
        self.require(limit == MINI_LIMIT, "mini stream limit is %d", limit)
        self.require(len(data) % SECTOR == 0, "the file ends within a sector")
        self.sector_count = len(data) // SECTOR - 1
        self.owner = bytearray(self.sector_count)

    def check_fat(self):
        self.require(self.fat_count <= self.sector_count, "more FAT sectors than sectors")
        self.require(self.difat_count <= self.sector_count, "more DIFAT sectors than sectors")
        listed = list(struct.unpack_from("<%dI" % HEADER_FAT_ENTRIES, self.data, 76))
        difat = []
        number = self.difat_start
        while number != END:
            self.claim(number, "DIFAT")
            difat.append(number)
            values = struct.unpack("<%dI" % PER_SECTOR, self.sector(number))
            listed += values[:-1]
            number = values[-1]
        self.expect(len(difat) == self.difat_count, "%d DIFAT sectors, the header says %d",
                    len(difat), self.difat_count)
        fat_sectors = listed[:self.fat_count]
        self.require(len(fat_sectors) == self.fat_count, "the DIFAT lists too few FAT sectors")
        self.expect(all(value == FREE for value in listed[self.fat_count:]),
                    "the DIFAT continues after the last FAT sector")
        spare = len(listed) - HEADER_FAT_ENTRIES - max(self.fat_count - HEADER_FAT_ENTRIES, 0)
        self.expect(spare < PER_SECTOR - 1, "a DIFAT sector lists nothing")

        self.fat = array.array("I")
        assert self.fat.itemsize == 4
        for number in fat_sectors:
            self.claim(number, "FAT")
            self.fat.frombytes(self.sector(number))
        if sys.byteorder == "big":
            self.fat.byteswap()
        self.require(len(self.fat) >= self.sector_count, "the FAT doesn't cover the file")
        for number in range(self.sector_count, len(self.fat)):
            self.expect(self.fat[number] == FREE, "the FAT uses sector %d, past the end of the file",
                        number)

        for name, sectors, mark in (("FAT", fat_sectors, FAT_SECTOR),
                                    ("DIFAT", difat, DIFAT_SECTOR)):
            for number in sectors:
                self.expect(self.fat[number] == mark, "%s sector %d is marked 0x%X", name, number,
                            self.fat[number])
            self.expect(self.fat.count(mark) == len(sectors), "%d sectors are marked as %s, not %d",
                        self.fat.count(mark), name, len(sectors))

    def check_directory(self):
        self.require(self.directory_start != END, "no directory")
        records = self.read_chain(self.directory_start, "directory")
        self.entries = [Entry(i, records[i * ENTRY:(i + 1) * ENTRY])
                        for i in range(len(records) // ENTRY)]
        for entry in self.entries:
            if entry.type == UNUSED:
                self.expect(entry.record == bytes(68) + b"\xFF" * 12 + bytes(48),
                            "entry %d is unused and not blank", entry.number)
            else:
                self.check_entry(entry)
        root = self.entries[0]
        self.require(root.type == ROOT, "entry 0 is not the root")
        self.expect(list(root.units) == list(b"Root Entry"), "the root has another name: %s", root)
        self.expect(root.left == NO_ENTRY and root.right == NO_ENTRY, "the root has siblings")
        self.expect(root.created == 0, "the root has a creation time")

    def check_entry(self, entry):
        self.require(entry.type in (STORAGE, STREAM, ROOT), "%s has type %d", entry, entry.type)
        self.expect(entry.type != ROOT or entry.number == 0, "%s is a second root", entry)
        self.require(entry.name_length % 2 == 0 and 4 <= entry.name_length <= 64,
                     "%s has a name of %d bytes", entry, entry.name_length)
        self.expect(not any(entry.name_units[len(entry.units):]),
                    "%s: name is not terminated, or not followed by zeros", entry)
        self.expect(0 not in entry.units, "%s: a zero in the name", entry)
        self.expect(not any(unit in map(ord, "/\\:!") for unit in entry.units),
                    "%s: a forbidden character in the name", entry)
        self.expect(entry.colour in (RED, BLACK), "%s has colour %d", entry, entry.colour)
        self.expect(entry.state == 0, "%s has state bits", entry)
        if entry.type == STREAM:
            self.expect(entry.child == NO_ENTRY, "%s is a stream and has a child", entry)
            self.expect(entry.class_id == NO_CLASS_ID, "%s is a stream and has a class id", entry)
            self.expect(entry.created == 0 and entry.modified == 0,
                        "%s is a stream and has times", entry)
        if entry.type == STORAGE:
            self.expect(entry.start == 0 and entry.size == 0, "%s is a storage and has bytes", entry)
        self.expect(entry.size <= MAX_STREAM, "%s has %d bytes", entry, entry.size)

    def check_trees(self):
        reached = bytearray(len(self.entries))
        reached[0] = 1
        storages = [self.entries[0]]
        while storages:
            storage = storages.pop()
            members = self.check_tree(storage, reached)
            storages += [member for member in members if member.type == STORAGE]
        for entry in self.entries:
            self.expect(entry.type == UNUSED or reached[entry.number], "%s is not in any storage",
                        entry)

    def check_tree(self, storage, reached):
        """Checks the red-black tree of a storage. Returns its members in order."""
        members = []
        black_heights = set()
        path = []  # entries whose left subtree was entered, with the black nodes down to each
        number, parent, blacks = storage.child, None, 0
        while True:
            while number != NO_ENTRY:
                self.require(number < len(self.entries), "%s: no entry 0x%X", storage, number)
                entry = self.entries[number]
                self.require(entry.type != UNUSED, "%s: entry %d is unused", storage, number)
                self.require(not reached[number], "%s is reached twice", entry)
                reached[number] = 1
                if parent is None:
                    self.expect(entry.colour == BLACK, "%s is the root of a tree and red", entry)
                elif parent.colour == RED:
                    self.expect(entry.colour == BLACK, "%s and its parent are red", entry)
                blacks += entry.colour == BLACK
                path.append((entry, blacks))
                number, parent = entry.left, entry
            black_heights.add(blacks)  # an empty subtree of `parent`
            if not path:
                break
            parent, blacks = path.pop()
            members.append(parent)
            number = parent.right
        self.expect(len(black_heights) <= 1, "%s: black heights differ: %s", storage,
                    sorted(black_heights))
        for first, second in zip(members, members[1:]):
            self.expect(first.key < second.key, "%s: %s is before %s", storage, first, second)
        return members

    def check_mini_stream(self):
        root = self.entries[0]
        self.expect(root.size % MINI_SECTOR == 0, "the mini stream ends within a mini sector")
        sectors = self.chain(root.start, "mini stream")
        self.require(len(sectors) == -(-root.size // SECTOR),
                     "the mini stream has %d sectors for %d bytes", len(sectors), root.size)
        self.mini_count = root.size // MINI_SECTOR
        self.mini_owner = bytearray(self.mini_count)

        table = self.read_chain(self.mini_fat_start, "MiniFAT")
        self.expect(len(table) == SECTOR * self.mini_fat_count,
                    "%d MiniFAT sectors, the header says %d", len(table) // SECTOR,
                    self.mini_fat_count)
        self.mini_fat = array.array("I", table)
        if sys.byteorder == "big":
            self.mini_fat.byteswap()
        self.require(len(self.mini_fat) >= self.mini_count,
                     "the MiniFAT doesn't cover the mini stream")
        for number in range(self.mini_count, len(self.mini_fat)):
            self.expect(self.mini_fat[number] == FREE,
                        "the MiniFAT uses mini sector %d, past the end of the mini stream", number)

    def mini_chain_length(self, first, what):
        length = 0
        number = first
        while number != END:
            self.require(number < self.mini_count, "%s: mini sector 0x%X is not in the mini stream",
                         what, number)
            self.require(not self.mini_owner[number],
                         "%s: mini sector %d belongs to something else too", what, number)
            self.mini_owner[number] = 1
            length += 1
            number = self.mini_fat[number]
        return length

    def check_streams(self):
        for entry in self.entries:
            if entry.type != STREAM:
                continue
            if entry.size < MINI_LIMIT:
                length, unit = self.mini_chain_length(entry.start, str(entry)), MINI_SECTOR
            else:
                length, unit = len(self.chain(entry.start, str(entry))), SECTOR
            self.expect(length == -(-entry.size // unit), "%s has %d sectors of %d for %d bytes",
                        entry, length, unit, entry.size)

    def check_left_over(self):
        for name, owner, table in (("sector", self.owner, self.fat),
                                   ("mini sector", self.mini_owner, self.mini_fat)):
            number = owner.find(0)
            while number != -1:
                self.expect(table[number] == FREE, "%s %d has no owner and is not free", name,
                            number)
                number = owner.find(0, number + 1)


def check_file(path):
    """Prints the faults of a file or that it is valid. Returns whether it is."""
    with open(path, "rb") as file:
        file.seek(0, 2)
        if file.tell() == 0:
            data = b""
        else:
            data = mmap.mmap(file.fileno(), 0, access=mmap.ACCESS_READ)
        checker = Checker(data)
        summary = checker.check()
    for text in checker.faults[:MAX_FAULTS]:
        print("%s: fault: %s" % (path, text))
    if len(checker.faults) > MAX_FAULTS:
        print("%s: fault: and %d more" % (path, len(checker.faults) - MAX_FAULTS))
    if not checker.faults:
        print("%s: valid: %s" % (path, summary))
    return not checker.faults


def main(paths):
    if not paths:
        print(__doc__, file=sys.stderr)
        return 2
    status = 0
    for path in paths:
        try:
            if not check_file(path):
                status = max(status, 1)
        except OSError as error:
            print("%s: %s" % (path, error.strerror), file=sys.stderr)
            status = 2
    return status


if __name__ == "__main__":
    sys.exit(main(sys.argv[1:]))
