"""The packed recurrence of appointments and tasks."""

import struct

from .message import Failure
from .reader import Tag
from .texts import DAY, days_of, divided, milliseconds, signed32, to_long, unsigned32

DAILY, WEEKLY, MONTHLY, YEARLY = 0x200A, 0x200B, 0x200C, 0x200D
BY_DAYS, BY_WEEK, ABSOLUTE, RELATIVE = 0, 1, 2, 3
PATTERNS = {
    "opfrecurrencepatterndaily": (DAILY, BY_DAYS),
    "opfrecurrencepatternweekly": (WEEKLY, BY_WEEK),
    "opfrecurrencepatternrelativemonthly": (MONTHLY, RELATIVE),
    "opfrecurrencepatternabsolutemonthly": (MONTHLY, ABSOLUTE),
    "opfrecurrencepatternrelativeyearly": (YEARLY, RELATIVE),
    "opfrecurrencepatternabsoluteyearly": (YEARLY, ABSOLUTE),
}
ENDS_AT_DATE, ENDS_AFTER_COUNT, NEVER_ENDS = 0x2021, 0x2022, 0x2023

# Numbers of elements.
END_DATE, START_DATE, COUNT, HAS_END, IS_ENDLESS = 10, 11, 12, 13, 14
DAYS_OF_WEEK, INTERVAL, PATTERN_TYPE, WEEK, MONTH, DAY_OF_MONTH = 17, 18, 19, 20, 21, 22

DAY_FLAGS = {
    23: 0x7F,  # all days
    24: 0x20,  # friday
    25: 0x02,  # monday
    26: 0x40,  # saturday
    27: 0x01,  # sunday
    28: 0x10,  # thursday
    29: 0x04,  # tuesday
    30: 0x08,  # wednesday
    31: 0x3E,  # weekdays
    32: 0x41,  # weekend days
}
ALL_DAYS = 0x7F
TABLE = {
    "OPFRecurrenceCopyEndDate": END_DATE,
    "OPFRecurrenceCopyStartDate": START_DATE,
    "OPFRecurrenceGetOccurenceCount": COUNT,
    "OPFRecurrenceHasEndDate": HAS_END,
    "OPFRecurrenceIsNoEnd": IS_ENDLESS,
    "OPFRecurrenceIsNumbered": 15,
    "OPFRecurrencePattern": 16,
    "OPFRecurrencePatternDayOfMonth": DAY_OF_MONTH,
    "OPFRecurrencePatternDaysOfWeek": DAYS_OF_WEEK,
    "OPFRecurrencePatternInterval": INTERVAL,
    "OPFRecurrencePatternMonth": MONTH,
    "OPFRecurrencePatternType": PATTERN_TYPE,
    "OPFRecurrencePatternWeek": WEEK,
    "allDays": 23,
    "friday": 24,
    "monday": 25,
    "saturday": 26,
    "sunday": 27,
    "thursday": 28,
    "tuesday": 29,
    "wednesday": 30,
    "weekdays": 31,
    "weekenddays": 32,
}

MINUTES_TO_1970 = 194074560  # from 1601
NO_END = 0x5AE980DF
MINUTE = 60000  # milliseconds
DAY_MINUTES = 1440
WEEK_MINUTES = 10080

# Versions of the structure's readers and writers (MS-OXOCAL 2.2.1.44).
VERSION, READER_VERSION_2, WRITER_VERSION_2 = 0x3004, 0x3006, 0x3009


def lowered(text):
    """Returns the text with its ASCII letters in lower case."""
    return "".join(chr(ord(unit) + 32) if "A" <= unit <= "Z" else unit for unit in text)


