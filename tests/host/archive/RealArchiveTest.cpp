#include <array>
#include <cstdio>
#include <cstdlib>
#include <sstream>

#include <zlib.h>

#include "tests/host/archive/ArchiveFixture.h"

namespace olmhost::test {

namespace {

class RealArchiveTest : public ArchiveFixture {
protected:
    // Returns what a command prints.
    static std::string output(const std::string& command) {
        std::string text;
        std::FILE* pipe = ::popen(command.c_str(), "r");
        if (pipe == nullptr) {
            return text;
        }
        std::array<char, 4096> buffer{};
        for (std::size_t count = 1; count > 0;) {
            count = std::fread(buffer.data(), 1, buffer.size(), pipe);
            text.append(buffer.data(), count);
        }
        ::pclose(pipe);
        return text;
    }

    // Returns "checksum size name" of every file, by another reader.
    static std::string listing(const std::string& path) {
        return output("python3 -c \"import sys, zipfile, zlib\n"
                      "archive = zipfile.ZipFile(sys.argv[1])\n"
                      "for row in archive.infolist():\n"
                      "    data = archive.read(row)\n"
                      "    print(zlib.crc32(data), len(data), row.filename)\" '" +
                      path + "'");
    }

    void compareWithListing(const std::string& path) {
        ASSERT_EQ(openPath(path), 0) << file->failure().text;
        std::istringstream expected(listing(path));
        std::uint64_t index = 0;
        for (std::string line; std::getline(expected, line); ++index) {
            const std::string name(file->contents().name(index));
            const std::string text =
                name.ends_with('/') ? std::string() : contents(index).value_or("none");
            const auto checksum =
                crc32_z(0, reinterpret_cast<const Bytef*>(text.data()), text.size());
            EXPECT_EQ(line,
                      std::to_string(checksum) + " " + std::to_string(text.size()) + " " + name);
        }
        EXPECT_EQ(index, directory->entryCount);
        EXPECT_TRUE(file->faults().empty());
    }
};

} // namespace

TEST_F(RealArchiveTest, EveryFileOfAnExportedArchiveIsReadWhole) {
    const char* path = std::getenv("OLMKIT_REAL_ARCHIVE");
    if (path == nullptr || *path == '\0') {
        GTEST_SKIP() << "OLMKIT_REAL_ARCHIVE is not set";
    }

    compareWithListing(path);

    EXPECT_EQ(directory->entryCount, 53U);
}

TEST_F(RealArchiveTest, AnArchiveOfAnotherWriterIsReadWhole) {
    const std::string path = folder / "other.olm";
    ASSERT_EQ(output("cd '" + folder.string() +
                     "' && python3 -c \"import zipfile\n"
                     "archive = zipfile.ZipFile('other.olm', 'w', zipfile.ZIP_DEFLATED)\n"
                     "for index in range(300):\n"
                     "    text = ''.join(str(index * n) for n in range(index * 20))\n"
                     "    with archive.open(f'm_{index}.xml', 'w', force_zip64=index % 2) as f:\n"
                     "        f.write(text.encode())\n"
                     "archive.close()\n"
                     "print('done')\""),
              "done\n");

    compareWithListing(path);

    EXPECT_EQ(directory->entryCount, 300U);
}

} // namespace olmhost::test
