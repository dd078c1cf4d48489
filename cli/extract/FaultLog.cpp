#include "cli/extract/FaultLog.h"

#include "cli/terminal/ExitCode.h"

namespace olmkit {

void FaultLog::update() {
    const std::vector<olmhost::EntryFault>& found = session.faults();
    const auto added = std::span(found).subspan(updatedCount);
    isReadFailed = isReadFailed || exitCodeOf(added) == ExitCode::Unreadable;
    for (; updatedCount < found.size(); ++updatedCount) {
        faultyEntries.insert(found[updatedCount].entryIndex);
    }
}

void FaultLog::add(const std::vector<olmhost::EntryFault>& faults,
                   const std::set<std::uint64_t>& reported) {
    isReadFailed = isReadFailed || exitCodeOf(faults) == ExitCode::Unreadable;
    reportedByItems.insert(reported.begin(), reported.end());
    for (const olmhost::EntryFault& fault : faults) {
        itemFaults.try_emplace(keyOf(fault), fault.text);
    }
}

std::vector<olmhost::EntryFault> FaultLog::faults() const {
    std::map<Key, std::string> all = itemFaults;
    for (const olmhost::EntryFault& fault : session.faults()) {
        all.insert_or_assign(keyOf(fault), fault.text);
    }
    std::vector<olmhost::EntryFault> sorted;
    sorted.reserve(all.size());
    for (const auto& [key, text] : all) {
        sorted.push_back({std::get<olmhost::FaultKind>(key), std::get<std::uint64_t>(key), text});
    }
    return sorted;
}

FaultLog::Key FaultLog::keyOf(const olmhost::EntryFault& fault) {
    const bool hasEntry = fault.entryIndex != olmhost::EntryFault::noEntry;
    return {fault.entryIndex, fault.kind, hasEntry ? "" : fault.text};
}

} // namespace olmkit
