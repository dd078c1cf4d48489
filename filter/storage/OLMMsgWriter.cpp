#include "filter/storage/OLMMsgWriter.h"

#include "filter/boundary/Storage.h"
#include "filter/core/Exception.h"
#include "filter/storage/MapiPropTag.h"
#include "filter/storage/MapiPropType.h"
#include "filter/storage/MapiValues.h"
#include "filter/storage/OpenHandle.h"
#include "filter/storage/WriterErrors.h"

namespace {

constexpr unsigned int noRootStorage = 0xFFFFFFFF;
constexpr unsigned int namedPropsFailed = 461;
constexpr int16_t itemDone = 100;

// The class id of every message: {00020D0B-0000-0000-C000-000000000046}.
constexpr unsigned char messageClassId[16] = {0x0B, 0x0D, 0x02, 0x00, 0x00, 0x00, 0x00, 0x00,
                                              0xC0, 0x00, 0x00, 0x00, 0x00, 0x00, 0x00, 0x46};

// MV_PROPS, CATEGORIZE, RTF and UNICODE among others ([MS-OXPROPS], PidTagStoreSupportMask).
constexpr uint64_t storeSupportMask = 0x40E79;

constexpr uint64_t codePageUtf16 = 1200;

struct NumberProp {
    MapiPropTag tag;
    uint64_t value;
};

// The required properties that are numbers. They follow the RTF body and the message class.
// clang-format off
constexpr NumberProp requiredNumbers[] = {
    {PidTagRtfInSync,        0},
    {PidTagAccessLevel,      0},
    {PidTagAccess,           accessRead},
    {PidTagStoreSupportMask, storeSupportMask},
    {PidTagInternetCodepage, codePageUtf16},
};
// clang-format on

} // namespace

OLMMsgWriter::OLMMsgWriter(SODOSPECIALARC* request) : request(request) {}

OLMMsgWriter::~OLMMsgWriter() {
    for (const MsgPropPair* pair : properties) {
        delete pair;
    }
    if (rootStorage != nullptr) {
        rootStorage->close(rootStorage);
    }
}

unsigned int OLMMsgWriter::initilizeWriter(OLMXMLParser& parser) {
    RootStorageSpec record = {};
    record.output = request->output;
    record.always1 = 1;
    if (IOCreate(&rootStorage, IORootStorage, &record, IOStorageFlags) != 0) {
        return noRootStorage;
    }
    IOSetInfo(rootStorage, IORootStorage, IOInfoClassId, messageClassId);
    namedProps.initialize(rootStorage);

    OLMXMLTag tag;
    if (parser.nextTag(tag) == 0 || tag.id() == UTXML_UNKNOWN_TAG) {
        throw qor::Exception(ErrUnknown);
    }
    rootTag = tag.id();
    return 0;
}

int16_t OLMMsgWriter::writeNode(OLMXMLParser& parser) {
    OLMXMLTag tag;
    if (parser.nextTag(tag) == 0 || tag.id() == rootTag) {
        return itemDone;
    }
    if (!tag.isClosing()) {
        handleProp(tag, parser);
    }
    return static_cast<int16_t>(handledProps * 100 / expectedProps);
}

unsigned int OLMMsgWriter::finalizeNode(OLMXMLParser& /*parser*/) {
    OpenHandle stream(createSubStreamFromWString(rootStorage, "__properties_version1.0"));
    if (stream != nullptr) {
        const int count = properties.size();
        unsigned int result = writeMessageHeader(stream.get());
        for (int index = 0; index < count && result == 0; ++index) {
            result = writeProperty(stream.get(), *properties.get(index));
        }
        stream.reset();
    }
    return writeNamedProps(rootStorage) == 0 ? 0 : namedPropsFailed;
}

unsigned int OLMMsgWriter::writeMessageHeader(void* stream) {
    return writeHeaderNumbers(stream, 0);
}

unsigned int OLMMsgWriter::writeHeaderNumbers(void* stream, uint32_t attachments) {
    const auto recipients = static_cast<uint32_t>(recipientCount);
    const uint32_t header[] = {0, 0, recipients, attachments, recipients, attachments, 0, 0};
    try {
        for (const uint32_t number : header) {
            writeDwordProp(static_cast<HostStream*>(stream), number);
        }
    } catch (const qor::Exception& failure) {
        return failure.code;
    }
    return 0;
}

bool OLMMsgWriter::handleProp(OLMXMLTag& tag, OLMXMLParser& parser) {
    const bool handled = handlePropSpecial(tag, parser) || handlePropGeneric(tag, parser);
    if (handled) {
        ++handledProps;
    }
    return handled;
}

