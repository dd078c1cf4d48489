#include "host/markup/SavedPlace.h"

#include <bit>

namespace olmhost {

SavedPlace SavedPlace::from(const tagUTXMLSaveData& block) {
    return std::bit_cast<SavedPlace>(block);
}

void SavedPlace::store(tagUTXMLSaveData& block) const {
    block = std::bit_cast<tagUTXMLSaveData>(*this);
}

bool SavedPlace::isValid() const {
    constexpr std::uint64_t farthest = std::uint64_t{1} << 62;
    if (isStart()) {
        return *this == SavedPlace{};
    }
    const bool flagsFit = (flags & ~knownFlags) == 0 && (has(AfterOpening) || !has(SelfClosed));
    return flagsFit && place < farthest &&
           static_cast<std::uint8_t>(encoding) < documentEncodingCount;
}

} // namespace olmhost
