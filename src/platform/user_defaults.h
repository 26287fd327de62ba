#pragma once

#include "core/expected.h"
#include "platform/durable_file.h"

#include <optional>
#include <string>
#include <string_view>

namespace brevlin {

/// Small documents by key, each kept durably on its own. Keys are plain file-name text without a slash.
class UserDefaults
{
public:
    virtual ~UserDefaults() = default;

    /// The bytes under the key; nothing when there are none.
    virtual Expected<std::optional<std::string>, FileError> value(const std::string& key) const = 0;
    virtual Expected<void, FileError> setValue(const std::string& key, std::string_view bytes) = 0;
    /// No error when there is nothing under the key.
    virtual Expected<void, FileError> remove(const std::string& key) = 0;
    /// Moves the bytes under the key, unread, to another key that is free; no error when there are none.
    virtual Expected<void, FileError> setAside(const std::string& key, const std::string& freeKey) = 0;
};

} // namespace brevlin
