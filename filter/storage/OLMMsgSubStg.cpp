#include "filter/storage/OLMMsgSubStg.h"

#include <algorithm>
#include <array>

#include "filter/core/Exception.h"
#include "filter/storage/MapiPropType.h"
#include "filter/storage/OLMMsgWriter.h"
#include "filter/storage/OpenHandle.h"

namespace {

// Bytes that are copied at a time.
constexpr uint32_t copySize = 1024;

constexpr int32_t noStream = -1;

constexpr uint32_t tagOf(unsigned short id, MapiPropType type) {
    return uint32_t{id} << 16 | type;
}

constexpr uint64_t signExtended(int64_t value) {
    return static_cast<uint64_t>(value);
}

struct CopyResult {
    uint64_t size = 0; // bytes that `target` took
    bool isWhole = false;
};

CopyResult copyStream(HostStream* source, HostStream* target) {
    std::array<unsigned char, copySize> buffer; // not cleared: only the bytes read are used
    CopyResult result;
    for (;;) {
        uint32_t bytesRead = 0;
        if (source->read(source, buffer.data(), copySize, &bytesRead) != 0) {
            result.isWhole = true;
            return result;
        }
        uint32_t bytesWritten = 0;
        if (target->write(target, buffer.data(), std::min(bytesRead, copySize), &bytesWritten) !=
            0) {
            return result;
        }
        result.size += bytesWritten;
    }
}

} // namespace

OLMMsgSubStg::~OLMMsgSubStg() {
    if (propStream != nullptr) {
        propStream->close(propStream);
    }
    if (storage != nullptr) {
        storage->close(storage);
    }
}

bool OLMMsgSubStg::addProperty(unsigned short id, short value) {
    return addEntry(tagOf(id, TypeBoolean), signExtended(value));
}

bool OLMMsgSubStg::addProperty(unsigned short id, int value) {
    return addEntry(tagOf(id, TypeInteger32), signExtended(value));
}

bool OLMMsgSubStg::addProperty(unsigned short id, unsigned long long value) {
    return addEntry(tagOf(id, TypeTime), value);
}

bool OLMMsgSubStg::addProperty(unsigned short id, const qor::WString& value) {
    const uint32_t tag = tagOf(id, TypeString);
    OpenHandle stream(OLMMsgWriter::createSubStreamFromProp(storage, tag));
    if (stream == nullptr) {
        return false;
    }
    const uint64_t size = uint64_t{OLMMsgWriter::writeStringProp(stream.get(), value)} + 2;
    stream.reset();
    return addEntry(tag, size);
}

bool OLMMsgSubStg::addProperty(unsigned short id, const qor::String& /*value*/) {
    const uint32_t tag = tagOf(id, TypeBinary);
    OpenHandle stream(OLMMsgWriter::createSubStreamFromProp(storage, tag));
    if (stream == nullptr) {
        return false;
    }
    stream.reset();
    return addEntry(tag, 0);
}

bool OLMMsgSubStg::addProperty(unsigned short id, void* source) {
    const uint32_t tag = tagOf(id, TypeBinary);
    OpenHandle stream(OLMMsgWriter::createSubStreamFromProp(storage, tag));
    if (stream == nullptr) {
        return false;
    }
    const CopyResult copy = copyStream(static_cast<HostStream*>(source), stream.get());
    stream.reset();
    const bool isEntered = addEntry(tag, copy.size);
    return isEntered && copy.isWhole;
}

unsigned int OLMMsgSubStg::writeToPropStream(const unsigned char* data, unsigned int size) {
    uint32_t count = 0;
    const int32_t status =
        propStream == nullptr ? noStream : propStream->write(propStream, data, size, &count);
    if (status != 0 || count < size) {
        throw qor::Exception(static_cast<unsigned int>(status));
    }
    return 0;
}

void OLMMsgSubStg::open(void* parent, const char* prefix, unsigned int number) {
    qor::WString name(prefix);
    name.appendInteger(number, 8, 16, false, false);
    initilize(parent, name);

    // The header of a recipient or attachment ([MS-OXMSG] 2.4.1.3).
    constexpr std::array<unsigned char, 8> header{};
    OLMMsgSubStg::writeToPropStream(header.data(), header.size());
}

void OLMMsgSubStg::initilize(void* parent, const qor::WString& name) {
    storage = OLMMsgWriter::createSubStorageFromWString(parent, name);
    propStream = OLMMsgWriter::createSubStreamFromWString(storage, "__properties_version1.0");
}

bool OLMMsgSubStg::addEntry(uint32_t tag, uint64_t value) {
    return OLMMsgWriter::writeProperty(propStream, {tag, propertyFlags, value}) == 0;
}
