#pragma once

#include <functional>

namespace brevlin {

/// What the user asked of the whole desktop about looks and motion.
class DesktopSettings
{
public:
    enum class ColorScheme { light, dark };

    virtual ~DesktopSettings() = default;

    /// Light until the desktop has answered otherwise.
    virtual ColorScheme colorScheme() const = 0;
    /// False until the desktop has answered otherwise.
    virtual bool reducesMotion() const = 0;
    /// Called on the main thread after either value has changed.
    virtual void setChangeHandler(std::function<void()> handler) = 0;
};

} // namespace brevlin
