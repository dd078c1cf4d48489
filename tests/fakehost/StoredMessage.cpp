#include "tests/fakehost/StoredMessage.h"

#include <cstdio>
#include <ostream>

#include <gtest/gtest.h>

namespace fakehost {

namespace {

constexpr size_t entrySize = 16;

const StoredMessage::Node* find(const std::vector<StoredMessage::Node>& nodes,
                                const std::string& path) {
    for (const StoredMessage::Node& node : nodes) {
        if (node.path == path) {
            return &node;
        }
    }
    return nullptr;
}

} // namespace

void PrintTo(const PropertyEntry& entry, std::ostream* out) {
    char text[80];
    std::snprintf(text, sizeof text, "{0x%08X, flags %u, 0x%llX}", entry.tag, entry.flags,
                  static_cast<unsigned long long>(entry.value));
    *out << text;
}

std::vector<std::string> StoredMessage::paths() const {
    std::vector<std::string> all;
    for (const Node& node : nodes) {
        all.push_back(node.path);
    }
    return all;
}

std::vector<std::string> StoredMessage::names(const std::string& storage) const {
    const std::string prefix = storage.empty() ? "" : storage + "/";
    std::vector<std::string> found;
    for (const Node& node : nodes) {
        if (node.path.starts_with(prefix) &&
            node.path.find('/', prefix.size()) == std::string::npos) {
            found.push_back(node.path.substr(prefix.size()));
        }
    }
    return found;
}

bool StoredMessage::has(const std::string& path) const {
    return find(nodes, path) != nullptr;
}

Bytes StoredMessage::stream(const std::string& path) const {
    const Node* node = find(nodes, path);
    if (node == nullptr || node->isStorage) {
        ADD_FAILURE() << "there is no stream " << path << " in " << testing::PrintToString(*this);
        return {};
    }
    return node->bytes;
}

std::vector<PropertyEntry> StoredMessage::entries(const std::string& path,
                                                  size_t headerSize) const {
    const Bytes bytes = stream(path);
    if (bytes.size() < headerSize || (bytes.size() - headerSize) % entrySize != 0) {
        ADD_FAILURE() << path << " does not hold whole entries: " << testing::PrintToString(bytes);
    }
    std::vector<PropertyEntry> found;
    for (size_t at = headerSize; at + entrySize <= bytes.size(); at += entrySize) {
        found.push_back({bytes.dword(at), bytes.dword(at + 4), bytes.qword(at + 8)});
    }
    return found;
}

std::vector<PropertyEntry> StoredMessage::subEntries(const std::string& storage) const {
    return entries(storage + "/__properties_version1.0", 8);
}

void PrintTo(const StoredMessage& message, std::ostream* out) {
    *out << "a message" << (message.hasRoot() ? "" : " without root")
         << (message.isRootClosed() ? ", closed" : ", not closed");
    for (const StoredMessage::Node& node : message.nodes) {
        *out << "\n  " << node.path;
        if (!node.isStorage) {
            *out << "  ";
            PrintTo(node.bytes, out);
        }
    }
}

} // namespace fakehost
