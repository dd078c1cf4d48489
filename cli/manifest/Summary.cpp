#include "cli/manifest/Summary.h"

#include <algorithm>

namespace olmkit {

namespace {

using olmhost::ItemKind;

// The kind of a document's rows: a group is listed as a contact.
std::string_view rowKind(ItemKind kind) {
    return olmhost::nameOf(kind == ItemKind::Group ? ItemKind::Contact : kind);
}

} // namespace

KindNumbers& SummaryNumbers::of(std::string_view kind) {
    const auto* const name = std::ranges::find(summaryKinds, kind);
    return kinds[name == summaryKinds.end()
                     ? unknownPlace
                     : static_cast<std::size_t>(name - summaryKinds.begin())];
}

void Summary::finish(const ItemAccount& account) {
    KindNumbers& numbers = totals.of(account.kind);
    ++(account.isWritten ? numbers.written : numbers.failed);
    totals.attachments.written += account.attachmentsWritten;
    totals.attachments.lost += account.attachmentsLost;
}

void Summary::close(const olmhost::Session& session, RunExtent extent) {
    totals.extent = extent;
    takeCensus(session.census());
    noteEntries(session);
    compare();
}

// What was listed is the same in every shard, so only what each shard wrote is added.
void Summary::join(const SummaryNumbers& shard) {
    for (std::size_t place = 0; place < summaryKinds.size(); ++place) {
        totals.kinds[place].requested += shard.kinds[place].requested;
        totals.kinds[place].written += shard.kinds[place].written;
        totals.kinds[place].failed += shard.kinds[place].failed;
    }
    totals.attachments.written += shard.attachments.written;
    totals.attachments.lost += shard.attachments.lost;
}

void Summary::closeJoined() {
    if (totals.extent == RunExtent::Shard) {
        totals.extent = RunExtent::Whole;
    }
    compare();
}

void Summary::takeCensus(const olmhost::Census& census) {
    AttachmentNumbers& attachments = totals.attachments;
    for (std::size_t place = 0; place < olmhost::itemKindCount; ++place) {
        const auto kind = static_cast<ItemKind>(place);
        const olmhost::KindCensus& counted = census.of(kind);
        KindNumbers& numbers = totals.of(rowKind(kind));
        numbers.documents += counted.documents;
        numbers.items += counted.items;
        if (kind == ItemKind::Email) {
            attachments.ofMails = counted.attachments;
            attachments.unnamed = counted.unnamedAttachments;
        } else {
            attachments.ofOtherItems += counted.attachments + counted.unnamedAttachments;
        }
    }
}

void Summary::noteEntries(const olmhost::Session& session) {
    for (const olmhost::DocumentNote& document : session.census().notes) {
        totals.notedEntries.push_back(
            {document.entryIndex, std::string(session.entryName(document.entryIndex)),
             document.items, document.rows, document.isMismatch(), document.text});
    }
}

void Summary::compare() {
    totals.addsUp = true;
    totals.findings.clear();
    compareEntries();
    compareItems();
    if (totals.extent == RunExtent::Whole) {
        compareAttachments();
    }
}

void Summary::compareEntries() {
    for (const NotedEntry& entry : totals.notedEntries) {
        if (entry.isMismatch) {
            totals.addsUp = false;
            totals.findings.push_back("entry " + std::to_string(entry.entry) + " (" + entry.name +
                                      "): " + entry.reason);
        }
    }
}

void Summary::compareItems() {
    for (std::size_t place = 0; place < summaryKinds.size(); ++place) {
        const KindNumbers& numbers = totals.kinds[place];
        const std::uint64_t expected =
            totals.extent == RunExtent::Whole ? numbers.listed : numbers.requested;
        if (numbers.items == numbers.listed && expected == numbers.written + numbers.failed) {
            continue;
        }
        totals.addsUp = false;
        totals.findings.push_back("the numbers of kind " + std::string(summaryKinds[place]) +
                                  " do not add up: " + std::to_string(numbers.items) +
                                  " in the documents, " + std::to_string(numbers.listed) +
                                  " listed, " + std::to_string(numbers.requested) +
                                  " to be written, " + std::to_string(numbers.written) +
                                  " written, " + std::to_string(numbers.failed) + " failed");
    }
}

void Summary::compareAttachments() {
    AttachmentNumbers& attachments = totals.attachments;
    if (attachments.ofOtherItems > 0) {
        attachments.lost += attachments.ofOtherItems;
        totals.findings.push_back(
            "attachments of items other than mails: " + std::to_string(attachments.ofOtherItems) +
            " left out, as only the message of a mail has attachments");
    }
    const std::uint64_t named = attachments.named();
    if (totals.kinds[emailPlace].failed > 0 && attachments.written + attachments.lost < named) {
        // The attachments of a mail that failed were never read.
        attachments.lost = named - attachments.written;
    }
    if (attachments.written + attachments.lost != named) {
        totals.addsUp = false;
        totals.findings.push_back(
            "the numbers of attachments do not add up: " + std::to_string(named) +
            " named by the documents, " + std::to_string(attachments.written) + " written, " +
            std::to_string(attachments.lost) + " lost");
    }
}

} // namespace olmkit
