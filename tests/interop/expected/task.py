"""Tasks."""

from . import mapi
from .appointment import RecurringMessage
from .texts import file_time

COMPLETE = 2  # value of PidLidTaskStatus
ONE = 0x3FF0000000000000  # bits of the number 1.0
COMPLETED = (
    (mapi.PidLidTaskComplete, 1),
    (mapi.PidLidTaskStatus, COMPLETE),
    (mapi.PidLidPercentComplete, ONE),
)


class Task(RecurringMessage):
    message_class = "IPM.Task"
    expected_count = 11
    recurrence_key = mapi.PidLidTaskRecurrence
    table = {
        "OPFTaskCopyCategoryList": 1,
        "OPFTaskCopyCompletedDateTime": 0x810F0040,
        "OPFTaskCopyDueDateTime": 0x81050040,
        "OPFTaskCopyModDate": 0x30080040,
        "OPFTaskCopyName": 0x0037001F,
        "OPFTaskCopyNote": 0x10130102,
        "OPFTaskCopyNotePlain": 0x1000001F,
        "OPFTaskCopyRecurrence": 2,
        "OPFTaskCopyStartDateTime": 0x81040040,
        "OPFTaskGetPriority": 0x00170003,
        "task": 0,
    }

    def __init__(self, reader, archive=None):
        super().__init__(reader, archive)
        self.handlers = {
            1: self.read_categories,
            2: self.skip_recurrence,
            mapi.PidLidTaskStartDate: self.read_start,
            mapi.PidLidTaskDueDate: self.read_due,
            mapi.PidLidTaskDateCompleted: self.read_completed,
        }

    def read_start(self, tag):
        self.start_text = self.reader.content(self.start_text)
        self.add(self.names.number(tag.id), file_time(self.start_text))
        return True

    def read_due(self, tag):
        self.end_text = self.reader.content(self.end_text)
        self.add(self.names.number(tag.id), file_time(self.end_text))
        return True

    def read_completed(self, tag):
        for key, value in COMPLETED:
            self.add(self.names.number(key), value)
        return self.read_due(tag)
