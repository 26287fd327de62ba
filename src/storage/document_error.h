#pragma once

#include "platform/durable_file.h"

#include <string>

namespace brevlin {

/// Why a stored document could not be read, made or written, in the words of the file system or of the JSON
/// library, UTF-8.
struct DocumentError
{
    std::string description;

    bool operator==(const DocumentError&) const = default;
};

DocumentError documentError(const FileError& error);

} // namespace brevlin
