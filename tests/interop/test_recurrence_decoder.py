"""The decoder of recurrence values, tested with values written by hand."""

import datetime
import unittest

import recurrence

# Every second Monday from 2011-05-02 on, 9:00 to 10:30, without an end.
HEAD = "04 30 04 30  0B 20  01 00  00 00  20 49 00 00  02 00 00 00  00 00 00 00"
MONDAY = "02 00 00 00"
END = "23 20 00 00  0A 00 00 00  00 00 00 00"
NO_INSTANCES = "00 00 00 00  00 00 00 00"
DATES = "C0 0A DD 0C  DF 80 E9 5A  06 30 00 00  09 30 00 00  1C 02 00 00  76 02 00 00"
NO_EXCEPTIONS = "00 00  00 00 00 00  00 00 00 00"

WEEKLY = [HEAD, MONDAY, END, NO_INSTANCES, DATES, NO_EXCEPTIONS]


def joined(*parts):
    return bytes.fromhex(" ".join(parts))


def changed(data, offset, part):
    part = bytes.fromhex(part)
    return data[:offset] + part + data[offset + len(part):]


# Two occurrences moved by an hour, one with a subject and a location. 215832960 is
# 2011-05-16T00:00, 215853120 two weeks later. Modified days are in the list of deleted days too.
TWO_MODIFIED = ("02 00 00 00  80 59 DD 0C  40 A8 DD 0C"
                "02 00 00 00  80 59 DD 0C  40 A8 DD 0C")
TWO_EXCEPTIONS = (
    "02 00 "
    # 10:00 to 11:30 instead of 9:00; subject "Tide", reminder 15 minutes, on, location "Pier", busy
    "D8 5B DD 0C  32 5C DD 0C  9C 5B DD 0C  3D 00 "
    "05 00 04 00 54 69 64 65  0F 00 00 00  01 00 00 00  05 00 04 00 50 69 65 72  02 00 00 00 "
    # the other only with meeting type, attachment, all-day event, colour and body
    "98 AA DD 0C  F2 AA DD 0C  5C AA DD 0C  C2 03 "
    "01 00 00 00  01 00 00 00  01 00 00 00  07 00 00 00 "
    "00 00 00 00 "
    # extension of the first: highlight, no reserved bytes, the texts in Unicode, one reserved byte
    "04 00 00 00  03 00 00 00  00 00 00 00 "
    "D8 5B DD 0C  32 5C DD 0C  9C 5B DD 0C "
    "05 00 54 00 69 00 64 00 65 00 73 27  04 00 50 00 69 00 65 00 72 00 "
    "01 00 00 00 EE "
    # extension of the second: highlight with two more bytes, three reserved bytes, no texts
    "06 00 00 00  00 00 00 00 AB CD  03 00 00 00 01 02 03 "
    "00 00 00 00")
FLAGS_OF_FIRST = recurrence.HAS_SUBJECT | recurrence.HAS_REMINDER_DELTA | recurrence.HAS_REMINDER | (
    recurrence.HAS_LOCATION | recurrence.HAS_BUSY_STATUS)


class GoodValueTest(unittest.TestCase):
    def test_weekly_value_has_every_field(self):
        found = recurrence.decode(joined(*WEEKLY))

        self.assertEqual(found, recurrence.Recurrence(
            reader_version=0x3004, writer_version=0x3004, frequency_code=0x200B, pattern_code=1,
            calendar_type=0, first_date_time=18720, period=2, sliding=False, day_mask=2,
            day_of_month=None, week=None, end_code=0x2023, count=10, first_day_of_week=0, deleted=[],
            modified=[], start_date=215812800, end_date=recurrence.NO_END, reader_version_2=0x3006,
            writer_version_2=0x3009, start_offset=540, end_offset=630, exceptions=[],
            reserved_1=b"", reserved_2=b""))

    def test_fields_are_interpreted(self):
        found = recurrence.decode(joined(*WEEKLY))

        self.assertEqual((found.frequency, found.pattern, found.end), ("weekly", "week", "never"))
        self.assertEqual((found.days, found.interval), (["monday"], 2))
        self.assertEqual(found.first_day, datetime.datetime(2011, 5, 2))
        self.assertIsNone(found.last_day)
        self.assertEqual(found.start_time, datetime.datetime(2011, 5, 2, 9, 0))
        self.assertEqual(found.end_time, datetime.datetime(2011, 5, 2, 10, 30))

    def test_daily_value_has_no_days(self):
        data = changed(joined(HEAD, *WEEKLY[2:]), 4, "0A 20 00 00 00 00 40 0B 00 00 E0 10 00 00")

        found = recurrence.decode(data)

        self.assertEqual(len(data), 76)
        self.assertEqual((found.frequency, found.pattern, found.interval), ("daily", "day", 3))
        self.assertEqual((found.day_mask, found.day_of_month, found.week), (None, None, None))
        self.assertEqual(found.days, [])

    def test_monthly_value_has_a_day(self):
        data = changed(joined(HEAD, "1F 00 00 00", *WEEKLY[2:]), 4, "0C 20 02 00")

        found = recurrence.decode(data)

        self.assertEqual((found.frequency, found.pattern), ("monthly", "month day"))
        self.assertEqual((found.day_mask, found.day_of_month, found.week), (None, 31, None))

    def test_nth_day_value_has_days_and_a_week(self):
        data = changed(joined(HEAD, "41 00 00 00 05 00 00 00", *WEEKLY[2:]), 4, "0D 20 03 00")

        found = recurrence.decode(data)

        self.assertEqual(len(data), 84)
        self.assertEqual((found.frequency, found.pattern, found.week), ("yearly", "month nth", 5))
        self.assertEqual(found.days, ["sunday", "saturday"])

    def test_end_date_and_times_before_the_start(self):
        data = joined(HEAD, MONDAY, "21 20 00 00  00 00 00 00  00 00 00 00", NO_INSTANCES,
                      "C0 0A DD 0C  BF 2F DD 0C  06 30 00 00  09 30 00 00  C4 FF FF FF  00 00 00 00",
                      NO_EXCEPTIONS)

        found = recurrence.decode(data)

        self.assertEqual(found.end, "date")
        self.assertEqual(found.last_day, datetime.datetime(2011, 5, 8, 13, 51))
        self.assertEqual(found.start_time, datetime.datetime(2011, 5, 1, 23, 0))

    def test_minutes_convert_both_ways(self):
        self.assertEqual(recurrence.minutes_of(datetime.datetime(1970, 1, 1)), 194074560)
        self.assertEqual(recurrence.moment(recurrence.NO_END), datetime.datetime(4500, 12, 31, 23, 59))


