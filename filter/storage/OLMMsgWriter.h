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

// Turns one item of the archive into a message storage. Base of the writers of all item kinds,
// which add their tag table, their handlePropSpecial() and their default properties.
//
// Order of calls: initilizeWriter() once, writeNode() until it gives 100, finalizeNode(). A writer
// serves one item. Long values go to their streams as the element is read; the entries that
// describe them wait for finalizeNode(), since the header before them holds counts that are final
// only then.
//
// Streams and storages of the static operations are handles of the host, always borrowed. A null
// stream takes no bytes, so that writing to it is a short write; nothing can be made in a null
// storage, and the host is not asked.
class OLMMsgWriter : public OLMNodeWriter {
public:
    // `request` is not owned and must outlive the writer. Touches no storage.
    explicit OLMMsgWriter(SODOSPECIALARC* request);
    OLMMsgWriter(const OLMMsgWriter&) = delete;
    OLMMsgWriter& operator=(const OLMMsgWriter&) = delete;

    // Closes the root storage, and after it what namedProps has open below it.
    ~OLMMsgWriter() override;

    // Makes the root storage and the storage of named properties and reads the item's opening tag.
    // 0, or 0xFFFFFFFF when the root storage can't be made. Throws qor::Exception ErrUnknown when
    // the item's tag is missing or unknown.
    unsigned int initilizeWriter(OLMXMLParser& parser) override;

    // Handles the next tag. Gives elements handled as a percentage of those expected, unclamped;
    // 100 ends the item: at its root tag, at the end of the document, or once as many elements
    // were handled as expected, however many follow. Throws what handlers throw.
    int16_t writeNode(OLMXMLParser& parser) override;

    // Writes the property stream and the named properties. 0, or 461 when writeNamedProps()
    // failed. A property stream that can't be made or takes no more stays as it is.
    unsigned int finalizeNode(OLMXMLParser& parser) override;

    // Writes the 32 bytes ahead of the entries to `stream` (a HostStream). 0, or the code of the
    // qor::Exception that a write raised.
    virtual unsigned int writeMessageHeader(void* stream);

    // Offers an opening tag to handlePropSpecial() and then to handlePropGeneric(), and counts it
    // when one took it. True when one did.
    virtual bool handleProp(OLMXMLTag& tag, OLMXMLParser& parser);

    // Takes tags whose id is a property tag of type string, time or 32-bit integer.
    virtual bool handlePropGeneric(OLMXMLTag& tag, OLMXMLParser& parser);

    // True when the element was consumed, its content included. The base takes none.
    virtual bool handlePropSpecial(OLMXMLTag& tag, OLMXMLParser& parser);

    // Finishes namedProps. 0. Throws what MapiNamedPropMap::finalizeMappings throws.
    virtual unsigned int writeNamedProps(void* storage);

    // Appends an entry. Two additions of one tag are two entries.
    virtual void addProperty(unsigned int tag, unsigned long long value);

    // Each writes its number, little-endian. Throws qor::Exception ErrShortWrite when the stream
    // took fewer bytes, whatever status it gave.
    static void writeWordProp(HostStream* stream, uint16_t value);
    static void writeDwordProp(HostStream* stream, uint32_t value);
    static void writeQwordProp(HostStream* stream, uint64_t value);

    // Writes two zero bytes. Throws as above.
    static void appendNulToStream(HostStream* stream);

    // Writes one entry. 0, or the code of the qor::Exception that a write raised.
    static unsigned int writeProperty(HostStream* stream, const MsgPropPair& pair);

    // Writes `size` bytes. The count written, 0 when the stream reports a failure.
    static unsigned int writeStringProp(HostStream* stream, const unsigned char* bytes, long size);

    // Writes the text in UTF-16LE with no terminator. Bytes written, 0 when the stream reports a
    // failure.
    static unsigned int writeStringProp(HostStream* stream, const qor::WString& text);

    // Copies the current element's text in chunks; one of any length is never held whole. Bytes
    // written, modulo 2^32.
    static unsigned int writeStringProp(HostStream* stream, OLMXMLParser& parser);

