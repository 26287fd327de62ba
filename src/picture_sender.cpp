#include "picture_sender.h"

#include "platform/window_system.h"

namespace brevlin {

BrevlinStyle::PictureSender pictureSender(WindowSystem& system)
{
    return [&system](WId window, const QImage& picture, const QPoint& place) {
        const bool isOfOurForm = picture.format() == QImage::Format_RGB32 ||
                                 picture.format() == QImage::Format_ARGB32_Premultiplied;
        const auto* first = reinterpret_cast<const std::uint32_t*>(picture.constBits());
        const auto stride = static_cast<std::size_t>(picture.bytesPerLine()) / sizeof(std::uint32_t);
        return isOfOurForm && system.putPixels(window, {first, stride, static_cast<std::int16_t>(place.x()),
                                                        static_cast<std::int16_t>(place.y()),
                                                        static_cast<std::uint16_t>(picture.width()),
                                                        static_cast<std::uint16_t>(picture.height())});
    };
}

} // namespace brevlin
