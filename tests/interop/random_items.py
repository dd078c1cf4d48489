"""Makes archives of random items. The same seed makes the same archive.

Elements appear in any order, repeated, missing, empty, with unknown ones between and inside them;
texts have entities, CDATA sections, comments, characters of every size and lengths around the sizes
of buffers; numbers, dates and recurrences are valid, odd or hostile."""

import random
import re
import unicodedata
import warnings
import zipfile

from expected.archive import KINDS

BUFFER = 1024  # units that are read at a time
LENGTHS = [BUFFER - 1, BUFFER, BUFFER + 1, 2 * BUFFER - 1, 2 * BUFFER, 2 * BUFFER + 1, 3000]
MAX_RECIPIENTS, MAX_ATTACHMENTS = 2000, 50
MAX_ATTACHMENT, MAX_USUAL_ATTACHMENT = 300_000, 6000  # bytes

WORDS = (
    "tide table harbour RE: Fwd: a:b;c ; AW: 12:30 naïve Größe e\u0301te\u0301 日本語 "
    "сеть \U0001F30A \U0001F468\u200D\U0001F469 \U00020BB7 <b>&amp;</b> ]]> \"quoted\" it's "
    "\ufeff \ufffd \u2028 \ue000 . .. .a a. x"
).split(" ")
WHITE_SPACE = [" ", "\n", "\t", "\r", "  \n "]
NUMBERS = [
    "0", "1", "2", "3", "4", "5", "900", "-1", "-60", "90", "1E0", "0E0", "2E0", "2.7E1",
    "9.6904E4", " 7", "\n3\t", "+3", "- 3", "--1", "3.999", "-0.9", ".5E1", "5.E2", "1E", "2e+",
    "4E-1", "40E-1", "1e400", "-1e400", "0E99999", "0.0000000000000000000001E24",
    "99999999999999999999E-18", "2147483647", "2147483648", "-2147483648", "-2147483649",
    "4294967295", "4294967296", "4294967297", "4294967298", "9223372036854775807",
    "9223372036854775808", "-9223372036854775808", "-9223372036854775809", "18446744073709551617",
    "12abc", "0x10", "soon", "-", "+", "E5", "007", "1,5", "2982616", "8925478", "4473924266",
    "\u0663",
]
TRUTHS = [
    "1E0", "0E0", "1", "0", "true", "false", "TRUE", "Yes", "yes", "no", "truth", "yes!", "true1",
    " true", "\ntrue", "0.9", "-1", "2.5", "y", "1x", "\u00a0true", "-0", "0.5E1", "trueyes",
]
ODD_DATES = [
    "2018-06-21", "2018-06-21Z", "20180621", "20180621Z", "20180621T003908", "20180621T003908Z",
    "20180621T003908.5+05:30", "20180621 003908", "2018-06-21T00:39", "2018-06-21 00:39:08",
    "2018-06-21T00:39:08.123456", "2018-06-21T00:39:08,7Z", "2018-06-21T00:39:08.",
    "2018-06-21T24:00:00", "2018-12-31T24:00Z", "2018-06-21T24:00:01", "2016-12-31T23:59:60Z",
    "2018-06-21T00:39:61", "2018-02-29", "2000-02-29T12:00:00", "1900-02-29",
    "1900-03-01T00:00:00", "2018-13-01", "2018-00-10", "2018-04-31", "0001-01-01T00:00:00",
    "0001-01-01T00:00:00+23:59", "9999-12-31T23:59:59.999-23:59", "0000-01-01",
    "1601-01-01T00:00:00", "1601-01-01T00:00:01", "1600-12-31T23:59:59.999",
    "1969-12-31T23:59:59.999", "1970-01-01T00:00:00Z", "2018-06-21T00:39:08+0530",
    "2018-06-21T00:39:08-08", "2018-06-21T00:39:08+24:00", "2018-06-21T00:39:08+05:60",
    "2018-06-21T00:39:08z", "2018-06-21t00:39:08", " 2018-06-21T00:39:08\n",
    "2018-06-21T00:39:08 Z", "2018-6-21", "tomorrow", "2018-06-21T0:39:08", "2018-06-21T003908",
    "20180621T00:39:08", "-2018-06-21", "2018-06-21T00:39:08Zulu", "2018-06-21+02:00",
    "2018-06-21T", "20180621T0039", "2018-12-32", "2018-06-21T25:00:00", "2018-06-21T12:60:00",
    "\u0662018-06-21",
]
ZONE_MINUTES = {
    "(UTC-05:00) Eastern Time": -300,
    "(UTC+05:30) Chennai": 330,
    "(UTC+01:00) Amsterdam": 60,
    "(UTC) London": 0,
    "(UTC-03:30) Newfoundland": -210,
    "(UTC+14:00) Kiritimati": 840,
    "(UTC+12:45) Chatham": 765,
    "(UTC-12:00)": -720,
}
ODD_ZONES = [
    "+5", "-7", "a: -05:00", "-05:00 + 1", "+", "-", ":", "+1E3:1E1", "-99999999999:99999999999",
    "+35791395:0", "+0:60", "Pacific Time", "12-3", "+ 2:3", "+-2:30", "(GMT-8:00)", "+1092:16",
    "-2147483648:0", "\u221205:00", "+0:-30", "+1:59", "+65536:00", "-131072:00",
]
PATTERNS = [
    "OPFRecurrencePattern" + name
    for name in (
        "Daily",
        "Weekly",
        "RelativeMonthly",
        "AbsoluteMonthly",
        "RelativeYearly",
        "AbsoluteYearly",
    )
]
DAYS = [
    "allDays", "friday", "monday", "saturday", "sunday", "thursday", "tuesday", "wednesday",
    "weekdays", "weekenddays",
]
UNKNOWN_NAMES = [
    "OPFMessageCopySource", "OPFMessageGetHasHTML", "opfmessagecopysubject", "OPFNoteCopyTITLE",
    "x:thing", "ExchangeServerLastModifiedTime", "OPFCalendarEventCopyUUID", "b", "Übung",
]
NAMES_OF_NOTHING = ["", "Local/", "Local", "nowhere", "x" * 600, "../etc/passwd"]
BETWEEN_PIECES = ["<!-- a -->", "<?note b?>", "<![CDATA[]]>", "<!---->"]
BETWEEN_MEMBERS = ["\n", " text ", "<!-- c -->", "<other>x</other>", "<i/>"]
DECLARATIONS = """<!ENTITY who "Ann &#38;amp; Bo">
<!ENTITY more "<other>&who;</other><monday>1</monday>">
<!ATTLIST emailAddress OPFContactEmailAddressName CDATA "Default">"""
ENCODINGS = ["utf-8"] * 8 + ["utf-16", "iso-8859-1", "us-ascii"]


