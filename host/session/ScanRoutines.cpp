#include "host/session/ScanRoutines.h"

#include <bit>
#include <string_view>

namespace olmhost {

namespace {

// No exception may leave a routine. Only running out of memory could throw one, and ends the
// process: a row that is silently incomplete would be worse.

Scan& scanOf(std::uint64_t user0) {
    return *std::bit_cast<Scan*>(user0);
}

void putChar(std::uint16_t character, std::uint64_t user0, std::uint64_t /*user1*/) noexcept {
    scanOf(user0).collector().putCharacter(static_cast<char16_t>(character));
}

std::int32_t putText(const std::uint16_t* text, std::uint16_t length, std::uint32_t /*charset*/,
                     std::uint64_t user0, std::uint64_t /*user1*/) noexcept {
    scanOf(user0).collector().putText({reinterpret_cast<const char16_t*>(text), length});
    return 0;
}

void putValue(const void* value, std::uint64_t user0, std::uint64_t /*user1*/) noexcept {
    scanOf(user0).collector().putValue(value);
}

void cellBegin(std::uint64_t /*user0*/, std::uint64_t /*user1*/) noexcept {}

void cellEnd(std::uint16_t /*code*/, std::uint64_t user0, std::uint64_t /*user1*/) noexcept {
    scanOf(user0).collector().endCell();
}

void tagBegin(std::uint32_t /*kind*/, std::uint32_t tagIndex, const std::uint32_t* tagId,
              std::uint64_t user0, std::uint64_t /*user1*/) noexcept {
    scanOf(user0).collector().beginTag(tagIndex, *tagId);
}

void tagEnd(std::uint32_t /*kind*/, std::uint32_t /*tagIndex*/, std::uint64_t /*user0*/,
            std::uint64_t /*user1*/) noexcept {}

void charset(std::uint32_t /*charset*/, std::uint64_t /*user0*/, std::uint64_t /*user1*/) noexcept {
}

std::uint16_t breakAt(std::uint16_t code, std::uint32_t /*zero*/, std::uint64_t user0,
                      std::uint64_t /*user1*/) noexcept {
    return scanOf(user0).breakAt(code) ? 1 : 0;
}

void bail(std::uint32_t failure, std::uint64_t user0, std::uint64_t /*user1*/) noexcept {
    scanOf(user0).bail(failure);
}

void sectionType(std::uint32_t /*type*/, std::uint32_t /*zero0*/, std::uint32_t /*zero1*/,
                 std::uint64_t /*user0*/, std::uint64_t /*user1*/) noexcept {}

void sectionName(const char* /*name*/, std::uint64_t /*user0*/, std::uint64_t /*user1*/) noexcept {}

void columnsBegin(std::uint64_t /*user0*/, std::uint64_t /*user1*/) noexcept {}

void columnsEnd(std::uint64_t /*user0*/, std::uint64_t /*user1*/) noexcept {}

void columnType(std::uint32_t number0, std::uint32_t number1, std::uint32_t number2,
                std::uint64_t user0, std::uint64_t /*user1*/) noexcept {
    scanOf(user0).collector().columnType({number0, number1, number2});
}

void columnFormat(std::uint32_t number0, std::uint32_t number1, std::uint32_t number2,
                  std::uint64_t user0, std::uint64_t /*user1*/) noexcept {
    scanOf(user0).collector().columnFormat({number0, number1, number2});
}

void columnDone(std::uint32_t number0, std::uint32_t number1, std::uint32_t number2,
                std::uint32_t number3, std::uint64_t user0, std::uint64_t /*user1*/) noexcept {
    scanOf(user0).collector().columnDone({number0, number1, number2, number3});
}

// Checks that the routine has the type by which the module calls it.
template <typename Routine> SoRoutine routine(Routine function) {
    return reinterpret_cast<SoRoutine>(function);
}

struct Installed {
    std::uint16_t id;
    SoRoutine routine;
};

} // namespace

void installScanRoutines(const Module& module, PROC* proc, Scan& scan) {
    // clang-format off
    const Installed table[] = {
        {SoRtnPutCharId,      routine<SoRtnPutChar>(putChar)},
        {SoRtnCellEndId,      routine<SoRtnCellEnd>(cellEnd)},
        {SoRtnBreakId,        routine<SoRtnBreak>(breakAt)},
        {SoRtnPutValueId,     routine<SoRtnPutValue>(putValue)},
        {SoRtnColumnsBeginId, routine<SoRtnColumnsBegin>(columnsBegin)},
        {SoRtnColumnsEndId,   routine<SoRtnColumnsEnd>(columnsEnd)},
        {SoRtnSectionTypeId,  routine<SoRtnSectionType>(sectionType)},
        {SoRtnSectionNameId,  routine<SoRtnSectionName>(sectionName)},
        {SoRtnBailId,         routine<SoRtnBail>(bail)},
        {SoRtnTagBeginId,     routine<SoRtnTagBegin>(tagBegin)},
        {SoRtnTagEndId,       routine<SoRtnTagEnd>(tagEnd)},
        {SoRtnCharsetId,      routine<SoRtnCharset>(charset)},
        {SoRtnColumnDoneId,   routine<SoRtnColumnDone>(columnDone)},
        {SoRtnColumnTypeId,   routine<SoRtnColumnType>(columnType)},
        {SoRtnColumnFormatId, routine<SoRtnColumnFormat>(columnFormat)},
        {SoRtnCellBeginId,    routine<SoRtnCellBegin>(cellBegin)},
        {SoRtnPutTextId,      routine<SoRtnPutText>(putText)},
    };
    // clang-format on
    for (const Installed& row : table) {
        module.setSoRtn(row.id, row.routine, proc);
    }
    module.setUser(std::bit_cast<std::uint64_t>(&scan), 0, proc);
}

} // namespace olmhost
