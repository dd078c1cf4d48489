#include "tests/unit/writers/FullItems.h"

#include "tests/unit/writers/ItemMessages.h"
#include "tests/unit/writers/RecurringItems.h"

using namespace fakehost;

ItemDocument fullMail() {
    return mail()
        .open("OPFMessageCopyAttachmentList")
        .element("messageAttachment")
        .attribute("OPFAttachmentContentFileSize", "1.1E1")
        .attribute("OPFAttachmentName", "tide.csv")
        .attribute("OPFAttachmentURL", "Local/Attachments/tide.csv")
        .attribute("OPFAttachmentContentType", "text/csv")
        .attribute("OPFAttachmentContentID", "tide@sea")
        .element("messageAttachment")
        .attribute("OPFAttachmentName", "nowhere.txt")
        .close()
        .open("OPFMessageCopyBCCAddresses")
        .element("emailAddress")
        .attribute(addressAttribute, "d@x")
        .close()
        .element("OPFMessageCopyBody", "High water")
        .open("OPFMessageCopyCCAddresses")
        .element("emailAddress")
        .attribute(addressAttribute, "c@x")
        .attribute(nameAttribute, "Cy")
        .close()
        .open("OPFMessageCopyCategoryList")
        .element("category")
        .attribute("OPFCategoryCopyName", "Sea")
        .close()
        .open("OPFMessageCopyFromAddresses")
        .element("emailAddress")
        .attribute(nameAttribute, "Fay")
        .attribute(addressAttribute, "f@x")
        .close()
        .element("OPFMessageCopyGetFlagStatus", "2E0")
        .element("OPFMessageCopyHTMLBody", "<b>High</b>")
        .element("OPFMessageCopyInReplyTo", "<1@x>")
        .element("OPFMessageCopyMessageID", "<2@x>")
        .element("OPFMessageCopyModDate", "2018-06-21T00:39:08")
        .element("OPFMessageCopyReceivedTime", "1970-01-01T00:00:00Z")
        .element("OPFMessageCopyReferences", "<0@x>")
        .element("OPFMessageCopySentTime", "1970-01-01T00:00:01Z")
        .element("OPFMessageCopySubject", "AW: Tide")
        .element("OPFMessageCopyThreadTopic", "Tide")
        .open("OPFMessageCopyToAddresses")
        .element("emailAddress")
        .attribute(addressAttribute, "a@x")
        .attribute(nameAttribute, "Ann")
        .element("emailAddress")
        .attribute(addressAttribute, "b@x")
        .attribute(nameAttribute, "Bob")
        .close()
        .element("OPFMessageGetHasRichText", "1E0")
        .element("OPFMessageGetIsRead", "1E0")
        .element("OPFMessageGetPriority", "2E0")
        .element("OPFMessageGetWasSent", "0E0");
}

ItemRun tideArchive() {
    ItemRun run;
    run.archive = [](FakeHost& host) {
        host.entry("Local/Attachments/tide.csv", bytesOf("high;14:05\n"));
    };
    return run;
}

ItemDocument fullAppointment() {
    ItemDocument item = appointment();
    item.open("OPFCalendarEventCopyAttendeeList")
        .element("appointmentAttendee")
        .attribute("OPFCalendarAttendeeAddress", "a@x")
        .attribute("OPFCalendarAttendeeName", "Ann")
        .attribute("OPFCalendarAttendeeType", "1")
        .close();
    addCategories(item, "OPFCalendarEventCopyCategoryList", {"Sea"})
        .element("OPFCalendarEventCopyDescription", "<b>Bring boots</b>")
        .element("OPFCalendarEventCopyDescriptionPlain", "Bring boots")
        .element("OPFCalendarEventCopyEndTime", "2011-05-02T15:30:00")
        .element("OPFCalendarEventCopyFreeBusyStatus", "3")
        .element("OPFCalendarEventCopyLocation", "Pier")
        .element("OPFCalendarEventCopyModDate", "2018-06-21T00:39:08")
        .element("OPFCalendarEventCopyOrganizer", "o@x");
    addWeekly(item, "OPFCalendarEventCopyRecurrence");
    item.element("OPFCalendarEventCopyReminderDelta", "900")
        .element("OPFCalendarEventCopyReminderTime", "1970-01-01T00:00:01Z")
        .element("OPFCalendarEventCopyStartTime", "2011-05-02T14:00:00")
        .element("OPFCalendarEventCopySummary", "Mud walk")
        .element("OPFCalendarEventCopyTimeZone", "(UTC-05:00) Eastern Time")
        .element("OPFCalendarEventGetHasReminder", "1")
        .element("OPFCalendarEventGetIsAllDayEvent", "1E0")
        .element("OPFCalendarEventGetIsPrivate", "1");
    return item;
}

ItemDocument fullTask() {
    ItemDocument item = task();
    addCategories(item, "OPFTaskCopyCategoryList", {"Sea"});
    item.element("OPFTaskCopyCompletedDateTime", "2018-06-21T00:39:08")
        .element("OPFTaskCopyDueDateTime", "2018-06-20T06:00:00")
        .element("OPFTaskCopyModDate", "1970-01-01T00:00:00Z")
        .element("OPFTaskCopyName", "Tar the boat")
        .element("OPFTaskCopyNote", "<b>twice</b>")
        .element("OPFTaskCopyNotePlain", "twice\n \n");
    addDaily(item, "OPFTaskCopyRecurrence");
    item.element("OPFTaskCopyStartDateTime", "1970-01-01T00:00:01Z")
        .element("OPFTaskGetPriority", "3");
    return item;
}

