#include "app/app_messages.h"

#include <algorithm>

namespace brevlin {

void AppMessages::raise(const BilingualText& title, const std::string& detail)
{
    raise(std::string(title.in(m_language)), detail);
}

void AppMessages::raise(const std::string& title, const std::string& detail)
{
    const bool waitsAlready = std::any_of(m_messages.begin(), m_messages.end(), [&](const AppMessage& other) {
        return other.title == title && other.detail == detail;
    });
    if (!waitsAlready) {
        m_messages.push_back({Uuid::random(), title, detail});
        Q_EMIT appMessageChanged();
    }
}

void AppMessages::clearAppMessage()
{
    if (!m_messages.empty()) {
        m_messages.pop_front();
        Q_EMIT appMessageChanged();
    }
}

} // namespace brevlin
