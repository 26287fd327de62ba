#include "ui/tray/tray_pictures.h"

#include "ui/style/brevlin_mark.h"
#include "ui/style/theme.h"
#include "ui/style/typography.h"

#include <QImage>
#include <QPainter>
#include <QPainterPath>

#include <algorithm>
#include <array>
#include <cmath>
#include <functional>

namespace brevlin {

namespace {

// What bars ask for at 1x and 2x.
constexpr std::array sizes{22, 24, 32, 48};

constexpr QRgb pausedColor = qRgb(108, 104, 101);

// Fractions of the picture's size.
constexpr double focusLogoSize = 1.4;
constexpr double restLogoSize = 1.5;
constexpr double badgeRadius = 0.26;
constexpr double digitHeight = 0.48;
constexpr double smallDigitHeight = 0.36; // of three digits and more
constexpr double digitRoom = 0.72;

constexpr double outlineFontSize = 64; // the digits are taken from here in all sizes

std::vector<StatusPicture> paintPictures(const std::function<void(QPainter&, int)>& paint)
{
    std::vector<StatusPicture> pictures;
    for (const int size : sizes) {
        QImage image(size, size, QImage::Format_ARGB32_Premultiplied);
        image.fill(Qt::transparent);
        QPainter painter(&image);
        painter.setRenderHint(QPainter::Antialiasing);
        paint(painter, size);
        painter.end();
        image.convertTo(QImage::Format_ARGB32);
        StatusPicture picture{size, {}};
        for (int y = 0; y < size; ++y) {
            const auto* row = reinterpret_cast<const QRgb*>(image.constScanLine(y));
            picture.pixels.insert(picture.pixels.end(), row, row + size);
        }
        pictures.push_back(std::move(picture));
    }
    return pictures;
}

// As large as fits: the mark's own square leaves more room around it than a bar's icon can spare.
void paintLogo(QPainter& painter, int size, TimerPhase phase)
{
    const double side = size * (phase == TimerPhase::focus ? focusLogoSize : restLogoSize);
    const QRectF square((size - side) / 2, (size - side) / 2, side, side);
    paintPhaseIcon(painter, square, phase, Theme(ColorScheme::light)); // the tints are those of both schemes
}

/// The digits' outline; the baseline is at 0, their height that of a flat digit.
struct DigitOutline
{
    QPainterPath path;
    double height = 0;
};

DigitOutline digitOutline(std::int64_t number)
{
    QFont font = systemFont(outlineFontSize, QFont::Bold);
    font.setHintingPreference(QFont::PreferNoHinting);
    DigitOutline outline;
    outline.path.addText(0, 0, font, QString::number(number));
    QPainterPath flat;
    flat.addText(0, 0, font, QStringLiteral("1"));
    outline.height = flat.boundingRect().height();
    return outline;
}

// Top and baseline lie on whole pixels, which keeps the digits sharp at every size.
void paintDigits(QPainter& painter, int size, std::int64_t number, const DigitOutline& outline)
{
    const double height = std::round(size * (number < 100 ? digitHeight : smallDigitHeight));
    const double vertical = height / outline.height;
    const QRectF bounds = outline.path.boundingRect();
    const double horizontal = std::min(vertical, size * digitRoom / bounds.width());
    const double baseline = std::floor((size + height) / 2);
    painter.translate(size / 2.0 - bounds.center().x() * horizontal, baseline);
    painter.scale(horizontal, vertical);
    painter.fillPath(outline.path, Qt::white);
}

void paintBadge(QPainter& painter, int size, const TrayPictureContent& content, const DigitOutline& outline)
{
    const Theme theme(ColorScheme::light); // both schemes fill with the same two colours
    painter.setPen(Qt::NoPen);
    painter.setBrush(content.isPaused ? QColor(pausedColor)
                                      : theme.color(fillFor(phaseColor(content.phase))));
    if (content.phase == TimerPhase::focus) {
        const double margin = std::round(size / 22.0);
        const double side = size - 2 * margin;
        painter.drawRoundedRect(QRectF(margin, margin, side, side), size * badgeRadius, size * badgeRadius);
    } else {
        painter.drawEllipse(QRectF(0, 0, size, size));
    }
    paintDigits(painter, size, *content.minutes, outline);
}

} // namespace

StatusPictures trayPictures(const TrayPictureContent& content)
{
    StatusPictures result;
    result.themeName = content.phase == TimerPhase::focus ? "com.quillmark.Brevlin-focus-symbolic"
                                                          : "com.quillmark.Brevlin-rest-symbolic";
    result.plain =
        paintPictures([&content](QPainter& painter, int size) { paintLogo(painter, size, content.phase); });
    if (!content.minutes) {
        result.withClock = result.plain;
        return result;
    }
    const DigitOutline outline = digitOutline(*content.minutes);
    result.withClock = paintPictures(
        [&content, &outline](QPainter& painter, int size) { paintBadge(painter, size, content, outline); });
    return result;
}

} // namespace brevlin
