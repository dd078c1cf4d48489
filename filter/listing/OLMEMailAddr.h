#ifndef OLMKIT_FILTER_LISTING_OLMEMAILADDR_H
#define OLMKIT_FILTER_LISTING_OLMEMAILADDR_H

#include <cstdint>

#include "filter/core/WString.h"

// One address with its display name. Only the address goes into a listing.
// It is always destroyed by its exact type.
// NOLINTNEXTLINE(cppcoreguidelines-virtual-class-destructor)
class OLMEMailAddr final {
public:
    // Each replaces the text by a copy of `text`, which ends at its first 0 unit. Null empties it.
    virtual void setAddress(const uint16_t* text);
    virtual void setName(const uint16_t* text);
    virtual void setType(int newType);

    // Return the terminated text, never null and valid until it changes, or its length in units.
    virtual const uint16_t* getAddress() const;
    virtual int64_t getAddressLen() const;
    virtual const uint16_t* getName() const;
    virtual int64_t getNameLen() const;
    virtual int getType() const;

    // Empty the texts and keep their memory.
    virtual void clearAddress();
    virtual void clearName();
    virtual void clear();

    // Writes the address to the open cell of `proc` (a PROC) and returns the host's answer; an
    // empty address is left out and returns 0. The host gets the length modulo 65,536.
    virtual int outputToChunker(void* proc);

    // Does nothing and returns 0.
    virtual int outputToFile(void* file);

private:
    qor::WString address;
    qor::WString name;
    int type; // without a value until setType()
};

#endif
