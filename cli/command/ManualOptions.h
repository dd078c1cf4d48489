#ifndef OLMKIT_CLI_COMMAND_MANUALOPTIONS_H
#define OLMKIT_CLI_COMMAND_MANUALOPTIONS_H

namespace olmkit {

struct ManualOptions {};

} // namespace olmkit

#endif
