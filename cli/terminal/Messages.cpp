#include "cli/terminal/Messages.h"

#include <unistd.h>

#include <algorithm>
#include <filesystem>
#include <system_error>

#include "cli/terminal/Style.h"
#include "cli/terminal/Terminal.h"
#include "cli/terminal/Text.h"

namespace olmkit {

namespace {

const char* adviceOn(olmhost::OpenStatus status) {
    switch (status) {
    case olmhost::OpenStatus::NoModule:
        return "install olmkit again";
    case olmhost::OpenStatus::Unreadable:
        return "check the path, the permissions and the disk, then try again";
    case olmhost::OpenStatus::NotAnArchive:
        return "it is not an OLM archive";
    case olmhost::OpenStatus::Damaged:
        return "copy or export the archive again";
    case olmhost::OpenStatus::Encrypted:
        return "export or unpack it without a password";
    case olmhost::OpenStatus::LimitReached:
        return "it is larger than this program can read";
    case olmhost::OpenStatus::Done:
        break;
    }
    return "";
}

const char* adviceOn(olmhost::FaultKind kind) {
    switch (kind) {
    case olmhost::FaultKind::CannotOpen:
        return "it was left out";
    case olmhost::FaultKind::Encrypted:
        return "it was left out; export the archive without a password";
    case olmhost::FaultKind::Damaged:
    case olmhost::FaultKind::Checksum:
        return "the part that could be read was used; copy or export the archive again";
    case olmhost::FaultKind::OtherHeader:
        return "the directory was believed; copy or export the archive again";
    case olmhost::FaultKind::LimitReached:
        return "the part beyond the limit was left out";
    case olmhost::FaultKind::ReadFailed:
        return "check the disk, then try again";
    case olmhost::FaultKind::BrokenMarkup:
        return "the part before the error was used; export the archive again";
    }
    return "";
}

} // namespace

void Messages::setOptions(const TerminalOptions& wanted) {
    chosen = wanted;
    isStyled = isColored(chosen.color, STDERR_FILENO);
}

void Messages::error(std::string_view text) {
    put(text, style::boldRed);
}

void Messages::warn(std::string_view text) {
    if (!isQuiet()) {
        put(text, style::boldYellow);
    }
}

void Messages::detail(std::string_view text) {
    if (isVerbose()) {
        put(text, "");
    }
}

void Messages::put(std::string_view text, std::string_view color) {
    if (beforeMessage) {
        beforeMessage();
    }
    std::string line;
    if (isStyled && !color.empty()) {
        line.append(color).append("olmkit:").append(style::plain).append(" ");
    } else {
        line = "olmkit: ";
    }
    appendPrintable(line, text);
    line += '\n';
    show(line);
}

void Messages::show(std::string_view text) {
    while (!text.empty()) {
        const ssize_t written = ::write(STDERR_FILENO, text.data(), text.size());
        if (written <= 0) {
            return;
        }
        text.remove_prefix(static_cast<std::size_t>(written));
    }
}

void Messages::openFailure(const std::string& archive, const olmhost::OpenOutcome& outcome) {
    if (outcome.status == olmhost::OpenStatus::NoModule) {
        error(outcome.text + "; " + adviceOn(outcome.status));
        return;
    }
    error(archiveTitle(archive) + ": " + outcome.text + "; " + adviceOn(outcome.status));
}

ExitCode Messages::notOlmArchive(const std::string& archive, const olmhost::Session& session) {
    const std::vector<olmhost::EntryFault>& found = session.faults();
    const bool isEncrypted = std::ranges::any_of(found, [](const olmhost::EntryFault& fault) {
        return fault.kind == olmhost::FaultKind::Encrypted;
    });
    if (isEncrypted) {
        error(archiveTitle(archive) + ": no document in it can be read without a password; " +
              adviceOn(olmhost::OpenStatus::Encrypted));
    } else {
        error(archiveTitle(archive) + ": a ZIP archive, but not an OLM archive: it has no document "
                                      "of mail, contacts, events, tasks or notes");
    }
    return ExitCode::NotAnArchive;
}

std::size_t Messages::faults(const std::string& archive, const olmhost::Session& session) {
    faults(archive, session, session.faults(), {});
    return session.faults().size();
}

void Messages::faults(const std::string& archive, const olmhost::Session& session,
                      const std::vector<olmhost::EntryFault>& found,
                      const std::set<std::uint64_t>& reported) {
    for (const olmhost::EntryFault& fault : found) {
        if (reported.contains(fault.entryIndex)) {
            continue;
        }
        const bool hasEntry = fault.entryIndex < session.entryCount();
        error(archiveTitle(archive) + ": " +
              (hasEntry ? entryTitle(session, fault.entryIndex) + ": " : "") + fault.text + "; " +
              adviceOn(fault.kind));
    }
}

ExitCode Messages::outputFailure(std::string_view name, int errorNumber) {
    error(std::string(name) + " can't be written: " + errorText(errorNumber));
    return ExitCode::OutputFailed;
}

std::string archiveTitle(const std::string& archive) {
    return archive == standardInput ? "standard input" : archive;
}

std::string archiveName(const std::string& archive) {
    return std::filesystem::path(archiveTitle(archive)).filename().string();
}

std::string entryTitle(const olmhost::Session& session, std::uint64_t entry) {
    const bool isThere = entry < session.entryCount();
    return "entry " + std::to_string(entry) + " (" +
           (isThere ? std::string(session.entryName(entry)) : "not in the archive") + ")";
}

std::string errorText(int errorNumber) {
    return std::generic_category().message(errorNumber);
}

} // namespace olmkit
