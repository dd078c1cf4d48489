#ifndef OLMKIT_FILTER_LISTING_OLMNODEINT_H
#define OLMKIT_FILTER_LISTING_OLMNODEINT_H

class OLMXMLParser;

// Reads one item of a document and writes it out as a row.
class OLMNodeInt {
public:
    OLMNodeInt() = default;
    OLMNodeInt(const OLMNodeInt&) = delete;
    OLMNodeInt& operator=(const OLMNodeInt&) = delete;

    // Reads the item that comes next: 1, or 0 when none is left. Called once.
    virtual unsigned short parseNode(OLMXMLParser& parser) = 0;

    // Writes the row; `itemNumber` is the item's place in its document, from 1. Gives the host's
    // answer to the break behind the row.
    virtual unsigned short translateNode(unsigned int itemNumber) = 0;

    virtual ~OLMNodeInt() = default;
};

#endif
