#include "host/session/ItemCounter.h"

#include <algorithm>
#include <iterator>

namespace olmhost {

namespace {

struct DocumentKind {
    ItemKind kind;
    std::string_view name; // for scripts, and of the item's element
    std::string_view root;
};

// clang-format off
constexpr DocumentKind kinds[] = {
    {ItemKind::Email,       "email",       "emails"},
    {ItemKind::Appointment, "appointment", "appointments"},
    {ItemKind::Contact,     "contact",     "contacts"},
    {ItemKind::Group,       "group",       "groups"},
    {ItemKind::Task,        "task",        "tasks"},
    {ItemKind::Note,        "note",        "notes"},
};
// clang-format on
static_assert(std::size(kinds) == itemKindCount);

constexpr std::string_view categoriesRoot = "categories";

// The end of the name of the element that has an item's attachments.
constexpr std::string_view attachmentListEnding = "CopyAttachmentList";

// The attributes of an attachment: the name of its entry, and its name to display.
constexpr std::string_view entryAttribute = "OPFAttachmentURL";
constexpr std::string_view nameAttribute = "OPFAttachmentName";

// Depths of elements.
constexpr std::uint32_t rootDepth = 1;
constexpr std::uint32_t itemDepth = 2;
constexpr std::uint32_t partDepth = 3;
constexpr std::uint32_t attachmentDepth = 4;

constexpr std::size_t maxRootShown = 80; // bytes

// Returns at most `maxSize` bytes from the start of UTF-8 text, cut between code points.
std::string_view cut(std::string_view text, std::size_t maxSize) {
    if (text.size() <= maxSize) {
        return text;
    }
    while (maxSize > 0 && (static_cast<unsigned char>(text[maxSize]) & 0xC0) == 0x80) {
        --maxSize;
    }
    return text.substr(0, maxSize);
}

} // namespace

std::string_view nameOf(ItemKind kind) {
    return kinds[static_cast<std::size_t>(kind)].name;
}

void ItemCounter::forget() {
    beginDocument();
    isBegun = false;
    attachmentsReported = 0;
}

void ItemCounter::beginDocument() {
    isBegun = true;
    isRooted = false;
    isAtEnd = false;
    rootKind.reset();
    hasCategories = false;
    rootName.clear();
    itemName = {};
    found = {};
    strangerCount = 0;
    openingsTo = rootDepth;
    closingsTo = rootDepth;
}

void ItemCounter::opened(std::uint32_t depth, const char* name, const char* const* attributes) {
    switch (depth) {
    case rootDepth:
        beginRoot(name);
        return;
    case itemDepth:
        if (name == itemName) {
            ++found.items;
            openingsTo = partDepth;
        } else {
            ++strangerCount;
            openingsTo = itemDepth;
        }
        return;
    case partDepth:
        if (std::string_view(name).ends_with(attachmentListEnding)) {
            openingsTo = everyDepth;
            closingsTo = partDepth;
        }
        return;
    default:
        addAttachment(depth, attributes);
    }
}

void ItemCounter::closed(std::uint32_t depth) {
    if (depth == rootDepth) {
        isAtEnd = true;
    } else if (depth == partDepth) {
        // The end of a list of attachments: no others are watched.
        openingsTo = partDepth;
        closingsTo = rootDepth;
    }
}

void ItemCounter::beginRoot(const char* name) {
    isRooted = true;
    const auto* row = std::ranges::find(kinds, std::string_view(name), &DocumentKind::root);
    if (row != std::end(kinds)) {
        rootKind = row->kind;
        itemName = row->name;
        openingsTo = itemDepth;
        return;
    }
    isAtEnd = true;
    hasCategories = name == categoriesRoot;
    if (!hasCategories) {
        rootName = cut(name, maxRootShown);
    }
}

void ItemCounter::addAttachment(std::uint32_t depth, const char* const* attributes) {
    NamedAttachment attachment;
    attachment.kind = *rootKind;
    bool isNamed = false;
    for (; *attributes != nullptr; attributes += 2) {
        const std::string_view attribute = attributes[0];
        if (attribute == entryAttribute) {
            isNamed = true;
            attachment.entryName = attributes[1];
        } else if (attribute == nameAttribute) {
            attachment.name = attributes[1];
        }
    }
    if (!isNamed) {
        found.unnamedAttachments += depth == attachmentDepth ? 1 : 0;
        return;
    }
    ++found.attachments;
    if (found.attachments > attachmentsReported) {
        attachmentsReported = found.attachments;
        if (onAttachment) {
            onAttachment(attachment);
        }
    }
}

} // namespace olmhost
