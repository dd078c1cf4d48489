#include "tests/host/session/MadeArchive.h"

#include <unistd.h>

#include <cstdlib>
#include <filesystem>
#include <stdexcept>

#include <zip.h>

namespace olmhost {

MadeArchive::MadeArchive(std::initializer_list<Entry> entries)
    : file((std::filesystem::temp_directory_path() / "olmkit-XXXXXX").string()) {
    const int descriptor = mkstemp(file.data());
    if (descriptor < 0) {
        throw std::runtime_error("no temporary file");
    }
    close(descriptor);

    int error = 0;
    zip_t* archive = zip_open(file.c_str(), ZIP_TRUNCATE, &error);
    for (const auto& [name, contents] : entries) {
        zip_source_t* source = zip_source_buffer(archive, contents.data(), contents.size(), 0);
        if (zip_file_add(archive, name.c_str(), source, ZIP_FL_ENC_UTF_8) < 0) {
            throw std::runtime_error("entry refused: " + name);
        }
    }
    if (zip_close(archive) != 0) {
        throw std::runtime_error("archive not written");
    }
}

MadeArchive::~MadeArchive() {
    std::filesystem::remove(file);
}

} // namespace olmhost
