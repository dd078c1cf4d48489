#include "filter/writers/OLMMsgNoteWriter.h"

#include "filter/writers/OLMMsgNoteTags.h"

namespace {

struct NoteDefault {
    unsigned int key; // propTag of the named property
    uint32_t value;
};

// clang-format off
constexpr NoteDefault noteDefaults[] = {
    {0x8B000003, 3},   // colour
    {0x8B030003, 166}, // height
    {0x8B020003, 200}, // width
    {0x8B040003, 80},  // left
    {0x8B050003, 80},  // top
};
// clang-format on

} // namespace

unsigned int OLMMsgNoteWriter::initilizeWriter(OLMXMLParser& parser) {
    beginMessage(parser, noteTags, "IPM.StickyNote");
    setNoteDefaults();
    return 0;
}

bool OLMMsgNoteWriter::handlePropSpecial(OLMXMLTag& tag, OLMXMLParser& parser) {
    if (tag.id() != NoteCategories) {
        return OLMMsgWriter::handlePropSpecial(tag, parser);
    }
    handleCategories(parser, NoteCategories);
    return true;
}

void OLMMsgNoteWriter::setNoteDefaults() {
    for (const NoteDefault& entry : noteDefaults) {
        addProperty(namedProps.mapNamedProp(entry.key), entry.value);
    }
}
