"""Documents as the module reads them: numbered tags, with text only after opening tags."""

from xml.parsers import expat

ROOTS = {"appointments": 0, "contacts": 1, "emails": 2, "notes": 3, "tasks": 4, "groups": 5}
UNKNOWN = 0xFFFFFFFF
XML_SPACE = " \t\r\n"


class Event:
    """An opening or closing tag; an opening tag has the text after it."""

    __slots__ = ("name", "attributes", "closing", "text", "offset")

    def __init__(self, name, attributes, closing, offset):
        self.name = name
        self.attributes = attributes
        self.closing = closing
        self.text = ""
        self.offset = offset  # in the document, in bytes


class EventList:
    """Collects the events of a document, up to its end or its first fault."""

    def __init__(self):
        self.events = []
        self.pending = []
        self.parser = expat.ParserCreate()
        self.parser.ordered_attributes = True
        self.parser.StartElementHandler = self.start
        self.parser.EndElementHandler = self.end
        self.parser.CharacterDataHandler = self.pending.append

    def add(self, name, attributes, closing):
        self.finish_text(opens=not closing)
        self.events.append(Event(name, attributes, closing, self.parser.CurrentByteIndex))

    def finish_text(self, opens):
        if self.events and not self.events[-1].closing:
            text = "".join(self.pending)
            if not opens or text.strip(XML_SPACE):
                self.events[-1].text = text
        self.pending.clear()

    def start(self, name, attributes):
        self.add(name, list(zip(attributes[::2], attributes[1::2])), closing=False)

    def end(self, name):
        self.add(name, [], closing=True)

    def read(self, document):
        try:
            self.parser.Parse(document, True)
        except expat.ExpatError:
            self.finish_text(opens=False)
        return self.events


def events_of(document):
    return EventList().read(document)


class Tag:
    """A tag that a loop reads into. A failed read clears its attributes and nothing else."""

    def __init__(self):
        self.id = 0
        self.closing = False
        self.attributes = []

    def value(self, name):
        """Returns the value of the first attribute of that name, or None."""
        return next((value for own, value in self.attributes if own == name), None)


class Reader:
    """Walks through the events of a document, beginning at one of its items."""

    def __init__(self, events, position):
        self.events = events
        self.position = position
        self.numbers = dict(ROOTS)
        self.unread = ""

    def add_tags(self, table):
        self.numbers.update(table)

    def next_tag(self, tag):
        """Reads the next tag. Returns False at the end of the document."""
        tag.attributes = []
        self.unread = ""
        if self.position >= len(self.events):
            return False
        event = self.events[self.position]
        self.position += 1
        tag.id = self.numbers.get(event.name, UNKNOWN)
        tag.closing = event.closing
        tag.attributes = event.attributes
        self.unread = event.text
        return True

    def content(self, earlier=""):
        """Returns the text after the opening tag just read; `earlier` if it is empty or was read
        already."""
        text = self.unread or earlier
        self.unread = ""
        return text

    def skip_element(self):
        """Skips the element whose opening tag was just read."""
        depth = 1
        while depth and self.position < len(self.events):
            depth += -1 if self.events[self.position].closing else 1
            self.position += 1
        self.unread = ""
