#pragma once

#include "ui/controls/plain_button.h"
#include "ui/style/animation.h"
#include "ui/style/theme.h"

#include <QStringList>
#include <QWidget>

#include <optional>
#include <vector>

namespace brevlin {

/// One choice of a segmented picker. Assistive technology sees a radio button.
class Segment final : public PlainButton
{
    Q_OBJECT

public:
    explicit Segment(QWidget* parent);

    QAccessible::Role role() const override { return QAccessible::RadioButton; }
    QSize sizeHint() const override;
    QSize minimumSizeHint() const override { return sizeHint(); }
    /// The colour of the plate under the chosen segment; none for a quiet one.
    void setTint(std::optional<ThemeColor> tint);

protected:
    void paintEvent(QPaintEvent* event) override;

private:
    std::optional<ThemeColor> m_tint;
};

/// A few choices side by side, one of which holds; all are as wide as the widest or, where the picker is
/// given a width, share it. Tab reaches the chosen one and the arrows choose its neighbours. Its title stands
/// beside it and is its accessible name.
class SegmentedPicker final : public QWidget
{
    Q_OBJECT

public:
    explicit SegmentedPicker(int count, QWidget* parent = nullptr);

    /// One text a segment, in their order.
    void setTexts(const QStringList& texts);
    /// Where the texts are abbreviations: one full name a segment, for tool tips and assistive technology.
    void setNames(const QStringList& names);
    /// The chosen segment lies on a plate of this colour; without one it is quiet.
    void setTint(std::optional<ThemeColor> tint);
    int currentIndex() const { return m_currentIndex; }
    void setCurrentIndex(int index);
    QSize sizeHint() const override;
    QSize minimumSizeHint() const override { return sizeHint(); }

Q_SIGNALS:
    /// The user has chosen; the owner sets what then holds.
    void chosen(int index);

protected:
    void paintEvent(QPaintEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;

private:
    QSize segmentSize() const;
    QRectF segmentRect(double position) const;
    void chooseNeighbor(int distance);
    void markCurrent();

    std::vector<Segment*> m_segments;
    int m_currentIndex = -1;
    std::optional<ThemeColor> m_tint;
    ValueAnimation m_position; // of the plate under the chosen segment, in segments
};

} // namespace brevlin
