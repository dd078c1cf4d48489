#ifndef OLMKIT_FILTER_WRITERS_OLMMSGCONTACTWRITER_H
#define OLMKIT_FILTER_WRITERS_OLMMSGCONTACTWRITER_H

#include "filter/core/Array.h"
#include "filter/core/WString.h"
#include "filter/storage/OLMMsgWriter.h"
#include "filter/writers/ContactAddrPartIndex.h"

// Turns one contact into a message of class IPM.Contact.
//
// Properties stand in the order of the elements. The parts of the two addresses are also kept
// until the item ends, when each address is written as a whole; all other text goes to its stream
// at once. A value whose stream can't be made is left out and the item goes on.
class OLMMsgContactWriter : public OLMMsgWriter {
public:
    // `request` is not owned and must outlive the writer. Touches no storage.
    explicit OLMMsgContactWriter(SODOSPECIALARC* request);

    // 0. Throws qor::Exception: ErrTagTable for a refused table, and what the base throws.
    unsigned int initilizeWriter(OLMXMLParser& parser) override;

    // Adds both whole addresses, also empty ones, and ends as the base does.
    unsigned int finalizeNode(OLMXMLParser& parser) override;

    ~OLMMsgContactWriter() override;

    // Takes address parts, named properties and the groups.
    bool handlePropSpecial(OLMXMLTag& tag, OLMXMLParser& parser) override;

protected:
    // The current element's text, empty when it has none, in a new string that the caller deletes.
    static qor::WString* readStringValue(OLMXMLParser& parser);

    // Puts `value` in the place of what the part held. Takes it over, also when it throws
    // qor::Exception: 137 for an index that is none.
    void storeAddrPart(ContactAddrPartIndex index, const qor::WString* value);

    // The stored parts from `first` to `last`, a line each, with no line end behind the last one;
    // in a new string that the caller deletes. A part stored empty is an empty line, one that was
    // never stored is none. Throws qor::Exception 137 for an index that is none.
    [[nodiscard]] qor::WString* constructWholeAddr(ContactAddrPartIndex first,
                                                   ContactAddrPartIndex last) const;

    // Each adds the text, or the current element's, as the string property `tag` and again as the
    // named property `namedId`. Throws as mapOptional() does, with the first one in place.
    void handleDupProps(const qor::WString& value, unsigned int tag, unsigned int namedId);
    void handleDupProps(OLMXMLParser& parser, unsigned int tag, unsigned int namedId);

    // Each adds the text, or the current element's, as the named property `namedId` alone. Throws
    // as mapOptional() does.
    void handleNamedStrProp(const qor::WString& value, unsigned int namedId);
    void handleNamedStrProp(OLMXMLParser& parser, unsigned int namedId);

    // Stores the current element's text as a part of the business address and adds it under `tag`
    // and `namedId`.
    void handleBusinessAddrPart(unsigned int tag, ContactAddrPartIndex index, unsigned int namedId,
                                OLMXMLParser& parser);

    // Stores the current element's text as a part of the home address and adds it under `tag`.
    void handleHomeAddrPart(unsigned int tag, ContactAddrPartIndex index, OLMXMLParser& parser);

    // Adds the texts of all tags up to the end of the children's group as one multi-valued string.
    // Empty ones are left out.
    void handleChildrensNames(OLMXMLParser& parser);

    // Adds the address attribute of the first tag inside the group of that code, when it has one,
    // as the named property `namedId`, and passes over what is left of the group. Throws what
    // MapiNamedPropMap::mapNamedProp throws.
    void handleEmailAddress(unsigned int code, unsigned int namedId, OLMXMLParser& parser);

    qor::Array<const qor::WString*> addressParts; // by ContactAddrPartIndex; owned, null until set
};

#endif
