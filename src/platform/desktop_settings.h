#pragma once

#include <functional>
#include <optional>

namespace brevlin {

/// What the user asked of the whole desktop about looks and motion.
class DesktopSettings
{
public:
    enum class ColorScheme { light, dark };

    virtual ~DesktopSettings() = default;

    /// Nothing while the desktop has not answered, or where it leaves the choice to the program.
    virtual std::optional<ColorScheme> colorScheme() const = 0;
    /// False until the desktop has answered otherwise.
    virtual bool reducesMotion() const = 0;
    /// Called on the main thread after the desktop's first answer (or refusal) and after every change.
    virtual void setChangeHandler(std::function<void()> handler) = 0;
};

} // namespace brevlin
