"""Tasks."""

from .appointment import RecurringMessage
from .texts import file_time

COMPLETE = ((0x811C000B, 1), (0x81010003, 2), (0x81020005, 0x3FF0000000000000))


class Task(RecurringMessage):
    message_class = "IPM.Task"
    expected_count = 11
    recurrence_key = 0x81160102
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
            0x81040040: self.read_start,
            0x81050040: self.read_due,
            0x810F0040: self.read_completed,
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
        for key, value in COMPLETE:
            self.add(self.names.number(key), value)
        return self.read_due(tag)
