#include "platform/freedesktop/x11/xwayland_pointer.h"

#include <cstddef>

namespace brevlin {

namespace {

// Of XInput 2, https://www.x.org/releases/current/doc/inputproto/XI2proto.txt, as xcb hands them over.
constexpr std::uint16_t motionType = 6;
constexpr std::uint16_t enterType = 7;

struct InputEvent
{
    std::uint8_t responseType;
    std::uint8_t extension;
    std::uint16_t sequence;
    std::uint32_t length;
    std::uint16_t type;
    std::uint16_t device;
    xcb_timestamp_t time;
    std::uint16_t crossingSource;
    std::uint16_t modeAndDetail;
    xcb_window_t root;
    xcb_window_t window;
    xcb_window_t child;
    std::uint32_t fullSequence;
    std::int32_t places[4];
    std::uint16_t lengths[2];
    std::uint16_t motionSource;
};
static_assert(offsetof(InputEvent, motionSource) == 56);

} // namespace

void XwaylandPointer::follow(const xcb_generic_event_t& event, std::uint8_t extension, xcb_window_t window)
{
    const auto& input = reinterpret_cast<const InputEvent&>(event);
    if (input.responseType != XCB_GE_GENERIC || input.extension != extension || input.window != window) {
        return;
    }
    if (input.type == enterType) {
        m_enteredBy = input.crossingSource;
    } else if (input.type == motionType) {
        m_movedBy = input.motionSource;
    }
}

} // namespace brevlin
