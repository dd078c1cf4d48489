#ifndef OLMKIT_FILTER_WRITERS_OLMMSGCONTACTTAGS_H
#define OLMKIT_FILTER_WRITERS_OLMMSGCONTACTTAGS_H

#include <array>

#include "filter/storage/MapiNamedPropKey.h"
#include "filter/storage/MapiPropTag.h"
#include "filter/xml/TagTable.h"

// Codes of OLMMsgContactWriter. They are below 0x100; property tags and keys of named properties
// are above.
enum ContactCode : unsigned int {
    ContactRoot = 0,
    ContactDefaultIM = 1,
    ContactDefaultEmail = 2,
    ContactEmailList1 = 3,
    ContactEmailList2 = 4,
    ContactCategories = 5,
};

// clang-format off
inline constexpr auto contactTags = std::to_array<UTXML_STRVALPAIR>({
    // value                           element
    {PidTagWeddingAnniversary,         "OPFContactCopyAnniversary"},
    {PidTagAssistantTelephoneNumber,   "OPFContactCopyAssistantPhone"},
    {PidTagBirthday,                   "OPFContactCopyBirthday"},
    {PidTagLocality,                   "OPFContactCopyBusinessCity"},          // also PidLidWorkAddressCity
    {PidTagCompanyName,                "OPFContactCopyBusinessCompany"},
    {PidTagCountry,                    "OPFContactCopyBusinessCountry"},       // in no whole address
    {PidTagDepartmentName,             "OPFContactCopyBusinessDepartment"},
    {PidTagBusinessFaxNumber,          "OPFContactCopyBusinessFax"},
    {PidTagBusinessHomePage,           "OPFContactCopyBusinessHomePage"},
    {PidTagOfficeLocation,             "OPFContactCopyBusinessOffice"},
    {PidTagBusinessTelephoneNumber,    "OPFContactCopyBusinessPhone"},
    {PidTagBusiness2TelephoneNumber,   "OPFContactCopyBusinessPhone2"},
    {PidTagStateOrProvince,            "OPFContactCopyBusinessState"},         // also PidLidWorkAddressState
    {PidTagStreetAddress,              "OPFContactCopyBusinessStreetAddress"}, // also PidLidWorkAddressStreet
    {PidTagTitle,                      "OPFContactCopyBusinessTitle"},
    {PidTagPostalCode,                 "OPFContactCopyBusinessZip"},           // also PidLidWorkAddressPostalCode
    {ContactCategories,                "OPFContactCopyCategoryList"},          // PidNameKeywords
    {PidTagMobileTelephoneNumber,      "OPFContactCopyCellPhone"},
    {PidTagChildrensNames,             "OPFContactCopyChildren"},
    {PidLidContactUserField1,          "OPFContactCopyCustom1Data"},
    {PidLidContactUserField2,          "OPFContactCopyCustom2Data"},
    {PidLidContactUserField3,          "OPFContactCopyCustom3Data"},
    {PidLidContactUserField4,          "OPFContactCopyCustom4Data"},
    {ContactDefaultEmail,              "OPFContactCopyDefaultEmailAddress"},   // PidLidEmail1EmailAddress
    {ContactDefaultIM,                 "OPFContactCopyDefaultIMAddress"},      // PidLidInstantMessagingAddress
    {PidTagDisplayName,                "OPFContactCopyDisplayName"},
    {ContactEmailList1,                "OPFContactCopyEmailAddressList1"},     // PidLidEmail2EmailAddress
    {ContactEmailList2,                "OPFContactCopyEmailAddressList2"},     // PidLidEmail3EmailAddress
    {PidTagGivenName,                  "OPFContactCopyFirstName"},
    {PidTagHomeAddressCity,            "OPFContactCopyHomeCity"},
    {PidTagHomeAddressCountry,         "OPFContactCopyHomeCountry"},           // in no whole address
    {PidTagHomeFaxNumber,              "OPFContactCopyHomeFax"},
    {PidTagHomeTelephoneNumber,        "OPFContactCopyHomePhone"},
    {PidTagHome2TelephoneNumber,       "OPFContactCopyHomePhone2"},
    {PidTagHomeAddressStateOrProvince, "OPFContactCopyHomeState"},
    {PidTagHomeAddressStreet,          "OPFContactCopyHomeStreetAddress"},
    {PidTagPersonalHomePage,           "OPFContactCopyHomeWebPage"},
    {PidTagHomeAddressPostalCode,      "OPFContactCopyHomeZip"},
    {PidTagHobbies,                    "OPFContactCopyInterests"},
    {PidTagSurname,                    "OPFContactCopyLastName"},
    {PidTagMiddleName,                 "OPFContactCopyMiddleName"},
    {PidTagLastModificationTime,       "OPFContactCopyModDate"},
    {PidTagNickname,                   "OPFContactCopyNickName"},
    {PidTagHtml,                       "OPFContactCopyNotes"},                 // nothing: binary
    {PidTagBody,                       "OPFContactCopyNotesPlain"},
    {PidTagPagerTelephoneNumber,       "OPFContactCopyPager"},
    {PidTagGeneration,                 "OPFContactCopySetNameSuffix"},
    {PidTagSpouseName,                 "OPFContactCopySpousesName"},
    {PidTagDisplayNamePrefix,          "OPFContactCopyTitle"},
    {PidTagMessageFlags,               "OPFContactGetFlagStatus"},             // the number unchanged
    {PidTagPrimaryTelephoneNumber,     "OPFContactMainPhone"},
    {ContactRoot,                      "contact"},                             // the item
});
// clang-format on

static_assert(contactTags.size() == 52);
static_assert(inByteOrder(contactTags), "ascending byte order of the names, no name twice");

#endif
