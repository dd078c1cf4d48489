#ifndef OLMKIT_FILTER_LISTING_ADDRESSATTRIBUTES_H
#define OLMKIT_FILTER_LISTING_ADDRESSATTRIBUTES_H

#include <string_view>

#include "filter/listing/OLMEMailAddr.h"
#include "filter/xml/OLMXMLTag.h"

// Takes an address and its name from the attributes of these names. One that is present and empty
// empties its text, one that is missing leaves it.
inline void takeAddress(const OLMXMLTag& tag, std::string_view addressName,
                        std::string_view displayName, OLMEMailAddr& address) {
    if (const OLMXMLAttribute* found = tag.findAttribute(addressName)) {
        address.setAddress(found->value.value());
    }
    if (const OLMXMLAttribute* found = tag.findAttribute(displayName)) {
        address.setName(found->value.value());
    }
}

#endif
