#pragma once

#include "ui/controls/plain_button.h"

#include <QStringList>

namespace brevlin {

/// One of several choices, too many to stand side by side: shows the one that holds and opens a menu of all.
/// Its title stands beside it and is its accessible name. The arrow keys choose the neighbours.
class ChoiceButton final : public PlainButton
{
    Q_OBJECT

public:
    explicit ChoiceButton(QWidget* parent = nullptr);

    void setChoices(const QStringList& choices);
    int currentIndex() const { return m_currentIndex; }
    void setCurrentIndex(int index);
    QAccessible::Role role() const override { return QAccessible::ComboBox; }
    QSize sizeHint() const override;
    QSize minimumSizeHint() const override { return sizeHint(); }

Q_SIGNALS:
    void chosen(int index);

protected:
    void keyPressEvent(QKeyEvent* event) override;
    void paintEvent(QPaintEvent* event) override;

private:
    void openMenu();
    void choose(int index);

    QStringList m_choices;
    int m_currentIndex = 0;
};

} // namespace brevlin
