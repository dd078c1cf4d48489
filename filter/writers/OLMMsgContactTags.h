#ifndef OLMKIT_FILTER_WRITERS_OLMMSGCONTACTTAGS_H
#define OLMKIT_FILTER_WRITERS_OLMMSGCONTACTTAGS_H

#include <array>

#include "filter/xml/TagTable.h"

// Codes of OLMMsgContactWriter. A code is below 0x100, a property tag is not; a value from
// 0x80000000 up is the key of a named property.
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
    // value              element                                  becomes
    {0x3A410040,          "OPFContactCopyAnniversary"},            // wedding anniversary
    {0x3A2E001F,          "OPFContactCopyAssistantPhone"},         // assistant's telephone number
    {0x3A420040,          "OPFContactCopyBirthday"},               // birthday
    {0x3A27001F,          "OPFContactCopyBusinessCity"},           // locality and named 0x8046001F
    {0x3A16001F,          "OPFContactCopyBusinessCompany"},        // company name
    {0x3A26001F,          "OPFContactCopyBusinessCountry"},        // country, in no whole address
    {0x3A18001F,          "OPFContactCopyBusinessDepartment"},     // department name
    {0x3A24001F,          "OPFContactCopyBusinessFax"},            // business fax number
    {0x3A51001F,          "OPFContactCopyBusinessHomePage"},       // business home page
    {0x3A19001F,          "OPFContactCopyBusinessOffice"},         // office location
    {0x3A08001F,          "OPFContactCopyBusinessPhone"},          // business telephone number
    {0x3A1B001F,          "OPFContactCopyBusinessPhone2"},         // second one
    {0x3A28001F,          "OPFContactCopyBusinessState"},          // state and named 0x8047001F
    {0x3A29001F,          "OPFContactCopyBusinessStreetAddress"},  // street and named 0x8045001F
    {0x3A17001F,          "OPFContactCopyBusinessTitle"},          // job title
    {0x3A2A001F,          "OPFContactCopyBusinessZip"},            // postal code, named 0x8048001F
    {ContactCategories,   "OPFContactCopyCategoryList"},           // named property Keywords
    {0x3A1C001F,          "OPFContactCopyCellPhone"},              // mobile telephone number
    {0x3A58101F,          "OPFContactCopyChildren"},               // children's names
    {0x804F001F,          "OPFContactCopyCustom1Data"},            // named 0x804F001F
    {0x8050001F,          "OPFContactCopyCustom2Data"},            // named 0x8050001F
    {0x8051001F,          "OPFContactCopyCustom3Data"},            // named 0x8051001F
    {0x8052001F,          "OPFContactCopyCustom4Data"},            // named 0x8052001F
    {ContactDefaultEmail, "OPFContactCopyDefaultEmailAddress"},    // named 0x8083001F
    {ContactDefaultIM,    "OPFContactCopyDefaultIMAddress"},       // named 0x8062001F
    {0x3001001F,          "OPFContactCopyDisplayName"},            // display name
    {ContactEmailList1,   "OPFContactCopyEmailAddressList1"},      // named 0x8093001F
    {ContactEmailList2,   "OPFContactCopyEmailAddressList2"},      // named 0x80A3001F
    {0x3A06001F,          "OPFContactCopyFirstName"},              // given name
    {0x3A59001F,          "OPFContactCopyHomeCity"},               // home city
    {0x3A5A001F,          "OPFContactCopyHomeCountry"},            // country, in no whole address
    {0x3A25001F,          "OPFContactCopyHomeFax"},                // home fax number
    {0x3A09001F,          "OPFContactCopyHomePhone"},              // home telephone number
    {0x3A2F001F,          "OPFContactCopyHomePhone2"},             // second one
    {0x3A5C001F,          "OPFContactCopyHomeState"},              // home state
    {0x3A5D001F,          "OPFContactCopyHomeStreetAddress"},      // home street
    {0x3A50001F,          "OPFContactCopyHomeWebPage"},            // personal home page
    {0x3A5B001F,          "OPFContactCopyHomeZip"},                // home postal code
    {0x3A43001F,          "OPFContactCopyInterests"},              // hobbies
    {0x3A11001F,          "OPFContactCopyLastName"},               // surname
    {0x3A44001F,          "OPFContactCopyMiddleName"},             // middle name
    {0x30080040,          "OPFContactCopyModDate"},                // last modification time alone
    {0x3A4F001F,          "OPFContactCopyNickName"},               // nickname
    {0x10130102,          "OPFContactCopyNotes"},                  // nothing: nobody takes binary
    {0x1000001F,          "OPFContactCopyNotesPlain"},             // body, plain text
    {0x3A21001F,          "OPFContactCopyPager"},                  // pager number
    {0x3A05001F,          "OPFContactCopySetNameSuffix"},          // generation
    {0x3A48001F,          "OPFContactCopySpousesName"},            // spouse's name
    {0x3A45001F,          "OPFContactCopyTitle"},                  // display name prefix
    {0x0E070003,          "OPFContactGetFlagStatus"},              // message flags, as they stand
    {0x3A1A001F,          "OPFContactMainPhone"},                  // primary telephone number
    {ContactRoot,         "contact"},                              // the item's end
});
// clang-format on

static_assert(contactTags.size() == 52);
static_assert(inByteOrder(contactTags), "ascending byte order of the names, no name twice");

#endif