class RecurrenceValue:
    """Reads a recurrence from after its opening tag up to a tag with the number `closing`."""

    def __init__(self, reader, closing, item_times, offset):
        reader.add_tags(TABLE)
        self.reader = reader
        self.item_times = [milliseconds(text) for text in item_times]
        self.offset = offset
        self.frequency, self.pattern = DAILY, BY_DAYS
        self.period = self.days = self.month = self.count = self.first = 0
        self.week = self.day = 1
        self.end_type = NEVER_ENDS
        self.has_end = False
        self.start = self.end = None
        self.read(closing)
        if self.start is None or self.has_end and self.end is None:
            raise Failure
        self.adjust_offset()
        self.modify_period()
        self.find_first()

    def read(self, closing):
        tag = Tag()
        more = True
        while more:
            more = self.reader.next_tag(tag)
            if not tag.closing:
                self.take(tag)
            more = more and tag.id != closing

    def take(self, tag):
        if tag.id == END_DATE:
            self.end = milliseconds(self.reader.content())
        elif tag.id == START_DATE:
            self.start = milliseconds(self.reader.content())
        elif tag.id == COUNT:
            self.count = self.read_number()
        elif tag.id == HAS_END:
            self.has_end = self.read_number() != 0
        elif tag.id == IS_ENDLESS:
            limited = ENDS_AT_DATE if self.has_end else ENDS_AFTER_COUNT
            self.end_type = NEVER_ENDS if self.read_number() else limited
        elif tag.id == DAYS_OF_WEEK:
            self.days = self.read_days()
        elif tag.id == INTERVAL:
            self.period = self.read_number()
        elif tag.id == PATTERN_TYPE:
            known = PATTERNS.get(lowered(self.reader.content()))
            self.frequency, self.pattern = known or (self.frequency, self.pattern)
        elif tag.id == WEEK:
            week = self.read_number()
            self.week = week if 1 <= week <= 5 else 0
        elif tag.id == MONTH:
            self.month = self.read_number()
        elif tag.id == DAY_OF_MONTH:
            self.day = self.read_number()

    def read_number(self):
        return unsigned32(to_long(self.reader.content()))

    def read_days(self):
        mask = 0
        tag = Tag()
        more = True
        while more:
            more = self.reader.next_tag(tag)
            if mask != ALL_DAYS and not tag.closing and self.read_number():
                mask |= DAY_FLAGS.get(tag.id, 0)
            more = more and tag.id != DAYS_OF_WEEK
        return mask

    def adjust_offset(self):
        """Adds an hour of daylight saving time if the start is not at midnight in the zone."""
        hour, minute = divmod(self.start % DAY // MINUTE, 60)
        if minute == 29:
            minute = 30
        hours = divided(self.offset, 60)
        minutes = self.offset - hours * 60
        if minutes > 0 and minute + minutes == 60:
            hour += 1
        if (hour + hours) % 0x10000 not in (0, 24):
            self.offset = signed32(self.offset + 60)

    def modify_period(self):
        if self.period == 0:
            return
        if self.frequency == DAILY:
            self.period = unsigned32(self.period * DAY_MINUTES)
        elif self.frequency == YEARLY:
            self.period = 12

    def date_value(self, time):
        return unsigned32(divided(time + 1, MINUTE) + MINUTES_TO_1970 + self.offset)

    def find_first(self):
        if self.pattern == RELATIVE:
            self.first = 0
        elif self.frequency == DAILY:
            self.first = self.remainder(self.date_value(self.start), self.period)
        elif self.frequency == WEEKLY:
            self.first = self.first_of_week()
        elif self.month:
            month = signed32(self.month)
            self.first = unsigned32((days_of(1601, month) - days_of(1601, 1)) * DAY_MINUTES)

    @staticmethod
    def remainder(date, divisor):
        if divisor == 0:
            raise Failure
        return date % divisor

    def first_of_week(self):
        for bit in range(7):
            if self.days >> bit & 1:
                date = unsigned32(self.date_value(self.start) - bit * DAY_MINUTES)
                return self.remainder(date, unsigned32(self.period * WEEK_MINUTES))
        raise Failure

    def end_value(self):
        return self.date_value(self.end) if self.has_end else NO_END

    def packed(self):
        specific = {
            BY_WEEK: [self.days],
            ABSOLUTE: [self.day],
            RELATIVE: [self.days, self.week],
        }.get(self.pattern, [])
        start, end = self.item_times
        tail = [self.end_type, self.count, 0, 0, 0, self.date_value(self.start), self.end_value()]
        tail += [READER_VERSION_2, WRITER_VERSION_2]
        tail.append(unsigned32(divided(start + 1 - self.start, MINUTE)))
        tail.append(unsigned32(divided(end - self.start, MINUTE)))
        return (
            struct.pack("<5H", VERSION, VERSION, self.frequency, self.pattern, 0)
            + struct.pack("<3I", self.first, self.period, 0)
            + struct.pack("<%dI" % len(specific + tail), *specific, *tail)
            + struct.pack("<HII", 0, 0, 0)
        )
