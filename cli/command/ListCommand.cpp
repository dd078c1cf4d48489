#include "cli/command/ListCommand.h"

#include <memory>

#include "cli/rows/CsvRowWriter.h"
#include "cli/rows/JsonRowWriter.h"
#include "cli/rows/TableRowWriter.h"
#include "cli/terminal/Interrupt.h"
#include "host/session/Session.h"

namespace olmkit {

namespace {

std::unique_ptr<RowWriter> makeWriter(RowFormat format, const Output& output) {
    switch (format) {
    case RowFormat::Csv:
        return std::make_unique<CsvRowWriter>();
    case RowFormat::JsonLines:
        return std::make_unique<JsonRowWriter>();
    case RowFormat::Table:
        break;
    }
    return std::make_unique<TableRowWriter>(output.terminalWidth());
}

// Whether the archive has been listed to its end; otherwise the output has failed.
bool listAll(olmhost::Session& session, RowWriter& writer, Output& output) {
    const olmhost::RowCallback writeRow = [&](const olmhost::Row& row) {
        if (output.failed()) {
            return olmhost::RowAnswer::Pause;
        }
        if (row.index == 0) {
            writer.begin(output.buffer());
        }
        writer.write(output.buffer(), row);
        return output.endRecord() ? olmhost::RowAnswer::Continue : olmhost::RowAnswer::Pause;
    };
    while (!output.failed()) {
        if (session.list(writeRow)) {
            break;
        }
    }
    return !output.failed();
}

} // namespace

ExitCode runList(const ListOptions& options, Output& output, Messages& messages) {
    Interrupt::endAtOnce();
    olmhost::Session session;
    if (const auto outcome = session.open(options.archive);
        outcome.status != olmhost::OpenStatus::Done) {
        messages.openFailure(options.archive, outcome);
        return exitCodeOf(outcome.status);
    }

    const auto writer = makeWriter(options.format, output);
    const bool isListed = listAll(session, *writer, output);
    const bool isOlm = !isListed || session.isOlmArchive();
    if (isListed && isOlm && session.itemCount() == 0) {
        writer->begin(output.buffer());
    }
    output.flush();
    const std::size_t faultCount = messages.faults(options.archive, session);

    if (!isOlm) {
        messages.noOlmArchive(options.archive, session);
        return ExitCode::NotAnArchive;
    }
    if (output.isClosed()) {
        return ExitCode::Done;
    }
    if (output.failed()) {
        messages.outputFailure("standard output", output.errorNumber());
        return ExitCode::OutputFailed;
    }
    return faultCount == 0 ? ExitCode::Done : ExitCode::Partial;
}

} // namespace olmkit
