#include "platform/freedesktop/wayland/display_choice.h"

namespace brevlin {

namespace {

Platform usualPlatform(const DisplayFacts& facts, bool canBeNative)
{
    if (canBeNative) {
        return Platform::wayland;
    }
    return facts.hasX11 ? Platform::x11 : Platform::byQt;
}

std::string aboutWish(std::string_view wish, std::string_view chinese, std::string_view english)
{
    std::string text = platformVariable;
    text.append("=").append(wish).append("：").append(chinese).append("\n");
    return text.append(platformVariable).append("=").append(wish).append(": ").append(english);
}

} // namespace

DisplayChoice chooseDisplay(const DisplayFacts& facts)
{
    if (!facts.qtPlatform.empty()) {
        return {Platform::byQt, {}};
    }
    if (facts.wish == "x11") {
        return {Platform::x11, {}};
    }
    const bool canBeNative = facts.hasWayland && facts.canBeNative();
    DisplayChoice choice{usualPlatform(facts, canBeNative), {}};
    if (facts.wish == "wayland") {
        if (!canBeNative) {
            choice.complaint =
                aboutWish(facts.wish, "此处无法作为原生 Wayland 程序运行，因为没有图层外壳（layer shell）。",
                          "cannot run natively on Wayland here, for there is no layer shell.");
        }
    } else if (!facts.wish.empty()) {
        choice.complaint = aboutWish(facts.wish, "未知的值，可用 x11 或 wayland。",
                                     "not known; the values are x11 and wayland.");
    }
    return choice;
}

} // namespace brevlin
