#pragma once

#include "core/expected.h"
#include "platform/durable_file.h"
#include "platform/freedesktop/files/file_descriptor.h"

#include <sys/types.h>

#include <functional>
#include <optional>
#include <string>
#include <string_view>

namespace brevlin {

/// What a file is to hold: the bytes, and behind them what the file that it replaces holds from a place on;
/// or what somebody hands over.
struct NewContent
{
    std::string_view bytes;
    std::optional<off_t> keptFrom;
    const std::function<bool(const PieceSink&)>* produce = nullptr;
};

/// Writes the content to the new file, which is to replace the one at the path, in this folder; it is not
/// durable yet.
Expected<void, FileError> fill(const FileDescriptor& file, const FileDescriptor& folder,
                               const NewContent& content, const std::string& path);

} // namespace brevlin
