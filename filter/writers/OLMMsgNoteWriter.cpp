#include "filter/writers/OLMMsgNoteWriter.h"

#include "filter/storage/MapiNamedPropKey.h"
#include "filter/writers/OLMMsgNoteTags.h"

namespace {

struct NoteDefault {
    MapiNamedPropKey key;
    uint32_t value;
};

// clang-format off
constexpr NoteDefault noteDefaults[] = {
    {PidLidNoteColor,  3}, // yellow
    {PidLidNoteHeight, 166},
    {PidLidNoteWidth,  200},
    {PidLidNoteX,      80},
    {PidLidNoteY,      80},
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
