#ifndef OLMKIT_HOST_SESSION_MODULE_H
#define OLMKIT_HOST_SESSION_MODULE_H

#include <memory>
#include <string>

#include "filter/olmfilter.h"

namespace olmhost {

// The loaded module and its entry points.
//
// Once loaded it stays in the process until the end, so loading it again costs next to nothing, and
// one Module may be used by any number of threads.
class Module {
public:
    // Loads olmfilter.so from `path`; when that is empty, from the first of these places that has
    // it: beside this library, olmkit/ below that, the place where it is installed. Null when that
    // fails, with the reason in `failure`: one line for people.
    static std::shared_ptr<const Module> load(const std::string& path, std::string& failure);

    // Each entry point of the table that a session calls; never null.
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
