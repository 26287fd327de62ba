#pragma once

#include <QWidget>

namespace brevlin {

class AppModel;
class CapsuleButton;
class FormLabel;

/// What can be taken back for a few seconds: a line at the bottom of the window, above the screen, which goes
/// by itself.
class UndoBar final : public QWidget
{
    Q_OBJECT

public:
    explicit UndoBar(AppModel& model, QWidget* parent);

    /// In the middle of the lower edge of this place.
    void lieIn(const QRect& room);

protected:
    void paintEvent(QPaintEvent* event) override;

private:
    void refresh();
    QString text() const;

    AppModel& m_model;
    FormLabel* m_text; // these are owned by this widget
    CapsuleButton* m_undo;
    QRect m_room;
};

} // namespace brevlin
