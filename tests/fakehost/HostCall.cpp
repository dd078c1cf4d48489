#include "tests/fakehost/HostCall.h"

#include <cstdio>
#include <ostream>

namespace fakehost {

std::string HostCall::name() const {
    return text.substr(0, text.find('('));
}

void PrintTo(const HostCall& call, std::ostream* out) {
    *out << call.text;
}

std::string number(uint64_t value) {
    if (value < 1000) {
        return std::to_string(value);
    }
    char digits[24];
    std::snprintf(digits, sizeof digits, "0x%llX", static_cast<unsigned long long>(value));
    return digits;
}

} // namespace fakehost
