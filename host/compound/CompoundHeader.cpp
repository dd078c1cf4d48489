#include "host/compound/CompoundHeader.h"

#include "host/compound/FieldWriter.h"

namespace olmhost {

std::array<std::byte, sectorSize> CompoundHeader::encoded() const {
    std::array<std::byte, sectorSize> place;
    FieldWriter fields(place);

    fields.number(headerSignature);
    fields.zeros(sizeof(ClassId));
    fields.number(headerMinorVersion);
    fields.number(headerMajorVersion);
    fields.number(headerByteOrder);
    fields.number(std::uint16_t{sectorShift});
    fields.number(std::uint16_t{miniSectorShift});
    fields.zeros(headerReservedSize);
    fields.number(std::uint32_t{0}); // directory sectors: not counted in version 3
    fields.number(tableSectors);
    fields.number(firstDirectorySector);
    fields.number(std::uint32_t{0}); // transaction
    fields.number(std::uint32_t{miniStreamLimit});
    fields.number(firstMiniTableSector);
    fields.number(miniTableSectors);
    fields.number(firstIndexSector);
    fields.number(indexSectors);
    for (const SectorNumber number : headerIndex) {
        fields.number(number);
    }
    assert(fields.remaining() == 0);
    return place;
}

} // namespace olmhost
