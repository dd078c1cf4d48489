#include "host/session/LibraryVersions.h"

#include <expat.h>
#include <utf8proc.h>
#include <zip.h>
#include <zlib.h>

namespace olmhost {

std::vector<LibraryVersion> libraryVersions() {
    const XML_Expat_Version expat = XML_ExpatVersionInfo();
    return {
        {"libzip", zip_libzip_version()},
        {"zlib", zlibVersion()},
        {"expat", std::to_string(expat.major) + "." + std::to_string(expat.minor) + "." +
                      std::to_string(expat.micro)},
        {"utf8proc", utf8proc_version()},
    };
}

} // namespace olmhost
