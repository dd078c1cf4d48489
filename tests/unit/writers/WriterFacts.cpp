#include "tests/unit/writers/WriterFacts.h"

WriterFacts mailFacts() {
    return {
        .kind = &mailKind,
        .table =
            {
                {"OPFMessageCopyAttachmentList", 5},
                {"OPFMessageCopyBCCAddresses", 4},
                {"OPFMessageCopyBody", 0x1000001F},
                {"OPFMessageCopyCCAddresses", 3},
                {"OPFMessageCopyCategoryList", 8},
                {"OPFMessageCopyFromAddresses", 1},
                {"OPFMessageCopyGetFlagStatus", 0x10900003},
                {"OPFMessageCopyHTMLBody", 0x10130102},
                {"OPFMessageCopyInReplyTo", 0x1042001F},
                {"OPFMessageCopyMessageID", 0x1035001F},
                {"OPFMessageCopyModDate", 0x30080040},
                {"OPFMessageCopyReceivedTime", 0x002A0040},
                {"OPFMessageCopyReferences", 0x1039001F},
                {"OPFMessageCopySentTime", 0x00390040},
                {"OPFMessageCopySubject", 0x0037001F},
                {"OPFMessageCopyThreadTopic", 0x0070001F},
                {"OPFMessageCopyToAddresses", 2},
                {"OPFMessageGetHasRichText", 0x0E1F000B},
                {"OPFMessageGetIsRead", 7},
                {"OPFMessageGetPriority", 0x00260003},
                {"OPFMessageGetWasSent", 6},
                {"email", 0},
            },
        .rows = 22,
        .percent = 4,
        .otherTags = {0, 9, 0x1000001F, 0x10900003, 0x002A0040, 0x0E1F000B},
        .string = {"OPFMessageCopyThreadTopic", 0x0070001F},
        .repeated = {"OPFMessageCopyMessageID", "<2@x>", entry(0x1035001F, 12)},
        .unread = {"OPFMessageCopyBody", 0x1000001F},
        .categories = "OPFMessageCopyCategoryList",
        .strings = {{"OPFMessageCopyBody", "OPFMessageCopyInReplyTo", "OPFMessageCopyMessageID",
                     "OPFMessageCopyReferences", "OPFMessageCopyThreadTopic"},
                    {0x1000001F, 0x1042001F, 0x1035001F, 0x1039001F, 0x0070001F}},
        .values = {{"OPFMessageCopyModDate", "OPFMessageCopySentTime",
                    "OPFMessageCopyGetFlagStatus", "OPFMessageGetPriority", "OPFMessageGetIsRead"},
                   {entry(0x30080040, 0), entry(0x30070040, 0), entry(0x00390040, 0),
                    entry(0x10900003, 0), entry(0x00170003, 1)}},
    };
}

