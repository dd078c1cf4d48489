#include "host/check/PropertyValueChecker.h"

#include <algorithm>
#include <array>
#include <tuple>

#include "host/check/StreamCursor.h"
#include "host/compound/FieldReader.h"

namespace olmhost {

namespace {

constexpr std::uint32_t sizeOfObject = 0xFFFFFFFF;

// Bytes that the size of a text counts without being in its stream.
constexpr std::uint32_t wideTerminator = 2;
constexpr std::uint32_t narrowTerminator = 1;

// Bytes of one record in the length stream of a list.
constexpr std::size_t textRecordSize = 4;
constexpr std::size_t binaryRecordSize = 8;

} // namespace

void PropertyValueChecker::check() {
    std::ranges::sort(entries, [](const PropertyEntry& left, const PropertyEntry& right) {
        return std::tie(left.tag, left.order) < std::tie(right.tag, right.order);
    });
    checkTwice();
    checkValues();
}

void PropertyValueChecker::add(FindingCode code, std::uint32_t tag, const std::string& text) {
    findings.add(code, path, "property " + hexText(tag) + " " + text);
}

void PropertyValueChecker::checkTwice() {
    for (std::size_t i = 1; i < entries.size(); ++i) {
        const std::uint32_t tag = entries[i].tag;
        const std::uint32_t before = entries[i - 1].tag;
        const bool isFirstPair = i == 1 || entries[i - 2].tag != tag;
        if (tag == before && isFirstPair) {
            add(FindingCode::PropertyTwice, tag, "occurs more than once");
        } else if (tag != before && tag >> 16 == before >> 16) {
            add(FindingCode::PropertyIdTwice, tag, "also occurs as " + hexText(before));
        }
    }
}

// Goes through properties and values side by side; both are in the order of their tags. Of a
// property that is there more than once the last entry counts, since its value came last.
void PropertyValueChecker::checkValues() {
    std::size_t first = 0;
    const Values all = contents.values;
    for (std::size_t i = 0; i < entries.size(); ++i) {
        const PropertyEntry& entry = entries[i];
        if (i + 1 < entries.size() && entries[i + 1].tag == entry.tag) {
            continue;
        }
        for (; first < all.size() && all[first].tag < entry.tag; ++first) {
            addStray(all[first]);
        }
        const std::size_t start = first;
        while (first < all.size() && all[first].tag == entry.tag) {
            ++first;
        }
        checkProperty(entry, all.subspan(start, first - start));
    }
    for (; first < all.size(); ++first) {
        addStray(all[first]);
    }
}

// `values` are the streams that have the property's tag in their names.
void PropertyValueChecker::checkProperty(const PropertyEntry& entry, Values values) {
    const TypeRow* row = findType(entry.type());
    if (row == nullptr) {
        return;
    }
    if (row->isInEntry && !entry.isList()) {
        if (!values.empty()) {
            add(FindingCode::ValueOfFixedType, entry.tag,
                "has its value in its entry, and a stream, too");
        }
        return;
    }
    if (values.empty() || values.front().isListValue) {
        add(FindingCode::ValueMissing, entry.tag, "has no stream");
        return;
    }
    checkStream(entry, *row, values.front());
    if (entry.isList() && row->size == 0) {
        checkList(entry, *row, values);
    } else {
        std::ranges::for_each(values.subspan(1), [&](const ValueChild& value) { addStray(value); });
    }
}

void PropertyValueChecker::checkStream(const PropertyEntry& entry, const TypeRow& row,
                                       const ValueChild& stream) {
    if (row.type == PtypObject) {
        checkObject(entry, stream);
        return;
    }
    const std::uint64_t size = compound.streamSize(stream.id);
    const bool isSingle = !entry.isList();
    std::uint64_t stated = size;
    if (isSingle && row.type == PtypString) {
        stated += wideTerminator;
    } else if (isSingle && row.type == PtypString8) {
        stated += narrowTerminator;
    }
    if (entry.size != stated) {
        add(FindingCode::ValueSize, entry.tag,
            "states a size of " + std::to_string(entry.size) + ", and its stream has " +
                counted(size, "byte"));
    }
    if (isSingle && row.type == PtypString && size % 2 != 0) {
        add(FindingCode::TextSize, entry.tag, "ends in half a character");
    }
    if (isSingle && row.type == PtypGuid && size != row.size) {
        add(FindingCode::GuidSize, entry.tag, "is a GUID of " + counted(size, "byte"));
    }
    if (!isSingle && row.size != 0 && size % row.size != 0) {
        add(FindingCode::ListSize, entry.tag,
            "has " + counted(size, "byte") + ", not a multiple of the " + std::to_string(row.size) +
                " of each value");
    }
}

// Of an object the entry doesn't say the size (MS-OXMSG 2.4.2.2).
void PropertyValueChecker::checkObject(const PropertyEntry& entry, const ValueChild& value) {
    if (entry.size != sizeOfObject) {
        add(FindingCode::ObjectSize, entry.tag,
            "is an object and states a size of " + std::to_string(entry.size));
    }
    if (compound.entries().record(value.id).isStream()) {
        add(FindingCode::ChildKind, entry.tag, "is an object in a stream, not in a storage");
    }
}

// A stream with the size of each value, and a stream for each (MS-OXMSG 2.1.4.2).
void PropertyValueChecker::checkList(const PropertyEntry& entry, const TypeRow& row,
                                     Values values) {
    const ValueChild& lengths = values.front();
    Values streams = values.subspan(1);
    if (!compound.isReadable(lengths.id)) {
        return; // its chain is reported already
    }
    StreamCursor cursor(compound, lengths.id);
    std::array<std::byte, binaryRecordSize> bytes{};
    const auto record =
        std::span(bytes).first(row.type == PtypBinary ? binaryRecordSize : textRecordSize);
    std::uint64_t missing = 0;
    for (std::uint32_t index = 0; cursor.read(record); ++index) {
        if (streams.empty() || streams.front().index != index) {
            ++missing;
            continue;
        }
        checkListValue(entry, index, FieldReader(record).number<std::uint32_t>(), streams.front());
        streams = streams.subspan(1);
    }
    if (missing > 0) {
        add(FindingCode::ListValueMissing, entry.tag,
            "has no stream for " + counted(missing, "value"));
    }
    if (cursor.remaining() > 0) {
        add(FindingCode::ListSize, entry.tag, "has a length stream that ends in half a length");
    }
    for (const ValueChild& value : streams) {
        findings.add(FindingCode::ListValueStray, compound.entries().path(value.id),
                     "the property's list has no such value");
    }
}

void PropertyValueChecker::checkListValue(const PropertyEntry& entry, std::uint32_t index,
                                          std::uint32_t size, const ValueChild& value) {
    const std::uint64_t found = compound.streamSize(value.id);
    if (found != size) {
        add(FindingCode::ListValueSize, entry.tag,
            "states " + counted(size, "byte") + " for value " + std::to_string(index) +
                ", and its stream has " + std::to_string(found));
    }
    if (compound.isReadable(value.id) && !endsInZero(entry, value.id)) {
        add(FindingCode::ListTextEnd, entry.tag,
            "has value " + std::to_string(index) + " without the zero that ends it");
    }
}

void PropertyValueChecker::addStray(const ValueChild& value) {
    findings.add(FindingCode::ValueStray, compound.entries().path(value.id),
                 "no property has this value");
}

// Whether a text in a list has its terminator; true of a binary value.
bool PropertyValueChecker::endsInZero(const PropertyEntry& entry, EntryId stream) {
    const bool isWide = entry.type() == (PtypString | multipleValues);
    if (!isWide && entry.type() != (PtypString8 | multipleValues)) {
        return true;
    }
    std::array<std::byte, wideTerminator> end{};
    const auto place = std::span(end).first(isWide ? wideTerminator : narrowTerminator);
    StreamCursor cursor(compound, stream);
    return cursor.remaining() >= place.size() && cursor.skip(cursor.remaining() - place.size()) &&
           cursor.read(place) && end == std::array<std::byte, wideTerminator>{};
}

} // namespace olmhost
