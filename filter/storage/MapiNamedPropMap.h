#ifndef OLMKIT_FILTER_STORAGE_MAPINAMEDPROPMAP_H
#define OLMKIT_FILTER_STORAGE_MAPINAMEDPROPMAP_H

#include <cstdint>

#include "filter/boundary/HostStream.h"
#include "filter/core/ArrayList.h"
#include "filter/core/WString.h"
#include "filter/storage/MapiGUIDIndex.h"
#include "filter/storage/MapiGUIDMap.h"
#include "filter/storage/MapiNamedProp.h"

// Assigns tags to the named properties of one message and writes the __nameid_version1.0 storage
// ([MS-OXMSG] 2.2.3), by which a reader finds out what the tags mean.
//
// Order of calls: initialize() once, mapNamedProp() any number of times, finalizeMappings() once.
// Tags follow the order of mapping alone, so a property has different tags in different messages.
// initialize() makes the streams and finalizeMappings() fills them. A stream that the host did not
// make takes no bytes, so that writing to it fails as a short write.
class MapiNamedPropMap {
public:
    static constexpr int supportedPropCount = 41;

    // All named properties that a message may contain. Filled when the module is loaded, and only
    // read after that.
    static const MapiNamedProp supportedProps[supportedPropCount];

    MapiNamedPropMap() = default;
    MapiNamedPropMap(const MapiNamedPropMap&) = delete;
    MapiNamedPropMap& operator=(const MapiNamedPropMap&) = delete;

    // Closes the open handles of the map. The root storage may be closed already.
    ~MapiNamedPropMap();

    // Makes the storage and its three fixed streams in `rootStorage` (a HostStream, borrowed).
    // Throws qor::Exception with the status of the host when the storage can't be made.
    void initialize(void* rootStorage);

    // Maps a numeric name by its MapiNamedPropKey and returns its tag in this message. Every call
    // maps a new property with its own tag, even for a key that was mapped before, so it must be
    // called once for each value that is written. Throws qor::Exception ErrUnknown for a key that
    // no row has. REQUIRES: fewer than 0x8000 properties were mapped.
    unsigned int mapNamedProp(unsigned int key);

    // The same for the string name with the hash code of `name`; `type` is the property type.
    unsigned int mapNamedProp(const qor::WString& name, unsigned short type);

    // Writes all streams. Throws qor::Exception: ErrShortWrite, and ErrUnknown for a row outside
    // the table. Streams then keep what was written.
    void finalizeMappings();

    // Write the entries of one property; `number` is its position in the order of mapping.
    void finalizeNumericProperty(const MapiNamedProp& row, long number);
    void finalizeStringProperty(const MapiNamedProp& row, long number);

    // Adds the name to the string stream unless it is there, and returns the offset for its entry.
    // Throws qor::Exception ErrUnknown for a name that no row has.
    long addStringToList(const MapiNamedProp& row);

    // Adds an entry to the bucket stream of the property, which is made when it is first needed.
    void writeMappingStream(const MapiNamedProp& row, unsigned short kindWord,
                            unsigned short number);

    // Write the GUID stream and the string stream.
    void writeGUIDStream(qor::ArrayList<MapiGUIDIndex>& list);
    void writeStringStream();

    // Returns the CRC-32 of the name in UTF-16LE (see qor::CRC32Checksum), for names whose
    // characters fit in 8 bits.
    static unsigned int calculateCRC32(const qor::WString& name);

protected:
    qor::ArrayList<long> mappedProps;       // rows of supportedProps, by the number of the property
    MapiGUIDMap guidMap;                    // access to the GUIDs
    HostStream* nameIdStorage = nullptr;    // owned
    HostStream* guidStream = nullptr;       // owned
    HostStream* entryStream = nullptr;      // owned
    HostStream* stringStream = nullptr;     // owned
    qor::ArrayList<void*> bucketStreams;    // HostStream by bucket, null until used; owned
    qor::ArrayList<MapiGUIDIndex> guidList; // in order of first use, without duplicates
    qor::ArrayList<long> stringList;        // rows of string names, likewise

private:
    unsigned int addMapping(int row, unsigned int type);
    HostStream* bucketStream(unsigned int bucket);
};

#endif
