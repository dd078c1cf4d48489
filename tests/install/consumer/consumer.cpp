// Lists an archive, extracts one item and reads its message back: consumer ARCHIVE INDEX.
#include <cstdlib>
#include <iostream>
#include <string>

#include "host/message/Message.h"
#include "host/message/MessageSpool.h"
#include "host/session/Session.h"

namespace {

constexpr std::uint32_t messageClass = 0x001A001F; // PidTagMessageClass
constexpr std::uint32_t subject = 0x0037001F;      // PidTagSubject

std::string ascii(std::u16string_view text) {
    return {text.begin(), text.end()};
}

} // namespace

int main(int count, char** arguments) {
    olmhost::Session session;
    if (count != 3 || session.open(arguments[1]).status != olmhost::OpenStatus::Done) {
        return 1;
    }
    session.list([](const olmhost::Row& row) {
        std::cout << row.index << " " << row.entryName << "\n";
        return olmhost::RowAnswer::Continue;
    });

    olmhost::MessageSpool spool;
    const auto index = static_cast<std::uint64_t>(std::atoll(arguments[2]));
    if (session.extract(index, spool).end != olmhost::ExtractionEnd::Whole) {
        return 2;
    }
    std::string failure;
    const auto message = olmhost::Message::open(spool.contents(), failure);
    if (message == nullptr) {
        std::cerr << failure << "\n";
        return 3;
    }
    std::cout << ascii(message->text(message->properties(), messageClass)) << ": "
              << ascii(message->text(message->properties(), subject)) << "\n";
    return 0;
}