WriterFacts appointmentFacts() {
    return {
        .kind = &appointmentKind,
        .table =
            {
                {"OPFCalendarEventCopyAttendeeList", 2},
                {"OPFCalendarEventCopyCategoryList", 1},
                {"OPFCalendarEventCopyDescription", 0x10130102},
                {"OPFCalendarEventCopyDescriptionPlain", 0x1000001F},
                {"OPFCalendarEventCopyEndTime", 0x00610040},
                {"OPFCalendarEventCopyFreeBusyStatus", 0x82050003},
                {"OPFCalendarEventCopyLocation", 0x8208001F},
                {"OPFCalendarEventCopyModDate", 0x30080040},
                {"OPFCalendarEventCopyOrganizer", 3},
                {"OPFCalendarEventCopyRecurrence", 4},
                {"OPFCalendarEventCopyReminderDelta", 0x85010003},
                {"OPFCalendarEventCopyReminderTime", 0x85020040},
                {"OPFCalendarEventCopyStartTime", 0x00600040},
                {"OPFCalendarEventCopySummary", 0x0037001F},
                {"OPFCalendarEventCopyTimeZone", 5},
                {"OPFCalendarEventGetHasReminder", 0x8503000B},
                {"OPFCalendarEventGetIsAllDayEvent", 0x8215000B},
                {"OPFCalendarEventGetIsPrivate", 0x00360003},
                {"appointment", 0},
            },
        .rows = 19,
        .percent = 5,
        .otherTags = {0, 6, 0x0037001F, 0x1000001F, 0x10130102, 0x30080040, 0x82160102},
        .string = {"OPFCalendarEventCopySummary", 0x0037001F},
        .repeated = {"OPFCalendarEventGetIsPrivate", "1", entry(0x00360003, 2)},
        .unread = {"OPFCalendarEventCopySummary", 0x0037001F},
        .categories = "OPFCalendarEventCopyCategoryList",
        .strings = {{"OPFCalendarEventCopyDescriptionPlain", "OPFCalendarEventCopyLocation",
                     "OPFCalendarEventCopySummary", "OPFCalendarEventCopyTimeZone"},
                    {0x1000001F, 0x8000001F, 0x0037001F, 0x8001001F}},
        .values = {{"OPFCalendarEventCopyModDate", "OPFCalendarEventCopyReminderTime",
                    "OPFCalendarEventCopyReminderDelta", "OPFCalendarEventGetHasReminder",
                    "OPFCalendarEventCopyFreeBusyStatus", "OPFCalendarEventGetIsAllDayEvent",
                    "OPFCalendarEventGetIsPrivate"},
                   {entry(0x30080040, 0), entry(0x80000040, 0), entry(0x80010003, 0),
                    entry(0x8002000B, 0), entry(0x80030003, 2)}},
    };
}

WriterFacts taskFacts() {
    return {
        .kind = &taskKind,
        .table =
            {
                {"OPFTaskCopyCategoryList", 1},
                {"OPFTaskCopyCompletedDateTime", 0x810F0040},
                {"OPFTaskCopyDueDateTime", 0x81050040},
                {"OPFTaskCopyModDate", 0x30080040},
                {"OPFTaskCopyName", 0x0037001F},
                {"OPFTaskCopyNote", 0x10130102},
                {"OPFTaskCopyNotePlain", 0x1000001F},
                {"OPFTaskCopyRecurrence", 2},
                {"OPFTaskCopyStartDateTime", 0x81040040},
                {"OPFTaskGetPriority", 0x00170003},
                {"task", 0},
            },
        .rows = 11,
        .percent = 9,
        .otherTags = {0, 3, 0x0037001F, 0x1000001F, 0x10130102, 0x30080040, 0x00170003, 0x81160102},
        .string = {"OPFTaskCopyName", 0x0037001F},
        .repeated = {"OPFTaskGetPriority", "3", entry(0x00170003, 3)},
        .unread = {"OPFTaskCopyName", 0x0037001F},
        .categories = "OPFTaskCopyCategoryList",
        .strings = {{"OPFTaskCopyName", "OPFTaskCopyNotePlain"}, {0x0037001F, 0x1000001F}},
        .values = {{"OPFTaskCopyStartDateTime", "OPFTaskCopyDueDateTime", "OPFTaskCopyModDate",
                    "OPFTaskGetPriority"},
                   {entry(0x80000040, 0), entry(0x80010040, 0), entry(0x30080040, 0),
                    entry(0x00170003, 0)}},
    };
}

