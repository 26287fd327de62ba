#pragma once

#include "ui/style/focus_ring.h"

#include <QLineEdit>

namespace brevlin {

/// One line that the user types. Its own shortcuts are the field's as long as the keyboard is in it; its menu
/// speaks the program's language.
class TextField : public QLineEdit
{
    Q_OBJECT

public:
    enum class Look {
        framed, ///< like a number's field
        quiet   ///< a text among others until somebody points at it
    };

    /// What the field's menu says.
    struct MenuTexts
    {
        QString undo;
        QString redo;
        QString cut;
        QString copy;
        QString paste;
        QString selectAll;
    };
    static MenuTexts menuTexts(bool english);

    explicit TextField(Look look, QWidget* parent = nullptr);

    void setMenuTexts(const MenuTexts& texts) { m_menuTexts = texts; }
    /// Whether an input method is at work on a text that is not there yet.
    bool isComposing() const { return m_isComposing; }
    /// Whether Escape is the field's before it is the window's.
    void setTakesEscape(bool takes) { m_takesEscape = takes; }
    QSize sizeHint() const override;
    QSize minimumSizeHint() const override;

Q_SIGNALS:
    void escapePressed();

protected:
    bool event(QEvent* event) override;
    void changeEvent(QEvent* event) override;
    void contextMenuEvent(QContextMenuEvent* event) override;
    void enterEvent(QEnterEvent* event) override;
    void focusInEvent(QFocusEvent* event) override;
    void focusOutEvent(QFocusEvent* event) override;
    void inputMethodEvent(QInputMethodEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;
    void leaveEvent(QEvent* event) override;
    void paintEvent(QPaintEvent* event) override;

private:
    void applyTheme();

    Look m_look;
    MenuTexts m_menuTexts;
    KeyboardFocus m_keyboardFocus;
    bool m_isComposing = false;
    bool m_takesEscape = false;
};

} // namespace brevlin
