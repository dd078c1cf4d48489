#include "cli/extract/Summary.h"

#include <algorithm>

#include "cli/terminal/CellText.h"

namespace olmkit {

namespace {

using olmhost::ItemKind;

// As rows have them; the last one stands for all others.
constexpr std::array<std::string_view, 6> summaryKinds = {"email", "appointment", "contact",
                                                          "task",  "note",        "unknown"};
constexpr std::size_t emailPlace = 0;
constexpr std::size_t unknownPlace = summaryKinds.size() - 1;

// A row calls a group a contact.
std::string_view rowKind(ItemKind kind) {
    return olmhost::nameOf(kind == ItemKind::Group ? ItemKind::Contact : kind);
}

constexpr std::array headings = {"in documents", "listed", "written", "failed"};
constexpr std::size_t firstColumn = 11; // cells of the kinds' names

const char* extentName(RunExtent extent) {
    switch (extent) {
    case RunExtent::Whole:
        return "whole";
    case RunExtent::Shard:
        return "shard";
    case RunExtent::Selection:
        break;
    }
    return "selection";
}

} // namespace

Summary::Counts& Summary::of(std::string_view kind) {
    static_assert(summaryKinds.size() == kindCount);
    const auto* const name = std::ranges::find(summaryKinds, kind);
    return kinds[name == summaryKinds.end()
                     ? unknownPlace
                     : static_cast<std::size_t>(name - summaryKinds.begin())];
}

void Summary::finish(const ItemAccount& account) {
    Counts& counts = of(account.kind);
    ++(account.isWritten ? counts.written : counts.failed);
    attachments.written += account.attachmentsWritten;
    attachments.lost += account.attachmentsLost;
}

void Summary::close(const olmhost::Session& session, RunExtent runExtent) {
    extent = runExtent;
    takeCensus(session.census());
    note(session);
    balance();
}

void Summary::join(const Summary& part) {
    for (std::size_t place = 0; place < kindCount; ++place) {
        kinds[place].requested += part.kinds[place].requested;
        kinds[place].written += part.kinds[place].written;
        kinds[place].failed += part.kinds[place].failed;
    }
    attachments.written += part.attachments.written;
    attachments.lost += part.attachments.lost;
}

void Summary::closeJoined() {
    extent = extent == RunExtent::Shard ? RunExtent::Whole : extent;
    balance();
}

void Summary::balance() {
    isBalanced = true;
    found.clear();
    for (const JsonObject& entry : notes) {
        if (entry.at("mismatch").get<bool>()) {
            isBalanced = false;
            found.push_back("entry " + entry.at("entry").dump() + " (" +
                            entry.at("entry_name").get<std::string>() +
                            "): " + entry.at("reason").get<std::string>());
        }
    }
    compareItems();
    if (extent == RunExtent::Whole) {
        compareAttachments();
    }
}

void Summary::takeCensus(const olmhost::Census& census) {
    for (std::size_t place = 0; place < olmhost::itemKindCount; ++place) {
        const auto kind = static_cast<ItemKind>(place);
        const olmhost::KindCensus& counted = census.of(kind);
        Counts& counts = of(rowKind(kind));
        counts.documents += counted.documents;
        counts.items += counted.items;
        if (kind == ItemKind::Email) {
            attachments.ofMails = counted.attachments;
            attachments.unnamed = counted.unnamedAttachments;
        } else {
            attachments.homeless += counted.attachments + counted.unnamedAttachments;
        }
    }
}

// Entries that look like documents and gave no rows, or not as many as they hold.
void Summary::note(const olmhost::Session& session) {
    for (const olmhost::DocumentNote& document : session.census().notes) {
        JsonObject object;
        object["entry"] = document.entryIndex;
        object["entry_name"] = session.entryName(document.entryIndex);
        object["items"] = document.items;
        object["listed"] = document.rows;
        object["mismatch"] = document.isMismatch();
        object["reason"] = document.text;
        notes.push_back(std::move(object));
    }
}

void Summary::compareItems() {
    for (std::size_t place = 0; place < kindCount; ++place) {
        const Counts& counts = kinds[place];
        const std::uint64_t due = extent == RunExtent::Whole ? counts.listed : counts.requested;
        if (counts.items == counts.listed && due == counts.written + counts.failed) {
            continue;
        }
        isBalanced = false;
        found.push_back("the numbers of kind " + std::string(summaryKinds[place]) +
                        " do not add up: " + std::to_string(counts.items) + " in the documents, " +
                        std::to_string(counts.listed) + " listed, " +
                        std::to_string(counts.requested) + " to be written, " +
                        std::to_string(counts.written) + " written, " +
                        std::to_string(counts.failed) + " failed");
    }
}

void Summary::compareAttachments() {
    const auto tellLeftOut = [this](std::uint64_t count, const std::string& which) {
        if (count > 0) {
            attachments.lost += count;
            found.push_back("attachments " + which + ": " + std::to_string(count) + " left out");
        }
    };
    tellLeftOut(attachments.homeless, "of items that are no mails, whose messages take none");

    const std::uint64_t named = attachments.named();
    if (of(summaryKinds[emailPlace]).failed > 0 && attachments.written + attachments.lost < named) {
        // A mail that fails takes attachments along that nobody came to.
        attachments.lost = named - attachments.written;
    }
    if (attachments.written + attachments.lost != named) {
        isBalanced = false;
        found.push_back("the numbers of attachments do not add up: " + std::to_string(named) +
                        " named by the documents, " + std::to_string(attachments.written) +
                        " written, " + std::to_string(attachments.lost) + " lost");
    }
}

std::string Summary::table() const {
    if (extent != RunExtent::Whole) {
        return {};
    }
    std::string lines;
    for (std::size_t place = 0; place < kindCount; ++place) {
        const Counts& counts = kinds[place];
        const std::array numbers = {counts.items, counts.listed, counts.written, counts.failed};
        if (std::ranges::count(numbers, 0U) == std::ssize(numbers)) {
            continue;
        }
        lines += summaryKinds[place];
        lines.append(firstColumn - summaryKinds[place].size(), ' ');
        for (std::size_t column = 0; column < numbers.size(); ++column) {
            lines.append(columnGap, ' ');
            appendRight(lines, std::to_string(numbers[column]), cellsOf(headings[column]));
        }
        lines += '\n';
    }
    if (lines.empty()) {
        return {};
    }
    std::string head(firstColumn, ' ');
    for (const char* heading : headings) {
        head.append(columnGap, ' ').append(heading);
    }
    head += '\n';
    lines.insert(0, head);
    if (attachments.named() > 0) {
        lines += "attachments: " + std::to_string(attachments.named()) + " named, " +
                 std::to_string(attachments.written) + " written, " +
                 std::to_string(attachments.lost) + " lost\n";
    }
    return lines;
}

JsonObject Summary::json() const {
    JsonObject object;
    object["extent"] = extentName(extent);
    object["adds_up"] = isBalanced;
    for (std::size_t place = 0; place < kindCount; ++place) {
        const Counts& counts = kinds[place];
        if (place == unknownPlace && counts.requested + counts.listed == 0) {
            continue;
        }
        JsonObject& kind = object["kinds"][std::string(summaryKinds[place])];
        kind["documents"] = counts.documents;
        kind["items"] = counts.items;
        kind["listed"] = counts.listed;
        kind["requested"] = counts.requested;
        kind["written"] = counts.written;
        kind["failed"] = counts.failed;
    }
    object["attachments"]["named"] = attachments.named();
    object["attachments"]["of_other_items"] = attachments.homeless;
    object["attachments"]["written"] = attachments.written;
    object["attachments"]["lost"] = attachments.lost;
    object["findings"] = found;
    object["noted_entries"] = notes;
    return object;
}

std::optional<Summary> Summary::read(const std::string& text) {
    try {
        const JsonObject object = JsonObject::parse(text);
        Summary summary;
        for (const RunExtent extent : {RunExtent::Whole, RunExtent::Shard, RunExtent::Selection}) {
            if (object.at("extent") == extentName(extent)) {
                summary.extent = extent;
            }
        }
        for (const auto& [name, kind] : object.at("kinds").items()) {
            summary.of(name) = {kind.at("documents"), kind.at("items"),   kind.at("listed"),
                                kind.at("requested"), kind.at("written"), kind.at("failed")};
        }
        const JsonObject& attachments = object.at("attachments");
        summary.attachments.homeless = attachments.at("of_other_items");
        summary.attachments.ofMails =
            attachments.at("named").get<std::uint64_t>() - summary.attachments.homeless;
        summary.attachments.written = attachments.at("written");
        summary.attachments.lost = attachments.at("lost");
        summary.notes = object.at("noted_entries");
        return summary;
    } catch (const JsonObject::exception&) {
        return std::nullopt;
    }
}

int Summary::write(OutputDirectory& directory) const {
    return directory.putFile(
        fileName, json().dump(2, ' ', false, JsonObject::error_handler_t::replace) + "\n");
}

} // namespace olmkit