WriterFacts noteFacts() {
    return {
        .kind = &noteKind,
        .table =
            {
                {"OPFNoteCopyCategoryList", 1},
                {"OPFNoteCopyCreationDate", 0x30070040},
                {"OPFNoteCopyModDate", 0x30080040},
                {"OPFNoteCopyNonHTMLText", 0x1000001F},
                {"OPFNoteCopyText", 0x10130102},
                {"OPFNoteCopyTitle", 0x0037001F},
                {"note", 0},
            },
        .rows = 7,
        .percent = 14,
        .otherTags = {0, 2, 0x0037001F, 0x1000001F, 0x10130102, 0x30070040, 0x30080040},
        .sets = "0E 20 06 00 00 00 00 00 C0 00 00 00 00 00 00 46",
        .names = "00 8B 00 00  06 00  00 00"
                 "03 8B 00 00  06 00  01 00"
                 "02 8B 00 00  06 00  02 00"
                 "04 8B 00 00  06 00  03 00"
                 "05 8B 00 00  06 00  04 00",
        .buckets = {{"10020102", "00 8B 00 00  06 00  00 00"},
                    {"10010102", "03 8B 00 00  06 00  01 00"},
                    {"10000102", "02 8B 00 00  06 00  02 00"},
                    {"101D0102", "04 8B 00 00  06 00  03 00"},
                    {"101E0102", "05 8B 00 00  06 00  04 00"}},
        .unknown = "OPFNoteCopyUUID",
        .string = {"OPFNoteCopyTitle", 0x0037001F},
        .repeated = {"OPFNoteCopyTitle", "Tide table", entry(0x0037001F, 22)},
        .unread = {"OPFNoteCopyNonHTMLText", 0x1000001F},
        .categories = "OPFNoteCopyCategoryList",
        .categoriesTag = 0x8005101F,
        .strings = {{"OPFNoteCopyNonHTMLText", "OPFNoteCopyTitle"}, {0x1000001F, 0x0037001F}},
        .values = {{"OPFNoteCopyModDate"}, {entry(0x30080040, 0)}},
    };
}

WriterFacts contactFacts() {
    return {
        .kind = &contactKind,
        .rows = 52,
        .percent = 1,
        .otherTags = {0, 6, 0x3A45001F, 0x1000001F, 0x10130102, 0x30080040, 0x0E070003},
        .emptyStrings = {0x8000001F, 0x8001001F},
        .sets = "04 20 06 00 00 00 00 00 C0 00 00 00 00 00 00 46",
        .names = "1B 80 00 00  06 00  00 00"
                 "1A 80 00 00  06 00  01 00",
        .buckets = {{"101E0102", "1B 80 00 00  06 00  00 00"},
                    {"101D0102", "1A 80 00 00  06 00  01 00"}},
        .string = {"OPFContactCopyFirstName", 0x3A06001F},
        .repeated = {"OPFContactCopyNickName", "Nan", entry(0x3A4F001F, 8)},
        .unread = {"OPFContactCopyBusinessCity", 0x3A27001F},
        .categories = "OPFContactCopyCategoryList",
        .strings = {{"OPFContactCopyCustom1Data", "OPFContactCopyNotesPlain"},
                    {0x8000001F, 0x1000001F}},
        .values = {{"OPFContactCopyBirthday"}, {entry(0x3A420040, 0)}},
    };
}

WriterFacts groupFacts() {
    return {
        .kind = &groupKind,
        .table =
            {
                {"OPFGroupCopyCategoryList", 2},
                {"OPFGroupCopyDisplayName", 0x0037001F},
                {"OPFGroupCopyMemberList", 1},
                {"OPFGroupCopyModDate", 0x30080040},
                {"OPFGroupCopyNotes", 0x10130102},
                {"OPFGroupCopyNotesPlain", 0x1000001F},
                {"group", 0},
            },
        .rows = 7,
        .percent = 14,
        .otherTags = {0, 3, 0x1000001F, 0x10130102, 0x30080040},
        .unknown = "OPFGroupCopyGetPrimaryCategory",
        .string = {"OPFGroupCopyNotesPlain", 0x1000001F},
        .repeated = {"OPFGroupCopyModDate", "1970-01-01T00:00:00Z", entry(0x30080040, time1970)},
        .unread = {"OPFGroupCopyNotesPlain", 0x1000001F},
        .categories = "OPFGroupCopyCategoryList",
        .strings = {{"OPFGroupCopyDisplayName", "OPFGroupCopyNotesPlain"},
                    {0x0037001F, 0x8000001F, 0x1000001F}},
        .values = {{"OPFGroupCopyModDate"}, {entry(0x30080040, 0)}},
    };
}
