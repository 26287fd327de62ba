#include "ui/capsule/top_capsule_view.h"

#include "core/time_text.h"
#include "ui/capsule/capsule_border.h"
#include "ui/capsule/capsule_pages.h"
#include "ui/controls/numeric_text.h"
#include "ui/controls/spoken_element.h"
#include "ui/style/shapes.h"
#include "ui/style/text.h"
#include "ui/style/theme.h"

#include <QEvent>
#include <QGraphicsOpacityEffect>
#include <QHelpEvent>
#include <QPainter>
#include <QToolTip>

#include <algorithm>
#include <chrono>
#include <cmath>
#include <numbers>

namespace brevlin {

namespace {

using namespace std::chrono_literals;

constexpr double islandRadius = 30;
constexpr double capsuleRadius = 25;
constexpr double borderInset = 1.7;
constexpr double borderWidth = 3;
constexpr int clockPadding = 5;
constexpr double shortClockSize = 11.5; ///< of the compact timer's clock; points
constexpr double longClockSize = 9.5;   ///< from an hour on
constexpr double smallestClockScale = 0.72;
constexpr AnimationTiming progressTiming{300ms, QEasingCurve::Linear, 12};
constexpr AnimationTiming opacityTiming{200ms, QEasingCurve::InOutQuad, 10};
// The border of a long phase moves by a fraction of a point a second. Less than the first the eye does not
// see, and it waits until enough has come together; more than the second at once is a jump that it should
// follow.
constexpr double visibleStep = 0.4; ///< points along the border
constexpr double smoothStep = 0.01; ///< of the whole

} // namespace

TopCapsuleView::TopCapsuleView(QWidget* parent)
    : QWidget(parent)
    , m_compactClock(new NumericText(capsuleClockFont(shortClockSize, QFont::Bold), this))
    , m_progress(*this)
    , m_pageOpacity(*this, 1.0)
{
    m_compactClock->setAttribute(Qt::WA_TransparentForMouseEvents);
    m_compactClock->setAlignment(Qt::AlignCenter);
    m_compactClock->setMinimumScale(smallestClockScale);
    updateColors();
    connect(&m_progress, &ValueAnimation::valueChanged, this, [this] { update(); });
    connect(&m_pageOpacity, &ValueAnimation::valueChanged, this, &TopCapsuleView::showOpacity);
    makeSpokenGroup(*this, QAccessible::Grouping, [this] { return spokenText(); });
    rebuild();
    showCompactTimer();
}

void TopCapsuleView::showOpacity(double opacity)
{
    // The effect costs a picture of the page with every frame, so it is there only while it shows.
    if (opacity >= 1.0) {
        if (m_page != nullptr) {
            m_page->setGraphicsEffect(nullptr);
        }
        discard(std::exchange(m_leavingPage, nullptr));
        return;
    }
    const auto setOpacity = [](QWidget* page, double value) {
        if (page == nullptr) {
            return;
        }
        if (auto* effect = qobject_cast<QGraphicsOpacityEffect*>(page->graphicsEffect())) {
            effect->setOpacity(value);
        }
    };
    setOpacity(m_page, opacity);
    setOpacity(m_leavingPage, 1.0 - opacity);
}

void TopCapsuleView::setContent(const CapsuleContent& content)
{
    if (content == m_content) {
        return;
    }
    const CapsuleContent before = std::exchange(m_content, content);
    const double step = std::abs(content.progress - m_progress.target());
    const double border = 2 * (width() - height()) + std::numbers::pi * height();
    if (step > smoothStep) {
        m_progress.animateTo(content.progress, progressTiming);
    } else if (step * border >= visibleStep || content.progress <= 0.0 || content.progress >= 1.0) {
        m_progress.setValue(content.progress);
    }
    if (!haveSamePage(before, content)) {
        updateColors();
        const bool fades = before.showsCompletion != content.showsCompletion ||
                           before.showsMinimizedCompletion != content.showsMinimizedCompletion;
        if (fades) {
            exchangePages(before.showsCompletion);
        } else {
            rebuild();
        }
    } else if (m_page != nullptr) {
        m_page->setTexts(content);
    }
    showCompactTimer();
    // The clock and the border repaint what changes of them.
    if (!haveSamePage(before, content) || before.showsProgressBorder != content.showsProgressBorder) {
        update();
    }
}

// A completion enters and leaves by its opacity.
void TopCapsuleView::exchangePages(bool hadCompletion)
{
    discard(std::exchange(m_leavingPage, nullptr));
    if (hadCompletion && m_page != nullptr) {
        m_leavingPage = std::exchange(m_page, nullptr);
        m_leavingPage->setAttribute(Qt::WA_TransparentForMouseEvents);
        m_leavingPage->setGraphicsEffect(new QGraphicsOpacityEffect(m_leavingPage));
    }
    rebuild();
    if (m_page != nullptr && m_content.showsCompletion) {
        m_page->setGraphicsEffect(new QGraphicsOpacityEffect(m_page));
    }
    m_pageOpacity.setValue(0.0);
    m_pageOpacity.animateTo(1.0, opacityTiming);
}

void TopCapsuleView::showCompactTimer()
{
    constexpr std::size_t longText = 5;
    const bool isShown = m_content.showsCompactTimer && !m_content.showsCompletion;
    m_compactClock->setVisible(isShown);
    if (isShown) {
        const double size = m_content.clockText.size() > longText ? longClockSize : shortClockSize;
        m_compactClock->setTextFont(capsuleClockFont(size, QFont::Bold));
        layOutPage();
        m_compactClock->setInk(m_colors.text);
        m_compactClock->setText(qtText(m_content.clockText));
    }
}

void TopCapsuleView::setBackdrop(CapsuleBackdrop backdrop)
{
    if (std::exchange(m_backdrop, backdrop) != backdrop) {
        updateColors();
        rebuild();
        showCompactTimer();
        update();
    }
}

void TopCapsuleView::setContentPlace(const QRect& place)
{
    if (std::exchange(m_contentPlace, place) != place) {
        layOutPage();
        update();
    }
}

void TopCapsuleView::layOutPage()
{
    const QRect place = m_contentPlace.isNull() ? rect() : m_contentPlace;
    // As high as its line, so that a digit that changes paints nothing of the border anew.
    const int above = (place.height() - m_compactClock->sizeHint().height()) / 2;
    m_compactClock->setGeometry(place.adjusted(clockPadding, above, -clockPadding, -above));
    m_compactClock->setPaper(liesInside(m_compactClock->geometry()) ? std::optional(m_colors.background)
                                                                    : std::nullopt);
    if (m_page != nullptr) {
        m_page->setGeometry(place);
    }
}

void TopCapsuleView::updateColors()
{
    m_colors = capsuleColors(m_content.appearance, Theme::of(*this), m_backdrop);
}

// Later, because it may be one of its own buttons that brought this about.
void TopCapsuleView::discard(CapsulePage* page)
{
    if (page != nullptr) {
        page->hide();
        page->deleteLater();
    }
}

void TopCapsuleView::rebuild()
{
    discard(m_page);
    m_page = makeCapsulePage(
        m_content, m_colors, [this](CapsuleCommand command) { Q_EMIT commanded(command); }, this);
    if (m_page != nullptr) {
        layOutPage();
        m_page->setVisible(m_content.showsCompletion || m_content.revealsExpandedTimerContent);
    }
    const BilingualText help =
        m_content.showsMinimizedCompletion
            ? BilingualText{"点击展开提醒，拖动可移动", "Click to expand; drag to move"}
            : BilingualText{"拖动任意空白区域可移动", "Drag any empty area to move"};
    const QString move = qtText(help.in(m_content.language));
    const QString intention = qtText(m_content.intention);
    setToolTip(intention.isEmpty() ? move : toolTipText(intention + QLatin1Char('\n') + move));
}

QString TopCapsuleView::name() const
{
    return qtText(BilingualText{"顶部专注胶囊", "Top focus capsule"}.in(m_content.language));
}

QString TopCapsuleView::spokenText() const
{
    if (m_content.showsCompletion) {
        return qtText(BilingualText{"阶段完成提醒", "Phase completion alert"}.in(m_content.language));
    }
    return qtText(title(m_content.phase, m_content.language)) + QStringLiteral(", ") +
           qtText(m_content.clockText);
}

// Below the capsule, where it hides nothing of it.
bool TopCapsuleView::event(QEvent* event)
{
    if (event->type() != QEvent::ToolTip) {
        return QWidget::event(event);
    }
    constexpr int distanceOfPointer = 12; // that Qt leaves above a tool tip
    const auto* help = static_cast<const QHelpEvent*>(event);
    const int bottom = mapToGlobal(rect().bottomLeft()).y();
    QToolTip::showText({help->globalX(), bottom - distanceOfPointer}, toolTip(), this, rect());
    return true;
}

// Away from the border and from the outline.
bool TopCapsuleView::liesInside(const QRect& part) const
{
    constexpr double edge = borderInset + borderWidth / 2 + 0.5; // and what antialiasing adds
    const double radius = std::min(capsuleRadius, height() / 2.0) - edge;
    const QRectF straight =
        QRectF(rect()).adjusted(edge + radius, edge + radius, -edge - radius, -edge - radius);
    const QRectF reach(part);
    const double x = std::max({0.0, straight.left() - reach.left(), reach.right() - straight.right()});
    const double y = std::max({0.0, straight.top() - reach.top(), reach.bottom() - straight.bottom()});
    return std::hypot(x, y) <= radius;
}

void TopCapsuleView::paintEvent(QPaintEvent* event)
{
    QPainter painter(this);
    // A digit that changes repaints its own place, and there is nothing but the surface.
    if (liesInside(event->rect())) {
        painter.fillRect(event->rect(),
                         m_content.showsCompletion ? m_colors.completionBackground : m_colors.background);
        return;
    }
    painter.setRenderHint(QPainter::Antialiasing);
    const bool isIsland = m_content.showsCompletion && !m_content.showsMinimizedCompletion;
    const double radius =
        std::min(isIsland ? islandRadius : capsuleRadius, std::min(width(), height()) / 2.0);
    const QColor background = m_content.showsCompletion ? m_colors.completionBackground : m_colors.background;
    const QColor outline = m_content.showsCompletion ? m_colors.completionOutline : m_colors.outline;
    if (m_backdrop == CapsuleBackdrop::nothing) {
        // The window's shape cuts whole pixels: a soft edge would show what was never painted.
        painter.fillRect(rect(), background);
    } else {
        painter.fillPath(continuousRoundedRect(rect(), radius), background);
    }
    painter.setPen(QPen(outline, 1));
    painter.drawPath(continuousRoundedRect(QRectF(rect()).adjusted(0.5, 0.5, -0.5, -0.5), radius - 0.5));

    if (!m_content.showsCompletion && m_content.showsProgressBorder) {
        const QRectF border = QRectF(rect()).adjusted(borderInset, borderInset, -borderInset, -borderInset);
        QPen pen(Theme::of(*this).color(phaseColor(m_content.phase)), borderWidth);
        pen.setCapStyle(Qt::RoundCap);
        painter.setPen(pen);
        painter.setBrush(Qt::NoBrush);
        painter.drawPath(capsuleBorderProgress(border, m_progress.value()));
    }
}

void TopCapsuleView::resizeEvent(QResizeEvent* event)
{
    QWidget::resizeEvent(event);
    layOutPage();
}

void TopCapsuleView::changeEvent(QEvent* event)
{
    QWidget::changeEvent(event);
    if (event->type() == QEvent::PaletteChange) {
        updateColors();
        rebuild();
        showCompactTimer();
    }
}

} // namespace brevlin
