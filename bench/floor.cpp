// Does only the work that no lister or extractor can avoid, for comparison:
//
//   olmkit-floor list ARCHIVE
//       reads every document with libzip and expat, with empty handlers
//   olmkit-floor extract ARCHIVE MANIFEST DIR
//       does the same, reads all other entries with libzip, and writes as many files to DIR as a
//       manifest of olmkit lists, of the same sizes
//
// Prints the numbers of documents, elements and bytes read and of files written.

#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <exception>
#include <fstream>
#include <string>
#include <string_view>
#include <vector>

#include <expat.h>
#include <nlohmann/json.hpp>
#include <zip.h>

namespace {

struct Counts {
    std::uint64_t documents = 0;
    std::uint64_t elements = 0;
    std::uint64_t bytes = 0;
    std::uint64_t files = 0;
};

constexpr int chunkSize = 64 * 1024;

void openElement(void* counts, const XML_Char* /*name*/, const XML_Char** /*attributes*/) {
    ++static_cast<Counts*>(counts)->elements;
}

void closeElement(void* /*counts*/, const XML_Char* /*name*/) {}

void characters(void* /*counts*/, const XML_Char* /*text*/, int /*length*/) {}

bool readDocument(zip_t* archive, zip_uint64_t index, XML_Parser parser, Counts& counts) {
    zip_file_t* entry = zip_fopen_index(archive, index, 0);
    if (entry == nullptr) {
        return false;
    }
    XML_ParserReset(parser, nullptr);
    XML_SetUserData(parser, &counts);
    XML_SetElementHandler(parser, openElement, closeElement);
    XML_SetCharacterDataHandler(parser, characters);
    bool good = true;
    for (zip_int64_t count = 1; good && count > 0;) {
        void* buffer = XML_GetBuffer(parser, chunkSize);
        count = zip_fread(entry, buffer, chunkSize);
        good = count >= 0 &&
               XML_ParseBuffer(parser, static_cast<int>(count), count == 0) != XML_STATUS_ERROR;
        counts.bytes += good ? static_cast<std::uint64_t>(count) : 0;
    }
    zip_fclose(entry);
    ++counts.documents;
    return good;
}

// Reads an entry that isn't a document, such as an attachment.
bool readOther(zip_t* archive, zip_uint64_t index, std::vector<char>& buffer, Counts& counts) {
    zip_file_t* entry = zip_fopen_index(archive, index, 0);
    if (entry == nullptr) {
        return false;
    }
    buffer.resize(chunkSize);
    zip_int64_t count = 0;
    while ((count = zip_fread(entry, buffer.data(), buffer.size())) > 0) {
        counts.bytes += static_cast<std::uint64_t>(count);
    }
    zip_fclose(entry);
    return count == 0;
}

bool readEntries(const char* path, bool withOthers, Counts& counts) {
    zip_t* archive = zip_open(path, ZIP_RDONLY, nullptr);
    if (archive == nullptr) {
        return false;
    }
    XML_Parser parser = XML_ParserCreate(nullptr);
    std::vector<char> buffer;
    bool good = true;
    const auto entryCount = static_cast<zip_uint64_t>(zip_get_num_entries(archive, 0));
    for (zip_uint64_t index = 0; index < entryCount; ++index) {
        if (std::string_view(zip_get_name(archive, index, 0)).ends_with(".xml")) {
            good = readDocument(archive, index, parser, counts) && good;
        } else if (withOthers) {
            good = readOther(archive, index, buffer, counts) && good;
        }
    }
    XML_ParserFree(parser);
    zip_discard(archive);
    return good;
}

bool writeFiles(const char* manifestPath, const std::string& folder, Counts& counts) {
    std::ifstream manifest(manifestPath);
    std::vector<char> zeros;
    for (std::string line; std::getline(manifest, line);) {
        const auto object = nlohmann::json::parse(line);
        if (object["path"].is_null()) {
            continue;
        }
        zeros.resize(object["size"].get<std::size_t>());
        const std::string path = folder + "/" + std::to_string(counts.files);
        std::FILE* file = std::fopen(path.c_str(), "wb");
        if (file == nullptr) {
            return false;
        }
        const bool good = std::fwrite(zeros.data(), 1, zeros.size(), file) == zeros.size();
        if (std::fclose(file) != 0 || !good) {
            return false;
        }
        ++counts.files;
    }
    return true;
}

// Returns the exit status.
int run(int argumentCount, char** arguments) {
    const std::vector<std::string_view> words(arguments + 1, arguments + argumentCount);
    const bool lists = words.size() == 2 && words[0] == "list";
    const bool extracts = words.size() == 4 && words[0] == "extract";
    if (!lists && !extracts) {
        std::fputs("usage: olmkit-floor list ARCHIVE | extract ARCHIVE MANIFEST DIR\n", stderr);
        return 2;
    }
    Counts counts;
    if (!readEntries(arguments[2], extracts, counts) ||
        (extracts && !writeFiles(arguments[3], arguments[4], counts))) {
        std::fputs("olmkit-floor: the archive can't be read or a file can't be written\n", stderr);
        return 1;
    }
    std::printf("%llu documents, %llu elements, %llu bytes, %llu files\n",
                static_cast<unsigned long long>(counts.documents),
                static_cast<unsigned long long>(counts.elements),
                static_cast<unsigned long long>(counts.bytes),
                static_cast<unsigned long long>(counts.files));
    return 0;
}

} // namespace

int main(int argumentCount, char** arguments) {
    // libzip converts the date of every entry to local time, and without TZ it looks up the zone
    // each time.
    setenv("TZ", "UTC0", 1);
    try {
        return run(argumentCount, arguments);
    } catch (const std::exception& error) {
        std::fprintf(stderr, "olmkit-floor: %s\n", error.what());
        return 1;
    }
}
