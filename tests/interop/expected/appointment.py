"""Appointments, their people and their recurrence."""

from .message import Message, units, value_stream
from .reader import Tag
from .recurrence_value import RecurrenceValue
from .texts import file_time, signed32, to_boolean, to_long

ORGANIZER = 3
ATTENDEE_TYPES = {1: 2, 2: 3}
BUSY_STATES = {1: 0, 2: 1, 3: 3}


class RecurringMessage(Message):
    """Notes where the recurrence stands and comes back to it at the item's end."""

    recurrence_key = 0

    def __init__(self, reader, archive=None):
        super().__init__(reader, archive)
        self.start_text = ""
        self.end_text = ""
        self.offset = 0
        self.recurrence = None  # its number and the position behind its opening tag

    def skip_recurrence(self, tag):
        self.recurrence = (tag.id, self.reader.position)
        self.reader.skip_element()
        return True

    def finish(self):
        if self.recurrence is None:
            return
        closing, self.reader.position = self.recurrence
        times = (self.start_text, self.end_text)
        value = RecurrenceValue(self.reader, closing, times, self.offset).packed()
        tag = self.names.number(self.recurrence_key)
        self.streams[value_stream(tag)] = value
        self.add(tag, len(value))


class Appointment(RecurringMessage):
    message_class = "IPM.Appointment"
    expected_count = 19
    recurrence_key = 0x82160102
    table = {
        "OPFCalendarEventCopyAttendeeList": 2,
        "OPFCalendarEventCopyCategoryList": 1,
        "OPFCalendarEventCopyDescription": 0x10130102,
        "OPFCalendarEventCopyDescriptionPlain": 0x1000001F,
        "OPFCalendarEventCopyEndTime": 0x00610040,
        "OPFCalendarEventCopyFreeBusyStatus": 0x82050003,
        "OPFCalendarEventCopyLocation": 0x8208001F,
        "OPFCalendarEventCopyModDate": 0x30080040,
        "OPFCalendarEventCopyOrganizer": 3,
        "OPFCalendarEventCopyRecurrence": 4,
        "OPFCalendarEventCopyReminderDelta": 0x85010003,
        "OPFCalendarEventCopyReminderTime": 0x85020040,
        "OPFCalendarEventCopyStartTime": 0x00600040,
        "OPFCalendarEventCopySummary": 0x0037001F,
        "OPFCalendarEventCopyTimeZone": 5,
        "OPFCalendarEventGetHasReminder": 0x8503000B,
        "OPFCalendarEventGetIsAllDayEvent": 0x8215000B,
        "OPFCalendarEventGetIsPrivate": 0x00360003,
        "appointment": 0,
    }

    def __init__(self, reader, archive=None):
        super().__init__(reader, archive)
        self.handlers = {
            1: self.read_categories,
            2: self.read_attendees,
            3: self.read_organizer,
            4: self.skip_recurrence,
            5: self.read_time_zone,
            0x00360003: self.read_privacy,
            0x00600040: self.read_start,
            0x00610040: self.read_end,
            0x82050003: self.read_status,
            0x8208001F: self.read_location,
            0x8215000B: self.read_all_day,
            0x85010003: self.read_reminder_delta,
            0x85020040: self.read_reminder_time,
            0x8503000B: self.read_has_reminder,
        }

    def read_start(self, tag):
        named = self.names.number(0x820D0040)  # also when the element is empty
        text = self.reader.content()
        if text:
            self.start_text = text
            self.add_twice(named, tag.id, text)
        return True

    def read_end(self, tag):
        text = self.reader.content()
        if text:
            self.end_text = text
            self.add_twice(self.names.number(0x820E0040), tag.id, text)
        return True

    def add_twice(self, named, plain, text):
        self.add(named, file_time(text))
        self.add(plain, file_time(text))

    def read_reminder_time(self, tag):
        value = self.read_time()
        self.add(self.names.number(tag.id), value)
        return True

    def read_reminder_delta(self, tag):
        seconds = to_long(self.reader.content()) % (1 << 64)
        self.add(self.names.number(tag.id), seconds // 60)
        return True

    def read_has_reminder(self, tag):
        self.add(self.names.number(tag.id), int(to_boolean(self.reader.content())))
        return True

    def read_location(self, tag):
        self.add_string(self.names.number(tag.id), units(self.reader.content()))
        return True

    def read_privacy(self, tag):
        if to_long(self.reader.content()) == 1:
            self.add(tag.id, 2)
        return True

    def read_status(self, tag):
        state = BUSY_STATES.get(to_long(self.reader.content()), 2)
        self.add(self.names.number(tag.id), state)
        return True

    def read_all_day(self, tag):
        if to_boolean(self.reader.content()):
            self.add(self.names.number(tag.id), 1)
        return True

    def read_time_zone(self, _):
        text = self.reader.content()
        self.add_string(self.names.number(0x8234001F), units(text))
        sign = next((sign for sign in "+-" if sign in text), None)
        if sign is None:
            return True
        hours = to_long(text, text.index(sign) + 1)
        minutes = to_long(text, text.find(":") + 1)
        offset = hours * 60 + minutes
        self.offset = signed32(-offset if sign == "-" else offset)
        return True

    def read_organizer(self, _):
        text = units(self.reader.content())
        recipient = self.add_recipient()
        recipient.add_number(0x0C15, 1)
        recipient.add_string(0x3003, text)
        recipient.add_string(0x3001, text)
        recipient.add_number(0x5FFD, ORGANIZER)
        return True

    def read_attendees(self, group):
        tag = Tag()
        more = True
        while more:
            more = self.reader.next_tag(tag)
            if not tag.closing:
                self.add_attendee(tag)
            more = more and tag.id != group.id
        return True

    def add_attendee(self, tag):
        name, address, kind = (
            tag.value("OPFCalendarAttendee" + which) or "" for which in ("Name", "Address", "Type")
        )
        recipient = self.add_recipient()
        recipient.add_number(0x0C15, ATTENDEE_TYPES.get(signed32(to_long(kind)), 1))
        if address:
            recipient.add_string(0x3003, units(address))
        mail_name = tag.value("OPFContactEmailAddressName")
        shown = (name if mail_name is None else mail_name) or address
        if shown:
            recipient.add_string(0x3001, units(shown))
