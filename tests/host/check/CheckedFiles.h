#ifndef OLMKIT_TESTS_HOST_CHECK_CHECKEDFILES_H
#define OLMKIT_TESTS_HOST_CHECK_CHECKEDFILES_H

#include <cstddef>
#include <cstdint>
#include <map>
#include <string>
#include <string_view>
#include <vector>

#include "host/check/FileCheck.h"
#include "tests/host/compound/CompoundFiles.h"

namespace olmhost {

// How GoogleTest prints them.
std::ostream& operator<<(std::ostream& out, const Finding& finding);
std::ostream& operator<<(std::ostream& out, const CheckResult& result);

} // namespace olmhost

namespace olmhost::test {

CheckResult checkBytes(const Bytes& file, const CheckOptions& options = {});
CheckResult checkCompoundBytes(const Bytes& file);

// Expects the finding `code` at `place` among those of `result`.
void expectFinding(const CheckResult& result, FindingCode code, std::string_view place);

// Expects that there is no finding at all.
void expectNone(const CheckResult& result);

// Replaces `width` bytes from `offset` on with a number, low byte first.
void put(Bytes& file, std::size_t offset, std::uint64_t value, std::size_t width);

// One message for each item of an archive, or of the sample archive, that has one.
std::vector<Bytes> messagesOf(const std::string& archive);
std::vector<Bytes> messagesOfTheSample();

// A file of which only some pages hold anything but zeros.
class SparseAccess : public RandomAccess {
public:
    explicit SparseAccess(std::uint64_t size) : fileSize(size) {}

    // Replaces bytes that lie within one page of 4096.
    void put(std::uint64_t offset, std::uint64_t value, std::size_t width);

    // Fills a page with a byte.
    void fill(std::uint64_t offset, std::byte value);

    std::uint64_t size() const override { return fileSize; }
    int read(std::uint64_t offset, std::span<std::byte> place) override;

private:
    std::uint64_t fileSize;
    std::map<std::uint64_t, Bytes> pages; // by offset
};

} // namespace olmhost::test

#endif
