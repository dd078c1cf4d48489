#include "host/markup/SavedState.h"

#include <bit>

namespace olmhost {

SavedState SavedState::from(const tagUTXMLSaveData& block) {
    return std::bit_cast<SavedState>(block);
}

void SavedState::store(tagUTXMLSaveData& block) const {
    block = std::bit_cast<tagUTXMLSaveData>(*this);
}

bool SavedState::isValid() const {
    constexpr std::uint64_t maxPlace = std::uint64_t{1} << 62;
    if (isStart()) {
        return *this == SavedState{};
    }
    const bool flagsFit = (flags & ~knownFlags) == 0 && (has(AfterOpening) || !has(SelfClosed));
    return flagsFit && place < maxPlace &&
           static_cast<std::uint8_t>(encoding) < documentEncodingCount;
}

} // namespace olmhost
