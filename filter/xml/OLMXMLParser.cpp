#include "filter/xml/OLMXMLParser.h"

#include <algorithm>
#include <array>
#include <bit>

#include "filter/boundary/Archive.h"
#include "filter/boundary/Reader.h"
#include "filter/core/Exception.h"
#include "filter/xml/OLMRootTags.h"
#include "filter/xml/WStringUnits.h"

namespace {

// Limits of the attributes that are kept for the next tag. A document may contain any number of
// attributes of any length, which must not take memory for the rest of the parser's life.
constexpr std::size_t maxSpareAttributes = 32;
constexpr int maxSpareCapacity = 1024;

// One chunk of content and a 0 unit after it. It is cleared for each text, so that a text without
// a terminator ends where the reader stopped writing.
using Chunk = std::array<uint16_t, OLMXMLParser::chunkUnits + 1>;

void throwFailure(int16_t status) {
    if (status != 0) {
        throw qor::Exception(static_cast<unsigned int>(status));
    }
}

void setText(qor::WString& text, const uint16_t* units, uint32_t length) {
    setUnits(text, units, length == UTXML_COUNT_IT ? countUnits(units) : static_cast<int>(length));
}

bool isWorthKeeping(const OLMXMLAttribute& attribute) {
    return attribute.name.capacity() <= maxSpareCapacity &&
           attribute.value.capacity() <= maxSpareCapacity;
}

} // namespace

OLMXMLParser::OLMXMLParser(void* archive, unsigned long entryIndex) {
    init(archive, entryIndex);
}

OLMXMLParser::~OLMXMLParser() {
    UTXMLDeInit(&reader);
    stream->close(stream);
}

void OLMXMLParser::init(void* archive, unsigned long entryIndex) {
    stream = openXMLFile(archive, entryIndex);
    if (stream == nullptr) {
        throw qor::Exception(ErrEntryNotOpened);
    }

    // A failure from here on leaves the stream open; the host closes it.
    throwFailure(UTXMLInit(&reader, stream));
    UTXMLSetOption(&reader, UTXML_OPTION_SKIP_SPACE, 1);
    throwFailure(addTags(rootTags.data(), rootTags.size()));

    this->entryIndex = entryIndex;
    takeEntryName(*static_cast<const ArchiveDirectory*>(archive));
}

HostStream* OLMXMLParser::openXMLFile(void* archive, unsigned long entryIndex) {
    auto* directory = static_cast<ArchiveDirectory*>(archive);
    HostStream* handle = nullptr;
    MemberOpenRequest request{};
    request.archive = directory;
    request.entryIndex = static_cast<int64_t>(entryIndex);
    request.always1 = 1;

    // A null handle is the only sign of a failure.
    directory->stream.open(&handle, OpenMember, &request, OpenModeRead);
    return handle;
}

void OLMXMLParser::takeEntryName(const ArchiveDirectory& directory) {
    const ArchiveEntry& entry = directory.entries[entryIndex];
    folder.setValue(directory.namePool + entry.nameOffset, 0, entry.nameLength);

    int folderLength = folder.length();
    while (folderLength > 0 && folder.value()[folderLength - 1] != u'/') {
        --folderLength;
    }
    if (folderLength < folder.length()) {
        fileName.assign(folder.value() + folderLength, folder.length() - folderLength);
        folder.setLength(folderLength);
    }
}

int16_t OLMXMLParser::addTags(const UTXML_STRVALPAIR* rows, unsigned short count) {
    return UTXMLAddTagMap(&reader, "", 0, 0, rows, count);
}

unsigned short OLMXMLParser::nextTag(OLMXMLTag& tag) {
    recycleAttributes(tag);
    int16_t status = UTXMLReadNextTag(&reader, &tag.tagRecord, &tag.tagExtra);
    if (status == UTXML_CONTENT_PENDING) {
        UTXMLSkipContent(&reader);
        status = UTXMLReadNextTag(&reader, &tag.tagRecord, &tag.tagExtra);
    }
    if (status < 0) {
        return 0;
    }
    readAttributes(tag);
    return 1;
}

