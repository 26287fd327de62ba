#pragma once

#include <cstdint>
#include <functional>
#include <string>
#include <vector>

namespace brevlin {

/// A square picture, row by row from the top: 0xAARRGGBB, the colours not multiplied by the opacity.
struct StatusPicture
{
    int size = 0; ///< pixels on each side
    std::vector<std::uint32_t> pixels;

    bool operator==(const StatusPicture&) const = default;
};

/// The looks of the item, each in several sizes.
struct StatusPictures
{
    std::string themeName;                ///< of the icon theme's picture that looks like the plain one
    std::vector<StatusPicture> plain;     ///< for desktops that show the clock beside the picture
    std::vector<StatusPicture> withClock; ///< for all others

    bool operator==(const StatusPictures&) const = default;
};

/// The item in words. The clock is empty while there is none to show.
struct StatusTexts
{
    std::string clock;
    std::string title;        ///< what assistive technology reads
    std::string toolTipTitle; ///< plain text, as is the next
    std::string toolTipDetail;

    bool operator==(const StatusTexts&) const = default;
};

/// A row of the item's menu; one without a text is a separator.
struct StatusMenuRow
{
    std::string identifier;
    std::string text;
    bool isEnabled = true;
    bool changesEverySecond = false; ///< only whoever sees the menu needs to hear of it

    bool isSeparator() const { return text.empty(); }
    bool operator==(const StatusMenuRow&) const = default;
};

/// The program's place among the desktop's status icons. Where the desktop has none, or none yet, nothing is
/// shown and nothing fails; it is shown from the moment that a place for it appears.
class StatusItem
{
public:
    struct Observer
    {
        /// The item was clicked; a place on the item in native pixels of the whole desktop.
        std::function<void(int x, int y)> activated;
        std::function<void(const std::string& identifier)> rowChosen;
        /// Somebody is about to see the item, who until now did not: what was left out is to be set now.
        std::function<void()> awaited;
    };

    virtual ~StatusItem() = default;

    virtual void setPictures(const StatusPictures& pictures) = 0;
    virtual void setTexts(const StatusTexts& texts) = 0;
    virtual void setMenu(const std::vector<StatusMenuRow>& rows) = 0;
    /// Whether anybody can see the item. What changes with every second need not be set while nobody can.
    virtual bool isSeen() const = 0;
    /// Calls the observer's functions on the main thread from now on; replaces the previous observer.
    virtual void setObserver(Observer observer) = 0;
};

} // namespace brevlin
