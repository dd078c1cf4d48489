#include <algorithm>
#include <cstring>
#include <stdexcept>

#include "tests/fakehost/Parts.h"

using fakehost::CallKind;
using fakehost::FakeHost;
using fakehost::Handle;
using fakehost::number;
using fakehost::Reader;
using fakehost::ReaderEvent;
using fakehost::ScriptedAttribute;
using fakehost::ScriptedRead;
using Kind = fakehost::ReaderEvent::Kind;

namespace {

constexpr int16_t failed = -1;
constexpr int16_t noMore = 1;
constexpr uint64_t saveMark = 0x5A7E'D0C0'0000'0001;

// Bits of `flags` that belong to the host, so that a comparison of the whole word shows.
constexpr uint32_t ownFlags = 0x21;

// Reads at the end of a document after which the module is taken to be in an endless loop.
constexpr int endlessReads = 100'000;

Reader* readerOf(UTXMLReader* block, const char* function) {
    FakeHost& host = FakeHost::current();
    for (const auto& reader : host.parts().readers) {
        if (reader && reinterpret_cast<uint64_t>(reader.get()) == block->host[0]) {
            return reader.get();
        }
    }
    host.misuse(std::string(function) + " on a reader that is not prepared");
    return nullptr;
}

bool isAt(const Reader& reader, Kind kind) {
    return reader.position < reader.events->size() &&
           (*reader.events)[reader.position].kind == kind;
}

bool isTextPending(const Reader& reader) {
    return reader.isAfterOpening && isAt(reader, Kind::Text);
}

void passText(Reader& reader) {
    if (isAt(reader, Kind::Text)) {
        ++reader.position;
    }
    reader.textPosition = 0;
    reader.readNumber = 0;
}

void forgetTag(Reader& reader) {
    reader.attributes = nullptr;
    reader.attributeNumber = 0;
    reader.isAfterOpening = false;
    reader.isPendingReported = false;
}

int16_t breakReader(Reader& reader) {
    reader.isBroken = true;
    forgetTag(reader);
    if (++reader.failedReads > endlessReads) {
        FakeHost::current().misuse("endless reads at the end of a document");
        throw std::runtime_error("endless reads");
    }
    return failed;
}

// A later row of a name replaces an earlier one; unknown names have a value of their own.
uint32_t idOf(const Reader& reader, const std::string& name) {
    const auto found = reader.ids.find(name);
    return found == reader.ids.end() ? UTXML_UNKNOWN_TAG : static_cast<uint32_t>(found->second);
}

// The host's own words hold the element's number plus 1, so that a zeroed record is not an element.
void fillRecord(const Reader& reader, UTXMLTagRecord& record, size_t openEvent, uint32_t flags) {
    record.host0 = static_cast<uint32_t>(reader.openTags.size());
    record.id = idOf(reader, (*reader.events)[openEvent].name);
    record.flags = flags;
    record.host1 = static_cast<uint32_t>(openEvent + 1);
}

int16_t readTag(Reader& reader, UTXMLTagRecord& record, uint64_t& extra) {
    passText(reader);
    const bool isOpening = isAt(reader, Kind::Open);
    if (!isOpening && !isAt(reader, Kind::Close)) {
        return breakReader(reader);
    }
    reader.failedReads = 0;
    forgetTag(reader);
    if (isOpening) {
        reader.openTags.push_back(reader.position);
        fillRecord(reader, record, reader.position, ownFlags);
        reader.attributes = &(*reader.events)[reader.position].attributes;
        reader.isAfterOpening = true;
    } else {
        fillRecord(reader, record, reader.openTags.back(), ownFlags | UTXML_CLOSING_TAG);
        reader.openTags.pop_back();
    }
    extra = reader.position;
    ++reader.position;
    reader.afterTag = reader.position;
    return 0;
}

// Copies `text` to a block of exactly its size, valid until the next call.
const uint16_t* handOut(std::unique_ptr<uint16_t[]>& block, const std::u16string& text,
                        bool isTerminated, bool isNull, uint32_t& length) {
    length = isTerminated ? UTXML_COUNT_IT : static_cast<uint32_t>(text.size());
    if (isNull) {
        return nullptr;
    }
    const size_t units = text.size() + (isTerminated ? 1 : 0);
    block = std::make_unique<uint16_t[]>(units);
    std::copy(text.begin(), text.end(), block.get());
    return block.get();
}

int16_t answerRead(Reader& reader, const std::vector<ScriptedRead>& reads, uint16_t* buffer,
                   uint32_t capacity, uint32_t& count) {
    const ScriptedRead& read = reads[reader.readNumber];
    std::copy_n(read.units.begin(), std::min<size_t>(read.units.size(), capacity), buffer);
    count = read.count;
    if (++reader.readNumber == reads.size()) {
        passText(reader);
    }
    return read.status;
}

int16_t readText(Reader& reader, uint16_t* buffer, uint32_t capacity, uint32_t& count) {
    count = 0;
    if (!isTextPending(reader)) {
        return FakeHost::current().parts().endOfTextStatus;
    }
    const ReaderEvent& event = (*reader.events)[reader.position];
    if (!event.reads.empty()) {
        return answerRead(reader, event.reads, buffer, capacity, count);
    }
    count =
        static_cast<uint32_t>(std::min<size_t>(event.text.size() - reader.textPosition, capacity));
    std::copy_n(event.text.begin() + static_cast<ptrdiff_t>(reader.textPosition), count, buffer);
    reader.textPosition += count;
    if (reader.textPosition == event.text.size()) {
        passText(reader);
    }
    return 0;
}

// Reads past the closing tag of the element that has `depth` open elements around it.
int16_t leaveElement(Reader& reader, size_t depth) {
    UTXMLTagRecord record{};
    uint64_t extra = 0;
    while (reader.openTags.size() > depth) {
        if (readTag(reader, record, extra) != 0) {
            return failed;
        }
    }
    forgetTag(reader);
    return 0;
}

void rebuildOpenTags(Reader& reader) {
    reader.openTags.clear();
    for (size_t i = 0; i < reader.position; ++i) {
        if ((*reader.events)[i].kind == Kind::Open) {
            reader.openTags.push_back(i);
        } else if ((*reader.events)[i].kind == Kind::Close) {
            reader.openTags.pop_back();
        }
    }
}

uint64_t checkOf(const tagUTXMLSaveData& save) {
    return save.host[0] * 31 + save.host[1] * 7 + save.host[2] * 3 + save.host[3];
}

bool isAscending(const FakeHost::TagMap& rows) {
    return std::ranges::is_sorted(rows, {}, &FakeHost::TagMap::value_type::first);
}

} // namespace

