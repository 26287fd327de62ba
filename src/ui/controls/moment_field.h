#pragma once

#include "ui/style/focus_ring.h"

#include <QDateTimeEdit>

namespace brevlin {

/// A date and, unless the day is enough, a time of day on the wall to the minute: typed, or changed by the
/// arrow keys. Knows no zone.
class MomentField final : public QDateTimeEdit
{
    Q_OBJECT

public:
    enum class Precision { day, minute };

    explicit MomentField(QWidget* parent = nullptr, Precision precision = Precision::minute);

    QSize sizeHint() const override;

protected:
    bool event(QEvent* event) override;
    void changeEvent(QEvent* event) override;
    void focusInEvent(QFocusEvent* event) override;
    void focusOutEvent(QFocusEvent* event) override;
    void paintEvent(QPaintEvent* event) override;
    void wheelEvent(QWheelEvent* event) override;

private:
    void applyTheme();

    KeyboardFocus m_keyboardFocus;
};

} // namespace brevlin
