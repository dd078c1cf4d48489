"""Contacts and their postal addresses."""

from . import mapi
from .message import Message, units
from .reader import Tag

# Plain tag of an address part: its index, and for business parts the named property that repeats it.
BUSINESS_PARTS = {
    0x3A29001F: (0, mapi.PidLidWorkAddressStreet),
    0x3A27001F: (1, mapi.PidLidWorkAddressCity),
    0x3A28001F: (2, mapi.PidLidWorkAddressState),
    0x3A2A001F: (3, mapi.PidLidWorkAddressPostalCode),
}
HOME_PARTS = {0x3A5D001F: 5, 0x3A59001F: 6, 0x3A5C001F: 7, 0x3A5B001F: 8}
# Number of a list of electronic addresses: the named property of the first one.
ADDRESS_GROUPS = {
    1: mapi.PidLidInstantMessagingAddress,
    2: mapi.PidLidEmail1EmailAddress,
    3: mapi.PidLidEmail2EmailAddress,
    4: mapi.PidLidEmail3EmailAddress,
}
CUSTOM = (
    mapi.PidLidContactUserField1,
    mapi.PidLidContactUserField2,
    mapi.PidLidContactUserField3,
    mapi.PidLidContactUserField4,
)
CHILDREN = mapi.PidTagChildrensNames


class Contact(Message):
    message_class = "IPM.Contact"
    expected_count = 52
    table = {
        "OPFContactCopyAnniversary": 0x3A410040,
        "OPFContactCopyAssistantPhone": 0x3A2E001F,
        "OPFContactCopyBirthday": 0x3A420040,
        "OPFContactCopyBusinessCity": 0x3A27001F,
        "OPFContactCopyBusinessCompany": 0x3A16001F,
        "OPFContactCopyBusinessCountry": 0x3A26001F,
        "OPFContactCopyBusinessDepartment": 0x3A18001F,
        "OPFContactCopyBusinessFax": 0x3A24001F,
        "OPFContactCopyBusinessHomePage": 0x3A51001F,
        "OPFContactCopyBusinessOffice": 0x3A19001F,
        "OPFContactCopyBusinessPhone": 0x3A08001F,
        "OPFContactCopyBusinessPhone2": 0x3A1B001F,
        "OPFContactCopyBusinessState": 0x3A28001F,
        "OPFContactCopyBusinessStreetAddress": 0x3A29001F,
        "OPFContactCopyBusinessTitle": 0x3A17001F,
        "OPFContactCopyBusinessZip": 0x3A2A001F,
        "OPFContactCopyCategoryList": 5,
        "OPFContactCopyCellPhone": 0x3A1C001F,
        "OPFContactCopyChildren": 0x3A58101F,
        "OPFContactCopyCustom1Data": 0x804F001F,
        "OPFContactCopyCustom2Data": 0x8050001F,
        "OPFContactCopyCustom3Data": 0x8051001F,
        "OPFContactCopyCustom4Data": 0x8052001F,
        "OPFContactCopyDefaultEmailAddress": 2,
        "OPFContactCopyDefaultIMAddress": 1,
        "OPFContactCopyDisplayName": 0x3001001F,
        "OPFContactCopyEmailAddressList1": 3,
        "OPFContactCopyEmailAddressList2": 4,
        "OPFContactCopyFirstName": 0x3A06001F,
        "OPFContactCopyHomeCity": 0x3A59001F,
        "OPFContactCopyHomeCountry": 0x3A5A001F,
        "OPFContactCopyHomeFax": 0x3A25001F,
        "OPFContactCopyHomePhone": 0x3A09001F,
        "OPFContactCopyHomePhone2": 0x3A2F001F,
        "OPFContactCopyHomeState": 0x3A5C001F,
        "OPFContactCopyHomeStreetAddress": 0x3A5D001F,
        "OPFContactCopyHomeWebPage": 0x3A50001F,
        "OPFContactCopyHomeZip": 0x3A5B001F,
        "OPFContactCopyInterests": 0x3A43001F,
        "OPFContactCopyLastName": 0x3A11001F,
        "OPFContactCopyMiddleName": 0x3A44001F,
        "OPFContactCopyModDate": 0x30080040,
        "OPFContactCopyNickName": 0x3A4F001F,
        "OPFContactCopyNotes": 0x10130102,
        "OPFContactCopyNotesPlain": 0x1000001F,
        "OPFContactCopyPager": 0x3A21001F,
        "OPFContactCopySetNameSuffix": 0x3A05001F,
        "OPFContactCopySpousesName": 0x3A48001F,
        "OPFContactCopyTitle": 0x3A45001F,
        "OPFContactGetFlagStatus": 0x0E070003,
        "OPFContactMainPhone": 0x3A1A001F,
        "contact": 0,
    }

    def __init__(self, reader, archive=None):
        super().__init__(reader, archive)
        self.parts = {}
        self.handlers = {5: self.read_categories, CHILDREN: self.read_children}
        self.handlers.update(dict.fromkeys(BUSINESS_PARTS, self.read_business_part))
        self.handlers.update(dict.fromkeys(HOME_PARTS, self.read_home_part))
        self.handlers.update(dict.fromkeys(CUSTOM, self.read_custom))
        self.handlers.update(dict.fromkeys(ADDRESS_GROUPS, self.read_address))

    def finish(self):
        self.add_named(mapi.PidLidWorkAddress, self.whole_address(0, 4))
        self.add_named(mapi.PidLidHomeAddress, self.whole_address(5, 9))

    def whole_address(self, first, last):
        parts = (self.parts.get(index) for index in range(first, last + 1))
        return "\r\n".join(part for part in parts if part is not None)

    def add_named(self, key, text):
        self.add_string(self.names.number(key), units(text))

    def read_business_part(self, tag):
        index, key = BUSINESS_PARTS[tag.id]
        self.parts[index] = self.reader.content()
        self.add_string(tag.id, units(self.parts[index]))
        self.add_named(key, self.parts[index])
        return True

    def read_home_part(self, tag):
        index = HOME_PARTS[tag.id]
        self.parts[index] = self.reader.content()
        self.add_string(tag.id, units(self.parts[index]))
        return True

    def read_custom(self, tag):
        self.add_named(tag.id, self.reader.content())
        return True

    def read_children(self, _):
        texts = []
        tag = Tag()
        more = True
        while more:
            more = self.reader.next_tag(tag)
            text = "" if tag.closing else self.reader.content()
            if text:
                texts.append(text)
            more = more and tag.id != CHILDREN
        self.add_strings(CHILDREN, texts)
        return True

    def read_address(self, group):
        """An empty group reads on after its own end."""
        tag = Tag()
        self.reader.next_tag(tag)
        address = tag.value("OPFContactEmailAddressAddress")
        if address is not None:
            self.add_named(ADDRESS_GROUPS[group.id], address)
        while self.reader.next_tag(tag) and tag.id != group.id:
            pass
        return True
