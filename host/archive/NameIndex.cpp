#include "host/archive/NameIndex.h"

#include <algorithm>

#include "host/archive/NameText.h"

namespace olmhost {

namespace {

bool isFile(std::string_view name) {
    return !name.empty() && name.back() != '/';
}

std::uint32_t hashOf(std::string_view text) {
    return static_cast<std::uint32_t>(std::hash<std::string_view>{}(text));
}

// Returns the name as archives write names.
std::string withPlainSlashes(std::string_view name) {
    std::string plain(name);
    std::replace(plain.begin(), plain.end(), '\\', '/');
    if (plain.starts_with("./")) {
        plain.erase(0, 2);
    } else if (plain.starts_with('/')) {
        plain.erase(0, 1);
    }
    return plain;
}

// Sorts by hash, name and row, and keeps the first row of each name.
template <typename Keys, typename NameOf> void arrange(Keys& keys, NameOf nameOf) {
    std::sort(keys.begin(), keys.end(), [&](const auto& left, const auto& right) {
        if (left.hash != right.hash) {
            return left.hash < right.hash;
        }
        const int order = left.row == right.row ? 0 : nameOf(left.row).compare(nameOf(right.row));
        return order != 0 ? order < 0 : left.row < right.row;
    });
    const auto repeated =
        std::unique(keys.begin(), keys.end(), [&](const auto& left, const auto& right) {
            return left.hash == right.hash && nameOf(left.row) == nameOf(right.row);
        });
    keys.erase(repeated, keys.end());
    keys.shrink_to_fit();
}

template <typename Row, typename Keys, typename NameOf>
std::optional<Row> lookUp(const Keys& keys, std::string_view name, NameOf nameOf) {
    const std::uint32_t hash = hashOf(name);
    const auto place = std::partition_point(keys.begin(), keys.end(), [&](const auto& key) {
        return key.hash != hash ? key.hash < hash : nameOf(key.row) < name;
    });
    if (place == keys.end() || place->hash != hash || nameOf(place->row) != name) {
        return std::nullopt;
    }
    return place->row;
}

} // namespace

std::optional<NameIndex::Row> NameIndex::find(std::string_view name) {
    auto row = findAsWritten(name);
    if (row) {
        return row;
    }
    const std::string plain = withPlainSlashes(name);
    row = plain == name ? std::nullopt : findAsWritten(plain);
    return row ? row : findComposed(composedForm(plain));
}

std::optional<NameIndex::Row> NameIndex::findAsWritten(std::string_view name) {
    if (!asWritten.isBuilt) {
        buildAsWritten();
    }
    return lookUp<Row>(asWritten.keys, name, nameOfRow);
}

// Returns the first file with this composed name, whether it is written so or not.
std::optional<NameIndex::Row> NameIndex::findComposed(std::string_view name) {
    if (!composed.isBuilt) {
        buildComposed();
    }
    const auto written = findAsWritten(name);
    const auto other =
        lookUp<Row>(composed.keys, name, [this](Row row) { return composedForm(nameOfRow(row)); });
    return written && other ? std::min(written, other) : (written ? written : other);
}

void NameIndex::buildAsWritten() {
    for (Row row = 0; row < rowCount; ++row) {
        const std::string_view name = nameOfRow(row);
        if (isFile(name)) {
            asWritten.keys.push_back({hashOf(name), row});
        }
    }
    arrange(asWritten.keys, nameOfRow);
    asWritten.isBuilt = true;
}

void NameIndex::buildComposed() {
    for (Row row = 0; row < rowCount; ++row) {
        const std::string_view name = nameOfRow(row);
        if (!isFile(name) || isAscii(name)) {
            continue;
        }
        const std::string form = composedForm(name);
        if (form != name) {
            composed.keys.push_back({hashOf(form), row});
        }
    }
    arrange(composed.keys, [this](Row row) { return composedForm(nameOfRow(row)); });
    composed.isBuilt = true;
}

} // namespace olmhost