bool OLMMsgWriter::handlePropGeneric(OLMXMLTag& tag, OLMXMLParser& parser) {
    const uint32_t id = tag.id();
    switch (propertyType(id)) {
    case TypeString: {
        OpenHandle stream(createSubStreamFromProp(rootStorage, id));
        if (stream == nullptr) {
            return false;
        }
        // The size includes a terminator, which is not written.
        const uint64_t size = uint64_t{writeStringProp(stream.get(), parser)} + 2;
        stream.reset();
        addProperty(id, size);
        return true;
    }
    case TypeTime:
        addProperty(id, convertDateProp(parser));
        return true;
    case TypeInteger32: {
        qor::WString text;
        parser.content(text);
        addProperty(id, static_cast<uint32_t>(text.toLong(0, nullptr, 10))); // no sign extension
        return true;
    }
    default:
        return false;
    }
}

bool OLMMsgWriter::handlePropSpecial(OLMXMLTag& /*tag*/, OLMXMLParser& /*parser*/) {
    return false;
}

unsigned int OLMMsgWriter::writeNamedProps(void* /*storage*/) {
    namedProps.finalizeMappings();
    return 0;
}

void OLMMsgWriter::addProperty(unsigned int tag, unsigned long long value) {
    auto pair = std::make_unique<MsgPropPair>(MsgPropPair{tag, propertyFlags, value});
    properties.add(pair.get());
    static_cast<void>(pair.release()); // now owned by the writer
}

void OLMMsgWriter::beginMessage(OLMXMLParser& parser, std::span<const UTXML_STRVALPAIR> table,
                                const qor::WString& messageClass) {
    if (parser.addTags(table.data(), static_cast<unsigned short>(table.size())) != 0) {
        throw qor::Exception(ErrTagTable);
    }
    OLMMsgWriter::initilizeWriter(parser);
    createRequiredProps(messageClass);
    expectedProps = static_cast<uint32_t>(table.size());
}

void OLMMsgWriter::createRequiredProps(const qor::WString& messageClass) {
    createEmptyBinaryProp(PidTagRtfCompressed);
    createStringProp(PidTagMessageClass, messageClass);
    for (const NumberProp& required : requiredNumbers) {
        addProperty(required.tag, required.value);
    }
}

void OLMMsgWriter::createEmptyBinaryProp(unsigned int tag) {
    const OpenHandle stream(createSubStreamFromProp(rootStorage, tag));
    if (stream != nullptr) {
        addProperty(tag, 0);
    }
}

void OLMMsgWriter::createEmptyStringProp(unsigned int tag) {
    const OpenHandle stream(createSubStreamFromProp(rootStorage, tag));
    if (stream != nullptr) {
        addProperty(tag, 2);
    }
}

void OLMMsgWriter::createStringProp(unsigned int tag, const qor::WString& text) {
    const OpenHandle stream(createSubStreamFromProp(rootStorage, tag));
    if (stream != nullptr) {
        addProperty(tag, uint64_t{writeStringProp(stream.get(), text)} + 2);
    }
}

void OLMMsgWriter::addNamedProperty(unsigned int key, uint64_t value) {
    leaveOutUnknown([&] { addProperty(namedProps.mapNamedProp(key), value); });
}

void OLMMsgWriter::createNamedStringProp(unsigned int key, const qor::WString& text) {
    leaveOutUnknown([&] { createStringProp(namedProps.mapNamedProp(key), text); });
}

void OLMMsgWriter::handleCategories(OLMXMLParser& parser, unsigned int closingTag) {
    const unsigned int keywords = namedProps.mapNamedProp("Keywords", TypeStringList);
    const OpenHandle lengths(createSubStreamFromProp(rootStorage, keywords));
    long index = 0;

    OLMXMLTag tag;
    bool more = true;
    do {
        more = parser.nextTag(tag) != 0;
        const OLMXMLAttribute* name =
            tag.isClosing() ? nullptr : tag.findAttribute("OPFCategoryCopyName");
        if (name != nullptr) {
            const unsigned int size = writeCategory(keywords, index, name->value);
            ++index;
            writeDwordProp(lengths.get(), size);
        }
    } while (more && tag.id() != closingTag);

    addProperty(keywords, 4 * static_cast<uint64_t>(index));
}

unsigned int OLMMsgWriter::writeCategory(unsigned int tag, long index, const qor::WString& value) {
    return writeListedString(rootStorage, tag, static_cast<unsigned int>(index), value);
}
