#ifndef OLMKIT_FILTER_STORAGE_OLMNODEWRITER_H
#define OLMKIT_FILTER_STORAGE_OLMNODEWRITER_H

#include <cstdint>

class OLMXMLParser;

// Writes one item to the output of a request.
//
// Order of calls: initilizeWriter() once, writeNode() until it returns 100, then finalizeNode(). A
// cancelled request ends without finalizeNode().
class OLMNodeWriter {
public:
    OLMNodeWriter() = default;
    OLMNodeWriter(const OLMNodeWriter&) = delete;
    OLMNodeWriter& operator=(const OLMNodeWriter&) = delete;

    // Prepares the output and the reader, which is before the item. The result is ignored.
    virtual unsigned int initilizeWriter(OLMXMLParser& parser) = 0;

    // Does one step and returns the progress: 100 ends the item. Other values, even negative ones,
    // do not.
    virtual int16_t writeNode(OLMXMLParser& parser) = 0;

    // Writes what was kept for the end of the item. The result is ignored.
    virtual unsigned int finalizeNode(OLMXMLParser& parser) = 0;

    virtual ~OLMNodeWriter() = default;
};

#endif
