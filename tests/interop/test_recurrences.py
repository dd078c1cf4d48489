"""Compares appointments and tasks read by independent programs with the documents, and their
recurrences as a decoder of the public structure reads them, every byte."""

import datetime
import os
import random
import tempfile
import unittest

import message_tests
import olmkit
import programs
import recurrence
from archive_items import text_of
from expected.mapi import PidLidAppointmentRecur, PidLidTaskRecurrence
from made_archives import leaf, tag, write_archive
from named_properties import PSETID_APPOINTMENT, PSETID_TASK, NamedProperties
from random_items import make_archive

RECURRENCES = [(PSETID_APPOINTMENT, PidLidAppointmentRecur >> 16),
               (PSETID_TASK, PidLidTaskRecurrence >> 16)]

# The pattern's text after "OPFRecurrencePattern": frequency and pattern in the decoder's terms.
PATTERNS = {
    "Daily": ("daily", "day"),
    "Weekly": ("weekly", "week"),
    "RelativeMonthly": ("monthly", "month nth"),
    "AbsoluteMonthly": ("monthly", "month day"),
    "RelativeYearly": ("yearly", "month nth"),
    "AbsoluteYearly": ("yearly", "month day"),
}
GROUPS = {"allDays": recurrence.DAYS, "weekdays": recurrence.DAYS[1:6],
          "weekenddays": [recurrence.DAYS[0], recurrence.DAYS[6]]}

BINARY = 0x0102
HOUR = datetime.timedelta(hours=1)
RANDOM_ARCHIVES = 3


def value_of(streams):
    """Returns the bytes of the recurrence; None if the message lacks it."""
    names = NamedProperties(streams)
    for name in RECURRENCES:
        found = names.property_id(*name)
        if found is not None:
            return streams["__substg1.0_%04X%04X" % (found, BINARY)]
    return None


def number(element, name, default=0):
    text = text_of(element, name)
    return int(float(text)) if text else default


def moment(text):
    return datetime.datetime.fromisoformat(text)


def days_of(element):
    found = set()
    for day in element.iterfind("OPFRecurrencePattern/OPFRecurrencePatternDaysOfWeek/*"):
        if float(day.text or "0"):
            found.update(GROUPS.get(day.tag, [day.tag]))
    return [day for day in recurrence.DAYS if day in found]


