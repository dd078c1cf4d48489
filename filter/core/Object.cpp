#include "filter/core/Object.h"

#include <cxxabi.h>

#include <cstdint>
#include <cstdlib>
#include <memory>
#include <typeinfo>

#include "filter/core/String.h"

namespace qor {

int Object::hashCode() const {
    const auto address = reinterpret_cast<uintptr_t>(this);
    const auto* bytes = reinterpret_cast<const unsigned char*>(&address);
    return static_cast<int>(hashdata(bytes, sizeof address) & 0x7FFFFFFFU);
}

bool Object::equals(const Object& other) const {
    return this == &other;
}

String Object::toString() const {
    const std::string text = std::string(className().value()) + "@" + std::to_string(hashCode());
    return String(text.c_str());
}

String Object::className(const Object& object) const {
    const char* mangled = typeid(object).name();
    int status = 0;
    const std::unique_ptr<char, decltype(&std::free)> plain(
        abi::__cxa_demangle(mangled, nullptr, nullptr, &status), &std::free);
    return String(status == 0 ? plain.get() : mangled);
}

String Object::className() const {
    return className(*this);
}

unsigned int Object::hashdata(const unsigned char* bytes, unsigned int count) {
    uint32_t hash = 0x811C9DC5;
    for (unsigned int i = 0; i < count; ++i) {
        hash = (hash ^ bytes[i]) * 0x01000193;
    }
    return hash;
}

} // namespace qor
