// The recurrence of an item is read last, from a saved state in the middle of the item: the message
// must not show where the recurrence is, how deep, or how the document was encoded and compressed.

#include <algorithm>
#include <cstring>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "host/session/Session.h"
#include "tests/host/archive/ZipBuilder.h"
#include "tests/host/session/RawArchive.h"

namespace olmhost {
namespace {

using test::ZipBuilder;

using Message = std::vector<std::byte>;

class MessageSink : public ByteSink {
public:
    bool append(std::span<const std::byte> more) override {
        bytes.insert(bytes.end(), more.begin(), more.end());
        return true;
    }

    bool overwrite(std::uint64_t offset, std::span<const std::byte> others) override {
        if (offset + others.size() > bytes.size()) {
            return false;
        }
        std::ranges::copy(others, bytes.begin() + static_cast<std::ptrdiff_t>(offset));
        return true;
    }

    Message bytes;
};

const std::u16string recurrenceContents =
    u"<OPFRecurrenceCopyEndDate>2011-06-27T05:00:00</OPFRecurrenceCopyEndDate>"
    u"<OPFRecurrenceCopyStartDate>2011-05-02T05:00:00</OPFRecurrenceCopyStartDate>"
    u"<OPFRecurrenceGetOccurenceCount>5E0</OPFRecurrenceGetOccurenceCount>"
    u"<OPFRecurrenceHasEndDate>1</OPFRecurrenceHasEndDate>"
    u"<OPFRecurrenceIsNoEnd>0</OPFRecurrenceIsNoEnd>"
    u"<OPFRecurrencePattern>"
    u"<OPFRecurrencePatternDaysOfWeek><allDays>0</allDays><monday>1</monday>"
    u"</OPFRecurrencePatternDaysOfWeek>"
    u"<OPFRecurrencePatternInterval>2</OPFRecurrencePatternInterval>"
    u"<OPFRecurrencePatternType>OPFRecurrencePatternWeekly</OPFRecurrencePatternType>"
    u"</OPFRecurrencePattern>";

std::u16string element(const std::u16string& name, const std::u16string& contents) {
    return u"<" + name + u" xml:space='preserve'>" + contents + u"</" + name + u">";
}

// The value of that recurrence for the appointment below.
const unsigned char recurrenceValue[] = {
    0x04, 0x30, 0x04, 0x30, 0x0B, 0x20, 0x01, 0x00, 0x00, 0x00, 0x20, 0x49, 0x00, 0x00, 0x02, 0x00,
    0x00, 0x00, 0x00, 0x00, 0x00, 0x00, 0x02, 0x00, 0x00, 0x00, 0x21, 0x20, 0x00, 0x00, 0x05, 0x00,
    0x00, 0x00, 0x00, 0x00, 0x00, 0x00, 0x00, 0x00, 0x00, 0x00, 0x00, 0x00, 0x00, 0x00, 0xC0, 0x0A,
    0xDD, 0x0C, 0xC0, 0x45, 0xDE, 0x0C, 0x06, 0x30, 0x00, 0x00, 0x09, 0x30, 0x00, 0x00, 0x1C, 0x02,
    0x00, 0x00, 0x76, 0x02, 0x00, 0x00, 0x00, 0x00, 0x00, 0x00, 0x00, 0x00, 0x00, 0x00, 0x00, 0x00,
};

// Positions of an element among four others.
constexpr std::size_t placeCount = 5;

// One appointment; `recurrence` is its element, `place` the number of elements before it, and
// `location` how its location is written.
std::u16string appointment(const std::u16string& recurrence, std::size_t place,
                           const std::u16string& location) {
    const std::u16string others[] = {
        element(u"OPFCalendarEventCopyEndTime", u"2011-05-02T15:30:00"),
        element(u"OPFCalendarEventCopyLocation", location),
        element(u"OPFCalendarEventCopyStartTime", u"2011-05-02T14:00:00"),
        element(u"OPFCalendarEventCopyTimeZone", u"(UTC-05:00) Eastern Time (US &amp; Canada)"),
    };
    std::u16string text;
    for (std::size_t index = 0; index < placeCount; ++index) {
        if (index == place) {
            text += recurrence;
        }
        if (index + 1 < placeCount) {
            text += others[index];
        }
    }
    return element(u"appointment", text);
}

// The recurrence inside `depth` unknown elements, each with something before the next.
std::u16string recurrenceBelow(int depth, const std::u16string& contents) {
    std::u16string text = element(u"OPFCalendarEventCopyRecurrence", contents);
    for (int level = 0; level < depth; ++level) {
        const std::u16string name = u"level" + std::u16string(1, char16_t(u'a' + level % 26));
        std::u16string inner = u"before<empty/>";
        inner.append(text).append(u"behind");
        text = element(name, inner);
    }
    return text;
}

// Documents of three appointments, of which the middle one is extracted: its neighbours have other
// recurrences, which a reader at a wrong position would find.
std::u16string documentOf(const std::u16string& item) {
    const std::u16string other =
        element(u"appointment", element(u"OPFCalendarEventCopyRecurrence",
                                        u"<OPFRecurrenceCopyStartDate>2018-06-18T00:00:00"
                                        u"</OPFRecurrenceCopyStartDate>"
                                        u"<OPFRecurrencePatternInterval>7"
                                        u"</OPFRecurrencePatternInterval>"));
    return u"<appointments elementCount='3'>" + other + item + other + u"</appointments>";
}

enum class Encoding { Utf8, Utf8Mark, Utf16Le, Utf16Be, Latin1, Ascii };

std::string narrow(const std::u16string& text, unsigned lastDirect) {
    std::string bytes;
    for (const char16_t unit : text) {
        if (unit <= lastDirect) {
            bytes += static_cast<char>(unit);
        } else {
            bytes += "&#" + std::to_string(unit) + ";";
        }
    }
    return bytes;
}

std::string utf8(const std::u16string& text) {
    std::string bytes;
    for (const char16_t unit : text) {
        if (unit < 0x80) {
            bytes += static_cast<char>(unit);
        } else if (unit < 0x800) {
            bytes += static_cast<char>(0xC0 | unit >> 6);
            bytes += static_cast<char>(0x80 | (unit & 0x3F));
        } else {
            bytes += static_cast<char>(0xE0 | unit >> 12);
            bytes += static_cast<char>(0x80 | (unit >> 6 & 0x3F));
            bytes += static_cast<char>(0x80 | (unit & 0x3F));
        }
    }
    return bytes;
}

std::string utf16(const std::u16string& text, bool isLittleEndian) {
    std::string bytes;
    for (const char16_t unit : u"\uFEFF" + text) {
        const char low = static_cast<char>(unit & 0xFF);
        const char high = static_cast<char>(unit >> 8);
        bytes += isLittleEndian ? low : high;
        bytes += isLittleEndian ? high : low;
    }
    return bytes;
}

std::string encode(Encoding encoding, const std::u16string& text) {
    switch (encoding) {
    case Encoding::Utf8:
        return utf8(text);
    case Encoding::Utf8Mark:
        return utf8(u"\uFEFF" + text);
    case Encoding::Utf16Le:
        return utf16(text, true);
    case Encoding::Utf16Be:
        return utf16(text, false);
    case Encoding::Latin1:
        return narrow(u"<?xml version='1.0' encoding='ISO-8859-1'?>\n" + text, 0xFF);
    case Encoding::Ascii:
        return narrow(u"<?xml version='1.0' encoding='US-ASCII'?>\n" + text, 0x7F);
    }
    return "";
}

constexpr Encoding encodings[] = {Encoding::Utf8,    Encoding::Utf8Mark, Encoding::Utf16Le,
                                  Encoding::Utf16Be, Encoding::Latin1,   Encoding::Ascii};

const std::u16string location = u"Caf\u00E9 \u20AC";

// The messages of the second item of each document: found by the state saved while listing, and by
// walking there.
class Extracted {
public:
    Extracted(const std::vector<std::string>& documents, bool isDeflated) {
        ZipBuilder zip;
        for (std::size_t index = 0; index < documents.size(); ++index) {
            zip.add({.name = std::to_string(index) + ".xml",
                     .data = documents[index],
                     .isDeflated = isDeflated});
        }
        const RawArchive archive(zip.bytes());
        Session session;
        EXPECT_EQ(session.open(archive.path()).status, OpenStatus::Done);
        while (!session.list([](const Row&) { return RowAnswer::Continue; })) {
        }
        EXPECT_EQ(session.itemCount(), 3 * documents.size());
        for (std::uint32_t entry = 0; entry < documents.size(); ++entry) {
            MessageSink found;
            EXPECT_EQ(session.extract(3 * entry + 1, found).end, ExtractionEnd::Whole);
            byIndex.push_back(found.bytes);
            MessageSink walked;
            EXPECT_EQ(session.extractAt(entry, 2, walked).end, ExtractionEnd::Whole);
            byPlace.push_back(walked.bytes);
        }
        EXPECT_TRUE(session.faults().empty());
    }

