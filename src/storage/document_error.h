#pragma once

#include "platform/durable_file.h"

#include <string>

namespace brevlin {

/// Why a stored document could not be read, made or written, in the words of the file system or of the JSON
/// library, UTF-8.
struct DocumentError
{
    std::string description;
    /// Whether the content itself is at fault: it was read and does not decode, or cannot be expressed. A
    /// content that could not be read says nothing, and must be taken for a good one.
    bool isAboutContent = true;

    bool operator==(const DocumentError&) const = default;
};

/// Never about the content.
DocumentError documentError(const FileError& error);

} // namespace brevlin
