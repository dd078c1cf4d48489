#include "cli/extract/AttachmentSpool.h"

#include <algorithm>
#include <cerrno>

#include "cli/extract/AttachmentNames.h"
#include "cli/files/FileBytes.h"
#include "cli/terminal/Interrupt.h"

namespace olmkit {

namespace {

constexpr std::size_t maxHeldAttachmentBytes = std::size_t{1} << 20;
constexpr std::size_t copyBytes = std::size_t{256} << 10;

} // namespace

void AttachmentSpool::append(std::size_t attachment, std::span<const std::byte> bytes) {
    if (attachment >= starts.size()) {
        starts.resize(attachment + 1, written + pending.size());
    }
    if (error == 0) {
        pending.insert(pending.end(), bytes.begin(), bytes.end());
        if (pending.size() >= maxHeldAttachmentBytes) {
            flush();
        }
    }
}

void AttachmentSpool::finish() {
    if (!spooled.has_value()) {
        pending.shrink_to_fit(); // it may have room for twice its bytes
        return;
    }
    if (flush()) {
        error = spooled->close();
    } else {
        spooled.reset();
    }
    pending = {};
}

std::size_t AttachmentSpool::heldBytes() const {
    return spooled.has_value() ? maxHeldAttachmentBytes : pending.capacity();
}

int AttachmentSpool::place(const OutputPath& message, const std::optional<timespec>& time,
                           std::vector<AttachmentRow>& rows) {
    if (error == 0 && spooled.has_value()) {
        error = spooled->reopen();
    }
    if (error == 0) {
        error = placeAll(message, time, rows);
    }
    return error;
}

int AttachmentSpool::placeAll(const OutputPath& message, const std::optional<timespec>& time,
                              std::vector<AttachmentRow>& rows) {
    const std::vector<std::string> names = attachmentFileNames(rows);
    const std::uint64_t end = written + pending.size();
    OutputPath path;
    path.folders = message.folders;
    path.folders.push_back(MessagePaths::attachmentFolder(message));
    std::vector<std::string> paths(rows.size());
    int failure = 0;
    for (std::size_t place = 0; failure == 0 && place < rows.size(); ++place) {
        if (!rows[place].size.has_value()) {
            continue;
        }
        path.file = names[place];
        // Attachments without bytes may follow the last one that has some.
        const std::uint64_t start = place < starts.size() ? starts[place] : end;
        failure = write(start, *rows[place].size, path, time);
        paths[place] = path.text();
    }
    for (std::size_t place = 0; failure == 0 && place < rows.size(); ++place) {
        rows[place].path = paths[place];
    }
    return failure;
}

bool AttachmentSpool::flush() {
    if (!spooled.has_value()) {
        error = directory.createTemporary(spooled);
    }
    if (error == 0) {
        error = writeAt(spooled->descriptor(), written, pending);
    }
    if (error == 0) {
        written += pending.size();
    }
    pending.clear();
    return error == 0;
}

// Fills `bytes` with the bytes at `offset` from the start of the first attachment. Returns 0 or an
// errno value.
int AttachmentSpool::read(std::uint64_t offset, std::span<std::byte> bytes) const {
    const auto inFile =
        offset < written
            ? static_cast<std::size_t>(std::min<std::uint64_t>(bytes.size(), written - offset))
            : 0;
    if (inFile > 0) {
        const int failure = readAt(spooled->descriptor(), offset, bytes.first(inFile));
        if (failure != 0) {
            return failure;
        }
    }
    const auto rest = bytes.subspan(inFile);
    const auto start = pending.begin() + static_cast<std::ptrdiff_t>(offset + inFile - written);
    std::copy_n(start, rest.size(), rest.begin());
    return 0;
}

int AttachmentSpool::write(std::uint64_t offset, std::uint64_t size, const OutputPath& path,
                           const std::optional<timespec>& time) {
    std::optional<TemporaryFile> made;
    int failure = directory.createTemporary(made);
    std::vector<std::byte> buffer(std::min<std::uint64_t>(size, copyBytes));
    for (std::uint64_t done = 0; failure == 0 && done < size;) {
        const auto bytes = std::span(buffer).first(
            static_cast<std::size_t>(std::min<std::uint64_t>(buffer.size(), size - done)));
        failure = Interrupt::isRequested() ? EINTR : read(offset + done, bytes);
        if (failure == 0) {
            failure = writeAt(made->descriptor(), done, bytes);
        }
        done += bytes.size();
    }
    if (failure == 0) {
        made->setTime(time);
        failure = made->close();
    }
    return failure == 0 ? directory.place(*made, path) : failure;
}

} // namespace olmkit