class ExceptionsTest(unittest.TestCase):
    def value(self):
        return joined(HEAD, MONDAY, END, TWO_MODIFIED, DATES, TWO_EXCEPTIONS)

    def test_exceptions_have_every_field(self):
        found = recurrence.decode(self.value())

        self.assertEqual(found.deleted, [215832960, 215853120])
        self.assertEqual(found.modified, found.deleted)
        first, second = found.exceptions
        self.assertEqual(first, recurrence.RecurrenceException(
            start=215832960 + 600, end=215832960 + 690, original_start=215832960 + 540,
            flags=FLAGS_OF_FIRST, subject="Tide\u2773", reminder_delta=15, reminder_set=True,
            location="Pier", busy_status=2, change_highlight=3))
        self.assertEqual(second, recurrence.RecurrenceException(
            start=215853120 + 600, end=215853120 + 690, original_start=215853120 + 540, flags=0x3C2,
            meeting_type=1, attachment=1, sub_type=1, color=7, change_highlight=0))

    def test_cut_anywhere_raises(self):
        data = self.value()
        for size in range(len(data)):
            with self.subTest(size=size), self.assertRaises(recurrence.RecurrenceError):
                recurrence.decode(data[:size])

    def test_trailing_byte_raises(self):
        with self.assertRaisesRegex(recurrence.RecurrenceError, "1 bytes are left over"):
            recurrence.decode(self.value() + b"\0")

    def test_texts_with_two_lengths_raise(self):
        data = self.value()
        place = data.index(b"\x05\x00\x04\x00Tide")
        with self.assertRaisesRegex(recurrence.RecurrenceError, "Subject"):
            recurrence.decode(changed(data, place, "06 00"))

    def test_extension_of_another_occurrence_raises(self):
        data = self.value()
        place = data.rindex(bytes.fromhex("D8 5B DD 0C"))
        with self.assertRaisesRegex(recurrence.RecurrenceError, "extended start"):
            recurrence.decode(changed(data, place, "D9"))


class BadValueTest(unittest.TestCase):
    def test_cut_anywhere_raises(self):
        data = joined(*WEEKLY)
        for size in range(len(data)):
            with self.subTest(size=size), self.assertRaises(recurrence.RecurrenceError):
                recurrence.decode(data[:size])

    def test_trailing_bytes_raise(self):
        with self.assertRaisesRegex(recurrence.RecurrenceError, "2 bytes are left over after byte 80"):
            recurrence.decode(joined(*WEEKLY) + b"\0\0")

    def test_invalid_numbers_raise(self):
        for name, offset, part in [
                ("ReaderVersion", 0, "05 30"), ("WriterVersion", 2, "00 00"), ("RecurFrequency", 4, "0E 20"),
                ("PatternType", 6, "05 00"), ("SlidingFlag", 18, "02 00 00 00"), ("day mask", 22, "80 00 00 00"),
                ("EndType", 26, "24 20 00 00"), ("FirstDOW", 34, "07 00 00 00"),
                ("ReaderVersion2", 54, "07 30 00 00")]:
            with self.subTest(name), self.assertRaisesRegex(recurrence.RecurrenceError, name):
                recurrence.decode(changed(joined(*WEEKLY), offset, part))

    def test_exceptions_without_modified_days_raise(self):
        with self.assertRaisesRegex(recurrence.RecurrenceError, "2 exceptions for 0 modified days"):
            recurrence.decode(joined(HEAD, MONDAY, END, NO_INSTANCES, DATES, TWO_EXCEPTIONS))

    def test_counts_past_the_end_raise(self):
        for offset in (38, 42):
            with self.subTest(offset=offset), self.assertRaises(recurrence.RecurrenceError):
                recurrence.decode(changed(joined(*WEEKLY), offset, "FF FF FF FF"))


if __name__ == "__main__":
    unittest.main()
