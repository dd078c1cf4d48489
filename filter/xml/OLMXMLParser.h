#ifndef OLMKIT_FILTER_XML_OLMXMLPARSER_H
#define OLMKIT_FILTER_XML_OLMXMLPARSER_H

#include <cstdint>
#include <memory>
#include <vector>

#include "filter/boundary/Archive.h"
#include "filter/boundary/HostStream.h"
#include "filter/boundary/Reader.h"
#include "filter/core/WString.h"
#include "filter/xml/OLMXMLTag.h"

// Reads one archive entry as a sequence of numbered tags with attributes and text.
//
// The first nextTag() gives the document's root. Tag maps may be added at any time. Text that
// nobody asks for is passed over by the next nextTag(). Serves one call of an entry point.
class OLMXMLParser {
public:
    static constexpr uint32_t chunkUnits = 1024; // of text, that are read and held at a time

    // Opens entry `entryIndex` of `archive` (an ArchiveDirectory, borrowed until the parser's
    // end). Throws what init() throws; an entry that was opened by then stays open.
    OLMXMLParser(void* archive, unsigned long entryIndex);

    // Ends the reader and closes the entry.
    ~OLMXMLParser();
    OLMXMLParser(const OLMXMLParser&) = delete;
    OLMXMLParser& operator=(const OLMXMLParser&) = delete;

    // Opens the entry, prepares the reader with the root tag map and takes the entry's name.
    // Throws qor::Exception: -4 when the entry can't be opened, the reader's status when that
    // fails.
    void init(void* archive, unsigned long entryIndex);

    // A stream on the entry, which the caller closes, or null.
    static HostStream* openXMLFile(void* archive, unsigned long entryIndex);

    // Adds `count` rows, borrowed until the parser's end. Gives the reader's status: 0 for
    // success.
    int16_t addTags(const UTXML_STRVALPAIR* rows, unsigned short count);

    // Reads the next tag with its attributes: 1. At the end of the document and when it is broken
    // 0; then the tag's record is as it was and its attributes are gone.
    unsigned short nextTag(OLMXMLTag& tag);

    // All text behind the opening tag read last: 1 when there was some. Otherwise 0, and `out`
    // stays as it was. Text up to a failure behind the first 1024 units counts as read.
    unsigned short content(qor::WString& out);

    // The same with a single read of at most `limit` (and 1024) units.
    unsigned short content(qor::WString& out, unsigned int limit);

    // Moves behind the element that `tag` opened: 1. For a closing tag 1 without any reading. 0
    // when the reader refuses.
    unsigned short skipTag(const OLMXMLTag& tag);

    // Takes the reader's place, to be done between two elements, and goes back to it. A parser
    // that is put back has read its root tag; tag maps are not part of the place.
    void getParserState(tagUTXMLSaveData* save);
    void setParserState(const tagUTXMLSaveData* save);

    HostStream* stream = nullptr; // the open entry; owned
    uint64_t entryIndex = 0;
    qor::WString folder;   // the entry's name up to and including its last "/"
    qor::WString fileName; // what stands behind that

private:
    void takeEntryName(const ArchiveDirectory& directory);
    void readAttributes(OLMXMLTag& tag);
    void recycleAttributes(OLMXMLTag& tag);
    std::unique_ptr<OLMXMLAttribute> newAttribute();
    unsigned short readFirstChunk(qor::WString& out, uint16_t* chunk, uint32_t capacity,
                                  uint32_t& count);

    UTXMLReader reader{};
    // Every element of a real archive has an attribute: their memory goes from tag to tag.
    std::vector<std::unique_ptr<OLMXMLAttribute>> spareAttributes;
};

#endif
