"""Documents with one item each."""

from xml.sax.saxutils import escape


def mail(subject="", sender="", sent="", received="", modified=""):
    return ('<emails><email><OPFMessageCopyFromAddresses><emailAddress '
            f'OPFContactEmailAddressAddress="{escape(sender)}"/></OPFMessageCopyFromAddresses>'
            f'<OPFMessageCopyModDate>{modified}</OPFMessageCopyModDate>'
            f'<OPFMessageCopyReceivedTime>{received}</OPFMessageCopyReceivedTime>'
            f'<OPFMessageCopySentTime>{sent}</OPFMessageCopySentTime>'
            f'<OPFMessageCopySubject>{escape(subject)}</OPFMessageCopySubject></email></emails>')


CONTACT = ("<contacts><contact><OPFContactCopyDisplayName>Ann</OPFContactCopyDisplayName></contact>"
           "</contacts>")
GROUP = "<groups><group><OPFGroupCopyDisplayName>Crew</OPFGroupCopyDisplayName></group></groups>"
APPOINTMENT = ("<appointments><appointment>"
               "<OPFCalendarEventCopyOrganizer>Bo@quay</OPFCalendarEventCopyOrganizer>"
               "<OPFCalendarEventCopySummary>Ebb</OPFCalendarEventCopySummary></appointment>"
               "</appointments>")
TASK = "<tasks><task><OPFTaskCopyName>Row</OPFTaskCopyName></task></tasks>"
