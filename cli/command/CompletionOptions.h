#ifndef OLMKIT_CLI_COMMAND_COMPLETIONOPTIONS_H
#define OLMKIT_CLI_COMMAND_COMPLETIONOPTIONS_H

namespace olmkit {

enum class Shell { Bash, Zsh, Fish };

struct CompletionOptions {
    Shell shell = Shell::Bash;
};

} // namespace olmkit

#endif
