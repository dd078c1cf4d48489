#ifndef OLMKIT_FILTER_STORAGE_OLMMSGWRITER_H
#define OLMKIT_FILTER_STORAGE_OLMMSGWRITER_H

#include <cstdint>
#include <span>

#include "filter/boundary/HostStream.h"
#include "filter/boundary/Request.h"
#include "filter/core/ArrayList.h"
#include "filter/core/Exception.h"
#include "filter/core/WString.h"
#include "filter/storage/MapiNamedPropMap.h"
#include "filter/storage/MsgPropPair.h"
#include "filter/storage/OLMNodeWriter.h"
#include "filter/storage/WriterErrors.h"
#include "filter/xml/OLMXMLParser.h"
#include "filter/xml/OLMXMLTag.h"

// Writes one item as a message ([MS-OXMSG]). Base of the writers of all item kinds, which add their
// tag table, their handlePropSpecial() and their default properties.
//
// Order of calls: initilizeWriter() once, writeNode() until it returns 100, finalizeNode(). A
// writer serves one item. A long value is written to its stream when its element is read; the
// entries are written by finalizeNode(), since the header before them has counts that are known
// only then.
//
// The static operations borrow the streams and storages that they are given. A null stream takes no
// bytes, so that writing to it is a short write. In a null storage nothing can be made, and the
// host is not called.
class OLMMsgWriter : public OLMNodeWriter {
public:
    // `request` is not owned and must outlive the writer. Makes no storage.
    explicit OLMMsgWriter(SODOSPECIALARC* request);
    OLMMsgWriter(const OLMMsgWriter&) = delete;
    OLMMsgWriter& operator=(const OLMMsgWriter&) = delete;

    // Closes the root storage, then the handles of namedProps inside it.
    ~OLMMsgWriter() override;

    // Makes the root storage and the storage of named properties and reads the opening tag of the
    // item. Returns 0, or 0xFFFFFFFF when the root storage can't be made. Throws qor::Exception
    // ErrUnknown when the tag of the item is missing or unknown.
    unsigned int initilizeWriter(OLMXMLParser& parser) override;

    // Handles the next tag. Returns the percentage of the expected elements that were handled,
    // which may exceed 100. Exactly 100 ends the item: at its root tag, at the end of the document,
    // or when as many elements were handled as expected, even if more follow. Throws what the
    // handlers throw.
    int16_t writeNode(OLMXMLParser& parser) override;

    // Writes the property stream and the named properties. Returns 0, or 461 when writeNamedProps()
    // failed. A property stream that can't be made is left out; after a short write it stays as it
    // is.
    unsigned int finalizeNode(OLMXMLParser& parser) override;

    // Writes the header of the property stream ([MS-OXMSG] 2.4.1.1), 32 bytes, to `stream` (a
    // HostStream). Returns 0, or the code of the qor::Exception that a write threw.
    virtual unsigned int writeMessageHeader(void* stream);

    // Passes an opening tag to handlePropSpecial() and, unless that handled it, to
    // handlePropGeneric(). Returns true, and counts the element, when either handled it.
    virtual bool handleProp(OLMXMLTag& tag, OLMXMLParser& parser);

    // Handles tags whose id is a property tag of type string, time or 32-bit integer. Returns true
    // when it handled the tag.
    virtual bool handlePropGeneric(OLMXMLTag& tag, OLMXMLParser& parser);

    // Handles the tags that are special to an item kind. Returns true when the element was read,
    // its contents included. The base class handles no tag.
    virtual bool handlePropSpecial(OLMXMLTag& tag, OLMXMLParser& parser);

    // Writes the named properties. Returns 0. Throws what MapiNamedPropMap::finalizeMappings()
    // throws.
    virtual unsigned int writeNamedProps(void* storage);

    // Appends an entry. Adding a tag twice makes two entries.
    virtual void addProperty(unsigned int tag, unsigned long long value);

    // Each writes a number in little-endian byte order. Throws qor::Exception ErrShortWrite when
    // fewer bytes were written, whatever the status is.
    static void writeWordProp(HostStream* stream, uint16_t value);
    static void writeDwordProp(HostStream* stream, uint32_t value);
    static void writeQwordProp(HostStream* stream, uint64_t value);

    // Writes a terminator of two zero bytes. Throws as above.
    static void appendNulToStream(HostStream* stream);

    // Writes one entry. Returns 0, or the code of the qor::Exception that a write threw.
    static unsigned int writeProperty(HostStream* stream, const MsgPropPair& pair);

    // Writes `size` bytes. Returns the number of bytes written, or 0 when the stream fails.
    static unsigned int writeStringProp(HostStream* stream, const unsigned char* bytes, long size);

    // Writes the text in UTF-16LE without a terminator. Returns the number of bytes written, or 0
    // when the stream fails.
    static unsigned int writeStringProp(HostStream* stream, const qor::WString& text);

