#include "host/message/PropertyNames.h"

#include <algorithm>
#include <iterator>

namespace olmhost {

namespace {

// clang-format off

// Indexes in `sets`.
enum SetIndex { Address, Appointment, Common, Meeting, Note, Task, Mapi, PublicStrings };

struct SetRow {
    std::uint32_t first; // of the GUID's parts
    std::uint16_t second;
    std::uint16_t third;
    std::array<std::uint8_t, 8> last;
    const char* name;
};

// The last bytes of nearly all sets.
constexpr std::array<std::uint8_t, 8> usualEnd = {0xC0, 0x00, 0x00, 0x00, 0x00, 0x00, 0x00, 0x46};
constexpr std::array<std::uint8_t, 8> meetingEnd = {0x98, 0xDA, 0x00, 0xAA, 0x00, 0x3F, 0x13, 0x05};

constexpr SetRow sets[] = {
    {0x00062004, 0x0000, 0x0000, usualEnd,   "PSETID_Address"},
    {0x00062002, 0x0000, 0x0000, usualEnd,   "PSETID_Appointment"},
    {0x00062008, 0x0000, 0x0000, usualEnd,   "PSETID_Common"},
    {0x6ED8DA90, 0x450B, 0x101B, meetingEnd, "PSETID_Meeting"},
    {0x0006200E, 0x0000, 0x0000, usualEnd,   "PSETID_Note"},
    {0x00062003, 0x0000, 0x0000, usualEnd,   "PSETID_Task"},
    {0x00020328, 0x0000, 0x0000, usualEnd,   "PS_MAPI"},
    {0x00020329, 0x0000, 0x0000, usualEnd,   "PS_PUBLIC_STRINGS"},
};
static_assert(std::size(sets) == PublicStrings + 1);

struct TagRow {
    std::uint16_t id;
    const char* name;
};

// In ascending order.
constexpr TagRow tags[] = {
    {0x0002, "PidTagAlternateRecipientAllowed"},
    {0x0017, "PidTagImportance"},
    {0x001A, "PidTagMessageClass"},
    {0x0023, "PidTagOriginatorDeliveryReportRequested"},
    {0x0026, "PidTagPriority"},
    {0x0029, "PidTagReadReceiptRequested"},
    {0x002A, "PidTagReceiptTime"},
    {0x002B, "PidTagRecipientReassignmentProhibited"},
    {0x002E, "PidTagOriginalSensitivity"},
    {0x0036, "PidTagSensitivity"},
    {0x0037, "PidTagSubject"},
    {0x0039, "PidTagClientSubmitTime"},
    {0x003B, "PidTagSentRepresentingSearchKey"},
    {0x003D, "PidTagSubjectPrefix"},
    {0x003F, "PidTagReceivedByEntryId"},
    {0x0040, "PidTagReceivedByName"},
    {0x0041, "PidTagSentRepresentingEntryId"},
    {0x0042, "PidTagSentRepresentingName"},
    {0x0043, "PidTagReceivedRepresentingEntryId"},
    {0x0044, "PidTagReceivedRepresentingName"},
    {0x004F, "PidTagReplyRecipientEntries"},
    {0x0050, "PidTagReplyRecipientNames"},
    {0x0057, "PidTagMessageToMe"},
    {0x0058, "PidTagMessageCcMe"},
    {0x0060, "PidTagStartDate"},
    {0x0061, "PidTagEndDate"},
    {0x0062, "PidTagOwnerAppointmentId"},
    {0x0063, "PidTagResponseRequested"},
    {0x0064, "PidTagSentRepresentingAddressType"},
    {0x0065, "PidTagSentRepresentingEmailAddress"},
    {0x0070, "PidTagConversationTopic"},
    {0x0071, "PidTagConversationIndex"},
    {0x0075, "PidTagReceivedByAddressType"},
    {0x0076, "PidTagReceivedByEmailAddress"},
    {0x0077, "PidTagReceivedRepresentingAddressType"},
    {0x0078, "PidTagReceivedRepresentingEmailAddress"},
    {0x007D, "PidTagTransportMessageHeaders"},
    {0x0C15, "PidTagRecipientType"},
    {0x0C17, "PidTagReplyRequested"},
    {0x0C19, "PidTagSenderEntryId"},
    {0x0C1A, "PidTagSenderName"},
    {0x0C1D, "PidTagSenderSearchKey"},
    {0x0C1E, "PidTagSenderAddressType"},
    {0x0C1F, "PidTagSenderEmailAddress"},
    {0x0E01, "PidTagDeleteAfterSubmit"},
    {0x0E02, "PidTagDisplayBcc"},
    {0x0E03, "PidTagDisplayCc"},
    {0x0E04, "PidTagDisplayTo"},
    {0x0E06, "PidTagMessageDeliveryTime"},
    {0x0E07, "PidTagMessageFlags"},
    {0x0E08, "PidTagMessageSize"},
    {0x0E0F, "PidTagResponsibility"},
    {0x0E12, "PidTagMessageRecipients"},
    {0x0E13, "PidTagMessageAttachments"},
    {0x0E17, "PidTagMessageStatus"},
    {0x0E1B, "PidTagHasAttachments"},
    {0x0E1D, "PidTagNormalizedSubject"},
    {0x0E1F, "PidTagRtfInSync"},
    {0x0E20, "PidTagAttachSize"},
    {0x0E21, "PidTagAttachNumber"},
    {0x0E23, "PidTagInternetArticleNumber"},
    {0x0E28, "PidTagPrimarySendAccount"},
    {0x0E29, "PidTagNextSendAcct"},
    {0x0E2B, "PidTagToDoItemFlags"},
    {0x0E79, "PidTagTrustSender"},
    {0x0FF4, "PidTagAccess"},
    {0x0FF6, "PidTagInstanceKey"},
    {0x0FF7, "PidTagAccessLevel"},
    {0x0FF8, "PidTagMappingSignature"},
    {0x0FF9, "PidTagRecordKey"},
    {0x0FFA, "PidTagStoreRecordKey"},
    {0x0FFB, "PidTagStoreEntryId"},
    {0x0FFE, "PidTagObjectType"},
    {0x0FFF, "PidTagEntryId"},
    {0x1000, "PidTagBody"},
    {0x1001, "PidTagReportText"},
    {0x1009, "PidTagRtfCompressed"},
    {0x1013, "PidTagHtml"},
    {0x1014, "PidTagBodyContentLocation"},
    {0x1015, "PidTagBodyContentId"},
    {0x1016, "PidTagNativeBody"},
    {0x1035, "PidTagInternetMessageId"},
    {0x1039, "PidTagInternetReferences"},
    {0x1042, "PidTagInReplyToId"},
    {0x1043, "PidTagListHelp"},
    {0x1044, "PidTagListSubscribe"},
    {0x1045, "PidTagListUnsubscribe"},
    {0x1046, "PidTagOriginalMessageId"},
    {0x1080, "PidTagIconIndex"},
    {0x1081, "PidTagLastVerbExecuted"},
    {0x1082, "PidTagLastVerbExecutionTime"},
    {0x1090, "PidTagFlagStatus"},
    {0x1091, "PidTagFlagCompleteTime"},
    {0x1095, "PidTagFollowupIcon"},
    {0x1096, "PidTagBlockStatus"},
    {0x10F4, "PidTagAttributeHidden"},
    {0x10F6, "PidTagAttributeReadOnly"},
    {0x3000, "PidTagRowid"},
    {0x3001, "PidTagDisplayName"},
    {0x3002, "PidTagAddressType"},
    {0x3003, "PidTagEmailAddress"},
    {0x3004, "PidTagComment"},
    {0x3007, "PidTagCreationTime"},
    {0x3008, "PidTagLastModificationTime"},
    {0x300B, "PidTagSearchKey"},
    {0x3010, "PidTagTargetEntryId"},
    {0x3013, "PidTagConversationId"},
    {0x340D, "PidTagStoreSupportMask"},
    {0x3701, "PidTagAttachDataBinary"},
    {0x3702, "PidTagAttachEncoding"},
    {0x3703, "PidTagAttachExtension"},
    {0x3704, "PidTagAttachFilename"},
    {0x3705, "PidTagAttachMethod"},
    {0x3707, "PidTagAttachLongFilename"},
    {0x3708, "PidTagAttachPathname"},
    {0x3709, "PidTagAttachRendering"},
    {0x370A, "PidTagAttachTag"},
    {0x370B, "PidTagRenderingPosition"},
    {0x370C, "PidTagAttachTransportName"},
    {0x370D, "PidTagAttachLongPathname"},
    {0x370E, "PidTagAttachMimeTag"},
    {0x370F, "PidTagAttachAdditionalInformation"},
    {0x3712, "PidTagAttachContentId"},
    {0x3713, "PidTagAttachContentLocation"},
    {0x3714, "PidTagAttachFlags"},
    {0x3900, "PidTagDisplayType"},
    {0x3905, "PidTagDisplayTypeEx"},
    {0x39FE, "PidTagSmtpAddress"},
    {0x39FF, "PidTagAddressBookDisplayNamePrintable"},
    {0x3A00, "PidTagAccount"},
    {0x3A02, "PidTagCallbackTelephoneNumber"},
    {0x3A05, "PidTagGeneration"},
    {0x3A06, "PidTagGivenName"},
    {0x3A07, "PidTagGovernmentIdNumber"},
    {0x3A08, "PidTagBusinessTelephoneNumber"},
    {0x3A09, "PidTagHomeTelephoneNumber"},
    {0x3A0A, "PidTagInitials"},
    {0x3A0B, "PidTagKeyword"},
    {0x3A0C, "PidTagLanguage"},
    {0x3A0D, "PidTagLocation"},
    {0x3A0F, "PidTagMessageHandlingSystemCommonName"},
    {0x3A10, "PidTagOrganizationalIdNumber"},
    {0x3A11, "PidTagSurname"},
    {0x3A12, "PidTagOriginalEntryId"},
    {0x3A15, "PidTagPostalAddress"},
    {0x3A16, "PidTagCompanyName"},
    {0x3A17, "PidTagTitle"},
    {0x3A18, "PidTagDepartmentName"},
    {0x3A19, "PidTagOfficeLocation"},
    {0x3A1A, "PidTagPrimaryTelephoneNumber"},
    {0x3A1B, "PidTagBusiness2TelephoneNumber"},
    {0x3A1C, "PidTagMobileTelephoneNumber"},
    {0x3A1D, "PidTagRadioTelephoneNumber"},
    {0x3A1E, "PidTagCarTelephoneNumber"},
    {0x3A1F, "PidTagOtherTelephoneNumber"},
    {0x3A20, "PidTagTransmittableDisplayName"},
    {0x3A21, "PidTagPagerTelephoneNumber"},
    {0x3A22, "PidTagUserCertificate"},
    {0x3A23, "PidTagPrimaryFaxNumber"},
    {0x3A24, "PidTagBusinessFaxNumber"},
    {0x3A25, "PidTagHomeFaxNumber"},
    {0x3A26, "PidTagCountry"},
    {0x3A27, "PidTagLocality"},
    {0x3A28, "PidTagStateOrProvince"},
    {0x3A29, "PidTagStreetAddress"},
    {0x3A2A, "PidTagPostalCode"},
    {0x3A2B, "PidTagPostOfficeBox"},
    {0x3A2C, "PidTagTelexNumber"},
    {0x3A2D, "PidTagIsdnNumber"},
    {0x3A2E, "PidTagAssistantTelephoneNumber"},
    {0x3A2F, "PidTagHome2TelephoneNumber"},
    {0x3A30, "PidTagAssistant"},
    {0x3A40, "PidTagSendRichInfo"},
    {0x3A41, "PidTagWeddingAnniversary"},
    {0x3A42, "PidTagBirthday"},
    {0x3A43, "PidTagHobbies"},
    {0x3A44, "PidTagMiddleName"},
    {0x3A45, "PidTagDisplayNamePrefix"},
    {0x3A46, "PidTagProfession"},
    {0x3A47, "PidTagReferredByName"},
    {0x3A48, "PidTagSpouseName"},
    {0x3A49, "PidTagComputerNetworkName"},
    {0x3A4A, "PidTagCustomerId"},
    {0x3A4B, "PidTagTelecommunicationsDeviceForDeafTelephoneNumber"},
    {0x3A4C, "PidTagFtpSite"},
    {0x3A4D, "PidTagGender"},
    {0x3A4E, "PidTagManagerName"},
    {0x3A4F, "PidTagNickname"},
    {0x3A50, "PidTagPersonalHomePage"},
    {0x3A51, "PidTagBusinessHomePage"},
    {0x3A57, "PidTagCompanyMainTelephoneNumber"},
    {0x3A58, "PidTagChildrensNames"},
    {0x3A59, "PidTagHomeAddressCity"},
    {0x3A5A, "PidTagHomeAddressCountry"},
    {0x3A5B, "PidTagHomeAddressPostalCode"},
    {0x3A5C, "PidTagHomeAddressStateOrProvince"},
    {0x3A5D, "PidTagHomeAddressStreet"},
    {0x3A5E, "PidTagHomeAddressPostOfficeBox"},
    {0x3A5F, "PidTagOtherAddressCity"},
    {0x3A60, "PidTagOtherAddressCountry"},
    {0x3A61, "PidTagOtherAddressPostalCode"},
    {0x3A62, "PidTagOtherAddressStateOrProvince"},
    {0x3A63, "PidTagOtherAddressStreet"},
    {0x3A64, "PidTagOtherAddressPostOfficeBox"},
    {0x3A70, "PidTagUserX509Certificate"},
    {0x3A71, "PidTagSendInternetEncoding"},
    {0x3FDE, "PidTagInternetCodepage"},
    {0x3FF1, "PidTagMessageLocaleId"},
    {0x3FF8, "PidTagCreatorName"},
    {0x3FF9, "PidTagCreatorEntryId"},
    {0x3FFA, "PidTagLastModifierName"},
    {0x3FFB, "PidTagLastModifierEntryId"},
    {0x3FFD, "PidTagMessageCodepage"},
    {0x5FDF, "PidTagRecipientOrder"},
    {0x5FE3, "PidTagRecipientProposed"},
    {0x5FF6, "PidTagRecipientDisplayName"},
    {0x5FF7, "PidTagRecipientEntryId"},
    {0x5FFB, "PidTagRecipientTrackStatusTime"},
    {0x5FFD, "PidTagRecipientFlags"},
    {0x5FFF, "PidTagRecipientTrackStatus"},
    {0x7FFA, "PidTagAttachmentLinkId"},
    {0x7FFB, "PidTagExceptionStartTime"},
    {0x7FFC, "PidTagExceptionEndTime"},
    {0x7FFD, "PidTagAttachmentFlags"},
    {0x7FFE, "PidTagAttachmentHidden"},
};

struct LidRow {
    SetIndex set;
    std::uint32_t id;
    const char* name;
};

constexpr LidRow lids[] = {
    {Address,     0x8005, "PidLidFileUnder"},
    {Address,     0x8006, "PidLidFileUnderId"},
    {Address,     0x8007, "PidLidContactItemData"},
    {Address,     0x8010, "PidLidDepartment"},
    {Address,     0x8015, "PidLidHasPicture"},
    {Address,     0x801A, "PidLidHomeAddress"},
    {Address,     0x801B, "PidLidWorkAddress"},
    {Address,     0x801C, "PidLidOtherAddress"},
    {Address,     0x8022, "PidLidPostalAddressId"},
    {Address,     0x802B, "PidLidHtml"},
    {Address,     0x8045, "PidLidWorkAddressStreet"},
    {Address,     0x8046, "PidLidWorkAddressCity"},
    {Address,     0x8047, "PidLidWorkAddressState"},
    {Address,     0x8048, "PidLidWorkAddressPostalCode"},
    {Address,     0x8049, "PidLidWorkAddressCountry"},
    {Address,     0x804A, "PidLidWorkAddressPostOfficeBox"},
    {Address,     0x804C, "PidLidDistributionListChecksum"},
    {Address,     0x804F, "PidLidContactUserField1"},
    {Address,     0x8050, "PidLidContactUserField2"},
    {Address,     0x8051, "PidLidContactUserField3"},
    {Address,     0x8052, "PidLidContactUserField4"},
    {Address,     0x8053, "PidLidDistributionListName"},
    {Address,     0x8054, "PidLidDistributionListOneOffMembers"},
    {Address,     0x8055, "PidLidDistributionListMembers"},
    {Address,     0x8062, "PidLidInstantMessagingAddress"},
    {Address,     0x8080, "PidLidEmail1DisplayName"},
    {Address,     0x8082, "PidLidEmail1AddressType"},
    {Address,     0x8083, "PidLidEmail1EmailAddress"},
    {Address,     0x8084, "PidLidEmail1OriginalDisplayName"},
    {Address,     0x8085, "PidLidEmail1OriginalEntryId"},
    {Address,     0x8090, "PidLidEmail2DisplayName"},
    {Address,     0x8092, "PidLidEmail2AddressType"},
    {Address,     0x8093, "PidLidEmail2EmailAddress"},
    {Address,     0x8094, "PidLidEmail2OriginalDisplayName"},
    {Address,     0x8095, "PidLidEmail2OriginalEntryId"},
    {Address,     0x80A0, "PidLidEmail3DisplayName"},
    {Address,     0x80A2, "PidLidEmail3AddressType"},
    {Address,     0x80A3, "PidLidEmail3EmailAddress"},
    {Address,     0x80A4, "PidLidEmail3OriginalDisplayName"},
    {Address,     0x80A5, "PidLidEmail3OriginalEntryId"},
    {Address,     0x80DA, "PidLidHomeAddressCountryCode"},
    {Address,     0x80DB, "PidLidWorkAddressCountryCode"},
    {Address,     0x80DC, "PidLidOtherAddressCountryCode"},
    {Address,     0x80DD, "PidLidAddressCountryCode"},
    {Appointment, 0x8201, "PidLidAppointmentSequence"},
    {Appointment, 0x8205, "PidLidBusyStatus"},
    {Appointment, 0x8207, "PidLidAppointmentAuxiliaryFlags"},
    {Appointment, 0x8208, "PidLidLocation"},
    {Appointment, 0x820D, "PidLidAppointmentStartWhole"},
    {Appointment, 0x820E, "PidLidAppointmentEndWhole"},
    {Appointment, 0x8213, "PidLidAppointmentDuration"},
    {Appointment, 0x8214, "PidLidAppointmentColor"},
    {Appointment, 0x8215, "PidLidAppointmentSubType"},
    {Appointment, 0x8216, "PidLidAppointmentRecur"},
    {Appointment, 0x8217, "PidLidAppointmentStateFlags"},
    {Appointment, 0x8218, "PidLidResponseStatus"},
    {Appointment, 0x8223, "PidLidRecurring"},
    {Appointment, 0x8224, "PidLidIntendedBusyStatus"},
    {Appointment, 0x8228, "PidLidExceptionReplaceTime"},
    {Appointment, 0x8229, "PidLidFInvited"},
    {Appointment, 0x8231, "PidLidRecurrenceType"},
    {Appointment, 0x8232, "PidLidRecurrencePattern"},
    {Appointment, 0x8233, "PidLidTimeZoneStruct"},
    {Appointment, 0x8234, "PidLidTimeZoneDescription"},
    {Appointment, 0x8235, "PidLidClipStart"},
    {Appointment, 0x8236, "PidLidClipEnd"},
    {Appointment, 0x8238, "PidLidAllAttendeesString"},
    {Appointment, 0x823B, "PidLidToAttendeesString"},
    {Appointment, 0x823C, "PidLidCcAttendeesString"},
    {Appointment, 0x825E, "PidLidAppointmentTimeZoneDefinitionStartDisplay"},
    {Appointment, 0x825F, "PidLidAppointmentTimeZoneDefinitionEndDisplay"},
    {Appointment, 0x8260, "PidLidAppointmentTimeZoneDefinitionRecur"},
    {Common,      0x8501, "PidLidReminderDelta"},
    {Common,      0x8502, "PidLidReminderTime"},
    {Common,      0x8503, "PidLidReminderSet"},
    {Common,      0x8506, "PidLidPrivate"},
    {Common,      0x850E, "PidLidAgingDontAgeMe"},
    {Common,      0x8510, "PidLidSideEffects"},
    {Common,      0x8514, "PidLidSmartNoAttach"},
    {Common,      0x8516, "PidLidCommonStart"},
    {Common,      0x8517, "PidLidCommonEnd"},
    {Common,      0x8518, "PidLidTaskMode"},
    {Common,      0x8530, "PidLidFlagRequest"},
    {Common,      0x8539, "PidLidCompanies"},
    {Common,      0x853A, "PidLidContacts"},
    {Common,      0x8552, "PidLidCurrentVersion"},
    {Common,      0x8554, "PidLidCurrentVersionName"},
    {Common,      0x8560, "PidLidReminderSignalTime"},
    {Common,      0x8580, "PidLidInternetAccountName"},
    {Meeting,     0x0003, "PidLidGlobalObjectId"},
    {Meeting,     0x0023, "PidLidCleanGlobalObjectId"},
    {Note,        0x8B00, "PidLidNoteColor"},
    {Note,        0x8B02, "PidLidNoteWidth"},
    {Note,        0x8B03, "PidLidNoteHeight"},
    {Note,        0x8B04, "PidLidNoteX"},
    {Note,        0x8B05, "PidLidNoteY"},
    {Task,        0x8101, "PidLidTaskStatus"},
    {Task,        0x8102, "PidLidPercentComplete"},
    {Task,        0x8103, "PidLidTeamTask"},
    {Task,        0x8104, "PidLidTaskStartDate"},
    {Task,        0x8105, "PidLidTaskDueDate"},
    {Task,        0x8107, "PidLidTaskResetReminder"},
    {Task,        0x8108, "PidLidTaskAccepted"},
    {Task,        0x8109, "PidLidTaskDeadOccurrence"},
    {Task,        0x810F, "PidLidTaskDateCompleted"},
    {Task,        0x8110, "PidLidTaskActualEffort"},
    {Task,        0x8111, "PidLidTaskEstimatedEffort"},
    {Task,        0x8112, "PidLidTaskVersion"},
    {Task,        0x8113, "PidLidTaskState"},
    {Task,        0x8115, "PidLidTaskLastUpdate"},
    {Task,        0x8116, "PidLidTaskRecurrence"},
    {Task,        0x8117, "PidLidTaskAssigners"},
    {Task,        0x8119, "PidLidTaskStatusOnComplete"},
    {Task,        0x811A, "PidLidTaskHistory"},
    {Task,        0x811B, "PidLidTaskUpdates"},
    {Task,        0x811C, "PidLidTaskComplete"},
    {Task,        0x811E, "PidLidTaskFCreator"},
    {Task,        0x811F, "PidLidTaskOwner"},
    {Task,        0x8120, "PidLidTaskMultipleRecipients"},
    {Task,        0x8121, "PidLidTaskAssigner"},
    {Task,        0x8122, "PidLidTaskLastUser"},
    {Task,        0x8123, "PidLidTaskOrdinal"},
    {Task,        0x8126, "PidLidTaskFRecurring"},
    {Task,        0x8127, "PidLidTaskRole"},
    {Task,        0x8129, "PidLidTaskOwnership"},
    {Task,        0x812A, "PidLidTaskAcceptanceState"},
};

struct TextRow {
    SetIndex set;
    const char16_t* text;
    const char* name;
};

constexpr TextRow texts[] = {
    {PublicStrings, u"Keywords", "PidNameKeywords"},
};

// Properties whose numbers are read bit by bit.
constexpr std::uint16_t bitFields[] = {
    0x0E07, // PidTagMessageFlags
    0x0E17, // PidTagMessageStatus
    0x0FF4, // PidTagAccess
    0x340D, // PidTagStoreSupportMask
    0x3714, // PidTagAttachFlags
    0x5FFD, // PidTagRecipientFlags
};

// clang-format on

static_assert(std::ranges::adjacent_find(tags, std::ranges::greater_equal{}, &TagRow::id) ==
              std::end(tags));

constexpr PropertySet bytesOf(const SetRow& row) {
    PropertySet bytes{};
    const auto put = [&](std::size_t place, std::uint32_t value, std::size_t size) {
        for (std::size_t i = 0; i < size; ++i) {
            bytes[place + i] = static_cast<std::byte>(value >> (8 * i));
        }
    };
    put(0, row.first, 4);
    put(4, row.second, 2);
    put(6, row.third, 2);
    for (std::size_t i = 0; i < row.last.size(); ++i) {
        bytes[8 + i] = static_cast<std::byte>(row.last[i]);
    }
    return bytes;
}

} // namespace

const char* tagName(std::uint16_t id) {
    const TagRow* found = std::ranges::lower_bound(tags, id, {}, &TagRow::id);
    return found != std::end(tags) && found->id == id ? found->name : nullptr;
}

const char* setName(const PropertySet& set) {
    const SetRow* found = std::ranges::find(sets, set, bytesOf);
    return found == std::end(sets) ? nullptr : found->name;
}

const char* namedPropertyName(const PropertySet& set, std::uint32_t id) {
    const LidRow* found = std::ranges::find_if(
        lids, [&](const LidRow& row) { return row.id == id && bytesOf(sets[row.set]) == set; });
    return found == std::end(lids) ? nullptr : found->name;
}

const char* namedPropertyName(const PropertySet& set, std::u16string_view text) {
    const TextRow* found = std::ranges::find_if(texts, [&](const TextRow& row) {
        return row.text == text && bytesOf(sets[row.set]) == set;
    });
    return found == std::end(texts) ? nullptr : found->name;
}

bool isBitField(std::uint16_t id) {
    return std::ranges::find(bitFields, id) != std::end(bitFields);
}

std::string setText(const PropertySet& set) {
    // The first three parts are numbers with their low byte first.
    constexpr std::array<std::uint8_t, 16> order = {3, 2, 1,  0,  5,  4,  7,  6,
                                                    8, 9, 10, 11, 12, 13, 14, 15};
    constexpr std::string_view digits = "0123456789ABCDEF";
    std::string text = "{";
    for (std::size_t i = 0; i < order.size(); ++i) {
        if (i == 4 || i == 6 || i == 8 || i == 10) {
            text += '-';
        }
        const auto byte = std::to_integer<unsigned>(set[order[i]]);
        text += digits[byte >> 4];
        text += digits[byte & 0xF];
    }
    return text + "}";
}

const PropertySet& mapiSet() {
    static constexpr PropertySet set = bytesOf(sets[Mapi]);
    return set;
}

const PropertySet& publicStringsSet() {
    static constexpr PropertySet set = bytesOf(sets[PublicStrings]);
    return set;
}

} // namespace olmhost
