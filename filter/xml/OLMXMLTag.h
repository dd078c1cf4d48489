#ifndef OLMKIT_FILTER_XML_OLMXMLTAG_H
#define OLMKIT_FILTER_XML_OLMXMLTAG_H

#include <cstdint>
#include <string_view>

#include "filter/boundary/Reader.h"
#include "filter/core/ArrayList.h"
#include "filter/xml/OLMXMLAttribute.h"

// One tag of an item document, with its attributes. OLMXMLParser::nextTag() fills it any number of
// times; when that fails the record keeps its value and the attributes are gone.
class OLMXMLTag {
public:
    OLMXMLTag() = default;
    ~OLMXMLTag() { clearAttributes(); }
    OLMXMLTag(const OLMXMLTag&) = delete;
    OLMXMLTag& operator=(const OLMXMLTag&) = delete;

    // Returns the value of the element's name in the tag maps, or UTXML_UNKNOWN_TAG; 0 before the
    // first tag was read. The opening and the closing tag of an element have the same id.
    unsigned int id() const { return tagRecord.id; }
    unsigned int flags() const { return tagRecord.flags; }
    bool isClosing() const { return (tagRecord.flags & UTXML_CLOSING_TAG) != 0; }

    // Returns the first attribute whose name is exactly `name` (ASCII), or null. It is valid until
    // the attributes are cleared or the next tag is read.
    const OLMXMLAttribute* findAttribute(std::string_view name) const;

    // Deletes every attribute. The list keeps its memory for the next tag.
    void clearAttributes();

    UTXMLTagRecord tagRecord{};
    uint64_t tagExtra = 0;                       // from the reader; not used
    qor::ArrayList<OLMXMLAttribute*> attributes; // owned, in the order of the document
};

#endif
