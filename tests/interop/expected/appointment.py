"""Appointments, their attendees and their recurrence."""

from . import mapi
from .message import Message, units, value_stream
from .reader import Tag
from .recurrence_value import RecurrenceValue
from .texts import file_time, signed32, to_boolean, to_long

# Values of PidTagRecipientType and PidTagRecipientFlags.
REQUIRED, OPTIONAL, RESOURCE = 1, 2, 3
SENDABLE_ORGANIZER = 3
# Values of PidLidBusyStatus.
FREE, TENTATIVE, BUSY, OUT_OF_OFFICE = 0, 1, 2, 3
PRIVATE = 2  # value of PidTagSensitivity

ATTENDEE_TYPES = {1: OPTIONAL, 2: RESOURCE}  # by the document's number; all others are required
BUSY_STATES = {1: FREE, 2: TENTATIVE, 3: OUT_OF_OFFICE}  # likewise; all others are busy
DOCUMENT_PRIVATE = 1


class RecurringMessage(Message):
    """Remembers the place of the recurrence and reads it at the end of the item."""

    recurrence_key = 0

    def __init__(self, reader, archive=None):
        super().__init__(reader, archive)
        self.start_text = ""
        self.end_text = ""
        self.offset = 0
        self.recurrence = None  # its number and the position after its opening tag

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
    recurrence_key = mapi.PidLidAppointmentRecur
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
            mapi.PidTagSensitivity: self.read_privacy,
            mapi.PidTagStartDate: self.read_start,
            mapi.PidTagEndDate: self.read_end,
            mapi.PidLidBusyStatus: self.read_status,
            mapi.PidLidLocation: self.read_location,
            mapi.PidLidAppointmentSubType: self.read_all_day,
            mapi.PidLidReminderDelta: self.read_reminder_delta,
            mapi.PidLidReminderTime: self.read_reminder_time,
            mapi.PidLidReminderSet: self.read_has_reminder,
        }

    def read_start(self, tag):
        named = self.names.number(mapi.PidLidAppointmentStartWhole)  # even if the element is empty
        text = self.reader.content()
        if text:
            self.start_text = text
            self.add_twice(named, tag.id, text)
        return True

    def read_end(self, tag):
        text = self.reader.content()
        if text:
            self.end_text = text
            self.add_twice(self.names.number(mapi.PidLidAppointmentEndWhole), tag.id, text)
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
        if to_long(self.reader.content()) == DOCUMENT_PRIVATE:
            self.add(tag.id, PRIVATE)
        return True

    def read_status(self, tag):
        state = BUSY_STATES.get(to_long(self.reader.content()), BUSY)
        self.add(self.names.number(tag.id), state)
        return True

    def read_all_day(self, tag):
        if to_boolean(self.reader.content()):
            self.add(self.names.number(tag.id), 1)
        return True

    def read_time_zone(self, _):
        text = self.reader.content()
        self.add_string(self.names.number(mapi.PidLidTimeZoneDescription), units(text))
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
        recipient.add_number(mapi.PidTagRecipientType, REQUIRED)
        recipient.add_string(mapi.PidTagEmailAddress, text)
        recipient.add_string(mapi.PidTagDisplayName, text)
        recipient.add_number(mapi.PidTagRecipientFlags, SENDABLE_ORGANIZER)
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
        attendee_type = ATTENDEE_TYPES.get(signed32(to_long(kind)), REQUIRED)
        recipient.add_number(mapi.PidTagRecipientType, attendee_type)
        if address:
            recipient.add_string(mapi.PidTagEmailAddress, units(address))
        mail_name = tag.value("OPFContactEmailAddressName")
        shown = (name if mail_name is None else mail_name) or address
        if shown:
            recipient.add_string(mapi.PidTagDisplayName, units(shown))
