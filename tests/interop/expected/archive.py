"""The items of an archive, and the messages that they give."""

import unicodedata
import zipfile

from .appointment import Appointment
from .contact import Contact
from .group import Group
from .mail import Mail
from .message import Failure
from .note import Note
from .reader import Reader, events_of
from .task import Task

KINDS = {
    "appointments": ("appointment", Appointment),
    "contacts": ("contact", Contact),
    "emails": ("email", Mail),
    "groups": ("group", Group),
    "notes": ("note", Note),
    "tasks": ("task", Task),
}
LONGEST_NAME = 511  # bytes of an entry's name; a longer one names nothing


def composed(name):
    return unicodedata.normalize("NFC", name)


class Item:
    """One item: where it stands, and what it must give."""

    def __init__(self, archive, entry, number, events, position):
        self.archive = archive
        self.entry = entry
        self.number = number
        self.kind, self.writer = KINDS[events[0].name]
        self.events = events
        self.position = position

    def streams(self):
        """Path to bytes, or None when the item gives no message."""
        try:
            return self.writer(Reader(self.events, self.position), self.archive).write()
        except Failure:
            return None

    def source(self):
        """The item's part of the document, for people to read."""
        root = self.events[self.position].name
        behind = self.position + 1
        while behind < len(self.events) and self.events[behind].name != root:
            behind += 1
        start = self.events[self.position].offset
        end = self.events[behind].offset if behind < len(self.events) else None
        return self.archive.document(self.entry)[start:end].decode("utf-8", "replace")


class Archive:
    """A ZIP archive as the writers see it."""

    def __init__(self, path):
        self.path = path
        self.contents = zipfile.ZipFile(path)
        self.rows = self.contents.infolist()

    def __enter__(self):
        return self

    def __exit__(self, *_):
        self.contents.close()

    def content_of(self, name):
        """The first file of that name, or None: as written, then as a path, then in NFC."""
        if len(name.encode("utf-8")) > LONGEST_NAME:
            return None
        path = name.replace("\\", "/")
        for start in "/", "./":
            if path.startswith(start):
                path = path[len(start) :]
                break
        for wanted, form in (name, str), (path, str), (composed(path), composed):
            for row in self.rows:
                if form(row.filename) == wanted and not row.is_dir():
                    return self.contents.read(row)
        return None

    def document(self, entry):
        return self.contents.read(self.rows[entry])

    def items(self):
        """Every item in the order of the listing."""
        for entry, row in enumerate(self.rows):
            name = row.filename.encode("utf-8")
            if len(name) >= 5 and name.find(b".xml") == len(name) - 4:
                yield from self.items_of(entry)

    def items_of(self, entry):
        """An item lies between two tags of its kind's name, whichever way they face."""
        events = events_of(self.document(entry))
        if not events or events[0].name not in KINDS:
            return
        root = KINDS[events[0].name][0]
        position, number = 1, 0
        while position < len(events):
            first = events[position]
            if first.closing or first.name != root:
                return
            number += 1
            yield Item(self, entry, number, events, position)
            position += 1
            while position < len(events) and events[position].name != root:
                position += 1
            position += 1
