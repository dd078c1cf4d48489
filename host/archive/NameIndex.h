#ifndef OLMKIT_HOST_ARCHIVE_NAMEINDEX_H
#define OLMKIT_HOST_ARCHIVE_NAMEINDEX_H

#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace olmhost {

// Finds a file among the rows of a directory by its name. Holds eight bytes per file and no names;
// each of its two halves is built when it is first needed.
class NameIndex {
public:
    using Row = std::uint32_t;

    // Returns the name of a row, always the same one, valid as long as the index is used.
    using NameOfRow = std::function<std::string_view(Row)>;

    NameIndex(Row rowCount, NameOfRow nameOfRow)
        : rowCount(rowCount), nameOfRow(std::move(nameOfRow)) {}

    // Returns the first file of that name. Matches byte for byte first; then with "\" replaced by
    // "/" and without one leading "/" or "./"; then both sides in composed form.
    std::optional<Row> find(std::string_view name);

private:
    struct Key {
        std::uint32_t hash; // of the name, in the form of the half
        Row row;
    };

    // A half of the index, sorted by hash, name and row.
    struct Half {
        bool isBuilt = false;
        std::vector<Key> keys;
    };

    std::optional<Row> findAsWritten(std::string_view name);
    std::optional<Row> findComposed(std::string_view name);
    void buildAsWritten();
    void buildComposed();

    Row rowCount;
    NameOfRow nameOfRow;
    Half asWritten;
    Half composed; // only files whose name is not in composed form
};

} // namespace olmhost

#endif
