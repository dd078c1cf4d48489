#ifndef OLMKIT_TESTS_FAKEHOST_ITEMDOCUMENT_H
#define OLMKIT_TESTS_FAKEHOST_ITEMDOCUMENT_H

#include <cstdint>
#include <string>
#include <vector>

#include "tests/fakehost/Text.h"

namespace fakehost {

// One attribute as the reader returns it. Its texts have a length and no terminator unless the
// script says otherwise.
struct ScriptedAttribute {
    std::u16string name;
    std::u16string value;
    bool nameIsTerminated = false;  // length UTXML_COUNT_IT, a 0 unit after the text
    bool valueIsTerminated = false; // likewise
    bool nameIsNull = false;        // a null pointer
    bool valueIsNull = false;       // likewise
};

// The answer to one UTXMLReadContent: `units` go into the buffer as far as it has room, `status`
// and `count` are returned unchanged.
struct ScriptedRead {
    int16_t status = 0;
    uint32_t count = 0;
    std::u16string units;
};

// One step of a document, as the reader sees it.
struct ReaderEvent {
    enum class Kind {
        Open,  // an opening tag
        Close, // a closing tag
        Text,  // all the text after an opening tag
        Fault  // the document is broken from here on
    };

    Kind kind = Kind::Fault;
    std::string name;                          // Open and Close
    std::vector<ScriptedAttribute> attributes; // Open
    std::u16string text;                       // Text
    std::vector<ScriptedRead> reads;           // Text: answers one by one instead of `text`
};

// Scripts the reader's events of one document:
//
//     document("notes").open("note").element("OPFNoteCopyTitle", "Tide table").close()
//
// Every element is an opening and a closing tag. Elements still open at the end of the script are
// closed automatically, unless the script ends in breakOff() or was cut by cutAfter().
class ItemDocument {
public:
    // A document with this root element.
    explicit ItemDocument(const std::string& root);
    // A document without tags: the first read finds its end.
    ItemDocument() = default;

    // Adds an opening tag. Elements that follow are inside it until close().
    ItemDocument& open(const std::string& name);
    // Adds the closing tag of the innermost open element.
    ItemDocument& close();
    // Adds text after the opening tag just added. Empty text adds nothing.
    ItemDocument& text(const Text& text);
    // Adds text whose reads are answered one by one from `reads`; after the last, the text is at
    // its end.
    ItemDocument& reads(std::vector<ScriptedRead> reads);
    // Adds a whole element; without text it is like a self-closed one.
    ItemDocument& element(const std::string& name);
    ItemDocument& element(const std::string& name, const Text& text);
    // Adds an attribute to the opening tag added last, even when it is closed already.
    ItemDocument& attribute(const Text& name, const Text& value);
    ItemDocument& attribute(ScriptedAttribute attribute);
    // Breaks the document here: negative statuses from now on, and nothing is closed.
    ItemDocument& breakOff();

    // Returns the same document, broken after its first `count` events.
    [[nodiscard]] ItemDocument cutAfter(size_t count) const;

    // Returns the number of events(), so that a test can cut after each of them.
    [[nodiscard]] size_t eventCount() const;
    // Returns the script with everything closed.
    [[nodiscard]] std::vector<ReaderEvent> events() const;

private:
    ReaderEvent& lastOpening();

    std::vector<ReaderEvent> script;
    std::vector<std::string> openNames;
    bool isBroken = false;
};

// Returns a document with this root and nothing in it.
ItemDocument document(const std::string& root);

// Return an item of each kind, its element open inside the document's root: mail().element(...).
ItemDocument mail();
ItemDocument appointment();
ItemDocument contact();
ItemDocument task();
ItemDocument note();
ItemDocument group();

} // namespace fakehost

#endif