class RecurrenceTests(message_tests.MessageTests):
    """Tests archives whose recurrences are valid."""

    recurrence_count = 0

    def recurrences(self):
        """Returns (item, recurrence element, decoded value) of each item that repeats."""
        found = []
        for item, streams in zip(self.items, self.found_by_olefile()):
            prefix = "OPFCalendarEvent" if item.element.tag == "appointment" else "OPFTask"
            element = item.element.find(prefix + "CopyRecurrence")
            value = value_of(streams)
            self.assertEqual(element is None, value is None, item.path)
            if element is not None:
                found.append((item, element, recurrence.decode(value)))
        return found

    def test_every_recurrence_is_extracted(self):
        self.assertEqual(len(self.recurrences()), self.recurrence_count)

    def test_patterns_are_those_of_the_document(self):
        for _, element, found in self.recurrences():
            pattern = element.find("OPFRecurrencePattern")
            text = text_of(pattern, "OPFRecurrencePatternType")
            frequency, kind = PATTERNS[text.removeprefix("OPFRecurrencePattern")]
            interval = number(pattern, "OPFRecurrencePatternInterval")
            self.assertEqual((found.frequency, found.pattern), (frequency, kind))
            self.assertEqual(found.interval, 12 if frequency == "yearly" else interval)
            if kind in ("week", "month nth"):
                self.assertEqual(found.days, days_of(element))
            if kind == "month day":
                day = number(pattern, "OPFRecurrencePatternDayOfMonth", 1)
                self.assertEqual(found.day_of_month, day)
            if kind == "month nth":
                self.assertEqual(found.week, number(pattern, "OPFRecurrencePatternWeek", 1))

    def test_ends_are_those_of_the_document(self):
        for _, element, found in self.recurrences():
            has_date = number(element, "OPFRecurrenceHasEndDate") != 0
            is_endless = number(element, "OPFRecurrenceIsNoEnd") != 0
            counted = "date" if has_date else "count"
            self.assertEqual(found.end, "never" if is_endless else counted)
            self.assertEqual(found.count, number(element, "OPFRecurrenceGetOccurenceCount"))
            self.assertEqual(found.last_day is not None, has_date)

    def test_times_are_those_of_the_document(self):
        for item, element, found in self.recurrences():
            start = moment(text_of(element, "OPFRecurrenceCopyStartDate"))
            offset = found.first_day - start
            self.check_offset(item.element, start, offset)
            if found.last_day is not None:
                end = moment(text_of(element, "OPFRecurrenceCopyEndDate"))
                self.assertEqual(found.last_day - end, offset)
            if item.element.tag == "appointment":
                item_start = moment(text_of(item.element, "OPFCalendarEventCopyStartTime"))
                item_end = moment(text_of(item.element, "OPFCalendarEventCopyEndTime"))
                self.assertEqual(found.start_time - item_start, offset)
                self.assertEqual(found.end_time - item_end, offset)

    def check_offset(self, item, start, offset):
        """Checks that the offset without a zone is 0, or an hour for a start not at midnight."""
        self.assertIsNone(item.find("OPFCalendarEventCopyTimeZone"))
        is_midnight = start.time() == datetime.time()
        self.assertEqual(offset, datetime.timedelta() if is_midnight else HOUR)


class SampleAppointmentsTest(RecurrenceTests, unittest.TestCase):
    kinds, item_count, recurrence_count = ("appointment",), 2, 1
    category_element, category_count = "OPFCalendarEventCopyCategoryList", 0

    @classmethod
    def archive(cls, folder):
        return olmkit.SAMPLE


class SampleTasksTest(RecurrenceTests, unittest.TestCase):
    kinds, item_count, recurrence_count = ("task",), 2, 0
    category_element, category_count = "OPFTaskCopyCategoryList", 1

    @classmethod
    def archive(cls, folder):
        return olmkit.SAMPLE


@olmkit.needs_real_archive
class RealAppointmentsTest(RecurrenceTests, unittest.TestCase):
    kinds, item_count, recurrence_count = ("appointment",), 8, 4
    category_element, category_count = "OPFCalendarEventCopyCategoryList", 2

    @classmethod
    def archive(cls, folder):
        return olmkit.REAL_ARCHIVE

    def test_weekly_meeting_takes_place_27_times(self):
        self.assertEqual([found.count for _, _, found in self.recurrences()
                          if found.frequency == "weekly"], [27])


@olmkit.needs_real_archive
class RealTasksTest(RecurrenceTests, unittest.TestCase):
    kinds, item_count, recurrence_count = ("task",), 5, 2
    category_element, category_count = "OPFTaskCopyCategoryList", 1

    @classmethod
    def archive(cls, folder):
        return olmkit.REAL_ARCHIVE


def midnight_in(zone, day, is_summer):
    """Returns the start of a day in a zone (minutes) in UTC, as in documents."""
    local = datetime.timedelta(minutes=zone) + (HOUR if is_summer else 0 * HOUR)
    return datetime.datetime.combine(day, datetime.time()) - local


