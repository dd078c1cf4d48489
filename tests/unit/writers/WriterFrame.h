#ifndef OLMKIT_TESTS_UNIT_WRITERS_WRITERFRAME_H
#define OLMKIT_TESTS_UNIT_WRITERS_WRITERFRAME_H

#include <memory>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "filter/core/Exception.h"
#include "filter/xml/OLMXMLParser.h"
#include "tests/unit/RowName.h"
#include "tests/unit/writers/ItemMessages.h"

// The members of any writer, opened for tests: writer.*(&WriterInside::rootTag).
class WriterInside : public OLMMsgWriter {
public:
    using OLMMsgWriter::expectedProps;
    using OLMMsgWriter::properties;
    using OLMMsgWriter::recipientCount;
    using OLMMsgWriter::rootStorage;
    using OLMMsgWriter::rootTag;
};

// A writer on the first item of a document, for failures of single calls and for what is not
// visible in a message.
class WriterFrame : public testing::Test {
protected:
    WriterFrame();

    // Opens the document, reads up to the item and constructs the writer.
    void openDocument(const fakehost::ItemDocument& item);

    // Calls openDocument() and begins the message; host calls are recorded from here on.
    void begin(const fakehost::ItemDocument& item);

    // Reads up to and including the next opening tag.
    void enterElement();

    // Writes the item's elements and returns the progress values.
    std::vector<int> run();

    // Returns the entries added after the required ones.
    [[nodiscard]] std::vector<fakehost::PropertyEntry> added();

    [[nodiscard]] fakehost::StoredMessage message() const { return host.message(request.output); }

    // Constructs the writer on `request` and `archive`.
    virtual void makeWriter() = 0;
    // Returns the writer constructed last.
    virtual OLMMsgWriter& anyWriter() = 0;

    fakehost::FakeHost host;
    // Entries after the document's; to be set before the document is opened.
    std::vector<std::pair<std::string, fakehost::Bytes>> entries;
    SODOSPECIALARC request{};
    ArchiveDirectory* archive = nullptr;
    std::optional<OLMXMLParser> parser;
    int openBefore = 0; // handles that were open when begin() ended
};

// The frame of a writer of a class.
template <class Writer> class WriterTest : public WriterFrame {
protected:
    void makeWriter() override { writer = newWriter<Writer>(&request, archive); }
    OLMMsgWriter& anyWriter() override { return *writer; }

    std::unique_ptr<Writer> writer;
};

// The frame of a writer of any class: that of `kind`, which must be set first.
class AnyWriterTest : public WriterFrame {
protected:
    void makeWriter() override { writer = kind->writer(&request, archive); }
    OLMMsgWriter& anyWriter() override { return *writer; }

    const ItemKind* kind = nullptr;
    std::unique_ptr<OLMMsgWriter> writer;
};

// A writer with its common members open, and a switch that makes its entries fail.
template <class Writer> class OpenWriter : public Writer {
public:
    using Writer::Writer;

    using Writer::expectedProps;
    using Writer::handledProps;
    using Writer::namedProps;
    using Writer::properties;
    using Writer::recipientCount;
    using Writer::rootStorage;

    // Its type shows whether it was rethrown itself or as a copy.
    struct Refused : qor::Exception {
        explicit Refused(unsigned int code) : Exception(code, "refused", nullptr, nullptr, 0) {}
    };

    void addProperty(unsigned int tag, unsigned long long value) override {
        if (refusal.has_value() && refusedTag.value_or(tag) == tag) {
            throw Refused(*refusal);
        }
        Writer::addProperty(tag, value);
    }

    std::optional<unsigned int> refusal;    // code of the exception thrown instead of an entry
    std::optional<unsigned int> refusedTag; // the only tag refused; empty: all
};

// Names the instances of a test after the kinds of items in its table.
inline constexpr auto kindName = [](const auto& row) { return row.param.kind->name; };

// The text of an element and the number it becomes.
struct NumberCase {
    const char* name;
    const char* text;
    uint64_t value;

    friend void PrintTo(const NumberCase& row, std::ostream* out) { *out << row.name; }
};
class NumberTest : public testing::TestWithParam<NumberCase> {};

// Numbers of units around the size of the chunks in which text is copied.
inline constexpr size_t textLengths[] = {0, 1, 1023, 1024, 1025, 3000};

class TextLengthTest : public testing::TestWithParam<size_t> {
protected:
    const std::u16string text = fakehost::patternText(GetParam());
    const uint64_t size = 2 * GetParam() + 2; // of a string property with that text
};

#endif
