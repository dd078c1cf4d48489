#ifndef OLMKIT_FILTER_CORE_THROWABLE_H
#define OLMKIT_FILTER_CORE_THROWABLE_H

#include <memory>
#include <string>

namespace qor {

// The base of exceptions: a message, a cause and a position in the source.
class Throwable {
public:
    // All pointers may be null. The message is copied. The cause and the name of the file are
    // borrowed and must outlive the object and its copies.
    Throwable(const char* message, Throwable* cause, const char* file, unsigned int line);

    // Copies share the message, so that copying can't fail.
    Throwable(const Throwable&) = default;
    Throwable& operator=(const Throwable&) = default;
    virtual ~Throwable();

    // Returns the message, or null without one. Valid as long as this object or a copy of it.
    const char* message() const { return text ? text->c_str() : nullptr; }

    Throwable* cause() const { return origin; }
    const char* file() const { return sourceFile; }
    unsigned int line() const { return sourceLine; }

private:
    std::shared_ptr<const std::string> text;
    Throwable* origin;
    const char* sourceFile;
    unsigned int sourceLine;
};

} // namespace qor

#endif
