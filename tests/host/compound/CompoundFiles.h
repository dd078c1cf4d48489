#ifndef OLMKIT_TESTS_HOST_COMPOUND_COMPOUNDFILES_H
#define OLMKIT_TESTS_HOST_COMPOUND_COMPOUNDFILES_H

#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <fstream>
#include <map>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "filter/boundary/Storage.h"
#include "host/compound/CompoundOutput.h"
#include "host/stream/ByteSink.h"

namespace olmhost::test {

using Bytes = std::vector<std::byte>;

// Collects the output. Can refuse one call and counts the calls after it.
class MemorySink : public ByteSink {
public:
    static constexpr int never = -1;

    explicit MemorySink(int callThatFails = never) : failingCall(callThatFails) {}

    bool append(std::span<const std::byte> bytes) override;
    bool overwrite(std::uint64_t offset, std::span<const std::byte> bytes) override;

    Bytes bytes;
    int calls = 0;
    int overwrites = 0;
    std::size_t largestAppend = 0;

private:
    bool accepts();

    int failingCall; // from 0
};

// Writes a file.
class FileSink : public ByteSink {
public:
    explicit FileSink(const std::filesystem::path& path)
        : file(path, std::ios::binary | std::ios::trunc) {}

    bool append(std::span<const std::byte> bytes) override;
    bool overwrite(std::uint64_t offset, std::span<const std::byte> bytes) override;
    void close() { file.close(); }

private:
    std::ofstream file;
};

// Accepts all bytes and drops them.
class NullSink : public ByteSink {
public:
    bool append(std::span<const std::byte> bytes) override;
    bool overwrite(std::uint64_t offset, std::span<const std::byte> bytes) override;

    std::uint64_t size = 0; // bytes
};

// The calls that the module makes. Those that create return null when IOCreate fails.
HostStream* createRoot(CompoundOutput& output);
HostStream* createStorage(HostStream* parent, std::u16string_view name);
HostStream* createStream(HostStream* parent, std::u16string_view name);
bool write(HostStream* stream, std::span<const std::byte> bytes);
void close(HostStream* handle);

// Makes a stream of these bytes and closes it.
void addStream(HostStream* parent, std::u16string_view name, std::span<const std::byte> bytes);

// Returns `size` bytes of a sequence that is fixed for each seed.
Bytes pattern(std::size_t size, std::uint32_t seed);

// Returns the little-endian number at an offset.
std::uint32_t numberAt(std::span<const std::byte> bytes, std::size_t offset);

// The expected contents of a stream.
struct StreamFacts {
    std::uint64_t size; // bytes
    std::string sha256; // hexadecimal

    bool operator==(const StreamFacts&) const = default;
};

std::ostream& operator<<(std::ostream& out, const StreamFacts& facts);

StreamFacts factsOf(std::span<const std::byte> bytes);

// The standard output of a program and its exit status.
struct ProgramResult {
    int exitCode;
    std::string output;
};

// Runs a command line in the shell; `withMessages` adds standard error to the output.
ProgramResult runProgram(const std::string& command, bool withMessages = false);

// Returns the verdict of the strict checker.
ProgramResult checkFiles(const std::vector<std::filesystem::path>& paths);

// What olefile reads: the streams by path ("storage/stream") ...
using StreamMap = std::map<std::string, StreamFacts>;
StreamMap readStreams(const std::filesystem::path& path);

// ... and the storages by path ("storage/", the root "/"), with their class ids.
std::map<std::string, std::string> readStorages(const std::filesystem::path& path);

// Returns an empty folder of the current test.
std::filesystem::path testFolder();

void writeFile(const std::filesystem::path& path, std::span<const std::byte> bytes);
std::string readFile(const std::filesystem::path& path);
std::string asText(std::span<const std::byte> bytes);

} // namespace olmhost::test

#endif
