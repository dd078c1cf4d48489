#ifndef OLMKIT_FILTER_LISTING_OLMEMAILADDR_H
#define OLMKIT_FILTER_LISTING_OLMEMAILADDR_H

#include <cstdint>

#include "filter/core/WString.h"

// One address with its display name. Only the address goes into a listing.
// It is always destroyed by its exact type.
// NOLINTNEXTLINE(cppcoreguidelines-virtual-class-destructor)
class OLMEMailAddr final {
public:
    // Replace the text by a copy of `text`, which ends at its first 0 unit. Null empties it.
    virtual void setAddress(const uint16_t* text);
    virtual void setName(const uint16_t* text);
    virtual void setType(int newType);

    // Terminated text, never null, valid until the next change; its length in units.
    virtual const uint16_t* getAddress() const;
    virtual int64_t getAddressLen() const;
    virtual const uint16_t* getName() const;
    virtual int64_t getNameLen() const;
    virtual int getType() const;

    // Empty the texts, keeping their memory.
    virtual void clearAddress();
    virtual void clearName();
    virtual void clear();

    // Puts the address into the open cell of `proc` (a PROC) and gives the host's answer; an
    // empty one is left out and gives 0. The length goes out modulo 65,536.
    virtual int outputToChunker(void* proc);

    // Does nothing and gives 0.
    virtual int outputToFile(void* file);

private:
    qor::WString address;
    qor::WString name;
    int type; // without a value until setType()
};

#endif