    // Makes the stream of `tag` in `storage` and writes the text to it. Bytes written: the caller
    // adds 2 for the size in the entry.
    static unsigned int writeStringProp(HostStream* storage, unsigned int tag,
                                        const qor::WString& text);

    // Writes a multi-valued string: the stream of lengths and a stream for each value. 4 times the
    // number of values, which is what the entry holds; 0 after a short write.
    static unsigned int writeStringProp(HostStream* storage, unsigned int tag,
                                        const qor::ArrayList<qor::WString*>& values);

    // Makes a storage in `parent` (a HostStream); the caller closes it. Throws qor::Exception with
    // the host's status. Names are cut at 128 units here and below.
    static HostStream* createSubStorageFromWString(void* parent, const qor::WString& name);

    // Makes a stream; the caller closes it. Null on failure.
    static HostStream* createSubStreamFromWString(void* parent, const qor::WString& name);

    // The same for a property's value: __substg1.0_XXXXYYYY.
    static HostStream* createSubStreamFromProp(void* storage, unsigned int tag);

    // The same for one value of a multi-valued property: __substg1.0_XXXXYYYY-NNNNNNNN.
    static HostStream* createSubStreamFromProp(void* storage, unsigned int tag, unsigned int index);

    // ISO 8601 text in 100-nanosecond units since 1601, one second short of the true distance.
    static unsigned long long convertDateProp(const qor::WString& text);

    // The same for the current element's text; 0 when there is none.
    static unsigned long long convertDateProp(OLMXMLParser& parser);

protected:
    // How the message of a kind begins: gives the kind's table to the reader, then does what this
    // class's initilizeWriter() does, and adds the required entries. Throws qor::Exception
    // ErrTagTable for a refused table, and what initilizeWriter() throws.
    void beginMessage(OLMXMLParser& parser, std::span<const UTXML_STRVALPAIR> table,
                      const qor::WString& messageClass);

    // Adds the seven entries that every message begins with.
    void createRequiredProps(const qor::WString& messageClass);

    // Each adds an entry with an empty stream, of size 0 or 2 as the type wants it. Without the
    // stream there is no entry.
    void createEmptyBinaryProp(unsigned int tag);
    void createEmptyStringProp(unsigned int tag);

    // Adds the text as the string property `tag`. Without the stream there is no entry.
    void createStringProp(unsigned int tag, const qor::WString& text);

    // Runs the action, which adds properties. One that meets a named property without a row (a
    // qor::Exception ErrUnknown) ends there and no more is said; any other qor::Exception is
    // thrown on as a copy.
    template <class Action> static void leaveOutUnknown(Action add);

    // Each adds the named property `key` (see MapiNamedPropMap), or leaves it out as above.
    void addNamedProperty(unsigned int key, uint64_t value);
    void createNamedStringProp(unsigned int key, const qor::WString& text);

    // Writes the 32 bytes of writeMessageHeader() with that number of attachments and gives what
    // it gives.
    unsigned int writeHeaderNumbers(void* stream, uint32_t attachments);

    // Turns a category list into the named property Keywords. `closingTag` is the list's own id,
    // which ends it. Throws qor::Exception ErrShortWrite.
    void handleCategories(OLMXMLParser& parser, unsigned int closingTag);

    // Writes one value of a multi-valued string with its terminator. Its size in bytes, terminator
    // included. Throws qor::Exception ErrShortWrite.
    unsigned int writeCategory(unsigned int tag, long index, const qor::WString& value);

    MapiNamedPropMap namedProps;
    int32_t recipientCount = 0;              // recipient storages made so far
    qor::ArrayList<MsgPropPair*> properties; // in order of addition; the pairs are owned
    SODOSPECIALARC* request;                 // not owned
    HostStream* rootStorage = nullptr;       // owned
    uint32_t rootTag = 0;                    // id of the item's root element
    uint32_t expectedProps = 1;              // rows of the writer's tag table; never 0
    uint32_t handledProps = 0;               // elements that a handler took

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
