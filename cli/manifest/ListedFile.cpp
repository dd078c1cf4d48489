#include "cli/manifest/ListedFile.h"

#include <unistd.h>

#include "cli/files/Sha256.h"

namespace olmkit {

std::vector<ListedFile> filesOf(const ManifestRow& row) {
    std::vector<ListedFile> files;
    if (!row.path.empty()) {
        files.push_back({row.path, row.size, row.sha256});
    }
    for (const AttachmentRow& attachment : row.attachments) {
        if (!attachment.path.empty()) {
            files.push_back({attachment.path, attachment.size.value_or(0), attachment.sha256});
        }
    }
    return files;
}

FileState stateOf(const ListedFile& file, const OutputDirectory& directory) {
    int descriptor = -1;
    if (directory.openFile(file.path, descriptor) != 0) {
        return FileState::Missing;
    }
    std::uint64_t size = 0;
    const std::string sha256 = sha256OfFile(descriptor, size);
    close(descriptor);
    return size == file.size && sha256 == file.sha256 ? FileState::Intact : FileState::Changed;
}

} // namespace olmkit
