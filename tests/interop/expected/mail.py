"""Mails, their recipients and attachments."""

from . import mapi
from .message import READ_ACCESS, READ_ONLY, Message, SubStorage, units, value_stream
from .reader import Tag
from .texts import to_boolean, to_long

# Bits of PidTagMessageFlags.
READ, UNSENT, HAS_ATTACHMENTS = 0x01, 0x08, 0x10
# Values of PidTagRecipientType.
TO, CC, BCC = 1, 2, 3
# Values of PidTagImportance, by the document's number; all others are normal.
LOW, NORMAL, HIGH = 0, 1, 2
IMPORTANCE = {2: HIGH, 4: LOW}
UTF16_MARK = b"\xFF\xFE"
# Properties of an attachment.
ATTACH_BY_VALUE, OBJECT_ATTACHMENT = 1, 7

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
    groups = {
        2: (TO, mapi.PidTagDisplayTo),
        3: (CC, mapi.PidTagDisplayCc),
        4: (BCC, mapi.PidTagDisplayBcc),
    }

    def __init__(self, reader, archive=None):
        super().__init__(reader, archive)
        self.flags = 0
        self.display_lists = {TO: "", CC: "", BCC: ""}
        self.handlers = {
            mapi.PidTagSubject: self.read_subject,
            8: self.read_categories,
            mapi.PidTagPriority: self.read_priority,
            mapi.PidTagHtml: self.read_html,
            mapi.PidTagLastModificationTime: self.read_modification_time,
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
        self.add(mapi.PidTagMessageFlags, self.flags)

    def read_subject(self, _):
        subject = units(self.reader.content())
        if not subject:
            return True
        prefix = subject[:6] if subject[4:6] == COLON else b""
        self.add_string(mapi.PidTagSubject, subject)
        self.add_string(mapi.PidTagSubjectPrefix, prefix)
        self.add_string(mapi.PidTagNormalizedSubject, subject[len(prefix) :])
        return True

    def read_html(self, _):
        data = UTF16_MARK + units(self.reader.content())
        self.streams[value_stream(mapi.PidTagHtml)] = data
        self.add(mapi.PidTagHtml, len(data))
        return True

    def read_modification_time(self, _):
        value = self.read_time()
        self.add(mapi.PidTagLastModificationTime, value)
        self.add(mapi.PidTagCreationTime, value)
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
        importance = IMPORTANCE.get(to_long(self.reader.content("3")), NORMAL)
        self.add(mapi.PidTagImportance, importance)
        return True

    def read_sender(self, _):
        tag = Tag()
        if not self.reader.next_tag(tag):
            return False
        for attribute, key in (
            (ADDRESS, mapi.PidTagSentRepresentingEmailAddress),
            (NAME, mapi.PidTagSentRepresentingName),
        ):
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
        recipient.add_number(mapi.PidTagRecipientType, kind)
        address = tag.value(ADDRESS)
        if address:
            recipient.add_string(mapi.PidTagEmailAddress, units(address))
        shown = tag.value(NAME) or address
        if shown:
            recipient.add_string(mapi.PidTagDisplayName, units(shown))
            self.display_lists[kind] += shown + "; "

    def add_display_list(self, kind, display):
        """Adds the only string that is written with its terminator; its size counts it twice."""
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
            attachment.add_binary(mapi.PidTagAttachDataBinary, data)
            attachment.add_number(mapi.PidTagAttachMethod, ATTACH_BY_VALUE)
        attachment.add_number(mapi.PidTagAttachNumber, self.attachment_count)
        for which, key in ("ID", mapi.PidTagAttachContentId), ("Type", mapi.PidTagAttachMimeTag):
            value = tag.value("OPFAttachmentContent" + which)
            if value is not None:
                attachment.add_string(key, units(value))
        self.add_file_name(attachment, tag.value("OPFAttachmentName"))
        attachment.add_number(mapi.PidTagObjectType, OBJECT_ATTACHMENT)
        attachment.add_number(mapi.PidTagAccess, READ_ACCESS)
        attachment.add_number(mapi.PidTagAccessLevel, READ_ONLY)

    @staticmethod
    def add_file_name(attachment, name):
        if name is None:
            return
        attachment.add_string(mapi.PidTagAttachFilename, units(name))
        attachment.add_string(mapi.PidTagDisplayName, units(name))
        if "." in name:
            extension = units(name[: name.rindex(".")])
            attachment.add_string(mapi.PidTagAttachExtension, extension)
