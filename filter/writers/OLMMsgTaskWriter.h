#ifndef OLMKIT_FILTER_WRITERS_OLMMSGTASKWRITER_H
#define OLMKIT_FILTER_WRITERS_OLMMSGTASKWRITER_H

#include "filter/writers/OLMMsgRecurringWriter.h"

// Turns one task into a message of class IPM.Task.
//
// No element tells the status: a date of completion, and nothing else, makes a task complete. The
// recurrence takes as the task's end whichever stands later, the due date or that of completion.
class OLMMsgTaskWriter : public OLMMsgRecurringWriter {
public:
    using OLMMsgRecurringWriter::OLMMsgRecurringWriter;

    ~OLMMsgTaskWriter() override = default;

    // 0. Throws qor::Exception: ErrTagTable for a refused table, and what the base throws.
    unsigned int initilizeWriter(OLMXMLParser& parser) override;

    // Takes the categories, the recurrence and the dates that are named properties.
    bool handlePropSpecial(OLMXMLTag& tag, OLMXMLParser& parser) override;

protected:
    // Adds the date as the named property `tag`; text that is none, the empty text too, is time 0.
    void handleNamedTaskDate(unsigned int tag, const qor::WString& text);

    // Adds what marks a task as complete.
    void handleTaskCompletion();

    void parseAndWriteRecur(OLMXMLParser& parser) override;
};

#endif