extern "C" {

int16_t UTXMLInit(UTXMLReader* reader, HostStream* stream) {
    FakeHost& host = FakeHost::current();
    const Handle* handle = fakehost::handleOf(stream, "UTXMLInit");
    host.record(CallKind::ReaderInit,
                "UTXMLInit(" + (handle == nullptr ? "?" : handle->title) + ")");
    int32_t status = 0;
    if (host.takeFailure(CallKind::ReaderInit, status)) {
        return static_cast<int16_t>(status);
    }
    static const std::vector<ReaderEvent> noEvents;
    auto state = std::make_unique<Reader>();
    state->events = handle == nullptr || handle->events == nullptr ? &noEvents : handle->events;
    state->entryIndex = handle == nullptr ? -1 : handle->entryIndex;
    // The words that the module must not look at are not zero.
    std::fill(std::begin(reader->host), std::end(reader->host), 0xA5A5'A5A5'A5A5'A5A5);
    reader->host[0] = reinterpret_cast<uint64_t>(state.get());
    host.parts().readers.push_back(std::move(state));
    return 0;
}

void UTXMLDeInit(UTXMLReader* reader) {
    FakeHost& host = FakeHost::current();
    host.record(CallKind::ReaderDeInit, "UTXMLDeInit()");
    const Reader* state = readerOf(reader, "UTXMLDeInit");
    for (auto& owned : host.parts().readers) {
        if (owned && owned.get() == state) {
            owned.reset();
        }
    }
}

int16_t UTXMLSetOption(UTXMLReader* reader, uint32_t option, uint32_t value) {
    FakeHost& host = FakeHost::current();
    host.record(CallKind::SetOption,
                "UTXMLSetOption(" + number(option) + ", " + number(value) + ")");
    readerOf(reader, "UTXMLSetOption");
    int32_t status = 0;
    host.takeFailure(CallKind::SetOption, status);
    return static_cast<int16_t>(status);
}

int16_t UTXMLAddTagMap(UTXMLReader* reader, const char* space, uint32_t reserved0,
                       uint32_t reserved1, const UTXML_STRVALPAIR* rows, uint16_t count) {
    FakeHost& host = FakeHost::current();
    host.record(CallKind::AddTagMap,
                "UTXMLAddTagMap(" + fakehost::inQuotes(fakehost::toUtf16(space)) + ", " +
                    number(reserved0) + ", " + number(reserved1) + ", " + number(count) + " rows)");
    Reader* state = readerOf(reader, "UTXMLAddTagMap");
    int32_t status = 0;
    if (host.takeFailure(CallKind::AddTagMap, status) || state == nullptr) {
        return static_cast<int16_t>(status);
    }
    FakeHost::TagMap map;
    for (uint16_t i = 0; i < count; ++i) {
        map.emplace_back(rows[i].name, rows[i].value);
        state->ids[rows[i].name] = rows[i].value;
    }
    if (!isAscending(map)) {
        host.misuse("a tag map out of order");
    }
    host.parts().tagMaps.push_back(std::move(map));
    return 0;
}

int16_t UTXMLReadNextTag(UTXMLReader* reader, UTXMLTagRecord* tag, uint64_t* extra) {
    FakeHost& host = FakeHost::current();
    host.record(CallKind::ReadNextTag, "UTXMLReadNextTag()");
    Reader* state = readerOf(reader, "UTXMLReadNextTag");
    if (state == nullptr) {
        return failed;
    }
    int32_t status = 0;
    if (host.takeFailure(CallKind::ReadNextTag, status)) {
        if (status < 0) {
            breakReader(*state);
        }
        return static_cast<int16_t>(status);
    }
    if (state->isBroken) {
        return breakReader(*state);
    }
    if (isTextPending(*state) && !state->isPendingReported) {
        state->isPendingReported = true;
        return UTXML_CONTENT_PENDING;
    }
    return readTag(*state, *tag, *extra);
}

int16_t UTXMLSkipContent(UTXMLReader* reader) {
    FakeHost& host = FakeHost::current();
    host.record(CallKind::SkipContent, "UTXMLSkipContent()");
    Reader* state = readerOf(reader, "UTXMLSkipContent");
    int32_t status = 0;
    if (host.takeFailure(CallKind::SkipContent, status) || state == nullptr) {
        return static_cast<int16_t>(status);
    }
    passText(*state);
    return 0;
}

int16_t UTXMLGetNextAttribute(UTXMLReader* reader, uint32_t* word, const uint16_t** name,
                              const uint16_t** value, uint32_t* nameLength, uint32_t* valueLength) {
    FakeHost& host = FakeHost::current();
    host.record(CallKind::GetNextAttribute, "UTXMLGetNextAttribute()");
    Reader* state = readerOf(reader, "UTXMLGetNextAttribute");
    if (state == nullptr) {
        return noMore;
    }
    state->nameUnits.reset();
    state->valueUnits.reset();
    int32_t status = 0;
    if (host.takeFailure(CallKind::GetNextAttribute, status)) {
        return static_cast<int16_t>(status);
    }
    if (state->attributes == nullptr || state->attributeNumber == state->attributes->size()) {
        return noMore;
    }
    const ScriptedAttribute& next = (*state->attributes)[state->attributeNumber++];
    *word = 0xA77A;
    *name =
        handOut(state->nameUnits, next.name, next.nameIsTerminated, next.nameIsNull, *nameLength);
    *value = handOut(state->valueUnits, next.value, next.valueIsTerminated, next.valueIsNull,
                     *valueLength);
    return 0;
}

int16_t UTXMLReadContent(UTXMLReader* reader, uint32_t always1, uint16_t* buffer, uint32_t capacity,
                         uint32_t* count) {
    FakeHost& host = FakeHost::current();
    host.record(CallKind::ReadContent,
                "UTXMLReadContent(" + number(always1) + ", " + number(capacity) + ")");
    Reader* state = readerOf(reader, "UTXMLReadContent");
    int32_t status = 0;
    if (host.takeFailure(CallKind::ReadContent, status) || state == nullptr) {
        return static_cast<int16_t>(status);
    }
    return readText(*state, buffer, capacity, *count);
}

int16_t UTXMLSkipTag(UTXMLReader* reader, uint64_t firstHalf, uint64_t secondHalf) {
    FakeHost& host = FakeHost::current();
    UTXMLTagRecord record{};
    std::memcpy(&record, &firstHalf, sizeof firstHalf);
    std::memcpy(reinterpret_cast<char*>(&record) + sizeof firstHalf, &secondHalf,
                sizeof secondHalf);
    host.record(CallKind::SkipTag, "UTXMLSkipTag(" + number(record.id) + ")");
    Reader* state = readerOf(reader, "UTXMLSkipTag");
    int32_t status = 0;
    if (host.takeFailure(CallKind::SkipTag, status)) {
        return static_cast<int16_t>(status);
    }
    if (state == nullptr || state->isBroken) {
        return failed;
    }
    const auto open = std::ranges::find(state->openTags, size_t{record.host1} - 1);
    if (open == state->openTags.end()) {
        return failed;
    }
    return leaveElement(*state, static_cast<size_t>(open - state->openTags.begin()));
}

int16_t UTXMLGetStateInfo(UTXMLReader* reader, tagUTXMLSaveData* save) {
    FakeHost& host = FakeHost::current();
    host.record(CallKind::GetStateInfo, "UTXMLGetStateInfo()");
    const Reader* state = readerOf(reader, "UTXMLGetStateInfo");
    int32_t status = 0;
    if (host.takeFailure(CallKind::GetStateInfo, status) || state == nullptr) {
        return static_cast<int16_t>(status);
    }
    *save = {{saveMark, static_cast<uint64_t>(state->entryIndex), state->afterTag,
              state->isAfterOpening ? 1U : 0U, 0, 0}};
    save->host[4] = checkOf(*save);
    return 0;
}

int16_t UTXMLRestoreStateInfo(UTXMLReader* reader, const tagUTXMLSaveData* save) {
    FakeHost& host = FakeHost::current();
    host.record(CallKind::RestoreStateInfo, "UTXMLRestoreStateInfo()");
    Reader* state = readerOf(reader, "UTXMLRestoreStateInfo");
    int32_t status = 0;
    if (host.takeFailure(CallKind::RestoreStateInfo, status) || state == nullptr) {
        return static_cast<int16_t>(status);
    }
    if (host.hasFailed() && std::ranges::all_of(save->host, [](uint64_t word) { return !word; })) {
        return failed; // never filled: the module does not learn that UTXMLGetStateInfo failed
    }
    if (save->host[0] != saveMark || save->host[4] != checkOf(*save) ||
        save->host[1] != static_cast<uint64_t>(state->entryIndex)) {
        host.misuse("a saved state that was not taken on this entry");
        return failed;
    }
    forgetTag(*state);
    state->isBroken = false;
    state->position = save->host[2];
    state->afterTag = state->position;
    state->textPosition = 0;
    state->readNumber = 0;
    state->isAfterOpening = save->host[3] != 0;
    rebuildOpenTags(*state);
    return 0;
}

} // extern "C"
