#ifndef OLMKIT_HOST_SESSION_ITEMCOUNTER_H
#define OLMKIT_HOST_SESSION_ITEMCOUNTER_H

#include <optional>
#include <string>

#include "host/session/Census.h"
#include "host/stream/TagWatch.h"

namespace olmhost {

// Counts the items of one document by its tags.
//
// A document may be read again when its first reader has stopped early: the count begins anew then,
// and no attachment is told twice. forget() makes ready for the next document.
class ItemCounter final : public TagWatch {
public:
    ItemCounter() { forget(); }

    void forget();

    void beginDocument() override;
    void opened(std::uint32_t depth, const char* name, const char* const* attributes) override;
    void closed(std::uint32_t depth) override;

    // Whether anybody has read the document, and has got to its root element.
    bool hasBegun() const { return isBegun; }
    bool hasRoot() const { return isRooted; }
    // Whether nothing that counts can come any more.
    bool isDone() const { return isAtEnd; }

    // None for a document of no kind of items.
    std::optional<ItemKind> kind() const { return rootKind; }
    bool isCategories() const { return hasCategories; }
    // The root element's name, when it is none that is known; cut when it is long.
    const std::string& otherRoot() const { return rootName; }

    // What was counted; `documents` stays 0.
    const KindCensus& counts() const { return found; }
    // Elements beside the items that are none.
    std::uint64_t strangers() const { return strangerCount; }

    // Empty for nobody.
    AttachmentCallback onAttachment;

private:
    void beginRoot(const char* name);
    void addAttachment(std::uint32_t depth, const char* const* attributes);

    bool isBegun = false;
    bool isRooted = false;
    bool isAtEnd = false;
    std::optional<ItemKind> rootKind;
    bool hasCategories = false;
    std::string rootName;
    std::string_view itemName;
    KindCensus found;
    std::uint64_t strangerCount = 0;
    std::uint64_t attachmentsTold = 0; // since forget()
};

} // namespace olmhost

#endif