class Maker:
    """Makes appointments that repeat in every way a user can choose."""

    # Whole hours, and half hours east of Greenwich. West of it half hours have no carry, and
    # quarters only where the minutes add up to 60.
    ZONES = [*range(-720, 841, 60), 210, 330, 570, 630, 345, 765]

    def __init__(self, seed):
        self.random = random.Random(seed)

    def pattern(self, kind):
        chosen = self.random.sample(recurrence.DAYS, self.random.randint(1, 7))
        days = "".join(leaf(day, "1" if day in chosen else "0E0") for day in recurrence.DAYS)
        return tag("OPFRecurrencePattern", inner="".join([
            leaf("OPFRecurrencePatternType", "OPFRecurrencePattern" + kind),
            leaf("OPFRecurrencePatternInterval", "%dE0" % self.random.randint(1, 9)),
            leaf("OPFRecurrencePatternDayOfMonth", str(self.random.randint(1, 31))),
            leaf("OPFRecurrencePatternMonth", str(self.random.randint(1, 12))),
            leaf("OPFRecurrencePatternWeek", str(self.random.randint(1, 5))),
            tag("OPFRecurrencePatternDaysOfWeek", inner=days)]))

    def appointment(self, kind):
        zone, is_summer = self.random.choice(self.ZONES), self.random.random() < 0.5
        day = datetime.date(2019, 1, 1) + datetime.timedelta(days=self.random.randrange(9000))
        first = midnight_in(zone, day, is_summer)
        start = first + datetime.timedelta(minutes=self.random.randrange(0, 1440, 5))
        end = start + datetime.timedelta(minutes=self.random.randrange(0, 3000, 5))
        last = first + datetime.timedelta(days=self.random.randrange(4000))
        repeats = tag("OPFCalendarEventCopyRecurrence", inner="".join([
            leaf("OPFRecurrenceHasEndDate", self.random.choice("01")),
            leaf("OPFRecurrenceCopyEndDate", last.isoformat()),
            leaf("OPFRecurrenceCopyStartDate", first.isoformat()),
            leaf("OPFRecurrenceGetOccurenceCount", "%.5gE1" % (self.random.randrange(999) / 10)),
            leaf("OPFRecurrenceIsNoEnd", self.random.choice("01")),
            self.pattern(kind)]))
        sign = "-" if zone < 0 else "+"
        elements = [
            leaf("OPFCalendarEventCopyStartTime", start.isoformat()),
            leaf("OPFCalendarEventCopyEndTime", end.isoformat()),
            leaf("OPFCalendarEventCopyTimeZone",
                 "(GMT%s%02d:%02d) Somewhere" % (sign, abs(zone) // 60, abs(zone) % 60)),
            repeats]
        self.random.shuffle(elements)
        return tag("appointment", inner="".join(elements))


class ManyAppointmentsTest(RecurrenceTests, unittest.TestCase):
    kinds, item_count, recurrence_count = ("appointment",), 120, 120
    category_element = "OPFCalendarEventCopyCategoryList"

    @classmethod
    def archive(cls, folder):
        maker = Maker(20190304)
        items = [maker.appointment(kind) for kind in PATTERNS for _ in range(20)]
        document = tag("appointments", inner="".join(items))
        return write_archive(os.path.join(folder, "many.olm"),
                             {"Local/Calendar/Calendar.xml": document})

    def check_offset(self, item, start, offset):
        """Checks that the offset leads to midnight in the zone, at most a day away."""
        self.assertEqual((start + offset).time(), datetime.time())
        self.assertLessEqual(abs(offset), 15 * HOUR)


class RandomItemsTest(unittest.TestCase):
    def test_every_value_is_decoded_to_its_last_byte(self):
        decoded = 0
        for seed in range(RANDOM_ARCHIVES):
            with tempfile.TemporaryDirectory() as folder:
                path = os.path.join(folder, "random.olm")
                make_archive(path, seed, ["appointment", "task"], 40)
                for row in olmkit.extract(path, os.path.join(folder, "out")):
                    if row["path"] is None:
                        continue
                    message = os.path.join(folder, "out", row["path"])
                    value = value_of(programs.streams_by_olefile(message))
                    if value is not None:
                        recurrence.decode(value)
                        decoded += 1
        self.assertGreater(decoded, 10 * RANDOM_ARCHIVES)


if __name__ == "__main__":
    unittest.main()
