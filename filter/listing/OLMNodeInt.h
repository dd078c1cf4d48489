#ifndef OLMKIT_FILTER_LISTING_OLMNODEINT_H
#define OLMKIT_FILTER_LISTING_OLMNODEINT_H

class OLMXMLParser;

// Reads one item of a document and writes it as a row of the listing.
class OLMNodeInt {
public:
    OLMNodeInt() = default;
    OLMNodeInt(const OLMNodeInt&) = delete;
    OLMNodeInt& operator=(const OLMNodeInt&) = delete;

    // Reads the next item. Returns 1, or 0 when no item is left. Called once.
    virtual unsigned short parseNode(OLMXMLParser& parser) = 0;

    // Writes the row; `itemNumber` is the item's number in its document, from 1. Returns the host's
    // answer to the break after the row.
    virtual unsigned short translateNode(unsigned int itemNumber) = 0;

    virtual ~OLMNodeInt() = default;
};

#endif
