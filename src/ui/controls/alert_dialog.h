#pragma once

#include "ui/controls/capsule_button.h"

#include <QDialog>
#include <QString>

#include <vector>

class QHBoxLayout;
class QLabel;
class QVBoxLayout;

namespace brevlin {

/// A question or a message in front of the window that it belongs to: a title, a text, buttons. Escape
/// rejects it; Return presses the button that has the keyboard.
class AlertDialog : public QDialog
{
    Q_OBJECT

public:
    explicit AlertDialog(QWidget* parent);

    void setTitle(const QString& title);
    void setDetail(const QString& detail);
    /// Between the text and the buttons, over the whole width. The dialog owns it.
    void setContent(QWidget* content);
    /// Without its margins; points.
    void setContentWidth(int width) { m_contentWidth = width; }
    /// The buttons stand in the order in which they are added, the last at the trailing edge.
    CapsuleButton* addButton(CapsuleStyle style);
    /// To be called once the texts stand, and whenever they change: makes the dialog as high as they need and
    /// puts it in the middle of its window.
    void fit();

protected:
    bool event(QEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;
    void paintEvent(QPaintEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;

private:
    QVBoxLayout* m_column; // these are owned by this widget
    QLabel* m_title;
    QLabel* m_detail;
    QHBoxLayout* m_buttons;
    std::vector<QWidget*> m_contents;
    int m_contentWidth;
    bool m_hasShadow = false;
};

} // namespace brevlin
