#include "host/session/Module.h"

#include <dlfcn.h>

#include <array>
#include <filesystem>
#include <system_error>

namespace olmhost {

namespace {

constexpr const char* moduleName = "olmfilter.so";

// Returns the path of this library, as the loader has it; empty when it isn't known.
std::string ownPath() {
    Dl_info info = {};
    if (dladdr(reinterpret_cast<const void*>(&Module::load), &info) == 0 ||
        info.dli_fname == nullptr) {
        return {};
    }
    return info.dli_fname;
}

// Makes the functions of this library visible to the module, which imports them. When the library
// was loaded with local symbols, the loader would not find them.
void offerOwnFunctions(const std::string& library) {
    if (!library.empty()) {
        dlopen(library.c_str(), RTLD_NOW | RTLD_NOLOAD | RTLD_GLOBAL);
    }
}

std::string findModule(const std::string& library, std::string& failure) {
    const std::filesystem::path folder = std::filesystem::path(library).parent_path();
    const std::array places = {folder / moduleName, folder / "olmkit" / moduleName,
                               std::filesystem::path(OLMKIT_INSTALLED_MODULE)};
    std::string tried;
    for (const std::filesystem::path& place : places) {
        std::error_code ignored;
        if (std::filesystem::exists(place, ignored)) {
            return std::filesystem::absolute(place, ignored).string();
        }
        tried += (tried.empty() ? "" : ", ") + place.string();
    }
    failure = std::string("the module ") + moduleName + " was not found (looked in: " + tried + ")";
    return {};
}

std::string lastLoaderError() {
    const char* text = dlerror();
    return text == nullptr ? "unknown error" : text;
}

// The loader would search its own folders for a name without a slash.
std::string asLoaderPath(const std::string& path) {
    return path.find('/') == std::string::npos ? "./" + path : path;
}

template <typename Function> bool take(Function& member, SoRoutine entry) {
    member = reinterpret_cast<Function>(entry);
    return member != nullptr;
}

} // namespace

std::shared_ptr<const Module> Module::load(const std::string& path, std::string& failure) {
    const std::string library = ownPath();
    offerOwnFunctions(library);
    const std::string place = path.empty() ? findModule(library, failure) : asLoaderPath(path);
    if (place.empty()) {
        return nullptr;
    }

    void* loaded = dlopen(place.c_str(), RTLD_NOW | RTLD_LOCAL | RTLD_NODELETE);
    if (loaded == nullptr) {
        failure = "the module can't be loaded: " + lastLoaderError();
        return nullptr;
    }
    auto module = std::make_shared<Module>();
    const bool isFit =
        module->readTable(reinterpret_cast<decltype(&::VwGetRtns)>(dlsym(loaded, "VwGetRtns")));
    dlclose(loaded); // only ends the reference: what was loaded stays
    if (!isFit) {
        failure = place + " is not a module for this program: it lacks entry points";
        return nullptr;
    }
    return module;
}

bool Module::readTable(decltype(&::VwGetRtns) getRtns) {
    if (getRtns == nullptr) {
        return false;
    }
    std::array<SoRoutine, VwTableEntries> table = {};
    getRtns(table.data(), static_cast<std::uint16_t>(table.size()));

    return take(allocProc, table[VwAllocProcEntry]) && take(freeProc, table[VwFreeProcEntry]) &&
           take(localUp, table[VwLocalUpEntry]) && take(localDown, table[VwLocalDownEntry]) &&
           take(setSoRtn, table[VwSetSoRtnEntry]) && take(setUser, table[VwSetUserEntry]) &&
           take(streamOpen, table[VwStreamOpenEntry]) &&
           take(streamSection, table[VwStreamSectionEntry]) &&
           take(streamRead, table[VwStreamReadEntry]) &&
           take(streamClose, table[VwStreamCloseEntry]) && take(doSpecial, table[VwDoSpecialEntry]);
}

} // namespace olmhost
