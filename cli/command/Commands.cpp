#include "cli/command/Commands.h"

namespace olmkit {

// Each is defined in the command's own source file: makeInfo() in InfoCommand.cpp, and so on.
using CommandMaker = std::unique_ptr<Command>();

CommandMaker makeInfo;
CommandMaker makeList;
CommandMaker makeExtract;
CommandMaker makeShow;
CommandMaker makeReport;
CommandMaker makeMerge;
CommandMaker makeVerify;
CommandMaker makeCheck;
CommandMaker makeCompletion;
CommandMaker makeManual;

namespace {

constexpr CommandMaker* commandTable[] = {
    makeInfo,  makeList,   makeExtract, makeShow,       makeReport,
    makeMerge, makeVerify, makeCheck,   makeCompletion, makeManual,
};

} // namespace

std::vector<std::unique_ptr<Command>> makeCommands() {
    std::vector<std::unique_ptr<Command>> commands;
    for (CommandMaker* make : commandTable) {
        commands.push_back(make());
    }
    return commands;
}

} // namespace olmkit
