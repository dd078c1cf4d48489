#ifndef OLMKIT_HOST_MARKUP_OPENELEMENTS_H
#define OLMKIT_HOST_MARKUP_OPENELEMENTS_H

#include <cstdint>
#include <span>
#include <vector>

namespace olmhost {

// The open elements of a document that is being parsed.
//
// The outermost ones may be unseen: their opening tags were left out on the way to a saved state,
// and only the hashes of their names are known. Of these, the outermost again may be known to
// expat by the name of a placeholder tag.
class OpenElements {
public:
    // No element is open.
    void clear() {
        depthNow = 0;
        placeholderCount = 0;
        unseen.clear();
    }

    // The elements with these hashes are open, root first, all of them unseen.
    void assign(std::span<const std::uint32_t> hashes) {
        unseen.assign(hashes.begin(), hashes.end());
        usePlaceholders();
    }

    // Expat gets a placeholder tag for each open element. REQUIRES: all of them are unseen.
    void usePlaceholders() {
        depthNow = static_cast<std::uint32_t>(unseen.size());
        placeholderCount = depthNow;
    }

    void open() { ++depthNow; }

    // The element opened last is unseen.
    void markUnseen(std::uint32_t hash) { unseen.push_back(hash); }

    // Closes the innermost element. Returns true when it was unseen.
    bool close() {
        const bool isUnseen = depthNow == unseen.size();
        if (isUnseen) {
            unseen.pop_back();
        }
        --depthNow;
        return isUnseen;
    }

    // Returns the number of open elements.
    std::uint32_t depth() const { return depthNow; }

    // Whether expat knows the innermost element by a placeholder.
    bool isPlaceholder() const { return depthNow == placeholderCount; }

    // As isPlaceholder(), and there is an open element at all.
    bool hasPlaceholder() const { return placeholderCount > 0 && isPlaceholder(); }

    // The innermost placeholder's name is the element's own.
    void confirmPlaceholder() { --placeholderCount; }

    // The hash of the innermost unseen element's name. REQUIRES: there is one.
    std::uint32_t innermostUnseen() const { return unseen.back(); }

    // The hashes of the unseen elements' names, root first.
    const std::vector<std::uint32_t>& unseenHashes() const { return unseen; }

private:
    std::uint32_t depthNow = 0;
    std::uint32_t placeholderCount = 0; // of the outermost elements
    std::vector<std::uint32_t> unseen;
};

} // namespace olmhost

#endif
