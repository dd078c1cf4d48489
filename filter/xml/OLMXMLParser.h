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

// Codes of the qor::Exception that a parser throws; other codes are statuses of the reader.
enum ParserError : unsigned int {
    ErrEntryNotOpened = 0xFFFFFFFC, // -4: the archive did not open the entry
};

// Reads one archive entry as a sequence of numbered tags with attributes and text.
//
// The first nextTag() returns the root of the document. Tag maps may be added at any time. Text
// that was not read is skipped by the next nextTag(). A parser lives for one call of an entry
// point.
class OLMXMLParser {
public:
    static constexpr uint32_t chunkUnits = 1024; // of text that are read at a time

    // Opens entry `entryIndex` of `archive` (an ArchiveDirectory, borrowed for the parser's life).
    // Throws what init() throws; an entry that was opened before stays open.
    OLMXMLParser(void* archive, unsigned long entryIndex);

    // Ends the reader, then closes the entry.
    ~OLMXMLParser();
    OLMXMLParser(const OLMXMLParser&) = delete;
    OLMXMLParser& operator=(const OLMXMLParser&) = delete;

    // Opens the entry, prepares the reader with the root tag map and takes the name of the entry.
    // Throws qor::Exception ErrEntryNotOpened, or with the status of the reader as its code when
    // the reader fails.
    void init(void* archive, unsigned long entryIndex);

    // Opens an entry as a stream, which the caller closes. Returns null on failure.
    static HostStream* openXMLFile(void* archive, unsigned long entryIndex);

    // Adds a tag map of `count` rows, borrowed for the parser's life. Returns the status of the
    // reader: 0 for success.
    int16_t addTags(const UTXML_STRVALPAIR* rows, unsigned short count);

    // Reads the next tag with its attributes. Returns 1, or 0 at the end of the document and when
    // it is broken; then the record of the tag keeps its value and its attributes are gone.
    unsigned short nextTag(OLMXMLTag& tag);

    // Reads all the text after the last opening tag. Returns 1 when there was text; otherwise
    // returns 0 and leaves `out` as it was. After a failure past the first chunk `out` holds the
    // text up to it and the result is 1.
    unsigned short content(qor::WString& out);

    // The same with a single read of at most `limit` units, and at most chunkUnits.
    unsigned short content(qor::WString& out, unsigned int limit);

    // Skips the element that `tag` opened, its closing tag included. Returns 1, or 0 when the
    // reader refuses. A closing tag skips nothing and returns 1.
    unsigned short skipTag(const OLMXMLTag& tag);

    // Stores the state of the reader, between two elements, and restores it. A parser whose state
    // is restored must have read its root tag. Tag maps are not part of the state.
    void getParserState(tagUTXMLSaveData* save);
    void setParserState(const tagUTXMLSaveData* save);

    HostStream* stream = nullptr; // the open entry; owned
    uint64_t entryIndex = 0;
    qor::WString folder;   // the entry's name up to and including its last "/"
    qor::WString fileName; // the rest of the name

private:
    void takeEntryName(const ArchiveDirectory& directory);
    void readAttributes(OLMXMLTag& tag);
    void recycleAttributes(OLMXMLTag& tag);
    std::unique_ptr<OLMXMLAttribute> newAttribute();
    unsigned short readFirstChunk(qor::WString& out, uint16_t* chunk, uint32_t capacity,
                                  uint32_t& count);

    UTXMLReader reader{};
    // Kept from tag to tag, since every element of a real archive has an attribute.
    std::vector<std::unique_ptr<OLMXMLAttribute>> spareAttributes;
};

#endif
