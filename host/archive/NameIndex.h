#ifndef OLMKIT_HOST_ARCHIVE_NAMEINDEX_H
#define OLMKIT_HOST_ARCHIVE_NAMEINDEX_H

#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace olmhost {

// Finds a file among the rows of a directory by its name. Holds eight bytes a file and no names;
// each of its two halves is built when it is first needed.
class NameIndex {
public:
    using Row = std::uint32_t;

    // Gives the name of a row; must stay valid and give the same as long as the index is used.
    using NameOfRow = std::function<std::string_view(Row)>;

    NameIndex(Row rowCount, NameOfRow nameOfRow)
        : rowCount(rowCount), nameOfRow(std::move(nameOfRow)) {}

    // The first file of that name. Matched byte for byte first; then with "\" for "/" and without
    // one leading "/" or "./"; then that, in composed form, against the names in composed form.
    std::optional<Row> find(std::string_view name);

private:
    struct Key {
        std::uint32_t hash; // of the name, in the form that the half goes by
        Row row;
    };

    // A half of the index, in the order of hash, name and row.
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
    Half composed; // only files whose name is not in composed form already
};

} // namespace olmhost

#endif