void OLMXMLParser::recycleAttributes(OLMXMLTag& tag) {
    const int count = tag.attributes.size();
    if (count == 0) {
        return;
    }
    spareAttributes.reserve(maxSpareAttributes);
    for (int index = 0; index < count; ++index) {
        std::unique_ptr<OLMXMLAttribute> attribute(tag.attributes.get(index));
        if (spareAttributes.size() < maxSpareAttributes && isWorthKeeping(*attribute)) {
            spareAttributes.push_back(std::move(attribute));
        }
    }
    tag.attributes.clear();
}

std::unique_ptr<OLMXMLAttribute> OLMXMLParser::newAttribute() {
    if (spareAttributes.empty()) {
        return std::make_unique_for_overwrite<OLMXMLAttribute>();
    }
    std::unique_ptr<OLMXMLAttribute> attribute = std::move(spareAttributes.back());
    spareAttributes.pop_back();
    return attribute;
}

void OLMXMLParser::readAttributes(OLMXMLTag& tag) {
    uint32_t word = 0;
    const uint16_t* name = nullptr;
    const uint16_t* value = nullptr;
    uint32_t nameLength = 0;
    uint32_t valueLength = 0;
    while (UTXMLGetNextAttribute(&reader, &word, &name, &value, &nameLength, &valueLength) == 0) {
        std::unique_ptr<OLMXMLAttribute> attribute = newAttribute();
        setText(attribute->name, name, nameLength);
        setText(attribute->value, value, valueLength);
        tag.attributes.add(attribute.get());
        static_cast<void>(attribute.release()); // now owned by the tag
    }
}

unsigned short OLMXMLParser::content(qor::WString& out) {
    Chunk chunk{};
    uint32_t count = 0;
    if (readFirstChunk(out, chunk.data(), chunkUnits, count) == 0) {
        return 0;
    }
    int16_t status = 0;
    while (count == chunkUnits && status == 0) {
        count = 0;
        status = UTXMLReadContent(&reader, 1, chunk.data(), chunkUnits, &count);
        if (static_cast<int32_t>(count) > 0) {
            out.append(chunk.data(), static_cast<int>(std::min(count, chunkUnits)));
        }
    }
    return 1;
}

unsigned short OLMXMLParser::content(qor::WString& out, unsigned int limit) {
    Chunk chunk{};
    uint32_t count = 0;
    return readFirstChunk(out, chunk.data(), std::min(limit, chunkUnits), count);
}

// `chunk` is cleared and has room for one unit more than `capacity`.
unsigned short OLMXMLParser::readFirstChunk(qor::WString& out, uint16_t* chunk, uint32_t capacity,
                                            uint32_t& count) {
    count = 0;
    if (UTXMLReadContent(&reader, 1, chunk, capacity, &count) != 0 || count == 0) {
        return 0;
    }
    // Any other negative count leaves an empty text.
    const int length = count == UTXML_COUNT_IT ? countUnits(chunk) : static_cast<int>(count);
    setUnits(out, chunk, std::min(length, static_cast<int>(capacity)));
    return 1;
}

unsigned short OLMXMLParser::skipTag(const OLMXMLTag& tag) {
    if (tag.isClosing()) {
        return 1;
    }
    const auto halves = std::bit_cast<std::array<uint64_t, 2>>(tag.tagRecord);
    return UTXMLSkipTag(&reader, halves[0], halves[1]) == 0 ? 1 : 0;
}

void OLMXMLParser::getParserState(tagUTXMLSaveData* save) {
    UTXMLGetStateInfo(&reader, save);
}

void OLMXMLParser::setParserState(const tagUTXMLSaveData* save) {
    UTXMLRestoreStateInfo(&reader, save);
}
