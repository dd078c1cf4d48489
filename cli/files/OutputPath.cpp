#include "cli/files/OutputPath.h"

namespace olmkit {

std::string OutputPath::text() const {
    std::string whole;
    for (const std::string& folder : folders) {
        whole += folder;
        whole += '/';
    }
    return whole + file;
}

OutputPath OutputPath::of(std::string_view text) {
    OutputPath path;
    for (std::size_t end = text.find('/'); end != std::string_view::npos; end = text.find('/')) {
        path.folders.emplace_back(text.substr(0, end));
        text.remove_prefix(end + 1);
    }
    path.file = text;
    return path;
}

} // namespace olmkit
