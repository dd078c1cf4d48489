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

// What distinguishes the fields of one item kind from those of another.
struct OLMFieldKind {
    std::span<const UTXML_STRVALPAIR> tags;
    OLMFieldCode nameCode;      // of the text that names the item
    unsigned int specialValue6; // of special column 6
    unsigned int specialValue7; // of special column 7
};

// The fields of one item, read from its element and written as the fourteen cells of a row.
//
// A subclass passes in its item kind, whose tag table maps elements to OLMFieldCode. A field that
// the kind does not have stays empty. Order of calls: parseNode() once, translateNode() once.
class OLMFieldsNode : public OLMNodeInt {
public:
    ~OLMFieldsNode() override;

    // Announces the columns to the host of `proc` (a PROC), before the first row.
    static void defineOLMFields(void* proc);

    // An item that ends early, at the end of the document or at a fault, counts as read.
    unsigned short parseNode(OLMXMLParser& parser) override;

    unsigned short translateNode(unsigned int itemNumber) override;

    // Handles one tag of the item. Closing tags are passed in too.
    virtual void handleTag(const OLMXMLTag& tag, OLMXMLParser& parser);

    // Fills an address from the attributes of a tag. The base class does nothing.
    virtual void attributesToAddr(OLMXMLTag& tag, OLMEMailAddr& address);

    // Reads the first tag of an address group into `address` if it is an address, then reads on to
    // the tag of `endCode`. Returns 1, or 0 when the document ends before that tag.
    unsigned short readSingleAddress(OLMXMLParser& parser, unsigned int endCode,
                                     OLMEMailAddr& address);

    // Appends the addresses of a group to `list`, which owns them, up to the tag of `endCode`.
    // Returns 1, or 0 when the document ends before that tag.
    unsigned short readEmailAddrList(OLMXMLParser& parser, unsigned int endCode,
                                     qor::ArrayList<OLMEMailAddr*>& list);

    // Writes the addresses to the open cell, joined by ";".
    void addressesOut(const qor::ArrayList<OLMEMailAddr*>& list);

    // Open and close a tagged text of the row. Texts are numbered from 0 in the order of their
    // ends.
    void startTag(unsigned int id);
    void endTag();

    // Empties the fields; `folder` stays.
    void clearFields();

protected:
    // Adds the table of `kind` to the reader. `proc` is a PROC, borrowed for the node's life.
    // Throws qor::Exception with the reader's status as its code when that is negative; a positive
    // one is not a failure here.
    OLMFieldsNode(OLMXMLParser& parser, void* proc, const OLMFieldKind& kind);

    // The text of a code from FieldSubject to FieldTitle.
    qor::WString& textOf(unsigned int code) { return texts[code - FieldSubject]; }
    const qor::WString& textOf(unsigned int code) const { return texts[code - FieldSubject]; }

    OLMEMailAddr sender;
    qor::ArrayList<OLMEMailAddr*> firstList;        // owns the addresses
    qor::ArrayList<OLMEMailAddr*> secondList;       // owns the addresses
    std::array<qor::WString, fieldTextCount> texts; // in the order of their codes
    uint64_t entryIndex = 0;
    qor::WString folder; // the entry's, with a "/" after each level
    unsigned int specialValue6;
    unsigned int specialValue7;
    PROCtag* proc;                // not owned
    const qor::WString* itemName; // the element of `texts` that names the item
    unsigned int tagIndex = 0;    // of the next tagged text in the row

private:
    void putFileName();
    void putField(unsigned int code, unsigned int tagId);
    int64_t fieldLength(unsigned int code) const;
    void putFieldContent(unsigned int code);
    void putText(const qor::WString& text);
};

// Announce one column each to the host: a text column by its two numbers, a special column by its
// number, the locator column.
void OLMDefineTextColumn(unsigned int number, unsigned int second, PROCtag* proc);
void OLMDefineSpecialColumn(unsigned int which, PROCtag* proc);
void OLMDefineArcLocatorColumn(PROCtag* proc);

#endif
