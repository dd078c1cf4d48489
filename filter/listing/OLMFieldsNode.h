#ifndef OLMKIT_FILTER_LISTING_OLMFIELDSNODE_H
#define OLMKIT_FILTER_LISTING_OLMFIELDSNODE_H

#include <array>
#include <cstdint>
#include <span>

#include "filter/boundary/Reader.h"
#include "filter/core/ArrayList.h"
#include "filter/core/WString.h"
#include "filter/listing/OLMEMailAddr.h"
#include "filter/listing/OLMFieldCodes.h"
#include "filter/listing/OLMNodeInt.h"

class OLMXMLParser;
class OLMXMLTag;
struct PROCtag;

// The fields of one item, read from its element and written out as the fourteen cells of a row.
//
// A subclass brings the tag table of its item kind, which maps elements to OLMFieldCode; what a
// kind does not have stays empty. Order of calls: parseNode() once, translateNode() once.
class OLMFieldsNode : public OLMNodeInt {
public:
    ~OLMFieldsNode() override;

    // Announces the columns to the host of `proc` (a PROC), ahead of the first row.
    static void defineOLMFields(void* proc);

    // An item that is cut short by the document's end or a fault counts as read.
    unsigned short parseNode(OLMXMLParser& parser) override;

    unsigned short translateNode(unsigned int itemNumber) override;

    // Takes one tag of the item, closing ones too.
    virtual void handleTag(const OLMXMLTag& tag, OLMXMLParser& parser);

    // Fills an address from a tag's attributes; in this class it does nothing.
    virtual void attributesToAddr(OLMXMLTag& tag, OLMEMailAddr& address);

    // Takes the first entry of an address group into `address`, if that is what the group begins
    // with, and reads on to the tag of `endCode`: 1. 0 when the document ends ahead of it.
    unsigned short readSingleAddress(OLMXMLParser& parser, unsigned int endCode,
                                     OLMEMailAddr& address);

    // Appends the entries of an address group to `list`, which owns them, up to the tag of
    // `endCode`: 1. 0 when the document ends ahead of it.
    unsigned short readEmailAddrList(OLMXMLParser& parser, unsigned int endCode,
                                     qor::ArrayList<OLMEMailAddr*>& list);

    // Puts the addresses into the open cell, joined by ";".
    void addressesOut(const qor::ArrayList<OLMEMailAddr*>& list);

    // Open and close a tagged text in the row; the texts are numbered as they are closed.
    void startTag(unsigned int id);
    void endTag();

    // Empties the fields; `folder` stays.
    void clearFields();

protected:
    // `proc` is a PROC, borrowed for the node's life. The subclass sets the special values and
    // itemName, and adds its table.
    explicit OLMFieldsNode(void* proc);

    // Adds the subclass's table to the reader. Throws qor::Exception with a negative status as
    // its code; a positive one is no failure here.
    static void addTagTable(OLMXMLParser& parser, std::span<const UTXML_STRVALPAIR> table);

    // The text of a code from FieldSubject to FieldTitle.
    qor::WString& textOf(unsigned int code) { return texts[code - FieldSubject]; }
    const qor::WString& textOf(unsigned int code) const { return texts[code - FieldSubject]; }

    OLMEMailAddr sender;
    qor::ArrayList<OLMEMailAddr*> firstList;        // owns the addresses
    qor::ArrayList<OLMEMailAddr*> secondList;       // owns the addresses
    std::array<qor::WString, fieldTextCount> texts; // in the order of their codes
    uint64_t entryIndex = 0;
    qor::WString folder; // the entry's, with a "/" behind each level
    unsigned int specialValue6 = 0;
    unsigned int specialValue7 = 0;
    PROCtag* proc;                // not owned
    const qor::WString* itemName; // the one of `texts` that names the item
    unsigned int tagIndex = 0;    // of the next tagged text in the row

private:
    void putFileName();
    void putField(unsigned int code, unsigned int tagId);
    int64_t fieldLength(unsigned int code) const;
    void putFieldContent(unsigned int code);
    void putText(const qor::WString& text);
};

// Announce one column each: a text column by its two numbers, a special column, the locator.
void OLMDefineTextColumn(unsigned int number, unsigned int second, PROCtag* proc);
void OLMDefineSpecialColumn(unsigned int which, PROCtag* proc);
void OLMDefineArcLocatorColumn(PROCtag* proc);

#endif
