#include "filter/storage/MapiNamedPropMap.h"

#include "filter/core/CRC32Checksum.h"
#include "filter/core/Exception.h"
#include "filter/core/String.h"
#include "filter/storage/MapiPropType.h"
#include "filter/storage/OLMMsgWriter.h"
#include "filter/storage/WriterErrors.h"

namespace {

constexpr unsigned int firstNamedTag = 0x80000000;
constexpr int bucketCount = 31;
constexpr unsigned int firstBucketId = 0x1000;

// A kind word has the property kind in bit 0 and the GUID index above it ([MS-OXMSG] 2.2.3.1.2).
constexpr int stringNameBit = 1;

// GUID indexes: 1 is PS_MAPI, and the sets of the GUID stream follow PS_PUBLIC_STRINGS.
constexpr int publicStringsIndex = 2;
constexpr long firstListedSet = 3;

constexpr unsigned short publicStringKind = publicStringsIndex * 2 + stringNameBit;

// Returns the position of `value` in `list`, to which it is added when it is missing.
template <typename T> long listedPosition(qor::ArrayList<T>& list, T value) {
    const int count = list.size();
    for (int position = 0; position < count; ++position) {
        if (list.get(position) == value) {
            return position;
        }
    }
    list.add(value);
    return count;
}

void closeStream(HostStream* stream) {
    if (stream != nullptr) {
        stream->close(stream);
    }
}

void writeEntry(HostStream* stream, uint32_t nameWord, unsigned short kindWord, long number) {
    OLMMsgWriter::writeDwordProp(stream, nameWord);
    OLMMsgWriter::writeWordProp(stream, kindWord);
    OLMMsgWriter::writeWordProp(stream, static_cast<uint16_t>(number));
}

} // namespace

MapiNamedPropMap::~MapiNamedPropMap() {
    closeStream(guidStream);
    closeStream(entryStream);
    closeStream(stringStream);
    const int count = bucketStreams.size();
    for (int bucket = 0; bucket < count; ++bucket) {
        closeStream(static_cast<HostStream*>(bucketStreams.get(bucket)));
    }
    closeStream(nameIdStorage);
}

void MapiNamedPropMap::initialize(void* rootStorage) {
    nameIdStorage = nullptr;
    guidStream = nullptr;
    entryStream = nullptr;
    stringStream = nullptr;

    nameIdStorage = OLMMsgWriter::createSubStorageFromWString(rootStorage, "__nameid_version1.0");
    guidStream = OLMMsgWriter::createSubStreamFromWString(nameIdStorage, "__substg1.0_00020102");
    entryStream = OLMMsgWriter::createSubStreamFromWString(nameIdStorage, "__substg1.0_00030102");
    stringStream = OLMMsgWriter::createSubStreamFromWString(nameIdStorage, "__substg1.0_00040102");

    for (int bucket = 0; bucket < bucketCount; ++bucket) {
        bucketStreams.add(nullptr);
    }
}

unsigned int MapiNamedPropMap::mapNamedProp(unsigned int key) {
    for (int row = 0; row < supportedPropCount; ++row) {
        if (supportedProps[row].propTag == key) {
            return addMapping(row, propertyType(key));
        }
    }
    throw qor::Exception(ErrUnknown);
}

unsigned int MapiNamedPropMap::mapNamedProp(const qor::WString& name, unsigned short type) {
    const int hash = name.hashCode();
    for (int row = 0; row < supportedPropCount; ++row) {
        const MapiNamedProp& prop = supportedProps[row];
        if (prop.isStringName && prop.name.hashCode() == hash) {
            return addMapping(row, type);
        }
    }
    throw qor::Exception(ErrUnknown);
}

// A row that was mapped before gets one more number on purpose: each value has its own.
unsigned int MapiNamedPropMap::addMapping(int row, unsigned int type) {
    const auto number = static_cast<unsigned int>(mappedProps.size());
    mappedProps.add(row);
    return firstNamedTag | number << 16 | type;
}

void MapiNamedPropMap::finalizeMappings() {
    const int count = mappedProps.size();
    for (int number = 0; number < count; ++number) {
        const MapiNamedProp& row = supportedProps[mappedProps.get(number)];
        if (row.isStringName) {
            finalizeStringProperty(row, number);
        } else {
            finalizeNumericProperty(row, number);
        }
    }
    if (guidList.size() != 0) {
        writeGUIDStream(guidList);
    }
    if (stringList.size() != 0) {
        writeStringStream();
    }
}