    // Copies the text of the current element in chunks. Returns the number of bytes written, modulo
    // 2^32.
    static unsigned int writeStringProp(HostStream* stream, OLMXMLParser& parser);

    // Makes the stream of `tag` in `storage` and writes the text to it. Returns the number of bytes
    // written, to which the caller adds 2 for the size in the entry.
    static unsigned int writeStringProp(HostStream* storage, unsigned int tag,
                                        const qor::WString& text);

    // Writes a multiple-valued string ([MS-OXMSG] 2.1.4): the stream of lengths and a stream for
    // each value. Returns the size for the entry, 4 times the number of values; 0 after a short
    // write.
    static unsigned int writeStringProp(HostStream* storage, unsigned int tag,
                                        const qor::ArrayList<qor::WString*>& values);

    // Makes a storage in `parent` (a HostStream) and returns it; the caller closes it. Throws
    // qor::Exception with the status of the host. A name of more than 128 units is cut, here and
    // below.
    static HostStream* createSubStorageFromWString(void* parent, const qor::WString& name);

    // Makes a stream and returns it, or null on failure; the caller closes it.
    static HostStream* createSubStreamFromWString(void* parent, const qor::WString& name);

    // The same for the value of a property: __substg1.0_XXXXYYYY.
    static HostStream* createSubStreamFromProp(void* storage, unsigned int tag);

    // The same for one value of a multiple-valued property: __substg1.0_XXXXYYYY-NNNNNNNN.
    static HostStream* createSubStreamFromProp(void* storage, unsigned int tag, unsigned int index);

    // Converts ISO 8601 text (see qor::Date::iso8601ToJulian) to 100-nanosecond units since 1601,
    // less one second.
    static unsigned long long convertDateProp(const qor::WString& text);

    // The same for the text of the current element; 0 without text.
    static unsigned long long convertDateProp(OLMXMLParser& parser);

protected:
    // Begins the message of an item kind: adds the tag table to the reader, calls this class's
    // initilizeWriter() and adds the required properties. Throws qor::Exception ErrTagTable when
    // the reader refuses the table, and what initilizeWriter() throws.
    void beginMessage(OLMXMLParser& parser, std::span<const UTXML_STRVALPAIR> table,
                      const qor::WString& messageClass);

    // Adds the seven properties with which every message begins.
    void createRequiredProps(const qor::WString& messageClass);

    // Each adds a property with an empty stream; the size is 0 for a binary value and 2 for a
    // string. When the stream can't be made the property is left out.
    void createEmptyBinaryProp(unsigned int tag);
    void createEmptyStringProp(unsigned int tag);

    // Adds the text as the string property `tag`. When the stream can't be made the property is
    // left out.
    void createStringProp(unsigned int tag, const qor::WString& text);

    // Calls `add`, which adds properties. A qor::Exception ErrUnknown, for a named property that no
    // row has, ends the call and is ignored; any other qor::Exception is thrown on as a copy.
    template <class Action> static void leaveOutUnknown(Action add);

    // Each adds the named property `key`, a MapiNamedPropKey, or leaves it out as above.
    void addNamedProperty(unsigned int key, uint64_t value);
    void createNamedStringProp(unsigned int key, const qor::WString& text);

    // Writes the header of the property stream with that number of attachments. Returns what
    // writeMessageHeader() returns.
    unsigned int writeHeaderNumbers(void* stream, uint32_t attachments);

    // Reads a category list into PidNameKeywords. `closingTag` is the id of the list itself, which
    // ends it. Throws qor::Exception ErrShortWrite.
    void handleCategories(OLMXMLParser& parser, unsigned int closingTag);

    // Writes one value of a multiple-valued string with its terminator. Returns its size in bytes,
    // terminator included. Throws qor::Exception ErrShortWrite.
    unsigned int writeCategory(unsigned int tag, long index, const qor::WString& value);

    MapiNamedPropMap namedProps;
    int32_t recipientCount = 0;              // recipient storages made so far
    qor::ArrayList<MsgPropPair*> properties; // in order of addition; the pairs are owned
    SODOSPECIALARC* request;                 // not owned
    HostStream* rootStorage = nullptr;       // owned
    uint32_t rootTag = 0;                    // id of the item's element
    uint32_t expectedProps = 1;              // rows of the writer's tag table; not 0
    uint32_t handledProps = 0;               // elements that a handler handled

private:
    static unsigned int writeListedString(HostStream* storage, unsigned int tag, unsigned int index,
                                          const qor::WString& value);
};

template <class Action> void OLMMsgWriter::leaveOutUnknown(Action add) {
    try {
        add();
    } catch (const qor::Exception& failure) {
        if (failure.code != ErrUnknown) {
            throw qor::Exception(failure);
        }
    }
}

#endif
