#ifndef OLMKIT_CLI_SHOW_SHOW_H
#define OLMKIT_CLI_SHOW_SHOW_H

#include <string>

#include "cli/show/ItemDescription.h"
#include "cli/show/ShowOptions.h"
#include "cli/terminal/ExitCode.h"
#include "cli/terminal/Messages.h"
#include "cli/terminal/Output.h"
#include "host/message/Message.h"
#include "host/message/MessageSpool.h"
#include "host/session/Session.h"

namespace olmkit {

// Shows one item of an open archive: extracts its message to a temporary file, and prints what the
// message contains. Losses on the way are reported, and make the exit code Partial.
class Show {
public:
    // All borrowed; they must outlive this object. `session` is open and not yet listed.
    Show(const ShowOptions& options, olmhost::Session& session, Output& output, Messages& messages)
        : options(options), session(session), output(output), messages(messages) {}

    // Call it once.
    ExitCode run();

private:
    ExitCode show();
    ExitCode find();
    bool isListed();
    ExitCode extract();
    ExitCode judge(const olmhost::Extraction& extraction);
    ExitCode refuse(const std::string& text);
    void reportLosses(const olmhost::Extraction& extraction);
    ExitCode print(const olmhost::Message& message);
    void error(const std::string& text);

    const ShowOptions& options;
    olmhost::Session& session;
    Output& output;
    Messages& messages;
    ItemOrigin origin;
    olmhost::MessageSpool spool;
    bool hasLosses = false;
};

} // namespace olmkit

#endif
