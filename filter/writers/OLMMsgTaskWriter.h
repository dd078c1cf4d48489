#ifndef OLMKIT_FILTER_WRITERS_OLMMSGTASKWRITER_H
#define OLMKIT_FILTER_WRITERS_OLMMSGTASKWRITER_H

#include "filter/writers/OLMMsgRecurringWriter.h"

// Writes one task as a message of class IPM.Task ([MS-OXOTASK]).
//
// No element contains the status: a task is complete when it has a date of completion. The end of
// the task, for its recurrence, is the due date or the date of completion, whichever comes last in
// the document.
class OLMMsgTaskWriter : public OLMMsgRecurringWriter {
public:
    using OLMMsgRecurringWriter::OLMMsgRecurringWriter;

    ~OLMMsgTaskWriter() override = default;

    // Returns 0. Throws qor::Exception ErrTagTable when the reader refuses the table, and what the
    // base class throws.
    unsigned int initilizeWriter(OLMXMLParser& parser) override;

    // Handles the categories, the recurrence and the dates that are named properties.
    bool handlePropSpecial(OLMXMLTag& tag, OLMXMLParser& parser) override;

protected:
    // Adds the date as the named property `key`, a MapiNamedPropKey. Text that is not a date, even
    // an empty one, is the time 0.
    void handleNamedTaskDate(unsigned int key, const qor::WString& text);

    // Adds the properties of a complete task.
    void handleTaskCompletion();

    void parseAndWriteRecur(OLMXMLParser& parser) override;
};

#endif
