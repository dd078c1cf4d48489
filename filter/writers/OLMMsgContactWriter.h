#ifndef OLMKIT_FILTER_WRITERS_OLMMSGCONTACTWRITER_H
#define OLMKIT_FILTER_WRITERS_OLMMSGCONTACTWRITER_H

#include "filter/core/Array.h"
#include "filter/core/WString.h"
#include "filter/storage/OLMMsgWriter.h"
#include "filter/writers/ContactAddrPartIndex.h"

// Writes one contact as a message of class IPM.Contact ([MS-OXOCNTC]).
//
// Properties are in the order of the elements. The parts of the two addresses are also kept until
// the end of the item, when each address is written as a whole; all other text is written to its
// stream at once. A value whose stream can't be made is left out.
class OLMMsgContactWriter : public OLMMsgWriter {
public:
    // `request` is not owned and must outlive the writer. Makes no storage.
    explicit OLMMsgContactWriter(SODOSPECIALARC* request);

    // Returns 0. Throws qor::Exception ErrTagTable when the reader refuses the table, and what the
    // base class throws.
    unsigned int initilizeWriter(OLMXMLParser& parser) override;

    // Adds both whole addresses, even empty ones, then does what the base class does.
    unsigned int finalizeNode(OLMXMLParser& parser) override;

    ~OLMMsgContactWriter() override;

    // Handles the parts of addresses, the named properties and the groups.
    bool handlePropSpecial(OLMXMLTag& tag, OLMXMLParser& parser) override;

protected:
    // Returns the text of the current element, empty when it has none, as a new string that the
    // caller deletes.
    static qor::WString* readStringValue(OLMXMLParser& parser);

    // Replaces a part by `value` and takes ownership of it. Throws qor::Exception errorIndex for an
    // invalid index; then too `value` is deleted.
    void storeAddrPart(ContactAddrPartIndex index, const qor::WString* value);

    // Returns the stored parts from `first` to `last`, joined by line ends, as a new string that
    // the caller deletes. A part that is empty is an empty line; a part that was never stored is
    // left out. Throws qor::Exception errorIndex for an invalid index.
    [[nodiscard]] qor::WString* constructWholeAddr(ContactAddrPartIndex first,
                                                   ContactAddrPartIndex last) const;

    // Each adds the text, or that of the current element, as the string property `tag` and as the
    // named property `key`, which is left out when no row has it.
    void handleDupProps(const qor::WString& value, unsigned int tag, unsigned int key);
    void handleDupProps(OLMXMLParser& parser, unsigned int tag, unsigned int key);

    // Each adds the text, or that of the current element, as the named property `key`, which is
    // left out when no row has it.
    void handleNamedStrProp(const qor::WString& value, unsigned int key);
    void handleNamedStrProp(OLMXMLParser& parser, unsigned int key);

    // Stores the text of the current element as a part of the business address and adds it as `tag`
    // and as the named property `key`.
    void handleBusinessAddrPart(unsigned int tag, ContactAddrPartIndex index, unsigned int key,
                                OLMXMLParser& parser);

    // Stores the text of the current element as a part of the home address and adds it as `tag`.
    void handleHomeAddrPart(unsigned int tag, ContactAddrPartIndex index, OLMXMLParser& parser);

    // Adds the texts of all tags up to the end of the group of children as one multiple-valued
    // string, without empty texts.
    void handleChildrensNames(OLMXMLParser& parser);

    // Adds the address attribute, if any, of the first tag in the group of that code as the named
    // property `key`, and skips the rest of the group. Throws what MapiNamedPropMap::mapNamedProp()
    // throws.
    void handleEmailAddress(unsigned int code, unsigned int key, OLMXMLParser& parser);

    qor::Array<const qor::WString*> addressParts; // by ContactAddrPartIndex; owned, null until set
};

#endif
