#include "tests/host/compound/CompoundFiles.h"

#include <sys/wait.h>

#include <array>
#include <cstdio>
#include <cstring>
#include <random>
#include <sstream>

#include <gtest/gtest.h>
#include <nlohmann/json.hpp>
#include <openssl/sha.h>

namespace olmhost::test {

bool MemorySink::accepts() {
    return calls++ != failingCall;
}

bool MemorySink::append(std::span<const std::byte> added) {
    if (!accepts()) {
        return false;
    }
    largestAppend = std::max(largestAppend, added.size());
    bytes.insert(bytes.end(), added.begin(), added.end());
    return true;
}

bool MemorySink::overwrite(std::uint64_t offset, std::span<const std::byte> replacement) {
    ++overwrites;
    if (!accepts() || offset + replacement.size() > bytes.size()) {
        return false;
    }
    std::copy(replacement.begin(), replacement.end(),
              bytes.begin() + static_cast<std::ptrdiff_t>(offset));
    return true;
}

bool FileSink::append(std::span<const std::byte> bytes) {
    file.seekp(0, std::ios::end);
    file.write(reinterpret_cast<const char*>(bytes.data()),
               static_cast<std::streamsize>(bytes.size()));
    return file.good();
}

bool FileSink::overwrite(std::uint64_t offset, std::span<const std::byte> bytes) {
    file.seekp(static_cast<std::streamoff>(offset));
    file.write(reinterpret_cast<const char*>(bytes.data()),
               static_cast<std::streamsize>(bytes.size()));
    return file.good();
}

bool NullSink::append(std::span<const std::byte> bytes) {
    size += bytes.size();
    return true;
}

bool NullSink::overwrite(std::uint64_t offset, std::span<const std::byte> bytes) {
    return offset + bytes.size() <= size;
}

HostStream* createRoot(CompoundOutput& output) {
    RootStorageSpec record{};
    record.output = &output;
    record.always1 = 1;
    HostStream* handle = nullptr;
    const bool done = IOCreate(&handle, IORootStorage, &record, IOStorageFlags) == 0;
    return done ? handle : nullptr;
}

static HostStream* createInside(HostStream* parent, std::u16string_view name, std::uint32_t type,
                                std::uint32_t flags) {
    StorageSpec record;
    std::memset(&record, 0xCD, sizeof record); // the module doesn't clear it either
    record.parent = parent;
    const std::u16string text(name);
    std::vector<std::uint16_t> units(text.begin(), text.end());
    units.push_back(0);
    _UTwstrncpy(record.name, units.data(), 128);
    HostStream* handle = nullptr;
    const bool done = IOCreate(&handle, type, &record, flags) == 0;
    return done ? handle : nullptr;
}

HostStream* createStorage(HostStream* parent, std::u16string_view name) {
    return createInside(parent, name, IOSubStorage, IOStorageFlags);
}

HostStream* createStream(HostStream* parent, std::u16string_view name) {
    return createInside(parent, name, IOStream, IOStreamFlags);
}

bool write(HostStream* stream, std::span<const std::byte> bytes) {
    std::uint32_t count = 0xDEAD;
    const auto size = static_cast<std::uint32_t>(bytes.size());
    const bool done = stream->write(stream, bytes.data(), size, &count) == 0;
    EXPECT_EQ(count, done ? size : 0);
    return done;
}

void close(HostStream* handle) {
    handle->close(handle);
}

void addStream(HostStream* parent, std::u16string_view name, std::span<const std::byte> bytes) {
    HostStream* stream = createStream(parent, name);
    ASSERT_NE(stream, nullptr);
    EXPECT_TRUE(write(stream, bytes));
    close(stream);
}

std::uint32_t numberAt(std::span<const std::byte> bytes, std::size_t offset) {
    std::uint32_t number = 0;
    for (std::size_t i = 4; i-- > 0;) {
        number = number << 8 | std::to_integer<std::uint32_t>(bytes[offset + i]);
    }
    return number;
}

Bytes pattern(std::size_t size, std::uint32_t seed) {
    std::mt19937 numbers(seed);
    Bytes bytes(size);
    std::size_t filled = 0;
    while (filled < size) {
        const std::uint32_t number = numbers();
        const std::size_t taken = std::min(sizeof number, size - filled);
        std::memcpy(bytes.data() + filled, &number, taken);
        filled += taken;
    }
    return bytes;
}

std::ostream& operator<<(std::ostream& out, const StreamFacts& facts) {
    return out << facts.size << " bytes, " << facts.sha256;
}

StreamFacts factsOf(std::span<const std::byte> bytes) {
    std::array<unsigned char, SHA256_DIGEST_LENGTH> digest{};
    SHA256(reinterpret_cast<const unsigned char*>(bytes.data()), bytes.size(), digest.data());
    std::string text;
    for (const unsigned char byte : digest) {
        std::array<char, 3> digits{};
        std::snprintf(digits.data(), digits.size(), "%02x", byte);
        text += digits.data();
    }
    return {bytes.size(), text};
}

ProgramResult runProgram(const std::string& command, bool withMessages) {
    const std::string line = command + (withMessages ? " 2>&1" : " 2>/dev/null");
    std::FILE* pipe = popen(line.c_str(), "r"); // NOLINT: a shell is needed
    if (pipe == nullptr) {
        ADD_FAILURE() << "can't run " << line;
        return {-1, ""};
    }
    ProgramResult result{-1, ""};
    std::vector<char> piece(std::size_t{1} << 16);
    std::size_t count = 0;
    while ((count = std::fread(piece.data(), 1, piece.size(), pipe)) != 0) {
        result.output.append(piece.data(), count);
    }
    const int status = pclose(pipe);
    result.exitCode = WIFEXITED(status) ? WEXITSTATUS(status) : -1;
    return result;
}

ProgramResult checkFiles(const std::vector<std::filesystem::path>& paths) {
    std::string command = "/usr/bin/python3 " OLMKIT_INTEROP_DIR "/check_compound.py";
    for (const auto& path : paths) {
        command += " '" + path.string() + "'";
    }
    return runProgram(command, true);
}

static nlohmann::json readAll(const std::filesystem::path& path) {
    const ProgramResult read = runProgram(
        "/usr/bin/python3 " OLMKIT_INTEROP_DIR "/read_compound.py '" + path.string() + "'");
    if (read.exitCode != 0) {
        ADD_FAILURE() << "olefile refuses " << path;
        return nlohmann::json::object();
    }
    return nlohmann::json::parse(read.output);
}

StreamMap readStreams(const std::filesystem::path& path) {
    StreamMap streams;
    const nlohmann::json found = readAll(path);
    for (const auto& [name, facts] : found.items()) {
        if (facts.contains("size")) {
            streams[name] = {facts["size"], facts["sha256"]};
        }
    }
    return streams;
}

std::map<std::string, std::string> readStorages(const std::filesystem::path& path) {
    std::map<std::string, std::string> storages;
    const nlohmann::json found = readAll(path);
    for (const auto& [name, facts] : found.items()) {
        if (facts.contains("classId")) {
            storages[name] = facts["classId"];
        }
    }
    return storages;
}

std::filesystem::path testFolder() {
    const auto* test = testing::UnitTest::GetInstance()->current_test_info();
    std::string name = std::string(test->test_suite_name()) + "." + test->name();
    std::replace(name.begin(), name.end(), '/', '_');
    auto folder = std::filesystem::current_path() / "compound-files" / name;
    std::filesystem::remove_all(folder);
    std::filesystem::create_directories(folder);
    return folder;
}

void writeFile(const std::filesystem::path& path, std::span<const std::byte> bytes) {
    FileSink file(path);
    EXPECT_TRUE(file.append(bytes));
}

std::string readFile(const std::filesystem::path& path) {
    std::ifstream file(path, std::ios::binary);
    EXPECT_TRUE(file.is_open()) << path;
    std::ostringstream text;
    text << file.rdbuf();
    return text.str();
}

std::string asText(std::span<const std::byte> bytes) {
    return {reinterpret_cast<const char*>(bytes.data()), bytes.size()};
}

} // namespace olmhost::test
