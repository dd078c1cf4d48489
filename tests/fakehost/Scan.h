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
    std::optional<uint32_t> tagId;    // none: the text is not tagged
    std::optional<uint32_t> tagIndex; // as above

    bool operator==(const Cell&) const = default;
};

// One row as the routines delivered it.
struct Row {
    std::vector<Cell> cells; // columns 1 to 11
    uint32_t special6 = 0;
    uint32_t special7 = 0;
    ItemLocator locator{};
    bool isComplete = false; // SoRtnBreak(5, 0) came behind it

    // Text of column 1 to 11 as UTF-8, 0 units shown as "/".
    [[nodiscard]] std::string text(size_t column) const;
};

// One open archive, driven as a host does: VwAllocProc, VwLocalUp, all routines, VwSetUser in the
// constructor; VwStreamClose (when open() succeeded), VwLocalDown and VwFreeProc in the destructor.
// Routines that the module has no business calling are installed too, and are a misuse.
class Scan {
public:
    static constexpr uint64_t user1Mark = 0x5EC0'4D01'0000'0002;

    explicit Scan(FakeHost& host);
    ~Scan();
    Scan(const Scan&) = delete;
    Scan& operator=(const Scan&) = delete;

    // Result of VwStreamOpen on the host's raw stream.
    int32_t open(uint16_t word = 0, uint64_t fileWord = 0);
    int32_t section();
    // One VwStreamRead.
    int32_t read();
    // open() and VwStreamRead until the archive's end; fails the test when it does not end.
    void run();
    // VwStreamClose, once; the destructor then leaves it out.
    void close();

    [[nodiscard]] const std::vector<Row>& rows() const { return foundRows; }
    [[nodiscard]] bool isAtEnd() const { return endSeen; } // SoRtnBreak(2, 0) has come
    [[nodiscard]] int bails() const { return bailCount; }
    [[nodiscard]] PROC* proc() const { return block; }
    [[nodiscard]] FakeHost& host() const { return owner; }

    // Answers SoRtnBreak by its code; without one the answer is 0.
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
