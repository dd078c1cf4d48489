#include <cstring>
#include <memory>
#include <span>

#include "filter/boundary/Reader.h"
#include "host/markup/ReaderPool.h"
#include "host/stream/Export.h"

// The reader's C functions, implemented by MarkupReader. The module's block holds a pointer to the
// reader; a block whose reader was ended holds null, and every function rejects it.

namespace {

using olmhost::Handle;
using olmhost::MarkupReader;
using olmhost::ReaderPool;

constexpr std::int16_t statusDone = 0;
constexpr std::int16_t statusNone = 1; // no attribute, no text
constexpr std::int16_t statusFailed = -1;

// The one option that the module sets.
constexpr std::uint32_t readerOption = 4;
constexpr std::uint32_t readerOptionValue = 1;

MarkupReader* readerIn(const UTXMLReader* block) {
    void* reader = nullptr;
    if (block != nullptr) {
        std::memcpy(&reader, block->host, sizeof reader);
    }
    return static_cast<MarkupReader*>(reader);
}

void setReader(UTXMLReader& block, MarkupReader* made) {
    void* const reader = made;
    std::memcpy(block.host, &reader, sizeof reader);
}

// Returns the status of `action`; statusFailed when there is no reader or anything is thrown.
template <typename Action> std::int16_t withReader(UTXMLReader* block, Action action) noexcept {
    MarkupReader* const reader = readerIn(block);
    if (reader == nullptr) {
        return statusFailed;
    }
    try {
        return action(*reader);
    } catch (...) {
        return statusFailed;
    }
}

} // namespace

OLMHOST_EXPORT int16_t UTXMLInit(UTXMLReader* reader, HostStream* stream) {
    if (reader == nullptr) {
        return statusFailed;
    }
    setReader(*reader, nullptr);
    if (stream == nullptr) {
        return statusFailed;
    }
    try {
        std::unique_ptr<MarkupReader> made = ReaderPool::ofThread().take();
        made->open(Handle::of(stream));
        setReader(*reader, made.release());
        return statusDone;
    } catch (...) {
        return statusFailed;
    }
}

OLMHOST_EXPORT void UTXMLDeInit(UTXMLReader* reader) {
    std::unique_ptr<MarkupReader> ending(readerIn(reader));
    if (!ending) {
        return;
    }
    setReader(*reader, nullptr);
    try {
        ending->close();
        ReaderPool::ofThread().put(std::move(ending));
    } catch (...) {
        // The reader is deleted instead of kept.
    }
}

OLMHOST_EXPORT int16_t UTXMLSetOption(UTXMLReader* reader, uint32_t option, uint32_t value) {
    const bool isKnown = option == readerOption && value == readerOptionValue;
    return readerIn(reader) != nullptr && isKnown ? statusDone : statusFailed;
}

OLMHOST_EXPORT int16_t UTXMLAddTagMap(UTXMLReader* reader, const char* space,
                                      uint32_t /*reserved0*/, uint32_t /*reserved1*/,
                                      const UTXML_STRVALPAIR* rows, uint16_t count) {
    return withReader(reader, [=](MarkupReader& self) {
        const bool isEmptySpace = space == nullptr || *space == '\0';
        if (!isEmptySpace || (rows == nullptr && count != 0)) {
            return statusFailed;
        }
        return self.tagMaps.add({rows, count}) ? statusDone : statusFailed;
    });
}

OLMHOST_EXPORT int16_t UTXMLReadNextTag(UTXMLReader* reader, UTXMLTagRecord* tag, uint64_t* extra) {
    return withReader(reader, [=](MarkupReader& self) -> std::int16_t {
        if (tag == nullptr) {
            return statusFailed;
        }
        std::uint64_t place = 0;
        switch (self.nextTag(*tag, place)) {
        case MarkupReader::Step::Tag:
            break;
        case MarkupReader::Step::TextPending:
            return UTXML_CONTENT_PENDING;
        case MarkupReader::Step::End:
            return statusFailed;
        }
        if (extra != nullptr) {
            *extra = place;
        }
        return statusDone;
    });
}

OLMHOST_EXPORT int16_t UTXMLSkipContent(UTXMLReader* reader) {
    return withReader(reader, [](MarkupReader& self) {
        self.skipText();
        return statusDone;
    });
}

OLMHOST_EXPORT int16_t UTXMLGetNextAttribute(UTXMLReader* reader, uint32_t* word,
                                             const uint16_t** name, const uint16_t** value,
                                             uint32_t* nameLength, uint32_t* valueLength) {
    return withReader(reader, [=](MarkupReader& self) {
        MarkupReader::Attribute attribute{};
        if (!self.nextAttribute(attribute)) {
            return statusNone;
        }
        if (word != nullptr) {
            *word = 0;
        }
        *name = attribute.name;
        *value = attribute.value;
        *nameLength = attribute.nameLength;
        *valueLength = attribute.valueLength;
        return statusDone;
    });
}

OLMHOST_EXPORT int16_t UTXMLReadContent(UTXMLReader* reader, uint32_t /*always1*/, uint16_t* buffer,
                                        uint32_t capacity, uint32_t* count) {
    if (count != nullptr) {
        *count = 0;
    }
    return withReader(reader, [=](MarkupReader& self) {
        if (count == nullptr || (buffer == nullptr && capacity != 0)) {
            return statusFailed;
        }
        const std::optional<std::uint32_t> read = self.readText(buffer, capacity);
        *count = read.value_or(0);
        return read ? statusDone : statusNone;
    });
}

OLMHOST_EXPORT int16_t UTXMLSkipTag(UTXMLReader* reader, uint64_t firstHalf, uint64_t secondHalf) {
    return withReader(reader, [=](MarkupReader& self) {
        const std::uint64_t halves[2] = {firstHalf, secondHalf};
        UTXMLTagRecord opening;
        static_assert(sizeof opening == sizeof halves);
        std::memcpy(&opening, halves, sizeof opening);
        return self.skipElement(opening) ? statusDone : statusFailed;
    });
}

OLMHOST_EXPORT int16_t UTXMLGetStateInfo(UTXMLReader* reader, tagUTXMLSaveData* save) {
    return withReader(reader, [=](MarkupReader& self) {
        if (save == nullptr) {
            return statusFailed;
        }
        self.save(*save);
        return statusDone;
    });
}

OLMHOST_EXPORT int16_t UTXMLRestoreStateInfo(UTXMLReader* reader, const tagUTXMLSaveData* save) {
    return withReader(reader, [=](MarkupReader& self) {
        return save != nullptr && self.restore(*save) ? statusDone : statusFailed;
    });
}
