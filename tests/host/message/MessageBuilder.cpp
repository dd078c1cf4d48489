#include "MessageBuilder.h"

#include "tests/host/compound/CompoundFiles.h"

namespace olmhost::test {

namespace {

constexpr const char16_t* propertyStream = u"__properties_version1.0";
constexpr std::size_t messageHeader = 32; // bytes
constexpr std::size_t partHeader = 8;

void fill(HostStream* storage, const Part& part) {
    if (part.hasProperties) {
        const Bytes header(part.isMessage ? messageHeader : partHeader);
        addStream(storage, propertyStream, header + part.entries);
    }
    for (const auto& [name, bytes] : part.streams) {
        addStream(storage, name, bytes);
    }
    for (const auto& [name, child] : part.storages) {
        HostStream* inner = createStorage(storage, name);
        fill(inner, child);
        close(inner);
    }
}

} // namespace

Bytes hex(std::string_view digits) {
    Bytes bytes;
    std::string pair;
    for (const char digit : digits) {
        if (digit != ' ') {
            pair += digit;
        }
        if (pair.size() == 2) {
            bytes.push_back(static_cast<std::byte>(std::stoul(pair, nullptr, 16)));
            pair.clear();
        }
    }
    return bytes;
}

Bytes utf16(std::u16string_view text) {
    Bytes bytes;
    for (const char16_t unit : text) {
        bytes.push_back(static_cast<std::byte>(unit & 0xFF));
        bytes.push_back(static_cast<std::byte>(unit >> 8));
    }
    return bytes;
}

Bytes operator+(Bytes left, const Bytes& right) {
    left.insert(left.end(), right.begin(), right.end());
    return left;
}

Bytes number(std::uint64_t value, std::size_t size) {
    Bytes bytes;
    for (std::size_t i = 0; i < size; ++i) {
        bytes.push_back(static_cast<std::byte>(value >> (8 * i)));
    }
    return bytes;
}

Part& Part::add(std::uint32_t tag, std::uint64_t field) {
    entries = entries + number(tag, 4) + number(6, 4) + number(field, 8);
    return *this;
}

Part& Part::add(std::uint32_t tag, const Bytes& value) {
    streams[streamName(tag)] = value;
    return add(tag, value.size());
}

std::u16string streamName(std::uint32_t tag) {
    constexpr std::u16string_view digits = u"0123456789ABCDEF";
    std::u16string name = u"__substg1.0_";
    for (int shift = 28; shift >= 0; shift -= 4) {
        name += digits[tag >> shift & 0xF];
    }
    return name;
}

Bytes fileOf(const Part& message) {
    MemorySink sink;
    CompoundOutput output(sink);
    HostStream* root = createRoot(output);
    fill(root, message);
    close(root);
    return sink.bytes;
}

} // namespace olmhost::test
