#include "cli/command/Version.h"

#include <CLI/CLI.hpp>
#include <nlohmann/json.hpp>
#include <openssl/crypto.h>

#include "cli/terminal/ProgramVersion.h"
#include "host/session/LibraryVersions.h"

namespace olmkit {

namespace {

std::string jsonVersion() {
    return std::to_string(NLOHMANN_JSON_VERSION_MAJOR) + "." +
           std::to_string(NLOHMANN_JSON_VERSION_MINOR) + "." +
           std::to_string(NLOHMANN_JSON_VERSION_PATCH);
}

} // namespace

std::string versionText() {
    std::vector<olmhost::LibraryVersion> libraries = olmhost::libraryVersions();
    libraries.push_back({"libcrypto", OpenSSL_version(OPENSSL_VERSION_STRING)});
    libraries.push_back({"nlohmann-json", jsonVersion()});
    libraries.push_back({"CLI11", CLI11_VERSION});

    std::string text = std::string("olmkit ") + programVersion + "\n";
    for (const olmhost::LibraryVersion& library : libraries) {
        text += library.name + " " + library.version + "\n";
    }
    return text;
}

} // namespace olmkit
