#ifndef OLMKIT_TESTS_HOST_SESSION_MADEARCHIVE_H
#define OLMKIT_TESTS_HOST_SESSION_MADEARCHIVE_H

#include <initializer_list>
#include <string>

namespace olmhost {

// A ZIP file in the temporary folder, which is removed with this object.
class MadeArchive {
public:
    struct Entry {
        std::string name;
        std::string contents;
    };

    // In that order.
    MadeArchive(std::initializer_list<Entry> entries);
    MadeArchive(const MadeArchive&) = delete;
    MadeArchive& operator=(const MadeArchive&) = delete;
    ~MadeArchive();

    const std::string& path() const { return file; }

private:
    std::string file;
};

} // namespace olmhost

#endif
