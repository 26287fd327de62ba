#pragma once

#include "core/raw_value.h"
#include "core/uuid.h"

#include <array>
#include <string>

namespace brevlin {

/// A failure of the history store. Each one has an identifier of its own, so that the same failure twice is
/// shown twice.
struct SessionStoreError
{
    enum class Operation { fetch, insert, delete_, clear, edit };

    Uuid id = Uuid::random();
    Operation operation = Operation::fetch;
    std::string underlyingDescription; ///< in the words of the file system or of the JSON library

    bool operator==(const SessionStoreError&) const = default;

    /// What the user reads: Simplified Chinese in every language.
    std::string errorDescription() const;
};

template <>
struct RawValues<SessionStoreError::Operation>
{
    using Operation = SessionStoreError::Operation;
    static constexpr std::array cases{
        RawValueCase<Operation>{Operation::fetch, "fetch"},
        RawValueCase<Operation>{Operation::insert, "insert"},
        RawValueCase<Operation>{Operation::delete_, "delete"},
        RawValueCase<Operation>{Operation::clear, "clear"},
        RawValueCase<Operation>{Operation::edit, "edit"},
    };
};

} // namespace brevlin
