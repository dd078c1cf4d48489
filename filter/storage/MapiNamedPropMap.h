#ifndef OLMKIT_FILTER_STORAGE_MAPINAMEDPROPMAP_H
#define OLMKIT_FILTER_STORAGE_MAPINAMEDPROPMAP_H

#include <cstdint>

#include "filter/boundary/HostStream.h"
#include "filter/core/ArrayList.h"
#include "filter/core/WString.h"
#include "filter/storage/MapiGUIDIndex.h"
#include "filter/storage/MapiGUIDMap.h"
#include "filter/storage/MapiNamedProp.h"

// Gives the named properties of one message their tags and writes the message's
// __nameid_version1.0 storage, which tells a reader what the tags mean.
//
// Order of calls: initialize() once, mapNamedProp() any number of times, finalizeMappings() once.
// Tags follow the order of mapping alone, so one property has different tags in different
// messages. Streams are made by initialize() and filled by finalizeMappings().
//
// A stream that the host did not make takes no bytes: the first write to it is a short one.
class MapiNamedPropMap {
public:
    static constexpr int supportedPropCount = 41;

    // Every named property that can be written, shared by all messages; filled when the module is
    // loaded and only read after that.
    static const MapiNamedProp supportedProps[supportedPropCount];

    MapiNamedPropMap() = default;
    MapiNamedPropMap(const MapiNamedPropMap&) = delete;
    MapiNamedPropMap& operator=(const MapiNamedPropMap&) = delete;

    // Closes what the map has open. Does not need the root storage, which may be closed already.
    ~MapiNamedPropMap();

    // Makes the storage and its three fixed streams in `rootStorage` (a HostStream, borrowed).
    // Throws qor::Exception with the host's status when the storage can't be made.
    void initialize(void* rootStorage);

    // The tag in this message of the numeric name whose row has the propTag `key`. Every call is a
    // new property with a tag of its own, also for a key that was mapped before: ask once for a
    // value that is written. Fewer than 0x8000 may be mapped. Throws qor::Exception ErrUnknown for
    // a key without a row.
    unsigned int mapNamedProp(unsigned int key);

    // The same for the string name with the hash code of `name`; `type` is the property type.
    unsigned int mapNamedProp(const qor::WString& name, unsigned short type);

    // Fills all streams. Throws qor::Exception: ErrShortWrite, and ErrUnknown for a row that is
    // none. Streams then keep what they have.
    void finalizeMappings();

    // The steps of finalizeMappings(), for one property with its number in order of mapping.
    void finalizeNumericProperty(const MapiNamedProp& row, long number);
    void finalizeStringProperty(const MapiNamedProp& row, long number);

    // Lists the name for the string stream, once, and gives what entries hold as its offset.
    // Throws qor::Exception ErrUnknown for a name that no row has.
    long addStringToList(const MapiNamedProp& row);

    // Adds an entry to the property's bucket stream, which is made when it is first needed.
    void writeMappingStream(const MapiNamedProp& row, unsigned short kindWord,
                            unsigned short number);

    void writeGUIDStream(qor::ArrayList<MapiGUIDIndex>& list);
    void writeStringStream();

    // CRC-32 (reflected, polynomial 0xEDB88320, from 0, not inverted at the end) over the name in
    // UTF-16LE, for names whose characters fit in 8 bits.
    static unsigned int calculateCRC32(const qor::WString& name);

protected:
    qor::ArrayList<long> mappedProps;       // rows of supportedProps, by number of the property
    MapiGUIDMap guidMap;                    // the way to the GUIDs
    HostStream* nameIdStorage = nullptr;    // owned
    HostStream* guidStream = nullptr;       // owned
    HostStream* entryStream = nullptr;      // owned
    HostStream* stringStream = nullptr;     // owned
    qor::ArrayList<void*> bucketStreams;    // HostStream by bucket, null until used; owned
    qor::ArrayList<MapiGUIDIndex> guidList; // in order of first use, none twice
    qor::ArrayList<long> stringList;        // rows of string names, likewise

private:
    unsigned int addMapping(int row, unsigned int type);
    long positionOfSet(MapiGUIDIndex set);
    HostStream* bucketStream(unsigned int bucket);
};

#endif
