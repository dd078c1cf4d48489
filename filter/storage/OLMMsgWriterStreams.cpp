// The static operations of OLMMsgWriter.

#include <bit>
#include <iterator>

#include "filter/boundary/Storage.h"
#include "filter/core/Date.h"
#include "filter/core/Exception.h"
#include "filter/storage/OLMMsgWriter.h"
#include "filter/storage/OpenHandle.h"
#include "filter/storage/WriterErrors.h"

// Numbers and text are written as they are in memory.
static_assert(std::endian::native == std::endian::little);

namespace {

constexpr uint32_t maxNameUnits = std::size(StorageSpec{}.name);

// From 1601 to 1970 in 100-nanosecond units, less one second on purpose: the date for "no date"
// (see qor::Date::iso8601ToJulian) becomes exactly 0.
constexpr uint64_t timeOf1970 = 116444735990000000;
constexpr uint64_t timeUnitsPerMillisecond = 10000;

constexpr const char* valueStreamPrefix = "__substg1.0_";
constexpr int valueStreamUnits = 12 + 8 + 1 + 8;

// Writes the bytes, stores the status and returns how many were written.
uint32_t writeCounted(HostStream* stream, const void* data, uint32_t size, int32_t& status) {
    uint32_t count = 0;
    status = stream == nullptr ? -1 : stream->write(stream, data, size, &count);
    return count;
}

void writeWhole(HostStream* stream, const void* data, uint32_t size) {
    int32_t status = 0;
    if (writeCounted(stream, data, size, status) < size) {
        throw qor::Exception(ErrShortWrite);
    }
}

unsigned int writeBytes(HostStream* stream, const void* data, uint32_t size) {
    int32_t status = 0;
    const uint32_t count = writeCounted(stream, data, size, status);
    return status == 0 ? count : 0;
}

void appendHex(qor::WString& name, unsigned int value) {
    name.appendInteger(value, 8, 16, false, false);
}

qor::WString valueStreamName(unsigned int tag) {
    qor::WString name;
    name.insureCapacity(valueStreamUnits);
    name.append(valueStreamPrefix);
    appendHex(name, tag);
    return name;
}

} // namespace

void OLMMsgWriter::writeWordProp(HostStream* stream, uint16_t value) {
    writeWhole(stream, &value, sizeof value);
}

void OLMMsgWriter::writeDwordProp(HostStream* stream, uint32_t value) {
    writeWhole(stream, &value, sizeof value);
}

void OLMMsgWriter::writeQwordProp(HostStream* stream, uint64_t value) {
    writeWhole(stream, &value, sizeof value);
}

void OLMMsgWriter::appendNulToStream(HostStream* stream) {
    writeWordProp(stream, 0);
}

unsigned int OLMMsgWriter::writeProperty(HostStream* stream, const MsgPropPair& pair) {
    try {
        writeDwordProp(stream, pair.tag);
        writeDwordProp(stream, pair.flags);
        writeQwordProp(stream, pair.value);
    } catch (const qor::Exception& failure) {
        return failure.code;
    }
    return 0;
}

unsigned int OLMMsgWriter::writeStringProp(HostStream* stream, const unsigned char* bytes,
                                           long size) {
    return writeBytes(stream, bytes, static_cast<uint32_t>(size));
}

unsigned int OLMMsgWriter::writeStringProp(HostStream* stream, const qor::WString& text) {
    return writeBytes(stream, text.value(), 2 * static_cast<uint32_t>(text.length()));
}

unsigned int OLMMsgWriter::writeStringProp(HostStream* stream, OLMXMLParser& parser) {
    unsigned int total = 0;
    qor::WString chunk;
    while (parser.content(chunk, OLMXMLParser::chunkUnits) != 0) {
        total += writeStringProp(stream, chunk);
    }
    return total;
}

unsigned int OLMMsgWriter::writeStringProp(HostStream* storage, unsigned int tag,
                                           const qor::WString& text) {
    const OpenHandle stream(createSubStreamFromProp(storage, tag));
    return writeStringProp(stream.get(), text);
}

unsigned int OLMMsgWriter::writeStringProp(HostStream* storage, unsigned int tag,
                                           const qor::ArrayList<qor::WString*>& values) {
    const OpenHandle lengths(createSubStreamFromProp(storage, tag));
    const int count = values.size();
    try {
        for (int index = 0; index < count; ++index) {
            const unsigned int size = writeListedString(storage, tag, index, *values.get(index));
            writeDwordProp(lengths.get(), size);
        }
    } catch (const qor::Exception&) {
        return 0;
    }
    return 4 * static_cast<unsigned int>(count);
}

unsigned int OLMMsgWriter::writeListedString(HostStream* storage, unsigned int tag,
                                             unsigned int index, const qor::WString& value) {
    const OpenHandle stream(createSubStreamFromProp(storage, tag, index));
    const unsigned int size = writeStringProp(stream.get(), value);
    appendNulToStream(stream.get());
    return size + 2;
}

HostStream* OLMMsgWriter::createSubStorageFromWString(void* parent, const qor::WString& name) {
    if (parent == nullptr) {
        throw qor::Exception(ErrNoStorage);
    }
    HostStream* storage = nullptr;
    StorageSpec record = {};
    record.parent = static_cast<HostStream*>(parent);
    _UTwstrncpy(record.name, name.value(), maxNameUnits);

    const int32_t status = IOCreate(&storage, IOSubStorage, &record, IOStorageFlags);
    if (status != 0) {
        throw qor::Exception(static_cast<unsigned int>(status));
    }
    return storage;
}

HostStream* OLMMsgWriter::createSubStreamFromWString(void* parent, const qor::WString& name) {
    if (parent == nullptr) {
        return nullptr;
    }
    HostStream* stream = nullptr;
    StorageSpec record; // not cleared: _UTwstrncpy fills the whole name
    record.parent = static_cast<HostStream*>(parent);
    _UTwstrncpy(record.name, name.value(), maxNameUnits);

    IOCreate(&stream, IOStream, &record, IOStreamFlags);
    return stream;
}

HostStream* OLMMsgWriter::createSubStreamFromProp(void* storage, unsigned int tag) {
    return createSubStreamFromWString(storage, valueStreamName(tag));
}

HostStream* OLMMsgWriter::createSubStreamFromProp(void* storage, unsigned int tag,
                                                  unsigned int index) {
    qor::WString name = valueStreamName(tag);
    name.append("-");
    appendHex(name, index);
    return createSubStreamFromWString(storage, name);
}

unsigned long long OLMMsgWriter::convertDateProp(const qor::WString& text) {
    const qor::Date date(qor::Date::iso8601ToJulian(text.value()));
    return static_cast<uint64_t>(date.getTime()) * timeUnitsPerMillisecond + timeOf1970;
}

unsigned long long OLMMsgWriter::convertDateProp(OLMXMLParser& parser) {
    qor::WString text;
    if (parser.content(text) == 0) {
        return 0;
    }
    return convertDateProp(text);
}
