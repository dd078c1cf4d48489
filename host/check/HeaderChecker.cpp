#include "host/check/HeaderChecker.h"

#include <algorithm>

namespace olmhost {

namespace {

constexpr std::size_t headerFieldsSize = 512; // bytes, in either version

struct CompoundVersion {
    unsigned number;
    unsigned sectorShift;
};

constexpr CompoundVersion compoundVersions[] = {{3, 9}, {4, 12}};

bool isZero(ByteSpan bytes) {
    return std::ranges::all_of(bytes, [](std::byte byte) { return byte == std::byte{0}; });
}

} // namespace

std::optional<CompoundLayout> HeaderChecker::check() {
    if (file.size() < headerFieldsSize) {
        add(FindingCode::FileTooShort,
            "the file has " + counted(file.size(), "byte") + ", fewer than a header");
        return std::nullopt;
    }
    FieldReader fields(file.bytes(0, headerFieldsSize));
    if (fields.number<std::uint64_t>() != 0xE11AB1A1E011CFD0) {
        add(FindingCode::HeaderSignature, "the file does not begin as a compound file does");
        return std::nullopt;
    }
    if (!isZero(fields.bytes(sizeof(ClassId)))) {
        add(FindingCode::HeaderClassId, "the header's class id is not zero");
    }
    if (!checkSizes(fields)) {
        return std::nullopt;
    }
    checkCounts(fields);
    checkLength();
    checkPadding();
    return layout;
}

void HeaderChecker::add(FindingCode code, std::string text) {
    findings.add(code, "header", std::move(text));
}

// False when the size of a sector can't be known.
bool HeaderChecker::checkSizes(FieldReader& fields) {
    const auto minor = fields.number<std::uint16_t>();
    const auto major = fields.number<std::uint16_t>();
    const auto byteOrder = fields.number<std::uint16_t>();
    const auto shift = fields.number<std::uint16_t>();
    const auto miniShift = fields.number<std::uint16_t>();
    if (minor != 0x3E) {
        add(FindingCode::HeaderMinorVersion,
            "the minor version is " + hexText(minor) + ", not 0x0000003E");
    }
    const auto* version = std::ranges::find(compoundVersions, major, &CompoundVersion::number);
    if (version == std::end(compoundVersions)) {
        add(FindingCode::HeaderMajorVersion,
            "the major version is " + std::to_string(major) + ", not 3 or 4");
        version = std::ranges::find(compoundVersions, shift, &CompoundVersion::sectorShift);
    }
    if (byteOrder != 0xFFFE) {
        add(FindingCode::HeaderByteOrder,
            "the byte order mark is " + hexText(byteOrder) + ", not 0x0000FFFE");
    }
    const bool isKnown = version != std::end(compoundVersions);
    if (!isKnown || shift != version->sectorShift) {
        add(FindingCode::HeaderSectorShift,
            "the sector shift is " + std::to_string(shift) + ", which is not that of the version");
    }
    if (miniShift != miniSectorShift) {
        add(FindingCode::HeaderMiniSectorShift,
            "the mini sector shift is " + std::to_string(miniShift) + ", not 6");
    }
    if (!isZero(fields.bytes(6))) {
        add(FindingCode::HeaderReserved, "the reserved bytes are not zero");
    }
    if (isKnown) {
        layout.version = version->number;
        layout.sectorSize = std::size_t{1} << version->sectorShift;
    }
    return isKnown;
}

void HeaderChecker::checkCounts(FieldReader& fields) {
    layout.directoryCount = fields.number<SectorNumber>();
    layout.fatCount = fields.number<SectorNumber>();
    layout.firstDirectorySector = fields.number<SectorNumber>();
    const auto transaction = fields.number<std::uint32_t>();
    const auto miniLimit = fields.number<std::uint32_t>();
    layout.firstMiniFatSector = fields.number<SectorNumber>();
    layout.miniFatCount = fields.number<SectorNumber>();
    layout.firstDifatSector = fields.number<SectorNumber>();
    layout.difatCount = fields.number<SectorNumber>();
    for (SectorNumber& sector : layout.headerDifat) {
        sector = fields.number<SectorNumber>();
    }
    if (layout.version == 3 && layout.directoryCount != 0) {
        add(FindingCode::HeaderDirectoryCount, "the directory's sectors are counted (" +
                                                   std::to_string(layout.directoryCount) +
                                                   "), which version 3 does not do");
    }
    if (transaction != 0) {
        add(FindingCode::HeaderTransaction,
            "the transaction signature is " + hexText(transaction) + ", not zero");
    }
    if (miniLimit != miniStreamLimit) {
        add(FindingCode::HeaderMiniLimit,
            "the limit of the mini stream is " + std::to_string(miniLimit) + " bytes, not 4096");
    }
}

void HeaderChecker::checkLength() {
    const std::uint64_t sectors = file.size() / layout.sectorSize;
    layout.sectorCount = static_cast<SectorNumber>(
        std::min<std::uint64_t>(sectors == 0 ? 0 : sectors - 1, largestSectorNumber));
    if (const std::uint64_t rest = file.size() % layout.sectorSize) {
        findings.add(FindingCode::FileLength, "end of the file",
                     "the last sector has " + std::to_string(rest) + " of " +
                         std::to_string(layout.sectorSize) + " bytes");
    }
}

// In version 4 the header fills a sector of 4096 bytes.
void HeaderChecker::checkPadding() {
    if (layout.sectorSize == headerFieldsSize || file.size() < layout.sectorSize) {
        return;
    }
    if (!isZero(file.bytes(headerFieldsSize, layout.sectorSize - headerFieldsSize))) {
        add(FindingCode::HeaderPadding, "the rest of the header's sector is not zero");
    }
}

} // namespace olmhost
