#ifndef OLMKIT_TESTS_FAKEHOST_SCAN_H
#define OLMKIT_TESTS_FAKEHOST_SCAN_H

#include <array>
#include <functional>
#include <optional>
#include <string>
#include <vector>

#include "tests/fakehost/FakeHost.h"

namespace fakehost {

// One cell of a row that holds text.
struct Cell {
    std::u16string text;
    std::optional<uint32_t> tagId;    // empty: the text is not tagged
    std::optional<uint32_t> tagIndex; // likewise

    bool operator==(const Cell&) const = default;
};

// One row as the routines delivered it.
struct Row {
    std::vector<Cell> cells; // columns 1 to 11
    uint32_t special6 = 0;
    uint32_t special7 = 0;
    ItemLocator locator{};
    bool isComplete = false; // SoRtnBreak(5, 0) came after it

    // Returns the text of a column, from 1 to 11, as UTF-8, with 0 units shown as "/".
    [[nodiscard]] std::string text(size_t column) const;
};

// Drives one archive as a host does: VwAllocProc, VwLocalUp, all routines and VwSetUser in the
// constructor; VwStreamClose (when open() succeeded), VwLocalDown and VwFreeProc in the destructor.
// Routines that the module must not call are installed too; a call of one is a misuse.
class Scan {
public:
    static constexpr uint64_t user1Mark = 0x5EC0'4D01'0000'0002;

    explicit Scan(FakeHost& host);
    ~Scan();
    Scan(const Scan&) = delete;
    Scan& operator=(const Scan&) = delete;

    // Returns the result of VwStreamOpen on the host's raw stream.
    int32_t open(uint16_t word = 0, uint64_t fileWord = 0);
    int32_t section();
    // Calls VwStreamRead once.
    int32_t read();
    // Calls open() and VwStreamRead up to the archive's end; fails the test when there is no end.
    void run();
    // Calls VwStreamClose; the destructor then does not.
    void close();

    [[nodiscard]] const std::vector<Row>& rows() const { return foundRows; }
    [[nodiscard]] bool isAtEnd() const { return endSeen; } // SoRtnBreak(2, 0) has come
    [[nodiscard]] int bails() const { return bailCount; }
    [[nodiscard]] PROC* proc() const { return block; }
    [[nodiscard]] FakeHost& host() const { return owner; }

    // Returns what SoRtnBreak returns for a code; without a function that is 0.
    std::function<uint16_t(uint16_t code)> onBreak;
    // Called in SoRtnBail before it returns; may throw.
    std::function<void(uint32_t failure)> onBail;

private:
    friend struct ScanRoutines;

    Row& openRow();
    Cell& openCell();

    FakeHost& owner;
    PROC* block = nullptr;
    uint64_t localWord = 0;
    bool isOpen = false;
    std::vector<Row> foundRows;
    bool endSeen = false;
    int bailCount = 0;
    int valuesInRow = 0;
    std::optional<uint32_t> openTagId;
    std::optional<uint32_t> openTagIndex;
};

} // namespace fakehost

#endif
