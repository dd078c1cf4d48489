"""Decodes an AppointmentRecurrencePattern (MS-OXOCAL 2.2.1.44.5), the binary value that describes
how an appointment or a task repeats.

    found = recurrence.decode(data)
    found.frequency, found.first_day, found.start_time

decode() reads the value to its last byte. It raises RecurrenceError when bytes are missing or left
over and when a number has a value that the structure doesn't allow.
"""

import dataclasses
import datetime
import struct

FREQUENCIES = {0x200A: "daily", 0x200B: "weekly", 0x200C: "monthly", 0x200D: "yearly"}
PATTERNS = {0: "day", 1: "week", 2: "month day", 3: "month nth", 4: "month end", 10: "hijri month day",
            11: "hijri month nth", 12: "hijri month end"}
ENDS = {0x2021: "date", 0x2022: "count", 0x2023: "never", 0xFFFFFFFF: "never"}
DAYS = ["sunday", "monday", "tuesday", "wednesday", "thursday", "friday", "saturday"]

READER_VERSION = 0x3004
READER_VERSION_2 = 0x3006
CHANGE_HIGHLIGHT_VERSION = 0x3009  # the first writer version with a ChangeHighlight
NO_END = 0x5AE980DF  # the end date of a recurrence without an end
MINUTES_PER_DAY = 1440

# Bits of an exception's flags.
HAS_SUBJECT = 0x0001
HAS_MEETING_TYPE = 0x0002
HAS_REMINDER_DELTA = 0x0004
HAS_REMINDER = 0x0008
HAS_LOCATION = 0x0010
HAS_BUSY_STATUS = 0x0020
HAS_ATTACHMENT = 0x0040
HAS_SUB_TYPE = 0x0080
HAS_COLOR = 0x0100
HAS_BODY = 0x0200  # a body is attached; the value has no field for it


class RecurrenceError(ValueError):
    """The bytes are not an AppointmentRecurrencePattern."""


@dataclasses.dataclass
class RecurrenceException:
    """One occurrence that differs. Times are minutes since 1601, in local time."""

    start: int  # minutes
    end: int  # minutes
    original_start: int  # minutes
    flags: int  # HAS_* bits: which of the following are set
    subject: str | None = None
    meeting_type: int | None = None
    reminder_delta: int | None = None  # minutes
    reminder_set: bool | None = None
    location: str | None = None
    busy_status: int | None = None
    attachment: int | None = None
    sub_type: int | None = None  # 1: an all-day event
    color: int | None = None
    change_highlight: int | None = None  # bits


@dataclasses.dataclass
class Recurrence:
    """All fields of a value, as stored; the properties below interpret them."""

    reader_version: int
    writer_version: int
    frequency_code: int  # key of FREQUENCIES
    pattern_code: int  # key of PATTERNS
    calendar_type: int  # 0: the default calendar of the pattern
    first_date_time: int  # minutes
    period: int  # minutes when daily, weeks when weekly, months otherwise
    sliding: bool  # a task that recurs from the day of its completion
    day_mask: int | None  # bit 0 is Sunday; of weekly and nth-day patterns
    day_of_month: int | None  # 1 to 31; of patterns with a day of the month
    week: int | None  # 1 to 4, 5 for the last; of nth-day patterns
    end_code: int  # key of ENDS
    count: int  # occurrences
    first_day_of_week: int  # 0 is Sunday
    deleted: list  # minutes since 1601, midnight of each day
    modified: list  # minutes since 1601, midnight of each day
    start_date: int  # minutes since 1601, midnight of the first day in local time
    end_date: int  # minutes since 1601; NO_END without an end
    reader_version_2: int
    writer_version_2: int
    start_offset: int  # minutes from midnight of an occurrence's day to its start, modulo 2^32
    end_offset: int  # minutes from midnight of an occurrence's day to its end, modulo 2^32
    exceptions: list  # RecurrenceException
    reserved_1: bytes
    reserved_2: bytes

    @property
    def frequency(self):
        return FREQUENCIES[self.frequency_code]

    @property
    def pattern(self):
        return PATTERNS[self.pattern_code]

    @property
    def end(self):
        """"date", "count" or "never"."""
        return ENDS[self.end_code]

    @property
    def days(self):
        """Names of the days in the mask, beginning with Sunday; none without a mask."""
        return [name for bit, name in enumerate(DAYS) if (self.day_mask or 0) >> bit & 1]

    @property
    def interval(self):
        """The period in days, weeks or months, by frequency; in months when yearly."""
        return self.period // MINUTES_PER_DAY if self.frequency == "daily" else self.period

    @property
    def first_day(self):
        """datetime of the start date, in local time."""
        return moment(self.start_date)

    @property
    def last_day(self):
        """datetime of the end date in local time; None without an end."""
        return None if self.end_date == NO_END else moment(self.end_date)

    @property
    def start_time(self):
        """datetime at which the occurrence of the first day starts, in local time."""
        return moment(self.start_date + self.start_offset)

    @property
    def end_time(self):
        """datetime at which it ends."""
        return moment(self.start_date + self.end_offset)