class ItemMaker:
    """Makes the XML of items and the entries that the attachments of mails name."""

    def __init__(self, seed):
        self.random = random.Random(seed)
        self.entries = []  # name, bytes, method
        self.zone = self.random.choice(list(ZONE_MINUTES))  # of this item
        self.may_be_big = {"recipients", "attachments"}  # at most one of each per archive
        self.makers = [
            ("CategoryList", self.categories),
            ("AttachmentList", self.attachments),
            ("(From|To|CC|BCC)Addresses", self.mail_addresses),
            ("(EmailAddress|IMAddress|EmailAddressList[12])$", self.contact_addresses),
            ("CopyChildren", self.children),
            ("MemberList", self.members),
            ("AttendeeList", self.attendees),
            ("CopyRecurrence", self.recurrence),
            ("TimeZone", lambda: self.content(self.zone_text())),
            ("(Date|Time|Birthday|Anniversary)$", lambda: self.content(self.date())),
            ("(Get|Is)(Is|Has|Was)", lambda: self.content(self.one_of(TRUTHS, self.number))),
            ("(Status|Priority|Delta|Private|Flag)", lambda: self.content(self.number())),
            ("", lambda: self.content(self.text())),
        ]

    def chance(self, probability):
        return self.random.random() < probability

    def one_of(self, texts, other):
        """Usually returns one of the texts."""
        return other() if self.chance(0.1) else self.random.choice(texts)

    # Texts.

    def text(self):
        sort = self.random.random()
        if sort < 0.08:
            return ""
        if sort < 0.16:
            return self.random.choice(WHITE_SPACE)
        words = self.random.choices(WORDS, k=self.random.randint(1, 6))
        text = self.random.choice([" ", "", "\n"]).join(words)
        if sort < 0.9:
            return text
        length = self.random.choice(LENGTHS)
        filler = self.random.choice(["x", "ä", "語", "\U0001F30A"])
        fill = filler * (length // len(filler.encode("utf-16-le")) * 2)
        return ("y" * self.random.randint(0, 1) + fill + text)[:length]

    def short_text(self):
        return self.text()[:60]

    def number(self):
        sort = self.random.random()
        if sort < 0.5:
            return self.random.choice(NUMBERS)
        if sort < 0.9:
            return str(self.random.randint(-10, 60))
        return "%.3fE%d" % (self.random.uniform(-10, 10), self.random.randint(-3, 12))

    def date(self):
        sort = self.random.random()
        if sort < 0.08:
            return ""
        if sort < 0.4:
            return self.random.choice(ODD_DATES)
        pick = self.random.randint
        hour = self.random.choice([0, 0, 4, 5, 7, 22, 23, pick(0, 23)])
        minute = self.random.choice([0, 0, 0, 15, 29, 30, 45, pick(0, 59)])
        second = self.random.choice([0, 0, 59, pick(0, 59)])
        date = "%04d-%02d-%02d" % (pick(1980, 2040), pick(1, 12), pick(1, 28))
        fraction = self.random.choice([998, 999, pick(0, 999)])
        ending = self.random.choice(["", "", "Z", ".%03d" % fraction, "+05:30", "-0800"])
        return "%sT%02d:%02d:%02d%s" % (date, hour, minute, second, ending)

    # Markup.

    def escaped(self, text, quote=""):
        special = {"&": "&amp;", "<": "&lt;", ">": "&gt;", '"': "&quot;" if quote else '"'}
        out = []
        for character in text:
            code = ord(character)
            if character in "\r\n\t" and self.chance(0.6) or self.chance(0.01):
                out.append(self.random.choice(["&#%d;", "&#x%X;"]) % code)
            else:
                out.append(special.get(character, character))
        return "".join(out)

    def content(self, text):
        """Returns a text as the content of an element: in pieces, each written in a random way."""
        cuts = sorted(self.random.randint(0, len(text)) for _ in range(self.random.randint(0, 3)))
        pieces = [text[start:end] for start, end in zip([0] + cuts, cuts + [len(text)])]
        out = []
        for piece in pieces:
            if "]]>" not in piece and self.chance(0.2):
                out.append("<![CDATA[%s]]>" % piece)
            else:
                out.append(self.escaped(piece))
            if self.chance(0.05):
                out.append(self.random.choice(BETWEEN_PIECES))
        if self.chance(0.03):
            out.insert(self.random.randint(0, len(out)), "<b>bold</b>")
        return "".join(out)

    def attributes(self, pairs):
        """Returns some of the pairs as attributes, in random order, among others."""
        pairs = [pair for pair in pairs if self.chance(0.85)]
        for name, value in ("OPFOther", "1"), ("xml:space", "preserve"):
            if self.chance(0.3):
                pairs.append((name, value))
        self.random.shuffle(pairs)
        return "".join(' %s="%s"' % (name, self.escaped(value, quote='"')) for name, value in pairs)

    def element(self, name, inner="", pairs=()):
        opening = name + self.attributes(list(pairs))
        if not inner and self.chance(0.5):
            return "<%s/>" % opening
        return "<%s>%s</%s>" % (opening, inner, name)

    def group(self, make_one, count):
        """Returns members with white space, comments and other elements between them."""
        out = []
        for _ in range(count):
            out.append(make_one())
            if self.chance(0.1):
                out.append(self.random.choice(BETWEEN_MEMBERS))
        return "".join(out)

    def count(self, limit=6):
        return self.random.choice([0, 1, 1, 2, 3, self.random.randint(0, limit)])

    # The contents of elements.

    def categories(self):
        def category():
            names = ["OPFCategoryCopyName"] * 9 + ["opfCategoryCopyName"]
            pairs = [(self.random.choice(names), self.short_text())]
            pairs.append(("OPFCategoryCopyBackgroundColor", "r:0.63 g:0.26 b:0.80"))
            return self.element("category", "", pairs)

        return self.group(category, self.count())

    def address(self, name):
        nested = "<nested OPFContactEmailAddressName='inner'/>"
        return lambda: self.element(
            name,
            self.random.choice(["", "", "", "text", nested]),
            [
                ("OPFContactEmailAddressAddress", self.short_text()),
                ("OPFContactEmailAddressName", self.short_text()),
                ("OPFContactEmailAddressType", self.one_of(["0", "1", "3", "3E0"], self.number)),
                ("opfcontactemailaddressname", "other"),
            ],
        )

    def mail_addresses(self):
        count = self.count()
        if "recipients" in self.may_be_big and self.chance(0.02):
            self.may_be_big.remove("recipients")
            count = self.random.randint(MAX_RECIPIENTS // 2, MAX_RECIPIENTS)
        return self.group(self.address("emailAddress"), count)

    def contact_addresses(self):
        count = self.random.choice([0, 1, 1, 1, 2, 3])
        return self.group(self.address("contactEmailAddress"), count)

    def members(self):
        return self.group(self.address("groupMember"), self.count(40))

    def children(self):
        def child():
            return self.element(self.random.choice(["string", "child"]), self.content(self.text()))

        return self.group(child, self.count())

    def zone_text(self):
        if self.chance(0.6):
            return self.zone
        return self.one_of(ODD_ZONES, self.text)

    def attendees(self):
        def attendee():
            pairs = [
                ("OPFCalendarAttendeeAddress", self.short_text()),
                ("OPFCalendarAttendeeName", self.short_text()),
                ("OPFCalendarAttendeeType", self.number()),
            ]
            if self.chance(0.2):
                pairs.append(("OPFContactEmailAddressName", self.short_text()))
            return self.element("appointmentAttendee", "", pairs)

        return self.group(attendee, self.count())

    def attachments(self):
        count = self.random.choice([0, 1, 1, 2])
        if "attachments" in self.may_be_big and self.chance(0.1):
            self.may_be_big.remove("attachments")
            count = self.random.randint(MAX_ATTACHMENTS // 2, MAX_ATTACHMENTS)
        return self.group(self.attachment, count)

    def attachment(self):
        names = ["tide.txt", "a.b.c", ".hidden", "no dot", "", "dot.", "Größe.日本.\U0001F30A"]
        pairs = [
            ("OPFAttachmentURL", self.attachment_url()),
            ("OPFAttachmentContentID", self.short_text()),
            ("OPFAttachmentContentType", "text/plain"),
            ("OPFAttachmentName", self.one_of(names, self.short_text)),
            ("OPFAttachmentContentFileSize", "12"),
        ]
        return self.element("messageAttachment", "", pairs)

    def attachment_url(self):
        """Returns the name of an entry, written in a random way, or one that no entry has."""
        message = self.random.choice(["2A@x.org", "Gro\u0308ße é", "日本 \U0001F30A", "a & b"])
        name = "Local/com.microsoft.__Attachments/%s_%04d" % (message, len(self.entries))
        sort = self.random.random()
        if sort < 0.1:
            return self.random.choice([name, *NAMES_OF_NOTHING])
        limit = MAX_ATTACHMENT if self.chance(0.05) else MAX_USUAL_ATTACHMENT
        size = self.random.choice([0, 1, 512, 4095, 4096, self.random.randint(0, limit)])
        method = self.random.choice([zipfile.ZIP_STORED, zipfile.ZIP_DEFLATED])
        self.entries.append((name, self.random.randbytes(size), method))
        written = {
            0.15: name.replace("/", "\\"),
            0.2: "/" + name,
            0.25: "./" + name,
            0.35: unicodedata.normalize("NFC", name),
            0.45: unicodedata.normalize("NFD", name),
            1: name,
        }
        return next(written[bound] for bound in written if sort < bound)

    def odd_pattern(self):
        return self.random.choice([self.text, lambda: self.random.choice(PATTERNS).upper()])()

    def first_day(self):
        """Usually returns midnight in the item's zone, with or without daylight saving time, or a
        time just before."""
        if self.chance(0.3):
            return self.date()
        late = self.random.choice([0, 0, 0, 60, -60, 1, 30, 720])
        hour, minute = divmod((late - ZONE_MINUTES[self.zone]) % 1440, 60)
        minute -= self.random.choice([0, 0, 0, 1]) if minute else 0
        pick = self.random.randint
        second = self.random.choice(["00", "00", "00", "59.999", "59.998", "01"])
        date = "%d-%02d-%02d" % (pick(1970, 2040), pick(1, 12), pick(1, 28))
        return "%sT%02d:%02d:%s" % (date, hour, minute, second)

    def recurrence(self):
        """Usually returns a valid one, sometimes with elements missing, repeated or out of order."""

        def leaf(name, text):
            return self.element("OPFRecurrence" + name, self.content(text))

        def small(limit):
            return self.random.choice([str(self.random.randint(1, limit + 1)), self.number()])

        truth = self.random.choice(["0", "1", "1E0", "0E0"])
        days = [
            self.element(day, self.random.choice(["0", "0", "1", "1E0", "true", ""]))
            for day in DAYS
            if self.chance(0.9)
        ]
        pattern = [
            leaf("PatternType", self.one_of(PATTERNS, self.odd_pattern)),
            leaf("PatternInterval", small(5)),
            leaf("PatternDayOfMonth", small(31)),
            leaf("PatternMonth", small(12)),
            leaf("PatternWeek", small(5)),
            self.element("OPFRecurrencePatternDaysOfWeek", "".join(days)),
        ]
        parts = [
            leaf("CopyStartDate", self.first_day()),
            leaf("HasEndDate", self.one_of(["0", "1", truth], self.number)),
            leaf("CopyEndDate", self.date()),
            leaf("GetOccurenceCount", self.number()),
            leaf("IsNoEnd", self.one_of(["0", "1", truth], self.number)),
            leaf("IsNumbered", truth),
        ]
        if self.chance(0.3):
            self.random.shuffle(parts)
        if self.chance(0.3):
            pattern = [part for part in pattern if self.chance(0.8)]
            parts = [part for part in parts if self.chance(0.9)]
        whole_pattern = self.element("OPFRecurrencePattern", "".join(pattern))
        parts.insert(self.random.randint(0, len(parts)), whole_pattern)
        if self.chance(0.1):
            parts.append(self.random.choice(parts))
        return self.group(lambda: parts.pop(0), len(parts))

    # Items and documents.

    def inner(self, name):
        return next(make() for pattern, make in self.makers if re.search(pattern, name))

    def known(self, name):
        return self.element(name, self.inner(name))

    def unknown(self, names):
        """Returns an element that no table has, or a root, sometimes with known ones inside."""
        name = self.random.choice(UNKNOWN_NAMES)
        if self.chance(0.03):
            name = self.random.choice(sorted(KINDS))
        inner = self.content(self.text())
        if self.chance(0.4):
            inner += self.known(self.random.choice(names))
            inner += self.random.choice(["", "tail", "<b/>"])
        return self.element(name, inner)

    def elements(self, names):
        """Returns the names of an item's elements, in order."""
        shape = self.random.random()
        if shape < 0.05:
            return []
        if shape < 0.45:
            return [name for name in names if self.chance(0.4)]
        chosen = [name for name in names if self.chance(0.9)]
        if shape < 0.85:
            for name in names:
                if self.chance(0.1):
                    chosen.append(name)
            self.random.shuffle(chosen)
        if shape > 0.93:
            chosen = self.random.choices(names, k=self.random.randint(1, 2 * len(names)))
        return chosen

    def item(self, root, nests=False):
        """Returns an item of the document's root. With `nests` it contains an element of its own
        name, which may end it."""
        self.zone = self.random.choice(list(ZONE_MINUTES))
        name, writer = KINDS[root]
        names = sorted(element for element in writer.table if element != name)
        out = []
        for element in self.elements(names):
            out.append(self.known(element))
            if self.chance(0.08):
                out.append(self.unknown(names))
            if self.chance(0.05):
                out.append(self.random.choice(["\n  ", "<!-- between -->", "stray text", "<?pi?>"]))
        if nests:
            out.insert(self.random.randint(0, len(out)), "<%s>x</%s>" % (name, name))
        return self.element(name, "".join(out))

    def document(self, root, count, nests=False):
        """Returns the bytes of a document in one of the encodings."""
        between = self.random.choice(["", "\n", "\n  <!-- next -->"])
        items = between.join(self.item(root, nests) for _ in range(count))
        encoding = self.random.choice(ENCODINGS)
        head = ""
        if encoding != "utf-8" or self.chance(0.3):
            head = '<?xml version="1.0" encoding="%s"?>\n' % encoding
        if self.chance(0.1):
            head += "<!DOCTYPE %s [%s]>\n" % (root, DECLARATIONS)
            items = items.replace("harbour", "&who;").replace("<other>x</other>", "&more;")
        text = '%s<%s elementCount="%d">%s</%s>\n' % (head, root, count, items, root)
        if encoding in ("utf-8", "utf-16"):
            return text.encode(encoding)
        return text.replace("<Übung", "<Ubung").replace("</Übung", "</Ubung").encode(
            encoding, "xmlcharrefreplace"
        )

    def broken_document(self, root):
        """Returns a truncated document."""
        whole = self.document(root, 1)
        return whole[: self.random.randint(len(whole) // 4, len(whole) - 1)]


def make_archive(path, seed, kinds, items):
    """Writes an archive with `items` items of each kind in one document and some in others."""
    maker = ItemMaker(seed)
    documents = [("Categories.xml", b"<categories><category/></categories>")]
    for root, (kind, _) in KINDS.items():
        if kind not in kinds:
            continue
        documents.append(("Local/%s.xml" % root, maker.document(root, items)))
        for name in "Local/%s.xml.xml", "Local/%s.XML":  # neither is a document
            documents.append((name % root, maker.document(root, 1)))
        for number in range(items // 6):
            alone = maker.document(root, maker.random.randint(0, 1), nests=maker.chance(0.3))
            documents.append(("Local/%s %d.xml" % (root, number), alone))
            broken = maker.broken_document(root)
            documents.append(("Local/%s/cut %d.xml" % (root, number), broken))
    entries = [(name, data, zipfile.ZIP_DEFLATED) for name, data in documents] + maker.entries
    maker.random.shuffle(entries)
    with zipfile.ZipFile(path, "w") as archive, warnings.catch_warnings():
        warnings.simplefilter("ignore")  # names may repeat
        archive.mkdir("Local")
        for name, data, method in entries:
            archive.writestr(zipfile.ZipInfo(name), data, method)
            if maker.chance(0.02):
                archive.writestr(zipfile.ZipInfo(name), b"a later row of the same name", method)
