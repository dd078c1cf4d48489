#ifndef OLMKIT_FILTER_WRITERS_OLMMSGNOTEWRITER_H
#define OLMKIT_FILTER_WRITERS_OLMMSGNOTEWRITER_H

#include "filter/storage/OLMMsgWriter.h"

// Turns one note into a message of class IPM.StickyNote.
class OLMMsgNoteWriter : public OLMMsgWriter {
public:
    using OLMMsgWriter::OLMMsgWriter;

    ~OLMMsgNoteWriter() override = default;

    // 0. Throws qor::Exception: ErrTagTable for a refused table, and what the base throws.
    unsigned int initilizeWriter(OLMXMLParser& parser) override;

    // Takes the category list.
    bool handlePropSpecial(OLMXMLTag& tag, OLMXMLParser& parser) override;

    // Adds colour, height, width, left and top, which no element sets.
    void setNoteDefaults();
};

#endif
