#include <unistd.h>

#include <cstdio>
#include <cstdlib>
#include <deque>
#include <filesystem>
#include <fstream>
#include <map>
#include <memory>
#include <sstream>

#include <gtest/gtest.h>

#include "tests/host/markup/Puller.h"

namespace {

using olmtest::MemoryDocument;
using olmtest::Puller;

std::filesystem::path sourceDirectory() {
    const char* const given = std::getenv("OLMKIT_SOURCE_DIR");
    return given == nullptr ? "." : given;
}

// Returns what a command prints.
std::string outputOf(const std::string& command) {
    const std::unique_ptr<FILE, int (*)(FILE*)> pipe(popen(command.c_str(), "r"), pclose);
    std::string output;
    for (int c = pipe ? std::fgetc(pipe.get()) : EOF; c != EOF; c = std::fgetc(pipe.get())) {
        output.push_back(static_cast<char>(c));
    }
    return output;
}

std::string shellWord(const std::string& argument) {
    return "'" + argument + "'";
}

// Returns the text as Python's json module writes it.
std::string jsonText(const std::string& text) {
    std::string out = "\"";
    const auto escape = [&](unsigned unit) {
        char digits[8];
        std::snprintf(digits, sizeof digits, "\\u%04x", unit & 0xFFFFU);
        out += digits;
    };
    for (std::size_t i = 0; i < text.size();) {
        const auto lead = static_cast<unsigned char>(text[i]);
        const std::size_t size = lead < 0x80 ? 1 : lead < 0xE0 ? 2 : lead < 0xF0 ? 3 : 4;
        unsigned code = size == 1 ? lead : lead & (0x7FU >> size);
        for (std::size_t k = 1; k < size; ++k) {
            code = code << 6 | (static_cast<unsigned char>(text[i + k]) & 0x3FU);
        }
        i += size;
        switch (code) {
        case '"':
            out += "\\\"";
            break;
        case '\\':
            out += "\\\\";
            break;
        case '\n':
            out += "\\n";
            break;
        case '\r':
            out += "\\r";
            break;
        case '\t':
            out += "\\t";
            break;
        default:
            if (code >= 0x10000) {
                escape(0xD800 + ((code - 0x10000) >> 10));
                escape(0xDC00 + ((code - 0x10000) & 0x3FF));
            } else if (code < 0x20 || code > 0x7E) {
                escape(code);
            } else {
                out.push_back(static_cast<char>(code));
            }
        }
    }
    return out + "\"";
}

// Maps the names of a document's elements to ids, so that the reader's events show names.
class NameMap {
public:
    explicit NameMap(const std::string& bytes) {
        for (std::size_t at = bytes.find('<'); at != std::string::npos;
             at = bytes.find('<', at + 1)) {
            const std::size_t end = bytes.find_first_of(" \t\r\n/>", at + 1);
            if (end != std::string::npos && end > at + 1) {
                add(bytes.substr(at + 1, end - at - 1));
            }
        }
    }
    std::span<const UTXML_STRVALPAIR> rows() const { return made; }
    const std::string& name(std::uint32_t id) const { return names.at(id); }

private:
    void add(const std::string& name) {
        if (ids.emplace(name, names.size()).second) {
            names.push_back(name);
            made.push_back({names.size() - 1, names.back().c_str()});
        }
    }
    std::map<std::string, std::size_t> ids;
    std::deque<std::string> names;
    std::vector<UTXML_STRVALPAIR> made;
};

std::string readerEvents(const std::string& bytes, std::uint32_t readSize) {
    const NameMap names(bytes);
    MemoryDocument made(bytes, readSize);
    Puller puller(made);
    puller.addMap(names.rows());
    std::string events;
    for (;;) {
        const std::string text = puller.text();
        if (text != "(none)") {
            events.append("[").append(jsonText(std::string("#").append(text))).append("]\n");
        }
        if (puller.nextTag() < 0) {
            return events;
        }
        const bool isClosing = (puller.tag.flags & UTXML_CLOSING_TAG) != 0;
        const std::string mark = isClosing ? "</" : "<";
        events.append("[").append(jsonText(mark + names.name(puller.tag.id)));
        for (const auto& [name, value] : puller.attributes) {
            events.append(", [").append(jsonText(name)).append(", ");
            events.append(jsonText(value)).append("]");
        }
        events += "]\n";
    }
}

TEST(RealDocumentsTest, EveryDocumentReadsAsAnIndependentParserReadsIt) {
    const char* archive = std::getenv("OLMKIT_REAL_ARCHIVE");
    if (archive == nullptr || *archive == '\0') {
        GTEST_SKIP() << "OLMKIT_REAL_ARCHIVE is not set";
    }
    const auto script = sourceDirectory() / "tests/host/markup/independent_events.py";
    const auto run = [&](const std::string& arguments) {
        std::string command = "python3 ";
        command.append(shellWord(script.string())).append(" ").append(arguments);
        return outputOf(command);
    };
    const std::string given = shellWord(archive);
    std::istringstream entries(run(given));
    const auto file = std::filesystem::temp_directory_path() /
                      ("olmkit-markup-" + std::to_string(::getpid()) + ".xml");
    int documents = 0;
    for (std::string entry; std::getline(entries, entry); ++documents) {
        SCOPED_TRACE(entry);
        std::string named = given;
        named.append(" ").append(shellWord(entry));
        run(std::string("--extract ").append(named).append(" ").append(shellWord(file.string())));
        std::ifstream in(file, std::ios::binary);
        const std::string bytes((std::istreambuf_iterator<char>(in)), {});
        const std::string expected = run(named);
        ASSERT_FALSE(expected.empty());
        for (const std::uint32_t readSize : {1U, 7U, 65536U}) {
            EXPECT_EQ(readerEvents(bytes, readSize), expected);
        }
    }
    std::filesystem::remove(file);
    EXPECT_GT(documents, 0);
}

} // namespace
