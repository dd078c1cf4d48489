#ifndef OLMKIT_FILTER_WRITERS_CONTACTADDRPARTINDEX_H
#define OLMKIT_FILTER_WRITERS_CONTACTADDRPARTINDEX_H

#include <cstdint>

// The parts of the two addresses of a contact, in the order in which a whole address lists them.
enum ContactAddrPartIndex : uint32_t {
    BusinessStreet = 0,
    BusinessCity = 1,
    BusinessState = 2,
    BusinessPostalCode = 3,
    BusinessCountry = 4, // never set: whole addresses have no country
    HomeStreet = 5,
    HomeCity = 6,
    HomeState = 7,
    HomePostalCode = 8,
    HomeCountry = 9, // as above
};

inline constexpr int contactAddrPartCount = 10;

#endif
