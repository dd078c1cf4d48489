"""Mails, with their people and attachments."""

from .message import Message, SubStorage, units, value_stream
from .reader import Tag
from .texts import to_boolean, to_long

READ, UNSENT, HAS_ATTACHMENTS = 0x01, 0x08, 0x10
ADDRESS, NAME = "OPFContactEmailAddressAddress", "OPFContactEmailAddressName"
COLON = units(":")


class Mail(Message):
    message_class = "IPM.Note"
    expected_count = 22
    table = {
        "OPFMessageCopyAttachmentList": 5,
        "OPFMessageCopyBCCAddresses": 4,
        "OPFMessageCopyBody": 0x1000001F,
        "OPFMessageCopyCCAddresses": 3,
        "OPFMessageCopyCategoryList": 8,
        "OPFMessageCopyFromAddresses": 1,
        "OPFMessageCopyGetFlagStatus": 0x10900003,
        "OPFMessageCopyHTMLBody": 0x10130102,
        "OPFMessageCopyInReplyTo": 0x1042001F,
        "OPFMessageCopyMessageID": 0x1035001F,
        "OPFMessageCopyModDate": 0x30080040,
        "OPFMessageCopyReceivedTime": 0x002A0040,
        "OPFMessageCopyReferences": 0x1039001F,
        "OPFMessageCopySentTime": 0x00390040,
        "OPFMessageCopySubject": 0x0037001F,
        "OPFMessageCopyThreadTopic": 0x0070001F,
        "OPFMessageCopyToAddresses": 2,
        "OPFMessageGetHasRichText": 0x0E1F000B,
        "OPFMessageGetIsRead": 7,
        "OPFMessageGetPriority": 0x00260003,
        "OPFMessageGetWasSent": 6,
        "email": 0,
    }
    groups = {2: (1, 0x0E04001F), 3: (2, 0x0E03001F), 4: (3, 0x0E02001F)}

    def __init__(self, reader, archive=None):
        super().__init__(reader, archive)
        self.flags = 0
        self.display_lists = {1: "", 2: "", 3: ""}
        self.handlers = {
            0x0037001F: self.read_subject,
            8: self.read_categories,
            0x00260003: self.read_priority,
            0x10130102: self.read_html,
            0x30080040: self.read_modification_time,
            6: self.read_was_sent,
            7: self.read_is_read,
            5: self.read_attachments,
            2: self.read_group,
            3: self.read_group,
            4: self.read_group,
            1: self.read_sender,
        }

    def finish(self):
        if self.attachment_count:
            self.flags |= HAS_ATTACHMENTS
        self.add(0x0E070003, self.flags)

    def read_subject(self, _):
        subject = units(self.reader.content())
        if not subject:
            return True
        prefix = subject[:6] if subject[4:6] == COLON else b""
        self.add_string(0x0037001F, subject)
        self.add_string(0x003D001F, prefix)
        self.add_string(0x0E1D001F, subject[len(prefix) :])
        return True

    def read_html(self, _):
        text = units(self.reader.content())
        self.streams[value_stream(0x10130102)] = b"\xFF\xFE" + text
        self.add(0x10130102, len(text) + 2)
        return True

    def read_modification_time(self, _):
        value = self.read_time()
        self.add(0x30080040, value)
        self.add(0x30070040, value)
        return True

    def read_was_sent(self, _):
        if not to_boolean(self.reader.content()):
            self.flags |= UNSENT
        return True

    def read_is_read(self, _):
        if to_boolean(self.reader.content()):
            self.flags |= READ
        return True

    def read_priority(self, _):
        self.add(0x00170003, {2: 2, 4: 0}.get(to_long(self.reader.content("3")), 1))
        return True

    def read_sender(self, _):
        tag = Tag()
        if not self.reader.next_tag(tag):
            return False
        for attribute, key in (ADDRESS, 0x0065001F), (NAME, 0x0042001F):
            value = tag.value(attribute)
            if value is not None:
                self.add_string(key, units(value))
        return True

    def read_group(self, group):
        kind, display = self.groups[group.id]
        tag = Tag()
        while self.reader.next_tag(tag) and tag.id != group.id:
            if not tag.closing:
                self.add_address(kind, tag)
        self.add_display_list(kind, display)
        return True

    def add_address(self, kind, tag):
        recipient = self.add_recipient()
        recipient.add_number(0x0C15, kind)
        address = tag.value(ADDRESS)
        if address:
            recipient.add_string(0x3003, units(address))
        shown = tag.value(NAME) or address
        if shown:
            recipient.add_string(0x3001, units(shown))
            self.display_lists[kind] += shown + "; "

    def add_display_list(self, kind, display):
        """The one string whose terminator is written, and whose size counts it twice."""
        shown = self.display_lists[kind]
        shown = shown[: max(0, shown.rfind(";"))]
        self.display_lists[kind] = shown
        data = units(shown)
        self.streams[value_stream(display)] = data + b"\0\0"
        self.add(display, len(data) + 4)

    def read_attachments(self, group):
        tag = Tag()
        while self.reader.next_tag(tag) and tag.id != group.id:
            if not tag.closing:
                self.add_attachment(tag)
        return True

    def add_attachment(self, tag):
        attachment = SubStorage(self.streams, "__attach_version1.0_#", self.attachment_count)
        self.attachment_count += 1
        url = tag.value("OPFAttachmentURL")
        if url is None:
            return
        data = self.archive.content_of(url)
        if data is not None:
            attachment.add_binary(0x3701, data)
            attachment.add_number(0x3705, 1)
        attachment.add_number(0x0E21, self.attachment_count)
        for which, key in ("ID", 0x3712), ("Type", 0x370E):
            value = tag.value("OPFAttachmentContent" + which)
            if value is not None:
                attachment.add_string(key, units(value))
        self.add_file_name(attachment, tag.value("OPFAttachmentName"))
        for key, value in (0x0FFE, 7), (0x0FF4, 2), (0x0FF7, 0):
            attachment.add_number(key, value)

    @staticmethod
    def add_file_name(attachment, name):
        if name is None:
            return
        attachment.add_string(0x3704, units(name))
        attachment.add_string(0x3001, units(name))
        if "." in name:
            attachment.add_string(0x3703, units(name[: name.rindex(".")]))
