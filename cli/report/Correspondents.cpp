#include "cli/report/Correspondents.h"

#include <algorithm>
#include <cstring>

#include "cli/terminal/Text.h"

namespace olmkit {

namespace {

std::string_view withoutBlanks(std::string_view text) {
    text.remove_prefix(std::min(text.find_first_not_of(' '), text.size()));
    return text.substr(0, text.find_last_not_of(' ') + 1);
}

} // namespace

bool Correspondents::Less::operator()(std::string_view left, std::string_view right) const {
    return std::ranges::lexicographical_compare(left, right, {}, lowerAscii, lowerAscii);
}

void Correspondents::add(std::string_view senders, std::string_view to, std::string_view cc) {
    ++item;
    addAll(senders, true);
    addAll(to, false);
    addAll(cc, false);
}

void Correspondents::addAll(std::string_view names, bool areSenders) {
    while (!names.empty()) {
        const std::size_t end = std::min(names.find(';'), names.size());
        const std::string_view name = withoutBlanks(names.substr(0, end));
        names.remove_prefix(std::min(end + 1, names.size()));
        if (name.empty()) {
            continue;
        }
        Tally& tally = tallyOf(name);
        if (tally.lastSent != item && tally.lastReceived != item) {
            ++tally.items;
        }
        std::uint32_t& last = areSenders ? tally.lastSent : tally.lastReceived;
        if (last != item) {
            ++(areSenders ? tally.sent : tally.received);
            last = item;
        }
    }
}

Correspondents::Tally& Correspondents::tallyOf(std::string_view name) {
    const auto found = tallies.find(name);
    if (found != tallies.end()) {
        return found->second;
    }
    auto* kept = static_cast<char*>(memory.allocate(name.size(), 1));
    std::memcpy(kept, name.data(), name.size());
    return tallies[std::string_view(kept, name.size())];
}

std::vector<Correspondent> Correspondents::busiest(std::size_t count) const {
    const auto isMore = [](const Correspondent& left, const Correspondent& right) {
        return left.items != right.items ? left.items > right.items : left.name < right.name;
    };
    // A heap with the least busy of those kept at its top.
    std::vector<Correspondent> kept;
    for (const auto& [name, tally] : tallies) {
        kept.push_back({name, tally.sent, tally.received, tally.items});
        std::ranges::push_heap(kept, isMore);
        if (kept.size() > count) {
            std::ranges::pop_heap(kept, isMore);
            kept.pop_back();
        }
    }
    std::ranges::sort_heap(kept, isMore);
    return kept;
}

} // namespace olmkit