def moment(minutes):
    """Returns the datetime of minutes since 1601-01-01T00:00, modulo 2^32: up to the year 9767."""
    return datetime.datetime(1601, 1, 1) + datetime.timedelta(minutes=minutes % (1 << 32))


def minutes_of(when):
    """Returns minutes since 1601-01-01T00:00, truncated: the reverse of moment()."""
    return (when - datetime.datetime(1601, 1, 1)) // datetime.timedelta(minutes=1)


class _Reader:
    def __init__(self, data):
        self.data = bytes(data)
        self.position = 0

    def take(self, size, what):
        end = self.position + size
        if end > len(self.data):
            raise RecurrenceError("%s at byte %d: %d bytes needed, %d left" % (
                what, self.position, size, len(self.data) - self.position))
        part = self.data[self.position:end]
        self.position = end
        return part

    def word(self, what):
        return struct.unpack("<H", self.take(2, what))[0]

    def dword(self, what):
        return struct.unpack("<I", self.take(4, what))[0]

    def dwords(self, what):
        """Reads a count and as many numbers."""
        return [self.dword(what) for _ in range(self.dword(what + " count"))]

    def block(self, what):
        """Reads a size and as many bytes."""
        return self.take(self.dword(what + " size"), what)

    def known(self, value, allowed, what):
        if value not in allowed:
            raise RecurrenceError("%s before byte %d: 0x%X is not a valid value" % (
                what, self.position, value))
        return value


def decode(data):
    """Returns the Recurrence in `data`, which must be used up to its last byte."""
    reader = _Reader(data)
    fields = _head(reader)
    fields.update(_part(reader, fields["pattern_code"]))
    fields.update(_tail(reader))
    exceptions = _exceptions(reader)
    if len(exceptions) != len(fields["modified"]):
        raise RecurrenceError("%d exceptions for %d modified days" % (len(exceptions), len(fields["modified"])))
    fields["reserved_1"] = reader.block("ReservedBlock1")
    _extend(reader, exceptions, fields["writer_version_2"])
    fields["reserved_2"] = reader.block("ReservedBlock2")
    if reader.position != len(reader.data):
        raise RecurrenceError("%d bytes are left over after byte %d" % (
            len(reader.data) - reader.position, reader.position))
    return Recurrence(exceptions=exceptions, **fields)


def _head(reader):
    return {
        "reader_version": reader.known(reader.word("ReaderVersion"), [READER_VERSION], "ReaderVersion"),
        "writer_version": reader.known(reader.word("WriterVersion"), [READER_VERSION], "WriterVersion"),
        "frequency_code": reader.known(reader.word("RecurFrequency"), FREQUENCIES, "RecurFrequency"),
        "pattern_code": reader.known(reader.word("PatternType"), PATTERNS, "PatternType"),
        "calendar_type": reader.word("CalendarType"),
        "first_date_time": reader.dword("FirstDateTime"),
        "period": reader.dword("Period"),
        "sliding": bool(reader.known(reader.dword("SlidingFlag"), [0, 1], "SlidingFlag")),
    }


