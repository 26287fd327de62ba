#pragma once

#include "core/timer_vocabulary.h"
#include "storage/app_preferences.h"
#include "storage/capsule_position.h"

#include <functional>
#include <optional>
#include <string>

namespace brevlin {

/// The room that one state of the capsule asks for; points.
struct CapsuleLayout
{
    double width = 0;
    double height = 0;
    HorizontalAnchor horizontalAnchor = HorizontalAnchor::center;
    double cornerRadius = 0;
    double topMargin = 8;         ///< below the top of the work area, at the default place
    double horizontalMargin = 12; ///< kept free at both sides of the work area

    bool operator==(const CapsuleLayout&) const = default;
};

namespace CapsuleLayouts {

inline constexpr double circleDiameter = 50;
inline constexpr double circleRadius = circleDiameter / 2;
inline constexpr double expandedTimerWidth = 316;
/// With the button that silences the alert.
inline constexpr double soundingTimerWidth = 350;

/// A circle, or the timer that it widens to.
constexpr CapsuleLayout capsule(double width, HorizontalAnchor anchor)
{
    return {width, circleDiameter, anchor, circleRadius};
}

inline constexpr CapsuleLayout island{460, 126, HorizontalAnchor::center, 30};

} // namespace CapsuleLayouts

/// Everything that the capsule draws. Texts are UTF-8 in the content's language.
struct CapsuleContent
{
    TimerPhase phase = TimerPhase::focus;
    TimerRunState runState = TimerRunState::idle;
    std::string clockText;
    double progress = 0; ///< 0 to 1
    std::string endTimeText;
    std::string cycleSummaryText;
    std::string intention; ///< empty for none
    AppLanguage language = AppLanguage::simplifiedChinese;
    TopTimerAppearance appearance = TopTimerAppearance::dark;
    bool showsCompletion = false;
    bool showsMinimizedCompletion = false;
    bool showsCompactTimer = true;
    bool revealsExpandedTimerContent = false;
    bool showsProgressBorder = false;
    std::optional<std::string> completionTitle;
    bool isAlertSoundPlaying = false;

    bool operator==(const CapsuleContent&) const = default;
};

/// What a control of the capsule asks for.
enum class CapsuleCommand {
    primary,
    addTime,
    skip,
    end,
    skipPending,
    minimize,
    restore,
    dismiss,
    stopAlert,
};

/// Where the circle lies in the work area of its screen: 0 at the left or upper edge, 1 at the right or lower
/// one.
struct CapsulePlace
{
    double x = 0;
    double y = 0;
};

/// Moves the capsule for those who have no pointer to drag it with.
class CapsuleMover
{
public:
    virtual ~CapsuleMover() = default;

    /// Where the capsule lies, or will as soon as it is shown; none without a screen.
    virtual std::optional<CapsulePlace> place() = 0;
    /// As if it were dragged there and dropped: near a side edge it snaps to it, and a place below 0 or above
    /// 1 is on the screen beyond that edge, if there is one.
    virtual void moveTo(const CapsulePlace& place) = 0;
};

/// The floating window that shows the capsule. It knows where it is and nothing of the timer.
class Capsule
{
public:
    struct Observer
    {
        std::function<void(bool)> hovered; ///< the pointer entered (true) or left the capsule
        std::function<void(CapsuleCommand)> commanded;
    };

    virtual ~Capsule() = default;

    virtual void setObserver(Observer observer) = 0;
    virtual bool isVisible() const = 0;
    /// For a capsule that is not visible: places it and fades it in.
    virtual void show(const CapsuleContent& content, const CapsuleLayout& layout) = 0;
    /// For a visible capsule: also resizes it where the layout has changed.
    virtual void update(const CapsuleContent& content, const CapsuleLayout& layout) = 0;
    /// Fades the capsule out; nothing happens while it is not visible.
    virtual void hide() = 0;
    /// The end (leading or trailing) that has to stay when the capsule grows to this width.
    virtual HorizontalAnchor preferredExpansionAnchor(double width) const = 0;
    /// Whether the capsule is visible and the pointer in its frame grown by this many points on every side.
    virtual bool hasPointerWithin(double distance) const = 0;
};

} // namespace brevlin
