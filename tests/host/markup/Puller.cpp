#include "tests/host/markup/Puller.h"

#include <array>
#include <stdexcept>

namespace olmtest {

std::string toUtf8(std::u16string_view units) {
    std::string text;
    const auto add = [&](std::uint32_t byte) { text.push_back(static_cast<char>(byte)); };
    for (std::size_t i = 0; i < units.size(); ++i) {
        std::uint32_t code = units[i];
        const bool isHigh = code >= 0xD800 && code < 0xDC00;
        if (isHigh && i + 1 < units.size() && (units[i + 1] & 0xFC00) == 0xDC00) {
            code = 0x10000 + ((code & 0x3FF) << 10) + (units[++i] & 0x3FF);
        } else if ((code & 0xF800) == 0xD800) {
            code = '?';
        }
        if (code < 0x80) {
            add(code);
        } else if (code < 0x800) {
            add(0xC0 | code >> 6);
            add(0x80 | (code & 0x3F));
        } else if (code < 0x10000) {
            add(0xE0 | code >> 12);
            add(0x80 | (code >> 6 & 0x3F));
            add(0x80 | (code & 0x3F));
        } else {
            add(0xF0 | code >> 18);
            add(0x80 | (code >> 12 & 0x3F));
            add(0x80 | (code >> 6 & 0x3F));
            add(0x80 | (code & 0x3F));
        }
    }
    return text;
}

Puller::Puller(MemoryDocument& document) {
    if (UTXMLInit(&reader, &document) != 0 || UTXMLSetOption(&reader, 4, 1) != 0) {
        throw std::runtime_error("no reader");
    }
}

Puller::~Puller() {
    UTXMLDeInit(&reader);
}

std::int16_t Puller::next() {
    const std::int16_t status = UTXMLReadNextTag(&reader, &tag, &extra);
    if (status != UTXML_CONTENT_PENDING) {
        takeAttributes();
    }
    return status;
}

std::int16_t Puller::nextTag() {
    const std::int16_t status = next();
    if (status != UTXML_CONTENT_PENDING) {
        return status;
    }
    UTXMLSkipContent(&reader);
    return next();
}

void Puller::takeAttributes() {
    attributes.clear();
    std::uint32_t word = 0;
    const std::uint16_t* name = nullptr;
    const std::uint16_t* value = nullptr;
    std::uint32_t nameLength = 0;
    std::uint32_t valueLength = 0;
    const auto text = [](const std::uint16_t* units, std::uint32_t length) {
        const std::u16string taken(units, units + length);
        if (units[length] != 0) {
            return std::string("(not terminated)");
        }
        return toUtf8(taken);
    };
    while (UTXMLGetNextAttribute(&reader, &word, &name, &value, &nameLength, &valueLength) == 0) {
        attributes.emplace_back(text(name, nameLength), text(value, valueLength));
    }
}

std::u16string Puller::read(std::uint32_t capacity, std::int16_t& status) {
    std::vector<std::uint16_t> units(capacity + 1, 0xBEEF);
    std::uint32_t count = 0xAAAA;
    status = UTXMLReadContent(&reader, 1, units.data(), capacity, &count);
    if (count > capacity || units[capacity] != 0xBEEF) {
        throw std::runtime_error("more units than there is room for");
    }
    return {units.begin(), units.begin() + count};
}

std::string Puller::text(std::uint32_t capacity) {
    std::int16_t status = 0;
    std::u16string all = read(capacity, status);
    if (status != 0) {
        return "(none)";
    }
    for (std::size_t last = all.size(); last == capacity;) {
        const std::u16string more = read(capacity, status);
        all += more;
        last = status == 0 ? more.size() : 0;
    }
    return toUtf8(all);
}

std::int16_t Puller::skip(const UTXMLTagRecord& record) {
    std::array<std::uint64_t, 2> halves{};
    std::memcpy(halves.data(), &record, sizeof record);
    return UTXMLSkipTag(&reader, halves[0], halves[1]);
}

std::int16_t Puller::addMap(std::span<const UTXML_STRVALPAIR> rows) {
    return UTXMLAddTagMap(&reader, "", 0, 0, rows.data(), static_cast<std::uint16_t>(rows.size()));
}

tagUTXMLSaveData Puller::save() {
    tagUTXMLSaveData place{};
    if (UTXMLGetStateInfo(&reader, &place) != 0) {
        throw std::runtime_error("no place");
    }
    return place;
}

std::int16_t Puller::restore(const tagUTXMLSaveData& place) {
    mayHaveText = true;
    return UTXMLRestoreStateInfo(&reader, &place);
}

std::string Puller::tagText() const {
    const bool isClosing = (tag.flags & UTXML_CLOSING_TAG) != 0;
    std::string words = isClosing ? "</" : "<";
    words += tag.id == UTXML_UNKNOWN_TAG ? "?" : std::to_string(tag.id);
    for (const auto& [name, value] : attributes) {
        words.append(" ").append(name).append("='").append(value).append("'");
    }
    return words;
}

std::string Puller::event(std::uint32_t capacity) {
    if (mayHaveText) {
        mayHaveText = false;
        const std::string came = text(capacity);
        if (came != "(none)") {
            return "#" + came;
        }
    }
    const std::int16_t status = nextTag();
    if (status < 0) {
        return "end";
    }
    mayHaveText = true;
    return tagText();
}

std::vector<std::string> Puller::rest(std::uint32_t capacity) {
    std::vector<std::string> events;
    do {
        events.push_back(event(capacity));
    } while (events.back() != "end");
    return events;
}

std::vector<std::string> eventsOf(MemoryDocument& document, std::uint32_t capacity) {
    Puller puller(document);
    puller.addMap(abc());
    return puller.rest(capacity);
}

std::span<const UTXML_STRVALPAIR> abc() {
    static const std::vector<UTXML_STRVALPAIR> rows = {
        {1, "a"}, {2, "b"}, {3, "c"}, {4, "d"}, {5, "e"},
        {6, "f"}, {7, "g"}, {8, "h"}, {9, "i"}, {100, "root"},
    };
    return rows;
}

} // namespace olmtest
