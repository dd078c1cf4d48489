#include "host/check/Finding.h"

#include <algorithm>
#include <cstddef>
#include <iterator>

namespace olmhost {

namespace {

struct FindingRow {
    FindingCode code;
    Severity severity;
    const char* name;
    const char* rule;
};

using enum Severity;

// In the order of the codes.
// clang-format off
constexpr FindingRow findingRows[] = {
    {FindingCode::FileTooShort,          Error,   "file-too-short",          "MS-CFB 2.2"},
    {FindingCode::HeaderSignature,       Error,   "header-signature",        "MS-CFB 2.2"},
    {FindingCode::HeaderClassId,         Warning, "header-class-id",         "MS-CFB 2.2"},
    {FindingCode::HeaderMinorVersion,    Warning, "header-minor-version",    "MS-CFB 2.2"},
    {FindingCode::HeaderMajorVersion,    Error,   "header-major-version",    "MS-CFB 2.2"},
    {FindingCode::HeaderByteOrder,       Error,   "header-byte-order",       "MS-CFB 2.2"},
    {FindingCode::HeaderSectorShift,     Error,   "header-sector-shift",     "MS-CFB 2.2"},
    {FindingCode::HeaderMiniSectorShift, Error,   "header-mini-sector-shift", "MS-CFB 2.2"},
    {FindingCode::HeaderReserved,        Warning, "header-reserved",         "MS-CFB 2.2"},
    {FindingCode::HeaderDirectoryCount,  Error,   "header-directory-count",  "MS-CFB 2.2"},
    {FindingCode::HeaderTransaction,     Advice,  "header-transaction",      "MS-CFB 2.2"},
    {FindingCode::HeaderMiniLimit,       Error,   "header-mini-limit",       "MS-CFB 2.2"},
    {FindingCode::HeaderPadding,         Warning, "header-padding",          "MS-CFB 2.2"},
    {FindingCode::FileLength,            Error,   "file-length",             "MS-CFB 2.1"},

    {FindingCode::DifatChain,            Error,   "difat-chain",             "MS-CFB 2.5"},
    {FindingCode::DifatCount,            Error,   "difat-count",             "MS-CFB 2.5"},
    {FindingCode::DifatTail,             Error,   "difat-tail",              "MS-CFB 2.5"},
    {FindingCode::DifatSpare,            Warning, "difat-spare",             "MS-CFB 2.5"},
    {FindingCode::FatCount,              Error,   "fat-count",               "MS-CFB 2.2"},
    {FindingCode::FatSectorLost,         Error,   "fat-sector-lost",         "MS-CFB 2.5"},
    {FindingCode::FatSectorMark,         Error,   "fat-sector-mark",         "MS-CFB 2.3"},
    {FindingCode::FatMarkStray,          Error,   "fat-mark-stray",          "MS-CFB 2.3"},
    {FindingCode::FatTooShort,           Error,   "fat-too-short",           "MS-CFB 2.3"},
    {FindingCode::FatPastEnd,            Error,   "fat-past-end",            "MS-CFB 2.3"},
    {FindingCode::ChainOutOfFile,        Error,   "chain-out-of-file",       "MS-CFB 2.3"},
    {FindingCode::ChainShared,           Error,   "chain-shared",            "MS-CFB 2.3"},
    {FindingCode::ChainIntoFree,         Error,   "chain-into-free",         "MS-CFB 2.3"},
    {FindingCode::ChainLength,           Error,   "chain-length",            "MS-CFB 2.3"},
    {FindingCode::SectorOrphan,          Error,   "sector-orphan",           "MS-CFB 2.3"},
    {FindingCode::RangeLock,             Error,   "range-lock",              "MS-CFB 2.8"},

    {FindingCode::DirectoryMissing,      Error,   "directory-missing",       "MS-CFB 2.6"},
    {FindingCode::RootType,              Error,   "root-type",               "MS-CFB 2.6.2"},
    {FindingCode::RootName,              Error,   "root-name",               "MS-CFB 2.6.2"},
    {FindingCode::RootSiblings,          Error,   "root-siblings",           "MS-CFB 2.6.2"},
    {FindingCode::RootCreated,           Warning, "root-created",            "MS-CFB 2.6.1"},
    {FindingCode::RootTwice,             Error,   "root-twice",              "MS-CFB 2.6.2"},
    {FindingCode::UnusedEntry,           Warning, "unused-entry",            "MS-CFB 2.6.3"},
    {FindingCode::EntryType,             Error,   "entry-type",              "MS-CFB 2.6.1"},
    {FindingCode::EntryNameLength,       Error,   "entry-name-length",       "MS-CFB 2.6.1"},
    {FindingCode::EntryNameEnd,          Error,   "entry-name-end",          "MS-CFB 2.6.1"},
    {FindingCode::EntryNamePadding,      Advice,  "entry-name-padding",      "MS-CFB 2.6.1"},
    {FindingCode::EntryNameCharacter,    Error,   "entry-name-character",    "MS-CFB 2.6.1"},
    {FindingCode::EntryColour,           Error,   "entry-colour",            "MS-CFB 2.6.1"},
    {FindingCode::EntryOrphan,           Error,   "entry-orphan",            "MS-CFB 2.6.1"},
    {FindingCode::EntryLink,             Error,   "entry-link",              "MS-CFB 2.6.1"},
    {FindingCode::EntryShared,           Error,   "entry-shared",            "MS-CFB 2.6.4"},
    {FindingCode::StreamChild,           Error,   "stream-child",            "MS-CFB 2.6.1"},
    {FindingCode::StreamClassId,         Warning, "stream-class-id",         "MS-CFB 2.6.1"},
    {FindingCode::StreamState,           Warning, "stream-state",            "MS-CFB 2.6.1"},
    {FindingCode::StreamTimes,           Warning, "stream-times",            "MS-CFB 2.6.1"},
    {FindingCode::StreamSize,            Error,   "stream-size",             "MS-CFB 2.6.1"},
    {FindingCode::StreamSizeHigh,        Warning, "stream-size-high",        "MS-CFB 2.6.1"},
    {FindingCode::StreamEmptyStart,      Warning, "stream-empty-start",      "MS-CFB 2.6.1"},
    {FindingCode::StorageState,          Advice,  "storage-state",           "MS-CFB 2.6.1"},
    {FindingCode::StorageStart,          Warning, "storage-start",           "MS-CFB 2.6.3"},
    {FindingCode::NamesUnordered,        Error,   "names-unordered",         "MS-CFB 2.6.4"},
    {FindingCode::NamesEqual,            Error,   "names-equal",             "MS-CFB 2.6.4"},
    {FindingCode::TreeTopRed,            Error,   "tree-top-red",            "MS-CFB 2.6.4"},
    {FindingCode::TreeRedRed,            Error,   "tree-red-red",            "MS-CFB 2.6.4"},
    {FindingCode::TreeHeight,            Advice,  "tree-height",             "MS-CFB 2.6.4"},

    {FindingCode::MiniStreamSize,        Error,   "mini-stream-size",        "MS-CFB 2.6.2"},
    {FindingCode::MiniFatCount,          Error,   "mini-fat-count",          "MS-CFB 2.2"},
    {FindingCode::MiniFatTooShort,       Error,   "mini-fat-too-short",      "MS-CFB 2.4"},
    {FindingCode::MiniFatPastEnd,        Error,   "mini-fat-past-end",       "MS-CFB 2.4"},

    {FindingCode::MessageClassId,        Advice,  "message-class-id",        "MS-OXMSG 2.3"},
    {FindingCode::ChildName,             Warning, "child-name",              "MS-OXMSG 2.2"},
    {FindingCode::ChildNameCase,         Warning, "child-name-case",         "MS-OXMSG 2.1.3"},
    {FindingCode::ChildKind,             Error,   "child-kind",              "MS-OXMSG 2.2"},
    {FindingCode::PropertyStreamMissing, Error,   "property-stream-missing", "MS-OXMSG 2.4"},
    {FindingCode::PropertyStreamSize,    Error,   "property-stream-size",    "MS-OXMSG 2.4"},
    {FindingCode::PropertyStreamReserved, Advice, "property-stream-reserved", "MS-OXMSG 2.4.1"},
    {FindingCode::RecipientCount,        Error,   "recipient-count",         "MS-OXMSG 2.4.1.1"},
    {FindingCode::AttachmentCount,       Error,   "attachment-count",        "MS-OXMSG 2.4.1.1"},
    {FindingCode::RecipientNextId,       Error,   "recipient-next-id",       "MS-OXMSG 2.4.1.1"},
    {FindingCode::AttachmentNextId,      Error,   "attachment-next-id",      "MS-OXMSG 2.4.1.1"},
    {FindingCode::PartNumber,            Advice,  "part-number",             "MS-OXMSG 2.2.1"},
    {FindingCode::PartLimit,             Warning, "part-limit",              "MS-OXMSG 2.2.1"},

    {FindingCode::PropertyType,          Error,   "property-type",           "MS-OXMSG 2.1"},
    {FindingCode::PropertyTwice,         Warning, "property-twice",          "MS-OXMSG 2.4.2"},
    {FindingCode::PropertyIdTwice,       Warning, "property-id-twice",       "MS-OXMSG 2.4.2"},
    {FindingCode::PropertyFlags,         Advice,  "property-flags",          "MS-OXMSG 2.4.2.1"},
    {FindingCode::ValueUnusedBytes,      Advice,  "value-unused-bytes",      "MS-OXMSG 2.4.2.1"},
    {FindingCode::ValueBoolean,          Warning, "value-boolean",           "MS-OXCDATA 2.11.1"},
    {FindingCode::ValueMissing,          Error,   "value-missing",           "MS-OXMSG 2.1.3"},
    {FindingCode::ValueSize,             Error,   "value-size",              "MS-OXMSG 2.4.2.2"},
    {FindingCode::ValueStray,            Error,   "value-stray",             "MS-OXMSG 2.1.3"},
    {FindingCode::ValueOfFixedType,      Error,   "value-of-fixed-type",     "MS-OXMSG 2.1.2"},
    {FindingCode::TextSize,              Error,   "text-size",               "MS-OXMSG 2.1.3"},
    {FindingCode::TextKind,              Warning, "text-kind",               "MS-OXMSG 2.1.1.1"},
    {FindingCode::GuidSize,              Error,   "guid-size",               "MS-OXMSG 2.1.3"},
    {FindingCode::ListSize,              Error,   "list-size",               "MS-OXMSG 2.1.4"},
    {FindingCode::ListValueMissing,      Error,   "list-value-missing",      "MS-OXMSG 2.1.4.2"},
    {FindingCode::ListValueSize,         Error,   "list-value-size",         "MS-OXMSG 2.1.4.2"},
    {FindingCode::ListValueStray,        Warning, "list-value-stray",        "MS-OXMSG 2.1.4.2"},
    {FindingCode::ListTextEnd,           Warning, "list-text-end",           "MS-OXMSG 2.1.4.2"},
    {FindingCode::ObjectSize,            Warning, "object-size",             "MS-OXMSG 2.4.2.2"},
    {FindingCode::AttachmentData,        Warning, "attachment-data",         "MS-OXMSG 2.2.2"},

    {FindingCode::NamesMissing,          Error,   "names-missing",           "MS-OXMSG 2.2.3"},
    {FindingCode::NamesEmbedded,         Warning, "names-embedded",          "MS-OXMSG 2.2.2.1"},
    {FindingCode::NamesStreamMissing,    Error,   "names-stream-missing",    "MS-OXMSG 2.2.3.1"},
    {FindingCode::NamesGuidSize,         Error,   "names-guid-size",         "MS-OXMSG 2.2.3.1.1"},
    {FindingCode::NamesGuidTwice,        Warning, "names-guid-twice",        "MS-OXMSG 2.2.3.1.1"},
    {FindingCode::NamesEntrySize,        Error,   "names-entry-size",        "MS-OXMSG 2.2.3.1.2"},
    {FindingCode::NamesEntryIndex,       Error,   "names-entry-index",       "MS-OXMSG 2.2.3.1.2.1"},
    {FindingCode::NamesEntryGuid,        Error,   "names-entry-guid",        "MS-OXMSG 2.2.3.1.2.1"},
    {FindingCode::NamesEntryText,        Error,   "names-entry-text",        "MS-OXMSG 2.2.3.1.3"},
    {FindingCode::NamesTwice,            Warning, "names-twice",             "MS-OXMSG 2.2.3.1.2"},
    {FindingCode::NamesTextLayout,       Error,   "names-text-layout",       "MS-OXMSG 2.2.3.1.3"},
    {FindingCode::NamesTextPadding,      Advice,  "names-text-padding",      "MS-OXMSG 2.2.3.1.3"},
    {FindingCode::NamesBucketSize,       Error,   "names-bucket-size",       "MS-OXMSG 2.2.3.2.4"},
    {FindingCode::NamesBucketMissing,    Error,   "names-bucket-missing",    "MS-OXMSG 2.2.3.2.2"},
    {FindingCode::NamesBucketStray,      Error,   "names-bucket-stray",      "MS-OXMSG 2.2.3.2.4"},
    {FindingCode::NamedIdUnknown,        Error,   "named-id-unknown",        "MS-OXMSG 2.2.3.1.2"},

    {FindingCode::CheckLimit,            Warning, "check-limit",             "a limit of the checker"},
};
// clang-format on

constexpr std::size_t placeOf(FindingCode code) {
    return static_cast<std::size_t>(code);
}

constexpr bool isInOrderOfCodes() {
    for (std::size_t i = 0; i < std::size(findingRows); ++i) {
        if (placeOf(findingRows[i].code) != i) {
            return false;
        }
    }
    return std::size(findingRows) == placeOf(FindingCode::CheckLimit) + 1;
}

static_assert(isInOrderOfCodes());

} // namespace

const char* findingName(FindingCode code) {
    return findingRows[placeOf(code)].name;
}

const char* findingRule(FindingCode code) {
    return findingRows[placeOf(code)].rule;
}

Severity findingSeverity(FindingCode code) {
    return findingRows[placeOf(code)].severity;
}

const char* severityName(Severity severity) {
    switch (severity) {
    case Severity::Advice:
        return "advice";
    case Severity::Warning:
        return "warning";
    case Severity::Error:
        break;
    }
    return "error";
}

} // namespace olmhost
