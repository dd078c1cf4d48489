#include "tests/fakehost/Scan.h"

#include <algorithm>
#include <bit>
#include <cstring>

#include <gtest/gtest.h>

#include "tests/fakehost/Text.h"

namespace fakehost {

namespace {

constexpr uint16_t highestId = 150;
constexpr int endlessScan = 100'000; // VwStreamRead calls
constexpr size_t valuesPerRow = 3;   // two specials and the locator

std::string callText(const char* name, std::initializer_list<uint64_t> arguments) {
    std::string text = std::string(name) + "(";
    for (const uint64_t argument : arguments) {
        text += (text.back() == '(' ? "" : ", ") + number(argument);
    }
    return text + ")";
}

void keep(std::string text, uint64_t user0, uint64_t user1) {
    FakeHost& host = FakeHost::current();
    if (user1 != Scan::user1Mark) {
        host.misuse(text + " without the user words");
    }
    host.record(CallKind::Routine, std::move(text), user0, user1);
}

Scan& scanOf(uint64_t user0) {
    return *std::bit_cast<Scan*>(user0);
}

void unexpectedRoutine() {
    FakeHost::current().misuse("a routine that the module must not call");
}

} // namespace

// The routines as the module calls them.
struct ScanRoutines {
    static void putChar(uint16_t character, uint64_t user0, uint64_t user1) {
        keep(callText("SoRtnPutChar", {character}), user0, user1);
        scanOf(user0).openCell().text.push_back(static_cast<char16_t>(character));
    }

    static void cellEnd(uint16_t code, uint64_t user0, uint64_t user1) {
        keep(callText("SoRtnCellEnd", {code}), user0, user1);
    }

    static uint16_t breakAt(uint16_t code, uint32_t zero, uint64_t user0, uint64_t user1) {
        keep(callText("SoRtnBreak", {code, zero}), user0, user1);
        Scan& scan = scanOf(user0);
        if (code == BreakRow && !scan.foundRows.empty()) {
            scan.foundRows.back().isComplete = true;
        }
        scan.endSeen = scan.endSeen || code == BreakArchive;
        scan.valuesInRow = 0;
        return scan.onBreak ? scan.onBreak(code) : 0;
    }

    static void putValue(const void* value, uint64_t user0, uint64_t user1) {
        Scan& scan = scanOf(user0);
        Row& row = scan.openRow();
        switch (scan.valuesInRow++ % valuesPerRow) {
        case 0:
            std::memcpy(&row.special6, value, sizeof row.special6);
            keep(callText("SoRtnPutValue", {row.special6}), user0, user1);
            break;
        case 1:
            std::memcpy(&row.special7, value, sizeof row.special7);
            keep(callText("SoRtnPutValue", {row.special7}), user0, user1);
            break;
        default:
            std::memcpy(&row.locator, value, sizeof row.locator);
            keep(callText("SoRtnPutValue",
                          {row.locator.size, row.locator.entryIndex, row.locator.itemNumber}),
                 user0, user1);
        }
    }

    static void columnsBegin(uint64_t user0, uint64_t user1) {
        keep("SoRtnColumnsBegin()", user0, user1);
    }

    static void columnsEnd(uint64_t user0, uint64_t user1) {
        keep("SoRtnColumnsEnd()", user0, user1);
    }

    static void sectionType(uint32_t type, uint32_t zero0, uint32_t zero1, uint64_t user0,
                            uint64_t user1) {
        keep(callText("SoRtnSectionType", {type, zero0, zero1}), user0, user1);
    }

    static void sectionName(const char* name, uint64_t user0, uint64_t user1) {
        keep("SoRtnSectionName(" + inQuotes(toUtf16(name)) + ")", user0, user1);
    }

    static void bail(uint32_t failure, uint64_t user0, uint64_t user1) {
        keep(callText("SoRtnBail", {failure}), user0, user1);
        Scan& scan = scanOf(user0);
        ++scan.bailCount;
        if (scan.onBail) {
            scan.onBail(failure);
        }
    }

    static void tagBegin(uint32_t kind, uint32_t tagIndex, const uint32_t* tagId, uint64_t user0,
                         uint64_t user1) {
        keep(callText("SoRtnTagBegin", {kind, tagIndex, *tagId}), user0, user1);
        scanOf(user0).openTagId = *tagId;
        scanOf(user0).openTagIndex = tagIndex;
    }

    static void tagEnd(uint32_t kind, uint32_t tagIndex, uint64_t user0, uint64_t user1) {
        keep(callText("SoRtnTagEnd", {kind, tagIndex}), user0, user1);
        scanOf(user0).openTagId.reset();
        scanOf(user0).openTagIndex.reset();
    }

    static void charset(uint32_t charset, uint64_t user0, uint64_t user1) {
        keep(callText("SoRtnCharset", {charset}), user0, user1);
    }

    static void columnDone(uint32_t number0, uint32_t number1, uint32_t number2, uint32_t number3,
                           uint64_t user0, uint64_t user1) {
        keep(callText("SoRtnColumnDone", {number0, number1, number2, number3}), user0, user1);
    }

