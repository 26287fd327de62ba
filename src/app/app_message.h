#pragma once

#include "core/uuid.h"

#include <string>

namespace brevlin {

/// A failure that the user is told of, in the language of the moment at which it happened.
struct AppMessage
{
    Uuid id; ///< new for every message
    std::string title;
    std::string detail;

    bool operator==(const AppMessage&) const = default;
};

} // namespace brevlin
