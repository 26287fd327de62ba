#include "ui/controls/direct_paint.h"

#include "ui/controls/brevlin_style.h"

#include <QBackingStore>
#include <QImage>
#include <QPainter>
#include <QWindow>

#include <cmath>

namespace brevlin {

namespace {

constexpr int bitsOfByte = 8;
constexpr int largestPart = 40'000; // pixels; more is sent faster through shared memory

bool isSeenIn(const QWidget& widget, const QRect& part)
{
    return widget.isVisible() && !widget.isWindow() && widget.geometry().intersects(part);
}

// Nothing lies above the part, cuts it off or is painted in another way.
bool isOpen(const QWidget& widget, const QRect& part)
{
    for (const QObject* child : widget.children()) {
        const auto* above = qobject_cast<const QWidget*>(child);
        if (above != nullptr && isSeenIn(*above, part)) {
            return false;
        }
    }
    QRect place = part;
    for (const QWidget* layer = &widget;; layer = layer->parentWidget()) {
        if (!layer->rect().contains(place) || layer->graphicsEffect() != nullptr) {
            return false;
        }
        if (layer->isWindow()) {
            return true;
        }
        place.translate(layer->pos());
        const QObjectList& siblings = layer->parentWidget()->children();
        for (auto next = siblings.indexOf(layer) + 1; next < siblings.size(); ++next) {
            const auto* above = qobject_cast<const QWidget*>(siblings[next]);
            if (above != nullptr && isSeenIn(*above, place)) {
                return false;
            }
        }
    }
}

} // namespace

bool paintDirectly(QWidget& widget, const QRect& part, const std::function<void(QPainter&)>& paint)
{
    const QWidget& window = *widget.window();
    const QWindow* handle = window.windowHandle();
    QBackingStore* store = window.backingStore();
    const auto* style = qobject_cast<const BrevlinStyle*>(widget.style());
    if (handle == nullptr || store == nullptr || style == nullptr || !style->canSendPictures() ||
        !handle->isExposed() || !widget.isVisible() || !widget.updatesEnabled() || part.isEmpty()) {
        return false;
    }
    const double scale = window.devicePixelRatioF();
    const auto pixels = static_cast<int>(scale);
    if (scale != pixels || part.width() * part.height() * pixels * pixels > largestPart ||
        store->size() != window.size() || !isOpen(widget, part)) {
        return false;
    }
    const QPoint origin = widget.mapTo(&window, QPoint());
    const QRect place = part.translated(origin);
    store->beginPaint(place);
    QPaintDevice* device = store->paintDevice();
    const QRect native(place.topLeft() * pixels, place.size() * pixels);
    if (device->devType() != QInternal::Image || !static_cast<QImage*>(device)->rect().contains(native)) {
        store->endPaint();
        return false;
    }
    auto& whole = *static_cast<QImage*>(device);
    // Not by a clip: outlines would be filled as far as the window reaches, on Qt's thread pool.
    const qsizetype left = qsizetype{native.left()} * whole.depth() / bitsOfByte;
    QImage picture(whole.scanLine(native.top()) + left, native.width(), native.height(), whole.bytesPerLine(),
                   whole.format());
    picture.setDevicePixelRatio(scale);
    QPainter painter(&picture);
    painter.translate(origin - place.topLeft());
    paint(painter);
    painter.end();
    const bool isSent = style->sendPicture(handle->winId(), picture, native.topLeft());
    store->endPaint();
    if (!isSent) {
        store->flush(place);
    }
    return true;
}

} // namespace brevlin