    static void columnType(uint32_t number0, uint32_t number1, uint32_t number2, uint64_t user0,
                           uint64_t user1) {
        keep(callText("SoRtnColumnType", {number0, number1, number2}), user0, user1);
    }

    static void columnFormat(uint32_t number0, uint32_t number1, uint32_t number2, uint64_t user0,
                             uint64_t user1) {
        keep(callText("SoRtnColumnFormat", {number0, number1, number2}), user0, user1);
    }

    static void cellBegin(uint64_t user0, uint64_t user1) {
        keep("SoRtnCellBegin()", user0, user1);
        Scan& scan = scanOf(user0);
        scan.openRow().cells.push_back({{}, scan.openTagId, scan.openTagIndex});
    }

    static int32_t putText(const uint16_t* text, uint16_t length, uint32_t charset, uint64_t user0,
                           uint64_t user1) {
        const std::u16string units(text, text + length);
        keep("SoRtnPutText(" + inQuotes(units) + ", " + number(length) + ", " + number(charset) +
                 ")",
             user0, user1);
        scanOf(user0).openCell().text += units;
        return 1;
    }
};

namespace {

template <typename Routine> SoRoutine asRoutine(Routine* routine) {
    return reinterpret_cast<SoRoutine>(routine);
}

// clang-format off
const std::pair<uint16_t, SoRoutine> routines[] = {
    {SoRtnPutCharId,      asRoutine(ScanRoutines::putChar)},
    {SoRtnCellEndId,      asRoutine(ScanRoutines::cellEnd)},
    {SoRtnBreakId,        asRoutine(ScanRoutines::breakAt)},
    {SoRtnPutValueId,     asRoutine(ScanRoutines::putValue)},
    {SoRtnColumnsBeginId, asRoutine(ScanRoutines::columnsBegin)},
    {SoRtnColumnsEndId,   asRoutine(ScanRoutines::columnsEnd)},
    {SoRtnSectionTypeId,  asRoutine(ScanRoutines::sectionType)},
    {SoRtnSectionNameId,  asRoutine(ScanRoutines::sectionName)},
    {SoRtnBailId,         asRoutine(ScanRoutines::bail)},
    {SoRtnTagBeginId,     asRoutine(ScanRoutines::tagBegin)},
    {SoRtnTagEndId,       asRoutine(ScanRoutines::tagEnd)},
    {SoRtnCharsetId,      asRoutine(ScanRoutines::charset)},
    {SoRtnColumnDoneId,   asRoutine(ScanRoutines::columnDone)},
    {SoRtnColumnTypeId,   asRoutine(ScanRoutines::columnType)},
    {SoRtnColumnFormatId, asRoutine(ScanRoutines::columnFormat)},
    {SoRtnCellBeginId,    asRoutine(ScanRoutines::cellBegin)},
    {SoRtnPutTextId,      asRoutine(ScanRoutines::putText)},
};
// clang-format on

} // namespace

std::string Row::text(size_t column) const {
    std::u16string units = cells.at(column - 1).text;
    std::ranges::replace(units, u'\0', u'/');
    return toUtf8(units);
}

Scan::Scan(FakeHost& host) : owner(host), block(VwAllocProc()) {
    VwLocalUp(reinterpret_cast<uint64_t>(this), &localWord, block);
    for (uint16_t id = 0; id <= highestId; ++id) {
        VwSetSoRtn(id, unexpectedRoutine, block);
    }
    for (const auto& [id, routine] : routines) {
        VwSetSoRtn(id, routine, block);
    }
    VwSetUser(reinterpret_cast<uint64_t>(this), user1Mark, block);
}

Scan::~Scan() {
    close();
    VwLocalDown(0, &localWord);
    VwFreeProc(block);
}

int32_t Scan::open(uint16_t word, uint64_t fileWord) {
    FileInformation information{};
    std::fill(std::begin(information.host), std::end(information.host), uint8_t{0xF1});
    information.word = fileWord;
    const int32_t result = VwStreamOpen(owner.rawStream(), word, 0, &information, block);
    isOpen = result == VwOpenDone;
    return result;
}

int32_t Scan::section() {
    return VwStreamSection(0, block);
}

int32_t Scan::read() {
    return VwStreamRead(0, block);
}

void Scan::run() {
    ASSERT_EQ(open(), VwOpenDone);
    for (int i = 0; i < endlessScan && !endSeen; ++i) {
        ASSERT_EQ(read(), 0);
    }
    ASSERT_TRUE(endSeen) << "the scan does not end";
}

void Scan::close() {
    if (isOpen) {
        isOpen = false;
        VwStreamClose(0, block);
    }
}

// A row begins with its first cell: after a complete row the next call opens another.
Row& Scan::openRow() {
    if (foundRows.empty() || foundRows.back().isComplete) {
        foundRows.emplace_back();
        valuesInRow = 0;
    }
    return foundRows.back();
}

Cell& Scan::openCell() {
    Row& row = openRow();
    if (row.cells.empty()) {
        owner.misuse("text outside a cell");
        row.cells.emplace_back();
    }
    return row.cells.back();
}

} // namespace fakehost
