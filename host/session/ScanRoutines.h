#ifndef OLMKIT_HOST_SESSION_SCANROUTINES_H
#define OLMKIT_HOST_SESSION_SCANROUTINES_H

#include "host/session/Module.h"
#include "host/session/Scan.h"

namespace olmhost {

// Installs the seventeen routines that the module calls, which drive `scan`. `scan` must outlive
// `proc`.
void installScanRoutines(const Module& module, PROC* proc, Scan& scan);

} // namespace olmhost

#endif
