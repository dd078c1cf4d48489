"""Sticky notes."""

from .message import Message


class Note(Message):
    message_class = "IPM.StickyNote"
    expected_count = 7
    table = {
        "OPFNoteCopyCategoryList": 1,
        "OPFNoteCopyCreationDate": 0x30070040,
        "OPFNoteCopyModDate": 0x30080040,
        "OPFNoteCopyNonHTMLText": 0x1000001F,
        "OPFNoteCopyText": 0x10130102,
        "OPFNoteCopyTitle": 0x0037001F,
        "note": 0,
    }

    def __init__(self, reader, archive=None):
        super().__init__(reader, archive)
        self.handlers = {1: self.read_categories}

    def add_defaults(self):
        for key, value in (
            (0x8B000003, 3),
            (0x8B030003, 166),
            (0x8B020003, 200),
            (0x8B040003, 80),
            (0x8B050003, 80),
        ):
            self.add(self.names.number(key), value)
