#pragma once

#include <QWidget>

namespace brevlin {

class AppModel;
class CapsuleButton;
class FormLabel;

/// What can be taken back for a few seconds: a line that goes by itself. It floats at the bottom of a window,
/// or is a row of the timer's panel, which tells of the timer alone.
class UndoBar final : public QWidget
{
    Q_OBJECT

public:
    enum class Place { floating, row };

    UndoBar(AppModel& model, Place place, QWidget* parent);

    /// Floats in the lower right corner of this place, beside the timer's buttons.
    void lieIn(const QRect& room);

protected:
    void paintEvent(QPaintEvent* event) override;

private:
    void refresh();
    QString text() const;

    AppModel& m_model;
    Place m_place;
    FormLabel* m_text; // these are owned by this widget
    CapsuleButton* m_undo;
    QRect m_room;
};

} // namespace brevlin
