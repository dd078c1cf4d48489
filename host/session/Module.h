#ifndef OLMKIT_HOST_SESSION_MODULE_H
#define OLMKIT_HOST_SESSION_MODULE_H

#include <memory>
#include <string>

#include "filter/olmfilter.h"

namespace olmhost {

// The loaded module and its entry points.
//
// Once loaded it stays in the process, so loading it again costs next to nothing. One Module may be
// used by any number of threads.
class Module {
public:
    // Loads olmfilter.so from `path`; when that is empty, from the first of these folders that has
    // it: that of this library, olmkit/ in it, the installed one. Returns null when that fails,
    // with the reason in `failure`: human-readable, one line.
    static std::shared_ptr<const Module> load(const std::string& path, std::string& failure);

    // The entry points that a session calls; never null.
    decltype(&::VwAllocProc) allocProc = nullptr;
    decltype(&::VwFreeProc) freeProc = nullptr;
    decltype(&::VwLocalUp) localUp = nullptr;
    decltype(&::VwLocalDown) localDown = nullptr;
    decltype(&::VwSetSoRtn) setSoRtn = nullptr;
    decltype(&::VwSetUser) setUser = nullptr;
    decltype(&::VwStreamOpen) streamOpen = nullptr;
    decltype(&::VwStreamSection) streamSection = nullptr;
    decltype(&::VwStreamRead) streamRead = nullptr;
    decltype(&::VwStreamClose) streamClose = nullptr;
    decltype(&::VwDoSpecial) doSpecial = nullptr;

private:
    bool readTable(decltype(&::VwGetRtns) getRtns);
};

} // namespace olmhost

#endif