ItemDocument fullNote() {
    ItemDocument item = note();
    addCategories(item, "OPFNoteCopyCategoryList", {"Family", "Sea"});
    return item.element("OPFNoteCopyCreationDate", "1970-01-01T00:00:00Z")
        .element("OPFNoteCopyModDate", "2018-06-21T00:39:08")
        .element("OPFNoteCopyNonHTMLText", "High water at noon\n \n")
        .element("OPFNoteCopyText", "<html><body>High water</body></html>")
        .element("OPFNoteCopyTitle", "Tide table");
}

namespace {

void addAddressGroup(ItemDocument& item, const char* group, const char* address) {
    item.open(group)
        .element("contactEmailAddress")
        .attribute(nameAttribute, "Ann Low")
        .attribute(typeAttribute, "0")
        .attribute(addressAttribute, address)
        .close();
}

} // namespace

ItemDocument fullContact() {
    ItemDocument item = contact();
    item.element("OPFContactCopyAnniversary", "1970-01-01T00:00:00Z")
        .element("OPFContactCopyAssistantPhone", "1")
        .element("OPFContactCopyBirthday", "2018-06-21T00:39:08")
        .element("OPFContactCopyBusinessCity", "Port")
        .element("OPFContactCopyBusinessCompany", "Pilots")
        .element("OPFContactCopyBusinessCountry", "Faroe")
        .element("OPFContactCopyBusinessDepartment", "Tugs")
        .element("OPFContactCopyBusinessFax", "2")
        .element("OPFContactCopyBusinessHomePage", "b.x")
        .element("OPFContactCopyBusinessOffice", "Quay")
        .element("OPFContactCopyBusinessPhone", "3")
        .element("OPFContactCopyBusinessPhone2", "4")
        .element("OPFContactCopyBusinessState", "Shire")
        .element("OPFContactCopyBusinessStreetAddress", "Mole 1")
        .element("OPFContactCopyBusinessTitle", "Mate")
        .element("OPFContactCopyBusinessZip", "0100");
    addCategories(item, "OPFContactCopyCategoryList", {"Sea"});
    item.element("OPFContactCopyCellPhone", "5")
        .open("OPFContactCopyChildren")
        .element("string", "Ida")
        .element("string", "Per")
        .close()
        .element("OPFContactCopyCustom1Data", "one")
        .element("OPFContactCopyCustom2Data", "two2")
        .element("OPFContactCopyCustom3Data", "three")
        .element("OPFContactCopyCustom4Data", "fourth");
    addAddressGroup(item, "OPFContactCopyDefaultEmailAddress", "a@x");
    addAddressGroup(item, "OPFContactCopyDefaultIMAddress", "im@x");
    item.element("OPFContactCopyDisplayName", "Ann Low");
    addAddressGroup(item, "OPFContactCopyEmailAddressList1", "ann@x");
    addAddressGroup(item, "OPFContactCopyEmailAddressList2", "low@xy");
    return item.element("OPFContactCopyFirstName", "Ann")
        .element("OPFContactCopyHomeCity", "Fjord")
        .element("OPFContactCopyHomeCountry", "Norway")
        .element("OPFContactCopyHomeFax", "6")
        .element("OPFContactCopyHomePhone", "7")
        .element("OPFContactCopyHomePhone2", "8")
        .element("OPFContactCopyHomeState", "West")
        .element("OPFContactCopyHomeStreetAddress", "Hill 2")
        .element("OPFContactCopyHomeWebPage", "h.x")
        .element("OPFContactCopyHomeZip", "5003")
        .element("OPFContactCopyInterests", "Tides")
        .element("OPFContactCopyLastName", "Low")
        .element("OPFContactCopyMiddleName", "Bo")
        .element("OPFContactCopyModDate", "1970-01-01T00:00:01Z")
        .element("OPFContactCopyNickName", "Nan")
        .element("OPFContactCopyNotes", "<b>rich</b>")
        .element("OPFContactCopyNotesPlain", "plain\n ")
        .element("OPFContactCopyPager", "9")
        .element("OPFContactCopySetNameSuffix", "Jr")
        .element("OPFContactCopySpousesName", "Lee")
        .element("OPFContactCopyTitle", "Dr")
        .element("OPFContactGetFlagStatus", "2E0")
        .element("OPFContactMainPhone", "10");
}

ItemDocument fullGroup() {
    ItemDocument item = group();
    addCategories(item, "OPFGroupCopyCategoryList", {"Sea"});
    return item.element("OPFGroupCopyDisplayName", "Crew")
        .open("OPFGroupCopyMemberList")
        .element("emailAddress")
        .attribute(addressAttribute, "a@x")
        .attribute(nameAttribute, "Ann")
        .attribute(typeAttribute, "1")
        .element("emailAddress")
        .attribute(addressAttribute, "d@x")
        .attribute(nameAttribute, "Deck")
        .attribute(typeAttribute, "3")
        .close()
        .element("OPFGroupCopyModDate", "2018-06-21T00:39:08")
        .element("OPFGroupCopyNotes", "<b>Noon</b>")
        .element("OPFGroupCopyNotesPlain", "Noon\n");
}
