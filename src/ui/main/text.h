#pragma once

#include <QString>

#include <string_view>

namespace brevlin {

/// The core's UTF-8 as Qt's text.
inline QString qtText(std::string_view text)
{
    return QString::fromUtf8(text.data(), static_cast<qsizetype>(text.size()));
}

} // namespace brevlin
