#ifndef OLMKIT_FILTER_STORAGE_OLMNODEWRITER_H
#define OLMKIT_FILTER_STORAGE_OLMNODEWRITER_H

#include <cstdint>

class OLMXMLParser;

// Writes one item to the output of a request.
//
// Order of calls: initilizeWriter() once, writeNode() until it gives 100, then finalizeNode(). A
// request that is cancelled ends without finalizeNode().
class OLMNodeWriter {
public:
    OLMNodeWriter() = default;
    OLMNodeWriter(const OLMNodeWriter&) = delete;
    OLMNodeWriter& operator=(const OLMNodeWriter&) = delete;

    // Prepares output and reader, which stands ahead of the item. Nobody looks at the result.
    virtual unsigned int initilizeWriter(OLMXMLParser& parser) = 0;

    // Does one step and gives the progress: exactly 100 ends the item, any other value, also a
    // negative one, goes on.
    virtual int16_t writeNode(OLMXMLParser& parser) = 0;

    // Writes what was held back. Nobody looks at the result.
    virtual unsigned int finalizeNode(OLMXMLParser& parser) = 0;

    virtual ~OLMNodeWriter() = default;
};

#endif
