#ifndef OLMKIT_FILTER_WRITERS_OLMMSGNOTEWRITER_H
#define OLMKIT_FILTER_WRITERS_OLMMSGNOTEWRITER_H

#include "filter/storage/OLMMsgWriter.h"

// Writes one note as a message of class IPM.StickyNote ([MS-OXONOTE]).
class OLMMsgNoteWriter : public OLMMsgWriter {
public:
    using OLMMsgWriter::OLMMsgWriter;

    ~OLMMsgNoteWriter() override = default;

    // Returns 0. Throws qor::Exception ErrTagTable when the reader refuses the table, and what the
    // base class throws.
    unsigned int initilizeWriter(OLMXMLParser& parser) override;

    // Handles the category list.
    bool handlePropSpecial(OLMXMLTag& tag, OLMXMLParser& parser) override;

    // Adds color, height, width and position, which no element sets.
    void setNoteDefaults();
};

#endif
