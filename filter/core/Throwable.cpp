#include "filter/core/Throwable.h"

namespace qor {

Throwable::Throwable(const char* message, Throwable* cause, const char* file, unsigned int line)
    : text(message != nullptr ? std::make_shared<const std::string>(message) : nullptr),
      origin(cause), sourceFile(file), sourceLine(line) {}

Throwable::~Throwable() = default;

} // namespace qor
