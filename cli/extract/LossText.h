#ifndef OLMKIT_CLI_EXTRACT_LOSSTEXT_H
#define OLMKIT_CLI_EXTRACT_LOSSTEXT_H

#include <cstdint>
#include <string>

#include "host/stream/MemberRead.h"

namespace olmkit {

// The module's result for a place at which no item can be.
inline constexpr std::int32_t resultNoItem = 15;

// What was lost of an attachment whose reading met a fault, for people.
std::string attachmentLoss(const olmhost::MemberRead& member);

} // namespace olmkit

#endif
