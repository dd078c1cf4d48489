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
// and no attachment is reported twice. forget() prepares for the next document.
class ItemCounter final : public TagWatch {
public:
    ItemCounter() { forget(); }

    void forget();

    void beginDocument() override;
    void opened(std::uint32_t depth, const char* name, const char* const* attributes) override;
    void closed(std::uint32_t depth) override;

    // Returns whether reading of the document has begun, and has reached its root element.
    bool hasBegun() const { return isBegun; }
    bool hasRoot() const { return isRooted; }
    // Returns whether all that counts has been read.
    bool isDone() const { return isAtEnd; }

    // Returns the kind of the items; none for another document.
    std::optional<ItemKind> kind() const { return rootKind; }
    bool isCategories() const { return hasCategories; }
    // Returns the name of a root element that is not known, cut when it is long.
    const std::string& otherRoot() const { return rootName; }

    // Returns the totals; `documents` stays 0.
    const KindCensus& counts() const { return found; }
    // Returns the number of elements among the items that are not items.
    std::uint64_t strangers() const { return strangerCount; }

    // Receives the attachments; may be empty.
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
    std::uint64_t attachmentsReported = 0; // since forget()
};

} // namespace olmhost

#endif
