"""The items of an archive and their messages."""

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
MAX_NAME = 511  # bytes of an entry's name; longer ones are not found


def composed(name):
    return unicodedata.normalize("NFC", name)


class Item:
    """An item: its place in the archive and its message."""

    def __init__(self, archive, entry, number, events, position):
        self.archive = archive
        self.entry = entry
        self.number = number
        self.kind, self.writer = KINDS[events[0].name]
        self.events = events
        self.position = position

    def streams(self):
        """Returns the streams of the message, path to bytes; None if it must be refused."""
        try:
            return self.writer(Reader(self.events, self.position), self.archive).write()
        except Failure:
            return None

    def source(self):
        """Returns the item's part of the document, for failure messages."""
        root = self.events[self.position].name
        last = self.position + 1
        while last < len(self.events) and self.events[last].name != root:
            last += 1
        start = self.events[self.position].offset
        end = self.events[last].offset if last < len(self.events) else None
        return self.archive.document(self.entry)[start:end].decode("utf-8", "replace")


class Archive:
    """A ZIP archive and its items."""

    def __init__(self, path):
        self.path = path
        self.contents = zipfile.ZipFile(path)
        self.rows = self.contents.infolist()

    def __enter__(self):
        return self

    def __exit__(self, *_):
        self.contents.close()

    def content_of(self, name):
        """Returns the contents of the first file of that name, or None: as written, then as a path,
        then in NFC."""
        if len(name.encode("utf-8")) > MAX_NAME:
            return None
        path = name.replace("\\", "/")
        for start in "/", "./":
            if path.startswith(start):
                path = path[len(start) :]
                break
        for spelling, form in (name, str), (path, str), (composed(path), composed):
            for row in self.rows:
                if form(row.filename) == spelling and not row.is_dir():
                    return self.contents.read(row)
        return None

    def document(self, entry):
        return self.contents.read(self.rows[entry])

    def items(self):
        """Yields every item in the order of the list."""
        for entry, row in enumerate(self.rows):
            name = row.filename.encode("utf-8")
            if len(name) >= 5 and name.find(b".xml") == len(name) - 4:
                yield from self.items_of(entry)

    def items_of(self, entry):
        """Yields the items of a document. Each is between two tags with the name of its kind,
        opening or closing."""
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
