#ifndef OLMKIT_FILTER_XML_OLMXMLTAG_H
#define OLMKIT_FILTER_XML_OLMXMLTAG_H

#include <cstdint>
#include <string_view>

#include "filter/boundary/Reader.h"
#include "filter/core/ArrayList.h"
#include "filter/xml/OLMXMLAttribute.h"

// One tag of an item document, with its attributes. OLMXMLParser::nextTag() fills it, and may do
// so any number of times; when that fails the record stays and the attributes are gone.
class OLMXMLTag {
public:
    OLMXMLTag() = default;
    ~OLMXMLTag() { clearAttributes(); }
    OLMXMLTag(const OLMXMLTag&) = delete;
    OLMXMLTag& operator=(const OLMXMLTag&) = delete;

    // The value that a tag map gives to the element's name, or UTXML_UNKNOWN_TAG. The same for
    // the opening and the closing tag; 0 before anything was read.
    unsigned int id() const { return tagRecord.id; }
    unsigned int flags() const { return tagRecord.flags; }
    bool isClosing() const { return (tagRecord.flags & UTXML_CLOSING_TAG) != 0; }

    // The first attribute whose name is exactly `name` (ASCII), or null. It lives until the
    // attributes are cleared or the next tag is read. Throws qor::Exception 137 for a list that
    // disagrees with its size.
    const OLMXMLAttribute* findAttribute(std::string_view name) const;

    // Deletes every attribute; the list keeps its store for the next tag.
    void clearAttributes();

    UTXMLTagRecord tagRecord{};
    uint64_t tagExtra = 0;                       // from the reader; nothing looks at it
    qor::ArrayList<OLMXMLAttribute*> attributes; // owned, in the order of the document
};

#endif
