#include "cli/report/PageFile.h"

#include <sys/stat.h>

#include <cerrno>
#include <filesystem>

namespace olmkit {

int PageFile::open(const std::string& path) {
    // Renaming over a device or a pipe would remove it.
    struct stat status = {};
    if (stat(path.c_str(), &status) == 0 && !S_ISREG(status.st_mode)) {
        return S_ISDIR(status.st_mode) ? EISDIR : EINVAL;
    }
    const std::filesystem::path place(path);
    name = place.filename().string();
    const std::string folder = place.parent_path().string();
    int error = directory.openForReading(folder.empty() ? "." : folder);
    if (error == 0) {
        error = directory.createTemporary(file);
    }
    if (error == 0) {
        output.emplace(file->descriptor());
    }
    return error;
}

bool PageFile::endRecord() {
    const std::size_t waiting = output->buffer().size();
    const bool isGood = output->endRecord();
    written += waiting - output->buffer().size();
    return isGood;
}

int PageFile::finish() {
    if (!output->flush()) {
        return output->errorNumber();
    }
    const int error = file->close();
    return error != 0 ? error : directory.place(*file, {{}, name});
}

} // namespace olmkit
