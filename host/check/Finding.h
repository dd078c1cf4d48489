#ifndef OLMKIT_HOST_CHECK_FINDING_H
#define OLMKIT_HOST_CHECK_FINDING_H

#include <cstdint>
#include <string>

#include "host/stream/Export.h"

namespace olmhost {

// How bad a finding is.
enum class Severity : std::uint8_t {
    Advice,  // the format recommends otherwise, or leaves it open
    Warning, // breaks a rule that readers are known not to mind, or that they take differently
    Error,   // breaks a rule that readers rely on: they may refuse the file or lose a part of it
};

// What a file can be found to do wrong. Finding.cpp has a row for each: its name, its severity and
// the rule that it breaks.
enum class FindingCode : std::uint8_t {
    // The header of a compound file.
    FileTooShort,
    HeaderSignature,
    HeaderClassId,
    HeaderMinorVersion,
    HeaderMajorVersion,
    HeaderByteOrder,
    HeaderSectorShift,
    HeaderMiniSectorShift,
    HeaderReserved,
    HeaderDirectoryCount,
    HeaderTransaction,
    HeaderMiniLimit,
    HeaderPadding,
    FileLength,

    // The DIFAT, the FAT and the chains of sectors.
    DifatChain,
    DifatCount,
    DifatTail,
    DifatSpare,
    FatCount,
    FatSectorLost,
    FatSectorMark,
    FatMarkStray,
    FatTooShort,
    FatPastEnd,
    ChainOutOfFile,
    ChainShared,
    ChainIntoFree,
    ChainLength,
    SectorOrphan,
    RangeLock,

    // The directory.
    DirectoryMissing,
    RootType,
    RootName,
    RootSiblings,
    RootCreated,
    RootTwice,
    UnusedEntry,
    EntryType,
    EntryNameLength,
    EntryNameEnd,
    EntryNamePadding,
    EntryNameCharacter,
    EntryColour,
    EntryOrphan,
    EntryLink,
    EntryShared,
    StreamChild,
    StreamClassId,
    StreamState,
    StreamTimes,
    StreamSize,
    StreamSizeHigh,
    StreamEmptyStart,
    StorageState,
    StorageStart,
    NamesUnordered,
    NamesEqual,
    TreeTopRed,
    TreeRedRed,
    TreeHeight,

    // The mini stream and its table.
    MiniStreamSize,
    MiniFatCount,
    MiniFatTooShort,
    MiniFatPastEnd,

    // A message's storages and its property streams.
    MessageClassId,
    ChildName,
    ChildNameCase,
    ChildKind,
    PropertyStreamMissing,
    PropertyStreamSize,
    PropertyStreamReserved,
    RecipientCount,
    AttachmentCount,
    RecipientNextId,
    AttachmentNextId,
    PartNumber,
    PartLimit,

    // A message's properties and their values.
    PropertyType,
    PropertyTwice,
    PropertyIdTwice,
    PropertyFlags,
    ValueUnusedBytes,
    ValueBoolean,
    ValueMissing,
    ValueSize,
    ValueStray,
    ValueOfFixedType,
    TextSize,
    TextKind,
    GuidSize,
    ListSize,
    ListValueMissing,
    ListValueSize,
    ListValueStray,
    ListTextEnd,
    ObjectSize,
    AttachmentData,

    // A message's named properties.
    NamesMissing,
    NamesEmbedded,
    NamesStreamMissing,
    NamesGuidSize,
    NamesGuidTwice,
    NamesEntrySize,
    NamesEntryIndex,
    NamesEntryGuid,
    NamesEntryText,
    NamesTwice,
    NamesTextLayout,
    NamesTextPadding,
    NamesBucketSize,
    NamesBucketMissing,
    NamesBucketStray,
    NamedIdUnknown,

    // Not a fault of the file: it has more of something than the checker looks at.
    CheckLimit,
};

// One thing that is wrong with a file, or unusual about it.
struct Finding {
    Severity severity = Severity::Advice;
    FindingCode code = FindingCode::FileTooShort;
    std::string place; // such as "header", "sector 12" or "entry 5, '/__nameid_version1.0'"; ASCII
    std::string text;  // a plain sentence without its capital and its full stop; ASCII
};

// Returns the name of a code, such as "sector-orphan". It never changes, so scripts may rely on it.
OLMHOST_EXPORT const char* findingName(FindingCode code);

// Returns the section with the rule that a finding of this code breaks, such as "MS-CFB 2.3".
OLMHOST_EXPORT const char* findingRule(FindingCode code);

OLMHOST_EXPORT Severity findingSeverity(FindingCode code);

// Returns "advice", "warning" or "error".
OLMHOST_EXPORT const char* severityName(Severity severity);

} // namespace olmhost

#endif
