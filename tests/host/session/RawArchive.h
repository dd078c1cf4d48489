#ifndef OLMKIT_TESTS_HOST_SESSION_RAWARCHIVE_H
#define OLMKIT_TESTS_HOST_SESSION_RAWARCHIVE_H

#include <stdlib.h>
#include <unistd.h>

#include <filesystem>
#include <fstream>
#include <stdexcept>
#include <string>
#include <string_view>

namespace olmhost {

// A file of these bytes in the temporary folder, which is removed with this object.
class RawArchive {
public:
    explicit RawArchive(std::string_view bytes)
        : file((std::filesystem::temp_directory_path() / "olmkit-XXXXXX").string()) {
        const int descriptor = ::mkstemp(file.data());
        if (descriptor < 0) {
            throw std::runtime_error("no temporary file");
        }
        ::close(descriptor);
        std::ofstream(file, std::ios::binary)
            .write(bytes.data(), static_cast<std::streamsize>(bytes.size()));
    }
    RawArchive(const RawArchive&) = delete;
    RawArchive& operator=(const RawArchive&) = delete;
    ~RawArchive() { std::filesystem::remove(file); }

    const std::string& path() const { return file; }

private:
    std::string file;
};

} // namespace olmhost

#endif
