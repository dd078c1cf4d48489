#include "tests/host/check/CheckedFiles.h"

#include <algorithm>
#include <cstdlib>
#include <set>
#include <stdexcept>

#include <gtest/gtest.h>

#include "host/message/MessageSpool.h"
#include "host/session/Session.h"

namespace olmhost {

std::ostream& operator<<(std::ostream& out, const Finding& finding) {
    return out << severityName(finding.severity) << ": " << finding.place << ": " << finding.text
               << " [" << findingName(finding.code) << ", " << findingRule(finding.code) << "]";
}

std::ostream& operator<<(std::ostream& out, const CheckResult& result) {
    for (const Finding& finding : result.findings) {
        out << finding << "\n";
    }
    return out << result.errors << " errors, " << result.warnings << " warnings, " << result.advice
               << " advice, errno " << result.errorNumber;
}

} // namespace olmhost

namespace olmhost::test {

namespace {

constexpr std::size_t sparsePage = 4096; // bytes

// The codes that a test has expected so far.
std::set<FindingCode>& expectedCodes() {
    static std::set<FindingCode> codes;
    return codes;
}

// Fails a run of all tests in which some code of a finding was never expected: no rule goes without
// a test.
class EveryCodeIsTested : public testing::Environment {
public:
    void TearDown() override {
        if (GTEST_FLAG_GET(filter) != "*") {
            return;
        }
        for (int i = 0; i <= static_cast<int>(FindingCode::CheckLimit); ++i) {
            const auto code = static_cast<FindingCode>(i);
            EXPECT_TRUE(expectedCodes().contains(code)) << findingName(code) << " has no test";
        }
    }
};

// GoogleTest deletes it.
const testing::Environment* const everyCodeIsTested =
    testing::AddGlobalTestEnvironment(new EveryCodeIsTested);

} // namespace

CheckResult checkBytes(const Bytes& file, const CheckOptions& options) {
    MemoryAccess access(file);
    return checkFile(access, options);
}

CheckResult checkCompoundBytes(const Bytes& file) {
    return checkBytes(file, {.kind = FileKind::CompoundFile});
}

void expectFinding(const CheckResult& result, FindingCode code, std::string_view place) {
    expectedCodes().insert(code);
    const bool isFound = std::ranges::any_of(result.findings, [&](const Finding& finding) {
        return finding.code == code && finding.place == place;
    });
    EXPECT_TRUE(isFound) << "no " << findingName(code) << " at " << place << " in\n" << result;
}

void expectNone(const CheckResult& result) {
    EXPECT_EQ(result.errorNumber, 0);
    EXPECT_EQ(result.errors + result.warnings + result.advice, 0U) << result;
}

void put(Bytes& file, std::size_t offset, std::uint64_t value, std::size_t width) {
    for (std::size_t i = 0; i < width; ++i) {
        file.at(offset + i) = static_cast<std::byte>(value >> (8 * i));
    }
}

std::vector<Bytes> messagesOf(const std::string& archive) {
    Session session;
    if (session.open(archive).status != OpenStatus::Done) {
        throw std::runtime_error(archive + " can't be opened");
    }
    while (!session.list([](const Row&) { return RowAnswer::Continue; })) {
    }
    std::vector<Bytes> messages;
    for (std::uint64_t index = 0; index < session.itemCount(); ++index) {
        MessageSpool spool;
        if (session.extract(index, spool).end == ExtractionEnd::Whole) {
            messages.emplace_back(spool.contents().begin(), spool.contents().end());
        }
    }
    return messages;
}

std::vector<Bytes> messagesOfTheSample() {
    return messagesOf(std::string(std::getenv("OLMKIT_SOURCE_DIR")) + "/examples/sample.olm");
}

void SparseAccess::put(std::uint64_t offset, std::uint64_t value, std::size_t width) {
    Bytes& page = pages[offset / sparsePage * sparsePage];
    page.resize(sparsePage);
    test::put(page, offset % sparsePage, value, width);
}

void SparseAccess::fill(std::uint64_t offset, std::byte value) {
    pages[offset / sparsePage * sparsePage].assign(sparsePage, value);
}

int SparseAccess::read(std::uint64_t offset, std::span<std::byte> place) {
    std::ranges::fill(place, std::byte{0});
    if (const auto page = pages.find(offset); page != pages.end()) {
        std::copy_n(page->second.begin(), place.size(), place.begin());
    }
    return 0;
}

} // namespace olmhost::test
