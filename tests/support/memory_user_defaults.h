#pragma once

#include "platform/user_defaults.h"
#include "support/failure_plan.h"

#include <cerrno>
#include <map>
#include <optional>
#include <set>
#include <string>
#include <string_view>

namespace brevlin::test {

/// User defaults in memory. Every call counts as one operation of `failures`; a failed one changes nothing.
class MemoryUserDefaults final : public UserDefaults
{
public:
    std::map<std::string, std::string> values;
    std::set<std::string> unreadable; ///< keys whose reading is refused (EACCES)
    mutable FailurePlan failures;

    Expected<std::optional<std::string>, FileError> value(const std::string& key) const override
    {
        if (const auto error = failures.next("read", key)) {
            return Unexpected{*error};
        }
        if (unreadable.contains(key)) {
            return Unexpected{fileError("open", EACCES, key)};
        }
        const auto found = values.find(key);
        return found == values.end() ? std::nullopt : std::optional{found->second};
    }

    Expected<void, FileError> setValue(const std::string& key, std::string_view bytes) override
    {
        if (const auto error = failures.next("write", key)) {
            return Unexpected{*error};
        }
        values[key] = bytes;
        return {};
    }

    Expected<void, FileError> remove(const std::string& key) override
    {
        if (const auto error = failures.next("unlink", key)) {
            return Unexpected{*error};
        }
        values.erase(key);
        unreadable.erase(key);
        return {};
    }

    Expected<void, FileError> setAside(const std::string& key, const std::string& freeKey) override
    {
        if (const auto error = failures.next("rename", key)) {
            return Unexpected{*error};
        }
        if (values.contains(freeKey) || unreadable.contains(freeKey)) {
            return Unexpected{fileError("rename", EEXIST, freeKey)};
        }
        if (auto value = values.extract(key)) {
            value.key() = freeKey;
            values.insert(std::move(value));
        }
        if (unreadable.erase(key) > 0) {
            unreadable.insert(freeKey);
        }
        return {};
    }
};

} // namespace brevlin::test
