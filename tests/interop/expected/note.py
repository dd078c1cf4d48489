"""Sticky notes."""

from . import mapi
from .message import Message

YELLOW = 3
WIDTH, HEIGHT, LEFT, TOP = 200, 166, 80, 80  # pixels


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
            (mapi.PidLidNoteColor, YELLOW),
            (mapi.PidLidNoteHeight, HEIGHT),
            (mapi.PidLidNoteWidth, WIDTH),
            (mapi.PidLidNoteX, LEFT),
            (mapi.PidLidNoteY, TOP),
        ):
            self.add(self.names.number(key), value)
