#ifndef OLMKIT_TESTS_HOST_MARKUP_PULLER_H
#define OLMKIT_TESTS_HOST_MARKUP_PULLER_H

#include <cstdint>
#include <span>
#include <string>
#include <vector>

#include "filter/boundary/Reader.h"
#include "tests/host/markup/MemoryDocument.h"

namespace olmtest {

// Returns UTF-16 as UTF-8; a lone surrogate as "?".
std::string toUtf8(std::u16string_view units);

// A reader of a document, called through the C functions as by the module. Describes its events in
// words.
class Puller {
public:
    explicit Puller(MemoryDocument& document);
    ~Puller();
    Puller(const Puller&) = delete;
    Puller& operator=(const Puller&) = delete;

    // Returns the status of UTXMLReadNextTag; stores the tag and its attributes below.
    std::int16_t next();
    // As next(), but skips unread text.
    std::int16_t nextTag();
    // Returns the text in reads of `capacity` units; "(none)" when the first read has none.
    std::string text(std::uint32_t capacity = 1024);
    // One read: its units and its status.
    std::u16string read(std::uint32_t capacity, std::int16_t& status);
    std::int16_t skip(const UTXMLTagRecord& record);
    std::int16_t addMap(std::span<const UTXML_STRVALPAIR> rows);
    tagUTXMLSaveData save();
    std::int16_t restore(const tagUTXMLSaveData& place);

    // The tag read last: "<5 a='1'" or "</5".
    std::string tagText() const;
    // One event: text after an opening tag ("#..."), a tag, or "end". Reads texts by `capacity`.
    std::string event(std::uint32_t capacity = 1024);
    // All remaining events, "end" included.
    std::vector<std::string> rest(std::uint32_t capacity = 1024);

    UTXMLReader reader{};
    UTXMLTagRecord tag{};
    std::uint64_t extra = 0;
    std::vector<std::pair<std::string, std::string>> attributes;

private:
    void takeAttributes();
    bool mayHaveText = false;
};

// The events of a whole document with the map of abc() added.
std::vector<std::string> eventsOf(MemoryDocument& document, std::uint32_t capacity = 1024);

// "a" to "i" are 1 to 9, "root" is 100.
std::span<const UTXML_STRVALPAIR> abc();

} // namespace olmtest

#endif
