// Messages that the module wrote, whole and spoilt.

#include <cstdlib>
#include <random>
#include <set>

#include <gtest/gtest.h>

#include "host/compound/CompoundReader.h"
#include "tests/host/check/CheckedFiles.h"

namespace olmhost::test {

namespace {

const std::vector<Bytes>& sample() {
    static const std::vector<Bytes> messages = messagesOfTheSample();
    return messages;
}

const Bytes& smallestOfTheSample() {
    return *std::ranges::min_element(sample(), {}, [](const Bytes& file) { return file.size(); });
}

bool isSanitized() {
    return std::getenv("OLMKIT_SANITIZED") != nullptr;
}

// The checker is as strict as the reader: what that one refuses has an error.
void expectAsStrictAsTheReader(const Bytes& file) {
    const CheckResult result = checkBytes(file);
    std::string failure;
    if (CompoundReader::open(file, failure) == nullptr) {
        EXPECT_GT(result.errors, 0U) << "refused: " << failure;
    }
    EXPECT_EQ(result.errorNumber, 0);
}

} // namespace

TEST(RealMessagesCheckTest, MessagesOfTheSampleHaveNoFindings) {
    ASSERT_EQ(sample().size(), 13U);
    for (std::size_t i = 0; i < sample().size(); ++i) {
        SCOPED_TRACE(i);
        const CheckResult result = checkBytes(sample()[i]);
        expectNone(result);
        EXPECT_GT(result.properties, 0U);
    }
}

// What the module makes of items with repeated elements, thousands of recipients and odd numbers:
// none of it is an error.
TEST(RealMessagesCheckTest, MessagesOfRandomItemsHaveKnownFindingsOnly) {
    const auto archive = testFolder() / "random.olm";
    const ProgramResult made =
        runProgram("cd '" OLMKIT_INTEROP_DIR "' && /usr/bin/python3 -B -c '"
                   "import sys; from random_items import make_archive, KINDS; "
                   "make_archive(sys.argv[1], 1, [kind for kind, _ in KINDS.values()], 24)' '" +
                       archive.string() + "'",
                   true);
    ASSERT_EQ(made.exitCode, 0) << made.output;

    const std::vector<Bytes> messages = messagesOf(archive.string());

    EXPECT_GT(messages.size(), 100U);
    const std::set<FindingCode> known = {
        FindingCode::PropertyTwice,    // of a repeated element
        FindingCode::NamesTwice,       // of a repeated element with a named property
        FindingCode::ListValueStray,   // of a repeated list, when the first one was longer
        FindingCode::PartLimit,        // of more than 2048 recipients
        FindingCode::ValueUnusedBytes, // of a number that is negative
    };
    for (const Bytes& file : messages) {
        const CheckResult result = checkBytes(file);
        EXPECT_EQ(result.errors, 0U) << result;
        for (const Finding& finding : result.findings) {
            EXPECT_TRUE(known.contains(finding.code)) << finding;
        }
    }
}

TEST(RealMessagesCheckTest, NoChangedByteDoesHarm) {
    for (const Bytes& whole : sample()) {
        const std::size_t stride = &whole == &smallestOfTheSample() ? 1 : 41;
        Bytes file = whole;
        for (std::size_t i = 0; i < file.size(); i += stride) {
            for (const unsigned flipped : {0x01U, 0xFFU}) {
                file[i] = whole[i] ^ static_cast<std::byte>(flipped);
                SCOPED_TRACE(i);
                expectAsStrictAsTheReader(file);
            }
            file[i] = whole[i];
        }
    }
}

TEST(RealMessagesCheckTest, EveryCutIsAnError) {
    const Bytes& whole = smallestOfTheSample();
    for (std::size_t size = 0; size < whole.size(); ++size) {
        const CheckResult result =
            checkBytes({whole.begin(), whole.begin() + static_cast<std::ptrdiff_t>(size)});
        EXPECT_GT(result.errors, 0U) << size;
    }
}

// Numbers of sectors and entries that were changed at random, so that chains and trees lead
// anywhere.
TEST(RealMessagesCheckTest, NoChangedNumbersDoHarm) {
    std::mt19937 random(11);
    const unsigned rounds = isSanitized() ? 1000 : 5000;
    for (unsigned round = 0; round < rounds; ++round) {
        Bytes file = sample()[random() % sample().size()];
        const std::size_t sectors = file.size() / 512;
        for (unsigned changes = 1 + random() % 8; changes > 0; --changes) {
            const std::size_t place = random() % (file.size() / 4) * 4;
            const std::uint64_t numbers[] = {
                random() % sectors, 0xFFFFFFFE, 0xFFFFFFFF, 0, 1, random()};
            put(file, place, numbers[random() % std::size(numbers)], 4);
        }
        SCOPED_TRACE(round);
        expectAsStrictAsTheReader(file);
    }
}

// Whatever the other checker of compound files calls a fault, this one finds too; and the other way
// round, as far as the container is concerned.
TEST(RealMessagesCheckTest, FindsWhatTheIndependentCheckerFinds) {
    const auto folder = testFolder();
    const Bytes& whole = smallestOfTheSample();
    const std::size_t stride = isSanitized() ? 29 : 3;
    std::vector<std::filesystem::path> paths;
    std::vector<CheckResult> results;
    for (std::size_t i = 0; i < whole.size(); i += stride) {
        Bytes file = whole;
        file[i] ^= i % 2 == 0 ? std::byte{0x01} : std::byte{0xFF};
        paths.push_back(folder / std::to_string(i));
        writeFile(paths.back(), file);
        results.push_back(checkCompoundBytes(file));
    }

    std::string output = "\n";
    for (std::size_t first = 0; first < paths.size(); first += 500) {
        const auto end = std::min(paths.size(), first + 500);
        output += checkFiles({paths.begin() + static_cast<std::ptrdiff_t>(first),
                              paths.begin() + static_cast<std::ptrdiff_t>(end)})
                      .output;
    }
    for (std::size_t i = 0; i < paths.size(); ++i) {
        const std::string start = "\n" + paths[i].string();
        const bool isFaulty = output.find(start + ": fault: ") != std::string::npos;
        ASSERT_NE(isFaulty, output.find(start + ": valid: ") != std::string::npos) << paths[i];
        const CheckResult& result = results[i];
        EXPECT_EQ(result.errors + result.warnings + result.advice > 0, isFaulty) << paths[i] << "\n"
                                                                                 << result;
    }
    std::filesystem::remove_all(folder);
}

} // namespace olmhost::test
