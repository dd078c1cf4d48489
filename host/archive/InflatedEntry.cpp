#include "host/archive/InflatedEntry.h"

#include <algorithm>
#include <cstring>

namespace olmhost {

InflatedEntry::InflatedEntry(ArchiveBytes& bytes, ArchiveFile& file, InflatePoints& points,
                             std::uint64_t& inflatedBytes)
    : EntryData(bytes, file), points(points), inflatedBytes(inflatedBytes),
      ring(new std::byte[ringSize]) {}

void InflatedEntry::begin(std::uint64_t newIndex, const EntryInfo& newInfo) {
    assign(newIndex, newInfo, newInfo.size);
    inflater.reset();
    ringStart = 0;
    ringEnd = 0;
    head.clear();
    keepsPoints = false;
    if (info.size == 0) {
        advance(); // nothing will be read, and yet it may hold something
    }
}

std::size_t InflatedEntry::read(std::uint64_t position, void* buffer, std::size_t size) {
    auto* target = static_cast<std::byte*>(buffer);
    std::size_t done = 0;
    if (position < end()) {
        size = static_cast<std::size_t>(std::min<std::uint64_t>(size, end() - position));
    }
    while (done < size && position < end()) {
        const std::size_t count = copyHeld(position, target + done, size - done);
        done += count;
        position += count;
        if (count == 0) {
            goTo(position);
        }
    }
    return done;
}

// Copies bytes from `position` on that are held. Returns how many; 0 when none is held.
std::size_t InflatedEntry::copyHeld(std::uint64_t position, void* buffer, std::size_t size) const {
    if (position >= ringStart && position < ringEnd) {
        const auto place = static_cast<std::size_t>(position % ringSize);
        const auto held = static_cast<std::size_t>(ringEnd - position);
        const std::size_t count = std::min({size, held, ringSize - place});
        std::memcpy(buffer, ring.get() + place, count);
        return count;
    }
    if (position < head.size()) {
        const auto place = static_cast<std::size_t>(position);
        const std::size_t count = std::min(size, head.size() - place);
        std::memcpy(buffer, head.data() + place, count);
        return count;
    }
    return 0;
}

// Inflates until the byte at `position` is held or turns out not to exist.
void InflatedEntry::goTo(std::uint64_t position) {
    const bool goesBack = position < ringEnd;
    keepsPoints = keepsPoints || goesBack || position - ringEnd > stepSize;
    const Inflater* point = keepsPoints ? points.before(index, position) : nullptr;
    if (goesBack || (point != nullptr && point->made() > ringEnd)) {
        keepHead();
        if (point != nullptr) {
            inflater = *point;
        } else {
            inflater.reset();
        }
        ringStart = ringEnd = inflater.made();
    }
    while (ringEnd <= position && position < end()) {
        advance();
    }
}

// Inflates the next bytes, at least one, or finds the entry's end.
void InflatedEntry::advance() {
    const std::uint64_t before = ringEnd;
    do {
        inflateStep();
    } while (ringEnd == before && ringEnd < end());
    // The end mark follows the last byte, and must be checked before that byte is returned.
    while (ringEnd == info.size && inflater.state() == Inflater::State::Running) {
        inflateStep();
    }
    if (keepsPoints && inflater.state() == Inflater::State::Running) {
        points.offer(index, inflater);
    }
}

void InflatedEntry::inflateStep() {
    if (ringEnd >= ringSize && ringStart == 0) {
        keepHead();
    }
    const auto place = static_cast<std::size_t>(ringEnd % ringSize);
    const std::size_t room = std::min(stepSize, ringSize - place);
    const std::uint64_t left = info.compressedSize - inflater.taken();
    auto input =
        left == 0 ? std::span<const std::byte>() : bytes.at(info.dataOffset + inflater.taken());
    input = input.first(static_cast<std::size_t>(std::min<std::uint64_t>(input.size(), left)));
    const Inflater::Step step = inflater.run(input, {ring.get() + place, room});
    inflatedBytes += step.made;

    // zlib may have used all the room, so what was there is lost.
    const std::uint64_t reach = ringEnd + room;
    ringStart = std::max(ringStart, reach > ringSize ? reach - ringSize : 0);
    const auto made =
        static_cast<std::size_t>(std::min<std::uint64_t>(step.made, info.size - ringEnd));
    check(ringEnd, ring.get() + place, made);
    ringEnd += made;

    const bool isStuck = step.taken == 0 && step.made == 0;
    if (step.made > made) {
        dataEnd = info.size;
        inflater.stop();
        report(FaultKind::Damaged, "its data continue after its declared size of " +
                                       std::to_string(info.size) + " bytes");
    } else if (inflater.state() == Inflater::State::Running && isStuck) {
        inflater.stop();
        endEarly(ringEnd);
    } else if (inflater.state() == Inflater::State::Broken ||
               (inflater.state() == Inflater::State::Finished && ringEnd < info.size)) {
        endEarly(ringEnd);
    }
}

// Keeps the entry's first bytes before they leave the ring.
void InflatedEntry::keepHead() {
    if (ringStart == 0) {
        const auto count = static_cast<std::size_t>(std::min<std::uint64_t>(headSize, ringEnd));
        if (count > head.size()) {
            head.assign(ring.get(), ring.get() + count);
        }
    }
}

} // namespace olmhost
