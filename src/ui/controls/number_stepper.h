#pragma once

#include "ui/controls/plain_button.h"
#include "ui/style/focus_ring.h"
#include "ui/style/symbol.h"

#include <QLineEdit>
#include <QSpinBox>
#include <QWidget>

#include <utility>

namespace brevlin {

/// The number of a stepper, typed or changed by the arrow keys. What is typed counts once it is finished: by
/// Return or by leaving the field.
class NumberField final : public QSpinBox
{
    Q_OBJECT

public:
    explicit NumberField(QWidget* parent = nullptr);

    void deselect() { lineEdit()->deselect(); }
    QSize sizeHint() const override;
    QSize minimumSizeHint() const override { return sizeHint(); }

protected:
    bool event(QEvent* event) override;
    bool eventFilter(QObject* watched, QEvent* event) override;
    void changeEvent(QEvent* event) override;
    void focusInEvent(QFocusEvent* event) override;
    void focusOutEvent(QFocusEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;
    void paintEvent(QPaintEvent* event) override;
    void wheelEvent(QWheelEvent* event) override;

private:
    void applyTheme();
    bool isBeingTyped() const;

    KeyboardFocus m_keyboardFocus;
};

/// One half of a stepper's pair of buttons. Repeats while it is held.
class StepButton final : public PlainButton
{
    Q_OBJECT

public:
    StepButton(Symbol symbol, Qt::Edge roundedSide, QWidget* parent);

    QSize sizeHint() const override { return {32, 26}; }
    QSize minimumSizeHint() const override { return sizeHint(); }

protected:
    void paintEvent(QPaintEvent* event) override;

private:
    Symbol m_symbol;
    Qt::Edge m_roundedSide;
};

/// A sentence with a number in it and two buttons at its end: "Break: 5 min". The whole sentence is the
/// accessible name of the number. A number from elsewhere is shown even outside the range; the user's never
/// leaves it.
class NumberStepper final : public QWidget
{
    Q_OBJECT

public:
    NumberStepper(int minimum, int maximum, QWidget* parent = nullptr);

    struct Texts
    {
        QString before; ///< with the space that belongs between it and the number
        QString after;
        QString decrease; ///< the names of the buttons
        QString increase;
    };
    void setTexts(const Texts& texts);
    int value() const { return m_field->value(); }
    void setValue(int value);
    QSize sizeHint() const override;
    QSize minimumSizeHint() const override { return sizeHint(); }

Q_SIGNALS:
    /// The user has changed the number.
    void valueChosen(int value);

protected:
    void paintEvent(QPaintEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;

private:
    void choose(int value);
    void step(int change);
    void layOut();

    int m_minimum;
    int m_maximum;
    Texts m_texts;
    std::pair<QString, QString>
        m_words;          // around the number, without the spaces that the field's edges replace
    NumberField* m_field; // these are owned by this widget
    StepButton* m_decrease;
    StepButton* m_increase;
};

} // namespace brevlin
