#ifndef OLMKIT_TESTS_FAKEHOST_ITEMDOCUMENT_H
#define OLMKIT_TESTS_FAKEHOST_ITEMDOCUMENT_H

#include <cstdint>
#include <string>
#include <vector>

#include "tests/fakehost/Text.h"

namespace fakehost {

// One attribute as the reader hands it out. Lengths are told unless the script says otherwise, and
// then there is no 0 unit behind the text.
struct ScriptedAttribute {
    std::u16string name;
    std::u16string value;
    bool nameIsTerminated = false;  // length UTXML_COUNT_IT, a 0 unit behind the text
    bool valueIsTerminated = false; // as above
    bool nameIsNull = false;        // a null pointer
    bool valueIsNull = false;       // as above
};

// The answer to one UTXMLReadContent: `units` go into the buffer as far as it has room, `status`
// and `count` are given back as they stand.
struct ScriptedRead {
    int16_t status = 0;
    uint32_t count = 0;
    std::u16string units;
};

// One step of a document, as the reader meets it.
struct ReaderEvent {
    enum class Kind {
        Open,  // an opening tag
        Close, // a closing tag
        Text,  // all the text behind an opening tag
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
// Every element is an opening and a closing tag. What is open at the end of the script is closed
// by itself, unless the script ends in breakOff() or was cut by cutAfter().
class ItemDocument {
public:
    // A document with that root element.
    explicit ItemDocument(const std::string& root);
    // A document without any tag: the first read finds its end.
    ItemDocument() = default;

    // An opening tag. Elements that follow lie inside it until close().
    ItemDocument& open(const std::string& name);
    // The closing tag of the innermost open element.
    ItemDocument& close();
    // Text behind the opening tag just scripted. Empty text scripts nothing.
    ItemDocument& text(const Text& text);
    // Text whose reads are answered one by one from `reads`; after the last, the text is at its
    // end.
    ItemDocument& reads(std::vector<ScriptedRead> reads);
    // A whole element; without text it is as a self-closed one.
    ItemDocument& element(const std::string& name);
    ItemDocument& element(const std::string& name, const Text& text);
    // One more attribute of the opening tag scripted last, also when it is closed already.
    ItemDocument& attribute(const Text& name, const Text& value);
    ItemDocument& attribute(ScriptedAttribute attribute);
    // The document is broken here: negative statuses for ever, and nothing is closed by itself.
    ItemDocument& breakOff();

    // The same document, broken behind its first `count` events.
    [[nodiscard]] ItemDocument cutAfter(size_t count) const;

    // Number of events(), so that a test can cut after each of them.
    [[nodiscard]] size_t eventCount() const;
    // The script with all that is open closed.
    [[nodiscard]] std::vector<ReaderEvent> events() const;

private:
    ReaderEvent& lastOpening();

    std::vector<ReaderEvent> script;
    std::vector<std::string> openNames;
    bool isBroken = false;
};

// A document with that root and nothing in it.
ItemDocument document(const std::string& root);

// One item of each kind, its element open inside the document's root: mail().element(...).
ItemDocument mail();
ItemDocument appointment();
ItemDocument contact();
ItemDocument task();
ItemDocument note();
ItemDocument group();

} // namespace fakehost

#endif