def _part(reader, pattern_code):
    fields = {"day_mask": None, "day_of_month": None, "week": None}
    pattern = PATTERNS[pattern_code]
    if pattern == "week" or pattern.endswith("nth"):
        fields["day_mask"] = reader.known(reader.dword("day mask"), range(0x80), "day mask")
    elif pattern != "day":
        fields["day_of_month"] = reader.dword("Day")
    if pattern.endswith("nth"):
        fields["week"] = reader.dword("N")
    return fields


def _tail(reader):
    return {
        "end_code": reader.known(reader.dword("EndType"), ENDS, "EndType"),
        "count": reader.dword("OccurrenceCount"),
        "first_day_of_week": reader.known(reader.dword("FirstDOW"), range(7), "FirstDOW"),
        "deleted": reader.dwords("DeletedInstanceDates"),
        "modified": reader.dwords("ModifiedInstanceDates"),
        "start_date": reader.dword("StartDate"),
        "end_date": reader.dword("EndDate"),
        "reader_version_2": reader.known(reader.dword("ReaderVersion2"), [READER_VERSION_2], "ReaderVersion2"),
        "writer_version_2": reader.dword("WriterVersion2"),
        "start_offset": reader.dword("StartTimeOffset"),
        "end_offset": reader.dword("EndTimeOffset"),
    }


def _exceptions(reader):
    return [_exception(reader) for _ in range(reader.word("ExceptionCount"))]


def _exception(reader):
    found = RecurrenceException(reader.dword("exception's start"), reader.dword("exception's end"),
                                reader.dword("exception's original start"), reader.word("OverrideFlags"))
    if found.flags & HAS_SUBJECT:
        found.subject = _narrow(reader, "Subject")
    if found.flags & HAS_MEETING_TYPE:
        found.meeting_type = reader.dword("MeetingType")
    if found.flags & HAS_REMINDER_DELTA:
        found.reminder_delta = reader.dword("ReminderDelta")
    if found.flags & HAS_REMINDER:
        found.reminder_set = reader.dword("ReminderSet") != 0
    if found.flags & HAS_LOCATION:
        found.location = _narrow(reader, "Location")
    if found.flags & HAS_BUSY_STATUS:
        found.busy_status = reader.dword("BusyStatus")
    if found.flags & HAS_ATTACHMENT:
        found.attachment = reader.dword("Attachment")
    if found.flags & HAS_SUB_TYPE:
        found.sub_type = reader.dword("SubType")
    if found.flags & HAS_COLOR:
        found.color = reader.dword("AppointmentColor")
    return found


def _narrow(reader, what):
    """Reads its length plus 1, its length in bytes, and a text in the writer's code page."""
    padded = reader.word(what + " length")
    length = reader.word(what + " length 2")
    if padded != length + 1:
        raise RecurrenceError("%s before byte %d: lengths %d and %d" % (what, reader.position, padded, length))
    return reader.take(length, what).decode("latin-1")


def _extend(reader, exceptions, writer_version_2):
    """Reads the second list, with an entry for each exception: the same texts in Unicode."""
    for found in exceptions:
        if writer_version_2 >= CHANGE_HIGHLIGHT_VERSION:
            highlight = reader.block("ChangeHighlight")
            if len(highlight) < 4:
                raise RecurrenceError("ChangeHighlight before byte %d: %d bytes" % (reader.position, len(highlight)))
            found.change_highlight = struct.unpack_from("<I", highlight)[0]
        reader.block("ReservedBlockEE1")
        if found.flags & (HAS_SUBJECT | HAS_LOCATION):
            for what in ("start", "end", "original start"):
                if reader.dword("extended " + what) != getattr(found, what.replace(" ", "_")):
                    raise RecurrenceError("extended %s before byte %d differs" % (what, reader.position))
            if found.flags & HAS_SUBJECT:
                found.subject = _wide(reader, "WideCharSubject")
            if found.flags & HAS_LOCATION:
                found.location = _wide(reader, "WideCharLocation")
            reader.block("ReservedBlockEE2")


def _wide(reader, what):
    """Reads a length in units and a text in UTF-16LE."""
    return reader.take(2 * reader.word(what + " length"), what).decode("utf-16-le")
