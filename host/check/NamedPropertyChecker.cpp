#include "host/check/NamedPropertyChecker.h"

#include <algorithm>
#include <tuple>

#include <zlib.h>

#include "host/check/StreamCursor.h"
#include "host/compound/FieldReader.h"
#include "host/message/PropertyNames.h"

namespace olmhost {

namespace {

constexpr std::size_t guidSize = 16; // bytes
constexpr std::size_t nameSize = 8;  // bytes of an entry

// 0x8000 to 0xFFFE.
constexpr std::uint64_t maxNames = 0x7FFF;

// A message with the largest number of names has some 2 MB of texts.
constexpr std::uint64_t maxTextBytes = std::uint64_t{16} << 20;

// A name has at most 254 bytes. What is longer is not one, and is not read: texts that overlap
// would be read for each of their names.
constexpr std::uint32_t maxNameTextBytes = 4096;

// Sets below this number are known without the GUID stream: PS_MAPI is 1, PS_PUBLIC_STRINGS 2.
constexpr unsigned firstListedGuid = 3;

// Tags of the streams in the storage.
constexpr std::uint32_t guidStreamTag = 0x00020102;
constexpr std::uint32_t entryStreamTag = 0x00030102;
constexpr std::uint32_t textStreamTag = 0x00040102;
constexpr std::uint32_t firstBucketTag = 0x10000102;
constexpr std::uint32_t bucketTagStep = 0x00010000;

// CRC-32 that starts at 0 and is not inverted in the end, which zlib's does (MS-OXMSG 2.2.3.2.2).
std::uint32_t textChecksum(std::u16string_view text) {
    uLong sum = 0xFFFFFFFF;
    for (const char16_t unit : text) {
        const Bytef bytes[] = {static_cast<Bytef>(unit & 0xFF), static_cast<Bytef>(unit >> 8)};
        sum = crc32(sum, bytes, sizeof bytes);
    }
    return static_cast<std::uint32_t>(sum ^ 0xFFFFFFFF);
}

std::u16string lowercase(std::u16string_view text) {
    std::u16string small(text);
    for (char16_t& unit : small) {
        if (unit >= u'A' && unit <= u'Z') {
            unit = static_cast<char16_t>(unit + (u'a' - u'A'));
        }
    }
    return small;
}

std::size_t paddingAfter(std::size_t size) {
    return (4 - size % 4) % 4;
}

} // namespace

std::optional<std::uint32_t> NamedPropertyChecker::check() {
    streams = findStreams();
    guids = load(streams.guids, "GUID", maxNames * guidSize);
    texts = load(streams.texts, "text", maxTextBytes);
    hasAllTexts = streams.texts.has_value() && compound.isReadable(*streams.texts) &&
                  compound.streamSize(*streams.texts) <= maxTextBytes;
    checkGuids();
    checkTexts();
    if (!streams.entries.has_value() || !compound.isReadable(*streams.entries)) {
        load(streams.entries, "entry", 0);
        return std::nullopt;
    }
    checkNames();
    checkBuckets();
    return static_cast<std::uint32_t>(names.size());
}

NamedPropertyChecker::Name NamedPropertyChecker::readName(ByteSpan record) {
    FieldReader fields(record);
    Name name{};
    name.identifier = fields.number<std::uint32_t>();
    name.kindWord = fields.number<std::uint16_t>();
    name.index = fields.number<std::uint16_t>();
    return name;
}

// False when the storage has no stream of that name.
bool NamedPropertyChecker::Streams::take(const MessageChild& child, EntryId id) {
    const std::uint32_t bucket = (child.number - firstBucketTag) / bucketTagStep;
    const bool isBucket = child.number >= firstBucketTag && bucket < buckets.size() &&
                          child.number % bucketTagStep == firstBucketTag % bucketTagStep;
    if (child.kind != MessageChild::Kind::Value) {
        return false;
    }
    if (isBucket) {
        buckets[bucket] = id;
        return true;
    }
    switch (child.number) {
    case guidStreamTag:
        guids = id;
        return true;
    case entryStreamTag:
        entries = id;
        return true;
    case textStreamTag:
        texts = id;
        return true;
    default:
        return false;
    }
}

NamedPropertyChecker::Streams NamedPropertyChecker::findStreams() {
    Streams found;
    const CheckedDirectory& directory = compound.entries();
    for (EntryId id = directory.firstMember(storage); id != noEntry;
         id = directory.nextMember(id)) {
        const DirectoryRecord record = directory.record(id);
        if (!record.isStream() || !found.take(MessageChild(record.name()), id)) {
            findings.add(FindingCode::ChildName, directory.path(id),
                         "its name has no meaning in this storage");
        }
    }
    return found;
}

// The first `limit` bytes of a stream that the storage must have; empty when they can't be read.
std::vector<std::byte> NamedPropertyChecker::load(const std::optional<EntryId>& stream,
                                                  std::string_view noun, std::uint64_t limit) {
    if (!stream.has_value()) {
        findings.add(FindingCode::NamesStreamMissing, compound.entries().path(storage),
                     "it has no " + std::string(noun) + " stream");
        return {};
    }
    if (!compound.isReadable(*stream)) {
        return {}; // its chain is reported already
    }
    if (compound.streamSize(*stream) > limit) {
        findings.add(FindingCode::CheckLimit, pathOf(stream),
                     "only the first " + counted(limit, "byte") + " were checked");
    }
    return readStream(compound, *stream, limit);
}

std::string NamedPropertyChecker::pathOf(const std::optional<EntryId>& stream) const {
    return compound.entries().path(stream.value_or(storage));
}

// MS-OXMSG 2.2.3.1.1.
void NamedPropertyChecker::checkGuids() {
    if (guids.size() % guidSize != 0) {
        findings.add(FindingCode::NamesGuidSize, pathOf(streams.guids),
                     "it has " + counted(guids.size(), "byte") + ", not 16 for each GUID");
    }
    std::vector<PropertySet> sets = {mapiSet(), publicStringsSet()};
    for (std::size_t start = 0; start + guidSize <= guids.size(); start += guidSize) {
        std::ranges::copy(std::span(guids).subspan(start, guidSize), sets.emplace_back().begin());
    }
    std::ranges::sort(sets);
    if (const auto twice = std::ranges::adjacent_find(sets); twice != sets.end()) {
        findings.add(FindingCode::NamesGuidTwice, pathOf(streams.guids),
                     "it lists " + setText(*twice) + ", which has another number already");
    }
}

// Each text follows its size and is padded to four bytes (MS-OXMSG 2.2.3.1.3).
void NamedPropertyChecker::checkTexts() {
    FieldReader fields(texts);
    bool isPadded = true;
    while (hasAllTexts && fields.remaining() > 0) {
        const auto size = fields.number<std::uint32_t>();
        fields.bytes(size);
        if (!fields.isGood() || size % 2 != 0) {
            findings.add(FindingCode::NamesTextLayout, pathOf(streams.texts),
                         "a text in it has an odd size or runs past its end");
            return;
        }
        const ByteSpan padding = fields.bytes(std::min(paddingAfter(size), fields.remaining()));
        isPadded = isPadded && std::ranges::all_of(
                                   padding, [](std::byte byte) { return byte == std::byte{0}; });
    }
    if (!isPadded) {
        findings.add(FindingCode::NamesTextPadding, pathOf(streams.texts),
                     "the bytes between two texts are not zero");
    }
}

// MS-OXMSG 2.2.3.1.2.
void NamedPropertyChecker::checkNames() {
    const std::uint64_t size = compound.streamSize(*streams.entries);
    if (size % nameSize != 0 || size > maxNames * nameSize) {
        findings.add(FindingCode::NamesEntrySize, pathOf(streams.entries),
                     "it has " + counted(size, "byte") + ", not 8 for each of at most " +
                         std::to_string(maxNames) + " names");
    }
    const auto bytes = readStream(compound, *streams.entries, maxNames * nameSize);
    lowercaseSums.reserve(bytes.size() / nameSize);
    for (std::size_t start = 0; start + nameSize <= bytes.size(); start += nameSize) {
        Name name = readName(std::span(bytes).subspan(start, nameSize));
        checkName(static_cast<std::uint32_t>(names.size()), name);
        names.push_back(name);
    }
    std::vector<std::tuple<std::uint16_t, std::uint32_t, std::size_t>> sorted;
    for (std::size_t number = 0; number < names.size(); ++number) {
        sorted.emplace_back(names[number].kindWord, names[number].identifier, number);
    }
    std::ranges::sort(sorted);
    for (std::size_t i = 1; i < sorted.size(); ++i) {
        const auto& [kindWord, identifier, number] = sorted[i];
        if (std::tie(kindWord, identifier) ==
            std::tie(std::get<0>(sorted[i - 1]), std::get<1>(sorted[i - 1]))) {
            findings.add(FindingCode::NamesTwice, pathOf(streams.entries),
                         "names " + std::to_string(std::get<2>(sorted[i - 1])) + " and " +
                             std::to_string(number) +
                             " are the same, so a reader finds only one of the two properties");
        }
    }
}

// Checks a name of the entry stream, and puts a text's checksum in the place of its offset.
void NamedPropertyChecker::checkName(std::uint32_t number, Name& name) {
    const std::string which = "name " + std::to_string(number);
    if (name.index != number) {
        findings.add(FindingCode::NamesEntryIndex, pathOf(streams.entries),
                     which + " has index " + std::to_string(name.index));
    }
    const bool isListed = name.set() >= firstListedGuid;
    if (name.set() == 0 || (isListed && name.set() - firstListedGuid >= guids.size() / guidSize)) {
        findings.add(FindingCode::NamesEntryGuid, pathOf(streams.entries),
                     which + " is in set " + std::to_string(name.set()) +
                         ", which the GUID stream does not have");
    }
    lowercaseSums.push_back(0);
    if (!name.isText() || !hasAllTexts) {
        return;
    }
    const std::optional<std::u16string> text = textAt(name.identifier);
    if (!text.has_value()) {
        findings.add(FindingCode::NamesEntryText, pathOf(streams.entries),
                     which + " is the text at offset " + std::to_string(name.identifier) +
                         ", where there is no name");
        return;
    }
    name.identifier = textChecksum(*text);
    lowercaseSums.back() = textChecksum(lowercase(*text));
}

std::optional<std::u16string> NamedPropertyChecker::textAt(std::uint32_t offset) const {
    if (offset % 4 != 0 || offset >= texts.size()) {
        return std::nullopt;
    }
    FieldReader fields(ByteSpan(texts).subspan(offset));
    const auto size = fields.number<std::uint32_t>();
    FieldReader units(fields.bytes(size));
    if (!fields.isGood() || size == 0 || size % 2 != 0 || size > maxNameTextBytes) {
        return std::nullopt;
    }
    std::u16string text;
    while (units.remaining() > 0) {
        text += static_cast<char16_t>(units.number<std::uint16_t>());
    }
    return text;
}

// MS-OXMSG 2.2.3.2.
void NamedPropertyChecker::checkBuckets() {
    std::vector<bool> isInBucket(names.size(), false);
    bool areAllReadable = true;
    for (unsigned bucket = 0; bucket < streams.buckets.size(); ++bucket) {
        if (!streams.buckets[bucket].has_value()) {
            continue;
        }
        if (compound.isReadable(*streams.buckets[bucket])) {
            checkBucket(bucket, *streams.buckets[bucket], isInBucket);
        } else {
            areAllReadable = false;
        }
    }
    for (std::size_t number = 0; number < names.size() && areAllReadable; ++number) {
        if (!isInBucket[number] && (hasAllTexts || !names[number].isText())) {
            findings.add(FindingCode::NamesBucketMissing, compound.entries().path(storage),
                         "name " + std::to_string(number) +
                             " is not in its bucket, so a reader "
                             "doesn't find its property");
        }
    }
}

void NamedPropertyChecker::checkBucket(unsigned bucket, EntryId stream,
                                       std::vector<bool>& isInBucket) {
    StreamCursor cursor(compound, stream);
    if (cursor.remaining() % nameSize != 0) {
        findings.add(FindingCode::NamesBucketSize, pathOf(stream),
                     "it has " + counted(cursor.remaining(), "byte") + ", not 8 for each name");
    }
    std::array<std::byte, nameSize> bytes{};
    for (std::uint64_t number = 0; cursor.read(bytes); ++number) {
        const Name record = readName(bytes);
        if (!belongs(record, bucket) || isInBucket[record.index]) {
            findings.add(FindingCode::NamesBucketStray, pathOf(stream),
                         "its record " + std::to_string(number) + ", for name " +
                             std::to_string(record.index) + ", does not belong there");
            continue;
        }
        isInBucket[record.index] = true;
    }
}

// Whether a record is that of a name, in the name's bucket.
bool NamedPropertyChecker::belongs(const Name& record, unsigned bucket) const {
    if (record.index >= names.size()) {
        return false;
    }
    const Name& name = names[record.index];
    if (record.kindWord != name.kindWord ||
        bucket != (record.identifier ^ record.kindWord) % streams.buckets.size()) {
        return false;
    }
    if (!name.isText()) {
        return record.identifier == name.identifier;
    }
    // The names of some sets are looked up in lowercase.
    return !hasAllTexts || record.identifier == name.identifier ||
           record.identifier == lowercaseSums[record.index];
}

} // namespace olmhost