    std::vector<Message> byIndex;
    std::vector<Message> byPlace;
};

// The message of the simplest document: UTF-8, stored, the recurrence last and directly in the
// item.
class DeferredRecurrenceTest : public testing::Test {
protected:
    DeferredRecurrenceTest()
        : plain(Extracted({encode(Encoding::Utf8,
                                  documentOf(appointment(recurrenceBelow(0, recurrenceContents),
                                                         placeCount - 1, location)))},
                          false)
                    .byIndex.front()) {}

    void expectPlain(const std::vector<std::string>& documents) const {
        for (const bool isDeflated : {false, true}) {
            SCOPED_TRACE(isDeflated ? "deflated" : "stored");
            const Extracted extracted(documents, isDeflated);
            for (std::size_t index = 0; index < documents.size(); ++index) {
                EXPECT_TRUE(extracted.byIndex[index] == plain) << "document " << index;
                EXPECT_TRUE(extracted.byPlace[index] == plain) << "document " << index;
            }
        }
    }

    Message plain;
};

TEST_F(DeferredRecurrenceTest, PlainMessageHasTheRecurrence) {
    const auto* const begin = reinterpret_cast<const std::byte*>(recurrenceValue);
    const auto* const end = begin + std::size(recurrenceValue);

    EXPECT_NE(std::search(plain.begin(), plain.end(), begin, end), plain.end());
}

TEST_F(DeferredRecurrenceTest, PlaceInTheItemDoesNotShow) {
    std::vector<std::string> documents;
    for (std::size_t place = 0; place < placeCount; ++place) {
        documents.push_back(encode(
            Encoding::Utf8,
            documentOf(appointment(recurrenceBelow(0, recurrenceContents), place, location))));
    }

    expectPlain(documents);
}

TEST_F(DeferredRecurrenceTest, DepthDoesNotShowInAnyEncoding) {
    std::vector<std::string> documents;
    for (const Encoding encoding : encodings) {
        for (const int depth : {0, 1, 2, 3, 4, 5, 6, 7, 8, 12, 30, 100}) {
            for (const std::size_t place : {std::size_t{0}, placeCount - 1}) {
                const std::u16string recurrence = recurrenceBelow(depth, recurrenceContents);
                documents.push_back(
                    encode(encoding, documentOf(appointment(recurrence, place, location))));
            }
        }
    }

    expectPlain(documents);
}

TEST_F(DeferredRecurrenceTest, LongTextBeforeTheRecurrenceDoesNotShow) {
    const std::u16string unread =
        element(u"OPFCalendarEventGetStartTimeZoneICSData", std::u16string(200'000, u'\u00E9'));
    std::vector<std::string> documents;
    for (const Encoding encoding : encodings) {
        std::u16string recurrence = unread;
        recurrence.append(recurrenceBelow(2, recurrenceContents)).append(unread);
        documents.push_back(encode(encoding, documentOf(appointment(recurrence, 1, location))));
    }

    expectPlain(documents);
}

TEST_F(DeferredRecurrenceTest, TypeDeclarationDoesNotShow) {
    const std::u16string declaration = u"<!DOCTYPE appointments [<!ENTITY place '" + location +
                                       u"'><!ENTITY two '2'><!ENTITY again '" + recurrenceContents +
                                       u"'><!ENTITY whole '<OPFCalendarEventCopyRecurrence>&again;"
                                       u"</OPFCalendarEventCopyRecurrence>'>]>";
    std::u16string twoByName = recurrenceContents;
    const std::u16string interval = u"<OPFRecurrencePatternInterval>";
    twoByName.replace(twoByName.find(interval) + interval.size(), 1, u"&two;");

    std::vector<std::string> documents;
    for (const Encoding encoding : encodings) {
        for (const int depth : {0, 7, 30}) {
            for (const std::u16string& recurrence :
                 {recurrenceBelow(depth, recurrenceContents), recurrenceBelow(depth, twoByName),
                  recurrenceBelow(depth, u"&again;"), std::u16string(u"&whole;")}) {
                for (std::size_t place = 0; place < placeCount; ++place) {
                    const std::u16string item = appointment(recurrence, place, u"&place;");
                    std::u16string text = declaration;
                    text.append(documentOf(item));
                    documents.push_back(encode(encoding, text));
                }
            }
        }
    }

    expectPlain(documents);
}

} // namespace
} // namespace olmhost