void MapiNamedPropMap::finalizeNumericProperty(const MapiNamedProp& row, long number) {
    const long set = listedPosition(guidList, row.guidSet);
    const auto kindWord = static_cast<unsigned short>((set + firstListedSet) * 2);
    writeEntry(entryStream, row.propTag >> 16, kindWord, number);
    writeMappingStream(row, kindWord, static_cast<unsigned short>(number));
}

void MapiNamedPropMap::finalizeStringProperty(const MapiNamedProp& row, long number) {
    unsigned short kindWord = publicStringKind;
    if (row.guidSet != SetPublicStrings) {
        // Without firstListedSet, unlike a numeric name, on purpose.
        const long set = listedPosition(guidList, row.guidSet);
        kindWord = static_cast<unsigned short>(set * 2 + stringNameBit);
    }
    const long offset = addStringToList(row);
    writeEntry(entryStream, static_cast<uint32_t>(offset), kindWord, number);
    writeMappingStream(row, kindWord, static_cast<unsigned short>(number));
}

long MapiNamedPropMap::addStringToList(const MapiNamedProp& row) {
    const auto hash = static_cast<uint32_t>(row.name.hashCode());
    long found = 0;
    while (!supportedProps[found].isStringName || supportedProps[found].propTag != hash) {
        if (++found == supportedPropCount) {
            throw qor::Exception(ErrUnknown);
        }
    }
    const long position = listedPosition(stringList, found);

    // Counts units of the first rows of the table, so only the first name gets a true offset. The
    // table has one string name, whose offset is 0.
    long offset = 4 * position;
    for (long before = 0; before < position; ++before) {
        offset += supportedProps[before].name.length();
    }
    return offset;
}

void MapiNamedPropMap::writeMappingStream(const MapiNamedProp& row, unsigned short kindWord,
                                          unsigned short number) {
    uint32_t nameId = row.propTag >> 16;
    if (row.isStringName) {
        nameId = row.nameCrc != 0 ? row.nameCrc : calculateCRC32(row.name);
    }
    writeEntry(bucketStream((kindWord ^ nameId) % bucketCount), nameId, kindWord, number);
}

HostStream* MapiNamedPropMap::bucketStream(unsigned int bucket) {
    const int slot = static_cast<int>(bucket);
    if (bucketStreams.get(slot) == nullptr) {
        const unsigned int tag = (firstBucketId + bucket) << 16 | TypeBinary;
        HostStream* stream = OLMMsgWriter::createSubStreamFromProp(nameIdStorage, tag);
        bucketStreams.remove(slot);
        bucketStreams.insert(slot, stream);
    }
    return static_cast<HostStream*>(bucketStreams.get(slot));
}

void MapiNamedPropMap::writeGUIDStream(qor::ArrayList<MapiGUIDIndex>& list) {
    const int count = list.size();
    for (int position = 0; position < count; ++position) {
        const MapiGUID* guid = guidMap.getMaipGuid(list.get(position));
        OLMMsgWriter::writeDwordProp(guidStream, static_cast<uint32_t>(guid->first));
        OLMMsgWriter::writeWordProp(guidStream, guid->second);
        OLMMsgWriter::writeWordProp(guidStream, guid->third);
        OLMMsgWriter::writeStringProp(guidStream, guid->last, sizeof guid->last);
    }
}

void MapiNamedPropMap::writeStringStream() {
    const int count = stringList.size();
    for (int position = 0; position < count; ++position) {
        const long row = stringList.get(position);
        if (row >= supportedPropCount) {
            throw qor::Exception(ErrUnknown);
        }
        const qor::WString& name = supportedProps[row].name;
        OLMMsgWriter::writeDwordProp(stringStream, 2 * static_cast<uint32_t>(name.length()));
        OLMMsgWriter::writeStringProp(stringStream, name);
    }
}

unsigned int MapiNamedPropMap::calculateCRC32(const qor::WString& name) {
    const qor::String narrow = name.toString();
    qor::CRC32Checksum checksum;
    for (int index = 0; index < narrow.length(); ++index) {
        checksum.update(static_cast<unsigned char>(narrow.value()[index]));
        checksum.update(0);
    }
    return static_cast<unsigned int>(checksum.getValue().toLong(0, nullptr, 10));
}
