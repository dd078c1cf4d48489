#include "host/markup/TagMaps.h"

#include <algorithm>
#include <cstring>

#include "host/markup/NameHash.h"

namespace olmhost {

namespace {

constexpr std::size_t minSlots = 64;
constexpr std::size_t maxSlotsKept = 4096;

bool sameRow(const UTXML_STRVALPAIR& left, const UTXML_STRVALPAIR& right) {
    return left.value == right.value && left.name == right.name;
}

} // namespace

void TagMaps::clear() {
    last.clear();
    if (slots.size() > maxSlotsKept) {
        slots = {};
    } else if (used != 0) {
        std::fill(slots.begin(), slots.end(), Slot{});
    }
    used = 0;
}

bool TagMaps::add(std::span<const UTXML_STRVALPAIR> rows) {
    if (std::equal(rows.begin(), rows.end(), last.begin(), last.end(), sameRow)) {
        return true;
    }
    for (const UTXML_STRVALPAIR& row : rows) {
        if (row.name == nullptr) {
            return false;
        }
    }
    makeRoom(rows.size());
    for (const UTXML_STRVALPAIR& row : rows) {
        const std::string_view name(row.name);
        put({row.name, static_cast<std::uint32_t>(name.size()), nameHash(name),
             static_cast<std::uint32_t>(row.value)});
    }
    last.assign(rows.begin(), rows.end());
    return true;
}

std::uint32_t TagMaps::find(std::string_view name, std::uint32_t hash) const {
    if (slots.empty()) {
        return UTXML_UNKNOWN_TAG;
    }
    const std::size_t mask = slots.size() - 1;
    for (std::size_t at = hash & mask; slots[at].name != nullptr; at = (at + 1) & mask) {
        const Slot& slot = slots[at];
        if (slot.hash == hash && slot.length == name.size() &&
            std::memcmp(slot.name, name.data(), name.size()) == 0) {
            return slot.id;
        }
    }
    return UTXML_UNKNOWN_TAG;
}

void TagMaps::put(const Slot& added) {
    const std::size_t mask = slots.size() - 1;
    std::size_t at = added.hash & mask;
    for (; slots[at].name != nullptr; at = (at + 1) & mask) {
        Slot& slot = slots[at];
        if (slot.hash == added.hash && slot.length == added.length &&
            std::memcmp(slot.name, added.name, added.length) == 0) {
            slot.id = added.id;
            return;
        }
    }
    slots[at] = added;
    ++used;
}

void TagMaps::makeRoom(std::size_t extra) {
    std::size_t slotCount = std::max(slots.size(), minSlots);
    while (slotCount < 2 * (used + extra)) {
        slotCount *= 2;
    }
    if (slotCount == slots.size()) {
        return;
    }
    std::vector<Slot> old(slotCount);
    old.swap(slots);
    used = 0;
    for (const Slot& slot : old) {
        if (slot.name != nullptr) {
            put(slot);
        }
    }
}

} // namespace olmhost
