#ifndef OLMKIT_TESTS_UNIT_CORE_INDEXERROR_H
#define OLMKIT_TESTS_UNIT_CORE_INDEXERROR_H

#include <string>

#include "filter/core/Exception.h"

// Returns the message of what a call threw, after its code unless that is the code of a bound.
template <class Call> std::string indexErrorOf(Call call) {
    try {
        call();
    } catch (const qor::Exception& thrown) {
        const std::string message = thrown.message() != nullptr ? thrown.message() : "(null)";
        return thrown.code == qor::errorIndex ? message
                                              : std::to_string(thrown.code) + ": " + message;
    }
    return "nothing thrown";
}

#endif
