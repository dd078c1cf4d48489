#include "host/markup/DocumentEncoding.h"

#include <algorithm>

namespace olmhost {

namespace {

bool sameAsciiText(std::string_view left, std::string_view upper) {
    const auto toUpper = [](char c) {
        return c >= 'a' && c <= 'z' ? static_cast<char>(c - 32) : c;
    };
    return std::equal(left.begin(), left.end(), upper.begin(), upper.end(),
                      [&](char a, char b) { return toUpper(a) == b; });
}

void appendUtf8(std::string& text, std::uint32_t code) {
    const auto add = [&](std::uint32_t byte) { text.push_back(static_cast<char>(byte)); };
    if (code < 0x80) {
        add(code);
    } else if (code < 0x800) {
        add(0xC0 | code >> 6);
        add(0x80 | (code & 0x3F));
    } else if (code < 0x10000) {
        add(0xE0 | code >> 12);
        add(0x80 | (code >> 6 & 0x3F));
        add(0x80 | (code & 0x3F));
    } else {
        add(0xF0 | code >> 18);
        add(0x80 | (code >> 12 & 0x3F));
        add(0x80 | (code >> 6 & 0x3F));
        add(0x80 | (code & 0x3F));
    }
}

std::string decodeUtf16(std::string_view bytes, bool littleEndian) {
    const auto unitAt = [&](std::size_t at) -> std::uint32_t {
        const auto first = static_cast<unsigned char>(bytes[at]);
        const auto second = static_cast<unsigned char>(bytes[at + 1]);
        return littleEndian ? first | second << 8 : first << 8 | second;
    };
    std::string text;
    for (std::size_t at = 0; at + 1 < bytes.size(); at += 2) {
        std::uint32_t code = unitAt(at);
        const bool isHigh = code >= 0xD800 && code < 0xDC00;
        if (isHigh && at + 3 < bytes.size()) {
            at += 2;
            code = 0x10000 + ((code & 0x3FF) << 10) + (unitAt(at) & 0x3FF);
        }
        appendUtf8(text, code);
    }
    return text;
}

std::string decodeLatin1(std::string_view bytes) {
    std::string text;
    for (const char c : bytes) {
        appendUtf8(text, static_cast<unsigned char>(c));
    }
    return text;
}

} // namespace

DocumentEncoding documentEncoding(std::string_view head, std::string_view declared) {
    if (head.size() >= 2) {
        // Either a byte order mark, or the zero half of an ASCII character.
        if (head[0] == '\0' || head.substr(0, 2) == "\xFE\xFF") {
            return DocumentEncoding::Utf16Be;
        }
        if (head[1] == '\0' || head.substr(0, 2) == "\xFF\xFE") {
            return DocumentEncoding::Utf16Le;
        }
    }
    if (sameAsciiText(declared, "ISO-8859-1")) {
        return DocumentEncoding::Latin1;
    }
    return sameAsciiText(declared, "US-ASCII") ? DocumentEncoding::Ascii : DocumentEncoding::Utf8;
}

const char* protocolName(DocumentEncoding encoding) {
    switch (encoding) {
    case DocumentEncoding::Utf16Le:
        return "UTF-16LE";
    case DocumentEncoding::Utf16Be:
        return "UTF-16BE";
    case DocumentEncoding::Latin1:
        return "ISO-8859-1";
    case DocumentEncoding::Ascii:
        return "US-ASCII";
    case DocumentEncoding::Utf8:
        break;
    }
    return "UTF-8";
}

std::string encodeAscii(std::string_view ascii, DocumentEncoding encoding) {
    if (unitSize(encoding) == 1) {
        return std::string(ascii);
    }
    std::string bytes;
    for (const char c : ascii) {
        bytes.push_back(encoding == DocumentEncoding::Utf16Le ? c : '\0');
        bytes.push_back(encoding == DocumentEncoding::Utf16Le ? '\0' : c);
    }
    return bytes;
}

std::string decodeToUtf8(std::string_view bytes, DocumentEncoding encoding) {
    switch (encoding) {
    case DocumentEncoding::Utf16Le:
        return decodeUtf16(bytes, true);
    case DocumentEncoding::Utf16Be:
        return decodeUtf16(bytes, false);
    case DocumentEncoding::Latin1:
        return decodeLatin1(bytes);
    case DocumentEncoding::Ascii:
    case DocumentEncoding::Utf8:
        break;
    }
    return std::string(bytes);
}

} // namespace olmhost
